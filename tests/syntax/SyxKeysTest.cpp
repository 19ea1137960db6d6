// Every key of [Options], [FoldOptions], [Region], [Block] and [Fold] against the reader, by
// table: each key with the value forms its type admits, the same key in another letter case
// (keys are case-sensitive), and the enumeration names of fold levels and list items.
#include "SyntaxTestFiles.h"

#include "ZvMemoControl/CaseFold.h"
#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

#include <functional>

namespace zv {
namespace {

using test::TTempDir;
using test::U16;
using test::WriteFile;

// How a key's value is read, each with the value forms that tell its rules apart.
enum class TKind { Text, Flag, Char, Mode, CommentEnd, SymbolWords, Sort };

struct TCase {
    std::u16string_view Value, Expected;
};

std::vector<TCase> CasesOf(TKind kind) {
    switch (kind) {
    case TKind::Text: // split at the first "=" only
        return {{u"a=b|c", u"a=b|c"}, {u"", u""}};
    case TKind::Flag: // only the exact "1" is true
        return {{u"1", u"1"}, {u"true", u"0"}, {u"01", u"0"}, {u" 1", u"0"}, {u"0", u"0"}};
    case TKind::Char: // the first character; empty leaves it unset
        return {{u"xy", u"x"}, {u"", u""}};
    case TKind::Mode:
        return {{u"1", u"1"}, {u"2", u"2"}, {u"3", u"0"}, {u"x", u"0"}};
    case TKind::CommentEnd:
        return {{u"*/", u"*/|0"}, {u"--> -line", u"-->|1"}};
    case TKind::SymbolWords:
        return {{u"  and\tor ", u" and\tor "}, {u"x", u" x "}};
    case TKind::Sort:
        return {{u"0", u"0"}, {u"2", u"2"}, {u"1", u"1"}, {u"x", u"1"}, {u"", u"1"}};
    }
    return {};
}

using TGetter = std::function<std::u16string(const TZvCustomMemoStyles&, const TMemoStyleHost&)>;

std::u16string Bool(bool b) {
    return b ? u"1" : u"0";
}
std::u16string Char(char16_t c) {
    return c ? std::u16string(1, c) : std::u16string();
}
std::u16string Int(std::int32_t n) {
    return Utf8ToUtf16(std::to_string(n));
}

template <std::u16string TZvCustomMemoStyles::*F> TGetter Text() {
    return [](const auto& s, const auto&) { return s.*F; };
}
template <bool TZvCustomMemoStyles::*F> TGetter Flag() {
    return [](const auto& s, const auto&) { return Bool(s.*F); };
}
template <char16_t TZvCustomMemoStyles::*F> TGetter Chr() {
    return [](const auto& s, const auto&) { return Char(s.*F); };
}
template <std::int32_t TZvCustomMemoStyles::*F> TGetter Num() {
    return [](const auto& s, const auto&) { return Int(s.*F); };
}
template <std::u16string TZvCustomMemoStyles::*T, bool TZvCustomMemoStyles::*L> TGetter End() {
    return [](const auto& s, const auto&) { return s.*T + u"|" + Bool(s.*L); };
}

struct TKeyRow {
    std::u16string_view Key;
    TKind Kind;
    TGetter Get;
};

using S = TZvCustomMemoStyles;

// The keys of [Options] as the format lists them.
std::vector<TKeyRow> OptionKeys() {
    return {
        {u"LineCommentA", TKind::Text, Text<&S::FLineCommentA>()},
        {u"LineCommentB", TKind::Text, Text<&S::FLineCommentB>()},
        {u"CommentStartA", TKind::Text, Text<&S::FCommentStartA>()},
        {u"CommentEndA", TKind::CommentEnd, End<&S::FCommentEndA, &S::FCommentEndA_Line>()},
        {u"CommentStartB", TKind::Text, Text<&S::FCommentStartB>()},
        {u"CommentEndB", TKind::CommentEnd, End<&S::FCommentEndB, &S::FCommentEndB_Line>()},
        {u"CommentDocA", TKind::Text, Text<&S::FCommentDocA>()},
        {u"CommentDocB", TKind::Text, Text<&S::FCommentDocB>()},
        {u"AllowNestedComments", TKind::Flag, Flag<&S::FAllowNestedComments>()},
        {u"OnlyLineCommentIfFirstChar", TKind::Mode, Num<&S::FOnlyLineCommentIfFirstChar>()},
        {u"OnlyLineCommentIfFirstCharA", TKind::Mode, Num<&S::FOnlyLineCommentIfFirstChar>()},
        {u"OnlyLineCommentIfFirstCharB", TKind::Mode, Num<&S::FOnlyLineCommentIfFirstCharB>()},
        {u"Char", TKind::Char, Chr<&S::FCharSymbol>()},
        {u"String", TKind::Char, Chr<&S::FStringSymbol>()},
        {u"String2", TKind::Char, Chr<&S::FString2Symbol>()},
        {u"StringOnLine", TKind::Flag, Flag<&S::FStringLine>()},
        {u"VerbatimStringStart", TKind::Char, Chr<&S::FVerbatimStringStart>()},
        {u"HexIdentifier", TKind::Text, Text<&S::FHexIdentifier>()},
        {u"Escape", TKind::Text, Text<&S::FEscape>()},
        {u"AllowEscapeOutsideString", TKind::Flag, Flag<&S::FAllowEscapeOutsideString>()},
        {u"Symbols", TKind::Text, Text<&S::FSymbols>()},
        {u"Numbers", TKind::Text, Text<&S::FNumericChars>()},
        // The editor keeps copies of the two case flags.
        {u"Case", TKind::Flag,
         [](const S& s, const TMemoStyleHost& m) {
             return Bool(s.FKeywordCase) + Bool(m.CaseSensitive) == u"11" ? u"1" : u"0";
         }},
        {u"CaseTags", TKind::Flag,
         [](const S& s, const TMemoStyleHost& m) {
             return Bool(s.FTagCase) + Bool(m.FTagsCaseSensitive) == u"11" ? u"1" : u"0";
         }},
        {u"HighlightUrl", TKind::Flag,
         [](const S&, const TMemoStyleHost& m) { return Bool(m.FUrlAware); }},
        {u"BlockEsc", TKind::Text, Text<&S::FBlockEsc>()},
        {u"CommentEsc", TKind::Text, Text<&S::FCommentEsc>()},
        {u"AutoCompleteTags", TKind::Flag,
         [](const S& s, const TMemoStyleHost& m) {
             return Bool(s.FAutoCompleteTags) + Bool(m.FXML) == u"11" ? u"1" : u"0";
         }},
        {u"AddProjectClassesToCompletion", TKind::Flag, Flag<&S::FAddProjectClassesToCompletion>()},
        {u"AutoCloseBraceStart", TKind::Text, Text<&S::FAutoCloseBraceStart>()},
        {u"AutoCloseBraceEnd", TKind::Text, Text<&S::FAutoCloseBraceEnd>()},
        {u"AutoCloseBlockStart", TKind::Text, Text<&S::FAutoCloseBlockStart>()},
        {u"AutoCloseBlockEnd", TKind::Text, Text<&S::FAutoCloseBlockEnd>()},
        {u"OnlyHighlightInBlock", TKind::Flag, Flag<&S::FOnlyHighlightInBlock>()},
        {u"EndOpenBlockAt", TKind::Text, Text<&S::FEndOpenBlockAt>()},
        {u"AutoCompleteCharA", TKind::Char, Chr<&S::FAutoCompleteCharA>()},
        {u"AutoCompleteCharB", TKind::Char, Chr<&S::FAutoCompleteCharB>()},
        {u"AutoCompleteCharC", TKind::Char, Chr<&S::FAutoCompleteCharC>()},
        {u"AutoCompleteSort", TKind::Sort, Num<&S::FAutoCompleteSort>()},
        {u"HintCharStart", TKind::Char,
         [](const S& s, const TMemoStyleHost&) { return Char(s.FHintParameter.FStartchar); }},
        {u"HintCharEnd", TKind::Char,
         [](const S& s, const TMemoStyleHost&) { return Char(s.FHintParameter.FEndchar); }},
        {u"AllowHighlightBetweenTags", TKind::Flag, Flag<&S::FAllowHighlightBetweenTags>()},
        {u"SymbolWordsA", TKind::SymbolWords, Text<&S::FSymbolWordsA>()},
        {u"SymbolWordsB", TKind::SymbolWords, Text<&S::FSymbolWordsB>()},
        {u"SymbolWordsC", TKind::SymbolWords, Text<&S::FSymbolWordsC>()},
        {u"HereDocSymbol", TKind::Text, Text<&S::FHereDocSymbol>()},
        {u"DigitSeparator", TKind::Text, Text<&S::FDigitSeparator>()},
    };
}

class SyxKeys : public ::testing::Test {
protected:
    // Loads `text` with an editor into a fresh host; the set, or null when it failed.
    TStylesPtr Load(const std::string& text) {
        FMemo = TMemoStyleHost{};
        const auto file = WriteFile(FDir.Path() / "keys.syx", text);
        return FSyntax.LoadStyleFromFile(&FMemo, U16(file), u"Keys", 0, u"") ? FMemo.FStyles
                                                                             : nullptr;
    }
    TStylesPtr LoadLine(std::string_view section, std::u16string_view key,
                        std::u16string_view value) {
        return Load(std::string(section) + "\n" + Utf16ToUtf8(key) + "=" + Utf16ToUtf8(value) +
                    "\n");
    }

    TTempDir FDir;
    TZvSyntax FSyntax;
    TMemoStyleHost FMemo;
};

TEST_F(SyxKeys, EveryOptionKeyReadsItsValueByTheRuleOfItsTypeAndInItsOwnCaseOnly) {
    for (const TKeyRow& row : OptionKeys()) {
        const std::string key = Utf16ToUtf8(row.Key);
        const auto cases = CasesOf(row.Kind);
        for (const TCase& c : cases) {
            const auto s = LoadLine("[Options]", row.Key, c.Value);
            ASSERT_TRUE(s) << key;
            EXPECT_EQ(Utf16ToUtf8(row.Get(*s, FMemo)), Utf16ToUtf8(c.Expected))
                << key << "=" << Utf16ToUtf8(c.Value);
            EXPECT_TRUE(FSyntax.Warnings.empty()) << key << ": " << FSyntax.Warnings.front();
        }
        // In another letter case, a value that would change the field is an unknown key's.
        const auto reference = Load("[Options]\n");
        ASSERT_TRUE(reference);
        const std::string untouched = Utf16ToUtf8(row.Get(*reference, FMemo));
        ASSERT_NE(Utf16ToUtf8(cases.front().Expected), untouched) << key;
        const auto s = LoadLine("[Options]", LowerCase(row.Key), cases.front().Value);
        ASSERT_TRUE(s) << key;
        EXPECT_EQ(Utf16ToUtf8(row.Get(*s, FMemo)), untouched) << key;
        EXPECT_EQ(FSyntax.Warnings.size(), 1u) << key;
    }
}

TEST_F(SyxKeys, FoldOptionKeys) {
    // Entering the section turns line-comment and indent folds on and clears the rest.
    auto s = Load("[FoldOptions]\n");
    ASSERT_TRUE(s);
    EXPECT_TRUE(s->FNodeOpt_FoldLineComments && s->FNodeOpt_FoldOnIndention);
    EXPECT_FALSE(s->FNodeOpt_Case || s->FNodeOpt_AlwaysAllowNesting);
    // Only the exact "0" clears the two folds; only the exact "1" sets Case.
    for (std::u16string_view value : {u"0", u"00", u"false", u"1", u""}) {
        s = LoadLine("[FoldOptions]", u"FoldLineComments", value);
        EXPECT_EQ(s->FNodeOpt_FoldLineComments, value != u"0") << Utf16ToUtf8(value);
        s = LoadLine("[FoldOptions]", u"FoldOnIndention", value);
        EXPECT_EQ(s->FNodeOpt_FoldOnIndention, value != u"0") << Utf16ToUtf8(value);
        s = LoadLine("[FoldOptions]", u"Case", value);
        EXPECT_EQ(s->FNodeOpt_Case, value == u"1") << Utf16ToUtf8(value);
    }
    s = Load("[FoldOptions]\nAllowedWordSymbols=-:\nDefaultBegin=begin|{\nDefaultEnd=end\n"
             "List_ClassSeparator=::\nList_Exclude=|if||while|\n");
    ASSERT_TRUE(s);
    EXPECT_EQ(s->FNodeOpt_AllowedWordSymbols, u"-:");
    EXPECT_EQ(s->FNodeOpt_DefaultBegin, u"begin|{");
    EXPECT_EQ(s->FNodeOpt_DefaultEnd, u"end");
    EXPECT_EQ(s->FList_Class_Separator, u"::");
    EXPECT_EQ(s->FFoldListExclude, (TStringList{u"if", u"while"}));
    EXPECT_EQ(s->FNodeOpt_AutoIdExcludes, s->FFoldListExclude);
    EXPECT_TRUE(FSyntax.Warnings.empty());
}

TEST_F(SyxKeys, RegionKeysFeedTheFoldWordIndex) {
    auto s = Load("[Region]\nStart=#region|#pragma region\nEnd=#endregion\nCommentStart=//\n"
                  "start=lost\n");
    ASSERT_TRUE(s);
    EXPECT_EQ(s->FRgn_Start, (TStringList{u"#region", u"#pragma region"}));
    EXPECT_EQ(s->FRgn_End, TStringList{u"#endregion"});
    EXPECT_EQ(s->FRgn_CommentStart, u"//");
    for (std::u16string_view w : {u"#region", u"#pragma region", u"#endregion", u"//"})
        EXPECT_TRUE(s->NodeIdList.Contains(w, true)) << Utf16ToUtf8(w);
    EXPECT_FALSE(s->NodeIdList.Contains(u"lost", false));
    EXPECT_EQ(FSyntax.Warnings.size(), 1u);
}

TEST_F(SyxKeys, BlockPropertiesTakeTheGeneralBooleans) {
    using TFlag = bool TBlock::*;
    const std::vector<std::tuple<std::u16string_view, TFlag, bool>> flags{
        {u"OnLine", &TBlock::LineBlock, false},
        {u"AsString", &TBlock::ForceColor, false},
        {u"FirstOnLine", &TBlock::FirstOnLine, false},
        {u"HighlightKeywords", &TBlock::HighlightKeywords, true},
        {u"HighlightSymbols", &TBlock::HighlightSymbols, true},
        {u"HighlightBlocks", &TBlock::HighlightBlocks, true},
        {u"HighlightNumbers", &TBlock::HighlightNumbers, true},
        {u"HighlightStrings", &TBlock::HighlightStrings, true},
        {u"HighlightChars", &TBlock::HighlightChars, true}};
    // The prefix before the first "_" is not looked at; each Name opens a block.
    auto s = Load("[Block]\nX_Name=plain\nAnything_Name=second\n");
    ASSERT_TRUE(s);
    ASSERT_EQ(s->FBlocks.size(), 2u);
    for (const auto& [property, field, byDefault] : flags)
        EXPECT_EQ(s->FBlocks[0].*field, byDefault) << Utf16ToUtf8(property);
    for (const auto& [property, field, byDefault] : flags) {
        const std::string p = Utf16ToUtf8(property);
        for (auto [value, expected] : {std::pair{"1", true},
                                       {"TRUE", true},
                                       {"tRuE", true},
                                       {"0", false},
                                       {"False", false},
                                       {"FALSE", false}}) {
            s = Load("[Block]\nB_Name=b\nB_" + p + "=" + value + "\n");
            ASSERT_TRUE(s);
            EXPECT_EQ(s->FBlocks[0].*field, expected) << p << "=" << value;
        }
        s = Load("[Block]\nB_Name=b\nB_" + p + "=yes\n"); // not a boolean: unchanged
        EXPECT_EQ(s->FBlocks[0].*field, byDefault) << p;
    }
    s = Load("[Block]\nB_Name=b\nB_Start=<%\nB_End=%>\nB_OnlyAfter==\n");
    EXPECT_EQ(s->FBlocks[0].Start, u"<%");
    EXPECT_EQ(s->FBlocks[0].Stop, u"%>");
    EXPECT_EQ(s->FBlocks[0].OnlyAfter, u"=");
}

TEST_F(SyxKeys, FoldLevelsAndListItemsByNameInAnyCase) {
    const std::vector<std::pair<std::string, TNodeLevelType>> levels{
        {"nltFirst", nltFirst},
        {"NLTNESTEDONLY", nltNestedOnly},
        {"nltregion", nltRegion},
        {"nltNestedRegion", nltNestedRegion},
        {"nltRegionIndent", nltRegionIndent},
        {"nltNestedRegionIndent", nltNestedRegionIndent},
        {"nltSkip", nltSkip},
        {"nltNone", nltNone},
        {"region", nltNone}};
    std::string text = "[Fold]\n";
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const std::string n = std::to_string(i);
        text += "F" + n + "_Id=w" + n + "\nF" + n + "_Level=" + levels[i].first + "\n";
    }
    auto s = Load(text);
    ASSERT_TRUE(s);
    ASSERT_EQ(s->FNodes.size(), levels.size());
    for (std::size_t i = 0; i < levels.size(); ++i)
        EXPECT_EQ(s->FNodes[i].level, levels[i].second) << levels[i].first;

    const std::vector<std::pair<std::string, TCEListItemType>> items{
        {"ceStruct", ceStruct},
        {"ceEnum", ceEnum},
        {"ceClass", ceClass},
        {"ceMethod", ceMethod},
        {"ceFunction", ceFunction},
        {"ceConstructor", ceConstructor},
        {"ceDestructor", ceDestructor},
        {"ceProperty", ceProperty},
        {"ceTagStyle", ceTagStyle},
        {"ceTagScript", ceTagScript},
        {"ceTagHead", ceTagHead},
        {"ceTagBody", ceTagBody},
        {"ceTag", ceTag},
        {"CENS", ceNS},
        {"ceLine", ceLine},
        {"ceDefine", ceDefine},
        {"ceRegion", ceRegion},
        {"ceUnknown", ceUnknown},
        {"ceSkip", ceSkip},
        {"ceLocalMethod", ceNone},
        {"class", ceNone}};
    text = "[Fold]\n";
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string n = std::to_string(i);
        text += "F" + n + "_Id=w" + n + "\nF" + n + "_ListItem=" + items[i].first + "\nF" + n +
                "_Name=N" + n + "\n";
    }
    s = Load(text);
    ASSERT_TRUE(s);
    ASSERT_EQ(s->FNodes.size(), items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        EXPECT_EQ(s->FNodes[i].list_Item, items[i].second) << items[i].first;
        EXPECT_EQ(s->FNodes[i].Name, u"N" + Int(static_cast<int>(i)));
    }
    // The first definition of each kind names it: struct 0, function-like 1, property and
    // line 2, enum 3, unknown, define and region 4.
    EXPECT_EQ(s->FCodeExplorerHintList,
              (TStringList{u"0=N0", u"3=N1", u"1=N3", u"2=N7", u"4=N15"}));
}

TEST_F(SyxKeys, FoldIdBeginAndEndWords) {
    auto s = Load("[Fold]\nF_Id=~class\nF_Begin=@{|begin\nF_End=}|end@\n");
    ASSERT_TRUE(s);
    const TNodes& n = s->FNodes.at(0);
    EXPECT_EQ(n.wId, u"~class"); // the mark stays in the definition
    EXPECT_EQ(n.wStart, u"@{\nbegin");
    EXPECT_EQ(n.wEnd, u"}\nend@");
    // The index has the words without "~", and Begin words without "@"; End words stay whole.
    for (std::u16string_view w : {u"class", u"{", u"begin", u"}", u"end@"})
        EXPECT_TRUE(s->NodeIdList.Contains(w, true)) << Utf16ToUtf8(w);
    for (std::u16string_view w : {u"~class", u"@{"})
        EXPECT_FALSE(s->NodeIdList.Contains(w, true)) << Utf16ToUtf8(w);
}

} // namespace
} // namespace zv
