// Switch matching and the integer conversion used by the argument passes.
#include "shell/Switches.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>

namespace zv {
namespace {

bool EqualNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

bool HasPrefixChar(std::string_view arg) {
    return !arg.empty() && (arg[0] == '/' || arg[0] == '-');
}

// A "/" token that names an existing path is that path: "/bin" is the folder, not /BIN.
bool NamesExistingPath(std::string_view arg) {
    std::error_code ec;
    return arg[0] == '/' && std::filesystem::exists(std::filesystem::path(arg), ec);
}

constexpr std::string_view kFlagSwitches[] = {
    "MULTI", "SILENT", "COMPARE", "RESTART", "SETTINGS", "NOREOPEN", "DIR", "BIN",
    "HEX",   "L",      "RL",      "R",       "MONITOR",  "C",        "CP"};
} // namespace

bool IsSwitch(std::string_view arg, std::string_view name) {
    return HasPrefixChar(arg) && EqualNoCase(arg.substr(1), name) && !NamesExistingPath(arg);
}

std::optional<std::string_view> SwitchValue(std::string_view arg, std::string_view head) {
    if (!HasPrefixChar(arg) || arg.size() < head.size() + 1 ||
        !EqualNoCase(arg.substr(1, head.size()), head) || NamesExistingPath(arg))
        return std::nullopt;
    return arg.substr(1 + head.size());
}

bool IsKnownSwitch(std::string_view arg) {
    for (auto name : kFlagSwitches)
        if (IsSwitch(arg, name))
            return true;
    return SwitchValue(arg, "CP=").has_value() || SwitchValue(arg, "L:").has_value();
}

int32_t StrToInt(std::string_view text) {
    int32_t value = 0;
    std::string_view digits = text;
    if (!digits.empty() && digits[0] == '+')
        digits.remove_prefix(1);
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || ec != std::errc() || end != digits.data() + digits.size())
        throw EConvertError("'" + std::string(text) + "' is not a valid integer value");
    return value;
}

bool ContainsNoCase(std::string_view text, std::string_view part) {
    return std::search(text.begin(), text.end(), part.begin(), part.end(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           }) != text.end();
}

} // namespace zv
