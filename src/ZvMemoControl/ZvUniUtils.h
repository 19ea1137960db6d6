// TZvUniUtils: UTF-16 string helpers of the text engine: searches with 1-based positions,
// tab expansion, replacement, case matching, white space and the row hash.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

// Unicode white space (the character database's White_Space property).
bool IsWhiteSpace(char16_t c);
// Simple, locale-independent upper case of one unit (surrogates unchanged).
char16_t UpperChar(char16_t c);
std::u16string WUpperCase(std::u16string_view s);
// True when the text needs complex script processing (shaping, right-to-left, combining).
bool NeedsShaping(std::u16string_view s);

// First occurrence of `what` in `s` at or after 1-based `from`: 1-based, 0 when none.
int WPosEx(std::u16string_view what, std::u16string_view s, int from);
// The same without regard to case (simple case folding).
int WNCPosEx(std::u16string_view what, std::u16string_view s, int from);
// Last occurrence starting at or before 1-based `from` (from <= 0: the end); 0 when none.
int WRPosEx(std::u16string_view what, std::u16string_view s, int from, bool caseless);
// Searches within `count` units from 1-based `from`, clipped to `s`.
int WTextPos(std::u16string_view what, std::u16string_view s, int from, int count, bool caseless);
// Expands tabs in place: a tab at 1-based position p, with d units added so far, becomes
// tabSize - ((p + d - 1) mod tabSize) fillers. Returns whether it changed anything.
bool WConvertTabToSpace(std::u16string& s, int tabSize, char16_t filler);
// Replaces every (or the first) occurrence of `from` by `to`.
std::u16string WStringReplace(std::u16string_view s, std::u16string_view from,
                              std::u16string_view to, bool all, bool caseless);
// Gives `s` the case pattern of `model`: all upper, all lower, or first letter upper.
std::u16string MatchCase(std::u16string_view model, std::u16string_view s);

// Standard CRC-32 (reflected 0xEDB88320, start and final inversion) over bytes.
std::uint32_t Crc32(const void* data, std::size_t size, std::uint32_t crc = 0);
// The row hash: CRC-32 of the UTF-16 units in memory order, after removing white space
// (ignoreSpaces) and then upper-casing (ignoreCase). `work` is scratch.
std::uint32_t LineHash(std::u16string_view row, bool ignoreCase, bool ignoreSpaces,
                       std::u16string& work);

} // namespace zv
