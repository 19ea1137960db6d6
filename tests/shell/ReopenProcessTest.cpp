// The real program, off screen, in three runs on one data root: the documents open when a
// logout (SIGTERM) ends the first run come back at the next start beside the files of its
// command line, and -NOREOPEN keeps them away.
#include "TestProcess.h"
#include "shell/FileQue.h"
#include "shell/Sessions.h"
#include "support/ZvTestSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr int kWaitMs = 30000; // generous: the machine may be busy building

class ReopenProcess : public ::testing::Test {
protected:
    void SetUp() override {
        zvtest::TheApp<QCoreApplication>();
        fs::create_directories(root);
        zvtest::WriteAll(root / "Zevrit.ini", "[EditorMisc]\r\nReopenLastDoc=1\r\n");
        for (const char* name : {"a.txt", "b.txt", "c.txt"})
            zvtest::WriteAll(dir / name, std::string(name) + "\n");
        env = zvtest::IsolatedEnvironment(root, dir / "run");
    }

    // One run with `args`, ended by SIGTERM once the newest recent file is `newest` (the
    // recent list is written from the event loop, so the start is over by then). The
    // documents the run left in the reopen list.
    std::vector<std::string> RunUntil(const QStringList& args, const std::string& newest) {
        QProcess process;
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(QString::fromStdString(dir.string()));
        process.start(ZV_APP_PATH, args);
        EXPECT_TRUE(process.waitForStarted(kWaitMs));
        QElapsedTimer clock;
        clock.start();
        const fs::path mru = root / "Data" / "MRU.txt";
        while (clock.elapsed() < kWaitMs && zvtest::ReadAll(mru).rfind(newest + "\n", 0) != 0)
            QTest::qWait(50);
        EXPECT_EQ(zvtest::ReadAll(mru).rfind(newest + "\n", 0), 0u) << zvtest::ReadAll(mru);
        process.terminate();
        EXPECT_TRUE(process.waitForFinished(kWaitMs));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        const auto views = zv::LoadLastOpenFiles(root / "Data" / "_reopen.txt").Views;
        return views.empty() ? std::vector<std::string>{} : views[0];
    }

    zvtest::TTempDir temp{"zv-reopen"};
    const fs::path dir = temp.Path();
    const fs::path root = dir / "root";
    QProcessEnvironment env;
};

TEST_F(ReopenProcess, DocumentsOpenAtALogoutComeBackUnlessNoReopen) {
    const std::string a = (dir / "a.txt").string(), b = (dir / "b.txt").string(),
                      c = (dir / "c.txt").string();
    EXPECT_EQ(RunUntil({"a.txt", "b.txt"}, b), (std::vector<std::string>{a, b}));
    zv::TFileQue memory(root / "Data" / "FileInfo.xml", {});
    EXPECT_EQ(memory.LoadList(), zv::TFileQueLoad::Loaded);
    EXPECT_TRUE(memory.GetFileData(b)) << "the shown document is remembered at the logout";
    EXPECT_FALSE(memory.GetFileData(a)) << "a tab never shown has no view to remember";

    EXPECT_EQ(RunUntil({"c.txt"}, c), (std::vector<std::string>{a, b, c}));
    EXPECT_EQ(RunUntil({"-NOREOPEN", "a.txt"}, a), (std::vector<std::string>{a}));
}

} // namespace
