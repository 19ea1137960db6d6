// Whole-line edits: deleting, inserting and duplicating logical lines, each one undo step.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

void TZvCustomMemo::LineRows(int row, int& first, int& last) const {
    row = std::clamp(row, 0, RowCount() - 1);
    first = FLines->Count() > 0 ? FLines->GetWrappedMainLineNumber(row) : 0;
    last = FLines->Count() > 0 ? first + std::max(FLines->GetWrappedLineCount(first), 1) - 1 : 0;
}

bool TZvCustomMemo::DeleteLine(int row) {
    if (FReadOnly || !CanEdit() || row < 0 || row >= RowCount())
        return false;
    int first = 0, last = 0;
    LineRows(row, first, last);
    // The line goes with the line end behind it; the last line takes the one before it.
    TZvPos from{0, first}, to{0, last + 1};
    if (last + 1 >= RowCount()) {
        if (first == 0 && RowLength(last) == 0)
            return false; // the document is one empty line already
        from = first > 0 ? TZvPos{RowLength(first - 1), first - 1} : TZvPos{0, 0};
        to = {RowLength(last), last};
    }
    const TZvPos caret = Caret();
    auto record = std::make_unique<TDeleteLineUndo>();
    if (HasSelection())
        record->SetSelection(*this, SelStart(), SelEnd());
    Change(from, to, TEditText(), std::move(record), caret);
    int y = caret.Y;
    if (caret.Y > last)
        y -= last - first + 1;
    else if (caret.Y >= first)
        y = std::min(first, RowCount() - 1);
    // The column comes from another row: it must not split a cluster of this one.
    int x = caret.X;
    if (x > 0 && x < RowLength(y))
        x = Breaks().PrevCluster(RowText(y), x + 1);
    SetTextCursor(x, y);
    return true;
}

bool TZvCustomMemo::DeleteCurrentLine() {
    return DeleteLine(FCurY);
}

bool TZvCustomMemo::InsertLine(int row) {
    if (FReadOnly || !CanEdit() || row < 0 || row > RowCount())
        return false;
    const TZvPos caret = Caret();
    TEditText text;
    text.Rows.emplace_back();
    text.Ends.push_back(leDocument);
    const TZvPos at =
        row < RowCount() ? TZvPos{0, row} : TZvPos{RowLength(RowCount() - 1), RowCount() - 1};
    Change(at, at, text, std::make_unique<TInsertLineUndo>(), caret);
    SetTextCursor(0, row);
    return true;
}

bool TZvCustomMemo::DuplicateCurrentLine() {
    if (FReadOnly || !CanEdit())
        return false;
    TZvPos s = Caret(), e = Caret();
    if (HasSelection())
        OrderedSelection(s, e);
    int first = 0, last = 0, ignored = 0;
    LineRows(s.Y, first, ignored);
    LineRows(e.Y, ignored, last);
    EnsureRow(last);
    // The copy goes behind the last line, after a line end of the document's kind.
    const TZvPos at{RowLength(last), last};
    TEditText text;
    text.Rows.emplace_back();
    text.Ends.push_back(leDocument);
    text.Append(ExtractText(*FLines, {0, first}, at));
    const TZvPos caret = Caret();
    const TZvPos selStart = SelStart(), selEnd = SelEnd();
    Change(at, at, text, std::make_unique<TDuplicateLinesExUndo>(), caret);
    if (selStart != selEnd)
        SetSelection(selStart, selEnd); // the original lines stay selected
    else
        SetTextCursor(caret.X, caret.Y);
    return true;
}

} // namespace zv
