// Reading definition files as UTF-16 lines, decoded as settings files are (a byte order mark
// decides; else UTF-8, and Windows-1252 when the bytes are not UTF-8).
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// Files above this size are refused: no definition file comes near it.
inline constexpr std::size_t kMaxDefinitionFileBytes = 64u << 20;

struct TSyxLines {
    std::vector<std::u16string> Lines; // split at CR LF, LF or CR; no line-end characters
    bool Fallback = false;             // neither a mark nor valid UTF-8: read byte for byte
};

TSyxLines DecodeTextLines(std::string_view bytes);

// Reads and decodes a whole file; nullopt when it cannot be read or is too large, with the
// reason in `error`.
std::optional<TSyxLines> ReadTextLines(const std::filesystem::path& file, std::string& error);

// The alias directive of a definition file's first line: ";{$" type ";" file ["|" language]
// "}". Only the first line is read.
struct TSyxDirective {
    std::u16string Type, File, Language;
};
std::optional<TSyxDirective> ParseSyxDirective(std::u16string_view firstLine);
std::optional<TSyxDirective> ReadSyxDirective(const std::filesystem::path& file);

} // namespace zv
