// Loading of ".syx" files into style sets, with the embedded languages of HTML and ASPX.
#include "syntax/ZvSyntax.h"

#include "ZvMemoControl/CaseFold.h"
#include "common/Utf.h"
#include "syntax/MultiSyntax.h"
#include "syntax/SyntaxFolders.h"
#include "syntax/SyxText.h"

namespace zv {

namespace {

std::filesystem::path ToPath(std::u16string_view s) {
    return std::filesystem::path(Utf16ToUtf8(s));
}

std::u16string FromPath(const std::filesystem::path& p) {
    return Utf8ToUtf16(p.string());
}

// Prefixes each message with the file it belongs to.
void AddWarnings(std::vector<std::string>& out, const std::filesystem::path& file,
                 std::vector<std::string>& messages) {
    for (std::string& m : messages)
        out.push_back(file.filename().string() + ": " + m);
}

// The folder where the files of embedded languages stand: the standard syntax folder, also
// when the parent definition is a user's copy.
std::filesystem::path EmbeddedBase(const std::filesystem::path& parentFile) {
    std::filesystem::path folder = parentFile.parent_path();
    if (folder.filename() == Utf16ToUtf8(kUserDefinedFolder))
        folder = folder.parent_path();
    return folder;
}

} // namespace

void TZvSyntax::Clear() {
    KeyWords.clear();
    Tags.clear();
    Blocks.clear();
}

void TZvSyntax::LoadSlot(TMemoStyleHost& memo, TScriptType type, const std::u16string& subFile,
                         std::u16string_view syntaxName, std::int32_t aspLanguageFlag) {
    TStylesPtr* slot = memo.Slot(type);
    if (!slot)
        return;
    if (!LoadStyleFromFile(&memo, subFile, syntaxName, aspLanguageFlag, u""))
        return; // a missing file leaves the slot empty: the parent colours that region
    *slot = memo.FStyles;
    (*slot)->ScriptType = type;
    memo.FStyles.reset();
    memo.FStylesThread.reset();
}

void TZvSyntax::LoadEmbedded(TMemoStyleHost& memo, TZvCustomMemoStyles& parent,
                             const std::u16string& fileName, std::u16string_view syntaxName,
                             std::int32_t aspLanguageFlag, std::u16string_view aspHighlighter) {
    const std::filesystem::path file = ToPath(fileName);
    const std::u16string name = LowerCase(FromPath(file.filename()));
    const bool html = name == u"html.syx";
    const std::filesystem::path base = EmbeddedBase(file);
    std::vector<TEmbeddedSyntax> entries;
    if (html) {
        auto ini = FindFileNoCase(file.parent_path(), u"HtmlMulti.ini");
        if (!ini)
            ini = FindFileNoCase(base, u"HtmlMulti.ini");
        entries = ReadHtmlMulti(ini.value_or(base / "HtmlMulti.ini"), aspHighlighter);
    } else {
        entries =
            ReadAspxMulti(FindFileNoCase(base, u"ASPXMulti.ini").value_or(base / "ASPXMulti.ini"));
    }
    std::vector<std::string> warnings;
    FHtmlMultiLoading = true;
    for (const TEmbeddedSyntax& e : entries) {
        auto sub = FindFileNoCase(base, e.File);
        if (sub && html) { // only HTML consults the user's folder, and only for a namesake
            if (auto user = FindFileNoCase(base / Utf16ToUtf8(kUserDefinedFolder), e.File))
                sub = user;
        }
        if (!sub) {
            warnings.push_back(file.filename().string() +
                               ": embedded syntax not found: " + Utf16ToUtf8(e.File));
            continue;
        }
        LoadSlot(memo, e.Type, FromPath(*sub), syntaxName, aspLanguageFlag);
        warnings.insert(warnings.end(), Warnings.begin(), Warnings.end());
        if (e.Type == scASP && html)
            memo.FASPLanguage = e.File;
        std::u16string* parentName = e.Type == scASP   ? &parent.FHtmlHighlighterASP
                                     : e.Type == scPHP ? &parent.FHtmlHighlighterPHP
                                     : e.Type == scJS  ? &parent.FHtmlHighlighterJS
                                     : e.Type == scVB  ? &parent.FHtmlHighlighterVB
                                     : e.Type == scCSS ? &parent.FHtmlHighlighterCSS
                                     : e.Type == scCF  ? &parent.FHtmlHighlighterCF
                                                       : nullptr;
        if (parentName)
            *parentName = e.File;
    }
    FHtmlMultiLoading = false;
    parent.ScriptType = scHtml;
    Warnings = std::move(warnings);
}

bool TZvSyntax::LoadStyleFromFile(TMemoStyleHost* memo, std::u16string_view fileName,
                                  std::u16string_view syntaxName, std::int32_t aspLanguageFlag,
                                  std::u16string_view aspHighlighter) {
    Warnings.clear();
    auto styles = std::make_shared<TZvCustomMemoStyles>(std::u16string(fileName));
    styles->FSyntaxName = syntaxName;
    styles->OpenCompanion();
    const std::filesystem::path file = ToPath(fileName);
    if (memo) {
        memo->FStyles.reset();
        memo->FStylesThread.reset();
    }
    std::string error;
    std::optional<TSyxLines> text = ReadTextLines(file, error);
    if (!text) {
        Warnings.push_back(error);
        return false;
    }
    std::vector<std::string> warnings;
    if (memo) {
        const bool savedMulti = memo->FHtmlMultiSyntax;
        memo->FHtmlMultiSyntax = false;
        const std::u16string name = LowerCase(FromPath(file.filename()));
        if (!FHtmlMultiLoading && (name == u"html.syx" || name == u"aspx.syx")) {
            LoadEmbedded(*memo, *styles, std::u16string(fileName), syntaxName, aspLanguageFlag,
                         aspHighlighter);
            warnings = std::move(Warnings);
        }
        memo->FHtmlMultiSyntax = savedMulti;
    }
    TSyxNames names;
    std::vector<std::string> own;
    TSyxTarget target{*styles, memo, names, own};
    ResetForLoad(target);
    if (text->Fallback)
        Warn(target, "not UTF-8 and no byte order mark: read as Latin-1");
    ReadSyxLines(text->Lines, target);
    FinishSyxLoad(target);
    AddWarnings(warnings, file, own);
    Warnings = std::move(warnings);

    KeyWords = std::move(names.KeyWords);
    Tags = std::move(names.Tags);
    Blocks = std::move(names.Blocks);
    FStandardFileExtensions = std::move(names.StandardExtensions);
    styles->FFileName = fileName;
    if (FColors)
        FColors->ApplyColors(*styles, syntaxName);
    if (memo) {
        memo->FASPXLanguage = aspLanguageFlag;
        memo->FStyles = styles;
        memo->FStylesThread = styles;
        if (memo->IsHtml)
            memo->FHtmlStyle = styles;
    }
    // Kept only for loads without an editor: an editor's sets must die with the editor.
    FLastStyles = memo ? nullptr : std::move(styles);
    return true;
}

bool TZvSyntax::LoadStyleFromFile(TMemoStyleHost* memo, std::u16string_view fileName,
                                  std::u16string_view syntaxName, TStringList& commentsOut,
                                  TStringList& samplesOut) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(ToPath(fileName), ec))
        return false;
    FHtmlMultiLoading = true;
    const bool loaded = LoadStyleFromFile(memo, fileName, syntaxName, 0, u"");
    FHtmlMultiLoading = false;
    commentsOut.clear();
    samplesOut.clear();
    const TStylesPtr& styles = memo ? memo->FStyles : FLastStyles;
    if (loaded && styles) {
        commentsOut = styles->ReadNumberedSection(u"Comment");
        samplesOut = styles->ReadNumberedSection(u"Sample");
    }
    return loaded;
}

} // namespace zv
