// The find flags of a search in a document and the fixed character set of its whole-word
// filter (what may stand beside a whole-word hit).
#pragma once

#include <cstdint>
#include <string_view>

namespace zv {

// One byte of flags; the values are stored (settings, macros) and must not change.
enum TZvFindOption : std::uint8_t {
    frCase = 1,          // match case
    frWord = 2,          // whole word: the characters beside the hit are delimiters
    frSkipTags = 4,      // refuse a hit that opens a tag at column 0
    frSkipStrings = 8,   // refuse hits inside strings
    frSkipComments = 16, // refuse hits inside comments
    frRegExp = 32,       // the text is a regular expression
    frDownward = 64,     // search forward
    frUpward = 128       // search backward
};
using TZvFindOptions = std::uint8_t;

// True when `c` may stand beside a whole-word hit: blanks, punctuation but the underscore,
// the line ends and the Unicode spaces, or one of the syntax's `userDelimiters`. Characters,
// not a word class: an underscore joins two words, a hyphen divides them.
bool IsWordDelimiter(char16_t c, std::u16string_view userDelimiters = {});

} // namespace zv
