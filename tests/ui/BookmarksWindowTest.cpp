// Bookmarks, line marks and change bars in the real window: set with the keys, kept on their
// line through edits above, painted in the gutter, and the change bar turning saved on save.
#include "UiFixtures.h"

#include "support/ZvTestSupport.h"

#include <QImage>

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

} // namespace
