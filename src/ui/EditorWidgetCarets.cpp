// The editor widget's side of editing at several places: the column block and the caret
// list and the sync-edit block with its word painted, and the gestures that make them
// (Ctrl+click, Alt+drag, Escape).
#include "ui/EditorWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace zv {
namespace {

const QColor kBlockBack(0xAD, 0xD6, 0xFF);
const QColor kSyncBlockTint(0x40, 0xA0, 0x40, 0x20); // see-through: the text stays legible
const QColor kSyncWordFrame(0x20, 0x80, 0x20);

} // namespace

bool TEditorWidget::PaintCaretSelections(QPainter& painter, int row, int y) {
    const int left = TextLeft(), height = LineHeight();
    if (FMemo.FMultiEditMode) {
        for (const TMultiCursorPos& entry : FMemo.FMultiCursorList) {
            const TZvPos s = entry.First(), e = entry.Last();
            if (!entry.aSelectMode || row < s.Y || row > e.Y)
                continue;
            const int len = FMemo.RowLength(row);
            const double x1 = FMemo.TextLength(row, row == s.Y ? std::min(s.X, len) : 0);
            double x2 = FMemo.TextLength(row, row == e.Y ? std::min(e.X, len) : len);
            if (row != e.Y)
                x2 += FMeasure.SpaceWidth(); // the line end is selected too
            painter.fillRect(QRectF(left + x1, y, x2 - x1, height), kBlockBack);
        }
        return true;
    }
    if (!FMemo.FColumnMode || !FMemo.HasSelection())
        return false;
    const TZvPos s = FMemo.SelStart(), e = FMemo.SelEnd();
    if (row < std::min(s.Y, e.Y) || row > std::max(s.Y, e.Y))
        return true;
    const int a = FMemo.FromRealCursorPos(s.Y, s.X), b = FMemo.FromRealCursorPos(e.Y, e.X);
    const double x1 = FMemo.TextLength(row, FMemo.ToRealCursorPos(row, std::min(a, b)));
    const double x2 = FMemo.TextLength(row, FMemo.ToRealCursorPos(row, std::max(a, b)));
    painter.fillRect(QRectF(left + x1, y, std::max(x2 - x1, 1.0), height), kBlockBack);
    return true;
}

void TEditorWidget::PaintSyncBlock(QPainter& painter, int first, int last) {
    const TSyncData& d = FMemo.FSyncData;
    const int height = LineHeight();
    for (int row = std::max(first, d.yStart); row < last && row <= d.yEnd; ++row) {
        const double x1 = row == d.yStart ? FMemo.TextLength(row, d.xStart) : 0;
        const double x2 =
            row == d.yEnd ? FMemo.TextLength(row, d.xEnd) : viewport()->width() - TextLeft();
        painter.fillRect(QRectF(TextLeft() + x1, (row - first) * height, x2 - x1, height),
                         kSyncBlockTint);
    }
    const std::vector<TZvPos> hits = FMemo.SyncOccurrences();
    if (hits.size() < 2)
        return;
    painter.setPen(kSyncWordFrame);
    const int length = static_cast<int>(d.WordAtCaret.size());
    for (const TZvPos& hit : hits) {
        if (hit.Y < first || hit.Y >= last)
            continue;
        const double x1 = FMemo.TextLength(hit.Y, hit.X);
        const double x2 = FMemo.TextLength(hit.Y, hit.X + length);
        painter.drawRect(QRectF(TextLeft() + x1, (hit.Y - first) * height, x2 - x1, height - 1));
    }
}

void TEditorWidget::PaintExtraCarets(QPainter& painter, int first, int last) {
    if (FMemo.FSyncEditMode)
        PaintSyncBlock(painter, first, last);
    if (!FCaretOn || !hasFocus())
        return;
    const QColor colour = palette().color(QPalette::Text);
    const auto paintAt = [&](int row, int x) {
        if (row < first || row >= last || (row == FMemo.FCurY && x == FMemo.FCurX))
            return;
        const int px = TextLeft() + static_cast<int>(std::lround(FMemo.TextLength(row, x)));
        if (px >= GutterWidth())
            painter.fillRect(QRect(px, (row - first) * LineHeight(), 2, LineHeight()), colour);
    };
    if (FMemo.FMultiEditMode) {
        for (const TMultiCursorPos& entry : FMemo.FMultiCursorList)
            paintAt(entry.aCurY, entry.aCurX);
    } else if (FMemo.FColumnMode && FMemo.HasSelection()) {
        // Typing goes into every row of the block: each shows a caret at the caret's column.
        const TZvPos s = FMemo.SelStart(), e = FMemo.SelEnd();
        const int visual = FMemo.FromRealCursorPos(FMemo.FCurY, FMemo.FCurX);
        for (int row = std::max(std::min(s.Y, e.Y), first); row <= std::max(s.Y, e.Y); ++row)
            paintAt(row, FMemo.ToRealCursorPos(row, visual));
    }
}

bool TEditorWidget::CaretMousePress(QMouseEvent* event, TZvPos pos) {
    const Qt::KeyboardModifiers mods = event->modifiers();
    if ((mods & Qt::ControlModifier) && !(mods & (Qt::ShiftModifier | Qt::AltModifier))) {
        FMemo.ToggleCaretAt(pos);
        FSelecting = false;
        AfterCommand();
        return true;
    }
    if (FMemo.FMultiEditMode)
        FMemo.ExitMultiEditMode();
    if ((mods & Qt::AltModifier) && !FMemo.DocState().FWordWrap) {
        if (!FMemo.FColumnMode) { // held for this drag only
            FMemo.SetColumnMode(true);
            FMemo.FColumnModeRelease = true;
        }
    } else if (FMemo.FColumnModeRelease) {
        FMemo.SetColumnMode(false);
    }
    return false;
}

bool TEditorWidget::HandleCaretKeys(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape || event->modifiers() != Qt::NoModifier)
        return false;
    if (FMemo.FMultiEditMode) {
        FMemo.ExitMultiEditMode();
        return true;
    }
    if (FMemo.FColumnMode && FMemo.HasSelection()) {
        FMemo.SetTextCursor(FMemo.FCurX, FMemo.FCurY);
        return true;
    }
    return false;
}

} // namespace zv
