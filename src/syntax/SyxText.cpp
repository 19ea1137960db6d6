// Byte decoding and line splitting of definition files, and the first-line alias directive.
#include "syntax/SyxText.h"

#include "shell/IniText.h"

#include <algorithm>
#include <fstream>
#include <system_error>

namespace zv {

namespace {

bool StartsWith(std::string_view bytes, std::string_view mark) {
    return bytes.substr(0, mark.size()) == mark;
}

} // namespace

TSyxLines DecodeTextLines(std::string_view bytes) {
    const TDecodedText decoded = DecodeIniBytes(bytes);
    TSyxLines result;
    result.Fallback = decoded.Form == TTextForm::Latin;
    ForEachLine(decoded.Text, [&](std::u16string_view line) { result.Lines.emplace_back(line); });
    return result;
}

std::optional<TSyxLines> ReadTextLines(const std::filesystem::path& file, std::string& error) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(file, ec);
    if (ec) {
        error = "cannot read " + file.string() + ": " + ec.message();
        return std::nullopt;
    }
    if (size > kMaxDefinitionFileBytes) {
        error = "file too large: " + file.string();
        return std::nullopt;
    }
    std::ifstream in(file, std::ios::binary);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
        error = "cannot read " + file.string();
        return std::nullopt;
    }
    return DecodeTextLines(bytes);
}

std::optional<TSyxDirective> ParseSyxDirective(std::u16string_view line) {
    auto blank = [](char16_t c) { return c == u' ' || c == u'\t' || c == 0xFEFF; };
    while (!line.empty() && blank(line.front()))
        line.remove_prefix(1);
    while (!line.empty() && blank(line.back()))
        line.remove_suffix(1);
    if (line.size() <= 3 || line.substr(0, 3) != u";{$")
        return std::nullopt;
    line.remove_prefix(3);
    const std::size_t semi = line.find(u';');
    const std::size_t close = line.find(u'}');
    if (semi == line.npos || close == line.npos || close < semi)
        return std::nullopt;
    TSyxDirective d;
    d.Type = line.substr(0, semi);
    std::u16string_view rest = line.substr(semi + 1, close - semi - 1);
    const std::size_t bar = rest.find(u'|');
    d.File = rest.substr(0, bar);
    if (bar != rest.npos)
        d.Language = rest.substr(bar + 1);
    if (d.Type.empty() || d.File.empty())
        return std::nullopt;
    return d;
}

std::optional<TSyxDirective> ReadSyxDirective(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::string head(4096, '\0');
    in.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(in.gcount()));
    if (!StartsWith(head, "\xFF\xFE") && !StartsWith(head, "\xFE\xFF"))
        head.resize(std::min(head.size(), head.find_first_of("\r\n"))); // whole characters only
    TSyxLines text = DecodeTextLines(head);
    if (text.Lines.empty())
        return std::nullopt;
    return ParseSyxDirective(text.Lines.front());
}

} // namespace zv
