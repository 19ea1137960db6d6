// Undo records: the shared undo/redo frame, merging of typing and deletion runs, action
// texts.
#include "ZvMemoControl/ZvMemoUndo.h"

#include "ZvMemoControl/WrapRows.h"
#include "ZvMemoControl/ZvMemo.h"

namespace zv {

bool TUndo::IsGroupMark() const {
    return FKind == TUndoKind::MacroStart || FKind == TUndoKind::MacroEnd ||
           FKind == TUndoKind::ScriptEnd;
}

bool TUndo::Append(TUndo&) {
    return false;
}

void TUndo::SetChange(TZvPos at, TZvPos atRow, TEditText removed, TEditText inserted) {
    FAt = at;
    FAtRow = atRow;
    FRemoved = std::move(removed);
    FInserted = std::move(inserted);
}

void TUndo::BuildActionText() {
    const TEditText& source = FRemoved.Empty() ? FInserted : FRemoved;
    const std::u16string head = source.Head(17);
    std::u16string text;
    for (std::size_t i = 0; i < head.size() && i < 16; ++i) {
        if (head[i] == u'\r' || head[i] == u'\n') {
            if (head[i] == u'\r' && i + 1 < head.size() && head[i + 1] == u'\n')
                ++i;
            text += u"[CRLF]";
        } else {
            text += head[i];
        }
    }
    if (source.Length() > 16)
        text += u"...";
    FActionText = std::move(text);
}

void TUndo::Undo(TZvCustomMemo& memo) {
    const auto aids = memo.BeginReplay(true);
    try {
        PerformUndo(memo);
    } catch (...) {
        memo.EndReplay(aids);
        throw;
    }
    memo.EndReplay(aids);
}

void TUndo::Redo(TZvCustomMemo& memo) {
    const auto aids = memo.BeginReplay(false);
    try {
        PerformRedo(memo);
    } catch (...) {
        memo.EndReplay(aids);
        throw;
    }
    memo.EndReplay(aids);
}

void TUndo::RowRange(const TZvCustomMemo& memo, const TEditText& text, TZvPos& from,
                     TZvPos& to) const {
    // Rows of a cut line may be cut elsewhere by now: only uncut rows are where they were.
    if (!RowsAreCut(memo.DocState()) && memo.Unwrapped(FAtRow) == FAt) {
        from = FAtRow;
        to = text.EndFrom(FAtRow);
    } else {
        from = memo.Wrapped(FAt);
        to = memo.Wrapped(text.LineEndFrom(FAt));
    }
}

void TUndo::PerformUndo(TZvCustomMemo& memo) {
    TZvPos from, to;
    RowRange(memo, FInserted, from, to);
    memo.Replay(from, to, FRemoved);
    const TZvPos caret = memo.Wrapped({FUndoCurX0, FUndoCurY0});
    if (FUndoSelStartX >= 0 && (FKind == TUndoKind::DeleteBuf || FKind == TUndoKind::Replace))
        memo.SetSelection(memo.Wrapped({FUndoSelStartX, FUndoSelStartY}),
                          memo.Wrapped({FUndoSelEndX, FUndoSelEndY}));
    else
        memo.SetTextCursor(caret.X, caret.Y);
}

void TUndo::PerformRedo(TZvCustomMemo& memo) {
    TZvPos from, to;
    RowRange(memo, FRemoved, from, to);
    memo.Replay(from, to, FInserted);
    const TZvPos caret = memo.Wrapped({FUndoCurX, FUndoCurY});
    memo.SetTextCursor(caret.X, caret.Y);
}

void TSelUndo::SetSelection(TZvCustomMemo& memo, TZvPos start, TZvPos end) {
    start = memo.Unwrapped(start);
    end = memo.Unwrapped(end);
    FUndoSelStartX = start.X;
    FUndoSelStartY = start.Y;
    FUndoSelEndX = end.X;
    FUndoSelEndY = end.Y;
}

namespace {

// `newer` starts where `older` left the caret: the two are one run of keys.
bool Continues(const TUndo& older, const TUndo& newer) {
    return !older.FSavePoint && newer.FKind == older.FKind && newer.FUndoCurX0 == older.FUndoCurX &&
           newer.FUndoCurY0 == older.FUndoCurY;
}

void TakeEnd(TUndo& older, const TUndo& newer) {
    older.FUndoCurX = newer.FUndoCurX;
    older.FUndoCurY = newer.FUndoCurY;
    older.BuildActionText();
}

} // namespace

bool TInsertCharUndo::Append(TUndo& other) {
    if (!Continues(*this, other) || !FRemoved.Empty() || !other.FRemoved.Empty() ||
        other.FAt != FInserted.LineEndFrom(FAt))
        return false;
    FInserted.Append(other.FInserted);
    TakeEnd(*this, other);
    return true;
}

bool TDeleteCharUndo::Append(TUndo& other) {
    if (!Continues(*this, other) || other.FIsBackspace != FIsBackspace || !FInserted.Empty() ||
        !other.FInserted.Empty())
        return false;
    if (FIsBackspace) {
        if (other.FRemoved.LineEndFrom(other.FAt) != FAt)
            return false;
        FRemoved.Prepend(other.FRemoved);
        FAt = other.FAt;
        FAtRow = other.FAtRow;
    } else {
        if (other.FAt != FAt)
            return false;
        FRemoved.Append(other.FRemoved);
    }
    TakeEnd(*this, other);
    return true;
}

void TScriptStartUndo::PerformUndo(TZvCustomMemo& memo) {
    for (auto it = Items.rbegin(); it != Items.rend(); ++it)
        (*it)->Undo(memo);
}

void TScriptStartUndo::PerformRedo(TZvCustomMemo& memo) {
    for (auto& item : Items)
        item->Redo(memo);
}

} // namespace zv
