// Real window processes, off screen: the first opens the files of its command line as tabs
// and takes the files of a second call, which exits, and text to paste from a companion; a
// killed first instance is taken over.
// What the windows did is read from their diagnostic trace, switched on by DebugOptions.txt
// beside a private copy of the program.
#include "FirstWindow.h"
#include "RawPeer.h"
#include "TestProcess.h"
#include "common/Utf.h"
#include "platform/Prompt.h"
#include "shell/CrashKeeper.h"
#include "shell/HandOver.h"
#include "shell/MainFormHelper.h"
#include "shell/RunOnce.h"
#include "support/ZvTestSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr int kWaitMs = 30000; // generous: the machine may be busy building

class WindowInstances : public ::testing::Test {
protected:
    void SetUp() override {
        zvtest::TheApp<QCoreApplication>();
        MakeProgramTree();
        fs::create_directories(dir / "root" / "Data");
        fs::create_directories(dir / "files");
        fs::create_directories(dir / "elsewhere");
        std::ofstream(dir / "root" / "Data" / "StartOptions.ini")
            << "[Misc]\r\nOnlyOneInstance=1\r\n";
        env = zvtest::IsolatedEnvironment(dir / "root", dir / "run");
    }
    void TearDown() override {
        for (auto* process : {&first, &second})
            EndProcess(*process);
        for (auto& process : together)
            EndProcess(process);
    }
    static void EndProcess(QProcess& process) {
        process.kill();
        process.waitForFinished(5000);
    }

    // A portable tree of our own: a copy of the program with DebugOptions.txt beside it
    // (the trace, appended by every process) and the data folders of the build's tree.
    void MakeProgramTree() {
        const fs::path tree = dir / "Zevrit";
        fs::create_directories(tree / "bin");
        fs::copy_file(ZV_APP_PATH, program);
        std::ofstream(tree / "bin" / "DebugOptions.txt") << "DebugOutput=1\nLogFileAppend=1\n";
        for (const auto& entry : fs::directory_iterator(ZV_TEST_TREE))
            if (entry.path().filename() != "bin")
                fs::create_directory_symlink(entry.path(), tree / entry.path().filename());
    }

    fs::path Write(const std::string& name, const std::string& text) {
        std::ofstream(dir / "files" / name, std::ios::binary) << text;
        return dir / "files" / name;
    }

    void Start(QProcess& process, const fs::path& workDir, const QStringList& args) {
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(QString::fromStdString(workDir.string()));
        process.start(QString::fromStdString(program.string()), args);
        ASSERT_TRUE(process.waitForStarted(kWaitMs));
    }

    std::string TraceText() const {
        return zvtest::ReadAll(dir / "root" / "Data" / "DebugOutput.txt");
    }

    // Waits until the trace holds `line`; false after kWaitMs.
    bool WaitForTrace(const std::string& line) const {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < kWaitMs) {
            if (TraceText().find(line) != std::string::npos)
                return true;
            QTest::qWait(50);
        }
        return false;
    }

    // A further start with `name` hands it to the running window, which opens it as `tab`.
    void ExpectHandedOver(const std::string& name, int tab) {
        const auto further = zvtest::RunProgram(QString::fromStdString(program.string()),
                                                {QString::fromStdString(name)}, env, kWaitMs,
                                                QString::fromStdString((dir / "files").string()));
        ASSERT_TRUE(further.finished);
        EXPECT_EQ(further.exitCode, 0) << further.err;
        EXPECT_TRUE(WaitForTrace(TabLine(tab, name))) << TraceText();
    }

    std::string TabLine(int tab, const std::string& name) const {
        return "DocumentAdded() - tab " + std::to_string(tab) + ": " +
               (dir / "files" / name).string() + "\n";
    }

    zvtest::TTempDir temp{"zv-windows"};
    const fs::path dir = temp.Path();
    const fs::path program = dir / "Zevrit" / "bin" / "zevrit";
    QProcessEnvironment env;
    QProcess first;
    QProcess second;
    std::array<QProcess, 4> together; // started at one moment
};

TEST_F(WindowInstances, FirstWindowOpensItsFilesAndTakesTheFilesOfASecondCall) {
    std::string rows;
    for (int i = 1; i <= 50; ++i)
        rows += "row " + std::to_string(i) + "\n";
    Write("a.txt", rows);
    Write("b.c", "int main() { return 0; }\n");
    Write("c.txt", "handed over\n");
    Start(first, dir / "files", {"a.txt", "/L:3", "b.c"});
    ASSERT_TRUE(WaitForTrace(TabLine(2, "b.c"))) << TraceText();
    EXPECT_NE(TraceText().find(TabLine(1, "a.txt")), std::string::npos);
    EXPECT_TRUE(WaitForTrace("ShowLine() - line 3\n")) << TraceText();

    // A relative name from another folder: the sender resolves it against its own folder.
    Start(second, dir / "elsewhere", {"../files/c.txt"});
    ASSERT_TRUE(second.waitForFinished(kWaitMs));
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 0) << second.readAllStandardError().toStdString();
    EXPECT_TRUE(WaitForTrace(TabLine(3, "c.txt"))) << TraceText();
    EXPECT_NE(TraceText().find("RunInstanceCheck() - handed over"), std::string::npos);
    EXPECT_EQ(first.state(), QProcess::Running) << "the first window lives on";

    // A companion process pastes text into the active editor (kind 1009) and names its own
    // window (kind 1010), through the first window of the block.
    ::setenv("XDG_RUNTIME_DIR", env.value("XDG_RUNTIME_DIR").toLocal8Bit().constData(), 1);
    zv::TRunOnce block;
    EXPECT_FALSE(block.Check(1)) << "the window process holds the block";
    const uint64_t window = zvtest::WaitForFirstWindow(block, kWaitMs);
    ASSERT_NE(window, 0u);
    EXPECT_TRUE(zv::SendHandOver(window, zv::kHandOverPaste, QStringLiteral("pasted"), kWaitMs));
    EXPECT_TRUE(WaitForTrace("PasteHandedOver() - 6 characters into " +
                             (dir / "files" / "c.txt").string() + "\n"))
        << TraceText();
    EXPECT_TRUE(zv::SendHandOver(window, zv::kHandOverZenWindow, QStringLiteral("4711"), kWaitMs));
    EXPECT_TRUE(WaitForTrace("HandOverReceived() - kind 1010\n")) << TraceText();
}

// Starts at one moment on a root never started (no start options yet) and a runtime folder
// without a block: exactly one becomes the window, the others hand their files to it and
// exit 0.
TEST_F(WindowInstances, SimultaneousStartsMakeOneWindowThatGetsEveryFile) {
    ASSERT_FALSE(fs::exists(dir / "run" / "zevrit" / "ZvFileMap"));
    fs::remove(dir / "root" / "Data" / "StartOptions.ini");
    for (size_t i = 0; i < together.size(); ++i) {
        Write("f" + std::to_string(i) + ".txt", "file " + std::to_string(i) + "\n");
        together[i].setProcessEnvironment(env);
        together[i].setWorkingDirectory(QString::fromStdString((dir / "files").string()));
    }
    for (size_t i = 0; i < together.size(); ++i)
        together[i].start(QString::fromStdString(program.string()),
                          {QString::fromStdString("f" + std::to_string(i) + ".txt")});
    const auto running = [&] {
        return std::count_if(together.begin(), together.end(),
                             [](const QProcess& p) { return p.state() != QProcess::NotRunning; });
    };
    QElapsedTimer clock;
    clock.start();
    while (running() > 1 && clock.elapsed() < 2 * kWaitMs)
        QTest::qWait(50);
    ASSERT_EQ(running(), 1) << TraceText();
    for (auto& process : together)
        if (process.state() == QProcess::NotRunning) {
            EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
            EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        }
    for (size_t i = 0; i < together.size(); ++i) {
        const std::string path = (dir / "files" / ("f" + std::to_string(i) + ".txt")).string();
        EXPECT_TRUE(WaitForTrace(": " + path + "\n")) << TraceText();
    }
    const std::string trace = TraceText();
    const auto lines = [&](const std::string& line) {
        size_t n = 0;
        for (size_t at = trace.find(line); at != std::string::npos; at = trace.find(line, at + 1))
            ++n;
        return n;
    };
    EXPECT_EQ(lines("RunInstanceCheck() - first instance\n"), 1u) << trace;
    EXPECT_EQ(lines("RunInstanceCheck() - handed over\n"), together.size() - 1) << trace;
    EXPECT_EQ(lines("DocumentAdded() - tab "), together.size()) << trace;
}

// The block names a window that takes frames but never answers (its process hangs): the
// next start gives it up within the give-up time, opens its files in a window of its own,
// and takes the later hand-overs.
TEST_F(WindowInstances, AWindowThatNeverAnswersIsGivenUpAndTheFilesOpenAnyway) {
    Write("a.txt", "a\n");
    Write("c.txt", "c\n");
    ::setenv("XDG_RUNTIME_DIR", env.value("XDG_RUNTIME_DIR").toLocal8Bit().constData(), 1);
    zv::TRunOnce hung;
    ASSERT_TRUE(hung.Check(1));
    zvtest::TSilentWindow silent;
    ASSERT_TRUE(silent.Listening());
    ASSERT_TRUE(hung.UpdateHandle(silent.Handle(), 0));

    Start(second, dir / "files", {"a.txt"});
    ASSERT_TRUE(WaitForTrace(TabLine(1, "a.txt"))) << TraceText();
    EXPECT_NE(TraceText().find("RunInstanceCheck() - first window silent, taking over"),
              std::string::npos);
    EXPECT_EQ(second.state(), QProcess::Running) << "it runs as the first instance";
    EXPECT_NE(zvtest::WaitForFirstWindow(hung, kWaitMs), silent.Handle());

    ExpectHandedOver("c.txt", 2);
}

TEST_F(WindowInstances, KilledFirstInstanceIsTakenOverByTheNextStart) {
    Write("a.txt", "a\n");
    Write("b.txt", "b\n");
    Write("c.txt", "c\n");
    Start(first, dir / "files", {"a.txt"});
    ASSERT_TRUE(WaitForTrace(TabLine(1, "a.txt"))) << TraceText();
    first.kill(); // no clean-up: the block still names its window
    ASSERT_TRUE(first.waitForFinished(kWaitMs));

    fs::remove(dir / "root" / "Data" / "DebugOutput.txt");
    QElapsedTimer clock;
    clock.start();
    Start(second, dir / "files", {"b.txt"});
    ASSERT_TRUE(WaitForTrace(TabLine(1, "b.txt"))) << TraceText();
    EXPECT_LT(clock.elapsed(), 5000 + 10000) << "within the poll time and a start";
    EXPECT_EQ(second.state(), QProcess::Running) << "it runs as the first instance";

    // The next call hands over to the new first window.
    ExpectHandedOver("c.txt", 2);
}

} // namespace

// A text kept by a killed window, as the next start would restore it.
std::vector<std::pair<std::string, std::u16string>> KeptTexts(const fs::path& crash) {
    zv::THeadlessPrompt quiet{false};
    zv::TMainFormHelper helper{quiet};
    zv::TCrashKeeper keeper(helper, crash);
    keeper.Restore();
    std::vector<std::pair<std::string, std::u16string>> texts;
    for (const auto& doc : helper.Documents())
        texts.emplace_back(doc->FFilePath, doc->Lines().GetTextWithLinefeeds());
    return texts;
}

// Text pasted into the window (a hand-over of kind 1009, as a companion program does) in
// steps, then the window is killed at a random moment: every step older than two seconds is
// kept, in a named document and in the blank one that never had a name, and the file on disk
// is untouched. SIGTERM asks nothing and keeps even the last step.
TEST_F(WindowInstances, UnsavedTextOutlivesAKillAndATerminationSignal) {
    const std::string onDisk = "on disk\n";
    const fs::path file = Write("a.txt", onDisk);
    const fs::path crash = dir / "root" / "Data" / "Crash";
    zvtest::WriteAll(dir / "root" / "Zevrit.ini", "[Customize]\r\nBlankAtStartup=1\r\n");
    ::setenv("XDG_RUNTIME_DIR", env.value("XDG_RUNTIME_DIR").toLocal8Bit().constData(), 1);
    std::mt19937 random(20261125);
    constexpr int kRounds = 24, kKeptAfterMs = zv::TCrashKeeper::kDelayMs + 700;
    for (int round = 0; round <= kRounds; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const bool named = round % 2 == 0, terminate = round == kRounds;
        fs::remove(dir / "root" / "Data" / "DebugOutput.txt");
        Start(first, dir / "files", named ? QStringList{"a.txt"} : QStringList{});
        ASSERT_TRUE(WaitForTrace(named ? TabLine(1, "a.txt") : "DocumentAdded() - tab 1: "))
            << TraceText();
        zv::TRunOnce block;
        ASSERT_FALSE(block.Check(1)) << "the window process holds the block";
        const uint64_t window = zvtest::WaitForFirstWindow(block, kWaitMs);
        ASSERT_NE(window, 0u);

        QElapsedTimer clock;
        clock.start();
        std::vector<std::pair<std::string, qint64>> steps; // token, when it was handed over
        const qint64 killAt = terminate ? 0 : 300 + random() % 3200;
        do {
            const std::string token = "<" + std::to_string(steps.size()) + ">";
            ASSERT_TRUE(zv::SendHandOver(window, zv::kHandOverPaste, QString::fromStdString(token),
                                         kWaitMs));
            steps.emplace_back(token, clock.elapsed());
            QTest::qWait(150 + random() % 300);
        } while (clock.elapsed() < killAt);
        ASSERT_TRUE(WaitForTrace("PasteHandedOver() - " +
                                 std::to_string(steps.back().first.size()) + " characters"));
        const qint64 endedAt = clock.elapsed();
        if (terminate)
            first.terminate();
        else
            first.kill();
        ASSERT_TRUE(first.waitForFinished(kWaitMs));
        if (terminate) {
            EXPECT_EQ(first.exitCode(), 0) << "SIGTERM ends the window quietly";
        }

        const auto kept = KeptTexts(crash);
        const bool mustKeep = terminate || endedAt - steps.front().second > kKeptAfterMs;
        if (!mustKeep && kept.empty())
            continue; // killed before the first write was due
        ASSERT_EQ(kept.size(), 1u) << "one modified document";
        EXPECT_EQ(kept[0].first == file.string(), named) << kept[0].first;
        const std::string text = zv::Utf16ToUtf8(kept[0].second);
        for (const auto& [token, at] : steps)
            if (terminate || endedAt - at > kKeptAfterMs) {
                EXPECT_NE(text.find(token), std::string::npos) << token << " in " << text;
            }
        if (named) {
            EXPECT_NE(text.find("on disk"), std::string::npos) << text;
        }
        EXPECT_EQ(zvtest::ReadAll(file), onDisk) << "nothing saved without the user";
        fs::remove_all(crash); // the next start asks nothing
    }
}
