// The select commands of the command layer: selections to the ends of rows, lines, the page
// and the document, and of the caret's word, line, paragraph, sentence and function; and the
// deletes of a screen line's or a sentence's part.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoFolds.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvMemoUndo.h"

#include <algorithm>

namespace zv {

namespace {

bool IsBlankRow(std::u16string_view row) {
    return std::all_of(row.begin(), row.end(), [](char16_t c) { return c == u' ' || c == u'\t'; });
}

bool IsSentenceBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n';
}

bool IsSentenceEnd(char16_t c) {
    return c == u'.' || c == u'!' || c == u'?';
}

// The anchor a select extends from: the selection's fixed end, or the caret.
TZvPos Anchor(const TZvMemo& memo) {
    return memo.HasSelection() ? memo.SelStart() : memo.Caret();
}

bool ExtendTo(TZvMemo& memo, TZvPos target) {
    if (memo.FMultiEditMode)
        memo.ExitMultiEditMode();
    if (target == memo.Caret())
        return false;
    memo.SetSelection(Anchor(memo), target);
    return true;
}

// Selects rows first..last whole, with the line end behind the last one.
void SelectRows(TZvMemo& memo, int first, int last) {
    const bool more = last + 1 < memo.RowCount();
    memo.SetSelection({0, first}, more ? TZvPos{0, last + 1} : TZvPos{memo.RowLength(last), last});
}

int LineFirstRow(const TZvMemo& memo, int row) {
    while (row > 0 && row < memo.Lines().Count() && memo.Lines().IsLineWrapped(row))
        --row;
    return row;
}

int LineLastRow(const TZvMemo& memo, int row) {
    while (row + 1 < memo.Lines().Count() && memo.Lines().IsLineWrapped(row + 1))
        ++row;
    return row;
}

// The rows of a paragraph joined into one text, a line end between lines (none between a
// row and its wrapped continuation), with where each row starts in it.
struct TParagraphText {
    int FirstRow = 0;
    std::u16string Text;
    std::vector<int> RowStarts;

    TZvPos PosOf(int offset) const {
        const auto it = std::upper_bound(RowStarts.begin(), RowStarts.end(), offset);
        const int k = static_cast<int>(it - RowStarts.begin()) - 1;
        return {offset - RowStarts[static_cast<std::size_t>(k)], FirstRow + k};
    }
};

TParagraphText ReadParagraph(const TZvMemo& memo, int first, int last) {
    TParagraphText p;
    p.FirstRow = first;
    for (int row = first; row <= last; ++row) {
        if (row > first && !(row < memo.Lines().Count() && memo.Lines().IsLineWrapped(row)))
            p.Text.push_back(u'\n');
        p.RowStarts.push_back(static_cast<int>(p.Text.size()));
        p.Text.append(memo.RowText(row));
    }
    return p;
}

// The first sentence of `text` that ends behind `caret`: [start, end). False when none.
bool SentenceAround(std::u16string_view text, int caret, int& start, int& end) {
    const int n = static_cast<int>(text.size());
    const auto skipBlanks = [&](int i) {
        while (i < n && IsSentenceBlank(text[static_cast<std::size_t>(i)]))
            ++i;
        return i;
    };
    for (start = skipBlanks(0); start < n; start = skipBlanks(end)) {
        end = -1;
        for (int i = start; i < n && end < 0;) {
            if (!IsSentenceEnd(text[static_cast<std::size_t>(i)])) {
                ++i;
                continue;
            }
            int j = i;
            while (j < n && IsSentenceEnd(text[static_cast<std::size_t>(j)]))
                ++j;
            if (j == n || IsSentenceBlank(text[static_cast<std::size_t>(j)]))
                end = j;
            i = j;
        }
        if (end < 0) { // runs to the paragraph's end
            end = n;
            while (end > start && IsSentenceBlank(text[static_cast<std::size_t>(end - 1)]))
                --end;
        }
        if (end > caret)
            return true;
    }
    return false;
}

} // namespace

// ---- Plain moves with the selection -------------------------------------------------------

void TZvMemo::acnSelectUp() {
    MoveCursor(0, -1, ssShift);
}

void TZvMemo::acnSelectDown() {
    MoveCursor(0, 1, ssShift);
}

void TZvMemo::acnSelectLeft() {
    MoveCursor(-1, 0, ssShift);
}

void TZvMemo::acnSelectRight() {
    MoveCursor(1, 0, ssShift);
}

void TZvMemo::acnSelectHome() {
    GoHome(ssShift);
}

void TZvMemo::acnSelectEnd() {
    GoEnd(ssShift);
}

void TZvMemo::acnSelectPageUp() {
    MovePage(-1, ssShift);
}

void TZvMemo::acnSelectPageDown() {
    MovePage(1, ssShift);
}

void TZvMemo::acnSelectNextWord() {
    MoveCursor(1, 0, ssShift | ssCtrl);
}

void TZvMemo::acnSelectPreviousWord() {
    MoveCursor(-1, 0, ssShift | ssCtrl);
}

void TZvMemo::acnBlockSelectUp() {
    MoveCursor(0, -1, ssShift | ssAlt);
}

void TZvMemo::acnBlockSelectDown() {
    MoveCursor(0, 1, ssShift | ssAlt);
}

void TZvMemo::acnBlockSelectLeft() {
    MoveCursor(-1, 0, ssShift | ssAlt);
}

void TZvMemo::acnBlockSelectRight() {
    MoveCursor(1, 0, ssShift | ssAlt);
}

// Alt+Shift would make a block: the page's edge is reached by hand.
void TZvMemo::acnSelectToTopOfPage() {
    const int row = std::clamp(FTopLine, 0, RowCount() - 1);
    ExtendTo(*this, {std::min(FCurX, RowLength(row)), row});
}

void TZvMemo::acnSelectToBottomOfPage() {
    const int row = std::clamp(FTopLine + FVisibleRows - 1, 0, RowCount() - 1);
    ExtendTo(*this, {std::min(FCurX, RowLength(row)), row});
}

// ---- Row, line and document ends ----------------------------------------------------------

bool TZvMemo::acnSelectToBOL() {
    return ExtendTo(*this, {0, LineFirstRow(*this, FCurY)});
}

bool TZvMemo::acnSelectToEOL() {
    const int last = LineLastRow(*this, FCurY);
    return ExtendTo(*this, {RowLength(last), last});
}

bool TZvMemo::acnSelectToBeginOfScreenLine() {
    return ExtendTo(*this, {0, FCurY});
}

bool TZvMemo::acnSelectToEndOfScreenLine() {
    return ExtendTo(*this, {RowLength(FCurY), FCurY});
}

bool TZvMemo::acnSelectAllAboveCurrent() {
    ClearSelection();
    return ExtendTo(*this, {0, 0});
}

bool TZvMemo::acnSelectAllBelowCurrent() {
    ClearSelection();
    const int last = RowCount() - 1;
    return ExtendTo(*this, {RowLength(last), last});
}

// ---- Units around the caret ---------------------------------------------------------------

bool TZvMemo::AcnSelectCurrentWord() {
    int start = 0;
    return !WordAtCursorPos(start, true).empty();
}

bool TZvMemo::AcnSelectCurrentLine() {
    SelectRows(*this, LineFirstRow(*this, FCurY), LineLastRow(*this, FCurY));
    return true;
}

bool TZvMemo::acnSelectParagraph() {
    if (IsBlankRow(RowText(FCurY)))
        return false;
    int first = FCurY, last = FCurY;
    while (first > 0 && !IsBlankRow(RowText(first - 1)))
        --first;
    while (last + 1 < RowCount() && !IsBlankRow(RowText(last + 1)))
        ++last;
    SelectRows(*this, LineFirstRow(*this, first), LineLastRow(*this, last));
    return true;
}

// `part`: 0 the sentence, 1 from its start to the caret, 2 from the caret to its end.
bool TZvMemo::SentenceSpan(int part, TZvPos& from, TZvPos& to) {
    const TZvPos caret = ClipToText(Caret());
    int row = caret.Y, caretOffset = -1; // -1: the caret lies in an earlier paragraph
    for (;;) {
        while (row < RowCount() && IsBlankRow(RowText(row)))
            ++row;
        if (row >= RowCount())
            return false;
        int first = row, last = row;
        while (first > 0 && !IsBlankRow(RowText(first - 1)))
            --first;
        while (last + 1 < RowCount() && !IsBlankRow(RowText(last + 1)))
            ++last;
        const TParagraphText p = ReadParagraph(*this, first, last);
        if (caret.Y >= first && caret.Y <= last)
            caretOffset = p.RowStarts[static_cast<std::size_t>(caret.Y - first)] + caret.X;
        int start = 0, end = 0;
        if (SentenceAround(p.Text, caretOffset, start, end)) {
            from = part == 2 ? caret : p.PosOf(start);
            to = part == 1 ? caret : p.PosOf(end);
            return part != 1 || start < caretOffset;
        }
        caretOffset = -1;
        row = last + 1;
    }
}

bool TZvMemo::SelectSpan(bool found, TZvPos anchor, TZvPos target) {
    if (!found)
        return false;
    if (FMultiEditMode)
        ExitMultiEditMode();
    SetSelection(anchor, target);
    return true;
}

bool TZvMemo::DeleteSpan(bool found, TZvPos from, TZvPos to) {
    if (!found || !MayChangeText(*this) || Unwrapped(from) == Unwrapped(to))
        return false;
    if (FMultiEditMode)
        ExitMultiEditMode();
    Change(from, to, TEditText(), std::make_unique<TDeleteBufUndo>(), Caret());
    return true;
}

bool TZvMemo::acnSelectSentence() {
    TZvPos from, to;
    const bool found = SentenceSpan(0, from, to);
    return SelectSpan(found, from, to);
}

bool TZvMemo::acnSelectSentenceHome() {
    TZvPos from, to;
    const bool found = SentenceSpan(1, from, to);
    return SelectSpan(found, to, from); // the caret goes back to the sentence's start
}

bool TZvMemo::acnSelectSentenceEnd() {
    TZvPos from, to;
    const bool found = SentenceSpan(2, from, to);
    return SelectSpan(found, from, to);
}

bool TZvMemo::acnSelectCurrentProcedure() {
    const TZvMemoStrings& lines = Lines();
    if (FCurY >= lines.Count())
        return false;
    int outermost = -1;
    for (int head = FoldHeadAround(lines, FCurY); head >= 0;
         head = head > 0 ? FoldHeadAround(lines, head - 1) : -1) {
        const int end = GetNodeEndFromTopLine(lines, head);
        if (end < FCurY)
            continue; // a fold that ends above the caret's row
        const TCEListItemType item = lines.GetLineAttribute(head).Extra().ceListItem;
        if (item == ceFunction || item == ceConstructor || item == ceDestructor) {
            SelectRows(*this, head, end);
            return true;
        }
        outermost = head;
    }
    if (outermost < 0)
        return false;
    SelectRows(*this, outermost, GetNodeEndFromTopLine(lines, outermost));
    return true;
}

// ---- Deletes ------------------------------------------------------------------------------

bool TZvMemo::acnDeleteToBeginOfScreenLine() {
    const TZvPos caret = ClipToText(Caret());
    return DeleteSpan(true, {0, caret.Y}, caret);
}

bool TZvMemo::acnDeleteToEndOfScreenLine() {
    const TZvPos caret = ClipToText(Caret());
    return DeleteSpan(true, caret, {RowLength(caret.Y), caret.Y});
}

bool TZvMemo::acnDeleteSentence() {
    TZvPos from, to;
    const bool found = SentenceSpan(0, from, to);
    return DeleteSpan(found, from, to);
}

bool TZvMemo::acnDeleteToSentenceHome() {
    TZvPos from, to;
    const bool found = SentenceSpan(1, from, to);
    return DeleteSpan(found, from, to);
}

bool TZvMemo::acnDeleteToSentenceEnd() {
    TZvPos from, to;
    const bool found = SentenceSpan(2, from, to);
    return DeleteSpan(found, from, to);
}

} // namespace zv
