// The row painter draws each run in its colour where the run lies, marks braces, and cuts
// long runs into pieces without losing or moving text.
#include "ScanTestSupport.h"

#include "support/ZvTestSupport.h"
#include "ui/RunPainter.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

namespace zv::test {
namespace {

// Whether some pixel of columns [x0, x1) of the image is close to `c`.
bool HasColour(const QImage& image, qreal x0, qreal x1, QColor c, int tolerance = 40) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = int(x0); x < int(x1) && x < image.width(); ++x) {
            const QColor p = image.pixelColor(x, y);
            if (std::abs(p.red() - c.red()) + std::abs(p.green() - c.green()) +
                    std::abs(p.blue() - c.blue()) <=
                tolerance)
                return true;
        }
    return false;
}

struct TPainted {
    QImage Image{600, 40, QImage::Format_RGB32};
    qreal Width = 0;
};

// Paints the row at `origin` into an image of `size`.
TPainted Paint(const TRunPainter& painter, std::u16string_view text,
               const std::vector<TColourRun>& runs, const std::vector<TBraceMark>& marks = {},
               QPoint origin = {}, QSize size = {600, 40}) {
    TPainted out{QImage(size, QImage::Format_RGB32)};
    out.Image.fill(Qt::white);
    QPainter p(&out.Image);
    out.Width = painter.PaintRow(p, origin, text, runs, marks);
    return out;
}

TEST(RunPainter, ARowPaintedElsewhereIsTheSameRowMoved) {
    zvtest::TheApp<QGuiApplication>();
    TScanDoc d("c", u"if (a) return \"s\"; /* c */");
    QFont font("Monospace", 14);
    const TRunPainter painter(font, {});
    const std::u16string_view text = d.Store.Get(0);
    const auto runs = RowRuns(*d.Scanner, 0);
    const std::vector<TBraceMark> marks{{3, true}, {5, true}};
    const TPainted home = Paint(painter, text, runs, marks);
    const QPoint away(30, 50); // as the rows below the first are painted
    const TPainted moved = Paint(painter, text, runs, marks, away, {630, 90});
    EXPECT_EQ(moved.Image.copy(QRect(away, home.Image.size())), home.Image);
    EXPECT_EQ(moved.Width, home.Width);
}

TEST(RunPainter, RunsAppearInTheirColoursWhereTheyLie) {
    zvtest::TheApp<QGuiApplication>();
    TScanDoc d("c", u"return x; // note");
    d.Host.FStyles->FCommentStyle.FTextColor = 0x0000FF; // red
    d.Host.FStyles->FKeyWords[0].Color = 0x00C000;       // green
    QFont font("Monospace", 14);
    font.setStyleHint(QFont::TypeWriter);
    const TRunPainter painter(font, {});
    const std::u16string_view text = d.Store.Get(0);
    const TPainted img = Paint(painter, text, RowRuns(*d.Scanner, 0));
    const qreal kwEnd = painter.ColumnX(text, 6), commentStart = painter.ColumnX(text, 10);
    EXPECT_TRUE(HasColour(img.Image, 0, kwEnd, QColor(0, 0xC0, 0)));
    EXPECT_FALSE(HasColour(img.Image, kwEnd, img.Width, QColor(0, 0xC0, 0)));
    EXPECT_TRUE(HasColour(img.Image, commentStart, img.Width, QColor(0xFF, 0, 0)));
    EXPECT_FALSE(HasColour(img.Image, 0, commentStart, QColor(0xFF, 0, 0)));
    EXPECT_NEAR(img.Width, painter.ColumnX(text, int(text.size())), 0.5);
}

TEST(RunPainter, BraceMarksFillTheBraceWithTheirColour) {
    zvtest::TheApp<QGuiApplication>();
    TScanDoc d("c", u"f(1) + g(2");
    QFont font("Monospace", 14);
    TRunPaintOptions o;
    const TRunPainter painter(font, o);
    const std::u16string_view text = d.Store.Get(0);
    const TPainted img =
        Paint(painter, text, RowRuns(*d.Scanner, 0), {{1, true}, {3, true}, {8, false}});
    const QColor matched = o.BraceBack, unmatched = o.BraceBackE;
    EXPECT_TRUE(
        HasColour(img.Image, painter.ColumnX(text, 1), painter.ColumnX(text, 2), matched, 0));
    EXPECT_TRUE(
        HasColour(img.Image, painter.ColumnX(text, 8), painter.ColumnX(text, 9), unmatched, 0));
    EXPECT_FALSE(HasColour(img.Image, painter.ColumnX(text, 4) + 1, painter.ColumnX(text, 8) - 1,
                           matched, 0));
}

TEST(RunPainter, LongRunsAndTabsKeepTheirWidth) {
    zvtest::TheApp<QGuiApplication>();
    std::u16string row = u"/*";
    for (int i = 0; i < 700; ++i)
        row += i % 9 == 0 ? u"\tab " : u"xyz ";
    TScanDoc d("c", row);
    const TRunPainter painter(QFont("Monospace", 10), {});
    const std::u16string_view text = d.Store.Get(0);
    const TPainted img = Paint(painter, text, RowRuns(*d.Scanner, 0));
    EXPECT_NEAR(img.Width, painter.ColumnX(text, int(text.size())), 0.5);
    EXPECT_GT(painter.ColumnX(text, 3), painter.ColumnX(text, 2) * 1.5); // the tab's stop
}

} // namespace
} // namespace zv::test
