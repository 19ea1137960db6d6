// Editing at several carets at once: one single-caret edit run at each caret of the list or
// each row of a column block, in document order, as one undo step with one repaint.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <cmath>
#include <utility>

namespace zv {

TZvPos TMultiCursorPos::First() const {
    if (!aSelectMode)
        return Caret();
    return std::min(TZvPos{aSelStartX, aSelStartY}, TZvPos{aSelEndX, aSelEndY});
}

TZvPos TMultiCursorPos::Last() const {
    if (!aSelectMode)
        return Caret();
    return std::max(TZvPos{aSelStartX, aSelStartY}, TZvPos{aSelEndX, aSelEndY});
}

TZvPos TPosShift::Map(TZvPos p) const {
    if (FRow < 0)
        return p;
    if (p.Y == FRow)
        return {p.X + FColShift, FNewRow};
    return {p.X, p.Y + FRowShift};
}

void TPosShift::Apply(TZvPos to, TZvPos end) {
    if (Log) {
        Log->emplace_back(to, end);
        return;
    }
    // `to` is a position in the text of now; find the original row it stands for.
    std::int32_t colShift = 0;
    if (FRow >= 0 && to.Y == FNewRow) {
        colShift = FColShift;
    } else {
        FRow = to.Y - FRowShift;
    }
    // An original column x on FRow lies at x + colShift now, and at end.X + (that - to.X)
    // after the edit.
    FColShift = colShift + end.X - to.X;
    FRowShift += end.Y - to.Y;
    FNewRow = end.Y;
}

void TMultiEditUndo::PerformUndo(TZvCustomMemo& memo) {
    TScriptStartUndo::PerformUndo(memo);
    memo.SetCaretState(FBefore);
}

void TMultiEditUndo::PerformRedo(TZvCustomMemo& memo) {
    TScriptStartUndo::PerformRedo(memo);
    memo.SetCaretState(FAfter);
}

TCaretState TZvCustomMemo::CaretState() const {
    return {Caret(),        SelStart(),       SelEnd(), FColumnMode,
            FMultiEditMode, FMultiCursorList, FSyncData};
}

void TZvCustomMemo::SetCaretState(const TCaretState& state) {
    FCurX = state.Caret.X;
    FCurY = state.Caret.Y;
    FSelStartX = state.SelStart.X;
    FSelStartY = state.SelStart.Y;
    FSelEndX = FPrevSelX = state.SelEnd.X;
    FSelEndY = FPrevSelY = state.SelEnd.Y;
    FColumnMode = state.ColumnMode;
    FMultiCursorList = state.Carets;
    FMultiEditMode = state.MultiEditMode && !FMultiCursorList.empty();
    FSyncData = state.Sync;
    FOldCurX = static_cast<std::int32_t>(std::lround(TextLength(FCurY, FCurX)));
    NotifySelection();
    NotifyCursor();
}

bool TZvCustomMemo::CaretsActive() const {
    return !FCaretEditBusy && !DocState().FWordWrap &&
           (FMultiEditMode || (FColumnMode && HasSelection()));
}

void TZvCustomMemo::BeginCaretEdit(TMultiEditUndo*& record) {
    record = nullptr;
    TZvUndoList& undo = UndoList();
    if (undo.FScriptUndo || undo.FIsPerforming)
        return; // a running script keeps every edit in its own step
    auto start = std::make_unique<TMultiEditUndo>();
    start->FBefore = CaretState();
    record = start.get();
    undo.Add(std::move(start));
}

void TZvCustomMemo::EndCaretEdit(TMultiEditUndo* record) {
    if (record) {
        record->FAfter = CaretState();
        const bool empty = record->Items.empty();
        TZvUndoList& undo = UndoList();
        undo.Add(std::make_unique<TScriptEndUndo>());
        if (empty && undo.Get(0) == record)
            undo.RemoveNewest();
    }
    AnnounceChange(TRowRange{0, -1});
    NotifySelection();
}

namespace {

using TEditLog = std::vector<std::pair<TZvPos, TZvPos>>;

// After edits from the last caret to the first: each caret's results and edits stand in a
// text without the edits above it; walking down, the edits above shift them as in EditEach.
// Caret i's edits are log[starts[i], starts[i - 1]) (the last caret's came first).
void ShiftAfterBackward(std::vector<TMultiCursorPos>& list, const TEditLog& log,
                        const std::vector<std::size_t>& starts) {
    TPosShift shift;
    for (std::size_t j = 0; j < list.size(); ++j) {
        const TPosShift above = shift;
        TMultiCursorPos& e = list[j];
        const TZvPos caret = above.Map({e.aCurX, e.aCurY});
        const TZvPos start = above.Map({e.aSelStartX, e.aSelStartY});
        const TZvPos end = above.Map({e.aSelEndX, e.aSelEndY});
        e.aCurX = caret.X;
        e.aCurY = caret.Y;
        e.aSelStartX = start.X;
        e.aSelStartY = start.Y;
        e.aSelEndX = end.X;
        e.aSelEndY = end.Y;
        const std::size_t stop = j > 0 ? starts[j - 1] : log.size();
        for (std::size_t k = starts[j]; k < stop; ++k)
            shift.Apply(above.Map(log[k].first), above.Map(log[k].second));
    }
}

} // namespace

void TZvCustomMemo::EditEach(std::vector<TMultiCursorPos>& list,
                             const std::function<void(std::size_t)>& edit, bool backward) {
    TPosShift shift;
    TEditLog log;
    std::vector<std::size_t> starts(backward ? list.size() : 0);
    if (backward)
        shift.Log = &log; // the shift stays empty: Map keeps positions
    FShiftWatch = &shift;
    // One repaint and one change event at the end, not one per caret.
    auto invalidate = std::exchange(FOnInvalidate, nullptr);
    auto change = std::exchange(FOnChange, nullptr);
    auto cursor = std::exchange(FOnCursorChange, nullptr);
    auto selection = std::exchange(FOnSelectionChange, nullptr);
    const bool column = std::exchange(FColumnMode, false);
    const bool busy = std::exchange(FCaretEditBusy, true);
    for (std::size_t k = 0; k < list.size(); ++k) {
        const std::size_t i = backward ? list.size() - 1 - k : k;
        if (backward)
            starts[i] = log.size();
        TMultiCursorPos& entry = list[i];
        const TZvPos caret = shift.Map(entry.Caret());
        FCurX = caret.X;
        FCurY = caret.Y;
        TZvPos start = caret, end = caret;
        if (entry.aSelectMode) {
            start = shift.Map({entry.aSelStartX, entry.aSelStartY});
            end = shift.Map({entry.aSelEndX, entry.aSelEndY});
        }
        FSelStartX = start.X;
        FSelStartY = start.Y;
        FSelEndX = FPrevSelX = end.X;
        FSelEndY = FPrevSelY = end.Y;
        FOldCurX = static_cast<std::int32_t>(std::lround(TextLength(FCurY, FCurX)));
        edit(i);
        entry.aCurX = FCurX;
        entry.aCurY = FCurY;
        entry.aOldCurXPos = FOldCurX;
        entry.aSelStartX = FSelStartX;
        entry.aSelStartY = FSelStartY;
        entry.aSelEndX = FSelEndX;
        entry.aSelEndY = FSelEndY;
        entry.aSelectMode = HasSelection();
    }
    if (backward)
        ShiftAfterBackward(list, log, starts);
    FCaretEditBusy = busy;
    FColumnMode = column;
    FOnInvalidate = std::move(invalidate);
    FOnChange = std::move(change);
    FOnCursorChange = std::move(cursor);
    FOnSelectionChange = std::move(selection);
    FShiftWatch = nullptr;
}

bool TZvCustomMemo::CaretKeysBackward(const std::vector<TMultiCursorPos>& list) const {
    if (!FCaretKeysFromGap || list.empty())
        return false;
    const std::int64_t gap = Lines().GapRow();
    return 2 * gap > std::int64_t(list.front().aCurY) + list.back().aCurY;
}

namespace {

// Carets that an edit brought together (Backspace at neighbours) become one.
void DropDuplicates(std::vector<TMultiCursorPos>& list) {
    std::vector<TMultiCursorPos> kept;
    kept.reserve(list.size());
    for (const TMultiCursorPos& entry : list)
        if (kept.empty() || entry.aSelectMode || kept.back().aSelectMode ||
            kept.back().Caret() != entry.Caret())
            kept.push_back(entry);
    list.swap(kept);
}

} // namespace

void TZvCustomMemo::EditAtCaret(TCaretEdit kind, char16_t c) {
    switch (kind) {
    case TCaretEdit::Char:
        InsertChar(c);
        break;
    case TCaretEdit::Backspace:
        Backspace();
        break;
    case TCaretEdit::Delete:
        DeleteChar();
        break;
    case TCaretEdit::Cut:
        DeleteSelection();
        break;
    case TCaretEdit::Enter:
        EnterPress();
        break;
    }
}

bool TZvCustomMemo::EditAtCarets(TCaretEdit kind, char16_t c) {
    if (FReadOnly || !CanEdit())
        return false;
    if (!FMultiEditMode) {
        switch (kind) {
        case TCaretEdit::Char:
            return (FOverwrite && OverwriteColumn(c)) || SetColSelText(std::u16string(1, c), true);
        case TCaretEdit::Backspace:
            return DeleteColSelection(true);
        case TCaretEdit::Delete:
        case TCaretEdit::Cut:
            return DeleteColSelection(false);
        case TCaretEdit::Enter:
            SetTextCursor(FCurX, FCurY); // leaves the block, then a plain Enter
            return EnterPress();
        }
    }
    TMultiEditUndo* record = nullptr;
    BeginCaretEdit(record);
    EditEach(
        FMultiCursorList, [&](std::size_t) { EditAtCaret(kind, c); },
        CaretKeysBackward(FMultiCursorList));
    DropDuplicates(FMultiCursorList);
    const TMultiCursorPos& last = FMultiCursorList.back();
    SetTextCursor(last.aCurX, last.aCurY);
    EndCaretEdit(record);
    return true;
}

bool TZvCustomMemo::PasteAtCarets(std::u16string_view text) {
    if (!FMultiEditMode)
        return SetColSelText(text, false);
    if (FReadOnly || !CanEdit())
        return false;
    TMultiEditUndo* record = nullptr;
    BeginCaretEdit(record);
    EditEach(
        FMultiCursorList, [&](std::size_t) { InsertText(text); },
        CaretKeysBackward(FMultiCursorList));
    const TMultiCursorPos& last = FMultiCursorList.back();
    SetTextCursor(last.aCurX, last.aCurY);
    EndCaretEdit(record);
    return true;
}

std::u16string TZvCustomMemo::CaretsText() const {
    if (!FMultiEditMode)
        return GetColumnSelText();
    std::u16string text;
    bool first = true;
    for (const TMultiCursorPos& entry : FMultiCursorList) {
        if (!entry.aSelectMode)
            continue;
        const TZvPos s = ClipToText(entry.First()), e = ClipToText(entry.Last());
        if (!first)
            text += u"\r\n";
        first = false;
        if (s != e)
            text += FLines->GetText(s.Y, e.Y, s.X + 1, e.X, false, false, false);
    }
    return text;
}

bool TZvCustomMemo::CutAtCarets() {
    if (FReadOnly || !CanEdit() || !CopyToClipboard())
        return false;
    return EditAtCarets(TCaretEdit::Cut);
}

} // namespace zv
