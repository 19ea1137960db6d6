// The move commands of the command layer: named forms of the caret moves the keys make, the
// go-to-line jump, the next and previous occurrence of a word, and the walks to the next
// changed row or fold head.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoFolds.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {

namespace {

// A command names one caret: the other carets stay behind, as with a move key.
void LeaveCarets(TZvMemo& memo) {
    if (memo.FMultiEditMode)
        memo.ExitMultiEditMode();
}

bool IsChangedRow(const TZvMemoStrings& lines, int row) {
    const TAttribute& a = lines.GetLineAttribute(row);
    return a.GetValue(abChanged) || a.GetValue(abChangeSaved);
}

} // namespace

void TZvMemo::acnHome() {
    LeaveCarets(*this);
    GoHome(0);
}

void TZvMemo::acnEnd() {
    LeaveCarets(*this);
    GoEnd(0);
}

void TZvMemo::acnDocumentBeginning() {
    LeaveCarets(*this);
    GoHome(ssCtrl);
}

void TZvMemo::acnDocumentEnd() {
    LeaveCarets(*this);
    GoEnd(ssCtrl);
}

void TZvMemo::acnTopOfPage() {
    LeaveCarets(*this);
    MoveCursor(0, -1, ssAlt);
}

void TZvMemo::acnBottomOfPage() {
    LeaveCarets(*this);
    MoveCursor(0, 1, ssAlt);
}

void TZvMemo::acnNextWord() {
    LeaveCarets(*this);
    MoveCursor(1, 0, ssCtrl);
}

void TZvMemo::acnPreviousWord() {
    LeaveCarets(*this);
    MoveCursor(-1, 0, ssCtrl);
}

void TZvMemo::acnScrollLineUp() {
    LeaveCarets(*this);
    MoveCursor(0, -1, ssCtrl);
}

void TZvMemo::acnScrollLineDown() {
    LeaveCarets(*this);
    MoveCursor(0, 1, ssCtrl);
}

void TZvMemo::acnScrollPageUp() {
    LeaveCarets(*this);
    MovePage(-1, 0);
}

void TZvMemo::acnScrollPageDown() {
    LeaveCarets(*this);
    MovePage(1, 0);
}

bool TZvMemo::acnGotoLine(int line, int column) {
    if (line < 1 || line > std::max(Lines().RealCount(), 1))
        return false;
    LeaveCarets(*this);
    const TZvPos p = Wrapped({std::max(column, 1) - 1, line - 1});
    SetTextCursor(std::min(p.X, RowLength(p.Y)), p.Y);
    return true;
}

// ---- Occurrences ------------------------------------------------------------------------

bool TZvMemo::FindOccurrence(bool forward) {
    LeaveCarets(*this);
    std::u16string word;
    TZvPos from = Caret(), to = Caret();
    if (HasSelection()) {
        OrderedSelection(from, to);
        if (from.Y != to.Y)
            return false;
        word = GetSelection();
    } else {
        int start = 0;
        word = WordAtCursorPos(start, false);
        from.X = start - 1;
        to.X = from.X + static_cast<int>(word.size());
    }
    if (word.empty())
        return false;
    const int rows = RowCount(), len = static_cast<int>(word.size());
    const auto npos = std::u16string_view::npos;
    // Each row once from the current one, and the current row again for the hits on the
    // far side of the text the search starts from.
    for (int step = 0; step <= rows; ++step) {
        const int row = forward ? (to.Y + step) % rows : ((from.Y - step) % rows + rows) % rows;
        const std::u16string_view text = RowText(row);
        std::size_t hit = npos;
        if (forward) {
            hit = text.find(word, step == 0 ? static_cast<std::size_t>(to.X) : 0);
            if (step == rows && hit != npos && static_cast<int>(hit) >= to.X)
                hit = npos;
        } else if (step > 0) {
            hit = text.rfind(word);
            if (step == rows && hit != npos && static_cast<int>(hit) + len <= from.X)
                hit = npos;
        } else if (from.X >= len) {
            hit = text.rfind(word, static_cast<std::size_t>(from.X - len));
        }
        if (hit != npos) {
            const int x = static_cast<int>(hit);
            SetSelection({x, row}, {x + len, row});
            return true;
        }
    }
    return false;
}

bool TZvMemo::acnNextOccurrence() {
    return FindOccurrence(true);
}

bool TZvMemo::acnPreviousOccurrence() {
    return FindOccurrence(false);
}

// ---- Marked rows ------------------------------------------------------------------------

bool TZvMemo::GoToMarkedRow(int dy, bool (*marked)(const TZvMemoStrings&, int)) {
    LeaveCarets(*this);
    const TZvMemoStrings& lines = Lines();
    for (int row = FCurY + dy; row >= 0 && row < lines.Count(); row += dy)
        if (!lines.GetHiddenLine(row) && marked(lines, row)) {
            SetTextCursor(0, row);
            return true;
        }
    return false;
}

bool TZvMemo::acnFindNextChangedLine() {
    return GoToMarkedRow(1, IsChangedRow);
}

bool TZvMemo::acnFindPreviousChangedLine() {
    return GoToMarkedRow(-1, IsChangedRow);
}

bool TZvMemo::acnFindNextNode() {
    return GoToMarkedRow(1, IsFoldHead);
}

bool TZvMemo::acnFindPreviousNode() {
    return GoToMarkedRow(-1, IsFoldHead);
}

} // namespace zv
