// Open files changed, replaced or deleted by another process, seen from the real window: each
// change is noticed within the sweep's time, and each answer does what it promises to the
// text and to the file on disk. Followed logs keep up with a writer.
#include "shell/FileMonitor.h"
#include "UiFixtures.h"
#include "common/Utf.h"
#include "shell/TailKeywords.h"
#include "shell/ZvIniFiles.h"
#include "ui/QtPrompt.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QImage>
#include <QMessageBox>
#include <QProcess>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <fstream>

namespace fs = std::filesystem;

namespace {

// What another program does to a file: a python3 script run on its path.
struct TOutsideChange {
    const char* Name;
    const char* Script;
};

const TOutsideChange kAppend{"append", "open(p, 'ab').write(b'appended\\n')"};
const TOutsideChange kRewrite{"rewrite", "open(p, 'wb').write(b'other text, other length\\n')"};
const TOutsideChange kReplace{"replace",
                              "open(p + '.new', 'wb').write(b'moved in\\n'); os.replace(p + "
                              "'.new', p)"};
// The same size and file, one byte changed in place: only the modification time tells.
const TOutsideChange kInPlace{"in place", "f = open(p, 'r+b'); f.write(b'M'); f.close()"};
const TOutsideChange kDelete{"delete", "os.remove(p)"};

// In time: within one sweep, plus what a loaded machine needs to run it.
constexpr int kNoticeMs = zv::TFileMonitor::kSweepMs + 1500;

class FileMonitorTest : public zvtest::TShownWindowTest {
protected:
    FileMonitorTest() : TShownWindowTest("zv-monitor") {}
    void SetUp() override {
        TShownWindowTest::SetUp();
        monitor = std::make_unique<zv::TFileMonitor>(helper);
    }
    zv::TDocument& Open(const std::string& name, const std::string& bytes) {
        zvtest::OpenInWindow(helper, *window, dir / name, bytes);
        // A later modification time than the load's, whatever the file system's grain.
        QTest::qWait(20);
        return *helper.Documents()[helper.FindDocMemo((dir / name).string())];
    }
    zv::TEditorWidget& EditorOf(const zv::TDocument& doc) {
        return *window->EditorAt(helper.FindDocMemo(doc.FFilePath));
    }
    // Runs `script` in a second process once per file (`p` is the path); waits for its end.
    void Change(const TOutsideChange& change, const std::vector<fs::path>& files) {
        QStringList args{"-c",
                         QString("import os, sys\nfor p in sys.argv[1:]:\n    ") + change.Script};
        for (const fs::path& file : files)
            args << QString::fromStdString(file.string());
        QProcess process;
        process.start("python3", args);
        ASSERT_TRUE(process.waitForFinished(10000)) << change.Name;
        ASSERT_EQ(process.exitCode(), 0) << change.Name << process.readAllStandardError().data();
    }
    // Milliseconds until `count` questions were asked in all, or -1 after kNoticeMs.
    qint64 WaitForQuestions(size_t count) {
        QElapsedTimer clock;
        clock.start();
        if (!QTest::qWaitFor([&] { return prompt.Asked.size() >= count; }, kNoticeMs))
            return -1;
        return clock.elapsed();
    }
    // The bytes a save of the document would write (the document itself stays as it is).
    std::string Written(zv::TDocument& doc) {
        EXPECT_TRUE(helper.SaveFileCopy(doc, (dir / "copy.out").string()));
        return zvtest::ReadAll(dir / "copy.out");
    }
    bool TabShowsModified(const zv::TDocument& doc) {
        return window->TabGroup()->tabText(helper.FindDocMemo(doc.FFilePath)).endsWith('*');
    }
    // Opens `log`, holding `text`, to be followed (as -MONITOR does); the active document.
    zv::TDocument& Follow(const fs::path& log, const std::string& text) {
        zvtest::WriteAll(log, text);
        zv::TParamFlags flags;
        flags.monitor = true;
        helper.ProcessParam(log.string(), flags);
        EXPECT_TRUE(helper.ActiveDocument()->FMonitored);
        return *helper.ActiveDocument();
    }
    void Configure(const char* key, bool value) {
        zv::TMemIniFileW settings;
        settings.WriteBool("EditorMisc", key, value);
        helper.SetCustomize(settings);
    }

    std::unique_ptr<zv::TFileMonitor> monitor;
};

// Every kind of outside change is noticed in time and asked about once, typed into or not
// (then the question says the typing would be lost): yes reloads the disk's bytes and keeps
// the caret's row; no keeps the text, modified, and their bytes on disk until a save, which
// asks nothing more since the change was shown.
TEST_F(FileMonitorTest, AChangeIsNoticedInTimeAndEachAnswerKeepsItsPromise) {
    const std::string mine = "mine\r\nsecond line\r\n";
    constexpr auto npos = std::string::npos;
    for (const TOutsideChange& change : {kAppend, kRewrite, kReplace, kInPlace}) {
        for (const auto& [typed, answer] :
             {std::pair{false, zv::prYes}, std::pair{true, zv::prNo}, std::pair{false, zv::prNo},
              std::pair{true, zv::prYes}}) {
            const bool reloaded = answer == zv::prYes;
            const std::string what =
                std::string(change.Name) + (typed ? ", typed" : "") + (reloaded ? ", yes" : ", no");
            zv::TDocument& doc = Open("f.txt", mine);
            EditorOf(doc).Memo().SetTextCursor(2, 1);
            if (typed)
                QTest::keyClicks(&EditorOf(doc), "x");
            const std::string ours = typed ? "mine\r\nsexcond line\r\n" : mine;
            prompt.Asked.clear();
            prompt.Answers = {answer};
            Change(change, {dir / "f.txt"});
            const std::string theirs = zvtest::ReadAll(dir / "f.txt");
            const qint64 ms = WaitForQuestions(1);
            ASSERT_GE(ms, 0) << what << ": not noticed within " << kNoticeMs << " ms";
            std::printf("[ measure  ] %s noticed after %lld ms\n", what.c_str(),
                        static_cast<long long>(ms));
            EXPECT_NE(prompt.Asked[0].find(doc.FFilePath), npos) << what;
            EXPECT_TRUE(prompt.Flags[0] & zv::pfAlwaysButton) << what;
            EXPECT_EQ(prompt.Asked[0].find("would be lost") != npos, typed) << what;
            EXPECT_EQ(Written(doc), reloaded ? theirs : ours) << what;
            EXPECT_EQ(doc.Modified(), !reloaded) << what;
            EXPECT_EQ(EditorOf(doc).IsModified(), !reloaded) << what;
            EXPECT_EQ(TabShowsModified(doc), !reloaded) << what;
            EXPECT_EQ(zvtest::ReadAll(dir / "f.txt"), theirs) << what << ": their bytes stay";
            const zv::TZvMemo& memo = EditorOf(doc).Memo();
            EXPECT_EQ(memo.FCurY, std::min(1, memo.RowCount() - 1)) << what << ": caret kept";
            monitor->CheckMemoTimeStamp();
            QTest::keyClick(&EditorOf(doc), Qt::Key_S, Qt::ControlModifier);
            EXPECT_EQ(prompt.Asked.size(), 1u) << what << ": one change asks once";
            EXPECT_EQ(zvtest::ReadAll(dir / "f.txt"), reloaded ? theirs : ours) << what;
            helper.CloseAllDocumentTabs();
        }
    }
}

TEST_F(FileMonitorTest, ADeletedFileAnsweredNoStaysOpenModifiedAndIsNotAskedAgain) {
    zv::TDocument& doc = Open("gone.txt", "kept text\n");
    prompt.Answers = {zv::prNo};
    Change(kDelete, {dir / "gone.txt"});
    ASSERT_GE(WaitForQuestions(1), 0);
    EXPECT_NE(prompt.Asked[0].find("deleted"), std::string::npos);
    EXPECT_EQ(prompt.Flags[0] & zv::pfAlwaysButton, 0u) << "no Always for a deleted file";
    ASSERT_GE(helper.FindDocMemo(doc.FFilePath), 0);
    EXPECT_TRUE(doc.Modified());
    EXPECT_TRUE(EditorOf(doc).IsModified());
    EXPECT_EQ(Written(doc), "kept text\n");
    monitor->CheckMemoTimeStamp();
    QTest::qWait(zv::TFileMonitor::kSettleMs * 3);
    EXPECT_EQ(prompt.Asked.size(), 1u) << "a deleted file is asked about once";
    // Saving makes the file again, without asking: there was nothing to overwrite.
    QTest::keyClick(&EditorOf(doc), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "gone.txt"), "kept text\n");
    EXPECT_FALSE(doc.Modified());
    EXPECT_EQ(prompt.Asked.size(), 1u);
}

TEST_F(FileMonitorTest, ADeletedFileAnsweredYesClosesItsTabAndAComebackIsAChange) {
    zv::TDocument& closing = Open("a.txt", "a\n");
    zv::TDocument& back = Open("b.txt", "b\n");
    const std::string closingPath = closing.FFilePath;
    // The last tab is asked about first.
    prompt.Answers = {zv::prNo, zv::prYes};
    Change(kDelete, {dir / "a.txt", dir / "b.txt"});
    ASSERT_GE(WaitForQuestions(2), 0);
    QTest::qWait(zv::TFileMonitor::kSettleMs * 2);
    EXPECT_EQ(prompt.Asked.size(), 2u);
    EXPECT_EQ(helper.FindDocMemo(closingPath), -1) << "closed after yes";
    ASSERT_EQ(helper.Documents().size(), 1u);
    // The file kept open comes back: that is a change, asked about as one.
    prompt.Answers = {zv::prYes};
    zvtest::WriteAll(dir / "b.txt", "b is back\n");
    ASSERT_GE(WaitForQuestions(3), 0);
    EXPECT_NE(prompt.Asked[2].find("changed"), std::string::npos);
    EXPECT_EQ(Written(back), "b is back\n");
    EXPECT_FALSE(back.Modified());
}

TEST_F(FileMonitorTest, NoToAllAsksOnceForFiveFilesAndStoresEveryStamp) {
    std::vector<zv::TDocument*> docs;
    std::vector<fs::path> files;
    for (int i = 0; i < 5; ++i) {
        const std::string name = "n" + std::to_string(i) + ".txt";
        docs.push_back(&Open(name, "text " + std::to_string(i) + "\n"));
        files.push_back(dir / name);
    }
    prompt.Answers = {zv::prNoToAll};
    Change(kRewrite, files);
    ASSERT_GE(WaitForQuestions(1), 0);
    QTest::qWait(zv::TFileMonitor::kSettleMs * 3);
    monitor->CheckMemoTimeStamp();
    EXPECT_EQ(prompt.Asked.size(), 1u);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(Written(*docs[i]), "text " + std::to_string(i) + "\n") << i;
        EXPECT_TRUE(docs[i]->Modified()) << i;
    }
}

TEST_F(FileMonitorTest, AlwaysReloadsUnmodifiedDocumentsFromThenOnButStillAsksForEdits) {
    zv::TDocument& first = Open("1.txt", "one\n");
    zv::TDocument& second = Open("2.txt", "two\n");
    prompt.Answers = {zv::prAlways};
    Change(kRewrite, {dir / "1.txt", dir / "2.txt"});
    ASSERT_GE(WaitForQuestions(1), 0);
    QTest::qWait(zv::TFileMonitor::kSettleMs * 3);
    EXPECT_EQ(prompt.Asked.size(), 1u) << "Always holds for the rest of the round";
    EXPECT_TRUE(monitor->AutoReloadAlways());
    EXPECT_EQ(Written(first), zvtest::ReadAll(dir / "1.txt"));
    EXPECT_EQ(Written(second), zvtest::ReadAll(dir / "2.txt"));
    // Later rounds: the unmodified one reloads silently, the edited one asks.
    QTest::keyClicks(&EditorOf(second), "x");
    prompt.Answers = {zv::prNo};
    Change(kAppend, {dir / "1.txt", dir / "2.txt"});
    ASSERT_GE(WaitForQuestions(2), 0);
    EXPECT_NE(prompt.Asked[1].find(second.FFilePath), std::string::npos);
    EXPECT_EQ(Written(first), zvtest::ReadAll(dir / "1.txt"));
    EXPECT_EQ(Written(second), "xother text, other length\n");
}

TEST_F(FileMonitorTest, TheSettingsReloadUnmodifiedSilentlyOrTurnTheQuestionsOff) {
    Configure("AutoReloadUnmodified", true);
    zv::TDocument& plain = Open("p.txt", "plain\n");
    zv::TDocument& edited = Open("e.txt", "edited\n");
    QTest::keyClicks(&EditorOf(edited), "x");
    prompt.Answers = {zv::prNo};
    Change(kAppend, {dir / "p.txt", dir / "e.txt"});
    ASSERT_GE(WaitForQuestions(1), 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Written(plain) == "plain\nappended\n"; }, kNoticeMs));
    EXPECT_EQ(prompt.Asked.size(), 1u);
    EXPECT_NE(prompt.Asked[0].find(edited.FFilePath), std::string::npos);
    EXPECT_FALSE(plain.Modified());

    Configure("WarnChange", false);
    Change(kRewrite, {dir / "p.txt"});
    QTest::qWait(zv::TFileMonitor::kSettleMs * 3);
    monitor->CheckMemoTimeStamp();
    EXPECT_EQ(prompt.Asked.size(), 1u) << "WarnChange off asks nothing";
    EXPECT_EQ(Written(plain), "plain\nappended\n") << "and reloads nothing";
}

TEST_F(FileMonitorTest, OurOwnSavesAskNothingAndLaterChangesAreStillNoticed) {
    zv::TDocument& doc = Open("own.txt", "own\n");
    for (int round = 0; round < 3; ++round) {
        QTest::keyClicks(&EditorOf(doc), "x");
        QTest::keyClick(&EditorOf(doc), Qt::Key_S, Qt::ControlModifier); // renames over it
        QTest::qWait(zv::TFileMonitor::kSettleMs * 3);
        monitor->CheckMemoTimeStamp();
        EXPECT_TRUE(prompt.Asked.empty()) << round;
    }
    prompt.Answers = {zv::prYes};
    Change(kReplace, {dir / "own.txt"});
    ASSERT_GE(WaitForQuestions(1), 0) << "the watch lost by the saves is back";
    EXPECT_EQ(Written(doc), "moved in\n");
}

TEST_F(FileMonitorTest, AFollowedLogKeepsUpWithAWriterWithoutAsking) {
    const fs::path log = dir / "app.log";
    zv::TDocument& doc = Follow(log, "start\n");
    QProcess writer; // 40 lines, one every 25 ms, each written and flushed on its own
    writer.start("python3", {"-c",
                             "import sys, time\n"
                             "with open(sys.argv[1], 'a') as f:\n"
                             "    for i in range(40):\n"
                             "        f.write('line %d\\n' % i); f.flush(); time.sleep(0.025)\n",
                             QString::fromStdString(log.string())});
    ASSERT_TRUE(writer.waitForStarted(5000));
    int seenRows = 1;
    bool grew = true; // rows only ever come in at the end, in the file's order
    QElapsedTimer clock;
    clock.start();
    while (writer.state() != QProcess::NotRunning && clock.elapsed() < 20000) {
        QTest::qWait(50);
        grew = grew && doc.Lines().Count() >= seenRows;
        seenRows = doc.Lines().Count();
    }
    ASSERT_EQ(writer.exitCode(), 0);
    const bool caughtUp = QTest::qWaitFor([&] { return Written(doc) == zvtest::ReadAll(log); },
                                          zv::TFileMonitor::kFollowMs + 1000);
    EXPECT_TRUE(caughtUp) << "the document shows the whole log within the follow time";
    EXPECT_TRUE(grew);
    EXPECT_TRUE(prompt.Asked.empty());
    EXPECT_FALSE(doc.Modified());
    EXPECT_EQ(window->ActiveEditor()->Memo().FCurY, window->ActiveEditor()->Memo().RowCount() - 1)
        << "the caret follows the newest line";
}

// A log truncated in place and written again, longer than before, between two looks (same
// inode, larger size): what was read is not the file's start any more, so it is read whole.
TEST_F(FileMonitorTest, AFollowedLogTruncatedAndRegrownIsReadAgainWhole) {
    const fs::path log = dir / "app.log";
    zv::TDocument& doc = Follow(log, "first run line 1\nfirst run line 2\n");
    const auto inode = doc.FStamp.Inode;
    {
        std::ofstream again(log, std::ios::binary | std::ios::trunc); // in place: same inode
        again << "second run, a longer first line\nsecond run line 2\nline 3\n";
    }
    ASSERT_EQ(zv::StampOf(log.string()).Inode, inode);
    const bool caughtUp = QTest::qWaitFor([&] { return Written(doc) == zvtest::ReadAll(log); },
                                          zv::TFileMonitor::kFollowMs + 1000);
    EXPECT_TRUE(caughtUp) << Written(doc);
    EXPECT_TRUE(prompt.Asked.empty());
}

// The resident memory of this process in bytes, from /proc/self/status (0 when unknown).
std::int64_t ResidentBytes() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.starts_with("VmRSS:"))
            return std::stoll(line.substr(6)) * 1024;
    return 0;
}

// Another process appends 10,000 lines a second for ten seconds (its buffer cuts the writes
// anywhere, inside characters too): the followed document never lags more than three
// seconds, ends equal to the file byte for byte, and memory grows in proportion to the text.
TEST_F(FileMonitorTest, AFollowedLogKeepsUpWithTenThousandLinesASecond) {
    const fs::path log = dir / "busy.log";
    zv::TDocument& doc = Follow(log, "start\n");
    const std::int64_t residentBefore = ResidentBytes();
    QProcess writer; // 100 lines every 10 ms by the clock, for 10 s
    writer.start("python3",
                 {"-c",
                  "import sys, time\n"
                  "start = time.monotonic()\n"
                  "with open(sys.argv[1], 'a', encoding='utf-8') as f:\n"
                  "    for tick in range(1000):\n"
                  "        f.write(''.join('%d caf\u00e9 \u20ac line\\n' % (tick * 100 + i)\n"
                  "                        for i in range(100)))\n"
                  "        f.flush()\n"
                  "        time.sleep(max(0, start + (tick + 1) * 0.01 - time.monotonic()))\n",
                  QString::fromStdString(log.string())});
    ASSERT_TRUE(writer.waitForStarted(5000));
    std::vector<std::pair<qint64, std::int64_t>> fileSizes; // (ms, bytes) as the poll saw them
    std::int64_t worstLagMs = 0;
    QElapsedTimer clock;
    clock.start();
    while (writer.state() != QProcess::NotRunning && clock.elapsed() < 30000) {
        QTest::qWait(100);
        const qint64 now = clock.elapsed();
        fileSizes.emplace_back(now, static_cast<std::int64_t>(fs::file_size(log)));
        // The oldest file size the document has not read yet says how far behind it is.
        for (const auto& [at, size] : fileSizes)
            if (doc.Lines().CurrentStreamPos() < size) {
                worstLagMs = std::max<std::int64_t>(worstLagMs, now - at);
                break;
            }
    }
    ASSERT_EQ(writer.state(), QProcess::NotRunning) << "the writer ends within 30 s";
    ASSERT_EQ(writer.exitCode(), 0);
    const std::string file = zvtest::ReadAll(log);
    ASSERT_EQ(std::count(file.begin(), file.end(), '\n'), 100'001) << "all lines written";
    const bool caughtUp =
        QTest::qWaitFor([&] { return Written(doc) == file; }, zv::TFileMonitor::kFollowMs + 1000);
    EXPECT_TRUE(caughtUp) << "the document is the file, byte for byte";
    EXPECT_LE(worstLagMs, 3000) << "the document keeps up while the log grows";
    EXPECT_FALSE(doc.Modified());
    EXPECT_TRUE(prompt.Asked.empty());
    const std::int64_t grown = ResidentBytes() - residentBefore;
#if !defined(__SANITIZE_ADDRESS__) // its quarantine keeps up to 256 MB of freed memory resident
    EXPECT_LT(grown, 8 * static_cast<std::int64_t>(file.size()) + (32 << 20))
        << "memory grew by " << grown << " bytes for a text of " << file.size();
#else
    (void)grown;
#endif
}

} // namespace

// The window's question box: the to-all buttons and "Always" are offered and each click gives
// its answer.
TEST_F(FileMonitorTest, TheQuestionBoxGivesEachButtonsAnswer) {
    zv::TQtPrompt box(window.get());
    const std::vector<std::pair<QString, int>> buttons = {
        {"&Yes", zv::prYes},           {"&No", zv::prNo},         {"Yes to &All", zv::prYesToAll},
        {"N&o to All", zv::prNoToAll}, {"Al&ways", zv::prAlways},
    };
    for (const auto& [caption, answer] : buttons) {
        QStringList offered;
        QTimer::singleShot(0, [&, caption = caption] {
            auto* shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!shown)
                return;
            for (QAbstractButton* button : shown->buttons())
                offered << button->text();
            for (QAbstractButton* button : shown->buttons())
                if (button->text() == caption)
                    return button->click();
            shown->reject();
        });
        const int given =
            box.Prompt("Zevrit", "changed", zv::pfYesNoToAll | zv::pfAlwaysButton, zv::prNo);
        EXPECT_EQ(given, answer) << caption.toStdString();
        EXPECT_EQ(offered.size(), 5) << offered.join(", ").toStdString();
    }
}

// Red bands down the right edge of the editor's text area: the coloured lines, top to
// bottom, as the screen shows them.
int RedBands(zv::TEditorWidget& editor) {
    editor.viewport()->repaint();
    const QImage image = editor.viewport()->grab().toImage();
    const int x = image.width() - 4;
    int bands = 0;
    bool inBand = false;
    for (int y = 0; y < image.height(); ++y) {
        const bool red = image.pixelColor(x, y) == QColor(Qt::red);
        bands += red && !inBand;
        inBand = red;
    }
    return bands;
}

TEST_F(FileMonitorTest, AFollowedLogColoursTheLinesOfItsKeywordsAsTheyArrive) {
    zv::TMemIniFileW ini;
    ini.LoadFromBytes("[ERROR]\nColorBk=$0000FF\n[quiet]\nColorBk=$0000FF\nTransparent=1\n");
    window->SetMonitorLogFileOptions(std::make_shared<const zv::TTailKeywords>(ini));
    const fs::path log = dir / "colours.log";
    Follow(log, "ok\nERROR one\nquiet\nok\n");
    zv::TEditorWidget& editor = *window->ActiveEditor();
    EXPECT_EQ(RedBands(editor), 1);
    Change({"errors", "open(p, 'a').write('ok\\nERROR two\\nok\\nERROR three\\n')"}, {log});
    EXPECT_TRUE(QTest::qWaitFor([&] { return RedBands(editor) == 3; }, kNoticeMs));
    // The same text, not followed, keeps its plain look.
    zvtest::WriteAll(dir / "plain.log", zvtest::ReadAll(log));
    zv::TLoadFileArgs args;
    args.FileName = (dir / "plain.log").string();
    ASSERT_TRUE(helper.LoadFile(args));
    EXPECT_EQ(RedBands(*window->ActiveEditor()), 0);
}
