// Where the literals of script languages begin and end, from the row text alone: raw strings,
// code inside interpolated strings, numbers with radix prefixes, here-document openers and
// quote-like operators. Pure functions the row scanner calls; none allocates.
#pragma once

#include "ZvMemoControl/ZvMemoStyles.h"

#include <string_view>

namespace zv {

// The closing text of a raw string: a C++ delimiter has at most 16 units, a long bracket
// at most 128 "=".
struct TRawTerminator {
    char16_t Text[130] = {};
    int Length = 0;
    std::u16string_view View() const { return {Text, std::size_t(Length)}; }
};

// A raw string opened by the word [wordStart, q) and the text at q (R"x( or r#"), by the
// forms the set names. Returns the position behind the opener and fills `end`, or -1.
int RawStringOpener(std::u16string_view t, int wordStart, int q, const TZvCustomMemoStyles& s,
                    TRawTerminator& end);

// A long bracket at p ("[[" or "[==[") in a set with LongBrackets: returns the position
// behind it and fills `end` ("]]", "]==]"), or -1.
int LongBracketOpener(std::u16string_view t, int p, const TZvCustomMemoStyles& s,
                      TRawTerminator& end);

// True when the word [wordStart, q) is a prefix whose string at q holds "{code}".
bool IsFormatPrefix(std::u16string_view t, int wordStart, int q, const TZvCustomMemoStyles& s);

// Skips the code of an interpolation whose opener ends at `from`: up to behind its closing
// "}", passing nested strings (template strings with their own interpolations among them).
// Returns t.size() when the row ends first.
int InterpolationEnd(std::u16string_view t, int from, const TZvCustomMemoStyles& s);

// End of the number at p (p on a digit or on "." before a digit): radix prefixes 0x (by
// the set's HexIdentifier), 0b, 0o, decimals with fraction and exponent, digit separators.
// `hex` tells a hexadecimal number. Returns p when there is none.
int NumberEnd(std::u16string_view t, int p, const TZvCustomMemoStyles& s, bool& hex);

// Where the word of a here-document opened at p (on the set's symbol) begins, or -1 when
// the symbol is an operator there: a shift ("a << b", "$(( a<<b ))"), a here-string ("<<<"
// in a set whose symbol is "<<").
int HereDocWordAt(std::u16string_view t, int p, const TZvCustomMemoStyles& s);

// A quote-like text at p: Length, and when a one-part text is still open at the row's end,
// its closing delimiter in OpenEnd (Length then runs to the row's end). Length 0: none.
struct TQuoteLike {
    int Length = 0;
    char16_t OpenEnd = 0;
};

// A quote-like operator at p (Perl q/../, qw{..}, s/../../, tr{..}{..}); `wordEnd` is the
// end of the word at p.
TQuoteLike QuoteLike(std::u16string_view t, int p, int wordEnd, const TZvCustomMemoStyles& s);

// A percent literal at p in a set with PercentLiterals (Ruby %w[..], %Q(..), %r{..}), where
// an operand may begin.
TQuoteLike PercentLiteral(std::u16string_view t, int p, const TZvCustomMemoStyles& s);

// True when an operand may begin at p: at the row's start, behind one of "(,=:[!&|?{};~", or
// behind a word an operand follows ("return", "if", ...).
bool OperandStartsAt(std::u16string_view t, int p);

// Length of a regular expression between slashes at p that closes on the row, when an
// operand may begin there; 0 otherwise.
int SlashRegexLength(std::u16string_view t, int p);

} // namespace zv
