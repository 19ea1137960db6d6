// The ".syx" reader against hand-made files: every section, and the format's quirks.
#include "SyntaxTestFiles.h"

#include "syntax/SyxText.h"
#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::TTempDir;
using test::U16;
using test::WriteFile;

class SyxReader : public ::testing::Test {
protected:
    // Loads `text` as "<name>" with an editor; returns the style set (null on failure).
    TStylesPtr Load(std::string_view text, std::string name = "test.syx") {
        const auto file = WriteFile(FDir.Path() / name, text);
        if (!FSyntax.LoadStyleFromFile(&FMemo, U16(file), u"Test", 0, u""))
            return nullptr;
        return FMemo.FStyles;
    }
    bool HasWarning(std::string_view part) const {
        for (const auto& w : FSyntax.Warnings)
            if (w.find(part) != std::string::npos)
                return true;
        return false;
    }

    TTempDir FDir;
    TZvSyntax FSyntax;
    TMemoStyleHost FMemo;
};

// Each key's value rules: SyxKeysTest. Here what involves two keys, and unknown keys.
TEST_F(SyxReader, NumbersAmongTheSymbolsMakeDigitsSymbolsAndUnknownKeysWarn) {
    auto s = Load("[Options]\nSymbols=+-0123456789\nNumbers=0123456789\nUnknownKey=1\n");
    ASSERT_TRUE(s);
    EXPECT_TRUE(s->FNumbersAsSymbols);
    EXPECT_TRUE(HasWarning("UnknownKey"));
}

TEST_F(SyxReader, WithoutOptionsOrFoldOptionsTheirDefaultsStayOff) {
    auto s = Load("[Keywords]\nA=x\n");
    ASSERT_TRUE(s);
    EXPECT_TRUE(s->FNumericChars.empty()); // no Numbers key: digits are plain text
    EXPECT_EQ(s->FAutoCompleteSort, 0);    // only entering [Options] makes it 1
    EXPECT_FALSE(s->FNumbersAsSymbols);
    // Only entering [FoldOptions] turns comment and indent folds on.
    EXPECT_FALSE(s->FNodeOpt_FoldLineComments || s->FNodeOpt_FoldOnIndention);
}

TEST_F(SyxReader, BlankLineEndsASectionAndRepeatedSectionsAddUp) {
    auto s = Load("[Keywords]\n"
                  "First=a|b\n"
                  "no equals sign\n"
                  "Third=c\n"
                  "\n"
                  "Dropped=d\n"
                  "[Keywords]\n"
                  "Again=e\n");
    ASSERT_TRUE(s);
    ASSERT_EQ(s->FKeyWords.size(), 3u);
    EXPECT_EQ(s->FKeyWords[0].Info, u"Keywords0");
    EXPECT_EQ(s->FKeyWords[1].Name, u"Third");
    EXPECT_EQ(s->FKeyWords[1].Info, u"Keywords2"); // a line without "=" still counts
    EXPECT_EQ(s->FKeyWords[2].Name, u"Again");
    EXPECT_EQ(s->FKeyWords[2].Info, u"Keywords0"); // numbers start again
    EXPECT_EQ(FSyntax.KeyWords, (TStringList{u"First", u"Third", u"Again"}));
    EXPECT_EQ(s->FindKeyword(u"d", true), -1);
    EXPECT_EQ(s->FindKeyword(u"e", true), 2);
    EXPECT_TRUE(HasWarning("outside any section"));
}

TEST_F(SyxReader, HeadersAreCaseSensitiveAndUnknownOnesSkipTheirLines) {
    auto s = Load("[keywords]\nLost=a\n\nAlsoLost=b\n[Keywords]\nKept=c\n");
    ASSERT_TRUE(s);
    ASSERT_EQ(s->FKeyWords.size(), 1u);
    EXPECT_EQ(s->FKeyWords[0].Name, u"Kept");
    EXPECT_TRUE(HasWarning("unknown section [keywords]"));
}

TEST_F(SyxReader, KeywordCaseVariantsAndRegularExpressionGroups) {
    auto s = Load("[Keywords]\nWords=While|for\n#Numbers=\\d+(?:\\.\\d+)?\n#Bad=(unclosed\n");
    ASSERT_TRUE(s);
    EXPECT_EQ(s->FindKeyword(u"while", false), 0);
    EXPECT_EQ(s->FindKeyword(u"while", true), -1);
    ASSERT_EQ(s->FKeyWords.size(), 3u);
    const TKeyWord& re = s->FKeyWords[1];
    EXPECT_TRUE(re.RegEx);
    EXPECT_TRUE(re.KeyWords.Empty());
    EXPECT_TRUE(s->FHasRegExKeywords);
    ASSERT_TRUE(re.CompiledRegEx && re.CompiledRegEx->Valid());
    TRegexMatch scratch;
    EXPECT_EQ(re.CompiledRegEx->MatchAt(u"x = 12.5;", 4, scratch), 4);
    EXPECT_EQ(re.CompiledRegEx->MatchAt(u"x = 12.5;", 0, scratch), -1);
    // Compiled to machine code once at load, and matching over invalid UTF-16 (a lone
    // surrogate in a row) instead of refusing the subject.
    EXPECT_TRUE(re.CompiledRegEx->Jitted());
    const std::u16string broken = u"\xD800 7 \xDC00 12";
    int length = 0;
    EXPECT_EQ(re.CompiledRegEx->Find(broken, 0, scratch, length), 2);
    EXPECT_EQ(length, 1);
    EXPECT_EQ(re.CompiledRegEx->Find(broken, 3, scratch, length), 6);
    EXPECT_EQ(length, 2);
    EXPECT_FALSE(s->FKeyWords[2].CompiledRegEx->Valid());
    EXPECT_TRUE(HasWarning("bad regular expression in #Bad"));
}

TEST_F(SyxReader, DocumentationGroupMustBeLast) {
    Load("[Keywords]\n?Doc=@param\nWords=a\n");
    EXPECT_TRUE(HasWarning("not the last"));
    Load("[Keywords]\nWords=a\n?Doc=@param\n");
    EXPECT_TRUE(FSyntax.Warnings.empty());
}

TEST_F(SyxReader, TagsSwitchTheEditorToTagModeEvenWhenEmpty) {
    auto s = Load("[Tags]\n\n");
    ASSERT_TRUE(s);
    EXPECT_TRUE(FMemo.IsHtml);
    EXPECT_TRUE(FMemo.FAutoCompletionTags);
    EXPECT_EQ(FMemo.FHtmlStyle, s);
    s = Load("[Tags]\nBlock=DIV|p\nInline=span\n");
    EXPECT_EQ(s->FTags[1].Info, u"Tags1");
    EXPECT_EQ(s->FindTag(u"div", false), 0);
    EXPECT_EQ(s->FindTag(u"div", true), -1);
    EXPECT_EQ(FSyntax.Tags, (TStringList{u"Block", u"Inline"}));
    Load("[Keywords]\nA=b\n");
    EXPECT_FALSE(FMemo.IsHtml); // a syntax without tags leaves tag mode
}

// The block, fold and region keys one by one: SyxKeysTest. Here the faults and the
// regular-expression forms.
TEST_F(SyxReader, BlockFaultsWarnAndRegularExpressionBlocksCompile) {
    auto s = Load("[Block]\n"
                  "B1_OnLine=1\n" // before any Name: ignored
                  "B1_Name=Pre\nNoUnderscore=1\n"
                  "B2_Name=#Heredoc\nB2_Start=<<(\\w+)\nB2_End=^END$\nB2_AsString=maybe\n");
    ASSERT_TRUE(s);
    ASSERT_EQ(s->FBlocks.size(), 2u);
    EXPECT_FALSE(s->FBlocks[0].LineBlock);
    EXPECT_TRUE(s->FBlocks[1].StartRegEx && s->FBlocks[1].StartRegEx->Valid());
    EXPECT_TRUE(s->FHasRegExKeywords);
    EXPECT_EQ(FSyntax.Blocks, (TStringList{u"Pre", u"#Heredoc"}));
    for (const char* w : {"before the first Name", "without \"_\"", "not a boolean"})
        EXPECT_TRUE(HasWarning(w)) << w;
}

TEST_F(SyxReader, BlockExpressionsIgnoreCaseAndTheirFirstCharacterTestAgrees) {
    auto s = Load("[Block]\nB_Name=#Word\nB_Start=Begin\\b\nB_End=End\\b\n");
    ASSERT_TRUE(s && s->FBlocks.size() == 1u && s->FBlocks[0].StartRegEx);
    const TStyleRegex& start = *s->FBlocks[0].StartRegEx;
    TRegexMatch scratch;
    for (const std::u16string row : {u"Begin x", u"begin x", u"BEGIN x"}) {
        EXPECT_EQ(start.MatchAt(row, 0, scratch), 5) << Utf16ToUtf8(row);
        EXPECT_TRUE(start.MayStartWith(row[0])) << Utf16ToUtf8(row);
    }
    EXPECT_FALSE(start.MayStartWith(u'x')); // the quick test still rules characters out
}

TEST_F(SyxReader, UnknownFoldLevelWarnsAndFoldsNothing) {
    auto s = Load("[Fold]\nF_Id=sub\nF_Level=deep\n");
    ASSERT_TRUE(s);
    EXPECT_EQ(s->FNodes.at(0).level, nltNone);
    EXPECT_TRUE(HasWarning("unknown fold Level"));
}

TEST_F(SyxReader, StandardExtensionsTakesOnlyTheFirstLine) {
    Load("[StandardExtensions]\nExt=.a .b\nMore=.c\n");
    EXPECT_EQ(FSyntax.FStandardFileExtensions, u".a .b");
}

TEST_F(SyxReader, WithoutAnEditorOnlyTheNameListsAreRead) {
    const auto file =
        WriteFile(FDir.Path() / "n.syx", "[Options]\nLineCommentA=//\n\n[Fold]\nF_Id=x\n\n"
                                         "[Keywords]\nK=a\n\n[Tags]\nT=b\n\n[Block]\nB_Name=c\n");
    ASSERT_TRUE(FSyntax.LoadStyleFromFile(nullptr, U16(file), u"N", 0, u""));
    const auto& s = FSyntax.LastStyles();
    EXPECT_TRUE(s->FLineCommentA.empty());
    EXPECT_TRUE(s->FNodes.empty());
    EXPECT_EQ(FSyntax.KeyWords, TStringList{u"K"});
    EXPECT_EQ(FSyntax.Tags, TStringList{u"T"});
    EXPECT_EQ(FSyntax.Blocks, TStringList{u"c"});
    FSyntax.Clear();
    EXPECT_TRUE(FSyntax.KeyWords.empty() && FSyntax.Tags.empty() && FSyntax.Blocks.empty());
}

TEST_F(SyxReader, Utf16AndUtf8FilesReadAlike) {
    const std::u16string text =
        u"\uFEFF[Keywords]\r\nGr\u00fc\u00dfe=\u00e4\u00f6\u00fc|\U0001F600\r\n";
    std::string le;
    for (char16_t c : text) {
        le += char(c & 0xFF);
        le += char(c >> 8);
    }
    auto a = Load(le, "le.syx");
    ASSERT_TRUE(a);
    auto b = Load(Utf16ToUtf8(text), "utf8.syx");
    ASSERT_TRUE(b);
    ASSERT_EQ(a->FKeyWords.size(), 1u);
    EXPECT_EQ(a->FKeyWords[0].Name, b->FKeyWords[0].Name);
    EXPECT_EQ(a->FKeyWords[0].KeyWords.Words(), b->FKeyWords[0].KeyWords.Words());
    EXPECT_TRUE(b->FKeyWords[0].KeyWords.Contains(u"\U0001F600", true));
    EXPECT_TRUE(FSyntax.Warnings.empty());
}

TEST_F(SyxReader, MissingFileLeavesTheEditorWithoutStyles) {
    Load("[Keywords]\nA=b\n");
    ASSERT_TRUE(FMemo.FStyles);
    EXPECT_FALSE(FSyntax.LoadStyleFromFile(&FMemo, U16(FDir.Path() / "none.syx"), u"X", 0, u""));
    EXPECT_FALSE(FMemo.FStyles);
    EXPECT_FALSE(FMemo.FStylesThread);
    EXPECT_FALSE(FSyntax.Warnings.empty());
}

TEST(SyxDirective, ParsesBothFormsAndRejectsOthers) {
    auto d = ParseSyxDirective(u"\uFEFF  ;{$PHP;php.syx}  ");
    ASSERT_TRUE(d);
    EXPECT_EQ(d->Type, u"PHP");
    EXPECT_EQ(d->File, u"php.syx");
    EXPECT_TRUE(d->Language.empty());
    d = ParseSyxDirective(u";{$HTML5;html.syx|php.syx}");
    ASSERT_TRUE(d);
    EXPECT_EQ(d->Language, u"php.syx");
    for (std::u16string_view bad : {u";{$", u";{$x}", u";{$;f}", u"{$a;b}", u"; comment"})
        EXPECT_FALSE(ParseSyxDirective(bad)) << Utf16ToUtf8(bad);
}

} // namespace
} // namespace zv
