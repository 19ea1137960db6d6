// Word wrap of the editor widget: the wrap width from the view and the settings, cutting the
// rows again when it changes, and the gutter's labels of wrapped rows.
#include "ZvMemoControl/ZvMemoStrings.h"
#include "shell/ZvIniFiles.h"
#include "ui/EditorWidget.h"

#include <QEvent>
#include <QScrollBar>

namespace zv {

const QString TEditorWidget::kWrapMark = QStringLiteral("\u21AA");

int TEditorWidget::WrapColumns() const {
    if (FWrapAtColumn)
        return FWrapAtColumnValue;
    if (FWrapAtRightMargin)
        return FMemo.FRightMargin;
    const int charWidth = std::max(1, fontMetrics().horizontalAdvance(QLatin1Char('M')));
    return (viewport()->width() - GutterWidth() - 4) / charWidth - 1;
}

qreal TEditorWidget::RowTextLeft(int row) const {
    return TextLeft() + FMemo.TextLength(row, 0); // the widget's FMargin is 0
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
