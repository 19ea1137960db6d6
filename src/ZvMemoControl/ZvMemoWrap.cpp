// Word wrap switched or laid out anew from the control: the rows are cut again while the
// caret and the selection keep their unwrapped places.
#include "ZvMemoControl/WrapRows.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <vector>

namespace zv {

void TZvCustomMemo::SetWordWrap(bool on, int columns) {
    TZvMemoState& state = DocState();
    if (state.FWordWrap == on && state.FWrapColumns == columns)
        return;
    // Every view of the document keeps its places through the relayout (RelayoutComing).
    FDoc->Relayout([&] {
        state.FWordWrap = on;
        state.FWrapColumns = columns;
        WrapAll(Lines());
        if (on)
            return;
        // Lines that fit the limit again are whole rows: the forced cut ends with them.
        state.FForceWrap = false;
        for (int row = 1; row < Lines().Count() && !state.FForceWrap; ++row)
            state.FForceWrap = Lines().IsLineWrapped(row);
    });
    if (FOnInvalidate)
        FOnInvalidate(0, -1);
}

void TZvCustomMemo::RelayoutComing() {
    FKeptPlaces = {true, Unwrapped(Caret()), Unwrapped(SelStart()), Unwrapped(SelEnd()),
                   Lines().GetRealLine(FTopLine)};
}

void TZvCustomMemo::RestoreKeptPlaces() {
    if (!FKeptPlaces.Valid)
        return;
    FKeptPlaces.Valid = false;
    const TZvPos c = Wrapped(FKeptPlaces.Caret), s = Wrapped(FKeptPlaces.SelStart),
                 e = Wrapped(FKeptPlaces.SelEnd);
    FSelStartX = s.X;
    FSelStartY = s.Y;
    FSelEndX = FPrevSelX = e.X;
    FSelEndY = FPrevSelY = e.Y;
    FCurX = c.X;
    FCurY = c.Y;
    FTopLine = Lines().GetWrapIndex(FKeptPlaces.TopLine);
    NotifySelection();
    NotifyCursor();
}

bool TZvCustomMemo::HardWrapRow(int row) {
    const TZvMemoState& state = DocState();
    auto* memo = dynamic_cast<TZvMemo*>(this);
    if (!state.FHardWrapAtRightMargin || !memo || UndoList().FIsPerforming || row < 0 ||
        row >= RowCount())
        return false;
    const int margin = std::max(memo->FRightMargin, 16);
    const std::u16string line(RowText(row));
    if (static_cast<int>(line.size()) <= margin)
        return false;
    std::vector<int> lengths;
    CutLine(line, TCutRule{margin, 0, state.FWrapAtAbsoluteMargin}, lengths);
    std::u16string indent;
    if (state.FIndentWrappedLines) {
        while (indent.size() < 8 && indent.size() < line.size() &&
               (line[indent.size()] == u' ' || line[indent.size()] == u'\t'))
            indent += line[indent.size()];
        if (indent.size() == line.size())
            indent.clear();
    }
    // The pieces after the first, each on a line of its own behind the indent.
    std::u16string tail;
    int cut = lengths.front(), caretRow = row, caretCol = FCurX;
    for (std::size_t i = 1; i < lengths.size(); ++i) {
        if (FCurY == row && FCurX > cut) {
            caretRow = row + static_cast<int>(i);
            caretCol = static_cast<int>(indent.size()) + FCurX - cut;
        }
        tail += u"\n" + indent +
                line.substr(static_cast<std::size_t>(cut), static_cast<std::size_t>(lengths[i]));
        cut += lengths[i];
    }
    const TZvPos caret = Caret();
    SetSelection({lengths.front(), row}, {static_cast<int>(line.size()), row});
    InsertText(tail);
    if (caret.Y == row)
        SetTextCursor(caretCol, caretRow);
    return true;
}

} // namespace zv
