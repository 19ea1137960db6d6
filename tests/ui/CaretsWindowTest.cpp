// Editing at several places in the real window, as the user does it: Alt+drag makes a
// column block that copies, takes typing in every row and undoes in one step; Ctrl+click
// adds carets that type together, and Escape leaves one. Checked on the bytes saved to disk.
#include "UiFixtures.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class CaretsWindowTest : public zvtest::TShownWindowTest {
protected:
    CaretsWindowTest() : TShownWindowTest("zv-carets-window") {}

    // The viewport point in front of column x of row y.
    static QPoint PointOf(const zv::TEditorWidget& editor, int x, int y) {
        const auto& memo = editor.Memo();
        const QRect caret = editor.CaretRect();
        const int left = caret.x() - static_cast<int>(memo.TextLength(memo.FCurY, memo.FCurX));
        return {left + static_cast<int>(memo.TextLength(y, x)) + 1,
                (y - editor.TopRow()) * caret.height() + caret.height() / 2};
    }
    static void Drag(zv::TEditorWidget& editor, QPoint from, QPoint to,
                     Qt::KeyboardModifiers mods) {
        QTest::mousePress(editor.viewport(), Qt::LeftButton, mods, from);
        QMouseEvent move(QEvent::MouseMove, to, editor.viewport()->mapToGlobal(to), Qt::NoButton,
                         Qt::LeftButton, mods);
        QApplication::sendEvent(editor.viewport(), &move);
        QTest::mouseRelease(editor.viewport(), Qt::LeftButton, mods, to);
    }
    static void Key(zv::TEditorWidget& editor, const QString& text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, text);
        QApplication::sendEvent(&editor, &press);
    }
    std::string SaveAndRead(zv::TEditorWidget& editor) {
        QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
        return zvtest::ReadAll(dir / "block.txt");
    }
};

TEST_F(CaretsWindowTest, AltDragBlockAndCtrlClickCaretsEditEveryRowAndUndoInOneStep) {
    const std::string original = "abcdef\nab\nabcdefgh\n";
    zv::TEditorWidget& editor = Open("block.txt", original);

    Drag(editor, PointOf(editor, 1, 0), PointOf(editor, 4, 2), Qt::AltModifier);
    ASSERT_TRUE(editor.Memo().FColumnMode);
    QTest::keyClick(&editor, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "bcd\nb  \nbcd");
    Key(editor, "X");
    Key(editor, "Y");
    EXPECT_EQ(SaveAndRead(editor), "aXYef\naXY\naXYefgh\n");
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(SaveAndRead(editor), original) << "one step per key";

    // Alt+Shift with the arrows makes a block for those moves; a plain move lets it go.
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, PointOf(editor, 1, 0));
    QTest::keyClick(&editor, Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier);
    QTest::keyClick(&editor, Qt::Key_Down, Qt::AltModifier | Qt::ShiftModifier);
    Key(editor, "|");
    EXPECT_EQ(SaveAndRead(editor), "a|bcdef\na|b\na|bcdefgh\n");
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_Right);
    EXPECT_FALSE(editor.Memo().FColumnMode);

    // A plain click ends the block held by Alt; Ctrl+clicks add carets.
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, PointOf(editor, 0, 0));
    EXPECT_FALSE(editor.Memo().FColumnMode);
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      PointOf(editor, 2, 1));
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      PointOf(editor, 8, 2));
    Key(editor, "#");
    QTest::keyClick(&editor, Qt::Key_Return);
    EXPECT_EQ(SaveAndRead(editor), "#\nabcdef\nab#\n\nabcdefgh#\n\n");
    QTest::keyClick(&editor, Qt::Key_Backspace);
    EXPECT_EQ(SaveAndRead(editor), "#abcdef\nab#\nabcdefgh#\n");
    QTest::keyClick(&editor, Qt::Key_Escape);
    EXPECT_FALSE(editor.Memo().FMultiEditMode);
    Key(editor, "!");
    EXPECT_EQ(SaveAndRead(editor), "#abcdef\nab#\nabcdefgh#!\n");
}

TEST_F(CaretsWindowTest, SyncEditFromItsShortcutRenamesAWordInTheSelectedRowsOnly) {
    const std::string original = "int n = 0;\nn = n + 1;\nreturn n;\nn;\n";
    zv::TEditorWidget& editor = Open("block.txt", original);
    editor.Memo().SetSelection({0, 0}, {0, 3});
    QTest::keyClick(&editor, Qt::Key_J, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(editor.Memo().FSyncEditMode);
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, PointOf(editor, 5, 0));
    Key(editor, "u");
    Key(editor, "m");
    EXPECT_EQ(SaveAndRead(editor), "int num = 0;\nnum = num + 1;\nreturn num;\nn;\n");
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(SaveAndRead(editor), original);
}

} // namespace
