// The scanner's rules on the shipped syntaxes: the cases a reader of a coloured file would
// notice first (numbers, strings on one line, comments, blocks, here-documents, embedded
// languages, wrapped line comments) and the edit rule's reach.
#include "ScanTestSupport.h"

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

// The coloured runs of every row of a document, as "kind:text" items.
TEST(ScanRules, RowsColourAsAReaderOfTheFileExpects) {
    using TRows = std::vector<std::vector<std::string>>;
    const struct {
        const char* Syntax;
        std::u16string Text;
        TRows Rows;
    } cases[] = {
        // Numbers: "1e" colours the "1" only; a digit separator is no char literal.
        {"c",
         u"a = 0x1F + 0x1FG + 1e + 1e5 + 2.5f + 1'000;",
         {{"symbol:=", "hexnumber:0x1F", "symbol:+", "symbol:+", "number:1", "symbol:+",
           "number:1e5", "symbol:+", "number:2.5f", "symbol:+", "number:1'000", "symbol:;"}}},
        {"c",
         u"return \"a\\\"b // no\" + 'x'; // yes \"\n/* one\n two */ int",
         {{"keyword:return", "string:\"a\\\"b // no\"", "symbol:+", "char:'x'", "symbol:;",
           "linecomment:// yes \""},
          {"comment:/* one"},
          {"comment: two */", "keyword:int"}}},
        // A string left open on a line does not colour the next.
        {"c", u"s = \"open\nint x;", {{"symbol:=", "string:\"open"}, {"keyword:int", "symbol:;"}}},
        // Shell: single quotes know no escapes, double quotes do.
        {"shell",
         u"a='\\' # one\nb=\"\\\" # in\" # two",
         {{"symbol:=", "char:'\\'", "linecomment:# one"},
          {"symbol:=", "string:\"\\\" # in\"", "linecomment:# two"}}},
        // The documentation group never colours a plain word.
        {"c",
         u"x = @param;\n/** @param a */",
         {{"symbol:=", "symbol:;"}, {"doccomment:/** @param a */"}}},
        // A word longer than any keyword is never one, whatever it starts with.
        {"c", u"int int" + std::u16string(48, u'x'), {{"keyword:int"}}},
        // The preprocessor line block ends with its row.
        {"c",
         u"#include \"a.h\" /* c */\nint x;",
         {{"block:#include ", "string:\"a.h\"", "block: ", "comment:/* c */"},
          {"keyword:int", "symbol:;"}}},
        // Python's triple quotes span rows as one string.
        {"python",
         u"x = \"\"\"Don't\nstop # here\n\"\"\" # real",
         {{"symbol:=", "block:\"\"\"Don't"},
          {"block:stop # here"},
          {"block:\"\"\"", "linecomment:# real"}}},
        // A shell here-document runs to its word.
        {"shell",
         u"cat <<'EOF' | sort\nbody # not a comment \"\n  EOF\necho # c",
         {{"string:<<'EOF'", "symbol:|"},
          {"string:body # not a comment \""},
          {"string:EOF"},
          {"keyword:echo", "linecomment:# c"}}},
    };
    for (const auto& c : cases) {
        TScanDoc d(c.Syntax, c.Text);
        TRows rows;
        for (int row = 0; row < d.Store.Count(); ++row)
            rows.push_back(d.Tokens(row));
        EXPECT_EQ(rows, c.Rows) << c.Syntax << ": " << Utf16ToUtf8(c.Text);
    }
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

TEST(ScanRules, PartialScanLeavesALineBlockOpen) {
    TScanDoc d("c", u"#define X 1");
    TStyle state;
    ClearStyle(state, true);
    d.Scanner->GetUpLineStyle(0, 1, 5, state);
    EXPECT_EQ(state.Block.Id, 0);
    d.Scanner->GetUpLineStyle(0, 0, -1, state);
    EXPECT_EQ(state.Block.Id, -1);
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

// The edit rule's reach: typing that keeps a row's end state redraws that row alone; one that
// changes it (a comment or here-document opened, or only the brace depth, which the brace
// colours below depend on) redraws every row below. Rows below the reach keep their states
// over random edits: ScanProperties.
TEST(ScanRules, AnEditRedrawsToWhereTheEndStateStopsChanging) {
    const struct {
        const char* Syntax;
        std::u16string_view Text, Typed;
        int Row, Column;
        TRedrawRange Expected;
    } cases[] = {
        {"c", u"int a;\nint b;\nint c;", u"x", 1, 5, {1, 1}},
        {"c", u"int a;\nint b;\nint c;\nint d;", u"/* ", 1, 1, {1, -1}},
        {"c", u"int a;\nint b;\nf(x);\ng(y);", u"(", 1, 1, {1, -1}},
        {"shell", u"echo a\necho b\necho c", u" <<END", 0, 7, {0, -1}},
    };
    for (const auto& c : cases) {
        TScanDoc d(c.Syntax, c.Text);
        d.SweepAll();
        d.Store.InsertAt(c.Row, c.Typed, c.Column);
        d.Scanner->ClearLineStylesFrom(c.Row);
        EXPECT_EQ(d.Scanner->InvalidateLine(c.Row), c.Expected) << Utf16ToUtf8(c.Typed);
        d.SweepAll();
        d.ExpectStatesFresh(c.Syntax);
    }
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
