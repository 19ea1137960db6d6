// Painting the highlight lists' marks: each mark repaints its part of the row in the mark's
// colours, so the text keeps its fonts and tab stops.
#include "ui/EditorWidget.h"
#include "ui/RunPainter.h"

#include <QPainter>

#include <algorithm>

namespace zv {

void TEditorWidget::PaintHighlightMarks(QPainter& painter, int row, int y, std::u16string_view text,
                                        const std::vector<TColourRun>& runs) {
    const int length = static_cast<int>(text.size());
    const qreal left = RowTextLeft(row);
    TRunPainter& runPainter = Painter();
    for (const THighlightMark& mark : FVisibleMarks) {
        if (mark.Hit.Start.Y > row || mark.Hit.End.Y < row)
            continue;
        const int a = mark.Hit.Start.Y == row ? std::min(mark.Hit.Start.X, length) : 0;
        const int b = mark.Hit.End.Y == row ? std::min(mark.Hit.End.X, length) : length;
        if (b <= a)
            continue;
        const qreal x1 = runPainter.ColumnX(text, a), x2 = runPainter.ColumnX(text, b);
        const TCharStyle style{0, mark.Text, mark.Back, 0};
        painter.save();
        painter.setClipRect(QRectF(left + x1, y, x2 - x1, LineHeight()), Qt::IntersectClip);
        runPainter.PaintRow(painter, QPointF(left, y), text, runs, {}, viewport()->width(), &style);
        painter.restore();
    }
}

} // namespace zv
