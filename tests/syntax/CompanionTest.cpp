// The companion ".ini": completion entries with references and fallbacks, tag lists, hints,
// the user menu; and the style sets built by code.
#include "SyntaxTestFiles.h"

#include "ZvMemoControl/StyleCssHelp.h"
#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::TTempDir;
using test::U16;
using test::WriteFile;

std::vector<std::u16string> Names(const TCompletionList& list) {
    std::vector<std::u16string> names;
    for (const auto& item : list)
        names.push_back(item.Name);
    return names;
}

class Companion : public ::testing::Test {
protected:
    TStylesPtr Load(std::string_view companion, std::string name = "lang") {
        WriteFile(FDir.Path() / (name + ".syx"), "[Keywords]\nK=a\n");
        WriteFile(FDir.Path() / (name + ".ini"), companion);
        EXPECT_TRUE(FSyntax.LoadStyleFromFile(&FMemo, U16(FDir.Path() / (name + ".syx")),
                                              Utf8ToUtf16(name), 0, u""));
        return FMemo.FStyles;
    }
    TTempDir FDir;
    TZvSyntax FSyntax;
    TMemoStyleHost FMemo;
};

TEST_F(Companion, KeyListsFollowReferencesAndSort) {
    auto s = Load("[AutoComplete]\n"
                  "obj=zeta|zeta()+m##Alpha|alpha+ p ##@common|ignored##plain\n"
                  "@common=beta|beta+v\n"
                  "only+=x|y+k\n");
    TCompletionList list;
    s->LoadKeyList(u"AutoComplete", u"obj", list);
    EXPECT_EQ(Names(list), (std::vector<std::u16string>{u"Alpha", u"beta", u"plain", u"zeta"}));
    EXPECT_EQ(list[0].Icon, u'p'); // icon text trimmed, its last character
    EXPECT_EQ(list[3].Insert, u"zeta()");
    EXPECT_EQ(list[2].Icon, 0); // no "+": no icon
    list.clear();
    s->LoadKeyList(u"AutoComplete", u"only", list); // falls back to "only+"
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].Insert, u"y");
}

TEST_F(Companion, SelfReferenceStopsInsteadOfRecursingForever) {
    auto s = Load("[AutoComplete]\n@loop=@loop##x|x+p\n");
    TCompletionList list;
    s->LoadKeyList(u"AutoComplete", u"@loop", list);
    EXPECT_FALSE(list.empty());
    EXPECT_LE(list.size(), 40u);
}

TEST_F(Companion, TagCompleteFallsBackToStarredNames) {
    auto s = Load("[TagComplete]\n*input=type|type+a\n*.text=size|size+a\n");
    TCompletionList list;
    s->LoadKeyList(u"TagComplete", u"input(checkbox)[1]", list);
    EXPECT_EQ(Names(list), std::vector<std::u16string>{u"type"});
    list.clear();
    s->LoadKeyList(u"TagComplete", u"field.text", list);
    EXPECT_EQ(Names(list), std::vector<std::u16string>{u"size"});
}

TEST_F(Companion, TagAndStopTagLists) {
    auto s = Load("[TagComplete]\na+=href\nbr*=\np=\n/a=\n/=\n@ref=x\n");
    TCompletionList tags, stops;
    s->LoadTagList(tags);
    ASSERT_EQ(Names(tags), (std::vector<std::u16string>{u"a", u"br", u"p"}));
    EXPECT_EQ(tags[0].Icon, u'u');
    EXPECT_EQ(tags[1].Icon, u'w');
    EXPECT_EQ(tags[2].Icon, u't');
    s->LoadStopTagList(stops);
    ASSERT_EQ(stops.size(), 1u); // a lone "/" is no stop tag
    EXPECT_EQ(stops[0].Insert, u"a>");
}

TEST_F(Companion, HintsUserMenuAndSections) {
    auto s = Load("[Hints]\nprintf=int printf(...)\n"
                  "[UserMenu]\n1=Bold|<b></b>+t\n2=&Skip|x+t\n3=Line|--+-\n");
    s->LoadHintList();
    EXPECT_EQ(s->FHintParameter.FParameters, TStringList{u"printf=int printf(...)"});
    TCompletionList all, skipped;
    s->LoadUserMenu(all, false);
    EXPECT_EQ(Names(all), (std::vector<std::u16string>{u"Bold", u"&Skip", u"Line"}));
    EXPECT_EQ(all[2].Icon, 0); // "-" gives no item image, the line is still listed
    s->LoadUserMenu(skipped, true);
    ASSERT_EQ(Names(skipped), (std::vector<std::u16string>{u"Bold", u"Line"}));
    EXPECT_EQ(skipped[0].Insert, u"b></b>");
    TStringList section;
    s->LoadSection(u"Hints", section);
    EXPECT_EQ(section.size(), 1u);
}

TEST_F(Companion, WithoutACompanionTheLoadersDoNothing) {
    WriteFile(FDir.Path() / "bare.syx", "[Keywords]\nK=a\n");
    ASSERT_TRUE(FSyntax.LoadStyleFromFile(&FMemo, U16(FDir.Path() / "bare.syx"), u"B", 0, u""));
    TCompletionList list;
    FMemo.FStyles->LoadKeyList(u"AutoComplete", u"x", list);
    FMemo.FStyles->LoadUserMenu(list, false);
    FMemo.FStyles->LoadTagList(list);
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(FMemo.FStyles->HasCompanion());
}

constexpr std::string_view kCssHelp =
    "<?xml version=\"1.0\"?>\n<css><properties>\n"
    "<property name=\"@global\"><value name=\"inherit\" version=\"2.0\"/></property>\n"
    "<property name=\"@color\"><value name=\"red\"/><value name=\"$(color)\"/>"
    "<value name=\"$(length)\"/></property>\n"
    "<property name=\"@length\"><value name=\"0\"/><value name=\"$(color)\"/></property>\n"
    "<property name=\"color\"><value name=\"$(color)\"/>"
    "<value name=\"currentcolor\" syntax=\"the text colour\" version=\"3.0\"/></property>\n"
    "<property name=\"display\"><value name=\"block\"/><value name=\"$(missing)\"/>"
    "<value name=\"$(global)\"/></property>\n"
    "</properties></css>\n";

TEST_F(Companion, CssPropertiesAreAnsweredFromTheHelpFile) {
    WriteFile(FDir.Path() / "css.xml", kCssHelp);
    auto s =
        Load("[AutoComplete]\ncolor=not|from the companion+p\n@at=media|media rule+k\n", "css");
    TCompletionList list;
    s->LoadKeyList(u"AutoComplete", u"Color:", list); // trailing ":" and case do not matter
    // The list "@color" (before the property of that name), references taken once, then the
    // values every property takes.
    EXPECT_EQ(Names(list),
              (std::vector<std::u16string>{u"red", u"0", u"currentcolor", u"inherit"}));
    EXPECT_EQ(list[2].Detail, u"the text colour");
    EXPECT_EQ(list[2].Insert, u"currentcolor");
    list.clear();
    s->LoadKeyList(u"AutoComplete", u"display", list); // a dangling reference is skipped
    EXPECT_EQ(Names(list), (std::vector<std::u16string>{u"block", u"inherit"}));
    list.clear();
    s->LoadKeyList(u"AutoComplete", u"@color", list); // lists are no properties; "@" keys
    EXPECT_TRUE(list.empty());                        // are read from the companion
    s->LoadKeyList(u"AutoComplete", u"@at", list);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].Insert, u"media"); // in a CSS syntax: first part inserted
    EXPECT_EQ(list[0].Detail, u"media rule");
    TCompletionList menu;
    s->LoadUserMenu(menu, false);
    EXPECT_EQ(Names(menu), (std::vector<std::u16string>{u"color", u"display"}));
    EXPECT_EQ(s->LoadCSSHint(u"color", u"CURRENTCOLOR"),
              u"currentcolor: the text colour (CSS 3.0)");
    EXPECT_EQ(s->LoadCSSHint(u"display:", u""), u"block | inherit");
    EXPECT_EQ(s->CssHelp().DanglingReferences(), TStringList{u"display: missing"});
}

TEST_F(Companion, OtherSyntaxesAndAMissingHelpFileGiveNoCssValues) {
    WriteFile(FDir.Path() / "lang.xml", kCssHelp);
    auto s = Load("[AutoComplete]\ncolor=mine|mine+p\n");
    TCompletionList list;
    s->LoadKeyList(u"AutoComplete", u"color", list); // not a CSS syntax: the companion answers
    EXPECT_EQ(Names(list), std::vector<std::u16string>{u"mine"});
    EXPECT_TRUE(s->LoadCSSHint(u"color", u"").empty());
    s = Load("[AutoComplete]\ncolor=mine|mine+p\n", "less"); // no less.xml
    list.clear();
    s->LoadKeyList(u"AutoComplete", u"color", list);
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(s->CssHelp().Empty());
}

TEST(BuiltinSyntaxes, SyntaxFileHighlightingKnowsHeadersAndOptionKeys) {
    TZvSyntax syntax;
    TMemoStyleHost memo;
    syntax.SetSynFileSyntax(memo);
    ASSERT_TRUE(memo.FStyles);
    const auto& s = *memo.FStyles;
    EXPECT_EQ(s.FindKeyword(u"[options]", true), 0);
    EXPECT_EQ(s.FindKeyword(u"fold_list_asclass", true), 1);
    ASSERT_FALSE(s.FNodes.empty());
    EXPECT_EQ(s.FNodes[0].wEnd, u"[end]");
    TCompletionList menu;
    memo.FStyles->LoadUserMenu(menu, false);
    ASSERT_FALSE(menu.empty());
    EXPECT_EQ(menu[0].Insert, u"[options] = \"\"");
}

TEST(BuiltinSyntaxes, ScriptCompletionHasObjectsFunctionsAndMembers) {
    TZvSyntax syntax;
    TMemoStyleHost memo;
    syntax.SetScriptSyntax(memo);
    ASSERT_TRUE(memo.FStyles);
    const auto names = Names(memo.FStyles->FListAuto);
    for (std::u16string_view want : {u"Document", u"MainApp", u"WStrings", u"ScriptUtils",
                                     u"IntToStr", u"ShowMessage", u"Sin"})
        EXPECT_NE(std::find(names.begin(), names.end(), want), names.end()) << Utf16ToUtf8(want);
    TCompletionList members;
    memo.FStyles->LoadKeyList(u"AutoComplete", u"Document", members);
    EXPECT_GT(members.size(), 50u);
}

} // namespace
} // namespace zv
