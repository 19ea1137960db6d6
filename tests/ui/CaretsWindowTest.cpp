// Editing at several places in the real window, as the user does it: Alt+drag makes a
// column block that copies, takes typing in every row and undoes in one step; Ctrl+click
// adds carets that type together, and Escape leaves one. Checked on the bytes saved to disk.
#include "UiFixtures.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"

#include "ui/Actions.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

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

// Runs the action of the Column menu or the case menu, as a click on its item does.
void Trigger(zv::TMainWindow& window, const char* menuName, const char* action) {
    auto* menu = window.menuBar()->findChild<QMenu*>(QString::fromLatin1(menuName));
    ASSERT_NE(menu, nullptr) << menuName;
    QAction* item = window.Actions().Get(action);
    ASSERT_TRUE(menu->actions().contains(item)) << action;
    window.Actions().UpdateActions();
    ASSERT_TRUE(item->isEnabled()) << action;
    item->trigger();
}

// Fills the modal dialog that opens next by `fill`, then accepts it.
void AnswerDialog(const std::function<void(QWidget&)>& fill) {
    QTimer::singleShot(0, [fill] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        fill(*dialog);
        dialog->accept();
    });
}

TEST_F(CaretsWindowTest, ColumnMenuAndCaseAtCaretsMatchTheToolsAndUndoToTheBytesOnDisk) {
    std::string original;
    for (int i = 0; i < 12; ++i)
        original += std::to_string(10 + i * 7) + ",r" + std::to_string(i * 3) + "," +
                    std::string(static_cast<std::size_t>(i % 3 + 1), 'z') + "\n";
    zv::TEditorWidget& editor = Open("block.txt", original);
    zvtest::WriteAll(dir / "original.txt", original);
    const auto tool = [this](const std::string& pipeline) {
        return zvtest::RunOutput("sh -c '" + pipeline + "' sh '" + (dir / "original.txt").string() +
                                 "'");
    };
    const auto refocus = [this, &editor] {
        QApplication::setActiveWindow(window.get());
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        editor.setFocus();
    };

    // The block of the first field: its statistics, then a hex counter in its place.
    Drag(editor, PointOf(editor, 0, 0), PointOf(editor, 2, 11), Qt::AltModifier);
    QString told;
    AnswerDialog([&told](QWidget& box) {
        if (auto* message = qobject_cast<QMessageBox*>(&box))
            told = message->text();
    });
    Trigger(*window, "ColumnMenu", "ColumnStatisticsAction");
    EXPECT_EQ(told.toStdString() + "\n",
              tool("cut -c 1-2 \"$1\" | awk \"{ s += \\$1; if (NR == 1) lo = \\$1; hi = \\$1 } END "
                   "{ printf \\\"Numbers: %d, sum: %d, minimum: %d, maximum: %d, average: "
                   "%g\\n\\\", NR, s, lo, hi, s / NR }\""));
    refocus();
    AnswerDialog([](QWidget& d) {
        d.findChild<QSpinBox*>(QStringLiteral("Start"))->setValue(8);
        d.findChild<QCheckBox*>(QStringLiteral("Hex"))->setChecked(true);
    });
    Trigger(*window, "ColumnMenu", "ColumnInsertNumbersAction");
    refocus();
    EXPECT_EQ(SaveAndRead(editor), tool("seq 8 19 | xargs printf \"%2X\\n\" > \"$1.n\"; "
                                        "cut -c 3- \"$1\" | paste -d \"\" \"$1.n\" -"));
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(SaveAndRead(editor), original);

    // Delimited lines aligned as column lays out a table.
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, PointOf(editor, 0, 0));
    AnswerDialog([](QWidget& d) {
        d.findChild<QLineEdit*>(QStringLiteral("Separator"))->setText(QStringLiteral(","));
        d.findChild<QCheckBox*>(QStringLiteral("RemoveSeparators"))->setChecked(true);
    });
    Trigger(*window, "ColumnMenu", "ColumnAlignTextAction");
    refocus();
    EXPECT_EQ(SaveAndRead(editor), tool("column -t -s , -o \" \" \"$1\""));
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(SaveAndRead(editor), original);

    // Upper case at two carets: the word at each.
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, PointOf(editor, 4, 0));
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      PointOf(editor, 4, 2));
    Trigger(*window, "ConvertCaseMenu", "UppercaseAction");
    EXPECT_EQ(SaveAndRead(editor), tool("sed -e \"1s/r/R/\" -e \"3s/r/R/\" \"$1\""));
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(SaveAndRead(editor), original);
}

} // namespace
