// Marked lines, clipboard variants, inserts and font commands in the real window, from their
// menus: marked lines against an awk model, the real clipboard read back, an inserted file in
// another encoding against iconv, and an HTML link against realpath's relative path.
#include "UiFixtures.h"

#include "ui/Actions.h"

#include <QAction>
#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

namespace {

namespace fs = std::filesystem;

class ClipActionsWindowTest : public zvtest::TShownWindowTest {
protected:
    ClipActionsWindowTest() : TShownWindowTest("zv-clip-actions") {}

    void ClickInMenu(const char* menuName, const char* action) {
        zvtest::ClickInMenu(*window, menuName, action);
    }
    std::string Tool(const std::string& input, const std::string& pipeline) {
        return zvtest::ToolOutput(dir / "tool-input", input, pipeline);
    }

    // Answers the next file dialog with `file`, once the dialog holds it as its choice.
    static void AnswerFileDialog(const fs::path& file) {
        auto* timer = new QTimer;
        const QString path = QString::fromStdString(file.string());
        QObject::connect(timer, &QTimer::timeout, [timer, path] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            // Typed into the name box, as a user may: the folder's listing can lag.
            auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            if (!name)
                return;
            name->setText(path);
            if (dialog->selectedFiles() != QStringList{path})
                return;
            timer->stop();
            timer->deleteLater();
            static_cast<QDialog*>(dialog)->accept(); // QFileDialog hides it
        });
        timer->start(20);
    }

    void Save(zv::TEditorWidget& editor) {
        QApplication::setActiveWindow(window.get());
        editor.setFocus();
        QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    }
};

std::string ClipboardText() {
    return QApplication::clipboard()->text().toStdString();
}

TEST_F(ClipActionsWindowTest, MarkedLinesCommandsMatchAnAwkModelAndUndoGivesTheOriginalBytes) {
    std::string original;
    for (int i = 0; i < 300; ++i)
        original += "w" + std::to_string((i * 7919) % 97) + (i % 5 ? " x" : "") + "\n";
    zv::TEditorWidget& editor = Open("marked.txt", original);
    // A numbered bookmark on line 6 and a plain mark on line 105 (a repeat of line 8: it
    // keeps its mark), then the repeats.
    editor.Memo().SetTextCursor(0, 5);
    QTest::keyClick(&editor, Qt::Key_1, Qt::ControlModifier | Qt::ShiftModifier);
    editor.Memo().SetTextCursor(0, 104);
    ClickInMenu("BookmarksMenu", "ToggleBookmark");
    ClickInMenu("BookmarksMenu", "BookmarkDuplicatedLinesAction");
    const std::string marked = "seen[$0]++ || NR==6 || NR==105";
    const std::string kept = Tool(original, "awk '\\''!(" + marked + ")'\\'' \"$1\"");
    const std::string cut = Tool(original, "awk '\\''" + marked + "'\\'' \"$1\"");
    ASSERT_NE(kept, original);

    QApplication::clipboard()->setText(QStringLiteral("stale"));
    ClickInMenu("BookmarksMenu", "CopyBookmarkedLinesAction");
    EXPECT_EQ(ClipboardText(), cut);
    QApplication::clipboard()->setText(QStringLiteral("stale"));
    ClickInMenu("BookmarksMenu", "CutBookmarkedLinesAction");
    EXPECT_EQ(ClipboardText(), cut);
    Save(editor);
    EXPECT_EQ(zvtest::ReadAll(dir / "marked.txt"), kept);
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier); // one step
    Save(editor);
    EXPECT_EQ(zvtest::ReadAll(dir / "marked.txt"), original);
    EXPECT_FALSE(editor.Memo().CanUndo());

    // Every line marked: they all go, the final line end with them; cleared marks delete
    // nothing.
    zv::TEditorWidget& small = Open("all.txt", "one\ntwo\n");
    for (int row : {0, 1}) {
        small.Memo().SetTextCursor(0, row);
        ClickInMenu("BookmarksMenu", "ToggleBookmark");
    }
    ClickInMenu("BookmarksMenu", "ClearBookmarksAction");
    ClickInMenu("BookmarksMenu", "DelBookmarkedLinesAction");
    EXPECT_FALSE(small.Memo().CanUndo());
    for (int row : {0, 1}) {
        small.Memo().SetTextCursor(0, row);
        ClickInMenu("BookmarksMenu", "ToggleBookmark");
    }
    ClickInMenu("BookmarksMenu", "DelBookmarkedLinesAction");
    Save(small);
    EXPECT_EQ(zvtest::ReadAll(dir / "all.txt"), "");
}

TEST_F(ClipActionsWindowTest, ClipboardVariantsReadBackFromTheRealClipboard) {
    zv::TEditorWidget& editor = Open("clip.txt", "alpha beta gamma\n");
    zv::TZvMemo& memo = editor.Memo();
    QApplication::clipboard()->setText(QStringLiteral("before|"));
    memo.SetSelection({0, 0}, {5, 0});
    ClickInMenu("ClipboardMenu", "CopyAndAppendAction");
    EXPECT_EQ(ClipboardText(), "before|alpha");
    memo.SetSelection({11, 0}, {16, 0});
    ClickInMenu("ClipboardMenu", "CutAndAppendAction");
    EXPECT_EQ(ClipboardText(), "before|alphagamma");
    EXPECT_EQ(zvtest::EditorText(editor), "alpha beta \n");

    memo.SetSelection({6, 0}, {10, 0});
    ClickInMenu("ClipboardMenu", "CopyAndPasteAction");
    EXPECT_EQ(ClipboardText(), "beta");
    EXPECT_EQ(zvtest::EditorText(editor), "alpha betabeta \n");

    QApplication::clipboard()->setText(QStringLiteral("one\ntwo"));
    memo.SetTextCursor(0, 1);
    ClickInMenu("ClipboardMenu", "PasteAndSelectAction");
    EXPECT_EQ(zvtest::EditorText(editor), "alpha betabeta \none\ntwo");
    EXPECT_EQ(memo.GetSelection(), u"one\ntwo");
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(zvtest::EditorText(editor), "alpha beta gamma\n");
}

TEST_F(ClipActionsWindowTest, InsertedFileInUtf16EqualsIconvsDecodeAndLinksAreRelative) {
    const std::string utf8 = "Grüße, ĉiu €\n中文 line\nthird ∑ end\n";
    zvtest::WriteAll(dir / "src.utf8", utf8);
    int status = 0;
    zvtest::RunOutput("iconv -f UTF-8 -t UTF-16 '" + (dir / "src.utf8").string() + "' > '" +
                          (dir / "src.txt").string() + "'",
                      status);
    ASSERT_EQ(status, 0);
    const std::string decoded =
        zvtest::RunOutput("iconv -f UTF-16 -t UTF-8 '" + (dir / "src.txt").string() + "'", status);
    ASSERT_EQ(status, 0);
    ASSERT_NE(zvtest::ReadAll(dir / "src.txt"), decoded);

    fs::create_directories(dir / "site" / "pages");
    fs::create_directories(dir / "site" / "img");
    zvtest::WriteAll(dir / "site" / "img" / "a b.png", "x");
    zv::TEditorWidget& editor = Open("site/pages/page.html", "");
    AnswerFileDialog(dir / "src.txt");
    ClickInMenu("InsertMenu", "InsertFileAction");
    EXPECT_EQ(zvtest::EditorText(editor), decoded);

    const std::string relative = zvtest::RunOutput(
        "realpath -m --relative-to='" + (dir / "site" / "pages").string() + "' '" +
            (dir / "site" / "img" / "a b.png").string() + "' | tr -d '\\n' | sed 's/ /%20/g'",
        status);
    editor.Memo().SelectAll();
    AnswerFileDialog(dir / "site" / "img" / "a b.png");
    ClickInMenu("InsertMenu", "InsertFileAsHtmlLinkAction");
    EXPECT_EQ(zvtest::EditorText(editor), "<a href=\"" + relative + "\">a b.png</a>");
}

TEST_F(ClipActionsWindowTest, FontCommandsStepTheSizeAndSwapTheFamily) {
    zv::TEditorWidget& editor = Open("font.txt", "text\n");
    const QFont start = editor.font();
    ClickInMenu("ViewMenu", "IncreaseFontSizeAction");
    EXPECT_DOUBLE_EQ(editor.font().pointSizeF(), start.pointSizeF() + 1);
    ClickInMenu("ViewMenu", "ZoomInAction");
    ClickInMenu("ViewMenu", "DecreaseFontSizeAction");
    EXPECT_DOUBLE_EQ(editor.font().pointSizeF(), start.pointSizeF() * 1.1);
    ClickInMenu("ViewMenu", "ZoomResetAction");
    ClickInMenu("ViewMenu", "ToggleFontAction");
    EXPECT_NE(editor.font().family(), start.family());
    EXPECT_DOUBLE_EQ(editor.font().pointSizeF(), start.pointSizeF());
    ClickInMenu("ViewMenu", "ToggleFontAction");
    EXPECT_EQ(editor.font(), start);
}

} // namespace
