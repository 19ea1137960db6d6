// Reading whole logical lines for a line command and writing the command's result back as
// one change of the control.
#include "ZvMemoControl/ZvMemoLineBlock.h"

#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvMemoUndo.h"

#include <algorithm>
#include <cstring>

namespace zv {

namespace {

constexpr std::uint32_t kArenaUnits = 1u << 20;

bool SameText(std::u16string_view a, std::u16string_view b) {
    return a.size() == b.size() && (a.data() == b.data() || a == b);
}

} // namespace

TRowArena::~TRowArena() {
    TTextChunk::Release(FChunk);
}

TRowText TRowArena::Add(std::u16string_view text) {
    const auto n = static_cast<std::uint32_t>(text.size());
    if (n == 0)
        return TRowText();
    if (!FChunk || FChunk->Capacity - FUsed < n) {
        TTextChunk::Release(FChunk);
        FChunk = TTextChunk::Create(std::max(n, kArenaUnits));
        FChunk->Refs.store(1, std::memory_order_relaxed);
        FUsed = 0;
    }
    std::memcpy(FChunk->Data() + FUsed, text.data(), n * sizeof(char16_t));
    TRowText row(FChunk, FUsed, n);
    FUsed += n;
    return row;
}

void TLineList::Add(TRowText line, TLineEnd endBefore) {
    if (!Lines.empty())
        Ends.push_back(endBefore);
    Lines.push_back(std::move(line));
}

void CommandRows(const TZvMemo& memo, bool caretLineOnly, int& first, int& last) {
    const int rows = memo.RowCount();
    if (memo.HasSelection()) {
        TZvPos s, e;
        memo.OrderedSelection(s, e);
        first = std::clamp(s.Y, 0, rows - 1);
        last = std::clamp(e.Y > s.Y && e.X == 0 ? e.Y - 1 : e.Y, first, rows - 1);
    } else if (caretLineOnly) {
        first = last = std::clamp(memo.Caret().Y, 0, rows - 1);
    } else {
        first = 0;
        last = rows - 1;
        // The empty row behind a final line end is where the text ends, not a line.
        if (last > 0 && memo.RowLength(last) == 0 && !memo.Lines().IsLineWrapped(last))
            --last;
    }
    const TZvMemoStrings& lines = memo.Lines();
    if (lines.Count() == 0)
        return;
    first = lines.GetWrappedMainLineNumber(first);
    const int main = lines.GetWrappedMainLineNumber(last);
    last = main + std::max(lines.GetWrappedLineCount(main), 1) - 1;
}

TLineBlock ReadLines(const TZvMemo& memo, int first, int last) {
    TLineBlock block;
    block.FirstRow = first;
    const TZvMemoStrings& lines = memo.Lines();
    if (lines.Count() == 0) {
        block.Old.Add(TRowText(), leDocument);
        block.LineRows = {0, 1};
        return block;
    }
    const TEditText text = ExtractText(lines, {0, first}, {lines.GetLineLength(last), last});
    block.Old.Lines.reserve(text.Rows.size());
    block.Old.Ends.reserve(text.Ends.size());
    block.LineRows.reserve(text.Rows.size() + 1);
    TRowArena arena;
    std::u16string joined;
    for (std::size_t i = 0; i < text.Rows.size();) {
        std::size_t j = i + 1; // rows i..j-1 form one line
        while (j < text.Rows.size() && text.Ends[j - 1] == leWrap)
            ++j;
        const TLineEnd before = i > 0 ? text.Ends[i - 1] : leDocument;
        block.LineRows.push_back(first + static_cast<int>(i));
        if (j == i + 1) {
            block.Old.Add(text.Rows[i], before);
        } else {
            joined.clear();
            for (std::size_t k = i; k < j; ++k)
                joined.append(text.Rows[k].View());
            block.Old.Add(arena.Add(joined), before);
        }
        i = j;
    }
    block.LineRows.push_back(last + 1);
    return block;
}

namespace {

// Lines [from, to) of `list` as an edit text, with the ends between them; none: empty.
TEditText Join(const TLineList& list, int from, int to) {
    TEditText text;
    if (from >= to)
        return text; // one empty row
    text.Rows.clear();
    text.Rows.reserve(static_cast<std::size_t>(to - from));
    text.Ends.reserve(static_cast<std::size_t>(std::max(to - from - 1, 0)));
    for (int i = from; i < to; ++i) {
        if (i > from)
            text.Ends.push_back(list.Ends[static_cast<std::size_t>(i - 1)]);
        text.Rows.push_back(list.Lines[static_cast<std::size_t>(i)]);
    }
    return text;
}

} // namespace

int WriteLines(TZvMemo& memo, const TLineBlock& block, const TLineList& result,
               std::unique_ptr<TUndo> record) {
    const TLineList& old = block.Old;
    const int oldN = old.Count(), newN = result.Count();
    const auto endAt = [](const TLineList& l, int i) {
        return l.Ends[static_cast<std::size_t>(i)];
    };
    // Equal lines at the head (with the end behind them, where both have one) and at the
    // tail (with the end before them) stay out of the change.
    int head = 0;
    while (head < oldN && head < newN && SameText(old.Text(head), result.Text(head)) &&
           (head + 1 >= oldN || head + 1 >= newN || endAt(old, head) == endAt(result, head)))
        ++head;
    if (head == oldN && head == newN)
        return -1;
    int tail = 0;
    while (tail < oldN - head && tail < newN - head &&
           SameText(old.Text(oldN - 1 - tail), result.Text(newN - 1 - tail)) &&
           (oldN - 2 - tail < 0 || newN - 2 - tail < 0 ||
            endAt(old, oldN - 2 - tail) == endAt(result, newN - 2 - tail)))
        ++tail;
    const int oldEnd = oldN - tail, newEnd = newN - tail;
    const TZvMemoStrings& lines = memo.Lines();
    const auto start = [&](int line) {
        return TZvPos{0, block.LineRows[static_cast<std::size_t>(line)]};
    };
    const auto end = [&](int line) {
        const int row = block.LineRows[static_cast<std::size_t>(line) + 1] - 1;
        return TZvPos{lines.GetLineLength(row), row};
    };
    TZvPos from, to;
    TEditText text = Join(result, head, newEnd);
    if (head < oldEnd && head < newEnd) {
        from = start(head);
        to = end(oldEnd - 1);
    } else if (head < oldEnd) { // lines removed: one line end goes with them
        if (oldEnd < oldN) {
            from = start(head);
            to = start(oldEnd);
        } else if (head > 0) {
            from = end(head - 1);
            to = end(oldEnd - 1);
        } else if (block.LineRows.back() < memo.RowCount()) {
            from = start(0);
            to = {0, block.LineRows.back()};
        } else if (block.FirstRow > 0) {
            from = {lines.GetLineLength(block.FirstRow - 1), block.FirstRow - 1};
            to = end(oldEnd - 1);
        } else {
            from = start(0);
            to = end(oldEnd - 1);
        }
    } else { // lines added: one line end comes with them
        TEditText gap;
        gap.Ends.push_back(newEnd < newN ? endAt(result, newEnd - 1) : endAt(result, head - 1));
        gap.Rows.emplace_back();
        if (oldEnd < oldN) {
            from = to = start(head);
            text.Append(gap);
        } else {
            from = to = end(head - 1);
            gap.Append(text);
            text = std::move(gap);
        }
    }
    if (from == to && text.Empty())
        return -1; // an empty line removed from an empty document
    const TZvPos caret = memo.Caret();
    memo.Change(from, to, text, std::move(record), caret);
    const int rowsBefore = block.LineRows.back() - block.FirstRow;
    const int oldRows = to.Y - from.Y, newRows = text.BreakCount();
    return rowsBefore + newRows - oldRows;
}

void SelectLines(TZvMemo& memo, int first, int rows, bool select, TZvPos caret) {
    const int count = memo.RowCount();
    if (!select || rows <= 0) {
        const int y = std::clamp(caret.Y, 0, count - 1);
        memo.SetTextCursor(std::min(caret.X, memo.RowLength(y)), y);
        return;
    }
    const int last = std::min(first + rows - 1, count - 1);
    memo.SetSelection({0, first},
                      last + 1 < count ? TZvPos{0, last + 1} : TZvPos{memo.RowLength(last), last});
}

bool MayChangeText(const TZvMemo& memo) {
    return !memo.FReadOnly && !memo.DocState().FHexView && memo.CanEdit();
}

int RunLineCommandOn(TZvMemo& memo, int first, int last, std::unique_ptr<TSelUndo> record,
                     const TLineEdit& edit) {
    if (!MayChangeText(memo))
        return -1;
    const TLineBlock block = ReadLines(memo, first, last);
    TLineList result;
    edit(block.Old, result);
    if (memo.HasSelection())
        record->SetSelection(memo, memo.SelStart(), memo.SelEnd());
    return WriteLines(memo, block, result, std::move(record));
}

bool RunLineCommand(TZvMemo& memo, bool caretLineOnly, std::unique_ptr<TSelUndo> record,
                    const TLineEdit& edit) {
    int first = 0, last = 0;
    CommandRows(memo, caretLineOnly, first, last);
    const bool selected = memo.HasSelection();
    const TZvPos caret = memo.Caret();
    const int rows = RunLineCommandOn(memo, first, last, std::move(record), edit);
    if (rows < 0)
        return false;
    SelectLines(memo, first, rows, selected, caret);
    return true;
}

void MapLines(const TLineList& lines, TLineList& result, const TLineMap& map) {
    TRowArena arena;
    std::u16string out;
    result.Lines.reserve(lines.Lines.size());
    result.Ends = lines.Ends;
    for (const TRowText& line : lines.Lines) {
        out.clear();
        result.Lines.push_back(map(line.View(), out) ? arena.Add(out) : line);
    }
}

} // namespace zv
