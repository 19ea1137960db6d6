// Deletion: Backspace and Delete by grapheme cluster, joining rows, smart backspace in the
// indent, and deleting the selection.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

bool TZvCustomMemo::DeleteRange(TZvPos from, TZvPos to, std::unique_ptr<TUndo> record) {
    if (from == to)
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
    if (FSmartBackspace && !DocState().FWordWrap && SmartBackspaceStep())
        return true;
    const TZvPos caret = Caret();
    const int len = RowLength(caret.Y);
    if (caret.X == 0) {
        if (caret.Y == 0)
            return false;
        const int prev = caret.Y - 1;
        return JoinWithNext({RowLength(prev), prev}, true);
    }
    if (caret.X > len) { // virtual space: nothing to delete, the caret steps left
        SetTextCursor(caret.X - 1, caret.Y);
        return true;
    }
    const int from = Breaks().PrevCluster(RowText(caret.Y), caret.X);
    std::unique_ptr<TUndo> record;
    if (caret.X - from > 1)
        record = std::make_unique<TDeleteBufUndo>();
    else
        record = std::make_unique<TDeleteCharUndo>(true);
    return DeleteRange({from, caret.Y}, caret, std::move(record));
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
    const auto row = RowText(p.Y);
    if (p.X >= static_cast<int>(row.size()))
        return JoinWithNext(p, false);
    const int to = Breaks().NextCluster(row, p.X);
    std::unique_ptr<TUndo> record;
    if (to - p.X > 1)
        record = std::make_unique<TDeleteBufUndo>();
    else
        record = std::make_unique<TDeleteCharUndo>(false);
    return DeleteRange(p, {to, p.Y}, std::move(record));
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
    if (s == e) {
        SetTextCursor(s.X, s.Y);
        return false;
    }
    Change(s, e, TEditText(), std::move(undo), Caret());
    return true;
}

} // namespace zv
