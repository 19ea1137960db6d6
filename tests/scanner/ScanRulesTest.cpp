// The scanner's rules on the shipped syntaxes: the cases a reader of a coloured file would
// notice first (numbers, strings on one line, comments, blocks, here-documents, embedded
// languages, wrapped line comments) and the edit rule's reach.
#include "ScanTestSupport.h"

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

TEST(ScanRules, NumbersHexAndExponents) {
    TScanDoc d("c", u"a = 0x1F + 0x1FG + 1e + 1e5 + 2.5f + 1'000;");
    EXPECT_THAT(d.Tokens(0), Contains("hexnumber:0x1F"));
    EXPECT_THAT(d.Tokens(0), Not(Contains("hexnumber:0x1FG")));
    EXPECT_THAT(d.Tokens(0), Contains("number:1")); // "1e" colours the "1" only
    EXPECT_THAT(d.Tokens(0), Contains("number:1e5"));
    EXPECT_THAT(d.Tokens(0), Contains("number:2.5f"));
    EXPECT_THAT(d.Tokens(0), Contains("number:1'000")); // a digit separator is no char literal
}

TEST(ScanRules, StringsCommentsAndKeywords) {
    TScanDoc d("c", u"return \"a\\\"b // no\" + 'x'; // yes \"\n/* one\n two */ int");
    EXPECT_THAT(d.Tokens(0), ElementsAre("keyword:return", "string:\"a\\\"b // no\"", "symbol:+",
                                         "char:'x'", "symbol:;", "linecomment:// yes \""));
    EXPECT_THAT(d.Tokens(1), ElementsAre("comment:/* one"));
    EXPECT_THAT(d.Tokens(2), ElementsAre("comment: two */", "keyword:int"));
}

TEST(ScanRules, StringLeftOpenOnALineDoesNotColourTheNext) {
    TScanDoc d("c", u"s = \"open\nint x;");
    EXPECT_THAT(d.Tokens(0), Contains("string:\"open"));
    EXPECT_THAT(d.Tokens(1), Contains("keyword:int"));
}

TEST(ScanRules, ShellSingleQuotesKnowNoEscapesDoubleQuotesDo) {
    TScanDoc d("shell", u"a='\\' # one\nb=\"\\\" # in\" # two");
    EXPECT_THAT(d.Tokens(0), Contains("char:'\\'"));
    EXPECT_THAT(d.Tokens(0), Contains("linecomment:# one"));
    EXPECT_THAT(d.Tokens(1), Contains("string:\"\\\" # in\""));
    EXPECT_THAT(d.Tokens(1), Contains("linecomment:# two"));
}

TEST(ScanRules, DocGroupNeverColoursAPlainWord) {
    TScanDoc d("c", u"x = @param;\n/** @param a */");
    EXPECT_THAT(d.Tokens(0), Not(Contains("keyword:param")));
    EXPECT_THAT(d.Tokens(1), ElementsAre("doccomment:/** @param a */"));
}

TEST(ScanRules, LongWordIsNeverAKeyword) {
    const std::u16string word = u"int" + std::u16string(48, u'x');
    TScanDoc d("c", u"int " + word);
    EXPECT_THAT(d.Tokens(0), ElementsAre("keyword:int"));
}

TEST(ScanRules, UrlInsideACommentIsOneRun) {
    TScanDoc d("c", u"// see https://example.org/x?y=1 now\nx = 1; http://a.b/c");
    const auto runs = RowRuns(*d.Scanner, 0);
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(runs[1].Info.Kind, TTokenKind::Url);
    EXPECT_EQ(runs[1].Info.Outer, TTokenKind::LineComment);
    EXPECT_EQ(runs[1].Length, 25);
    EXPECT_THAT(d.Tokens(1), Contains("url:http://a.b/c")); // its "//" opens no comment
}

TEST(ScanRules, PreprocessorLineBlockEndsWithTheRow) {
    TScanDoc d("c", u"#include \"a.h\" /* c */\nint x;");
    EXPECT_THAT(d.Tokens(0),
                ElementsAre("block:#include ", "string:\"a.h\"", "block: ", "comment:/* c */"));
    EXPECT_THAT(d.Tokens(1), Contains("keyword:int"));
    EXPECT_EQ(d.Scanner->GetUpStyle(0).Block.Id, -1);
}

TEST(ScanRules, PartialScanLeavesALineBlockOpen) {
    TScanDoc d("c", u"#define X 1");
    TStyle state;
    ClearStyle(state, true);
    d.Scanner->GetUpLineStyle(0, 1, 5, state);
    EXPECT_EQ(state.Block.Id, 0);
    d.Scanner->GetUpLineStyle(0, 0, -1, state);
    EXPECT_EQ(state.Block.Id, -1);
}

TEST(ScanRules, PythonTripleQuotesSpanRowsAsOneString) {
    TScanDoc d("python", u"x = \"\"\"Don't\nstop # here\n\"\"\" # real");
    EXPECT_THAT(d.Tokens(1), ElementsAre("block:stop # here"));
    EXPECT_THAT(d.Tokens(2), ElementsAre("block:\"\"\"", "linecomment:# real"));
}

TEST(ScanRules, ShellHereDocumentRunsToItsWord) {
    TScanDoc d("shell", u"cat <<'EOF' | sort\nbody # not a comment \"\n  EOF\necho # c");
    EXPECT_THAT(d.Tokens(0), Contains("string:<<'EOF'"));
    EXPECT_THAT(d.Tokens(1), ElementsAre("string:body # not a comment \""));
    EXPECT_THAT(d.Tokens(2), ElementsAre("string:EOF"));
    EXPECT_THAT(d.Tokens(3), Contains("linecomment:# c"));
}

TEST(ScanRules, HtmlWithEmbeddedScriptStyleAndPhp) {
    TScanDoc d("html", u"<p class=\"x\">text &amp; more</p>\n<script type=\"t\">\nconst a = 1; "
                       u"// c </script><b>\n<style>p { margin: 0 }</style>\n<?php echo 1; ?>");
    ASSERT_TRUE(d.Host.FHtmlStyleJS && d.Host.FHtmlStyleCSS && d.Host.FHtmlStylePHP);
    EXPECT_THAT(d.Tokens(0),
                ElementsAre("tag:<p", "attribute:class", "symbol:=", "attributevalue:\"x\"",
                            "tag:>", "block:&amp;", "tag:</p", "tag:>"));
    const auto runs = RowRuns(*d.Scanner, 2);
    ASSERT_FALSE(runs.empty());
    EXPECT_EQ(runs[0].Info.Kind, TTokenKind::Keyword);
    EXPECT_EQ(runs[0].Info.Set, d.Host.FHtmlStyleJS.get());
    EXPECT_THAT(d.Tokens(2), Contains("linecomment:// c "));
    EXPECT_THAT(d.Tokens(2), Contains("tag:</script"));
    EXPECT_THAT(d.Tokens(2), Contains("tag:<b"));
    EXPECT_THAT(d.Tokens(4), Contains("servertag:<?php"));
    EXPECT_THAT(d.Tokens(4), Contains("servertag:?>"));
    const TStyle end = d.Scanner->GetUpStyle(4);
    EXPECT_FALSE(end.Properties.Get(spInScript));
}

TEST(ScanRules, LineCommentContinuesOnItsWrappedRow) {
    TScanOptions wrap;
    wrap.FWordWrap = true;
    TScanDoc d("c", u"", wrap);
    d.Store.AddWrappedFirst(u"int a; // a long", d.Store.CreateAttribute());
    d.Store.AddWrapped(u"comment int");
    d.Store.Add(u"int b;");
    ASSERT_TRUE(d.Store.IsLineWrapped(2));
    const int first = d.Store.Count() - 3;
    EXPECT_THAT(d.Tokens(first + 1), ElementsAre("linecomment:comment int"));
    EXPECT_THAT(d.Tokens(first + 2), Contains("keyword:int"));
}

TEST(ScanRules, OpeningABlockCommentRecoloursEveryRowBelow) {
    TScanDoc d("c", u"int a;\nint b;\nint c;\nint d;");
    d.SweepAll();
    d.Store.InsertAt(1, u"/* ", 1);
    d.Scanner->ClearLineStylesFrom(1);
    EXPECT_EQ(d.Scanner->InvalidateLine(1), (TRedrawRange{1, -1}));
    EXPECT_THAT(d.Tokens(3), ElementsAre("comment:int d;"));
    // Closing it on the last row needs no further keystroke for the rows in between.
    d.Store.InsertAt(3, u" */", 7);
    d.Scanner->ClearLineStylesFrom(3);
    d.Scanner->InvalidateLine(3);
    d.SweepAll();
    d.ExpectStatesFresh("closed");
}

TEST(ScanRules, TypingThatKeepsTheEndStateRedrawsOneRowAndKeepsTheRest) {
    TScanDoc d("c", u"int a;\nint b;\nint c;");
    d.SweepAll();
    d.Store.InsertAt(1, u"x", 5);
    d.Scanner->ClearLineStylesFrom(1);
    EXPECT_EQ(d.Scanner->InvalidateLine(1), (TRedrawRange{1, 1}));
    EXPECT_EQ(d.Scanner->States().ValidRows(), d.Store.Count());
    d.ExpectStatesFresh("typed");
    // A here-document opener changes the end state: everything below is redrawn.
    TScanDoc sh("shell", u"echo a\necho b\necho c");
    sh.SweepAll();
    sh.Store.InsertAt(0, u" <<END", 7);
    sh.Scanner->ClearLineStylesFrom(0);
    EXPECT_EQ(sh.Scanner->InvalidateLine(0), (TRedrawRange{0, -1}));
    EXPECT_THAT(sh.Tokens(2), ElementsAre("string:echo c"));
}

TEST(ScanRules, AnEndStateChangeBeyondCommentsAndStringsRedrawsEveryRowBelow) {
    // An opening brace changes only the nesting depth of the end state, which the brace
    // colours of every row below depend on.
    TScanDoc d("c", u"int a;\nint b;\nf(x);\ng(y);");
    d.SweepAll();
    d.Store.InsertAt(1, u"(", 1);
    d.Scanner->ClearLineStylesFrom(1);
    EXPECT_EQ(d.Scanner->InvalidateLine(1), (TRedrawRange{1, -1}));
    TStyle end;
    const auto runs = RowRuns(*d.Scanner, 3, &end);
    ASSERT_FALSE(runs.empty());
    EXPECT_EQ(end.Properties.Brace1Level, 1) << "g(y) lies inside the new parenthesis";
    d.SweepAll();
    d.ExpectStatesFresh("brace");
}

TEST(ScanRules, CacheWalkStartsFreshAtABlankRowFarUp) {
    std::u16string text = u"/* open\n\n";
    for (int i = 0; i < 150; ++i)
        text += u"int x;\n";
    TScanDoc d("c", text);
    // No state is stored: row 151 is more than 100 rows below the blank row 1.
    EXPECT_FALSE(d.Scanner->GetUpStyle(151).Properties.Get(spInComment));
    EXPECT_EQ(d.Scanner->States().ValidRows(), 0);
    // Without a blank row the walk goes to the top and sees the open comment.
    std::u16string solid = u"/* open\n";
    for (int i = 0; i < 300; ++i)
        solid += u"int x;\n";
    TScanDoc s("c", solid);
    EXPECT_TRUE(s.Scanner->GetUpStyle(299).Properties.Get(spInComment));
    EXPECT_EQ(s.Scanner->States().ValidRows(), 300);
}

} // namespace
} // namespace zv::test
