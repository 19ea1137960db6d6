// Documents' ways in and out of the real window. No close loses text: every way out of a
// modified document asks, and each answer does what it says to the text and to the file on
// disk; read-only documents refuse edits and save under a new name. Dropped files open, a
// reopen changes the encoding, a copy leaves the document as it was.
#include "UiFixtures.h"
#include "common/Utf.h"
#include "shell/CrashKeeper.h"
#include "ui/SaveAsDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QMimeData>
#include <QTabWidget>
#include <QUrl>

#include <functional>
#include <random>

namespace fs = std::filesystem;

namespace {

class ClosingTest : public zvtest::TShownWindowTest {
protected:
    ClosingTest() : TShownWindowTest("zv-close") {}
    // Opens the file `name` as it stands on disk, read-only when asked.
    zv::TEditorWidget& Load(const std::string& name, bool readOnly) {
        zv::TLoadFileArgs args;
        args.FileName = (dir / name).string();
        args.ReadOnly = readOnly;
        EXPECT_TRUE(helper.LoadFile(args));
        return *window->ActiveEditor();
    }
};

TEST_F(ClosingTest, EveryWayToCloseAModifiedDocumentAsksAndKeepsItsPromise) {
    using TWay = std::function<void(zv::TMainWindow&)>;
    const std::vector<std::pair<const char*, TWay>> ways = {
        {"tab close button", [](zv::TMainWindow& w) { emit w.TabGroup()->tabCloseRequested(0); }},
        {"Ctrl+W",
         [](zv::TMainWindow& w) {
             w.TabGroup()->setCurrentIndex(0);
             QTest::keyClick(w.ActiveEditor(), Qt::Key_W, Qt::ControlModifier);
         }},
        {"close others",
         [](zv::TMainWindow& w) {
             w.TabGroup()->setCurrentIndex(1);
             for (QAction* a : w.findChildren<QAction*>())
                 if (a->text() == QObject::tr("Close Ot&hers"))
                     a->trigger();
         }},
        {"exit", [](zv::TMainWindow& w) { w.close(); }},
    };
    for (const auto& [name, close] : ways) {
        for (const int answer : {zv::prCancel, zv::prNo, zv::prYes}) {
            const std::string what = std::string(name) + ", answer " + std::to_string(answer);
            zv::TEditorWidget& edited = Open("f.txt", "orig\n");
            Open("other.txt", "other\n");
            QTest::keyClicks(&edited, "x");
            prompt.Answers = {answer};
            prompt.Asked.clear();
            close(*window);
            EXPECT_EQ(prompt.Asked.size(), 1u) << what;
            const bool kept = answer == zv::prCancel;
            const auto& docs = helper.Documents();
            const bool stillOpen = helper.FindDocMemo((dir / "f.txt").string()) >= 0;
            EXPECT_EQ(stillOpen, kept) << what;
            EXPECT_TRUE(!kept || window->isVisible()) << what << ": the window stays open";
            if (kept) {
                EXPECT_EQ(docs[helper.FindDocMemo((dir / "f.txt").string())]->Lines().Get(0),
                          u"xorig")
                    << what;
            }
            EXPECT_EQ(zvtest::ReadAll(dir / "f.txt"), answer == zv::prYes ? "xorig\n" : "orig\n")
                << what;
            prompt.Answers = {zv::prNo};
            helper.CloseAllDocumentTabs();
            ASSERT_TRUE(helper.Documents().empty());
            window->show();
        }
    }
}

// Random edits, saves and closes with random answers: the text on disk or in an open
// document is never older than the last "yes", and text goes away only after a "no".
TEST_F(ClosingTest, NoSequenceOfEditsSavesAndClosesLosesTextWithoutANo) {
    std::mt19937 random(12);
    const fs::path file = dir / "r.txt";
    zvtest::WriteAll(file, "");
    std::string latest; // what the user typed last, wherever it lives
    for (int step = 0; step < 200; ++step) {
        const int index = helper.FindDocMemo(file.string());
        switch (random() % 4) {
        case 0: { // type
            zv::TEditorWidget& editor =
                index >= 0 ? *window->EditorAt(index) : Open("r.txt", zvtest::ReadAll(file));
            editor.Memo().SetTextCursor(0, 0);
            QTest::keyClick(&editor, static_cast<Qt::Key>(Qt::Key_A + random() % 26));
            latest = zv::Utf16ToUtf8(editor.Memo().RowText(0));
            break;
        }
        case 1: // save
            if (index >= 0)
                QTest::keyClick(window->EditorAt(index), Qt::Key_S, Qt::ControlModifier);
            break;
        default: { // close with an answer
            const int answer = std::array{zv::prYes, zv::prNo, zv::prCancel}[random() % 3];
            prompt.Answers = {answer};
            const bool modified = index >= 0 && helper.Documents()[index]->Modified();
            if (index >= 0 && window->TabGroup()->count() > 0)
                emit window->TabGroup()->tabCloseRequested(index);
            if (modified && answer == zv::prNo)
                latest = zvtest::ReadAll(file); // the user let it go
            break;
        }
        }
        const int open = helper.FindDocMemo(file.string());
        const std::string kept = open >= 0
                                     ? zv::Utf16ToUtf8(helper.Documents()[open]->Lines().Get(0))
                                     : zvtest::ReadAll(file);
        ASSERT_EQ(kept, latest) << "step " << step;
    }
}

TEST_F(ClosingTest, ReadOnlyDocumentsRefuseEditsAndSaveUnderANewName) {
    const fs::path locked = dir / "locked.txt";
    Open("locked.txt", "keep\n");
    fs::permissions(locked, fs::perms::owner_read | fs::perms::group_read);
    zvtest::WriteAll(dir / "switch.txt", "keep\n");
    zv::TEditorWidget& bySwitch = Load("switch.txt", true);
    EXPECT_TRUE(helper.Documents()[1]->FReadOnly);
    QTest::keyClicks(&bySwitch, "typed");
    QTest::keyClick(&bySwitch, Qt::Key_Delete);
    EXPECT_EQ(bySwitch.Memo().RowText(0), u"keep");
    EXPECT_FALSE(bySwitch.IsModified());

    helper.CloseDocument(0);
    zv::TEditorWidget& reopened = Load("locked.txt", false);
    EXPECT_TRUE(helper.ActiveDocument()->FReadOnly) << "a file without write bits";
    std::string asked;
    helper.FOnAskSaveAs = [&](const zv::TDocument& doc) {
        asked = doc.FFilePath;
        return zv::TSaveAsChoice{(dir / "copy.txt").string()};
    };
    QTest::keyClick(&reopened, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(asked, locked.string()) << "Save goes to Save As with the name suggested";
    EXPECT_EQ(zvtest::ReadAll(dir / "copy.txt"), zvtest::ReadAll(locked));
    EXPECT_EQ(helper.ActiveDocument()->FFilePath, (dir / "copy.txt").string());
    EXPECT_FALSE(reopened.Memo().FReadOnly) << "the new file is the user's to edit";
}

TEST_F(ClosingTest, DroppedFilesOpenReopenChangesTheEncodingACopyLeavesTheDocument) {
    zvtest::WriteAll(dir / "a.txt", "alpha\n");
    zvtest::WriteAll(dir / "cyr.txt", "\xCF\xF0\xE8\n");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString((dir / "a.txt").string())),
                  QUrl::fromLocalFile(QString::fromStdString((dir / "cyr.txt").string()))});
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &drop);
    ASSERT_EQ(helper.Documents().size(), 2u);

    zv::TDocument& cyr = *helper.ActiveDocument();
    EXPECT_EQ(cyr.Lines().CodePage(), 1252u);
    ASSERT_TRUE(helper.ReopenWithEncoding(cyr, 1251));
    EXPECT_EQ(zv::Utf16ToUtf8(cyr.Lines().Get(0)), "\xD0\x9F\xD1\x80\xD0\xB8");
    EXPECT_EQ(window->StatusEncoding(), "windows-1251");

    zv::TEditorWidget& editor = *window->ActiveEditor();
    QTest::keyClicks(&editor, "x");
    ASSERT_TRUE(helper.SaveFileCopy(cyr, (dir / "copy.txt").string()));
    EXPECT_EQ(zvtest::ReadAll(dir / "copy.txt"), "x\xCF\xF0\xE8\n");
    EXPECT_EQ(cyr.FFilePath, (dir / "cyr.txt").string());
    EXPECT_TRUE(editor.IsModified()) << "the document itself is still unsaved";
    EXPECT_TRUE(window->StatusMode().contains("Modified"));
}

// Another process appends to, rewrites and replaces the file behind an open document: the
// next save asks first, and "no" leaves the other program's bytes on disk.
TEST_F(ClosingTest, ASaveNeverOverwritesAChangeOnDiskUnseen) {
    const fs::path file = dir / "shared.txt";
    const std::vector<std::pair<const char*, std::string>> changes = {
        {"append", "echo appended >> '" + file.string() + "'"},
        {"rewrite", "printf 'other text\\n' > '" + file.string() + "'"},
        {"replace", "printf 'moved in\\n' > '" + file.string() + ".new' && mv '" + file.string() +
                        ".new' '" + file.string() + "'"},
    };
    for (const auto& [what, command] : changes) {
        zv::TEditorWidget& editor = Open("shared.txt", "mine\n");
        QTest::keyClicks(&editor, "x");
        QTest::qWait(20); // a later modification time, whatever the file system's grain
        ASSERT_EQ(std::system(command.c_str()), 0) << what;
        const std::string theirs = zvtest::ReadAll(file);
        prompt.Answers = {zv::prNo};
        prompt.Asked.clear();
        QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(prompt.Asked.size(), 1u) << what;
        EXPECT_EQ(zvtest::ReadAll(file), theirs) << what << ": their change stays";
        EXPECT_TRUE(editor.IsModified()) << what;
        prompt.Answers = {zv::prYes};
        QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(zvtest::ReadAll(file), "xmine\n") << what << ": overwritten when told";
        prompt.Asked.clear();
        QTest::keyClicks(&editor, "y");
        QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(prompt.Asked.size(), 0u) << what << ": our own save changed nothing behind us";
        helper.CloseAllDocumentTabs();
    }
}

// Save As writes the encoding, byte order mark and line ends chosen in the dialog (the
// dialog starts from the document's own), as iconv reads the file back; a Unicode text
// going to a legacy code page asks first, and a no writes nothing.
TEST_F(ClosingTest, SaveAsWritesTheFormChosenInTheDialog) {
    Open("src.txt", "caf\xC3\xA9\nline\n");
    zv::TDocument& doc = *helper.ActiveDocument();
    zv::TSaveAsDialog dialog(window.get(), doc, "Save As");
    EXPECT_EQ(dialog.EncodingBox()->currentData().toUInt(), 65001u);
    EXPECT_FALSE(dialog.BomBox()->isChecked());
    EXPECT_EQ(dialog.LineEndsBox()->currentData().toInt(), zv::sttUnix);
    dialog.EncodingBox()->setCurrentIndex(dialog.EncodingBox()->findData(1200u));
    dialog.BomBox()->setChecked(true);
    dialog.LineEndsBox()->setCurrentIndex(dialog.LineEndsBox()->findData(zv::sttWindows));
    dialog.selectFile(QString::fromStdString((dir / "wide.txt").string()));
    QMetaObject::invokeMethod(&dialog, "accept"); // as the Save button does
    zv::TSaveAsChoice choice = dialog.Choice();
    ASSERT_EQ(fs::path(choice.FileName), dir / "wide.txt");
    helper.FOnAskSaveAs = [&](const zv::TDocument&) { return choice; };
    ASSERT_TRUE(helper.SaveFileAs(&doc));
    const auto iconv = [&](const char* from, const char* name) {
        int status = 0;
        const std::string out = zvtest::RunOutput(
            "iconv -f " + std::string(from) + " -t UTF-8 '" + (dir / name).string() + "'", status);
        return status == 0 ? out : "iconv failed";
    };
    EXPECT_EQ(zvtest::ReadAll(dir / "wide.txt").substr(0, 2), "\xFF\xFE");
    EXPECT_EQ(iconv("UTF-16", "wide.txt"), "caf\xC3\xA9\r\nline\r\n");
    EXPECT_EQ(doc.FFilePath, (dir / "wide.txt").string());

    choice = {(dir / "legacy.txt").string(), 1252, 0, -1};
    prompt.Answers = {zv::prNo};
    const std::size_t asked = prompt.Asked.size();
    EXPECT_FALSE(helper.SaveFileAs(&doc));
    EXPECT_EQ(prompt.Asked.size(), asked + 1) << "the Unicode question";
    EXPECT_FALSE(fs::exists(dir / "legacy.txt"));
    EXPECT_EQ(doc.FFilePath, (dir / "wide.txt").string());
    EXPECT_EQ(doc.Lines().CodePage(), 1200u);
    prompt.Answers = {zv::prYes};
    ASSERT_TRUE(helper.SaveFileAs(&doc));
    EXPECT_EQ(iconv("CP1252", "legacy.txt"), "caf\xC3\xA9\r\nline\r\n");
    EXPECT_EQ(zvtest::ReadAll(dir / "legacy.txt").size(), 12u) << "one byte per character";
}

} // namespace

// Each write keeps exactly the documents typed into since the last one (a text already kept
// is not encoded again), and what a new run restores is always every document's text.
TEST_F(ClosingTest, OnlyTextsChangedSinceTheLastWriteAreWrittenAgain) {
    const fs::path crash = dir / "Crash";
    zv::TCrashKeeper keeper(helper, crash);
    std::vector<zv::TEditorWidget*> editors;
    for (int i = 0; i < 4; ++i) {
        editors.push_back(&Open("t" + std::to_string(i) + ".txt", "row one\nrow two\n"));
        QTest::keyClicks(editors.back(), "x");
    }
    keeper.WriteNow();
    keeper.WaitWritten();
    ASSERT_EQ(keeper.TextsWritten(), 4);
    std::mt19937 random(7);
    for (int round = 0; round < 8; ++round) {
        int typedInto = 0;
        for (zv::TEditorWidget* editor : editors)
            if (random() % 2) {
                QTest::keyClicks(editor, "y");
                ++typedInto;
            }
        const int before = keeper.TextsWritten();
        keeper.WriteNow();
        keeper.WaitWritten();
        EXPECT_EQ(keeper.TextsWritten() - before, typedInto) << "round " << round;

        zv::THeadlessPrompt quiet{false};
        zv::TMainFormHelper next{quiet};
        zv::TMainWindow nextWindow(next);
        ASSERT_EQ(zv::RestoreKeptTexts(next, keeper.Folder()), 4);
        for (std::size_t i = 0; i < editors.size(); ++i)
            EXPECT_EQ(next.Documents()[i]->Lines().GetTextWithLinefeeds(),
                      helper.Documents()[i]->Lines().GetTextWithLinefeeds())
                << "round " << round << ", document " << i;
    }
    prompt.Answers = {zv::prNo, zv::prNo, zv::prNo, zv::prNo};
    helper.CloseAllDocumentTabs();
    keeper.WriteNow();
    keeper.WaitWritten();
    EXPECT_FALSE(fs::exists(keeper.Folder() / "Crash.ini"));
}
