// HTML with embedded languages: sub-syntaxes in their slots, the user's folder, the
// server-language override, and missing files.
#include "SyntaxTestFiles.h"

#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::TTempDir;
using test::U16;
using test::WriteFile;

class MultiSyntax : public ::testing::Test {
protected:
    void SetUp() override {
        WriteFile(Syntax() / "html.syx", "[Tags]\nT=html|body\n");
        WriteFile(Syntax() / "HtmlMulti.ini",
                  "[Highlighters]\n1=asp.syx\n2=PHP.syx\n3=js.syx\n5=css.syx\n7=missing.syx\n");
        WriteFile(Syntax() / "php.syx", "[Keywords]\nK=echo\n");
        WriteFile(Syntax() / "css.syx", "[Keywords]\nK=color\n");
        WriteFile(Syntax() / "asp.syx", "[Keywords]\nK=dim\n");
        WriteFile(Syntax() / "vb.syx", "[Keywords]\nK=sub\n");
        // The user's copy of css wins; a user file without a standard namesake is not used.
        WriteFile(Syntax() / "User defined" / "css.syx", "[Keywords]\nK=margin\n");
        WriteFile(Syntax() / "User defined" / "js.syx", "[Keywords]\nK=var\n");
    }
    std::filesystem::path Syntax() const { return FDir.Path() / "Syntax"; }
    bool Load(std::u16string_view asp = u"", const char* file = "html.syx") {
        return FSyntax.LoadStyleFromFile(&FMemo, U16(Syntax() / file), u"HTML", 1, asp);
    }

    TTempDir FDir;
    TZvSyntax FSyntax;
    TMemoStyleHost FMemo;
};

TEST_F(MultiSyntax, EmbeddedLanguagesFillTheirSlots) {
    // The file name is recognised without regard to case.
    WriteFile(Syntax() / "HTML.SYX", "[Tags]\nT=html|body\n");
    ASSERT_TRUE(Load(u"", "HTML.SYX"));
    ASSERT_TRUE(FMemo.FStyles);
    EXPECT_EQ(FMemo.FStyles->ScriptType.load(), scHtml);
    EXPECT_EQ(FMemo.FHtmlStyle, FMemo.FStyles);
    ASSERT_TRUE(FMemo.FHtmlStylePHP); // "PHP.syx" found by a case-insensitive match
    EXPECT_EQ(FMemo.FHtmlStylePHP->ScriptType.load(), scPHP);
    EXPECT_EQ(FMemo.FHtmlStylePHP->FindKeyword(u"echo", true), 0);
    ASSERT_TRUE(FMemo.FHtmlStyleCSS);
    EXPECT_EQ(FMemo.FHtmlStyleCSS->FindKeyword(u"margin", true), 0);
    EXPECT_FALSE(FMemo.FHtmlStyleJS); // only in "User defined": not looked at
    EXPECT_FALSE(FMemo.FHtmlStyleSVG);
    ASSERT_TRUE(FMemo.FHtmlStyleASP);
    EXPECT_EQ(FMemo.FASPLanguage, u"asp.syx");
    EXPECT_EQ(FMemo.FASPXLanguage, 1); // the language flag is carried to the editor
    EXPECT_EQ(FMemo.FStyles->FHtmlHighlighterCSS, u"css.syx");
    EXPECT_TRUE(FMemo.IsHtml);
    // The parent's lists are its own, not those of the last sub-syntax.
    EXPECT_EQ(FSyntax.Tags, TStringList{u"T"});
    EXPECT_TRUE(FSyntax.KeyWords.empty());
    bool missingReported = false;
    for (const auto& w : FSyntax.Warnings)
        missingReported |= w.find("missing.syx") != std::string::npos;
    EXPECT_TRUE(missingReported);
}

TEST_F(MultiSyntax, ServerLanguageParameterReplacesKeyOne) {
    ASSERT_TRUE(Load(u"vb.syx"));
    ASSERT_TRUE(FMemo.FHtmlStyleASP);
    EXPECT_EQ(FMemo.FHtmlStyleASP->FindKeyword(u"sub", true), 0);
    EXPECT_EQ(FMemo.FASPLanguage, u"vb.syx");
}

TEST_F(MultiSyntax, AspxReadsItsOwnFileAndNotTheUsersFolder) {
    WriteFile(Syntax() / "aspx.syx", "[Tags]\nT=form|label\n");
    WriteFile(Syntax() / "ASPXMulti.ini",
              "[Highlighters]\nCodeLang1=php.syx\nCodeLang2=vb.syx\n1=css.syx\n");
    ASSERT_TRUE(Load(u"asp.syx", "aspx.syx")); // the server-language parameter is for HTML only
    EXPECT_EQ(FMemo.FStyles->ScriptType.load(), scHtml);
    for (auto [slot, type] :
         {std::pair{&FMemo.FHtmlStyleASP, scASP}, {&FMemo.FHtmlStyleJS, scJS}}) {
        ASSERT_TRUE(*slot);
        EXPECT_EQ((*slot)->ScriptType.load(), type);
        EXPECT_EQ((*slot)->FindKeyword(u"echo", true), 0); // CodeLang1 serves both
    }
    ASSERT_TRUE(FMemo.FHtmlStyleVB && FMemo.FHtmlStyleCSS);
    EXPECT_EQ(FMemo.FHtmlStyleVB->FindKeyword(u"sub", true), 0);
    EXPECT_EQ(FMemo.FHtmlStyleCSS->FindKeyword(u"color", true), 0); // not the user's copy
    EXPECT_FALSE(FMemo.FHtmlStylePHP);
    EXPECT_TRUE(FMemo.FASPLanguage.empty());

    std::filesystem::remove(Syntax() / "ASPXMulti.ini"); // without it: no embedded language
    FMemo.FreeSyntaxStyles(); // as a new document's syntax does before loading
    ASSERT_TRUE(Load(u"", "aspx.syx"));
    EXPECT_FALSE(FMemo.FHtmlStyleASP || FMemo.FHtmlStyleJS || FMemo.FHtmlStyleCSS);
}

TEST_F(MultiSyntax, ListFormLoadsNoEmbeddedLanguages) {
    WriteFile(Syntax() / "html.ini", "[Comment]\n1=Web pages\n2=second\n4=gap\n[Sample]\n1=<p>\n");
    TStringList comments, samples;
    ASSERT_TRUE(
        FSyntax.LoadStyleFromFile(&FMemo, U16(Syntax() / "html.syx"), u"HTML", comments, samples));
    EXPECT_EQ(comments, (TStringList{u"Web pages", u"second"}));
    EXPECT_EQ(samples, TStringList{u"<p>"});
    EXPECT_FALSE(FMemo.FHtmlStylePHP);
    EXPECT_FALSE(FSyntax.FHtmlMultiLoading);
    EXPECT_FALSE(
        FSyntax.LoadStyleFromFile(&FMemo, U16(Syntax() / "no.syx"), u"X", comments, samples));
}

TEST_F(MultiSyntax, FreeingReleasesEverySetOnce) {
    ASSERT_TRUE(Load());
    std::weak_ptr<TZvCustomMemoStyles> html = FMemo.FStyles, php = FMemo.FHtmlStylePHP;
    FMemo.FreeSyntaxStyles();
    EXPECT_TRUE(html.expired());
    EXPECT_TRUE(php.expired());
}

} // namespace
} // namespace zv

namespace zv {
namespace {

class RegionSwitch : public ::testing::Test {
protected:
    void SetUp() override {
        TZvSyntax syntax;
        ASSERT_TRUE(syntax.LoadStyleFromFile(
            &FMemo, test::U16(test::ShippedSyntaxFolder() / "html.syx"), u"HTML", 1, u""));
        FMemo.FHtmlMultiSyntax = true;
        FState.ScriptType = scHtml;
    }
    TMemoStyleHost FMemo;
    TStyleProperties FState;
};

TEST_F(RegionSwitch, EnteringAndLeavingAScriptRegion) {
    const TStylesPtr html = FMemo.FStyles;
    FMemo.SetHtmlStylePointer(scJS, FState, true, false);
    EXPECT_EQ(FMemo.FStyles, FMemo.FHtmlStyleJS);
    EXPECT_EQ(FMemo.FOldStyles, html);
    EXPECT_EQ(FState.ScriptType, scJS);
    EXPECT_EQ(FState.ScriptTypeOld, scHtml);
    EXPECT_EQ(FMemo.FStylesThread, html); // the scanner's reference is its own
    FMemo.SetHtmlStylePointer(scNone, FState, false, false);
    EXPECT_EQ(FMemo.FStyles, html);
    EXPECT_EQ(FState.ScriptType, scHtml);
}

TEST_F(RegionSwitch, EmptySlotsAndSwitchedOffMultiSyntaxChangeNothing) {
    const TStylesPtr html = FMemo.FStyles;
    FMemo.SetHtmlStylePointer(scCF, FState, true, false); // no ColdFusion syntax shipped
    EXPECT_EQ(FMemo.FStyles, html);
    FMemo.FHtmlMultiSyntax = false;
    FMemo.SetHtmlStylePointer(scCSS, FState, true, true);
    EXPECT_EQ(FMemo.FStylesThread, html);
    EXPECT_EQ(FState.ScriptType, scHtml);
}

TEST_F(RegionSwitch, StyleInsideSvgReturnsToSvg) {
    ASSERT_TRUE(FMemo.FHtmlStyleSVG);
    FMemo.SetHtmlStylePointer(scSVG, FState, true, true);
    EXPECT_EQ(FMemo.FStylesThread, FMemo.FHtmlStyleSVG);
    EXPECT_EQ(FMemo.FOldStylesThread, FMemo.FHtmlStyle);
    FMemo.SetHtmlStylePointer(scCSS, FState, true, true);
    EXPECT_EQ(FMemo.FStylesThread, FMemo.FHtmlStyleCSS);
    EXPECT_EQ(FMemo.FOldStylesThread, FMemo.FHtmlStyleSVG);
    EXPECT_EQ(FState.ScriptType, scSVG);
    FMemo.SetHtmlStylePointer(scNone, FState, false, true); // still inside the SVG
    EXPECT_EQ(FMemo.FStylesThread, FMemo.FHtmlStyleCSS);
}

} // namespace
} // namespace zv
