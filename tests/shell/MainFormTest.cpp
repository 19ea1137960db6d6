// The main object headless: hand-overs that arrive together open in one sorted pass after
// the delay, missing files follow their switches, /COMPARE needs two different files, and
// the settings decide how documents are loaded and saved.
#include "shell/MainForm.h"
#include "platform/Prompt.h"
#include "shell/HandOver.h"
#include "shell/MainFormHelper.h"
#include "shell/Settings.h"
#include "support/ZvTestSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

class MainFormTest : public ::testing::Test {
protected:
    void SetUp() override { zvtest::TheApp<QCoreApplication>(); }
    std::string Write(const std::string& name) {
        std::ofstream(dir / name) << name << "\n";
        return (dir / name).string();
    }
    std::vector<std::string> OpenPaths() const {
        std::vector<std::string> paths;
        for (const auto& doc : helper.Documents())
            paths.push_back(doc->FFilePath);
        return paths;
    }
    // Lets the hand-over timer fire; bounded by time.
    void WaitForDocuments(size_t count) {
        QElapsedTimer clock;
        clock.start();
        while (helper.Documents().size() < count && clock.elapsed() < 5000)
            QTest::qWait(20);
    }
    zvtest::TTempDir temp{"zv-mainform"};
    const fs::path dir = temp.Path();
    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
    zv::TMainForm form{helper, nullptr};
};

TEST_F(MainFormTest, HandOversInARowOpenInOneSortedPassAfterTheDelay) {
    const auto b = Write("b.txt");
    const auto a = Write("a.txt");
    QElapsedTimer clock;
    clock.start();
    form.HandOverReceived(zv::kHandOverParams, QString::fromStdString("/R|" + b + "|"));
    form.HandOverReceived(zv::kHandOverParams, QString::fromStdString(a + "|"));
    EXPECT_TRUE(helper.Documents().empty()) << "nothing opens before the timer";
    WaitForDocuments(2);
    EXPECT_GE(clock.elapsed(), zv::TMainForm::kParamsDelayMs - 50);
    EXPECT_EQ(OpenPaths(), (std::vector<std::string>{a, b})) << "one pass, sorted";
    EXPECT_TRUE(helper.Documents()[0]->FReadOnly) << "the flags of the pass act on both";
    EXPECT_TRUE(form.ParamStrings().empty());
}

TEST_F(MainFormTest, MissingFileIsNewUnlessHexOrMonitorAsks) {
    const auto missing = (dir / "new.txt").string();
    form.FormShow({"zevrit", "/HEX", missing});
    EXPECT_TRUE(helper.Documents().empty()) << "the not-found question answers no headless";
    ASSERT_EQ(prompt.Log().size(), 1u);
    form.FormShow({"zevrit", "/MONITOR", missing});
    EXPECT_TRUE(helper.Documents().empty());
    EXPECT_EQ(prompt.Log().size(), 2u);
    form.FormShow({"zevrit", missing});
    ASSERT_EQ(OpenPaths(), std::vector<std::string>{missing});
    EXPECT_TRUE(helper.Documents()[0]->FIsNew);
    EXPECT_EQ(prompt.Log().size(), 2u) << "a plain name is created without asking";
}

TEST_F(MainFormTest, CompareNeedsTwoDifferentExistingFiles) {
    const auto a = Write("a.txt");
    const auto b = Write("b.txt");
    form.FormShow({"zevrit", "/COMPARE", a, a});
    form.FormShow({"zevrit", "/COMPARE", a, (dir / "missing.txt").string()});
    EXPECT_TRUE(helper.Documents().empty());
    EXPECT_TRUE(prompt.Log().empty()) << "nothing happens but the start";
    form.FormShow({"zevrit", "-compare", b, a});
    EXPECT_EQ(OpenPaths(), (std::vector<std::string>{b, a})) << "file1 first, then file2";
    EXPECT_EQ(prompt.Log().size(), 1u) << "the compare itself is announced as unavailable";
}

// The main object reads the settings object when it is made (as the window's creation
// does): tab loading, backups on save and the form of new documents follow its keys.
TEST(MainFormSettings, KeysOfTheSettingsObjectReachLoadingAndSaving) {
    zvtest::TheApp<QCoreApplication>();
    zvtest::TTempDir temp{"zv-mainform-settings"};
    zv::TMemIniFileW& settings = zv::OpenSettings(temp / "Zevrit.ini"); // in memory only
    settings.WriteBool("Customize", "DelayTabLoad", true);
    settings.WriteBool("Save", "Backup", true);
    settings.WriteBool("Save", "BackupExtension", true);
    settings.WriteInteger("EditorMisc", "DefaultEncoding", 1200);
    settings.WriteBool("EditorMisc", "DefaultEncodingBOM", true);
    settings.WriteBool("EditorMisc", "TypeUnix", true);
    settings.WriteInteger("Theme_Windows", "TextColor", 0x0000FF);
    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
    EXPECT_FALSE(helper.FDelayTabLoad) << "the defaults until the settings are read";
    zv::TMainForm form{helper, nullptr};
    zv::CloseSettings();
    EXPECT_TRUE(helper.FDelayTabLoad);
    EXPECT_EQ(zv::TextElement(helper.TextOptions(), u"Text").Color, 0x0000FF);

    const fs::path old = temp / "old.txt";
    std::ofstream(old, std::ios::binary) << "one\n";
    const fs::path fresh = temp / "new.txt";
    form.FormShow({"zevrit", old.string(), fresh.string()});
    ASSERT_EQ(helper.Documents().size(), 2u);
    zv::TDocument& created = *helper.Documents()[0];
    ASSERT_TRUE(created.FIsNew);
    EXPECT_EQ(created.Lines().CodePage(), 1200u);
    EXPECT_TRUE(created.Lines().UseBOM());
    EXPECT_EQ(created.Lines().SysTextType(), zv::sttUnix);
    ASSERT_TRUE(helper.SaveFile(&created));
    EXPECT_EQ(zvtest::ReadAll(fresh), "\xFF\xFE") << "an empty UTF-16LE document is its mark";

    ASSERT_TRUE(helper.SaveFile(helper.Documents()[1].get()));
    std::vector<fs::path> backups;
    for (const auto& entry : fs::directory_iterator(temp.Path()))
        if (entry.path().filename().string().starts_with("old_"))
            backups.push_back(entry.path());
    ASSERT_EQ(backups.size(), 1u) << "Backup=1: the save left a backup beside the file";
    EXPECT_EQ(backups[0].extension(), ".bak");
    EXPECT_EQ(zvtest::ReadAll(backups[0]), "one\n");
    EXPECT_EQ(zvtest::ReadAll(old), "one\n");
}

// The automatic save with the clock in the test's hands: each tick saves what the settings
// name and says when the next comes; in a batch it waits 10 s; backups follow BackupAuto and
// MaxBackupFiles prunes them.
TEST(MainFormSettings, AutoSaveTicksSaveModifiedDocumentsAndBackupsArePruned) {
    zvtest::TheApp<QCoreApplication>();
    zvtest::TTempDir temp{"zv-autosave"};
    zv::TMemIniFileW& settings = zv::OpenSettings(temp / "Zevrit.ini"); // in memory only
    settings.WriteBool("AutoSave", "Enable", true);
    settings.WriteInteger("AutoSave", "Interval", 3);
    settings.WriteBool("AutoSave", "OnlyActive", false);
    settings.WriteBool("Save", "BackupAuto", true);
    settings.WriteInteger("Save", "MaxBackupFiles", 2);
    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
    zv::TMainForm form{helper, nullptr};
    zv::CloseSettings();
    const fs::path a = temp / "a.txt", b = temp / "b.txt";
    zvtest::WriteAll(a, "a0\n");
    zvtest::WriteAll(b, "b0\n");
    form.FormShow({"zevrit", a.string(), b.string()});
    ASSERT_EQ(helper.Documents().size(), 2u);
    EXPECT_TRUE(helper.Documents()[0]->FDeferred) << "a command line of files is one batch";
    helper.Activate(0); // read now: the tab shows
    helper.Activate(1);
    const auto backups = [&] {
        int n = 0;
        for (const auto& entry : fs::directory_iterator(temp.Path()))
            n += entry.path().filename().string().starts_with("a_(zv-zevrit_");
        return n;
    };
    for (int round = 1; round <= 4; ++round) {
        zv::TDocument& doc = *helper.Documents()[0]; // not the active one
        doc.Lines().SetLineString(0, u"a" + std::u16string(1, char16_t(u'0' + round)));
        doc.SetModified(true);
        form.BeginBatch();
        EXPECT_EQ(form.AutoSaveTimerTick(), zv::TMainForm::kAutoSaveRetryMs);
        form.EndBatch();
        EXPECT_EQ(zvtest::ReadAll(a), "a" + std::to_string(round - 1) + "\n") << "not in a batch";
        EXPECT_EQ(form.AutoSaveTimerTick(), 3 * 60000);
        EXPECT_EQ(zvtest::ReadAll(a), "a" + std::to_string(round) + "\n");
        EXPECT_FALSE(doc.Modified());
        EXPECT_EQ(backups(), std::min(round, 2)) << "MaxBackupFiles=2 keeps two";
        QTest::qWait(15); // backup names differ by the millisecond
    }
    EXPECT_EQ(zvtest::ReadAll(b), "b0\n") << "an unmodified document is left alone";
    helper.FApplicationClosing = true;
    EXPECT_EQ(form.AutoSaveTimerTick(), 0) << "never during closing";
}

} // namespace
