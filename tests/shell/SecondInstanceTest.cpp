// One instance per user: a second real program hands its files to the first (this test
// process, acting as the first instance) and exits; a silent first instance is taken over.
#include "FirstWindow.h"
#include "RawPeer.h"
#include "TestProcess.h"
#include "support/ZvTestSupport.h"

#include "platform/Prompt.h"
#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"
#include "shell/RunOnce.h"
#include "shell/Startup.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

class SecondInstance : public ::testing::Test {
protected:
    void SetUp() override {
        zvtest::TheApp<QCoreApplication>();
        fs::create_directories(dir / "root" / "Data");
        fs::create_directories(dir / "run");
        fs::create_directories(dir / "files");
        std::ofstream(dir / "root" / "Data" / "StartOptions.ini")
            << "[Misc]\r\nOnlyOneInstance=1\r\n";
        zvtest::IsolatedEnvironment(dir / "root", dir / "run"); // makes the runtime folder
        ::setenv("XDG_RUNTIME_DIR", (dir / "run").c_str(), 1);
    }
    zvtest::TTempDir temp{"zv-instance"};
    const fs::path dir = temp.Path();
};

TEST_F(SecondInstance, HandsItsFilesToTheFirstWindowAndExits) {
    std::ofstream(dir / "files" / "c.txt") << "handed over\n";
    zv::TRunOnce block;
    ASSERT_TRUE(block.Check(1));
    zv::THeadlessPrompt prompt(false);
    zv::TMainFormHelper helper(prompt);
    zv::TMainForm form(helper, nullptr);
    form.RegisterWindow(block, true);
    ASSERT_NE(zvtest::WaitForFirstWindow(block, 5000), 0u);

    QProcess second;
    second.setProcessEnvironment(zvtest::IsolatedEnvironment(dir / "root", dir / "run"));
    second.setWorkingDirectory(QString::fromStdString((dir / "files").string()));
    second.start(ZV_APP_PATH, {"c.txt", "/R"});
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 20000 &&
           (second.state() != QProcess::NotRunning || helper.Documents().empty()))
        QTest::qWait(20);
    ASSERT_EQ(second.state(), QProcess::NotRunning);
    EXPECT_EQ(second.exitCode(), 0) << second.readAllStandardError().toStdString();
    ASSERT_EQ(helper.Documents().size(), 1u);
    EXPECT_EQ(helper.Documents()[0]->FFilePath, (dir / "files" / "c.txt").string());
    EXPECT_TRUE(helper.Documents()[0]->FReadOnly) << "the switch travels with the hand-over";
}

TEST_F(SecondInstance, SilentFirstInstanceIsTakenOver) {
    zv::TRunOnce first;
    ASSERT_TRUE(first.Check(11));
    zv::TRunOnce second;
    zv::TEntryParams params;
    params.argv = {"zevrit", "a.txt"};
    params.options = zv::ReadStartOptions(dir / "root");
    ASSERT_TRUE(params.options.found);
    params.appHandle = 22;
    params.pollCount = 3;
    params.pollIntervalMs = 1;
    EXPECT_EQ(zv::RunInstanceCheck(second, params), zv::TEntryOutcome::RunAsFirst);
    EXPECT_EQ(second.GetWinCount(), 1u);
    zv::TRunOnce reader;
    reader.Check(33);
    EXPECT_EQ(reader.GetWinHandle(), 0u);
}

// The first window takes the frame but never answers: the second start gives it up within
// the give-up time (not the 30 s of old) and runs as the first itself, its table cleared
// for its own window, which then opens its files.
TEST_F(SecondInstance, AWindowThatNeverAnswersIsGivenUpAndTakenOver) {
    zv::TRunOnce first;
    ASSERT_TRUE(first.Check(11));
    zvtest::TSilentWindow silent;
    ASSERT_TRUE(silent.Listening());
    ASSERT_TRUE(first.UpdateHandle(silent.Handle(), 0));
    zv::TRunOnce second;
    zv::TEntryParams params;
    params.argv = {"zevrit", "a.txt"};
    params.options = zv::ReadStartOptions(dir / "root");
    params.appHandle = 22;
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(zv::RunInstanceCheck(second, params), zv::TEntryOutcome::RunAsFirst);
    EXPECT_LT(clock.elapsed(), zv::kHandOverGiveUpMs + 3000);
    EXPECT_EQ(second.OwnerHandle(), 22u);
    EXPECT_EQ(second.GetWinHandle(), 0u) << "the silent window is no longer named";
}

TEST_F(SecondInstance, MultiSwitchControlKeyOrNoStartOptionsAllowAnother) {
    zv::TRunOnce first;
    ASSERT_TRUE(first.Check(1));
    zv::TEntryParams params;
    params.options = zv::ReadStartOptions(dir / "root");
    params.pollCount = 1;
    params.pollIntervalMs = 1;
    params.argv = {"zevrit", "-MULTI"};
    zv::TRunOnce a;
    EXPECT_EQ(zv::RunInstanceCheck(a, params), zv::TEntryOutcome::RunAsOther);
    params.argv = {"zevrit"};
    params.controlHeld = true;
    zv::TRunOnce b;
    EXPECT_EQ(zv::RunInstanceCheck(b, params), zv::TEntryOutcome::RunAsOther);
    params.controlHeld = false;
    params.options = zv::ReadStartOptions(dir / "nowhere");
    EXPECT_FALSE(params.options.found);
    zv::TRunOnce c;
    EXPECT_EQ(zv::RunInstanceCheck(c, params), zv::TEntryOutcome::RunAsOther);
    std::ofstream(dir / "root" / "Data" / "StartOptions.ini") << "[Misc]\r\nOnlyOneInstance=0\r\n";
    params.options = zv::ReadStartOptions(dir / "root");
    EXPECT_FALSE(params.options.OnlyOneInstance);
}

} // namespace
