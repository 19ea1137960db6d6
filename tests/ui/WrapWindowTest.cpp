// Word wrap in the real window: switched from the View menu, cut at the editor's width and
// cut again when the window is resized; the gutter, the status bar, Home and End speak of
// lines while the rows are pieces; keys typed at a cut and saved give the file's bytes with
// the same insertion made in a plain string; the setting is kept when the user asks;
// continuation rows are drawn, clicked and marked indented; a split view keeps its place.
#include "UiFixtures.h"
#include "shell/Settings.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {

// This program's settings go to a folder of its own, set before the first look-up of the root.
const zvtest::TTempDir& Root() {
    static const zvtest::TTempDir root{"zv-wrap-root"};
    static const bool made = std::filesystem::create_directories(root / "Data");
    (void)made;
    return root;
}
const bool kRootSet = ::setenv("ZEVRIT_ROOT", Root().Path().c_str(), 1) == 0;

// Lines of words long enough for several rows at any width the test uses, and a short one.
std::string LongLines() {
    std::string text;
    for (int line = 0; line < 3; ++line) {
        for (int word = 0; word < 60; ++word)
            text +=
                "w" + std::to_string(line) + "_" + std::to_string(word) + (word % 7 ? " " : ", ");
        text += "\n";
    }
    return text + "short\n";
}

// The offset in `text` of a row position: rows of one line join with nothing between them.
std::size_t Offset(const zv::TEditorWidget& editor, zv::TZvPos p) {
    std::size_t at = 0;
    for (int row = 0; row < p.Y; ++row)
        at += editor.Memo().RowText(row).size() + (editor.Lines()->IsLineWrapped(row + 1) ? 0 : 1);
    return at + static_cast<std::size_t>(p.X);
}

class WrapWindowTest : public zvtest::TShownWindowTest {
protected:
    WrapWindowTest() : TShownWindowTest("zv-wrap-window") {}

    void ToggleFromViewMenu() {
        auto* menu = window->menuBar()->findChild<QMenu*>(QStringLiteral("ViewMenu"));
        ASSERT_NE(menu, nullptr);
        QAction* item = window->Actions().Get("WordWrapAction");
        ASSERT_TRUE(menu->actions().contains(item));
        window->Actions().UpdateActions();
        ASSERT_TRUE(item->isEnabled());
        item->trigger();
        QApplication::processEvents(); // the scroll bar that came or went narrows the view
    }

    // Every row fits the wrap width, and the rows joined give the text.
    void ExpectCutAt(const zv::TEditorWidget& editor, const std::string& text) {
        const int columns = editor.WrapColumns();
        ASSERT_GE(columns, 16);
        for (int row = 0; row < editor.Memo().RowCount(); ++row)
            ASSERT_LE(static_cast<int>(editor.Memo().RowText(row).size()), columns) << row;
        std::string joined;
        for (int row = 0; row < editor.Memo().RowCount(); ++row) {
            if (row > 0 && !editor.Lines()->IsLineWrapped(row))
                joined += "\n";
            const auto r = editor.Memo().RowText(row);
            joined += std::string(r.begin(), r.end());
        }
        EXPECT_EQ(joined, text); // the empty row behind the last line end ends it
    }
};

TEST_F(WrapWindowTest, WrapFollowsTheWidthAndTypingAtACutSavesThePlainInsertion) {
    const std::string text = LongLines();
    zv::TEditorWidget& editor = Open("long.txt", text);
    window->resize(700, 500);
    QApplication::processEvents();
    ToggleFromViewMenu();
    ASSERT_TRUE(editor.WordWrap());
    EXPECT_TRUE(window->Actions().Get("WordWrapAction")->isChecked());
    ExpectCutAt(editor, text);
    const int rowsAt700 = editor.Memo().RowCount();
    EXPECT_GT(rowsAt700, 8);

    // The gutter numbers lines and marks their continuation rows.
    int marks = 0, line = 0;
    for (int row = 0; row < editor.Memo().RowCount(); ++row) {
        const QString label = editor.RowLabel(row);
        if (editor.Lines()->IsLineWrapped(row)) {
            EXPECT_EQ(label, zv::TEditorWidget::kWrapMark);
            ++marks;
        } else {
            EXPECT_EQ(label, QString::number(++line));
        }
    }
    EXPECT_EQ(line, 5); // the four lines and the empty row after the last line end
    EXPECT_GT(marks, 0);

    // On a continuation row the status bar names the line and the column in it.
    int cut = 1;
    while (!editor.Lines()->IsLineWrapped(cut + 1))
        ++cut;
    editor.Memo().SetTextCursor(3, cut + 1);
    const std::size_t at = Offset(editor, editor.Memo().Caret());
    const std::size_t lineStart = text.rfind('\n', at - 1) + 1;
    const int lineNumber = static_cast<int>(std::count(text.begin(), text.begin() + at, '\n'));
    EXPECT_TRUE(window->StatusPosition().startsWith(
        QStringLiteral("Ln %1, Col %2").arg(lineNumber + 1).arg(at - lineStart + 1)))
        << window->StatusPosition().toStdString();

    // A narrower window cuts again; the caret stays at its place in the line.
    window->resize(450, 500);
    QApplication::processEvents();
    ExpectCutAt(editor, text);
    EXPECT_GT(editor.Memo().RowCount(), rowsAt700);
    EXPECT_EQ(Offset(editor, editor.Memo().Caret()), at);

    // Keys typed at the end of a row before a continuation, then saved.
    cut = 0;
    while (!editor.Lines()->IsLineWrapped(cut + 1))
        ++cut;
    editor.Memo().SetTextCursor(editor.Memo().RowLength(cut), cut);
    std::string expected = text;
    expected.insert(Offset(editor, editor.Memo().Caret()), "XY");
    QTest::keyClicks(&editor, QStringLiteral("XY"));
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "long.txt"), expected);

    // Off again: one row a line.
    ToggleFromViewMenu();
    EXPECT_FALSE(editor.WordWrap());
    EXPECT_EQ(editor.Memo().RowCount(), 5);
    EXPECT_EQ(zvtest::EditorText(editor) + "\n", expected + "\n");
}

// Where the painted pixels of viewport row `index` begin in [from, to) (to -1: the width):
// the first that `match` accepts, or -1.
template <class Match>
int FirstPixel(const zv::TEditorWidget& editor, int index, int from, Match match, int to = -1) {
    const QImage image = editor.viewport()->grab().toImage();
    const int h = editor.fontMetrics().lineSpacing();
    for (int x = from; x < (to < 0 ? image.width() : std::min(to, image.width())); ++x)
        for (int y = index * h; y < (index + 1) * h && y < image.height(); ++y)
            if (match(image.pixelColor(x, y)))
                return x;
    return -1;
}

TEST_F(WrapWindowTest, ContinuationRowsAreDrawnClickedSelectedAndMarkedUnderTheFirstRowsText) {
    std::string text = "    ";
    for (int word = 0; word < 60; ++word)
        text += "w" + std::to_string(word) + (word % 5 ? " " : ", ");
    text += "\nend\n";
    zv::TEditorWidget& editor = Open("indented.txt", text);
    window->resize(600, 400);
    QApplication::processEvents();
    editor.SetWordWrap(true);
    QApplication::processEvents();
    ASSERT_TRUE(editor.Lines()->IsLineWrapped(1));
    editor.Memo().SetTextCursor(0, 0);
    const int left = editor.CaretRect().x();                      // column 0 of a first row
    editor.Memo().SetTextCursor(0, editor.Memo().RowCount() - 1); // no row highlight on 0, 1
    const auto ink = [](const QColor& c) { return qGray(c.rgb()) < 100; };
    // Every row starts with a "w": the continuation's first glyph stands under the first's.
    const int firstInk = FirstPixel(editor, 0, left, ink),
              continuationInk = FirstPixel(editor, 1, left, ink);
    ASSERT_GT(firstInk, 0);
    EXPECT_EQ(continuationInk, firstInk);

    // A click on the k-th character drawn on the continuation row puts the caret before it.
    const int cw = editor.fontMetrics().horizontalAdvance(QLatin1Char('M'));
    const int h = editor.fontMetrics().lineSpacing();
    for (int k : {0, 3, 8}) {
        QTest::mouseClick(editor.viewport(), Qt::LeftButton, {},
                          QPoint(continuationInk + k * cw + cw / 3, h + h / 2));
        EXPECT_EQ(editor.Memo().Caret(), (zv::TZvPos{k, 1})) << k;
    }

    // A selection from a row's first "w" is painted from the same x on both rows.
    const auto selected = [](const QColor& c) { return c == QColor(0xAD, 0xD6, 0xFF); };
    editor.Memo().SetSelection({4, 0}, {7, 0});
    const int firstSelected = FirstPixel(editor, 0, left, selected);
    editor.Memo().SetSelection({0, 1}, {3, 1});
    ASSERT_GT(firstSelected, 0);
    EXPECT_EQ(FirstPixel(editor, 1, left, selected), firstSelected);

    // Wrap marks: after the text of a row whose line goes on, in the indent of a continuation.
    editor.Memo().SetTextCursor(0, editor.Memo().RowCount() - 1);
    const auto mark = [](const QColor& c) { return c == zv::TEditorWidget::kWrapMarkColor; };
    const auto marks = [&](int row) {
        const int end =
            left + static_cast<int>(editor.Memo().TextLength(row, editor.Memo().RowLength(row)));
        const int textLeft = left + static_cast<int>(editor.Memo().TextLength(row, 0));
        return std::pair(FirstPixel(editor, row, end, mark) >= 0,
                         FirstPixel(editor, row, left, mark, textLeft) >= 0);
    };
    for (int row = 0; row < editor.Memo().RowCount(); ++row)
        EXPECT_EQ(marks(row), std::pair(editor.Lines()->IsLineWrapped(row + 1),
                                        editor.Lines()->IsLineWrapped(row)))
            << row;
    editor.FDisplayWrapMarkers = false;
    EXPECT_EQ(marks(0), std::pair(false, false));
    EXPECT_EQ(marks(1), std::pair(false, false));
}

// The other view of a split page keeps the line at its top and its caret's place in the
// text while the rows are cut anew: wrap on, a narrower window, wrap off.
TEST_F(WrapWindowTest, TheOtherSplitViewKeepsItsTopLineAndCaretThroughRelayouts) {
    std::string text;
    for (int i = 0; i < 20; ++i)
        text += LongLines();
    zv::TEditorWidget& other = Open("split.txt", text);
    window->resize(700, 600);
    QApplication::processEvents();
    ASSERT_TRUE(window->SplitCurrentMemo(zv::TMainWindow::TSplitKind::Horizontal));
    QApplication::processEvents();
    ASSERT_NE(window->ActiveEditor(), &other);
    other.verticalScrollBar()->setValue(30);
    other.Memo().SetTextCursor(10, 30); // in view: a relayout of this view's own shows it
    const zv::TZvPos caret = other.Memo().Unwrapped(other.Memo().Caret());
    ASSERT_EQ(other.TopRow(), 30);
    const auto expectKept = [&](const char* when) {
        EXPECT_EQ(other.TopRow(), other.Lines()->GetWrapIndex(30)) << when;
        EXPECT_EQ(other.Memo().Unwrapped(other.Memo().Caret()), caret) << when;
    };
    ToggleFromViewMenu();
    ASSERT_TRUE(other.WordWrap());
    ASSERT_GT(other.Lines()->GetWrapIndex(30), 30);
    expectKept("wrap on");
    window->resize(500, 600);
    QApplication::processEvents();
    expectKept("narrower");
    ToggleFromViewMenu();
    ASSERT_FALSE(other.WordWrap());
    expectKept("wrap off");
}

TEST_F(WrapWindowTest, HomeAndEndGoByRowsThenByTheLine) {
    zv::TEditorWidget& editor = Open("keys.txt", LongLines());
    window->resize(600, 400);
    QApplication::processEvents();
    editor.SetWordWrap(true);
    ASSERT_TRUE(editor.Lines()->IsLineWrapped(1) && editor.Lines()->IsLineWrapped(2));
    editor.Memo().SetTextCursor(2, 1); // inside the first continuation row
    QTest::keyClick(&editor, Qt::Key_End);
    EXPECT_EQ(editor.Memo().Caret(), (zv::TZvPos{editor.Memo().RowLength(1), 1}));
    QTest::keyClick(&editor, Qt::Key_End); // at the row's end: the line's end
    int last = 1;
    while (editor.Lines()->IsLineWrapped(last + 1))
        ++last;
    EXPECT_EQ(editor.Memo().Caret(), (zv::TZvPos{editor.Memo().RowLength(last), last}));
    editor.Memo().SetTextCursor(0, 2);
    QTest::keyClick(&editor, Qt::Key_Home); // at a continuation's start: up a row
    EXPECT_EQ(editor.Memo().Caret(), (zv::TZvPos{0, 1}));
    QTest::keyClick(&editor, Qt::Key_Down);
    EXPECT_EQ(editor.Memo().Caret().Y, 2);
}

TEST_F(WrapWindowTest, TheSwitchIsStoredWhenAskedAndNewEditorsStartWrapped) {
    zv::SettingsIni().WriteBool("Customize", "StoreWordwrap", true);
    zv::SettingsIni().WriteBool("EditorMisc", "Wordwrap", false);
    Open("first.txt", LongLines());
    window->resize(600, 400);
    QApplication::processEvents();
    ToggleFromViewMenu();
    EXPECT_TRUE(zv::SettingsIni().ReadBool("EditorMisc", "Wordwrap", false));
    zv::TEditorWidget& second = Open("second.txt", LongLines());
    QApplication::processEvents();
    EXPECT_TRUE(second.WordWrap());
    ExpectCutAt(second, LongLines());
    zv::SettingsIni().WriteBool("Customize", "StoreWordwrap", false);
    ToggleFromViewMenu();
    EXPECT_TRUE(zv::SettingsIni().ReadBool("EditorMisc", "Wordwrap", false)) << "not stored";
}

} // namespace
