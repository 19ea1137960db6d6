// Deletion: Backspace and Delete by grapheme cluster, joining rows, smart backspace in the
// indent, and deleting the selection.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/WrapRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

bool TZvCustomMemo::DeleteRange(TZvPos from, TZvPos to, std::unique_ptr<TUndo> record) {
    if (Unwrapped(from) == Unwrapped(to))
        return false;
    Change(from, to, TEditText(), std::move(record), Caret());
    return true;
}

// Joins row p.Y with the next; a caret past the row's end first pads the gap with spaces.
bool TZvCustomMemo::JoinWithNext(TZvPos p, bool backspace) {
    if (p.Y + 1 >= RowCount())
        return false;
    const TZvPos from{std::min(p.X, RowLength(p.Y)), p.Y};
    Change(from, {0, p.Y + 1}, PaddingFor(p), std::make_unique<TDeleteCharUndo>(backspace),
           Caret());
    return true;
}

bool TZvCustomMemo::Backspace() {
    if (FReadOnly || !CanEdit())
        return false;
    if (CaretsActive())
        return EditAtCarets(TCaretEdit::Backspace);
    if (SyncActive() && SyncEdit(TCaretEdit::Backspace))
        return true;
    if (HasSelection())
        return DeleteSelection();
    if (FSmartBackspace && !RowsAreCut(DocState()) && SmartBackspaceStep())
        return true;
    const TZvPos caret = Caret();
    const int len = RowLength(caret.Y);
    if (caret.X == 0) {
        if (caret.Y == 0)
            return false;
        const int prev = caret.Y - 1;
        if (FLines->IsLineWrapped(caret.Y)) // a cut: the last cluster of the row above goes
            return DeleteCluster({RowLength(prev), prev}, true);
        return JoinWithNext({RowLength(prev), prev}, true);
    }
    if (caret.X > len) { // virtual space: nothing to delete, the caret steps left
        SetTextCursor(caret.X - 1, caret.Y);
        return true;
    }
    return DeleteCluster(caret, true);
}

// Deletes the cluster behind `p` (backspace) or at it; at a row's end before a continuation
// row the cluster is the next row's first (a cut is no character).
bool TZvCustomMemo::DeleteCluster(TZvPos p, bool backspace) {
    TZvPos from = p, to = p;
    if (backspace) {
        from.X = Breaks().PrevCluster(RowText(p.Y), p.X);
    } else if (p.X >= RowLength(p.Y)) {
        to = {Breaks().NextCluster(RowText(p.Y + 1), 0), p.Y + 1};
        if (to.X == 0)
            return false;
    } else {
        to.X = Breaks().NextCluster(RowText(p.Y), p.X);
    }
    const int units = static_cast<int>(FLines->GetCharPosFromXY(to.X, to.Y) -
                                       FLines->GetCharPosFromXY(from.X, from.Y));
    std::unique_ptr<TUndo> record;
    if (units > 1)
        record = std::make_unique<TDeleteBufUndo>();
    else
        record = std::make_unique<TDeleteCharUndo>(backspace);
    return DeleteRange(from, to, std::move(record));
}

// In the indent: deletes back to the indent of the nearest shallower line above.
bool TZvCustomMemo::SmartBackspaceStep() {
    const auto row = RowText(FCurY);
    const int x = std::min(FCurX, static_cast<int>(row.size()));
    if (x == 0 || FCurX > static_cast<int>(row.size()))
        return false;
    for (int i = 0; i < x; ++i)
        if (row[i] != u' ' && row[i] != u'\t')
            return false;
    const int visual = FromRealCursorPos(FCurY, x);
    int target = 0;
    for (int r = FCurY - 1; r >= 0; --r) {
        const int indent = FLines->GetVisualIndent(r, std::max(DocState().FTabSize, 1), true);
        if (indent >= 0 && indent < visual) {
            target = indent;
            break;
        }
    }
    const int to = ToRealCursorPos(FCurY, target);
    return DeleteRange({std::min(to, x), FCurY}, {x, FCurY}, std::make_unique<TDeleteBufUndo>());
}

bool TZvCustomMemo::DeleteChar(int x, int y) {
    if (FReadOnly || !CanEdit())
        return false;
    if (x < 0 && CaretsActive())
        return EditAtCarets(TCaretEdit::Delete);
    if (x < 0 && SyncActive() && SyncEdit(TCaretEdit::Delete))
        return true;
    if (x < 0 && HasSelection())
        return DeleteSelection();
    const TZvPos p = x < 0 ? Caret() : TZvPos{x, y};
    if (p.Y >= RowCount())
        return false;
    if (p.X >= RowLength(p.Y) && !FLines->IsLineWrapped(p.Y + 1))
        return JoinWithNext(p, false);
    return DeleteCluster(p, false);
}

bool TZvCustomMemo::DeleteSelection(bool record) {
    if (!HasSelection() || FReadOnly || !CanEdit())
        return false;
    TZvPos s, e;
    OrderedSelection(s, e);
    s = ClipToText(s);
    e = ClipToText(e);
    std::unique_ptr<TUndo> undo;
    if (record) {
        auto del = std::make_unique<TDeleteBufUndo>();
        del->SetSelection(*this, SelStart(), SelEnd());
        undo = std::move(del);
    }
    if (Unwrapped(s) == Unwrapped(e)) { // nothing, or only a cut, lies between
        SetTextCursor(s.X, s.Y);
        return false;
    }
    Change(s, e, TEditText(), std::move(undo), Caret());
    return true;
}

} // namespace zv
