// Reopen list and named sessions, both in the settings-file form.
#include "shell/Sessions.h"

#include "common/Utf.h"
#include "shell/ZvIniFiles.h"

#include <algorithm>

namespace zv {
namespace {

constexpr int kMaxViews = 6;
constexpr const char* kSessionKeys[kMaxViews] = {"LeftFiles", "RightFiles", "TG2Files",
                                                 "TG3Files",  "TG4Files",   "TG5Files"};

std::string ViewSection(int view) {
    return "View" + std::to_string(view);
}

std::vector<std::string> SplitBars(const std::string& text) {
    std::vector<std::string> parts;
    size_t start = 0;
    while (start < text.size()) {
        size_t bar = text.find('|', start);
        if (bar == std::string::npos)
            bar = text.size();
        if (bar > start)
            parts.push_back(text.substr(start, bar - start));
        start = bar + 1;
    }
    return parts;
}

} // namespace

bool SaveLastOpenFiles(const std::filesystem::path& file, const TOpenFiles& files) {
    TMemIniFileW ini(file, TIniEncoding::Utf8);
    ini.Clear();
    const int views = std::min(static_cast<int>(files.Views.size()), kMaxViews);
    for (int v = 0; v < views; ++v) {
        const auto& paths = files.Views[static_cast<size_t>(v)];
        for (size_t i = 0; i < paths.size(); ++i)
            ini.WriteString(ViewSection(v), std::to_string(i), std::string_view(paths[i]));
    }
    ini.WriteInteger("Active", "View", files.ActiveView);
    ini.WriteInteger("Active", "PageIndex", files.PageIndex);
    std::error_code ec;
    std::filesystem::create_directories(file.parent_path(), ec);
    return ini.UpdateFile();
}

TOpenFiles LoadLastOpenFiles(const std::filesystem::path& file) {
    const TMemIniFileW ini(file, TIniEncoding::Utf8);
    TOpenFiles files;
    for (int v = 0; v < kMaxViews; ++v) {
        std::vector<std::string> paths;
        for (const std::u16string& key : ini.ReadSection(ViewSection(v)))
            if (auto path = ini.ReadString(ViewSection(v), key, std::string_view()); !path.empty())
                paths.push_back(std::move(path));
        if (!paths.empty())
            files.Views.resize(static_cast<size_t>(v) + 1);
        if (!paths.empty())
            files.Views[static_cast<size_t>(v)] = std::move(paths);
    }
    files.ActiveView = ini.ReadInteger("Active", "View", 0);
    files.PageIndex = ini.ReadInteger("Active", "PageIndex", -1);
    return files;
}

bool IsSessionName(const std::string& name) {
    return !name.empty() && name.find_first_of("[]\r\n") == std::string::npos &&
           name.find_first_not_of(' ') != std::string::npos;
}

TSessions::TSessions(std::filesystem::path file) : FFile(std::move(file)) {}

std::vector<std::string> TSessions::Names() const {
    const TMemIniFileW ini(FFile);
    std::vector<std::string> names;
    for (const std::u16string& section : ini.ReadSections())
        names.push_back(Utf16ToUtf8(section));
    return names;
}

std::string TSessions::Description(const std::string& name) const {
    const TMemIniFileW ini(FFile);
    const std::string desc = ini.ReadString(name, "Desc", std::string_view());
    return desc.empty() ? "<No description>" : desc;
}

std::vector<std::vector<std::string>> TSessions::Files(const std::string& name) const {
    const TMemIniFileW ini(FFile);
    std::vector<std::vector<std::string>> views;
    for (int v = 0; v < kMaxViews; ++v)
        if (auto paths = SplitBars(ini.ReadString(name, kSessionKeys[v], std::string_view()));
            !paths.empty()) {
            views.resize(static_cast<size_t>(v) + 1);
            views[static_cast<size_t>(v)] = std::move(paths);
        }
    return views;
}

bool TSessions::Save(const std::string& name, const std::string& description,
                     const std::vector<std::vector<std::string>>& views) {
    if (!IsSessionName(name))
        return false;
    TMemIniFileW ini(FFile);
    ini.EraseSection(name);
    ini.WriteString(name, "Desc", std::string_view(description));
    for (size_t v = 0; v < views.size() && v < kMaxViews; ++v) {
        std::string joined;
        for (const std::string& path : views[v])
            if (path.find('|') == std::string::npos)
                joined += (joined.empty() ? "" : "|") + path;
        ini.WriteString(name, kSessionKeys[v], std::string_view(joined));
    }
    ini.WriteBool(name, "IncludeFiles", true);
    std::error_code ec;
    std::filesystem::create_directories(FFile.parent_path(), ec);
    return ini.UpdateFile();
}

bool TSessions::Delete(const std::string& name) {
    TMemIniFileW ini(FFile);
    if (!ini.SectionExists(name))
        return false;
    ini.EraseSection(name);
    return ini.UpdateFile();
}

} // namespace zv
