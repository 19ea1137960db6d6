// From file name to syntax: the extension map with the shipped defaults behind the settings,
// type sections, alias lines, the large-file limit, the user's choice, templates, the older
// syntax lists; and the colour scheme applied on load.
#include "SyntaxTestFiles.h"

#include "syntax/SyntaxSelect.h"
#include "syntax/TypeColors.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::TTempDir;
using test::WriteFile;

class Select : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::copy(test::ShippedSyntaxFolder(), FDir.Path() / "Syntax",
                              std::filesystem::copy_options::recursive);
        FEnv.Settings = &FSettings;
        FEnv.Root = FDir.Path();
        FEnv.ShowMessage = [this](const std::u16string& m) { FMessages.push_back(m); };
        FEnv.OpenDocument = [this](const std::filesystem::path& p) {
            FOpened.push_back(p);
            return true;
        };
    }
    TSyntaxSelector Selector() { return TSyntaxSelector(FEnv, FSyntax); }

    TTempDir FDir;
    TMemIniFileW FSettings;
    TSyntaxEnvironment FEnv;
    TZvSyntax FSyntax;
    TMemoStyleHost FMemo;
    std::vector<std::u16string> FMessages;
    std::vector<std::filesystem::path> FOpened;
};

TEST_F(Select, ExtensionsPickTheShippedTypesAndSettingsWin) {
    auto selector = Selector();
    EXPECT_EQ(selector.LoadStyleFromFile("/w/a.py"), u"Python");
    EXPECT_EQ(selector.LoadStyleFromFile("/w/GNU/Makefile"), u"Makefile");
    EXPECT_EQ(selector.LoadStyleFromFile("/w/README"), u"");
    FSettings.WriteString("FileExt", ".py", u"Text");
    FSettings.WriteString("FileExt", ".syx", u"SynFile");
    EXPECT_EQ(selector.LoadStyleFromFile("/w/a.py"), u"Text");
    EXPECT_EQ(selector.LoadStyleFromFile("/w/a.syx"), u""); // syntax files open as plain text
}

TEST_F(Select, OpeningADocumentLoadsTheSyntaxItsNameSelects) {
    auto selector = Selector();
    EXPECT_EQ(selector.SetSyntaxStyle("/w/main.rs", FMemo, 1000), u"Rust");
    ASSERT_TRUE(FMemo.FStyles);
    EXPECT_GE(FMemo.FStyles->FindKeyword(u"impl", true), 0);
    EXPECT_EQ(selector.SetSyntaxStyle("/w/notes", FMemo, 10), u"Text");
    EXPECT_FALSE(FMemo.FStyles);
    EXPECT_EQ(selector.SetSyntaxStyle("/w/art.NFO", FMemo, 10), u"Terminal");
}

TEST_F(Select, LargeFilesGetNoSyntaxUnlessTheLimitIsOff) {
    auto selector = Selector();
    const std::uint64_t big = (300ull << 20) + 1;
    EXPECT_EQ(selector.SetSyntaxStyle("/w/huge.c", FMemo, big - 1), u"C"); // at the limit
    EXPECT_EQ(selector.SetSyntaxStyle("/w/huge.c", FMemo, big), u"Text");
    EXPECT_FALSE(FMemo.FStyles);
    FSettings.WriteString("EditorMisc", "LargeFileLimitValue", u"400");
    EXPECT_EQ(selector.SetSyntaxStyle("/w/huge.c", FMemo, big), u"C");
    FSettings.WriteString("EditorMisc", "LargeFileLimitValue", u"1");
    FSettings.WriteString("EditorMisc", "LargeFileLimit", u"0");
    EXPECT_EQ(selector.SetSyntaxStyle("/w/huge.c", FMemo, big), u"C");
}

TEST_F(Select, AliasLineAndUserDefinedFilesWin) {
    WriteFile(FDir.Path() / "Syntax" / "User defined" / "C.SYX", "[Keywords]\nMine=only\n");
    WriteFile(FDir.Path() / "Syntax" / "alias.syx", ";{$Aliased;cpp.syx}\n");
    FSettings.WriteString("FileExt", ".al", u"Al");
    FSettings.WriteString("Al", "File", u"alias.syx");
    auto selector = Selector();
    FMemo.FHtmlMultiSyntax = true;
    EXPECT_EQ(selector.LoadStyleFromType(FMemo, u"C"), u"C");
    EXPECT_EQ(FMemo.FStyles->FindKeyword(u"only", true), 0);
    EXPECT_EQ(selector.LoadStyleFromType(FMemo, u"Al"), u"Aliased");
    EXPECT_GE(FMemo.FStyles->FindKeyword(u"constexpr", true), 0);
}

TEST_F(Select, AUsersNewOrEditedSyntaxIsUsedOnTheNextOpen) {
    const auto file = FDir.Path() / "Syntax" / "User defined" / "Mine.syx";
    WriteFile(file, "[StandardExtensions]\nExtensions=.mine\n\n[Keywords]\nVerbs=fetch|stow\n");
    FSettings.WriteString("FileExt", ".mine", u"Mine");
    FSettings.WriteString("Mine", "File", u"mine.syx"); // names match without regard to case
    auto selector = Selector();
    EXPECT_EQ(selector.SetSyntaxStyle("/w/list.mine", FMemo, 10), u"Mine");
    ASSERT_TRUE(FMemo.FStyles);
    EXPECT_EQ(FMemo.FStyles->FindKeyword(u"stow", true), 0);
    EXPECT_LT(FMemo.FStyles->FindKeyword(u"drop", true), 0);

    WriteFile(file, "[StandardExtensions]\nExtensions=.mine\n\n[Keywords]\nVerbs=fetch|stow\n"
                    "Nouns=drop\n");
    EXPECT_EQ(selector.SetSyntaxStyle("/w/list.mine", FMemo, 10), u"Mine");
    ASSERT_TRUE(FMemo.FStyles);
    EXPECT_EQ(FMemo.FStyles->FindKeyword(u"drop", true), 1);
    EXPECT_EQ(FSettings.ReadInteger("Mine", "Keys", -1), 2);

    // Editing a copy of a shipped file: the copy wins, and removing it brings the shipped back.
    const auto copy = FDir.Path() / "Syntax" / "User defined" / "python.syx";
    std::filesystem::copy_file(FDir.Path() / "Syntax" / "python.syx", copy);
    std::ofstream(copy, std::ios::app) << "Extra=frobnicate\n";
    EXPECT_EQ(selector.SetSyntaxStyle("/w/a.py", FMemo, 10), u"Python");
    EXPECT_GE(FMemo.FStyles->FindKeyword(u"frobnicate", true), 0);
    EXPECT_TRUE(FSyntax.Warnings.empty());
    std::filesystem::remove(copy);
    EXPECT_EQ(selector.SetSyntaxStyle("/w/a.py", FMemo, 10), u"Python");
    EXPECT_LT(FMemo.FStyles->FindKeyword(u"frobnicate", true), 0);
    EXPECT_GE(FMemo.FStyles->FindKeyword(u"lambda", true), 0);
}

TEST_F(Select, TheUsersChoiceSticksAndTextMeansNoSyntax) {
    auto selector = Selector();
    selector.SetSyntaxStyle("/w/page.php", FMemo, 10);
    // Loaded through its own extension, so the type stays what the extension says.
    EXPECT_FALSE(selector.ChangeMemoSyntax(u"html", FMemo, "/w/page.php"));
    EXPECT_EQ(FMemo.FSyntaxType, u"PHP");
    EXPECT_TRUE(selector.ChangeMemoSyntax(u"Python", FMemo, "/w/page.php"));
    EXPECT_GE(FMemo.FStyles->FindKeyword(u"lambda", true), 0);
    EXPECT_TRUE(selector.ChangeMemoSyntax(u"TEXT", FMemo, "/w/page.php"));
    EXPECT_FALSE(FMemo.FStyles);
    EXPECT_EQ(selector.SetSyntaxStyle("/w/page.php", FMemo, 10), u"Text"); // hand-picked
}

TEST_F(Select, TemplatesAreCopiedOnceAndOpened) {
    auto selector = Selector();
    EXPECT_FALSE(selector.LoadSyntaxTemplate(u"mine"));
    ASSERT_EQ(FMessages.size(), 1u);
    EXPECT_EQ(FMessages[0], u"Could not open the file!");
    WriteFile(FDir.Path() / "Templates" / "Syntax" / "empty.syx", "[Keywords]\n");
    EXPECT_TRUE(selector.LoadSyntaxTemplate(u"mine"));
    ASSERT_EQ(FOpened.size(), 1u);
    EXPECT_TRUE(std::filesystem::exists(FDir.Path() / "Syntax" / "mine.syx"));
    EXPECT_FALSE(selector.LoadSyntaxTemplate(u"mine")); // never overwrites
}

TEST_F(Select, TheShippedTemplatesGiveFilesThatLoadCleanly) {
    std::filesystem::copy(test::ShippedSyntaxFolder().parent_path() / "Templates",
                          FDir.Path() / "Templates", std::filesystem::copy_options::recursive);
    auto selector = Selector();
    ASSERT_TRUE(selector.LoadSyntaxTemplate(u"fresh"));
    ASSERT_TRUE(selector.LoadLanguageTemplate(u"fresh"));
    EXPECT_TRUE(FMessages.empty());
    ASSERT_EQ(FOpened.size(), 2u);
    FSettings.WriteString("Fresh", "File", u"fresh.syx");
    EXPECT_EQ(selector.LoadStyleFromType(FMemo, u"Fresh"), u"Fresh");
    ASSERT_TRUE(FMemo.FStyles);
    EXPECT_TRUE(FSyntax.Warnings.empty());
    EXPECT_FALSE(FMemo.FStyles->FKeyWords.empty());
    const TMemIniFileW language(FOpened[1]);
    ASSERT_EQ(language.LoadStatus(), TIniLoadStatus::Loaded);
    EXPECT_EQ(language.ReadString("Messages", "011", u""), u"Could not open the file!");
    EXPECT_EQ(language.ReadString("Templates", "0001", u""), u"Text");
}

TEST_F(Select, OlderSyntaxListsMergeSorted) {
    FSettings.WriteString("Syntaxlist www", "List", u"HTML|css");
    FSettings.WriteString("Syntaxlist Programming", "List", u"Pascal|C");
    FSettings.WriteString("Syntaxlist Programming", "Count", u"2");
    Selector().FixSyntaxlist();
    EXPECT_EQ(FSettings.ReadString("Syntaxlist", "List", u""), u"C|css|HTML|Pascal");
    EXPECT_EQ(FSettings.ReadInteger("Syntaxlist", "Count", 0), 4);
    EXPECT_FALSE(FSettings.SectionExists("Syntaxlist www"));
}

TEST(TypeColors, ValuesParseToBgrAndStyles) {
    auto s = ParseColorValue(u"#102030,-,BI");
    ASSERT_TRUE(s);
    EXPECT_EQ(s->FTextColor, 0x302010u);
    EXPECT_EQ(s->FBkColor, kNoColor);
    EXPECT_EQ(s->FStyle, fsBold | fsItalic);
    EXPECT_FALSE(ParseColorValue(u"red,-,"));
    EXPECT_FALSE(ParseColorValue(u"#12345,-,"));
    EXPECT_FALSE(ParseColorValue(u"#102030,-,Q"));
    EXPECT_FALSE(ParseColorValue(u"#102030,-,B,extra"));
}

TEST(TypeColors, SettingsOverrideTypeSectionsOverrideTheTheme) {
    TTempDir dir;
    const auto colors = WriteFile(dir.Path() / "Colors.ini",
                                  "[Dark]\nComment=#010203,-,\nKeywords0=#0000FF,-,B\n"
                                  "Keywords1=#00FF00,-,\n[Dark.Go]\nComment=#040506,-,I\n");
    TMemIniFileW settings;
    settings.WriteString("Go", "Dark.Keywords1", u"#FF0000,#000000,");
    TTypeColors scheme(colors, &settings, u"Dark");
    TZvCustomMemoStyles s;
    for (int i = 0; i < 3; ++i)
        s.FKeyWords.emplace_back().Info = u"Keywords" + std::u16string(1, char16_t(u'0' + i));
    scheme.ApplyColors(s, u"Go");
    EXPECT_EQ(s.FCommentStyle.FTextColor, 0x060504u);
    EXPECT_EQ(s.FKeyWords[0].Color, 0xFF0000u);
    EXPECT_EQ(s.FKeyWords[1].Color, 0x0000FFu);
    EXPECT_EQ(s.FKeyWords[2].Color, 0xFF0000u); // the theme's numbers are reused in turn
    scheme.ApplyColors(s, u"Other");
    EXPECT_EQ(s.FCommentStyle.FTextColor, 0x030201u);
    EXPECT_EQ(TTypeColors::ThemeFrom(&settings), u"Light");
    settings.WriteString("EditorMisc", "ColorTheme", u"Dark");
    EXPECT_EQ(TTypeColors::ThemeFrom(&settings), u"Dark");
}

TEST(TypeColors, ShippedThemesColourEveryTokenKind) {
    for (const char16_t* theme : {u"Light", u"Dark"}) {
        TTypeColors scheme(test::ShippedSyntaxFolder() / "Colors.ini", nullptr, theme);
        for (std::u16string_view key :
             {u"Text", u"Comment", u"LineComment", u"String", u"Char", u"Number", u"HexNumber",
              u"Symbol", u"Tag", u"AttributeName", u"AttributeValue", u"Keywords7", u"Tags9",
              u"Block11"})
            EXPECT_TRUE(scheme.Lookup(u"C", key)) << Utf16ToUtf8(key);
    }
}

} // namespace
} // namespace zv
