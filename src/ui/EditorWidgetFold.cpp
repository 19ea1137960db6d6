// The editor's side of folding: which rows show (hidden rows are skipped from the top row
// down, and the vertical scroll bar counts shown rows only), the fold margin at the right of
// the gutter with an open or closed marker on each fold's head, clicks on it, and the
// hand-over of the background thread's fold passes.
#include "ui/EditorWidget.h"

#include "ZvMemoControl/ZvMemoFolds.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace zv {

const QColor TEditorWidget::kFoldMarkColor(110, 110, 110);

int TEditorWidget::FoldMarginWidth() const {
    return FScan ? std::max(9, LineHeight() * 3 / 4) : 0;
}

int TEditorWidget::FirstShownRow(int row) const {
    const int count = RowCount();
    while (row < count && FLines->GetHiddenLine(row))
        ++row;
    return row;
}

std::vector<int> TEditorWidget::ShownRows() const {
    std::vector<int> rows;
    if (!FLines)
        return rows;
    const int count = RowCount(), wanted = VisibleRowCount() + 1;
    for (int row = FirstShownRow(TopRow()); row < count && int(rows.size()) < wanted;
         row = FirstShownRow(row + 1))
        rows.push_back(row);
    return rows;
}

int TEditorWidget::ShownIndex(int row) const {
    int top = TopRow();
    if (!FLines || row < top)
        return row - top;
    const int limit = VisibleRowCount() + 2;
    int index = 0;
    for (int r = FirstShownRow(top); r < row && index < limit; r = FirstShownRow(r + 1))
        ++index;
    return index;
}

int TEditorWidget::ShownRowAt(int y) const {
    const std::vector<int> rows = ShownRows();
    if (rows.empty())
        return std::max(0, std::min(TopRow(), FMemo.RowCount() - 1));
    const int index = std::max(0, y / LineHeight());
    return index < int(rows.size()) ? rows[index] : rows.back();
}

int TEditorWidget::TopRowShowing(int row) const {
    int top = row;
    for (int shown = 1; shown < VisibleRowCount() && top > 0;) {
        --top;
        if (!FLines || !FLines->GetHiddenLine(top))
            ++shown;
    }
    return top;
}

const TShownRows& TEditorWidget::Shown() const {
    FShownRows.Refresh(*FLines);
    return FShownRows;
}

void TEditorWidget::SetTopRow(int row) {
    verticalScrollBar()->setValue(FLines ? Shown().IndexOf(row) : row);
}

void TEditorWidget::PaintFoldMargin(QPainter& painter, const std::vector<int>& rows, int gutter) {
    const int width = FoldMarginWidth();
    if (!width || !FLines)
        return;
    const int lineHeight = LineHeight();
    const int left = gutter - 4 - width;
    const int box = std::min(width - 2, lineHeight - 4) / 2 * 2; // even: the bar centres
    painter.setPen(kFoldMarkColor);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int row = rows[i], y = int(i) * lineHeight;
        const int cx = left + width / 2, cy = y + lineHeight / 2;
        if (IsFoldHead(*FLines, row)) {
            const QRect r(cx - box / 2, cy - box / 2, box, box);
            painter.drawRect(r);
            painter.drawLine(r.left() + 2, cy, r.right() - 2, cy);
            if (IsFoldClosed(*FLines, row)) // closed: a plus
                painter.drawLine(cx, r.top() + 2, cx, r.bottom() - 2);
        } else if (FLines->GetLineAttribute(row).GetValue(abNodeEnd)) {
            painter.drawLine(cx, y, cx, cy);
            painter.drawLine(cx, cy, cx + box / 2, cy);
        }
    }
}

bool TEditorWidget::FoldMarginPress(const QPoint& at) {
    const int width = FoldMarginWidth(), right = GutterWidth() - 4;
    if (!width || at.x() < right - width || at.x() >= right)
        return false;
    const int row = ShownRowAt(at.y());
    Run([row](TZvMemo& m) { m.ToggleFoldAt(row); });
    UpdateScrollBars();
    return true;
}

void TEditorWidget::FoldsReady() {
    // Background thread: the rows are changed on the main thread, with the reader paused.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (FScan && FLines && FScan->ApplyFolds(*FLines)) {
                emit FoldsApplied();
                viewport()->update();
            }
        },
        Qt::QueuedConnection);
}

} // namespace zv
