// Every key of the shipped default settings is one that some reader asks for: the options
// records, the text colours and the syntax selection made when a document opens.
#include "SyntaxTestFiles.h"

#include "shell/DataFolders.h"
#include "shell/SettingsOptions.h"
#include "shell/ZvIniFiles.h"
#include "syntax/SyntaxSelect.h"
#include "syntax/TypeColors.h"

#include <gtest/gtest.h>

#include <set>

namespace zv {
namespace {

// A settings file that notes every section/key asked for.
class TRecordingIni : public TMemIniFileW {
public:
    using TMemIniFileW::TMemIniFileW;
    bool VisitValue(TIniName section, TIniName key, const TValueUse& use) const override {
        FAsked.insert(section.ToU16() + u"/" + key.ToU16());
        return TMemIniFileW::VisitValue(section, key, use);
    }
    mutable std::set<std::u16string> FAsked;
};

TEST(ShippedSettings, EveryShippedKeyIsRead) {
    const auto path = DefaultSettingsPath(std::filesystem::path(ZV_TEST_TREE) / "bin");
    const TMemIniFileW pristine(path); // opening a document writes counts into the settings
    TRecordingIni shipped(path);
    ASSERT_EQ(shipped.LoadStatus(), TIniLoadStatus::Loaded);
    ReadCustomizeOptions(shipped);
    ReadMemoMiscOptions(shipped, 1252);
    LoadTextOptions(shipped);
    TTypeColors::ThemeFrom(&shipped);
    test::TTempDir dir;
    std::filesystem::copy(test::ShippedSyntaxFolder(), dir.Path() / "Syntax",
                          std::filesystem::copy_options::recursive);
    TSyntaxEnvironment env;
    env.Settings = &shipped;
    env.Root = dir.Path();
    TZvSyntax syntax;
    TMemoStyleHost memo;
    TSyntaxSelector(env, syntax).SetSyntaxStyle("/w/page.html", memo, 100);
    for (const auto& section : pristine.ReadSections())
        for (const auto& key : pristine.ReadSection(section))
            EXPECT_TRUE(shipped.FAsked.count(section + u"/" + key))
                << "shipped key nobody reads: " << Utf16ToUtf8(section + u"/" + key);
}

} // namespace
} // namespace zv
