// Simple, locale-independent case mapping of UTF-16 text: one code point to one, so a fold
// never changes the number of code points. Comparing and hashing folded names without a copy
// is FoldedEqual/FoldedHash (shell/IniName.h).
#pragma once

#include <string>
#include <string_view>

namespace zv {

// Simple case fold (the default, not the Turkic mapping) of one code point.
char32_t FoldCodePoint(char32_t c) noexcept;

// Case-folded and lower-cased copies of a text; unpaired surrogates become U+FFFD.
std::u16string FoldCase(std::u16string_view text);
std::u16string LowerCase(std::u16string_view text);

// ASCII-only comparison for fixed names (file names of the shipped set, option values).
bool EqualsAsciiNoCase(std::u16string_view a, std::u16string_view b) noexcept;

} // namespace zv
