// Choosing and loading the syntax of a document.
#include "syntax/SyntaxSelect.h"

#include "ZvMemoControl/CaseFold.h"
#include "common/Trace.h"
#include "common/Utf.h"
#include "shell/IniName.h"
#include "shell/IniValues.h"
#include "syntax/FirstLine.h"
#include "syntax/SyntaxFolders.h"
#include "syntax/SyxText.h"

#include <algorithm>

namespace zv {

namespace {

constexpr std::uint64_t kMiB = 1u << 20;

std::u16string ExtensionOf(const std::filesystem::path& fileName) {
    const std::u16string ext = Utf8ToUtf16(fileName.extension().string());
    if (ext.empty() && EqualsAsciiNoCase(Utf8ToUtf16(fileName.filename().string()), u"makefile"))
        return u".makefile";
    return ext;
}

bool InList(std::u16string_view list, std::u16string_view word) {
    return !word.empty() && list.find(std::u16string(word) + u" ") != list.npos;
}

} // namespace

TSyntaxSelector::TSyntaxSelector(TSyntaxEnvironment env, TZvSyntax& syntax)
    : FEnv(std::move(env)), FSyntax(syntax), FShipped(FEnv.Root / "Syntax" / "Types.ini") {}

std::u16string TSyntaxSelector::Setting(std::u16string_view section, std::u16string_view key,
                                        std::u16string_view def) const {
    if (FEnv.Settings && FEnv.Settings->ValueExists(section, key))
        return FEnv.Settings->ReadString(section, key, def);
    return FShipped.ReadString(section, key, def);
}

std::u16string TSyntaxSelector::Text(std::u16string_view section, std::u16string_view key,
                                     std::u16string_view def) const {
    return FEnv.Language ? FEnv.Language->ReadString(section, key, def) : std::u16string(def);
}

std::u16string TSyntaxSelector::LoadStyleFromFile(const std::filesystem::path& fileName) const {
    // Whole names first ("CMakeLists.txt", "Dockerfile", ".bashrc"), then the extension,
    // then the first line of a file whose name says nothing.
    std::u16string type =
        Setting(u"FileName", LowerCase(Utf8ToUtf16(fileName.filename().string())), u"");
    if (type.empty()) {
        const std::u16string ext = ExtensionOf(fileName);
        type = ext.empty() ? Setting(u"EditorMisc", u"BlankHighlighter", u"")
                           : Setting(u"FileExt", ext, u"");
    }
    if (type.empty() || type == u"0")
        type = TypeByFirstLine(fileName);
    return type == u"SynFile" ? std::u16string() : type;
}

std::u16string TSyntaxSelector::TypeByFirstLine(const std::filesystem::path& fileName) const {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(fileName, ec))
        return {};
    const std::u16string line = ReadFirstLine(fileName);
    if (const std::u16string language = FirstLineLanguage(line); !language.empty())
        return Setting(u"Interpreter", language, u"");
    const std::u16string lower = LowerCase(line.substr(0, 64));
    for (const std::u16string& opening : FShipped.ReadSection(u"FirstLine"))
        if (lower.starts_with(opening))
            return FShipped.ReadString(u"FirstLine", opening, u"");
    return {};
}

std::u16string TSyntaxSelector::LoadStyleFromFile(TMemoStyleHost& memo,
                                                  const std::filesystem::path& fileName) {
    const std::u16string type = LoadStyleFromFile(fileName);
    return type.empty() ? type : LoadStyleFromType(memo, type);
}

std::u16string TSyntaxSelector::LoadStyleFromType(TMemoStyleHost& memo,
                                                  std::u16string_view requested) {
    std::u16string type(requested);
    const std::u16string file = Setting(type, u"File", u"");
    if (file.empty())
        return type;
    const std::filesystem::path syntaxFolder = FEnv.Root / "Syntax";
    std::optional<std::filesystem::path> path = FindSyntaxFile(syntaxFolder, file);
    std::u16string language;
    if (path && memo.FHtmlMultiSyntax) {
        if (auto directive = ReadSyxDirective(*path)) {
            type = directive->Type;
            if (auto target = FindSyntaxFile(syntaxFolder, directive->File))
                path = target;
            language = directive->Language;
        }
    }
    if (language.empty())
        language = memo.FASPLanguage;
    const auto aspLanguage = ParseIniInteger(Setting(u"EditorMisc", u"ASPLang", u"1")).value_or(1);
    const std::u16string full =
        Utf8ToUtf16((path ? *path : syntaxFolder / Utf16ToUtf8(file)).string());
    if (!FSyntax.LoadStyleFromFile(&memo, full, type, aspLanguage, language) && path &&
        FEnv.ShowMessage)
        FEnv.ShowMessage(Text(u"Messages", u"013", u"Could not open the syntax definition file!"));
    for (const std::string& warning : FSyntax.Warnings) // for authors; the trace is off by default
        Trace("LoadStyleFromType() - " + warning);
    if (FEnv.Settings) {
        FEnv.Settings->WriteInteger(type, u"Keys", static_cast<int32_t>(FSyntax.KeyWords.size()));
        FEnv.Settings->WriteInteger(type, u"Tags", static_cast<int32_t>(FSyntax.Tags.size()));
        FEnv.Settings->WriteInteger(type, u"Blocks", static_cast<int32_t>(FSyntax.Blocks.size()));
    }
    return type;
}

void TSyntaxSelector::MakePlain(TMemoStyleHost& memo) const {
    memo.FSyntaxType = u"Text";
    memo.FSyntaxDisplayName = Text(u"Templates", u"0001", u"Text");
}

std::u16string TSyntaxSelector::SetSyntaxStyle(const std::filesystem::path& fileName,
                                               TMemoStyleHost& memo, std::uint64_t fileSize,
                                               std::u16string_view forcedType) {
    if (memo.FManualHighlighter)
        return memo.FSyntaxType;
    memo.FreeSyntaxStyles();
    const std::u16string ext = LowerCase(ExtensionOf(fileName));
    if (memo.FTerminalMode || ext == u".nfo" || ext == u".diz") {
        memo.FSyntaxType = u"Terminal";
        memo.FSyntaxDisplayName = Text(u"Templates", u"0002", u"Terminal");
        return memo.FSyntaxType;
    }
    const auto limit = ParseIniInteger(Setting(u"EditorMisc", u"LargeFileLimitValue", u"300"));
    const bool limitOn =
        ParseIniBool(Setting(u"EditorMisc", u"LargeFileLimit", u"1")).value_or(true);
    const bool tooLarge =
        limitOn && fileSize > std::uint64_t(std::max(limit.value_or(300), 0)) * kMiB;
    memo.FHtmlMultiSyntax =
        ParseIniBool(Setting(u"EditorMisc", u"HtmlMultiSyntax", u"1")).value_or(true);
    memo.FAllowSyntaxInStrings =
        ParseIniBool(Setting(u"EditorMisc", u"AllowSyntaxInStrings", u"0")).value_or(false);
    std::u16string type;
    if (!tooLarge)
        type = forcedType.empty() ? LoadStyleFromFile(memo, fileName)
                                  : LoadStyleFromType(memo, forcedType);
    if (type.empty() || type == u"0" || !memo.FStyles) {
        memo.FreeSyntaxStyles();
        MakePlain(memo);
    } else {
        memo.FSyntaxType = memo.FSyntaxDisplayName = type;
    }
    return memo.FSyntaxType;
}

bool TSyntaxSelector::ChangeMemoSyntax(std::u16string_view chosenType, TMemoStyleHost& memo,
                                       const std::filesystem::path& fileName) {
    const std::u16string before = memo.FSyntaxType;
    memo.FreeSyntaxStyles();
    if (EqualsAsciiNoCase(chosenType, u"text")) {
        MakePlain(memo);
    } else {
        const std::u16string ext = LowerCase(ExtensionOf(fileName));
        const bool ownExtension =
            InList(u".shtml .html .xhtml .htm .asp .aspx .php .tpl .csv ", ext) &&
            InList(u"html xhtml asp aspx php ", LowerCase(chosenType));
        const std::u16string type =
            ownExtension ? LoadStyleFromFile(memo, fileName) : LoadStyleFromType(memo, chosenType);
        if (memo.FStyles)
            memo.FSyntaxType = memo.FSyntaxDisplayName = type;
        else
            MakePlain(memo);
    }
    memo.FManualHighlighter = true;
    return memo.FSyntaxType != before;
}

bool TSyntaxSelector::CopyTemplate(const std::filesystem::path& from,
                                   const std::filesystem::path& to) {
    std::error_code ec;
    const bool copied = std::filesystem::is_regular_file(from, ec) &&
                        !std::filesystem::exists(to, ec) &&
                        (std::filesystem::create_directories(to.parent_path(), ec), true) &&
                        std::filesystem::copy_file(from, to, ec) && !ec;
    const bool opened = copied && (!FEnv.OpenDocument || FEnv.OpenDocument(to));
    if (!opened && FEnv.ShowMessage)
        FEnv.ShowMessage(Text(u"Messages", u"011", u"Could not open the file!"));
    return opened;
}

bool TSyntaxSelector::LoadSyntaxTemplate(std::u16string_view name) {
    return CopyTemplate(FEnv.Root / "Templates" / "Syntax" / "empty.syx",
                        FEnv.Root / "Syntax" / (Utf16ToUtf8(name) + ".syx"));
}

bool TSyntaxSelector::LoadLanguageTemplate(std::u16string_view name) {
    return CopyTemplate(FEnv.Root / "Templates" / "Language" / "empty.ini",
                        FEnv.Root / "Language" / (Utf16ToUtf8(name) + ".ini"));
}

void TSyntaxSelector::FixSyntaxlist() {
    if (!FEnv.Settings)
        return;
    TCustomIniFile& ini = *FEnv.Settings;
    std::vector<std::u16string> names;
    bool found = false;
    for (std::u16string_view section : {u"Syntaxlist Programming", u"Syntaxlist www",
                                        u"Syntaxlist Script", u"Syntaxlist Other"}) {
        if (!ini.SectionExists(section))
            continue;
        found = true;
        for (std::u16string& name : SplitBar(ini.ReadString(section, u"List", u"")))
            names.push_back(std::move(name));
        ini.EraseSection(section);
    }
    if (!found)
        return;
    std::sort(names.begin(), names.end(),
              [](const auto& a, const auto& b) { return FoldedCompare(a, b) < 0; });
    std::u16string list;
    for (const auto& name : names)
        list += (list.empty() ? u"" : u"|") + name;
    ini.WriteString(u"Syntaxlist", u"List", list);
    ini.WriteInteger(u"Syntaxlist", u"Count", static_cast<int32_t>(names.size()));
}

} // namespace zv
