// The editor's gutter marks: bookmark boxes with their digit, plain line marks, and the
// change bar (changed since the last save, or changed and saved).
#include "ui/EditorWidget.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <QPainter>

namespace zv {

const QColor TEditorWidget::kBookmarkBack(40, 90, 200);
const QColor TEditorWidget::kLinemarkColor(40, 160, 200);
const QColor TEditorWidget::kLineChangedColor(255, 255, 0);    // yellow
const QColor TEditorWidget::kLineChangedSavedColor(0, 255, 0); // green

void TEditorWidget::PaintGutterMarks(QPainter& painter, const std::vector<int>& rows,
                                      int gutter) {
    if (!FLines)
        return;
    const int lineHeight = LineHeight();
    const int box = std::min(lineHeight, fontMetrics().horizontalAdvance(QLatin1Char('9')) * 2);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const TAttribute& a = FLines->GetLineAttribute(rows[i]);
        const int y = static_cast<int>(i) * lineHeight;
        // A save keeps `Changed` and adds `ChangeSaved`; a later edit clears `ChangeSaved`.
        if (a.GetValue(abChanged) || a.GetValue(abChangeSaved))
            painter.fillRect(gutter - 4, y, 3, lineHeight,
                             a.GetValue(abChangeSaved) ? kLineChangedSavedColor
                                                       : kLineChangedColor);
        if (a.Bookmark >= 0) {
            const QRect r(1, y + 1, box - 2, lineHeight - 2);
            painter.fillRect(r, kBookmarkBack);
            painter.setPen(Qt::white);
            painter.drawText(r, Qt::AlignCenter, QString::number(a.Bookmark));
        } else if (a.GetValue(abLinemark)) {
            painter.fillRect(2, y + lineHeight / 4, box / 2, lineHeight / 2, kLinemarkColor);
        }
    }
}

} // namespace zv
