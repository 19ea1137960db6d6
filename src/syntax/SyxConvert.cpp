// The converter from the older single-file syntax format to a ".syx" file and its companion.
#include "syntax/ZvSyntax.h"

#include "ZvMemoControl/CaseFold.h"
#include "common/Utf.h"
#include "syntax/SyxText.h"

#include <array>
#include <charconv>

namespace zv {

namespace {

std::u16string Number(int n) {
    char buf[16];
    auto end = std::to_chars(buf, buf + sizeof buf, n).ptr;
    return std::u16string(buf, end);
}

// Removes an end-of-line comment (";" or "//") that is not between the line's first and last
// double quote.
std::u16string_view StripComment(std::u16string_view line) {
    const std::size_t q1 = line.find(u'"'), q2 = line.rfind(u'"');
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool quoted = q1 != line.npos && q1 < i && i < q2;
        if (!quoted && (line[i] == u';' || line.substr(i, 2) == u"//"))
            return line.substr(0, i);
    }
    return line;
}

// The first and last double quote removed, then the first backslash, when more than one
// character remains.
std::u16string OptionValue(std::u16string_view v) {
    std::u16string s(TrimBlanks(v));
    if (const std::size_t q = s.find(u'"'); q != s.npos) {
        s.erase(q, 1);
        if (const std::size_t last = s.rfind(u'"'); last != s.npos)
            s.erase(last, 1);
    }
    if (s.size() > 1)
        if (const std::size_t b = s.find(u'\\'); b != s.npos)
            s.erase(b, 1);
    return s;
}

// A word line: its quotes stripped, and a backslash right behind the first quote dropped.
std::u16string WordOf(std::u16string_view line) {
    std::u16string s(TrimBlanks(line));
    if (!s.empty() && s.front() == u'"') {
        s.erase(0, 1);
        if (!s.empty() && s.front() == u'\\')
            s.erase(0, 1);
        if (!s.empty() && s.back() == u'"')
            s.pop_back();
    }
    return s;
}

std::u16string WithoutQuotesAndBackslashes(std::u16string_view line) {
    std::u16string s(TrimBlanks(line));
    std::erase(s, u'"');
    std::erase(s, u'\\');
    return s;
}

// The next quoted text from `pos`; empty when none.
std::u16string Quoted(std::u16string_view s, std::size_t& pos) {
    const std::size_t open = s.find(u'"', pos);
    if (open == s.npos)
        return {};
    std::size_t close = s.find(u'"', open + 1);
    if (close == s.npos)
        close = s.size();
    pos = close + 1;
    std::u16string text(s.substr(open + 1, close - open - 1));
    std::erase(text, u'\\');
    return text;
}

// One entry: "display" ["|" "insert"] ["+" icon], packed as display|insert+icon.
std::u16string PackEntry(std::u16string_view line) {
    std::size_t pos = 0;
    const std::u16string display = Quoted(line, pos);
    std::u16string insert;
    std::u16string_view rest = pos < line.size() ? line.substr(pos) : std::u16string_view{};
    rest = TrimBlanks(rest);
    if (rest.starts_with(u"|")) {
        std::size_t p = 1;
        insert = Quoted(rest, p);
        rest = p < rest.size() ? TrimBlanks(rest.substr(p)) : std::u16string_view{};
    }
    char16_t icon = u'p';
    if (rest.starts_with(u"+") && rest.size() > 1)
        icon = rest[1];
    return display + u"|" + insert + u"+" + icon;
}

enum class TOldSection {
    None,
    Options,
    Tags,
    Keywords,
    AutoHint,
    UserMenu,
    AutoComplete,
    TagComplete,
    Sample
};

TOldSection OldSectionOf(std::u16string_view lowerHeader) {
    static constexpr std::array<std::pair<std::u16string_view, TOldSection>, 8> kHeaders{{
        {u"[options]", TOldSection::Options},
        {u"[tags]", TOldSection::Tags},
        {u"[keywords]", TOldSection::Keywords},
        {u"[autohint]", TOldSection::AutoHint},
        {u"[usermenu]", TOldSection::UserMenu},
        {u"[autocomplete]", TOldSection::AutoComplete},
        {u"[tagcomplete]", TOldSection::TagComplete},
        {u"[beginsample]", TOldSection::Sample},
    }};
    return FindByName(kHeaders, lowerHeader, TOldSection::None);
}

bool NeedsContent(TOldSection s) {
    return s != TOldSection::Options && s != TOldSection::Sample && s != TOldSection::None;
}

enum class TKind { Text, Bool, BlockName, Block, FoldId, Fold, Ignored };

struct TOldKey {
    std::u16string_view Old;
    std::u16string_view Section;
    std::u16string_view Key;
    TKind Kind;
};

constexpr auto kOldKeys = std::to_array<TOldKey>({
    {u"linecommenta", u"Options", u"LineCommentA", TKind::Text},
    {u"linecommentb", u"Options", u"LineCommentB", TKind::Text},
    {u"commentstarta", u"Options", u"CommentStartA", TKind::Text},
    {u"commentenda", u"Options", u"CommentEndA", TKind::Text},
    {u"commentstartb", u"Options", u"CommentStartB", TKind::Text},
    {u"commentendb", u"Options", u"CommentEndB", TKind::Text},
    {u"commentdoca", u"Options", u"CommentDocA", TKind::Text},
    {u"commentdocb", u"Options", u"CommentDocB", TKind::Text},
    {u"blockname", u"Block", u"Name", TKind::BlockName},
    {u"blockonline", u"Block", u"OnLine", TKind::Block},
    {u"blockasstring", u"Block", u"AsString", TKind::Block},
    {u"blockstart", u"Block", u"Start", TKind::Block},
    {u"blockend", u"Block", u"End", TKind::Block},
    {u"fold_id", u"Fold", u"Id", TKind::FoldId},
    {u"fold_begin", u"Fold", u"Begin", TKind::Fold},
    {u"fold_end", u"Fold", u"End", TKind::Fold},
    {u"fold_section", u"Fold", u"Section", TKind::Fold},
    {u"fold_noparentofid", u"Fold", u"NoParentOfId", TKind::Fold},
    {u"fold_list_item", u"Fold", u"ListItem", TKind::Fold},
    {u"fold_list_asstruct", u"FoldOptions", u"List_AsStruct", TKind::Text},
    {u"fold_list_asenum", u"FoldOptions", u"List_AsEnum", TKind::Text},
    {u"fold_list_asclass", u"FoldOptions", u"List_AsClass", TKind::Text},
    {u"fold_list_asns", u"FoldOptions", u"List_AsNS", TKind::Text},
    {u"fold_list_asproperty", u"FoldOptions", u"List_AsProperty", TKind::Text},
    {u"fold_list_asmethod", u"FoldOptions", u"List_AsMethod", TKind::Text},
    {u"fold_list_exclude", u"FoldOptions", u"List_Exclude", TKind::Text},
    {u"fold_list_classseparator", u"FoldOptions", u"List_ClassSeparator", TKind::Text},
    {u"char", u"Options", u"Char", TKind::Text},
    {u"string", u"Options", u"String", TKind::Text},
    {u"stringonline", u"Options", u"StringOnLine", TKind::Bool},
    {u"hexidentifier", u"Options", u"HexIdentifier", TKind::Text},
    {u"escape", u"Options", u"Escape", TKind::Text},
    {u"symbols", u"Options", u"Symbols", TKind::Text},
    {u"numbers", u"Options", u"Numbers", TKind::Text},
    {u"casesensitive", u"Options", u"Case", TKind::Bool},
    {u"tagscasesensitive", u"Options", u"CaseTags", TKind::Bool},
    {u"highlighturl", u"Options", u"HighlightUrl", TKind::Bool},
    {u"blockesc", u"Options", u"BlockEsc", TKind::Text},
    {u"commentesc", u"Options", u"CommentEsc", TKind::Text},
    {u"fold_opt_asbegin", u"FoldOptions", u"AsBegin", TKind::Text},
    {u"fold_opt_separators", u"FoldOptions", u"Separators", TKind::Text},
    {u"fold_opt_sections", u"FoldOptions", u"Sections", TKind::Text},
    {u"fold_opt_autoidexcludes", u"FoldOptions", u"AutoIdExcludes", TKind::Text},
    {u"fold_opt_case", u"FoldOptions", u"Case", TKind::Bool},
    {u"fold_opt_foldalltags", u"FoldOptions", u"FoldAllTags", TKind::Bool},
    {u"rgn_start", u"Region", u"Start", TKind::Text},
    {u"rgn_end", u"Region", u"End", TKind::Text},
    {u"rgn_commentstart", u"Region", u"CommentStart", TKind::Text},
    {u"autocompletetags", u"Options", u"AutoCompleteTags", TKind::Bool},
    {u"addprojectclassestocompletion", u"Options", u"AddProjectClassesToCompletion", TKind::Bool},
    {u"onlyhighlightinblock", u"", u"", TKind::Ignored},
    {u"endopenblockat", u"", u"", TKind::Ignored},
    {u"allowhighlightbetweentags", u"", u"", TKind::Ignored},
    {u"symbolwordsa", u"", u"", TKind::Ignored},
    {u"symbolwordsb", u"", u"", TKind::Ignored},
    {u"symbolwordsc", u"", u"", TKind::Ignored},
    {u"heredocsymbol", u"", u"", TKind::Ignored},
    {u"digitseparator", u"", u"", TKind::Ignored},
});

bool IsYes(std::u16string_view v) {
    return EqualsAsciiNoCase(v, u"yes") || EqualsAsciiNoCase(v, u"y");
}

class TConverter {
public:
    TConverter(IKeyValueWriter& syx, IKeyValueWriter& companion)
        : FSyx(syx), FCompanion(companion) {}

    void Run(std::vector<std::u16string> lines);

private:
    bool HasContentAhead(const std::vector<std::u16string>& lines, std::size_t from) const;
    void OptionLine(std::u16string_view line);
    void ListLine(std::u16string_view line, std::u16string_view section);
    void EntryLine(std::u16string_view line, std::u16string_view section);
    void FlushGroup();
    void FlushEntries();
    void EndSection();

    IKeyValueWriter& FSyx;
    IKeyValueWriter& FCompanion;
    TOldSection FSection = TOldSection::None;
    int FBlock = 0, FFold = 0, FComment = 0, FHint = 0, FSample = 0, FGroup = 0;
    std::u16string FGroupName, FGroupWords, FGroupSection;
    bool FGroupOpen = false;
    std::u16string FEntryKey, FEntries, FEntrySection;
};

bool TConverter::HasContentAhead(const std::vector<std::u16string>& lines, std::size_t from) const {
    for (std::size_t i = from; i < lines.size(); ++i) {
        std::u16string_view s = TrimBlanks(StripComment(lines[i]));
        if (s.empty() || (s.starts_with(u"{") && s.ends_with(u"}")))
            continue;
        if (s.starts_with(u"["))
            return false;
        if (s == u">")
            continue; // a group mark without a name is no content
        return true;
    }
    return false;
}

void TConverter::FlushGroup() {
    if (FGroupOpen) {
        const std::u16string name = FGroupName.empty() ? Number(FGroup) : FGroupName;
        FSyx.WriteString(FGroupSection, name, FGroupWords);
    }
    FGroupOpen = false;
    FGroupName.clear();
    FGroupWords.clear();
}

void TConverter::FlushEntries() {
    if (!FEntryKey.empty())
        FCompanion.WriteString(FEntrySection, FEntryKey, FEntries);
    FEntryKey.clear();
    FEntries.clear();
}

void TConverter::EndSection() {
    FlushGroup();
    FlushEntries();
    FSection = TOldSection::None;
}

void TConverter::OptionLine(std::u16string_view line) {
    const std::size_t eq = line.find(u'=');
    if (eq == line.npos)
        return;
    const std::u16string key = LowerCase(TrimBlanks(line.substr(0, eq)));
    const std::u16string value = OptionValue(line.substr(eq + 1));
    for (const TOldKey& k : kOldKeys) {
        if (k.Old != key)
            continue;
        switch (k.Kind) {
        case TKind::Ignored:
            return;
        case TKind::Text:
            FSyx.WriteString(k.Section, k.Key, value);
            return;
        case TKind::Bool:
            FSyx.WriteBool(k.Section, k.Key, IsYes(value));
            return;
        case TKind::BlockName: {
            const std::u16string p = Number(++FBlock) + u"_";
            FSyx.WriteString(u"Block", p + u"Name", value);
            FSyx.WriteBool(u"Block", p + u"OnLine", false);
            FSyx.WriteBool(u"Block", p + u"AsString", false);
            FSyx.WriteString(u"Block", p + u"Start", u"");
            FSyx.WriteString(u"Block", p + u"End", u"");
            return;
        }
        case TKind::FoldId: {
            const std::u16string p = Number(++FFold) + u"_";
            FSyx.WriteString(u"Fold", p + u"Id", value);
            for (std::u16string_view empty : {u"Begin", u"End", u"Section", u"ListItem"})
                FSyx.WriteString(u"Fold", p + std::u16string(empty), u"");
            FSyx.WriteBool(u"Fold", p + u"NoParentOfId", false);
            return;
        }
        case TKind::Block:
        case TKind::Fold: {
            const std::u16string p = Number(k.Kind == TKind::Block ? FBlock : FFold) + u"_";
            if (k.Key == u"OnLine" || k.Key == u"AsString" || k.Key == u"NoParentOfId")
                FSyx.WriteBool(k.Section, p + std::u16string(k.Key), IsYes(value));
            else
                FSyx.WriteString(k.Section, p + std::u16string(k.Key), value);
            return;
        }
        }
    }
}

void TConverter::ListLine(std::u16string_view line, std::u16string_view section) {
    if (line.starts_with(u">")) {
        FlushGroup();
        ++FGroup;
        FGroupOpen = true;
        FGroupSection = section;
        std::u16string_view name = TrimBlanks(line.substr(1));
        FGroupName = TrimBlanks(name.substr(0, name.find(u'=')));
        return;
    }
    if (!FGroupOpen) { // words before any group mark form a group without a name
        ++FGroup;
        FGroupOpen = true;
        FGroupSection = section;
    }
    const std::u16string word = WordOf(line);
    if (word.empty())
        return;
    if (!FGroupWords.empty())
        FGroupWords += u'|';
    FGroupWords += word;
}

void TConverter::EntryLine(std::u16string_view line, std::u16string_view section) {
    if (line.starts_with(u"->")) {
        if (FEntryKey.empty())
            return;
        if (!FEntries.empty())
            FEntries += u"##";
        FEntries += PackEntry(line.substr(2));
        return;
    }
    if (line.size() <= 2)
        return;
    FlushEntries();
    FEntrySection = section;
    FEntryKey = WithoutQuotesAndBackslashes(line);
}

void TConverter::Run(std::vector<std::u16string> lines) {
    std::size_t i = 0;
    if (!lines.empty()) {
        const std::u16string_view first = TrimBlanks(lines[0]);
        if (first.size() > 2 && first.starts_with(u"{$")) {
            const std::size_t semi = first.find(u';'), close = first.find(u'}');
            FCompanion.WriteString(u"MultiHighlight", u"Syntax", first.substr(2, semi - 2));
            if (semi != first.npos)
                FCompanion.WriteString(u"MultiHighlight", u"File",
                                       first.substr(semi + 1, close - semi - 1));
            i = 1;
        }
    }
    bool seenHeader = false;
    for (; i < lines.size(); ++i) {
        if (FSection == TOldSection::Sample) {
            if (EqualsAsciiNoCase(TrimBlanks(lines[i]), u"[endsample]"))
                FSection = TOldSection::None;
            else
                FCompanion.WriteString(u"Sample", Number(++FSample), lines[i]);
            continue;
        }
        const std::u16string_view line = TrimBlanks(StripComment(lines[i]));
        if (line.starts_with(u"[")) {
            seenHeader = true;
            if (EqualsAsciiNoCase(line, u"[end]")) {
                EndSection();
                continue;
            }
            EndSection();
            const TOldSection s = OldSectionOf(LowerCase(line));
            if (!NeedsContent(s) || HasContentAhead(lines, i + 1))
                FSection = s;
            continue;
        }
        if (!seenHeader) {
            if (line.size() >= 2 && line.starts_with(u"{")) {
                std::u16string text(line.substr(1));
                if (!text.empty() && text.back() == u'}')
                    text.pop_back();
                FCompanion.WriteString(u"Comment", Number(++FComment), text);
            }
            continue;
        }
        if (line.empty())
            continue;
        switch (FSection) {
        case TOldSection::Options:
            OptionLine(line);
            break;
        case TOldSection::Tags:
            ListLine(line, u"Tags");
            break;
        case TOldSection::Keywords:
            ListLine(line, u"Keywords");
            break;
        case TOldSection::AutoHint:
            FCompanion.WriteString(u"Hints", Number(++FHint), WithoutQuotesAndBackslashes(line));
            break;
        case TOldSection::AutoComplete:
            EntryLine(line, u"AutoComplete");
            break;
        case TOldSection::TagComplete:
            EntryLine(line, u"TagComplete");
            break;
        case TOldSection::UserMenu:
            EntryLine(line, u"UserMenu");
            break;
        default:
            break;
        }
    }
    EndSection();
}

} // namespace

// The option keys the older format knows; the built-in highlighting of such files lists them.
std::vector<std::u16string_view> OldFormatOptionKeys() {
    std::vector<std::u16string_view> keys;
    for (const TOldKey& k : kOldKeys)
        keys.push_back(k.Old);
    return keys;
}

bool TZvSyntax::ConvertToNew(std::u16string_view oldFileName, IKeyValueWriter& newIni,
                             IKeyValueWriter& companionIni) {
    std::string error;
    std::optional<TSyxLines> text =
        ReadTextLines(std::filesystem::path(Utf16ToUtf8(oldFileName)), error);
    if (!text) {
        Warnings = {error};
        return false;
    }
    ConvertOldFormat(std::move(text->Lines), newIni, companionIni);
    return true;
}

void ConvertOldFormat(std::vector<std::u16string> lines, IKeyValueWriter& newIni,
                      IKeyValueWriter& companionIni) {
    TConverter(newIni, companionIni).Run(std::move(lines));
}

} // namespace zv
