// Replacing what a TTextSearch finds in a control's document: the escapes of a replacement,
// the group references of a regular expression, preserve case, a single replace at the
// selection, and replace all as one change of the text (one undo step, one record).
#pragma once

#include "ZvMemoControl/TextSearch.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

class TZvMemo;

// The escapes of a replacement (and of a regular expression's text before it is compiled):
// \a \e \f \t give their control character, \n and \r a CR LF (\r\n one CR LF), \x followed
// by hexadecimal digits (all that follow) the character of that code; any other escape keeps
// its backslash for the engine (\1, \d, \\).
std::u16string ProcessRegExReplace(std::u16string_view text);

// `text` in the letter case pattern of `model`: letters that meet a letter take its case,
// a non-letter in the text skips the model's letters up to its next non-letter, a non-letter
// in the model gives the text's letters the case of the last model letter, and past the
// model's end the text's letters take that case up to the first non-letter.
std::u16string MatchCaseByLetter(std::u16string_view model, std::u16string_view text);

// A regular expression's replacement for one hit: \0 to \9 and \{N}, $0 to $9 and ${N} stand
// for the groups (an unset group for nothing), \\ for a backslash and $$ for a dollar sign;
// everything else is copied.
std::u16string ExpandReplacement(std::u16string_view replacement, const TMatchGroups& groups);

// What replaces a hit: the expanded replacement for a regular expression, the replacement as
// it is otherwise; in the case pattern of the hit with `preserveCase`.
struct TReplacement {
    std::u16string Text;
    bool PreserveCase = false;
    std::u16string For(const TTextSearch& search, const TMatchGroups& groups) const;
};

// Replaces the selection when it is exactly a hit of `search` and returns true (one undo
// step, the caret behind the new text). False, nothing changed, otherwise or when the
// control refuses the edit.
bool ReplaceSelection(TZvMemo& memo, const TTextSearch& search, const TReplacement& replacement);

// Replaces every hit in [from, to) as one change of the text, recorded as one replace-all
// undo step; hits are those of search.ForEach. The caret stays where it was (clipped to the
// text). Returns the number of hits replaced; 0 changes nothing (also when refused).
std::int64_t ReplaceAll(TZvMemo& memo, const TTextSearch& search, const TReplacement& replacement,
                        TZvPos from = {0, 0}, TZvPos to = TTextSearch::kTextEnd);

} // namespace zv
