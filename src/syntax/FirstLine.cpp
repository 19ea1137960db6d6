// Reading a language from a file's first line.
#include "syntax/FirstLine.h"

#include "common/Utf.h"

#include <fstream>

namespace zv {
namespace {

constexpr bool IsNameChar(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           c == u'_' || c == u'-' || c == u'+' || c == u'.';
}

std::u16string Lowered(std::u16string_view s) {
    std::u16string out(s);
    for (char16_t& c : out)
        c = c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
    return out;
}

// "python3.11" -> "python", "perl5" -> "perl"; a name that is all digits stays.
std::u16string WithoutVersion(std::u16string_view name) {
    std::size_t end = name.size();
    while (end > 1 && ((name[end - 1] >= u'0' && name[end - 1] <= u'9') || name[end - 1] == u'.'))
        --end;
    return Lowered(name.substr(0, end));
}

std::u16string_view NextToken(std::u16string_view& rest) {
    while (!rest.empty() && (rest.front() == u' ' || rest.front() == u'\t'))
        rest.remove_prefix(1);
    std::size_t end = 0;
    while (end < rest.size() && rest[end] != u' ' && rest[end] != u'\t')
        ++end;
    const auto token = rest.substr(0, end);
    rest.remove_prefix(end);
    return token;
}

std::u16string Interpreter(std::u16string_view line) {
    std::u16string_view rest = line.substr(2);
    std::u16string_view program = NextToken(rest);
    program = program.substr(program.find_last_of(u'/') + 1);
    if (program == u"env") // env [-S] [-i] [NAME=value]... program
        do
            program = NextToken(rest);
        while (!program.empty() && (program.front() == u'-' || program.find(u'=') != program.npos));
    return WithoutVersion(program);
}

// The name behind `key` ("mode:", "ft=", "filetype=") in `line`, or empty.
std::u16string NameBehind(std::u16string_view line, std::u16string_view key) {
    const std::u16string lower = Lowered(line);
    const std::size_t at = lower.find(key);
    if (at == lower.npos)
        return {};
    std::size_t from = at + key.size();
    while (from < line.size() && line[from] == u' ')
        ++from;
    std::size_t end = from;
    while (end < line.size() && IsNameChar(line[end]) && line[end] != u'.')
        ++end;
    return Lowered(line.substr(from, end - from));
}

} // namespace

std::u16string ReadFirstLine(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::string head(512, '\0');
    in.read(head.data(), std::streamsize(head.size()));
    head.resize(std::size_t(in.gcount()));
    if (head.starts_with("\xEF\xBB\xBF"))
        head.erase(0, 3);
    head.resize(std::min(head.size(), head.find_first_of("\r\n")));
    return Utf8ToUtf16(head);
}

std::u16string FirstLineLanguage(std::u16string_view line) {
    if (line.starts_with(u"#!"))
        return Interpreter(line);
    if (line.find(u"-*-") != line.npos) {
        std::u16string mode = NameBehind(line, u"mode:");
        if (mode.empty()) { // "-*- ruby -*-"
            const std::size_t open = line.find(u"-*-") + 3, close = line.find(u"-*-", open);
            std::u16string_view inner =
                line.substr(open, close == line.npos ? close : close - open);
            mode = Lowered(NextToken(inner));
            if (mode.find_first_of(u":;=") != mode.npos)
                mode.clear();
        }
        return mode;
    }
    if (line.find(u"vim:") != line.npos || line.find(u"vi:") != line.npos) {
        std::u16string type = NameBehind(line, u"filetype=");
        return type.empty() ? NameBehind(line, u"ft=") : type;
    }
    return {};
}

} // namespace zv
