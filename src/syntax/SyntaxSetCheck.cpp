// Loads each definition file of a folder the way an editor would and lists what is wrong.
#include "syntax/SyntaxSetCheck.h"

#include "common/Utf.h"
#include "syntax/ZvSyntax.h"

#include <algorithm>

namespace zv {

namespace {

void CheckGroups(const std::vector<TKeyWord>& groups, const std::string& file,
                 std::vector<std::string>& problems) {
    for (const TKeyWord& g : groups)
        if (g.RegEx ? g.sRegEx.empty() : g.KeyWords.Empty())
            problems.push_back(file + ": empty group " + Utf16ToUtf8(g.Name));
}

void CheckExtensions(const std::u16string& claimed, const std::string& file,
                     TSyntaxSetReport& report) {
    std::string list = Utf16ToUtf8(claimed);
    std::replace(list.begin(), list.end(), '\t', ' ');
    std::size_t count = 0;
    for (std::size_t start = 0; start < list.size();) {
        std::size_t end = list.find(' ', start);
        if (end == std::string::npos)
            end = list.size();
        const std::string ext = list.substr(start, end - start);
        start = end + 1;
        if (ext.empty())
            continue;
        ++count;
        if (ext[0] != '.' ||
            std::any_of(ext.begin(), ext.end(), [](char c) { return c >= 'A' && c <= 'Z'; }))
            report.Problems.push_back(file + ": extension not lower case with a dot: " + ext);
        auto [it, added] = report.Extensions.emplace(ext, file);
        if (!added)
            report.Problems.push_back(file + ": extension " + ext + " also claimed by " +
                                      it->second);
    }
    if (count == 0)
        report.Problems.push_back(file + ": claims no extension");
}

// A file folds by fold definitions, by default braces, by indent, or by tags.
bool CanFold(const TZvCustomMemoStyles& s, const TMemoStyleHost& memo) {
    return !s.FNodes.empty() || !s.FNodeOpt_DefaultBegin.empty() || s.FNodeOpt_FoldOnIndention ||
           memo.IsHtml;
}

} // namespace

TSyntaxSetReport CheckSyntaxFolder(const std::filesystem::path& folder) {
    TSyntaxSetReport report;
    std::vector<std::filesystem::path> files;
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ec))
        if (entry.is_regular_file() && entry.path().extension() == ".syx")
            files.push_back(entry.path());
    if (ec)
        report.Problems.push_back(folder.string() + ": " + ec.message());
    std::sort(files.begin(), files.end());
    for (const auto& path : files) {
        const std::string name = path.filename().string();
        TZvSyntax syntax;
        TMemoStyleHost memo;
        ++report.Files;
        if (!syntax.LoadStyleFromFile(&memo, Utf8ToUtf16(path.string()),
                                      Utf8ToUtf16(path.stem().string()), 0, u"")) {
            report.Problems.push_back(name + ": does not load");
            continue;
        }
        for (const std::string& w : syntax.Warnings)
            report.Problems.push_back(w);
        const TZvCustomMemoStyles& s = *memo.FStyles;
        if (s.FKeyWords.empty())
            report.Problems.push_back(name + ": no keyword group");
        CheckGroups(s.FKeyWords, name, report.Problems);
        CheckGroups(s.FTags, name, report.Problems);
        if (!CanFold(s, memo))
            report.Problems.push_back(name + ": nothing folds");
        if (s.ReadNumberedSection(u"Comment").empty())
            report.Problems.push_back(name + ": companion has no [Comment] lines");
        if (s.ReadNumberedSection(u"Sample").empty())
            report.Problems.push_back(name + ": companion has no [Sample] lines");
        CheckExtensions(syntax.FStandardFileExtensions, name, report);
    }
    return report;
}

} // namespace zv
