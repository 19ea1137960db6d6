// Word wrap of the editor widget: the wrap width from the view and the settings, cutting the
// rows again when it changes, the indent of continuation rows, and the marks of wrapped rows
// in the gutter and the text area.
#include "ZvMemoControl/WrapRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "shell/ZvIniFiles.h"
#include "ui/EditorWidget.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>

#include <cmath>

namespace zv {

const QString TEditorWidget::kWrapMark = QStringLiteral("\u21AA");
const QColor TEditorWidget::kWrapMarkColor(0x40, 0x80, 0xC0);

int TEditorWidget::WrapColumns() const {
    if (FWrapAtColumn)
        return FWrapAtColumnValue;
    if (FWrapAtRightMargin)
        return FMemo.FRightMargin;
    // The painted advance, fractions kept: whole pixels would overflow a wide view.
    const double charWidth = std::max(1.0, FMeasure.SpaceWidth());
    return static_cast<int>((viewport()->width() - GutterWidth() - 4) / charWidth) - 1;
}

qreal TEditorWidget::RowTextLeft(int row) const {
    return TextLeft() + FMemo.TextLength(row, 0); // the widget's FMargin is 0
}

void TEditorWidget::PaintWrapMarks(QPainter& painter, int row, int y) {
    if (!FDisplayWrapMarkers || !FLines || !RowsAreCut(FMemo.DocState()) || row < 0 ||
        row >= FLines->Count())
        return;
    const bool continues = row + 1 < FLines->Count() && FLines->IsLineWrapped(row + 1);
    const int indent = ContinuationIndent(*FLines, row);
    if (!continues && indent == 0)
        return;
    // Drawn in the column the cut leaves spare after a row, and in a continuation's indent.
    const int cell = std::max(4, fontMetrics().horizontalAdvance(QLatin1Char('M')));
    const int h = LineHeight(), top = y + h / 4, middle = y + h / 2, head = std::max(2, cell / 4);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(kWrapMarkColor);
    if (continues) { // down from the text's end, then back left: the line goes on below
        const int x = TextLeft() +
                      static_cast<int>(std::lround(FMemo.TextLength(row, FMemo.RowLength(row)))) +
                      1;
        const int right = x + cell - 2;
        painter.drawLine(right, top, right, middle);
        painter.drawLine(x, middle, right, middle);
        painter.drawLine(x, middle, x + head, middle - head);
        painter.drawLine(x, middle, x + head, middle + head);
    }
    if (indent > 0) { // pointing at the text that carries the line on
        const int right = static_cast<int>(std::lround(RowTextLeft(row))) - 2;
        const int x = std::max(TextLeft(), right - cell + 2);
        painter.drawLine(x, top, x, middle);
        painter.drawLine(x, middle, right, middle);
        painter.drawLine(right, middle, right - head, middle - head);
        painter.drawLine(right, middle, right - head, middle + head);
    }
    painter.restore();
}

void TEditorWidget::SetWordWrap(bool on) {
    FMemo.SetWordWrap(on, WrapColumns());
    horizontalScrollBar()->setValue(0);
    UpdateScrollBars();
    ShowRow(FMemo.FCurY, false);
}

void TEditorWidget::RefreshWrap() {
    if (WordWrap() && FMemo.DocState().FWrapColumns != WrapColumns())
        SetWordWrap(true);
}

bool TEditorWidget::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Resize) // a scroll bar that comes or goes resizes it too
        RefreshWrap();
    return QAbstractScrollArea::viewportEvent(event);
}

void TEditorWidget::ApplyWrapSettings(const TCustomIniFile& settings) {
    const auto read = [&settings](const char* key, bool value) {
        return settings.ReadBool("EditorMisc", key, value);
    };
    TZvMemoState& state = FMemo.DocState();
    FWrapAtRightMargin = read("WrapAtRightMargin", FWrapAtRightMargin);
    FWrapAtColumn = read("WrapAtColumn", FWrapAtColumn);
    FWrapAtColumnValue =
        settings.ReadInteger("EditorMisc", "WrapAtColumnValue", FWrapAtColumnValue);
    state.FWrapAtAbsoluteMargin = read("WrapAtAbsoluteMargin", state.FWrapAtAbsoluteMargin);
    state.FIndentWrappedLines = read("IndentWrappedLines", state.FIndentWrappedLines);
    state.FHardWrapAtRightMargin = read("HardWrapAtRightMargin", state.FHardWrapAtRightMargin);
    FDisplayWrapMarkers = read("DisplayWrapMarkers", FDisplayWrapMarkers);
    // A right margin below 16 columns is no place to wrap at.
    if ((FWrapAtRightMargin || state.FHardWrapAtRightMargin) && FMemo.FRightMargin < 16)
        FMemo.FRightMargin = 80;
    if (read("OpenWithWordwrap", false) || read("Wordwrap", false))
        SetWordWrap(true);
}

QString TEditorWidget::RowLabel(int row) const {
    if (!FLines || row <= 0 || row >= FLines->Count())
        return QString::number(row + 1);
    if (FLines->IsLineWrapped(row))
        return kWrapMark;
    return QString::number(FLines->GetRealLine(row) + 1);
}

} // namespace zv
