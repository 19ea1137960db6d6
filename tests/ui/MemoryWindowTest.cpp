// What the real window remembers for the next run, in runs of the window and its main object
// as the program makes them (data root of this test program's own): a file opened again
// gets its caret, selection, top row and encoding back (unless the opening names one); the
// last documents come back at start unless -NOREOPEN; recent and recently closed files open
// from the File menu; named sessions open and close documents; a damaged memory is said once
// and starts empty; unsaved text comes back after a kill.
#include "UiFixtures.h"
#include "ZvMemoControl/LineMarks.h"
#include "ZvMemoControl/TextAttribute.h"
#include "ZvMemoControl/ZvMemoFolds.h"
#include "common/Utf.h"
#include "shell/CrashKeeper.h"
#include "shell/DocumentMemory.h"
#include "shell/MainForm.h"
#include "shell/RootFolder.h"
#include "shell/Settings.h"
#include "syntax/SyntaxSelect.h"
#include "ui/Actions.h"
#include "ui/TabGroups.h"

#include <QMenu>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>

#include <functional>
#include <random>

namespace fs = std::filesystem;

namespace {

// Before anything asks for the root: all of this program's data goes to a folder of its own,
// with the syntax files of the build's tree.
const zvtest::TTempDir& Root() {
    static const zvtest::TTempDir root{"zv-memory-root"};
    static const bool linked = [] {
        fs::create_directory_symlink(fs::path(ZV_TEST_TREE) / "Syntax", root / "Syntax");
        return true;
    }();
    (void)linked;
    return root;
}
const bool kRootSet = ::setenv("ZEVRIT_ROOT", Root().Path().c_str(), 1) == 0;

// One run of the program: helper, window and main object, made and shown as at start.
struct TRun {
    explicit TRun(const std::vector<std::string>& argv = {"zevrit"}) {
        window = zvtest::ShownWindow(helper);
        form = std::make_unique<zv::TMainForm>(helper, window.get());
        window->AttachForm(*form);
        form->FormShow(argv);
    }
    ~TRun() {
        form.reset();
        window.reset();
    }
    // The user closes the window; true when it closed.
    bool Exit() {
        window->close();
        return !window->isVisible();
    }
    bool Open(const fs::path& path) {
        zv::TLoadFileArgs args;
        args.FileName = path.string();
        return helper.LoadFile(args);
    }
    std::vector<std::string> Paths() const {
        std::vector<std::string> paths;
        for (const auto& doc : helper.Documents())
            paths.push_back(doc->FFilePath);
        return paths;
    }
    zv::TDocumentMemory& Memory() { return *form->Memory(); }

    zvtest::TScriptedPrompt prompt;
    zv::TMainFormHelper helper{prompt};
    std::unique_ptr<zv::TMainWindow> window;
    std::unique_ptr<zv::TMainForm> form;
};

class MemoryWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(kRootSet);
        ASSERT_EQ(zv::GetRootFolder(), Root().Path());
        fs::remove_all(data);
        fs::create_directories(data);
        zv::SettingsIni().Clear();
    }
    void TearDown() override { zv::SettingsIni().Clear(); }

    fs::path Write(const std::string& name, const std::string& bytes) {
        zvtest::WriteAll(dir / name, bytes);
        return dir / name;
    }

    const fs::path data = Root().Path() / "Data";
    zvtest::TTempDir temp{"zv-memory"};
    const fs::path dir = temp.Path();
};

// 300 rows, one of them Cyrillic in code page 1251, which detection takes for 1252.
std::string Cyrillic1251Text() {
    std::string text;
    for (int i = 0; i < 300; ++i)
        text +=
            i == 7 ? "\xCF\xF0\xE8\xE2\xE5\xF2 row\n" : "row " + std::to_string(i) + " of text\n";
    return text;
}

TEST_F(MemoryWindowTest, AFileOpenedAgainGetsItsCaretSelectionTopRowAndEncodingBack) {
    const std::string bytes = Cyrillic1251Text();
    const fs::path file = Write("cyr.txt", bytes);
    std::mt19937 random(42);
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const zv::TZvPos start{static_cast<int>(random() % 10), static_cast<int>(random() % 290)};
        const zv::TZvPos end{static_cast<int>(random() % 10), static_cast<int>(random() % 290)};
        const int top = static_cast<int>(random() % 250);
        {
            TRun first;
            ASSERT_TRUE(first.Open(file));
            zv::TDocument& doc = *first.helper.ActiveDocument();
            if (round == 0) {
                ASSERT_NE(doc.Lines().CodePage(), 1251u) << "detection alone does not find it";
            }
            ASSERT_TRUE(first.helper.ReopenWithEncoding(doc, 1251));
            zv::TEditorWidget& editor = *first.window->ActiveEditor();
            editor.Memo().SetSelection(start, end);
            editor.verticalScrollBar()->setValue(top);
            ASSERT_TRUE(first.Exit());
        }
        ASSERT_TRUE(fs::exists(data / "FileInfo.xml"));
        TRun second;
        ASSERT_TRUE(second.Open(file));
        const zv::TDocument& doc = *second.helper.ActiveDocument();
        EXPECT_EQ(doc.Lines().CodePage(), 1251u);
        EXPECT_EQ(zv::Utf16ToUtf8(doc.Lines().Get(7)), "Привет row");
        const zv::TEditorWidget& editor = *second.window->ActiveEditor();
        EXPECT_EQ(editor.Memo().SelStart().X, start.X);
        EXPECT_EQ(editor.Memo().SelStart().Y, start.Y);
        EXPECT_EQ(editor.Memo().FCurX, end.X);
        EXPECT_EQ(editor.Memo().FCurY, end.Y);
        EXPECT_EQ(editor.TopRow(), top);
        EXPECT_TRUE(second.Exit());
        EXPECT_EQ(zvtest::ReadAll(file), bytes) << "remembering never writes the file";
    }
    // A code page given for the opening wins over the remembered one.
    TRun third;
    zv::TLoadFileArgs args;
    args.FileName = file.string();
    args.CodePage = 1252;
    ASSERT_TRUE(third.helper.LoadFile(args));
    EXPECT_EQ(third.helper.ActiveDocument()->Lines().CodePage(), 1252u);
}

// Marks set with the keys come back on their lines, whether the file opens at once or in a
// tab read only when shown (the last documents at start); a file that shrank meanwhile
// keeps the marks that still have a line.
TEST_F(MemoryWindowTest, BookmarksAndLineMarksComeBackOnTheirLines) {
    zv::SettingsIni().WriteBool("EditorMisc", "ReopenLastDoc", true);
    std::string text;
    for (int i = 0; i < 40; ++i)
        text += "line " + std::to_string(i) + "\n";
    const fs::path file = Write("marks.txt", text);
    const fs::path other = Write("other.txt", "other\n");
    // The marks of the document in tab 0, once its tab shows: row, number (-2: plain mark).
    const auto marksOf = [](TRun& run) {
        run.window->TabGroup()->setCurrentIndex(0);
        const zv::TZvMemoStrings& lines = run.helper.Documents()[0]->Lines();
        std::vector<std::pair<int, int>> marks;
        for (int row = 0; row < lines.Count(); ++row)
            if (zv::HasLinemark(lines, row))
                marks.emplace_back(row, -2);
            else if (const int n = zv::GetBookmark(lines, row); n >= 0)
                marks.emplace_back(row, n);
        return marks;
    };
    const std::vector<std::pair<int, int>> expected = {{5, 3}, {12, -2}, {30, 0}};
    {
        TRun first;
        ASSERT_TRUE(first.Open(file));
        zv::TEditorWidget& editor = *first.window->ActiveEditor();
        for (const auto& [row, number] : expected) {
            editor.Memo().SetTextCursor(2, row);
            if (number == -2)
                QTest::keyClick(&editor, Qt::Key_F2, Qt::ControlModifier);
            else
                QTest::keyClick(&editor, static_cast<Qt::Key>(Qt::Key_0 + number),
                                Qt::ControlModifier | Qt::ShiftModifier);
        }
        ASSERT_EQ(marksOf(first), expected);
        ASSERT_TRUE(first.Open(other)); // the active one: the marked tab reopens deferred
        ASSERT_TRUE(first.Exit());
    }
    {
        TRun second;
        ASSERT_EQ(second.Paths(), (std::vector<std::string>{file.string(), other.string()}));
        EXPECT_TRUE(second.helper.Documents()[0]->FDeferred);
        EXPECT_EQ(marksOf(second), expected);
        EXPECT_FALSE(second.helper.Documents()[0]->Modified());
        ASSERT_TRUE(second.Exit());
    }
    const std::string shrunk = text.substr(0, text.find("line 20"));
    Write("marks.txt", shrunk);
    TRun third;
    EXPECT_EQ(marksOf(third), (std::vector<std::pair<int, int>>{{5, 3}, {12, -2}}));
    EXPECT_TRUE(third.Exit());
    EXPECT_EQ(zvtest::ReadAll(file), shrunk) << "remembering never writes the file";
}

// A fold closed with its command closes again, once the first fold pass is in, when the file
// opens again; the text stays as it was.
TEST_F(MemoryWindowTest, ClosedFoldsCloseAgainWhenTheFileOpensAgain) {
    const std::string text = "int f(void)\n{\n    if (a) {\n        b();\n    }\n}\n"
                             "int g(void) {\n    return 1;\n}\nint c;\n";
    const fs::path file = Write("folds.c", text);
    // Waits (bounded) until `done` holds for the active document's rows.
    const auto waitFor = [](TRun& run, const std::function<bool(const zv::TZvMemoStrings&)>& done) {
        const zv::TZvMemoStrings& lines = run.helper.ActiveDocument()->Lines();
        for (int i = 0; i < 200 && !done(lines); ++i)
            QTest::qWait(50); // the background thread builds the folds
        return done(lines);
    };
    {
        TRun first;
        ASSERT_TRUE(first.Open(file));
        ASSERT_TRUE(waitFor(first, [](const auto& l) { return zv::IsFoldHead(l, 6); }));
        zv::TEditorWidget& editor = *first.window->ActiveEditor();
        editor.setFocus();
        editor.Memo().SetTextCursor(0, 6);
        first.window->Actions().UpdateActions();
        first.window->Actions().Get("ToggleFoldAction")->trigger();
        ASSERT_TRUE(zv::IsFoldClosed(first.helper.ActiveDocument()->Lines(), 6));
        ASSERT_TRUE(first.Exit());
    }
    TRun second;
    ASSERT_TRUE(second.Open(file));
    EXPECT_TRUE(waitFor(second, [](const auto& l) { return zv::IsFoldClosed(l, 6); }));
    const zv::TZvMemoStrings& lines = second.helper.ActiveDocument()->Lines();
    EXPECT_FALSE(zv::IsFoldClosed(lines, 0));
    EXPECT_TRUE(lines.GetLineAttribute(7).Hidden());
    EXPECT_FALSE(lines.GetLineAttribute(9).Hidden());
    EXPECT_FALSE(second.helper.ActiveDocument()->Modified());
    EXPECT_TRUE(second.Exit());
    EXPECT_EQ(zvtest::ReadAll(file), text);
}

TEST_F(MemoryWindowTest, TheLastDocumentsComeBackAtStartUnlessNoReopen) {
    zv::SettingsIni().WriteBool("EditorMisc", "ReopenLastDoc", true);
    std::vector<fs::path> files;
    for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt"})
        files.push_back(Write(name, Cyrillic1251Text()));
    {
        TRun first;
        for (const auto& file : files)
            ASSERT_TRUE(first.Open(file));
        first.window->ActiveEditor()->Memo().SetTextCursor(3, 120); // in d.txt
        ASSERT_TRUE(first.helper.ClosePage(0));                     // a.txt closes
        QCoreApplication::processEvents();
        EXPECT_EQ(zv::LoadLastOpenFiles(data / "_reopen.txt").Views,
                  (std::vector<std::vector<std::string>>{
                      {files[1].string(), files[2].string(), files[3].string()}}))
            << "written when a document closes";
        first.helper.Activate(1); // c.txt
        ASSERT_TRUE(first.Exit());
    }
    fs::remove(files[1]); // b.txt is gone meanwhile: skipped
    {
        TRun second;
        EXPECT_EQ(second.Paths(), (std::vector<std::string>{files[2].string(), files[3].string()}));
        ASSERT_EQ(second.helper.ActiveDocument(), second.helper.Documents()[0].get());
        EXPECT_FALSE(second.helper.Documents()[0]->FDeferred) << "the active one is read";
        const zv::TDocument& d = *second.helper.Documents()[1];
        EXPECT_TRUE(d.FDeferred) << "the others wait until their tab shows";
        EXPECT_FALSE(d.FAddToMRU);
        second.window->TabGroup()->setCurrentIndex(1);
        EXPECT_FALSE(d.FDeferred);
        EXPECT_EQ(second.window->ActiveEditor()->Memo().FCurY, 120);
        EXPECT_EQ(second.window->ActiveEditor()->Memo().FCurX, 3);
        ASSERT_TRUE(second.Exit());
    }
    for (const char* noReopen : {"-NOREOPEN", "/noreopen"}) {
        TRun third({"zevrit", noReopen});
        EXPECT_TRUE(third.Paths().empty()) << noReopen;
    }
    zv::SettingsIni().WriteBool("EditorMisc", "ReopenLastDoc", false);
    TRun fourth;
    EXPECT_TRUE(fourth.Paths().empty()) << "the option is off";
}

// Each document comes back into its tab group, in the reopen list and in a session, and
// with "SaveTabLayout" the groups that showed at exit show again, empty ones too.
TEST_F(MemoryWindowTest, TabGroupsAndTheirDocumentsComeBackAtTheNextStart) {
    zv::SettingsIni().WriteBool("EditorMisc", "ReopenLastDoc", true);
    zv::SettingsIni().WriteBool("Window", "SaveTabLayout", true);
    const fs::path a = Write("a.txt", "a\n"), b = Write("b.txt", "b\n"), c = Write("c.txt", "c\n");
    // Each document's group and whether each group shows.
    const auto layout = [&](TRun& run) {
        std::vector<int> groups;
        for (const fs::path& file : {a, b, c}) {
            int group = -1;
            run.window->FindDocMemo(file.string(), group);
            groups.push_back(group);
        }
        for (int g = 1; g < zv::TTabGroups::kCount; ++g)
            groups.push_back(run.window->TabGroups().IsShown(g) ? 1 : 0);
        return groups;
    };
    const std::vector<int> expected{0, 2, 1, /*shown 1..5*/ 1, 1, 0, 1, 0};
    {
        TRun first;
        ASSERT_TRUE(first.Open(a));
        ASSERT_TRUE(first.Open(b));
        ASSERT_TRUE(first.window->MoveTabToGroup(2));
        ASSERT_TRUE(first.window->NewTabGroup()); // group 1, where c goes
        ASSERT_TRUE(first.Open(c));
        first.window->ShowTabGroup(4, true);
        ASSERT_EQ(layout(first), expected);
        ASSERT_TRUE(first.Memory().SaveSession("groups", ""));
        ASSERT_TRUE(first.Exit());
    }
    EXPECT_TRUE(zv::SettingsIni().ReadBool("Window", "TabGroup4", false));
    EXPECT_FALSE(zv::SettingsIni().ReadBool("Window", "TabGroup3", true));
    TRun second;
    EXPECT_EQ(layout(second), expected);
    ASSERT_NE(second.helper.ActiveDocument(), nullptr);
    EXPECT_EQ(second.helper.ActiveDocument()->FFilePath, c.string()) << "the active one";
    EXPECT_EQ(second.helper.FActiveDocumentView, 1);
    second.prompt.Answers = {zv::prNo};
    ASSERT_TRUE(second.Memory().OpenSession("groups"));
    const std::vector<int> reopened = layout(second);
    EXPECT_EQ(std::vector<int>(reopened.begin(), reopened.begin() + 3),
              std::vector<int>(expected.begin(), expected.begin() + 3))
        << "the session keeps each document's group";
}

TEST_F(MemoryWindowTest, RecentAndRecentlyClosedFilesOpenFromTheFileMenu) {
    const fs::path a = Write("a&b.txt", "a\n"), b = Write("b.txt", "b\n");
    TRun run;
    ASSERT_TRUE(run.Open(a));
    ASSERT_TRUE(run.Open(b));
    ASSERT_TRUE(run.helper.ClosePage(0));
    ASSERT_TRUE(run.helper.ClosePage(0));
    QCoreApplication::processEvents();
    EXPECT_EQ(zvtest::ReadAll(data / "MRUClosed.txt"), b.string() + "\n" + a.string() + "\n");

    auto* closed = run.window->findChild<QMenu*>("RecentlyClosedMenu");
    ASSERT_NE(closed, nullptr);
    emit closed->aboutToShow();
    ASSERT_EQ(closed->actions().size(), 2);
    EXPECT_EQ(closed->actions()[1]->text().toStdString(), (dir / "a&&b.txt").string());
    closed->actions()[1]->trigger();
    EXPECT_EQ(run.Paths(), std::vector<std::string>{a.string()});

    fs::remove(b); // a recent file that is gone stays listed; opening it asks
    auto* recent = run.window->findChild<QMenu*>("RecentFilesMenu");
    ASSERT_NE(recent, nullptr);
    emit recent->aboutToShow();
    ASSERT_EQ(recent->actions().size(), 2);
    EXPECT_EQ(recent->actions()[1]->text().toStdString(), b.string());
    run.prompt.Answers = {zv::prNo};
    const size_t asked = run.prompt.Asked.size();
    recent->actions()[1]->trigger();
    EXPECT_EQ(run.prompt.Asked.size(), asked + 1);
    EXPECT_EQ(run.Paths(), std::vector<std::string>{a.string()});
    emit recent->aboutToShow();
    EXPECT_EQ(recent->actions().size(), 2);
}

TEST_F(MemoryWindowTest, NamedSessionsOpenTheirDocumentsAndCanBeDeleted) {
    const fs::path a = Write("a.txt", "a\n"), b = Write("b.txt", "b\n"), c = Write("c.txt", "c\n");
    TRun run;
    ASSERT_TRUE(run.Open(a));
    ASSERT_TRUE(run.Open(b));
    ASSERT_TRUE(run.Memory().SaveSession("two", "a and b"));
    ASSERT_TRUE(run.helper.CloseAllDocumentTabs());
    ASSERT_TRUE(run.Open(c));

    auto* open = run.window->findChild<QMenu*>("OpenSessionMenu");
    ASSERT_NE(open, nullptr);
    emit open->aboutToShow();
    ASSERT_EQ(open->actions().size(), 1);
    EXPECT_EQ(open->actions()[0]->toolTip().toStdString(), "a and b");
    open->actions()[0]->trigger();
    EXPECT_EQ(run.Paths(), (std::vector<std::string>{a.string(), b.string()}))
        << "opening a session closes the open documents first";

    zv::SettingsIni().WriteBool("SessionOptions", "CloseOpenFiles", false);
    TRun keeping;
    ASSERT_TRUE(keeping.Open(c));
    ASSERT_TRUE(keeping.Memory().OpenSession("two"));
    EXPECT_EQ(keeping.Paths(), (std::vector<std::string>{c.string(), a.string(), b.string()}));

    auto* remove = keeping.window->findChild<QMenu*>("DeleteSessionMenu");
    ASSERT_NE(remove, nullptr);
    emit remove->aboutToShow();
    ASSERT_EQ(remove->actions().size(), 1);
    remove->actions()[0]->trigger();
    EXPECT_TRUE(zv::TSessions(data / "Sessions.ini").Names().empty());
}

// Unsaved text survives a kill: within two seconds of the edits the crash session holds the
// exact text of every modified document, named or new; another window of the same root
// neither offers nor clears it while this one runs; and the next start asks once and
// restores each text, modified, with its encoding and caret, without writing any file.
TEST_F(MemoryWindowTest, UnsavedTextIsKeptWithinTwoSecondsAndRestoredAtTheNextStart) {
    const fs::path crash = data / "Crash";
    zvtest::TScriptedPrompt prompt;
    zv::TMainFormHelper helper{prompt};
    const auto window = zvtest::ShownWindow(helper);
    auto keeper = std::make_unique<zv::TCrashKeeper>(helper, crash);
    zv::TEditorWidget& latin =
        zvtest::OpenInWindow(helper, *window, dir / "latin.txt", "caf\xE9\r\nline two\r\n");
    latin.Memo().SetTextCursor(0, 1);
    QTest::keyClicks(&latin, "new ");
    zv::TDocument& fresh = helper.NewDocument();
    QTest::keyClicks(window->ActiveEditor(), "never saved");
    for (const auto& doc : helper.Documents())
        ASSERT_TRUE(doc->Modified());
    keeper->TextChanged();
    QTest::qWait(zv::TCrashKeeper::kDelayMs + 300);
    keeper->WaitWritten();
    const fs::path kept = keeper->Folder() / "Crash.ini";
    ASSERT_TRUE(fs::exists(kept)) << "written within two seconds of the edit";
    EXPECT_EQ(fs::status(kept).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
    {
        zv::THeadlessPrompt quiet{false};
        zv::TMainFormHelper other{quiet};
        zv::TCrashKeeper otherWindow(other, crash);
        EXPECT_FALSE(otherWindow.HasSession()) << "a running window's texts are not a crash's";
        otherWindow.Clear(); // its clean end
        EXPECT_TRUE(fs::exists(kept)) << "another window's end keeps this one's texts";
    }
    const std::u16string latinText = helper.Documents()[0]->Lines().GetTextWithLinefeeds();
    const std::string freshName = fresh.FFilePath;

    // The run is killed: nothing closes, nothing is saved, its lock goes with it.
    keeper.reset();
    zvtest::TScriptedPrompt asked;
    asked.Answers = {zv::prYes};
    zv::TMainFormHelper next{asked};
    zv::TMainWindow nextWindow(next);
    zv::TMainForm form(next, &nextWindow);
    nextWindow.AttachForm(form);
    form.FormShow({"zevrit"});
    ASSERT_EQ(asked.Asked.size(), 1u) << "the start asks once";
    ASSERT_EQ(next.Documents().size(), 2u);
    const zv::TDocument& back = *next.Documents()[0];
    EXPECT_EQ(back.FFilePath, (dir / "latin.txt").string());
    EXPECT_EQ(back.Lines().GetTextWithLinefeeds(), latinText) << "byte for byte, CR LF kept";
    EXPECT_EQ(back.Lines().CodePage(), 1252u);
    EXPECT_TRUE(nextWindow.EditorAt(0)->IsModified());
    EXPECT_EQ(nextWindow.EditorAt(0)->Memo().Caret(), (zv::TZvPos{4, 1}));
    EXPECT_EQ(zvtest::ReadAll(dir / "latin.txt"), "caf\xE9\r\nline two\r\n")
        << "nothing is saved without the user";
    EXPECT_EQ(next.Documents()[1]->FFilePath, freshName);
    EXPECT_TRUE(next.Documents()[1]->FIsNew);
    EXPECT_EQ(next.Documents()[1]->Lines().Get(0), u"never saved");
    // The restored texts are this run's now; the killed run's folder went.
    EXPECT_TRUE(fs::exists(form.Crash().Folder() / "Crash.ini"));
    EXPECT_EQ(zvtest::FolderNames(crash),
              (std::vector<std::string>{form.Crash().Folder().filename().string()}));

    // Saved and closed with "no": nothing is left to keep.
    asked.Answers = {zv::prNo, zv::prNo};
    next.CloseAllDocumentTabs();
    form.Crash().WriteNow();
    form.Crash().WaitWritten();
    EXPECT_FALSE(fs::exists(form.Crash().Folder() / "Crash.ini"));
}

// The type the extension map gives a file name: an oracle apart from the window.
std::string TypeByExtension(const fs::path& file) {
    zv::TZvSyntax loader;
    zv::TSyntaxEnvironment env;
    env.Settings = &zv::SettingsIni();
    env.Root = zv::GetRootFolder();
    return zv::Utf16ToUtf8(zv::TSyntaxSelector(env, loader).LoadStyleFromFile(file));
}

TEST_F(MemoryWindowTest, TheSyntaxInForceIsRememberedAndWinsOverTheExtension) {
    const fs::path notes = Write("notes.txt", "int main() { return 0; }\n");
    const fs::path c = dir / "notes.c";
    ASSERT_EQ(TypeByExtension(c), "C");
    ASSERT_NE(TypeByExtension(notes), "C");
    {
        TRun first;
        ASSERT_TRUE(first.Open(notes));
        first.helper.FOnAskSaveAs = [&](const zv::TDocument&) {
            return zv::TSaveAsChoice{c.string()};
        };
        ASSERT_TRUE(first.helper.SaveFileAs());
        QCoreApplication::processEvents(); // the new name's syntax follows the save
        ASSERT_TRUE(first.Exit());
    }
    zv::TFileQue memory(data / "FileInfo.xml", {});
    ASSERT_EQ(memory.LoadList(), zv::TFileQueLoad::Loaded);
    ASSERT_TRUE(memory.GetFileData(c.string()));
    EXPECT_EQ(memory.GetFileData(c.string())->Highlighter, "C");

    zv::TFileInfo chosen; // a .txt file shown as C
    chosen.LocalFile = notes.string();
    chosen.Highlighter = "C";
    memory.AddFiledata(chosen);
    ASSERT_TRUE(memory.SaveFile());
    TRun second;
    ASSERT_TRUE(second.Open(notes));
    EXPECT_EQ(second.helper.ActiveDocument()->FHighlighter, "C");
    EXPECT_NE(second.window->ActiveEditor()->Scan(), nullptr) << "coloured as C";
}

TEST_F(MemoryWindowTest, ADamagedMemoryIsSaidOnceAndAFreshOneIsWritten) {
    zvtest::WriteAll(data / "FileInfo.xml", "<Files><File><LocalFile>/x");
    const fs::path file = Write("a.txt", "a\nb\nc\n");
    TRun run;
    ASSERT_EQ(run.prompt.Asked.size(), 1u);
    EXPECT_NE(run.prompt.Asked[0].find(".damaged-"), std::string::npos) << run.prompt.Asked[0];
    ASSERT_TRUE(run.Open(file));
    run.window->ActiveEditor()->Memo().SetTextCursor(1, 2);
    ASSERT_TRUE(run.helper.ClosePage(0));
    QCoreApplication::processEvents();
    zv::TFileQue read(data / "FileInfo.xml", {});
    ASSERT_EQ(read.LoadList(), zv::TFileQueLoad::Loaded);
    ASSERT_EQ(read.Entries().size(), 1u);
    EXPECT_EQ(read.Entries()[0].Cursor->CurY, 2);
    EXPECT_EQ(run.prompt.Asked.size(), 1u) << "said once";
}

// A saved window layout comes back when the user switches to it, the layout left behind is
// kept as the previous one (xmllint reads the dock file), and a damaged layout is told once
// and changes nothing.
TEST_F(MemoryWindowTest, WindowLayoutsSwitchKeepThePreviousAndRefuseADamagedOne) {
    TRun run;
    zv::TMainWindow& window = *run.window;
    window.resize(820, 530);
    QApplication::processEvents();
    const zv::TWindowLayout wide = window.CurrentLayout();
    EXPECT_EQ(wide.Width, 820);
    std::string error;
    ASSERT_TRUE(window.Layouts().Save("wide", wide, error)) << error;
    const fs::path folder = Root() / "Layouts";
    EXPECT_EQ(
        zvtest::RunOutput("xmllint --noout '" + (folder / "wide.xml").string() + "' && echo ok"),
        "ok\n");
    EXPECT_EQ(window.Layouts().Names(), std::vector<std::string>{"wide"});

    window.resize(610, 420);
    window.TabGroup()->tabBar()->hide();
    QApplication::processEvents();
    const zv::TWindowLayout narrow = window.CurrentLayout();
    ASSERT_TRUE(window.SwitchLayout("wide"));
    QApplication::processEvents();
    EXPECT_EQ(window.CurrentLayout(), wide);
    ASSERT_TRUE(window.SwitchLayout(zv::TWindowLayouts::kBackup)) << "the previous layout";
    QApplication::processEvents();
    EXPECT_EQ(window.CurrentLayout(), narrow);

    zvtest::WriteAll(folder / "bad.txt", "no section\n");
    zvtest::WriteAll(folder / "bad.xml", "<Layout");
    const std::string backup = zvtest::ReadAll(folder / "_backup.txt");
    const std::size_t told = run.prompt.Asked.size();
    EXPECT_FALSE(window.SwitchLayout("bad"));
    EXPECT_EQ(run.prompt.Asked.size(), told + 1);
    EXPECT_EQ(window.CurrentLayout(), narrow);
    EXPECT_EQ(zvtest::ReadAll(folder / "_backup.txt"), backup) << "the backup stays";
}

} // namespace
