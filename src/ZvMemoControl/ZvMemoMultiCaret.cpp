// The caret list of multi-caret editing: adding and removing carets (a click, the rows above
// and below, the next occurrence of a word) and leaving the mode.
#include "ZvMemoControl/ZvMemo.h"

#include <algorithm>
#include <cmath>

namespace zv {
namespace {

bool Overlap(const TMultiCursorPos& a, const TMultiCursorPos& b) {
    return a.First() <= b.Last() && b.First() <= a.Last();
}

} // namespace

void TZvCustomMemo::AddMultiCursorPos(int x1, int y1, int x2, int y2, int x, int y) {
    TMultiCursorPos entry;
    entry.aCurX = x;
    entry.aCurY = y;
    entry.aOldCurXPos = static_cast<std::int32_t>(std::lround(TextLength(y, x)));
    entry.aSelStartX = x1;
    entry.aSelStartY = y1;
    entry.aSelEndX = x2;
    entry.aSelEndY = y2;
    entry.aSelectMode = x1 != x2 || y1 != y2;
    auto& list = FMultiCursorList;
    for (auto it = list.begin(); it != list.end(); ++it) {
        if (entry.aSelectMode && Overlap(*it, entry)) {
            *it = entry;
            return;
        }
        if (!entry.aSelectMode && !it->aSelectMode && it->Caret() == entry.Caret()) {
            list.erase(it); // a second click at a caret takes it away
            FMultiEditMode = !list.empty();
            return;
        }
    }
    auto at = std::find_if(list.begin(), list.end(), [&](const TMultiCursorPos& other) {
        return other.First() > entry.First();
    });
    const bool append = at == list.end();
    list.insert(at, entry);
    FMultiEditMode = true;
    if (append)
        NotifySelection();
}

void TZvCustomMemo::AddSelectionAsMultiSelection() {
    if (!FAllowMultiEditMode || DocState().FWordWrap) {
        NotifySelection();
        return;
    }
    if (HasSelection()) {
        const TZvPos s = ClipToText(SelStart()), e = ClipToText(SelEnd());
        AddMultiCursorPos(s.X, s.Y, e.X, e.Y, e.X, e.Y);
    } else {
        AddMultiCursorPos(FCurX, FCurY, FCurX, FCurY, FCurX, FCurY);
    }
    FSelStartX = FSelEndX = FPrevSelX = FCurX;
    FSelStartY = FSelEndY = FPrevSelY = FCurY;
    FMultiEditMode = !FMultiCursorList.empty();
    NotifySelection();
}

void TZvCustomMemo::ExitMultiEditMode() {
    FMultiCursorList.clear();
    FMultiEditMode = false;
    NotifySelection();
}

void TZvCustomMemo::ToggleCaretAt(TZvPos p) {
    if (!FMultiEditMode)
        AddSelectionAsMultiSelection();
    AddMultiCursorPos(p.X, p.Y, p.X, p.Y, p.X, p.Y);
    // This view's own caret stands at the newest caret, or at the last one left.
    const bool removed = std::none_of(FMultiCursorList.begin(), FMultiCursorList.end(),
                                      [&](const TMultiCursorPos& e) { return e.Caret() == p; });
    const TZvPos own = removed && FMultiEditMode ? FMultiCursorList.back().Caret() : p;
    SetTextCursor(own.X, own.Y);
    if (FMultiCursorList.size() <= 1)
        ExitMultiEditMode();
}

bool TZvCustomMemo::AddCaretVertically(int dy) {
    if (DocState().FWordWrap || !FAllowMultiEditMode)
        return false;
    if (!FMultiEditMode)
        AddSelectionAsMultiSelection();
    const TMultiCursorPos& edge = dy < 0 ? FMultiCursorList.front() : FMultiCursorList.back();
    const int row = edge.aCurY + (dy < 0 ? -1 : 1);
    if (row < 0 || row >= RowCount())
        return false;
    const int x = ToRealCursorPos(row, FromRealCursorPos(edge.aCurY, edge.aCurX));
    AddMultiCursorPos(x, row, x, row, x, row);
    SetTextCursor(x, row);
    return true;
}

// The next place of `word` at or after `from`, wrapping once round the document, that no
// caret holds yet.
bool TZvCustomMemo::AddFoundWord(bool skip) {
    if (!FAllowMultiEditMode || DocState().FWordWrap)
        return false;
    if (HasSelection() && SelStart().Y == SelEnd().Y) {
        FHighlightSelectionWord = GetSelection();
        AddSelectionAsMultiSelection();
    } else if (!FMultiEditMode) {
        int start = 0;
        FHighlightSelectionWord = WordAtCursorPos(start, true);
        if (FHighlightSelectionWord.empty())
            return false;
        AddSelectionAsMultiSelection(); // the first press takes the word at the caret
        return true;
    }
    const std::u16string& word = FHighlightSelectionWord;
    if (word.empty() || FMultiCursorList.empty())
        return false;
    if (skip) {
        const TZvPos own = Caret();
        const auto it = std::find_if(FMultiCursorList.begin(), FMultiCursorList.end(),
                                     [&](const TMultiCursorPos& e) { return e.Caret() == own; });
        if (it != FMultiCursorList.end() && FMultiCursorList.size() > 1)
            FMultiCursorList.erase(it);
    }
    const int rows = RowCount();
    const TZvPos from = Caret();
    for (int step = 0; step <= rows; ++step) {
        const int row = (from.Y + step) % rows;
        const auto text = RowText(row);
        std::size_t at = step == 0 ? static_cast<std::size_t>(std::max(from.X, 0)) : 0;
        for (;; ++at) {
            at = text.find(word, at);
            if (at == std::u16string_view::npos || (step == rows && static_cast<int>(at) >= from.X))
                break;
            TMultiCursorPos hit;
            hit.aSelStartY = hit.aSelEndY = hit.aCurY = row;
            hit.aSelStartX = static_cast<int>(at);
            hit.aSelEndX = hit.aCurX = static_cast<int>(at + word.size());
            hit.aSelectMode = true;
            if (std::any_of(FMultiCursorList.begin(), FMultiCursorList.end(),
                            [&](const TMultiCursorPos& e) { return Overlap(e, hit); }))
                continue;
            AddMultiCursorPos(hit.aSelStartX, row, hit.aSelEndX, row, hit.aCurX, row);
            FCurX = FSelStartX = FSelEndX = FPrevSelX = hit.aCurX;
            FCurY = FSelStartY = FSelEndY = FPrevSelY = row;
            NotifyCursor();
            return true;
        }
    }
    return false;
}

bool TZvCustomMemo::acnMultiSelectionAddWord() {
    return AddFoundWord(false);
}

bool TZvCustomMemo::acnMultiSelectionSkipWord() {
    return AddFoundWord(true);
}

bool TZvCustomMemo::acnMultiSelectionUndoAddWord() {
    if (!FMultiEditMode)
        return false;
    const TZvPos own = Caret();
    const auto it = std::find_if(FMultiCursorList.begin(), FMultiCursorList.end(),
                                 [&](const TMultiCursorPos& e) { return e.Caret() == own; });
    if (it == FMultiCursorList.end())
        return false;
    FMultiCursorList.erase(it);
    if (FMultiCursorList.size() <= 1) {
        const TMultiCursorPos last =
            FMultiCursorList.empty() ? TMultiCursorPos{} : FMultiCursorList.back();
        ExitMultiEditMode();
        if (last.aSelectMode)
            SetSelection({last.aSelStartX, last.aSelStartY}, last.Caret());
        return true;
    }
    const TMultiCursorPos& last = FMultiCursorList.back();
    FCurX = FSelStartX = FSelEndX = FPrevSelX = last.aCurX;
    FCurY = FSelStartY = FSelEndY = FPrevSelY = last.aCurY;
    NotifySelection();
    return true;
}

} // namespace zv
