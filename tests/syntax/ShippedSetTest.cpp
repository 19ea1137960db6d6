// The syntax set we ship: every file loads cleanly, and the extension map agrees with what
// the files claim.
#include "SyntaxTestFiles.h"

#include "ZvMemoControl/StyleCssHelp.h"
#include "shell/ZvIniFiles.h"
#include "syntax/SyntaxSetCheck.h"
#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zv {
namespace {

using test::ShippedSyntaxFolder;
using test::U16;

TEST(ShippedSet, EveryLanguageIsThereAndTheSetIsClean) {
    const TSyntaxSetReport report = CheckSyntaxFolder(ShippedSyntaxFolder());
    for (const auto& p : report.Problems)
        ADD_FAILURE() << p;
    for (const char* name :
         {"c",        "cpp",   "csharp", "java",     "javascript", "typescript", "json",
          "python",   "shell", "php",    "html",     "xml",        "css",        "sql",
          "markdown", "yaml",  "ini",    "makefile", "cmake",      "perl",       "ruby",
          "go",       "rust",  "lua",    "diff",     "text"})
        EXPECT_TRUE(
            std::filesystem::is_regular_file(ShippedSyntaxFolder() / (std::string(name) + ".syx")))
            << name;
    for (const char* ext : {".c", ".cpp", ".py", ".rs", ".go", ".html", ".json", ".yml", ".md",
                            ".sql", ".sh", ".makefile", ".cmake", ".diff", ".txt"})
        EXPECT_TRUE(report.Extensions.count(ext)) << ext;
}

TEST(ShippedSet, TypesMapMatchesTheClaimedExtensions) {
    const TSyntaxSetReport report = CheckSyntaxFolder(ShippedSyntaxFolder());
    const TMemIniFileW types(ShippedSyntaxFolder() / "Types.ini");
    ASSERT_EQ(types.LoadStatus(), TIniLoadStatus::Loaded);
    for (const auto& [ext, file] : report.Extensions) {
        const std::u16string type = types.ReadString("FileExt", ext, u"");
        EXPECT_EQ(Utf16ToUtf8(types.ReadString(type, "File", u"")), file) << ext;
    }
    EXPECT_EQ(types.ReadSection("FileExt").size(), report.Extensions.size());
}

TEST(ShippedSet, HtmlCarriesCssJavaScriptAndPhp) {
    TZvSyntax syntax;
    TMemoStyleHost memo;
    ASSERT_TRUE(
        syntax.LoadStyleFromFile(&memo, U16(ShippedSyntaxFolder() / "html.syx"), u"HTML", 1, u""));
    EXPECT_TRUE(syntax.Warnings.empty());
    ASSERT_TRUE(memo.FHtmlStyleCSS && memo.FHtmlStyleJS && memo.FHtmlStylePHP);
    EXPECT_GE(memo.FHtmlStyleCSS->FindKeyword(u"margin", false), 0);
    EXPECT_GE(memo.FHtmlStyleJS->FindKeyword(u"const", true), 0);
    EXPECT_GE(memo.FHtmlStylePHP->FindKeyword(u"echo", false), 0);
    EXPECT_GE(memo.FStyles->FindTag(u"DIV", false), 0);
}

TEST(ShippedSet, CssHelpKnowsEveryColouredPropertyAndEachHasValues) {
    TZvSyntax syntax;
    TMemoStyleHost memo;
    ASSERT_TRUE(
        syntax.LoadStyleFromFile(&memo, U16(ShippedSyntaxFolder() / "css.syx"), u"CSS", 1, u""));
    TZvCustomMemoStyles& css = *memo.FStyles;
    const TCssHelp& help = css.CssHelp();
    EXPECT_TRUE(help.DanglingReferences().empty());
    std::vector<std::u16string> coloured = css.FKeyWords.at(0).KeyWords.Words();
    std::vector<std::u16string> helped = help.Properties();
    std::sort(helped.begin(), helped.end());
    EXPECT_EQ(helped, coloured); // the keyword group is sorted by its table
    for (const std::u16string& property : helped) {
        TCompletionList values;
        css.LoadKeyList(u"AutoComplete", property, values);
        EXPECT_FALSE(values.empty()) << Utf16ToUtf8(property);
    }
    TCompletionList display;
    css.LoadKeyList(u"AutoComplete", u"display:", display);
    EXPECT_TRUE(std::any_of(display.begin(), display.end(),
                            [](const TCompletionItem& i) { return i.Insert == u"flex"; }));
    EXPECT_NE(css.LoadCSSHint(u"color", u"oklch()").find(u"lightness"), std::u16string::npos);
}

TEST(ShippedSet, ScssAndLessCompleteTheValuesOfCss) {
    for (const auto& [file, type] :
         {std::pair{"scss.syx", u"SCSS"}, std::pair{"less.syx", u"Less"}}) {
        TZvSyntax syntax;
        TMemoStyleHost memo;
        ASSERT_TRUE(
            syntax.LoadStyleFromFile(&memo, U16(ShippedSyntaxFolder() / file), type, 1, u""));
        TCompletionList display;
        memo.FStyles->LoadKeyList(u"AutoComplete", u"display:", display);
        EXPECT_TRUE(std::any_of(display.begin(), display.end(), [](const TCompletionItem& i) {
            return i.Insert == u"flex";
        })) << file;
        EXPECT_FALSE(memo.FStyles->LoadCSSHint(u"color", u"oklch()").empty()) << file;
    }
}

} // namespace
} // namespace zv
