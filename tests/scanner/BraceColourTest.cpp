// Brace and tag-pair matching, depth colours of braces, each token kind's own style, colour
// values in text, and the queries by position (token, set, tag or block, comment or string).
#include "ScanTestSupport.h"

#include "syntax/BraceMatch.h"
#include "syntax/ColorAt.h"

#include <set>

namespace zv::test {
namespace {

// Pairs over strings, comments and rows: RowFacts, against a plain lexer.
TEST(BraceMatch, AnOpenerWithoutPartnerIsFoundButUnmatched) {
    TScanDoc d("c", u"f(a) {\n) {");
    const TBracePair open = FindBracePair(*d.Scanner, 2, 1, false);
    EXPECT_EQ(open.Left, (TBracePoint{2, 1}));
    EXPECT_FALSE(open.Matched);
}

TEST(BraceMatch, NearestEnclosingPairWhenInside) {
    TScanDoc d("c", u"{ a[1] (b, c) }");
    EXPECT_EQ(FindBracePair(*d.Scanner, 9, 0, false).Left.x, -1);
    const TBracePair p = FindBracePair(*d.Scanner, 9, 0, true);
    EXPECT_EQ(p.Left, (TBracePoint{7, 0}));
    EXPECT_EQ(p.Right, (TBracePoint{12, 0}));
    const TBracePair outer = FindBracePair(*d.Scanner, 14, 0, true);
    EXPECT_EQ(outer.Left, (TBracePoint{0, 0}));
    EXPECT_EQ(outer.Right, (TBracePoint{14, 0}));
}

TEST(BraceMatch, MultiColourBracesTakeTheirDepth) {
    TScanDoc d("c", u"((x)) {\n(y) }");
    TColourOptions o;
    o.FMultiColorBraces = true;
    std::vector<TColor> colours;
    for (int row = 0; row < 2; ++row)
        for (const TColourRun& r : RowRuns(*d.Scanner, row))
            if (r.Info.Kind == TTokenKind::Brace)
                colours.push_back(RunStyle(r, o).FTextColor);
    const auto& c = o.FBraceColors;
    EXPECT_EQ(colours, (std::vector<TColor>{c[0], c[1], c[1], c[0], c[0], c[0], c[0], c[0]}));
}

// With a colour of its own for every style of a set, each kind is painted in a colour no other
// kind takes; with the styles that may be left out unset, those kinds take their fallback.
TEST(KindStyle, EachKindHasItsOwnStyleAndTheOptionalOnesFallBack) {
    TZvCustomMemoStyles set;
    TColor next = 0x100;
    for (TCharStyle* s : {&set.FCharStyle, &set.FStringStyle, &set.FCommentStyle,
                          &set.FLineCommentStyle, &set.FNumberStyle, &set.FHexNumberStyle,
                          &set.FSymbolsStyle, &set.FAttributeName, &set.FAttributeValue})
        s->FTextColor = next++;
    set.FTagColor = next++;
    const TTokenKind kinds[] = {
        TTokenKind::Comment,       TTokenKind::LineComment,   TTokenKind::String, TTokenKind::Char,
        TTokenKind::Number,        TTokenKind::HexNumber,     TTokenKind::Symbol, TTokenKind::Tag,
        TTokenKind::AttributeName, TTokenKind::AttributeValue};
    const auto colourOf = [&](TTokenKind kind) {
        TColourRun run{0, 1, {}};
        run.Info.Kind = kind;
        run.Info.Set = &set;
        return RunStyle(run, {}).FTextColor;
    };
    std::set<TColor> seen;
    for (TTokenKind kind : kinds)
        EXPECT_TRUE(seen.insert(colourOf(kind)).second) << "kind " << int(kind);
    const std::pair<TCharStyle*, std::pair<TTokenKind, TTokenKind>> optional[] = {
        {&set.FLineCommentStyle, {TTokenKind::LineComment, TTokenKind::Comment}},
        {&set.FCharStyle, {TTokenKind::Char, TTokenKind::String}},
        {&set.FHexNumberStyle, {TTokenKind::HexNumber, TTokenKind::Number}},
        {&set.FAttributeValue, {TTokenKind::AttributeValue, TTokenKind::String}}};
    for (const auto& [style, kinds] : optional) {
        style->FTextColor = kNoColor;
        EXPECT_EQ(colourOf(kinds.first), colourOf(kinds.second)) << "kind " << int(kinds.first);
    }
}

TEST(TagPair, OpeningTagFindsItsClosingTagOverNestingAndVoidTags) {
    TScanDoc d("html", u"<div id=\"a\">\n <div><br><img src=x></div>\n</div>");
    // "<div" at (0, 0), its ">" at (11, 0), "</div" at (0, 2).
    EXPECT_EQ(CheckTagsToHighlight(*d.Scanner, 1, 0), (TTagPosData{0, 0, 4, 0, 11, 1, 2, 0, 5}));
    EXPECT_EQ(CheckTagsToHighlight(*d.Scanner, 6, 1).EndY, -1); // <br> has no partner
    // The caret on either closing tag gives the same pair as on its opening tag.
    EXPECT_EQ(CheckTagsToHighlight(*d.Scanner, 2, 2), CheckTagsToHighlight(*d.Scanner, 1, 0));
    EXPECT_EQ(CheckTagsToHighlight(*d.Scanner, 26, 1), CheckTagsToHighlight(*d.Scanner, 2, 1));
    EXPECT_EQ(CheckTagsToHighlight(*d.Scanner, 2, 1).EndX, 21);
}

TEST(TagPair, SelfClosedTagsPairWithNothingAndNestNothing) {
    TScanDoc d("xml", u"<a><a/><b>\n<a x=\"1\"/></b></a>");
    const TTagPosData outer = CheckTagsToHighlight(*d.Scanner, 1, 0);
    EXPECT_EQ((std::pair{outer.EndY, outer.EndX}), (std::pair{1, 14}));
    EXPECT_EQ(CheckTagsToHighlight(*d.Scanner, 17, 1), outer);
    const TTagPosData self = CheckTagsToHighlight(*d.Scanner, 4, 0);
    EXPECT_EQ((std::pair{self.StartX, self.EndY}), (std::pair{3, -1}));
}

TEST(ColourValue, FormsBySyntax) {
    EXPECT_EQ(GetColorAtXY(u"color: #A0b; x", 9, u"css"), u"#aa00bb");
    EXPECT_EQ(GetColorAtXY(u"c = \"#12345678\"", 7, u"c"), u"#123456");
    EXPECT_EQ(GetColorAtXY(u"a: rgb(255, 0, 50%)", 8, u"c"), u"#ff0080");
    EXPECT_EQ(GetColorAtXY(u"hsl(120, 100%, 50%)", 1, u"css"), u"#00ff00");
    EXPECT_EQ(GetColorAtXY(u"hsl(120, 100%, 50%)", 1, u"c"), u"#ffffff");
    EXPECT_EQ(GetColorAtXY(u"$ff8000", 2, u"less"), u"#ff8000");
    EXPECT_EQ(GetColorAtXY(u"$ff8000", 2, u"c"), u"#ffffff");
    const TNamedColour named = [](std::u16string_view n) -> std::optional<std::u16string> {
        if (n == u"red")
            return u"#ff0000";
        return {};
    };
    EXPECT_EQ(GetColorAtXY(u"color: red;", 8, u"Html", named), u"#ff0000");
    EXPECT_EQ(GetColorAtXY(u"#12", 1, u"css"), u"#ffffff");
}

TEST(TokenQueries, AnswerByTheWalkUpToThePosition) {
    TScanDoc d("html", u"<div class=\"a\">text</div>\n<script>\nvar s = \"q\"; /* c\n*/ x = 1;"
                       u"</script>\n<style>p { margin: 0 }</style>");
    const auto& host = d.Host;
    ASSERT_TRUE(host.FHtmlStyleJS && host.FHtmlStyleCSS);
    // The set in force: HTML outside, the embedded language inside its element.
    EXPECT_EQ(GetStyleAt(*d.Scanner, 2, 0), host.FStyles.get());
    EXPECT_EQ(GetStyleAt(*d.Scanner, 1, 2), host.FHtmlStyleJS.get());
    EXPECT_EQ(GetStyleAt(*d.Scanner, 3, 3), host.FHtmlStyleJS.get());
    EXPECT_EQ(GetStyleAt(*d.Scanner, 11, 4), host.FHtmlStyleCSS.get());
    // The token under a position and the one ending left of it.
    const TTokenAt var = TokenAtXY(*d.Scanner, 2, 2);
    EXPECT_TRUE(var.Found);
    EXPECT_EQ(var.Kind, TTokenKind::Keyword);
    EXPECT_EQ(var.Start, 0);
    EXPECT_EQ(var.Length, 3);
    const TTokenAt left = TokenAtLeftOfXY(*d.Scanner, 3, 2);
    EXPECT_EQ(left.Kind, TTokenKind::Keyword);
    EXPECT_EQ(left.Start, 0);
    EXPECT_FALSE(TokenAtLeftOfXY(*d.Scanner, 0, 2).Found);
    EXPECT_FALSE(TokenAtXY(*d.Scanner, 99, 2).Found);
    EXPECT_EQ(TokenAtXY(*d.Scanner, 9, 2).Kind, TTokenKind::String);
    EXPECT_EQ(TokenAtXY(*d.Scanner, 0, 3).Kind, TTokenKind::Comment); // the comment's second row
    // Tag or block, comment or string: the state behind the position.
    EXPECT_TRUE(IsInTagOrBlock(*d.Scanner, 6, 0));   // in "<div class"
    EXPECT_FALSE(IsInTagOrBlock(*d.Scanner, 17, 0)); // in "text"
    EXPECT_TRUE(IsInCommentOrString(*d.Scanner, 10, 2));
    EXPECT_FALSE(IsInCommentOrString(*d.Scanner, 4, 2));
    EXPECT_TRUE(IsInCommentOrString(*d.Scanner, 16, 2)); // behind "/* c"
    EXPECT_FALSE(IsInCommentOrString(*d.Scanner, 4, 3)); // behind "*/ x"
}

} // namespace
} // namespace zv::test
