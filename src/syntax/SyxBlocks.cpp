// Sections [Block] and [Fold] of the ".syx" reader, and the work after the last section.
#include "syntax/SyxReader.h"

#include "ZvMemoControl/CaseFold.h"
#include "common/Utf.h"

#include <algorithm>
#include <array>

namespace zv {

namespace {

// The general text-to-boolean conversion: "0"/"False" and "1"/"True" in any case.
bool ParseBool(TSyxTarget& t, std::u16string_view v, bool current) {
    if (v == u"1" || EqualsAsciiNoCase(v, u"true"))
        return true;
    if (v == u"0" || EqualsAsciiNoCase(v, u"false"))
        return false;
    Warn(t, "not a boolean: " + Utf16ToUtf8(v));
    return current;
}

template <class T, std::size_t N>
T ParseName(std::u16string_view v, const std::array<std::pair<std::u16string_view, T>, N>& names,
            T none) {
    return FindByName(names, LowerCase(v), none);
}

constexpr std::array<std::pair<std::u16string_view, TNodeLevelType>, 7> kLevels{{
    {u"nltfirst", nltFirst},
    {u"nltnestedonly", nltNestedOnly},
    {u"nltregion", nltRegion},
    {u"nltnestedregion", nltNestedRegion},
    {u"nltregionindent", nltRegionIndent},
    {u"nltnestedregionindent", nltNestedRegionIndent},
    {u"nltskip", nltSkip},
}};

constexpr std::array<std::pair<std::u16string_view, TCEListItemType>, 19> kListItems{{
    {u"cestruct", ceStruct},
    {u"ceenum", ceEnum},
    {u"ceclass", ceClass},
    {u"cemethod", ceMethod},
    {u"cefunction", ceFunction},
    {u"ceconstructor", ceConstructor},
    {u"cedestructor", ceDestructor},
    {u"ceproperty", ceProperty},
    {u"cetagstyle", ceTagStyle},
    {u"cetagscript", ceTagScript},
    {u"cetaghead", ceTagHead},
    {u"cetagbody", ceTagBody},
    {u"cetag", ceTag},
    {u"cens", ceNS},
    {u"celine", ceLine},
    {u"cedefine", ceDefine},
    {u"ceregion", ceRegion},
    {u"ceunknown", ceUnknown},
    {u"ceskip", ceSkip},
}};

// Alternatives separated by "|" become lines; every word also goes to the fold word list.
std::u16string AddFoldWords(TSyxTarget& t, std::u16string_view value, bool dropAt) {
    std::u16string lines;
    for (std::u16string& word : SplitBar(value)) {
        if (!lines.empty())
            lines += u'\n';
        lines += word;
        if (dropAt)
            std::erase(word, u'@');
        if (!word.empty())
            t.Styles.NodeIdWords.push_back(std::move(word));
    }
    return lines;
}

char HintDigit(TCEListItemType item) {
    switch (item) {
    case ceStruct:
        return '0';
    case ceFunction:
    case ceMethod:
    case ceConstructor:
    case ceDestructor:
    case ceLocalMethod:
        return '1';
    case ceProperty:
    case ceLine:
        return '2';
    case ceEnum:
        return '3';
    case ceUnknown:
    case ceDefine:
    case ceRegion:
        return '4';
    default:
        return 0;
    }
}

void MakeCodeExplorerHints(TZvCustomMemoStyles& s) {
    s.FCodeExplorerHintList.clear();
    std::array<bool, 5> named{};
    for (const TNodes& node : s.FNodes) {
        const char digit = HintDigit(node.list_Item);
        if (!digit || named[digit - '0'])
            continue;
        named[digit - '0'] = true;
        s.FCodeExplorerHintList.push_back(std::u16string(1, char16_t(digit)) + u"=" + node.Name);
    }
}

} // namespace

void ReadBlockLine(TSyxTarget& t, std::u16string_view property, std::u16string_view value) {
    std::vector<TBlock>& blocks = t.Styles.FBlocks;
    if (property == u"Name") {
        blocks.emplace_back().Name = value;
        t.Names.Blocks.emplace_back(value);
        t.Styles.FHasRegExKeywords |= blocks.back().IsRegEx();
        return;
    }
    if (blocks.empty()) {
        Warn(t, "[Block] property before the first Name: " + Utf16ToUtf8(property));
        return;
    }
    TBlock& b = blocks.back();
    using TFlag = bool TBlock::*;
    static constexpr std::array<std::pair<std::u16string_view, TFlag>, 9> kFlags{{
        {u"OnLine", &TBlock::LineBlock},
        {u"AsString", &TBlock::ForceColor},
        {u"FirstOnLine", &TBlock::FirstOnLine},
        {u"HighlightKeywords", &TBlock::HighlightKeywords},
        {u"HighlightSymbols", &TBlock::HighlightSymbols},
        {u"HighlightBlocks", &TBlock::HighlightBlocks},
        {u"HighlightNumbers", &TBlock::HighlightNumbers},
        {u"HighlightStrings", &TBlock::HighlightStrings},
        {u"HighlightChars", &TBlock::HighlightChars},
    }};
    if (const TFlag flag = FindByName(kFlags, property, TFlag{})) {
        b.*flag = ParseBool(t, value, b.*flag);
        return;
    }
    if (property == u"Start")
        b.Start = value;
    else if (property == u"End")
        b.Stop = value;
    else if (property == u"OnlyAfter")
        b.OnlyAfter = value;
    else
        Warn(t, "unknown [Block] property: " + Utf16ToUtf8(property));
}

void ReadFoldLine(TSyxTarget& t, std::u16string_view property, std::u16string_view value) {
    std::vector<TNodes>& nodes = t.Styles.FNodes;
    if (property == u"Id") {
        nodes.emplace_back().wId = value;
        if (value.starts_with(u"~"))
            value.remove_prefix(1);
        if (!value.empty())
            t.Styles.NodeIdWords.emplace_back(value);
        return;
    }
    if (nodes.empty()) {
        Warn(t, "[Fold] property before the first Id: " + Utf16ToUtf8(property));
        return;
    }
    TNodes& n = nodes.back();
    if (property == u"Begin") {
        n.wStart = AddFoldWords(t, value, true);
    } else if (property == u"End") {
        n.wEnd = AddFoldWords(t, value, false);
    } else if (property == u"Level") {
        n.level = ParseName(value, kLevels, nltNone);
        if (n.level == nltNone && !value.empty())
            Warn(t, "unknown fold Level: " + Utf16ToUtf8(value));
    } else if (property == u"ListItem") {
        n.list_Item = ParseName(value, kListItems, ceNone);
        if (n.list_Item == ceNone && !value.empty())
            Warn(t, "unknown fold ListItem: " + Utf16ToUtf8(value));
    } else if (property == u"Name") {
        n.Name = value;
    } else {
        Warn(t, "unknown [Fold] property: " + Utf16ToUtf8(property));
    }
}

void FinishSyxLoad(TSyxTarget& t) {
    TZvCustomMemoStyles& s = t.Styles;
    s.FNumbersAsSymbols =
        !s.FNumericChars.empty() && s.FSymbols.find(s.FNumericChars) != std::u16string::npos;
    MakeCodeExplorerHints(s);
    s.NodeIdList.Assign(s.NodeIdWords);
    for (std::size_t i = 0; i + 1 < s.FKeyWords.size(); ++i)
        if (s.FKeyWords[i].Name.starts_with(u"?"))
            Warn(t, "documentation comment group is not the last: " +
                        Utf16ToUtf8(s.FKeyWords[i].Name));
    for (std::string& error : s.CompileRegExes())
        Warn(t, std::move(error));
}

} // namespace zv
