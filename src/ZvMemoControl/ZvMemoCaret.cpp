// Caret and selection: setting and moving the caret (virtual space, notepad-style caret,
// word, row-end and view moves), the selection, and the two column systems.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/WrapRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <cmath>

namespace zv {

// ---- Selection ------------------------------------------------------------------------

bool TZvCustomMemo::HasSelection() const {
    if (FSelStartX == FSelEndX && FSelStartY == FSelEndY)
        return false;
    // The end of a row and the start of its continuation are one place in the text.
    if (std::abs(FSelStartY - FSelEndY) == 1 && RowsAreCut(DocState()) && !FColumnMode)
        return Unwrapped(SelStart()) != Unwrapped(SelEnd());
    return true;
}

void TZvCustomMemo::OrderedSelection(TZvPos& start, TZvPos& end) const {
    start = SelStart();
    end = SelEnd();
    if (end < start)
        std::swap(start, end);
}

void TZvCustomMemo::SetSelection(TZvPos start, TZvPos end) {
    start.Y = std::clamp(start.Y, 0, RowCount() - 1);
    end.Y = std::clamp(end.Y, 0, RowCount() - 1);
    start.X = std::max(start.X, 0);
    end.X = std::max(end.X, 0);
    RevealRow(start.Y);
    RevealRow(end.Y);
    FSelStartX = start.X;
    FSelStartY = start.Y;
    FSelEndX = FPrevSelX = FCurX = end.X;
    FSelEndY = FPrevSelY = FCurY = end.Y;
    NotifySelection();
    NotifyCursor();
}

void TZvCustomMemo::ClearSelection() {
    const bool had = HasSelection();
    FSelStartX = FSelEndX = FPrevSelX = FCurX;
    FSelStartY = FSelEndY = FPrevSelY = FCurY;
    if (had)
        NotifySelection();
}

void TZvCustomMemo::SelectAll() {
    const int last = RowCount() - 1;
    SetSelection({0, 0}, {RowLength(last), last});
}

std::u16string TZvCustomMemo::GetSelection() const {
    TZvPos s, e;
    OrderedSelection(s, e);
    s = ClipToText(s);
    e = ClipToText(e);
    if (s == e)
        return {};
    return FLines->GetText(s.Y, e.Y, s.X + 1, e.X, false, false, false);
}

std::int64_t TZvCustomMemo::GetSelectionLength() const {
    TZvPos s, e;
    OrderedSelection(s, e);
    s = ClipToText(s);
    e = ClipToText(e);
    return FLines->GetCharPosFromXY(e.X, e.Y) - FLines->GetCharPosFromXY(s.X, s.Y);
}

// ---- Setting the caret ----------------------------------------------------------------

void TZvCustomMemo::SetTextCursor(int x, int y, bool keepSelection) {
    y = std::clamp(y, 0, RowCount() - 1);
    x = std::max(x, 0);
    RevealRow(y);
    if (FNotepadCursor || RowsAreCut(DocState()))
        x = std::min(x, RowLength(y));
    FCurX = x;
    FCurY = y;
    FOldCurX = static_cast<std::int32_t>(std::lround(TextLength(y, x)));
    if (keepSelection) {
        FSelEndX = FPrevSelX = x;
        FSelEndY = FPrevSelY = y;
        NotifySelection();
    } else {
        ClearSelection();
    }
    NotifyCursor();
}

void TZvCustomMemo::SetCaretKeepSelection(TZvPos p) {
    if (FLines->GetHiddenLine(p.Y)) { // a move never stops inside a closed fold
        p.Y = PrevVisibleRow(p.Y);
        p.X = std::min(p.X, RowLength(p.Y));
    }
    FCurX = p.X;
    FCurY = p.Y;
}

// After a move: extend the selection to the caret, or drop it.
void TZvCustomMemo::AfterCaretMove(bool extend, TZvPos oldCaret) {
    if (extend) {
        const bool continuing =
            HasSelection() && FPrevSelX == oldCaret.X && FPrevSelY == oldCaret.Y;
        if (!continuing) {
            FSelStartX = oldCaret.X;
            FSelStartY = oldCaret.Y;
        }
        FSelEndX = FPrevSelX = FCurX;
        FSelEndY = FPrevSelY = FCurY;
        NotifySelection();
    } else {
        ClearSelection();
    }
    NotifyCursor();
}

int TZvCustomMemo::PrevVisibleRow(int row) const {
    for (int r = row - 1; r >= 0; --r)
        if (!FLines->GetHiddenLine(r))
            return r;
    return row;
}

int TZvCustomMemo::NextVisibleRow(int row) const {
    for (int r = row + 1; r < RowCount(); ++r)
        if (!FLines->GetHiddenLine(r))
            return r;
    return row;
}

// ---- Moving ---------------------------------------------------------------------------

void TZvCustomMemo::MoveCursor(int dx, int dy, unsigned shift) {
    ColumnMoveHook(shift);
    const TZvPos old = Caret();
    const bool extend = (shift & ssShift) || FSelectionMode;
    if (!extend && FSelectionMoveCaret && HasSelection() && dx != 0 && dy == 0 &&
        !(shift & (ssCtrl | ssAlt))) {
        TZvPos s, e;
        OrderedSelection(s, e);
        SetCaretKeepSelection(dx < 0 ? s : e);
        AfterCaretMove(false, old);
        FOldCurX = static_cast<std::int32_t>(std::lround(TextLength(FCurY, FCurX)));
        return;
    }
    TZvPos p = old;
    if (shift & ssCtrl) {
        for (int i = 0; i < std::abs(dx); ++i)
            p = WordStep(p, dx);
        if (dy != 0) {
            FTopLine = std::clamp(FTopLine + dy, 0, std::max(RowCount() - FVisibleRows, 0));
            p.Y = std::clamp(p.Y, FTopLine, std::max(FTopLine + FVisibleRows - 1, FTopLine));
            p.Y = std::min(p.Y, RowCount() - 1);
        }
    } else if (shift & ssAlt) {
        if (dx != 0)
            p.X = dx > 0 ? RowLength(p.Y) : 0;
        if (dy != 0)
            p.Y = std::min(dy > 0 ? FTopLine + FVisibleRows - 1 : FTopLine, RowCount() - 1);
    } else {
        const bool lineBound = FNotepadCursor || RowsAreCut(DocState());
        for (int i = 0; i < std::abs(dx); ++i) {
            const auto row = RowText(p.Y);
            if (dx < 0) {
                if (p.X > 0)
                    p.X = Breaks().PrevCluster(row, p.X);
                else if (lineBound && PrevVisibleRow(p.Y) != p.Y) {
                    p.Y = PrevVisibleRow(p.Y);
                    p.X = RowLength(p.Y);
                }
            } else if (lineBound && p.X >= static_cast<int>(row.size())) {
                if (NextVisibleRow(p.Y) != p.Y) {
                    p.Y = NextVisibleRow(p.Y);
                    p.X = 0;
                    FLeftCol = 0;
                }
            } else {
                p.X = Breaks().NextCluster(row, p.X);
            }
        }
        for (int i = 0; i < std::abs(dy); ++i)
            p.Y = dy > 0 ? NextVisibleRow(p.Y) : PrevVisibleRow(p.Y);
        if (dy != 0 && lineBound)
            p.X = ColumnAtPixel(p.Y, FOldCurX);
    }
    SetCaretKeepSelection(p);
    AfterCaretMove(extend, old);
    if (dx != 0)
        FOldCurX = static_cast<std::int32_t>(std::lround(TextLength(FCurY, FCurX)));
}

void TZvCustomMemo::GoHome(unsigned shift) {
    const TZvPos old = Caret();
    TZvPos p = old;
    if (shift & ssCtrl) {
        p = {0, 0};
    } else {
        // At the start of a continuation row, Home goes up to the row above.
        if (RowsAreCut(DocState()) && p.X == 0 && p.Y > 0 && FLines->IsLineWrapped(p.Y))
            p = {RowLength(p.Y - 1), p.Y - 1};
        const auto row = RowText(p.Y);
        int first = 0;
        while (first < static_cast<int>(row.size()) && CharIsWhiteSpace(row[first], true))
            ++first;
        if (first == static_cast<int>(row.size()))
            first = 0; // a row of blanks only: column 0
        if (FHomeKeyToLineStart)
            p.X = p.X != first ? first : 0;
        else
            p.X = p.X == 0 ? first : 0;
    }
    if (p.X == 0)
        FLeftCol = 0;
    SetCaretKeepSelection(p);
    AfterCaretMove((shift & ssShift) || FSelectionMode, old);
    FOldCurX = static_cast<std::int32_t>(std::lround(TextLength(FCurY, FCurX)));
}

void TZvCustomMemo::GoEnd(unsigned shift) {
    const TZvPos old = Caret();
    TZvPos p = old;
    if (shift & ssCtrl)
        p.Y = RowCount() - 1;
    else if (RowsAreCut(DocState()) && p.X >= RowLength(p.Y)) // at a row's end: the line's
        while (FLines->IsLineWrapped(p.Y + 1))
            ++p.Y;
    p.X = RowLength(p.Y);
    SetCaretKeepSelection(p);
    AfterCaretMove((shift & ssShift) || FSelectionMode, old);
    FOldCurX = static_cast<std::int32_t>(std::lround(TextLength(FCurY, FCurX)));
}

void TZvCustomMemo::MovePage(int direction, unsigned shift) {
    const int step = std::max(FVisibleRows - 1, 1);
    FTopLine = std::clamp(FTopLine + direction * step, 0, std::max(RowCount() - 1, 0));
    MoveCursor(0, direction * step, shift & ~static_cast<unsigned>(ssCtrl | ssAlt));
}

// ---- Columns --------------------------------------------------------------------------

int TZvCustomMemo::FromRealCursorPos(int row, int col) const {
    if (FIsClosing || col <= 0)
        return col;
    const auto s = RowText(row);
    const int tab = std::max(DocState().FTabSize, 1);
    int visual = 0;
    for (int i = 0; i < col; ++i)
        visual =
            i < static_cast<int>(s.size()) && s[i] == u'\t' ? (visual / tab + 1) * tab : visual + 1;
    return visual;
}

int TZvCustomMemo::ToRealCursorPos(int row, int visualCol) const {
    if (visualCol <= 0)
        return visualCol;
    const auto s = RowText(row);
    const int tab = std::max(DocState().FTabSize, 1);
    int visual = 0, i = 0;
    while (visual < visualCol) {
        if (i < static_cast<int>(s.size()) && s[i] == u'\t') {
            const int stop = (visual / tab + 1) * tab;
            if (stop > visualCol)
                return visualCol < stop - tab / 2.0 ? i : i + 1;
            visual = stop;
        } else {
            ++visual;
        }
        ++i;
    }
    return i;
}

namespace {

// The painted form of units [from, to) of a row starting at visual column `visual`.
std::u16string Painted(std::u16string_view s, int from, int to, int& visual, int tabSize) {
    std::u16string out;
    for (int i = from; i < to; ++i) {
        if (s[i] == u'\t') {
            const int stop = (visual / tabSize + 1) * tabSize;
            out.append(static_cast<std::size_t>(stop - visual), u' ');
            visual = stop;
        } else {
            out.push_back(s[i]);
            ++visual;
        }
    }
    return out;
}

} // namespace

double TZvCustomMemo::TextLength(int row, int col) const {
    const auto s = RowText(row);
    const int inText = std::min(col, static_cast<int>(s.size()));
    int visual = 0;
    const std::u16string painted =
        Painted(s, 0, std::max(inText, 0), visual, std::max(DocState().FTabSize, 1));
    double px = FMargin + ContinuationIndent(Lines(), row) * Measure().SpaceWidth() +
                Measure().TextWidth(painted);
    if (col > inText)
        px += (col - inText) * Measure().SpaceWidth();
    return px;
}

int TZvCustomMemo::ColumnAtPixel(int row, double px) const {
    const auto s = RowText(row);
    const int tab = std::max(DocState().FTabSize, 1);
    double left = FMargin + ContinuationIndent(Lines(), row) * Measure().SpaceWidth();
    int visual = 0, col = 0;
    while (col < static_cast<int>(s.size())) {
        const int next = std::min(Breaks().NextCluster(s, col), static_cast<int>(s.size()));
        const double width = Measure().TextWidth(Painted(s, col, next, visual, tab));
        if (px < left + width / 2)
            return col;
        left += width;
        col = next;
    }
    const double space = Measure().SpaceWidth();
    if (px <= left || space <= 0 || FNotepadCursor || RowsAreCut(DocState()))
        return col;
    return col + static_cast<int>(std::floor((px - left) / space + 0.5));
}

} // namespace zv
