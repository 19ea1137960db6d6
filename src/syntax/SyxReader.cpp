// The section loop of the ".syx" reader and the sections that are plain lists.
#include "syntax/SyxReader.h"

#include "common/Utf.h"

#include <array>
#include <charconv>

namespace zv {

namespace {

enum class TSection {
    Unknown,
    StandardExtensions,
    Options,
    FoldOptions,
    Region,
    Block,
    Fold,
    Tags,
    Keywords
};

TSection SectionOf(std::u16string_view header) {
    static constexpr std::array<std::pair<std::u16string_view, TSection>, 8> kSections{{
        {u"[StandardExtensions]", TSection::StandardExtensions},
        {u"[Options]", TSection::Options},
        {u"[FoldOptions]", TSection::FoldOptions},
        {u"[Region]", TSection::Region},
        {u"[Block]", TSection::Block},
        {u"[Fold]", TSection::Fold},
        {u"[Tags]", TSection::Tags},
        {u"[Keywords]", TSection::Keywords},
    }};
    // Case-sensitive and whole, as the format says.
    return FindByName(kSections, header, TSection::Unknown);
}

bool NeedsEditor(TSection s) {
    return s == TSection::Options || s == TSection::FoldOptions || s == TSection::Region ||
           s == TSection::Fold;
}

bool IsCommentLine(std::u16string_view line) {
    return line.starts_with(u";") || line.starts_with(u"//");
}

std::string LineRef(std::size_t index) {
    char buf[24];
    auto end = std::to_chars(buf, buf + sizeof buf, index + 1).ptr;
    return "line " + std::string(buf, end) + ": ";
}

std::u16string Numbered(std::u16string_view prefix, int n) {
    char buf[16];
    auto end = std::to_chars(buf, buf + sizeof buf, n).ptr;
    return std::u16string(prefix) + std::u16string(buf, end);
}

// One line of [Keywords] or [Tags]: a group. `n` is the line's number inside the section.
TKeyWord MakeGroup(std::u16string_view name, std::u16string_view words, std::u16string_view info,
                   int n, bool allowRegEx) {
    TKeyWord group;
    group.Name = name;
    group.Info = Numbered(info, n);
    if (allowRegEx && name.starts_with(u"#")) {
        group.RegEx = true;
        group.sRegEx = words;
    } else {
        group.KeyWords.Assign(SplitBar(words));
    }
    return group;
}

void ReadRegionLine(TSyxTarget& t, std::u16string_view key, std::u16string_view value) {
    TZvCustomMemoStyles& s = t.Styles;
    if (key == u"Start" || key == u"End") {
        for (std::u16string& word : SplitBar(value)) {
            s.NodeIdWords.push_back(word);
            (key == u"Start" ? s.FRgn_Start : s.FRgn_End).push_back(std::move(word));
        }
    } else if (key == u"CommentStart") {
        s.FRgn_CommentStart = value;
        s.NodeIdWords.emplace_back(value);
    } else {
        Warn(t, "unknown key in [Region]: " + Utf16ToUtf8(key));
    }
}

// Reads the lines [first, end) of one section.
void ReadSection(TSection section, const std::vector<std::u16string>& lines, std::size_t first,
                 std::size_t end, TSyxTarget& t) {
    if (section == TSection::StandardExtensions) {
        if (first < end) {
            const std::size_t eq = lines[first].find(u'=');
            if (eq != std::u16string::npos)
                t.Names.StandardExtensions = lines[first].substr(eq + 1);
        }
        return;
    }
    if (section == TSection::FoldOptions)
        EnterFoldOptions(t);
    if (section == TSection::Options)
        t.Styles.FAutoCompleteSort = 1;
    if (section == TSection::Tags && t.Memo) {
        t.Memo->IsHtml = true;
        t.Memo->FAutoCompletionTags = true;
    }
    for (std::size_t i = first; i < end; ++i) {
        const std::u16string_view line = lines[i];
        const int n = static_cast<int>(i - first);
        const std::size_t eq = line.find(u'=');
        if (eq == line.npos) {
            if (line.starts_with(u"["))
                Warn(t, LineRef(i) + "header inside a section (sections end at an empty line)");
            else if (!IsCommentLine(line))
                Warn(t, LineRef(i) + "no \"=\": line skipped");
            continue;
        }
        const std::u16string_view key = line.substr(0, eq), value = line.substr(eq + 1);
        std::u16string_view property;
        if (section == TSection::Block || section == TSection::Fold) {
            const std::size_t bar = key.find(u'_');
            if (bar == key.npos) {
                Warn(t, LineRef(i) + "key without \"_\": line skipped");
                continue;
            }
            property = key.substr(bar + 1);
        }
        switch (section) {
        case TSection::Options:
            ReadOptionsLine(t, key, value);
            break;
        case TSection::FoldOptions:
            ReadFoldOptionsLine(t, key, value);
            break;
        case TSection::Region:
            ReadRegionLine(t, key, value);
            break;
        case TSection::Block:
            ReadBlockLine(t, property, value);
            break;
        case TSection::Fold:
            ReadFoldLine(t, property, value);
            break;
        case TSection::Tags:
            t.Styles.FTags.push_back(MakeGroup(key, value, u"Tags", n, false));
            t.Names.Tags.emplace_back(key);
            break;
        case TSection::Keywords:
            t.Styles.FKeyWords.push_back(MakeGroup(key, value, u"Keywords", n, true));
            t.Styles.FHasRegExKeywords |= t.Styles.FKeyWords.back().RegEx;
            t.Names.KeyWords.emplace_back(key);
            break;
        default:
            break;
        }
    }
}

} // namespace

std::vector<std::u16string> SplitBar(std::u16string_view text) {
    std::vector<std::u16string> parts;
    for (std::size_t start = 0;;) {
        const std::size_t bar = text.find(u'|', start);
        parts.emplace_back(text.substr(start, bar - start));
        if (bar == text.npos)
            break;
        start = bar + 1;
    }
    std::erase_if(parts, [](const std::u16string& p) { return p.empty(); });
    return parts;
}

std::u16string_view TrimBlanks(std::u16string_view text) {
    auto blank = [](char16_t c) { return c == u' ' || c == u'\t'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

void Warn(TSyxTarget& target, std::string message) {
    target.Warnings.push_back(std::move(message));
}

void ReadSyxLines(const std::vector<std::u16string>& lines, TSyxTarget& t) {
    std::size_t i = 0;
    while (i < lines.size()) {
        const std::u16string_view line = lines[i];
        if (!line.starts_with(u"[")) {
            if (!line.empty() && !IsCommentLine(line))
                Warn(t, LineRef(i) + "outside any section: ignored");
            ++i;
            continue;
        }
        const TSection section = SectionOf(line);
        const std::size_t first = ++i;
        if (section == TSection::Unknown) {
            Warn(t, LineRef(first - 1) + "unknown section " + Utf16ToUtf8(line));
            while (i < lines.size() && !lines[i].starts_with(u"["))
                ++i;
            continue;
        }
        while (i < lines.size() && !lines[i].empty())
            ++i;
        if (!(NeedsEditor(section) && !t.Memo))
            ReadSection(section, lines, first, i, t);
    }
}

} // namespace zv
