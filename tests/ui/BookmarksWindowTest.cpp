// Bookmarks, line marks and change bars in the real window: set with the keys, kept on their
// line through edits above, painted in the gutter, and the change bar turning saved on save.
// Highlighted words, selections and expressions painted in their colours from the Search
// menu.
#include "UiFixtures.h"

#include "support/ZvTestSupport.h"
#include "ui/Actions.h"
#include "ui/RunPainter.h"

#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <sstream>

namespace {

class BookmarksWindowTest : public zvtest::TShownWindowTest {
protected:
    BookmarksWindowTest() : TShownWindowTest("zv-bookmarks") {}
};

// Whether the gutter (left quarter of the viewport) of `row` holds a pixel of `colour`.
bool GutterShows(zv::TEditorWidget& editor, int row, const QColor& colour) {
    const QImage image = editor.viewport()->grab().toImage();
    const int h = editor.fontMetrics().lineSpacing();
    const int top = (row - editor.TopRow()) * h;
    for (int y = top; y < top + h && y < image.height(); ++y)
        for (int x = 0; x < image.width() / 4; ++x)
            if (image.pixelColor(x, y) == colour)
                return true;
    return false;
}

TEST_F(BookmarksWindowTest, BookmarkFollowsItsLineAndTheGutterShowsMarksAndChanges) {
    zv::TEditorWidget& editor = Open("marks.txt", "one\ntwo\nthree\nfour\nfive\n");
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&editor, Qt::Key_Down);
    QTest::keyClick(&editor, Qt::Key_1, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(GutterShows(editor, 3, zv::TEditorWidget::kBookmarkBack));
    EXPECT_FALSE(GutterShows(editor, 3, zv::TEditorWidget::kLineChangedColor));

    QTest::keyClick(&editor, Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClicks(&editor, "zero");
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClick(&editor, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(editor.Memo().RowText(editor.CaretRow()), u"four");
    EXPECT_EQ(editor.Memo().FCurX, 0);
    EXPECT_TRUE(GutterShows(editor, 4, zv::TEditorWidget::kBookmarkBack));
    EXPECT_FALSE(GutterShows(editor, 3, zv::TEditorWidget::kBookmarkBack));

    // A click on the line numbers puts a plain mark there; the ring finds it next.
    const int h = editor.fontMetrics().lineSpacing();
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, QPoint(3, 2 * h + h / 2));
    EXPECT_TRUE(GutterShows(editor, 2, zv::TEditorWidget::kLinemarkColor));
    QTest::keyClick(&editor, Qt::Key_F2);
    EXPECT_EQ(editor.CaretRow(), 2);

    EXPECT_TRUE(GutterShows(editor, 0, zv::TEditorWidget::kLineChangedColor));
    EXPECT_FALSE(GutterShows(editor, 0, zv::TEditorWidget::kLineChangedSavedColor));
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "marks.txt"), "zero\none\ntwo\nthree\nfour\nfive\n");
    EXPECT_TRUE(GutterShows(editor, 0, zv::TEditorWidget::kLineChangedSavedColor));
    EXPECT_FALSE(GutterShows(editor, 0, zv::TEditorWidget::kLineChangedColor));
    EXPECT_FALSE(GutterShows(editor, 3, zv::TEditorWidget::kLineChangedSavedColor));
}

// Pixels near `colour` (antialiased glyphs blend into their background) in columns
// [from, to) of `row`, measured where the caret stands there.
int PixelsIn(zv::TEditorWidget& editor, int row, int from, int to, const QColor& colour,
             int tolerance = 0) {
    zv::TZvMemo& memo = editor.Memo();
    memo.SetTextCursor(from, row);
    const QRect a = editor.CaretRect();
    memo.SetTextCursor(to, row);
    const QRect b = editor.CaretRect();
    memo.SetTextCursor(0, 2); // away, so that no caret or current-row colour stands there
    const QImage image = editor.viewport()->grab().toImage();
    int count = 0;
    for (int y = a.top(); y <= a.bottom(); ++y)
        for (int x = a.left() + 1; x < b.left(); ++x)
            count += std::abs(image.pixelColor(x, y).red() - colour.red()) +
                         std::abs(image.pixelColor(x, y).green() - colour.green()) +
                         std::abs(image.pixelColor(x, y).blue() - colour.blue()) <=
                     tolerance;
    return count;
}

TEST_F(BookmarksWindowTest, HighlightedWordsAndSelectionsArePaintedInTheirListsColours) {
    zv::TEditorWidget& editor = Open("hl.txt", "cat concatenate Cat cat\nthe cat sat\nend\n");
    QMenu* menu = window->menuBar()->findChild<QMenu*>(QStringLiteral("HighlightMenu"));
    ASSERT_NE(menu, nullptr);
    const auto run = [&](const char* name) {
        QAction* item = window->Actions().Get(name);
        ASSERT_TRUE(menu->actions().contains(item)) << name;
        window->Actions().UpdateActions();
        item->trigger();
    };
    const auto colours = zv::DefaultHighlightColours(zv::THighlightList::Words);
    const QColor back = zv::ToQColor(colours.Back), text = zv::ToQColor(colours.Text);
    editor.Memo().SetTextCursor(1, 0); // in the first "cat"
    run("HighlightWholeWordAction");
    for (const auto& [row, from] : {std::pair{0, 0}, {0, 20}, {1, 4}}) {
        EXPECT_GT(PixelsIn(editor, row, from, from + 3, back), 20) << row << ":" << from;
        EXPECT_GT(PixelsIn(editor, row, from, from + 3, text, 120), 0) << "the word's colour";
    }
    EXPECT_EQ(PixelsIn(editor, 0, 4, 15, back), 0) << "not inside concatenate";
    EXPECT_EQ(PixelsIn(editor, 0, 16, 19, back), 0) << "Cat differs in case";

    editor.Memo().SetSelection({4, 0}, {7, 0}); // "con"
    run("HighlightSelectionAction");
    const QColor selection =
        zv::ToQColor(zv::DefaultHighlightColours(zv::THighlightList::Selections).Back);
    EXPECT_GT(PixelsIn(editor, 0, 4, 7, selection), 20);
    EXPECT_EQ(PixelsIn(editor, 1, 0, 11, selection), 0);

    run("UnHighlightAllAction");
    EXPECT_EQ(PixelsIn(editor, 0, 0, 3, back), 0);
    EXPECT_EQ(PixelsIn(editor, 0, 4, 7, selection), 0);
}

} // namespace

namespace {

// An expression added in the dialog paints exactly the hits grep finds (its byte offsets,
// ASCII text); removed, it paints none.
TEST_F(BookmarksWindowTest, HighlightExpressionsFromTheirDialogPaintWhatGrepFinds) {
    const std::string text = "id=42 x=7 foo\nbar 199 baz\nnone here\n";
    zv::TEditorWidget& editor = Open("expr.txt", text);
    int status = 0;
    const std::string hits =
        zvtest::RunOutput("grep -obE '[0-9]+' '" + (dir / "expr.txt").string() + "'", status);
    ASSERT_EQ(status, 0);
    std::vector<std::pair<int, int>> offsets; // [from, to) in the file
    std::istringstream lines(hits);
    for (std::string line; std::getline(lines, line);) {
        const auto colon = line.find(':');
        const int from = std::stoi(line.substr(0, colon));
        offsets.emplace_back(from, from + static_cast<int>(line.size() - colon - 1));
    }
    ASSERT_EQ(offsets.size(), 3u);
    const auto painted = [&](int offset) {
        const int row = static_cast<int>(std::count(text.begin(), text.begin() + offset, '\n'));
        const int col = offset - static_cast<int>(text.rfind('\n', offset - 1) + 1);
        return PixelsIn(editor, row, col, col + 1, QColor(0, 0xC0, 0)) > 5;
    };
    const auto answer = [&](bool add) {
        QTimer::singleShot(0, [add] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            if (add) {
                dialog->findChild<QLineEdit*>("ExpressionText")->setText("[0-9]+");
                dialog->findChild<QCheckBox*>("ExpressionRegEx")->setChecked(true);
                dialog->findChild<QLineEdit*>("ExpressionBackground")->setText("#00c000");
                dialog->findChild<QPushButton*>("AddExpression")->click();
            } else {
                auto* list = dialog->findChild<QListWidget*>("ExpressionList");
                ASSERT_EQ(list->count(), 1);
                list->setCurrentRow(0);
                dialog->findChild<QPushButton*>("RemoveExpression")->click();
            }
            qobject_cast<QDialog*>(dialog)->reject();
        });
        zvtest::ClickInMenu(*window, "HighlightMenu", "HighlightExpressionsAction");
    };
    answer(true);
    std::size_t next = 0;
    for (int offset = 0; offset < static_cast<int>(text.size()); ++offset) {
        if (text[static_cast<std::size_t>(offset)] == '\n')
            continue;
        while (next < offsets.size() && offsets[next].second <= offset)
            ++next;
        const bool hit = next < offsets.size() && offsets[next].first <= offset;
        EXPECT_EQ(painted(offset), hit) << "offset " << offset;
    }
    answer(false);
    for (const auto& [from, to] : offsets)
        EXPECT_FALSE(painted(from)) << from;
}

} // namespace
