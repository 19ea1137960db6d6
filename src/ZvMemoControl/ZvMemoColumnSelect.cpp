// The column block: the selection taken as a rectangle of visual columns, its text, and
// typing, deleting and pasting in every row of it; Alt+Shift moves that hold column mode for
// one move.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <utility>

namespace zv {
namespace {

// The caret list entry of one block row: its part of the row selected (clipped to the row's
// text), the caret at the part's end, or at the left edge when the row does not reach it.
TMultiCursorPos RowEntry(int row, int realLeft, int realRight, int length) {
    TMultiCursorPos entry;
    entry.aCurY = entry.aSelStartY = entry.aSelEndY = row;
    entry.aSelStartX = std::min(realLeft, length);
    entry.aSelEndX = std::min(realRight, length);
    entry.aSelectMode = entry.aSelStartX < entry.aSelEndX;
    entry.aCurX = entry.aSelectMode ? entry.aSelEndX : realLeft;
    return entry;
}

} // namespace

std::vector<TMultiCursorPos> TZvCustomMemo::ColumnRows(int& left, int& right) const {
    const TZvPos s = SelStart(), e = SelEnd();
    const int a = FromRealCursorPos(s.Y, s.X), b = FromRealCursorPos(e.Y, e.X);
    left = std::min(a, b);
    right = std::max(a, b);
    const int top = std::clamp(std::min(s.Y, e.Y), 0, RowCount() - 1);
    const int bottom = std::clamp(std::max(s.Y, e.Y), 0, RowCount() - 1);
    std::vector<TMultiCursorPos> rows;
    rows.reserve(static_cast<std::size_t>(bottom - top + 1));
    for (int row = top; row <= bottom; ++row)
        rows.push_back(
            RowEntry(row, ToRealCursorPos(row, left), ToRealCursorPos(row, right), RowLength(row)));
    return rows;
}

// The block after an edit: zero width at the carets the rows ended with, from the first row
// to the last, the caret on the last.
void TZvCustomMemo::SetColumnBlock(const std::vector<TMultiCursorPos>& rows) {
    const TMultiCursorPos &first = rows.front(), &last = rows.back();
    FSelStartX = first.aCurX;
    FSelStartY = first.aCurY;
    FCurX = FSelEndX = FPrevSelX = last.aCurX;
    FCurY = FSelEndY = FPrevSelY = last.aCurY;
    FColumnMode = true;
}

std::u16string TZvCustomMemo::GetColumnSelText() const {
    if (!HasSelection() || FIsClosing)
        return {};
    int left = 0, right = 0;
    const std::vector<TMultiCursorPos> rows = ColumnRows(left, right);
    std::u16string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const TMultiCursorPos& entry = rows[i];
        const auto row = RowText(entry.aCurY);
        if (i > 0)
            text += u"\r\n";
        if (entry.aSelectMode)
            text += row.substr(static_cast<std::size_t>(entry.aSelStartX),
                               static_cast<std::size_t>(entry.aSelEndX - entry.aSelStartX));
        if (rows.size() == 1)
            break; // one row: the plain part, unpadded
        // Short rows are padded to the block's width.
        const int reached = entry.aSelectMode ? FromRealCursorPos(entry.aCurY, entry.aSelEndX) -
                                                    FromRealCursorPos(entry.aCurY, entry.aSelStartX)
                                              : 0;
        if (reached < right - left)
            text.append(static_cast<std::size_t>(right - left - reached), u' ');
    }
    return text;
}

void TZvCustomMemo::SetColumnMode(bool on) {
    FColumnModeRelease = false;
    if (FColumnMode == on)
        return;
    FColumnMode = on;
    if (FOnColumnModeChange)
        FOnColumnModeChange(on);
}

// Alt+Shift with a move holds column mode for that move; a move without lets it go again.
void TZvCustomMemo::ColumnMoveHook(unsigned& shift) {
    if ((shift & (ssAlt | ssShift)) == (ssAlt | ssShift) && !DocState().FWordWrap) {
        shift &= ~static_cast<unsigned>(ssAlt);
        if (!FColumnMode) {
            SetColumnMode(true);
            FColumnModeRelease = true;
        }
    } else if (FColumnModeRelease) {
        SetColumnMode(false);
    }
}

bool TZvCustomMemo::SetColSelText(std::u16string_view text, bool fill) {
    if (FReadOnly || FSyncEditMode || DocState().FWordWrap || !CanEdit())
        return false;
    const std::vector<TRowText> lines = TEditText::FromString(text, true).Rows;
    fill = fill || lines.size() == 1;
    int left = 0, right = 0;
    std::vector<TMultiCursorPos> rows = ColumnRows(left, right);
    const int top = rows.front().aCurY;
    const int count = fill ? static_cast<int>(rows.size()) : static_cast<int>(lines.size());
    TMultiEditUndo* record = nullptr;
    BeginCaretEdit(record);
    EnsureRow(0);
    // Lines beyond the document's end add rows, as one more edit of the same step.
    if (const int missing = top + count - RowCount(); missing > 0) {
        const TZvPos end{RowLength(RowCount() - 1), RowCount() - 1};
        TEditText breaks;
        for (int i = 0; i < missing; ++i) {
            breaks.Rows.emplace_back();
            breaks.Ends.push_back(leDocument);
        }
        const bool busy = std::exchange(FCaretEditBusy, true);
        Change(end, end, breaks, std::make_unique<TPasteUndo>(), Caret());
        FCaretEditBusy = busy;
    }
    rows.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        rows[static_cast<std::size_t>(i)] =
            RowEntry(top + i, ToRealCursorPos(top + i, left), ToRealCursorPos(top + i, right),
                     RowLength(top + i));
    EditEach(rows, [&](std::size_t i) {
        const std::u16string_view line = (fill ? lines.front() : lines[i]).View();
        if (!line.empty() || HasSelection())
            InsertText(line);
    });
    SetColumnBlock(rows);
    EndCaretEdit(record);
    return true;
}

bool TZvCustomMemo::DeleteColSelection(bool backspace) {
    if (FReadOnly || FSyncEditMode || DocState().FWordWrap || DocState().FTextDiffMode ||
        !CanEdit())
        return false;
    int left = 0, right = 0;
    std::vector<TMultiCursorPos> rows = ColumnRows(left, right);
    if (left == right && backspace && left == 0)
        return false;
    TMultiEditUndo* record = nullptr;
    BeginCaretEdit(record);
    const bool smart = std::exchange(FSmartBackspace, false);
    EditEach(rows, [&](std::size_t) {
        const int length = RowLength(FCurY);
        if (left != right) {
            if (HasSelection())
                DeleteSelection();
        } else if (backspace) {
            if (FCurX > 0) // past the row's end only the caret steps left
                Backspace();
        } else if (FCurX < length) {
            DeleteChar();
        }
    });
    FSmartBackspace = smart;
    SetColumnBlock(rows);
    EndCaretEdit(record);
    return true;
}

} // namespace zv
