// Sync edit: one word edited at all its occurrences inside a block of rows at once. Each
// key becomes an edit at a caret list made of the occurrences, so it is one undo step.
#include "ZvMemoControl/ZvMemo.h"

#include <unicode/uchar.h>

namespace zv {
namespace {

// The sync word test: stricter than the delimiters of word moves.
bool IsSyncWordChar(char16_t c) {
    return c == u'_' || u_isalnum(c);
}

} // namespace

void TZvCustomMemo::acnSyncEdit() {
    if (FSyncEditMode) {
        FSyncEditMode = false;
        FSyncData = {};
        NotifySelection();
        return;
    }
    if (DocState().FWordWrap || FColumnMode || FMultiEditMode)
        return;
    TZvPos s, e;
    OrderedSelection(s, e);
    if (!HasSelection() || s.Y == e.Y) { // the whole text
        s = {0, 0};
        e = {RowLength(RowCount() - 1), RowCount() - 1};
    }
    FSyncData = {};
    FSyncData.xStart = s.X;
    FSyncData.yStart = s.Y;
    FSyncData.xEnd = ClipToText(e).X;
    FSyncData.yEnd = e.Y;
    FSyncEditMode = true;
    SetTextCursor(FCurX, FCurY); // the block is kept; the selection goes
}

bool TZvCustomMemo::SyncActive() const {
    return FSyncEditMode && !FCaretEditBusy && !FReadOnly;
}

std::vector<TZvPos> TZvCustomMemo::SyncOccurrences() {
    TSyncData& d = FSyncData;
    const TZvPos caret = Caret();
    const bool inBlock = TZvPos{d.xStart, d.yStart} <= caret && caret <= TZvPos{d.xEnd, d.yEnd};
    d.oldWordAtCaret = d.WordAtCaret;
    d.WordAtCaret.clear();
    if (!FSyncEditMode || !inBlock || FCurY >= RowCount())
        return {};
    const auto row = RowText(FCurY);
    int from = std::min(FCurX, static_cast<int>(row.size())), to = from;
    d.SelAtCaret = HasSelection() && FSelStartY == FSelEndY;
    if (d.SelAtCaret) {
        from = std::min(FSelStartX, FSelEndX);
        to = std::max(FSelStartX, FSelEndX);
    } else {
        while (from > 0 && IsSyncWordChar(row[from - 1]))
            --from;
        while (to < static_cast<int>(row.size()) && IsSyncWordChar(row[to]))
            ++to;
    }
    if (from >= to || to > static_cast<int>(row.size()))
        return {};
    d.WordAtCaret.assign(
        row.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
    d.WordStartCurX = from + 1;
    d.WordStartCurY = FCurY;
    std::vector<TZvPos> hits;
    const std::u16string& word = d.WordAtCaret;
    for (int y = d.yStart; y <= d.yEnd && y < RowCount(); ++y) {
        const auto text = RowText(y);
        const std::size_t first = y == d.yStart ? static_cast<std::size_t>(d.xStart) : 0;
        const std::size_t end =
            y == d.yEnd ? std::min<std::size_t>(d.xEnd, text.size()) : text.size();
        for (std::size_t at = text.find(word, first);
             at != std::u16string_view::npos && at + word.size() <= end;
             at = text.find(word, at + 1)) {
            const bool bounded =
                (at == 0 || !IsSyncWordChar(text[at - 1])) &&
                (at + word.size() == text.size() || !IsSyncWordChar(text[at + word.size()]));
            if (d.SelAtCaret || bounded)
                hits.push_back({static_cast<int>(at), y});
        }
    }
    return hits;
}

bool TZvCustomMemo::SyncEdit(TCaretEdit kind, char16_t c) {
    const std::vector<TZvPos> hits = SyncOccurrences();
    const TSyncData& d = FSyncData;
    if (hits.size() < 2)
        return false;
    // The caret's and the selection's place inside the word, the same at every occurrence.
    const int start = d.WordStartCurX - 1, length = static_cast<int>(d.WordAtCaret.size());
    const int offset = FCurX - start;
    if ((kind == TCaretEdit::Backspace && offset == 0 && !d.SelAtCaret) ||
        (kind == TCaretEdit::Delete && offset == length && !d.SelAtCaret))
        return false; // the key reaches out of the word: a plain edit
    const int anchor =
        d.SelAtCaret ? (FSelStartX == FCurX ? FSelEndX : FSelStartX) - start : offset;
    std::vector<TMultiCursorPos> list;
    list.reserve(hits.size() + 1);
    std::size_t own = 0;
    for (const TZvPos& hit : hits) {
        if (hit.Y == FCurY && hit.X == start)
            own = list.size();
        TMultiCursorPos entry;
        entry.aCurX = hit.X + offset;
        entry.aCurY = entry.aSelStartY = entry.aSelEndY = hit.Y;
        entry.aSelStartX = hit.X + anchor;
        entry.aSelEndX = entry.aCurX;
        entry.aSelectMode = d.SelAtCaret;
        list.push_back(entry);
    }
    // The block's end rides along as a last entry that is not edited.
    TMultiCursorPos blockEnd;
    blockEnd.aCurX = blockEnd.aSelStartX = blockEnd.aSelEndX = d.xEnd;
    blockEnd.aCurY = blockEnd.aSelStartY = blockEnd.aSelEndY = d.yEnd;
    list.push_back(blockEnd);
    TMultiEditUndo* record = nullptr;
    BeginCaretEdit(record);
    const std::size_t edits = hits.size();
    EditEach(list, [&](std::size_t i) {
        if (i >= edits)
            return;
        // A sync edit types or deletes; anything else deletes forward.
        const bool typed = kind == TCaretEdit::Char || kind == TCaretEdit::Backspace;
        EditAtCaret(typed ? kind : TCaretEdit::Delete, c);
    });
    FSyncData.xEnd = list.back().aCurX;
    FSyncData.yEnd = list.back().aCurY;
    SetTextCursor(list[own].aCurX, list[own].aCurY);
    EndCaretEdit(record);
    return true;
}

} // namespace zv
