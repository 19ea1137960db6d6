// Typed values of settings: integers, booleans and date-times as their text.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zv {

// A point in time as settings store it: UTC, millisecond resolution.
using TDateTime = std::chrono::sys_time<std::chrono::milliseconds>;

// A 32-bit integer: optional blanks, then decimal with an optional sign in the int32 range,
// or hexadecimal after "$" or "0x" (up to 8 digits, taken as the 32-bit pattern, so
// "$FF00000D" gives a negative colour). Anything else gives nullopt.
std::optional<int32_t> ParseIniInteger(std::u16string_view text);
std::u16string FormatIniInteger(int32_t value);

// A boolean: "0" (blanks around ignored) is false, any other non-empty text true; empty text
// gives nullopt (the reader's default).
std::optional<bool> ParseIniBool(std::u16string_view text);

// ISO 8601: "YYYY-MM-DD", optionally followed by "T" or a blank and "hh:mm", ":ss", ".fff",
// and then "Z" or an offset "+hh:mm"/"-hh:mm"; without zone the time is taken as UTC.
// Out-of-range fields give nullopt.
std::optional<TDateTime> ParseIniDateTime(std::u16string_view text);
// "YYYY-MM-DDThh:mm:ssZ", with ".fff" before the "Z" when the milliseconds are not zero.
std::u16string FormatIniDateTime(TDateTime value);

} // namespace zv
