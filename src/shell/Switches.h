// Command-line switch matching: "-" or "/" prefix, case-insensitive, whole token, so that
// "/root/a.txt" stays a file name. A "/" token naming an existing path ("/bin") is that
// path; "-bin" or "/BIN" where no such path exists is the switch.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zv {

// True if arg is "/NAME" or "-NAME" (any case) as a whole token. name without prefix.
bool IsSwitch(std::string_view arg, std::string_view name);

// For switches carrying their value in the token ("/CP=1252", "/L:12"): if arg starts
// with "/" or "-" followed by head (any case, head includes the separator), the rest.
std::optional<std::string_view> SwitchValue(std::string_view arg, std::string_view head);

// True if arg is one of the switches a user may write (used to tell switches from files).
bool IsKnownSwitch(std::string_view arg);

// Raised when a switch value is not a number; its text names the value.
class EConvertError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Whole-string decimal to 32-bit integer; throws EConvertError like the platform's
// string-to-integer conversion ("'x' is not a valid integer value").
int32_t StrToInt(std::string_view text);

bool ContainsNoCase(std::string_view text, std::string_view part);

} // namespace zv
