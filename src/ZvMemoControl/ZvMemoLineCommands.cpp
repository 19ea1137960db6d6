// Commands over whole lines: join, split, blank-line removal and compression, trailing
// blanks, moving and duplicating lines, deleting to a row's ends.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"

namespace zv {

namespace {

bool IsBlank(std::u16string_view line) {
    for (char16_t c : line)
        if (!IsWhiteSpace(c))
            return false;
    return true;
}

std::u16string_view WithoutLeadingBlanks(std::u16string_view s) {
    while (!s.empty() && (s.front() == u' ' || s.front() == u'\t'))
        s.remove_prefix(1);
    return s;
}

// The end before line i of `lines` (the first line: the document's kind).
TLineEnd EndBefore(const TLineList& lines, int i) {
    return i > 0 ? lines.Ends[static_cast<std::size_t>(i - 1)] : leDocument;
}

// Keeps the lines for which `keep` says so, each with the end that stood before it.
template <typename Keep> void KeepLines(const TLineList& lines, TLineList& result, Keep keep) {
    for (int i = 0; i < lines.Count(); ++i)
        if (keep(i))
            result.Add(lines.Lines[static_cast<std::size_t>(i)], EndBefore(lines, i));
}

// Rows of the whole document without the empty row behind a final line end.
int LastTextRow(const TZvMemo& memo) {
    const int last = memo.RowCount() - 1;
    return last > 0 && memo.RowLength(last) == 0 && !memo.Lines().IsLineWrapped(last) ? last - 1
                                                                                      : last;
}

// Where a line longer than `column` units is cut: after the last blank at or before the
// column (the blank itself goes: `skip` 1), else at the column, never inside a pair.
std::size_t CutAt(std::u16string_view line, std::size_t column, std::size_t& skip) {
    for (std::size_t i = std::min(column, line.size() - 1) + 1; i-- > 1;)
        if (line[i] == u' ' || line[i] == u'\t') {
            skip = 1;
            return i;
        }
    skip = 0;
    std::size_t at = column;
    if (at > 1 && at < line.size() && line[at] >= 0xDC00 && line[at] <= 0xDFFF)
        --at;
    return at;
}

} // namespace

bool TZvMemo::JoinLines(bool all, bool noSpace, bool removeLeading, bool skipBlank) {
    int first = 0, last = 0;
    CommandRows(*this, !all, first, last);
    if (all) {
        first = 0;
        last = LastTextRow(*this);
    } else if (!HasSelection() || first == last) {
        const int main = Lines().GetWrappedMainLineNumber(last);
        last = std::min(main + std::max(Lines().GetWrappedLineCount(main), 1), RowCount() - 1);
        last = Lines().GetWrappedMainLineNumber(last);
        last += std::max(Lines().GetWrappedLineCount(last), 1) - 1;
    }
    const bool selected = HasSelection();
    const TZvPos caret = Caret();
    const int rows = RunLineCommandOn(
        *this, first, last, std::make_unique<TJoinLinesUndo>(),
        [&](const TLineList& lines, TLineList& result) {
            int i = 0;
            if (skipBlank)
                for (; i + 1 < lines.Count() && IsBlank(lines.Text(i)); ++i)
                    result.Add(lines.Lines[static_cast<std::size_t>(i)], EndBefore(lines, i));
            std::u16string joined(lines.Text(i));
            const TLineEnd before = EndBefore(lines, i);
            for (++i; i < lines.Count(); ++i) {
                auto text = lines.Text(i);
                if (skipBlank && IsBlank(text))
                    continue;
                if (!noSpace)
                    joined.push_back(u' ');
                joined.append(removeLeading ? WithoutLeadingBlanks(text) : text);
            }
            TRowArena arena;
            result.Add(arena.Add(joined), before);
        });
    if (rows < 0)
        return false;
    SelectLines(*this, first, rows, selected, caret);
    return true;
}

bool TZvMemo::acnJoinLines() {
    return JoinLines(false, false, true, false);
}

bool TZvMemo::JoinAllLines() {
    return JoinLines(true, false, true, false);
}

bool TZvMemo::SplitLinesAtColumn(int column) {
    if (column < 1)
        return false;
    return RunLineCommand(*this, false, std::make_unique<TSplitLinesUndo>(),
                          [column](const TLineList& lines, TLineList& result) {
                              TRowArena arena;
                              const auto width = static_cast<std::size_t>(column);
                              for (int i = 0; i < lines.Count(); ++i) {
                                  auto text = lines.Text(i);
                                  if (text.size() <= width) {
                                      result.Add(lines.Lines[static_cast<std::size_t>(i)],
                                                 EndBefore(lines, i));
                                      continue;
                                  }
                                  TLineEnd before = EndBefore(lines, i);
                                  while (text.size() > width) {
                                      std::size_t skip = 0;
                                      const std::size_t at = CutAt(text, width, skip);
                                      result.Add(arena.Add(text.substr(0, at)), before);
                                      text.remove_prefix(at + skip);
                                      before = leDocument;
                                  }
                                  result.Add(arena.Add(text), before);
                              }
                          });
}

bool TZvMemo::acnSplitLines() {
    return SplitLinesAtColumn(FRightMargin);
}

bool TZvMemo::SplitLines() {
    return SplitLinesAtColumn(FRightMargin);
}

bool TZvMemo::SplitAllLinesAtMargin() {
    ClearSelection();
    return SplitLinesAtColumn(FRightMargin);
}

bool TZvMemo::DeleteBlankLines(bool all) {
    if (all)
        ClearSelection();
    return RunLineCommand(*this, false, std::make_unique<TDeleteBlankLinesUndo>(),
                          [](const TLineList& lines, TLineList& result) {
                              KeepLines(lines, result,
                                        [&](int i) { return !IsBlank(lines.Text(i)); });
                          });
}

bool TZvMemo::acnDeleteBlankLines() {
    return DeleteBlankLines(false);
}

bool TZvMemo::acnCompressLines(bool keepOne) {
    return RunLineCommand(*this, false, std::make_unique<TCompressLinesUndo>(),
                          [keepOne](const TLineList& lines, TLineList& result) {
                              KeepLines(lines, result, [&](int i) {
                                  if (!IsBlank(lines.Text(i)))
                                      return true;
                                  return keepOne && (i == 0 || !IsBlank(lines.Text(i - 1)));
                              });
                          });
}

bool TZvMemo::acnRemoveTrailingBlankLines() {
    const TZvPos caret = Caret();
    const int rows = RunLineCommandOn(
        *this, 0, LastTextRow(*this), std::make_unique<TDeleteTrailingBlankLinesUndo>(),
        [](const TLineList& lines, TLineList& result) {
            int keep = lines.Count();
            while (keep > 0 && IsBlank(lines.Text(keep - 1)))
                --keep;
            KeepLines(lines, result, [keep](int i) { return i < keep; });
        });
    if (rows < 0)
        return false;
    SelectLines(*this, 0, 0, false, caret);
    return true;
}

bool TZvMemo::acnRemoveTrailingWhiteSpaces() {
    return RunLineCommand(*this, false, std::make_unique<TRemoveTrailingUndo>(),
                          [](const TLineList& lines, TLineList& result) {
                              MapLines(
                                  lines, result, [](std::u16string_view line, std::u16string& out) {
                                      std::size_t n = line.size();
                                      while (n > 0 && (line[n - 1] == u' ' || line[n - 1] == u'\t'))
                                          --n;
                                      out.assign(line.substr(0, n));
                                      return n != line.size();
                                  });
                          });
}

namespace {

// Moves lines first..last (rows, whole lines) one line up (dy -1) or down (dy 1).
bool MoveLines(TZvMemo& memo, int dy, std::unique_ptr<TSelUndo> record) {
    int first = 0, last = 0;
    CommandRows(memo, true, first, last);
    const TZvMemoStrings& lines = memo.Lines();
    const int lastRow = memo.RowCount() - 1;
    if ((dy < 0 && first == 0) || (dy > 0 && last >= lastRow))
        return false;
    int from = first, to = last;
    if (dy < 0)
        from = lines.GetWrappedMainLineNumber(first - 1);
    else
        to = lines.GetWrappedMainLineNumber(last + 1) +
             std::max(lines.GetWrappedLineCount(lines.GetWrappedMainLineNumber(last + 1)), 1) - 1;
    const bool selected = memo.HasSelection();
    const TZvPos caret = memo.Caret();
    TZvPos s, e;
    memo.OrderedSelection(s, e);
    const int rows =
        RunLineCommandOn(memo, from, to, std::move(record), [dy](const TLineList& l, TLineList& r) {
            // The neighbour line goes to the other side; the ends stay where they stood.
            const int n = l.Count();
            for (int i = 0; i < n; ++i) {
                const int src = dy < 0 ? (i + 1) % n : (i + n - 1) % n;
                r.Add(l.Lines[static_cast<std::size_t>(src)], EndBefore(l, i));
            }
        });
    if (rows < 0)
        return false;
    if (selected)
        memo.SetSelection({s.X, s.Y + dy}, {e.X, e.Y + dy});
    else
        memo.SetTextCursor(caret.X, caret.Y + dy);
    return true;
}

} // namespace

bool TZvMemo::MoveLinesUp() {
    return MoveLines(*this, -1, std::make_unique<TMoveLinesUpUndo>());
}

bool TZvMemo::MoveLinesDown() {
    return MoveLines(*this, 1, std::make_unique<TMoveLinesDownUndo>());
}

bool TZvMemo::acnDuplicateLineTimes(int times) {
    if (times < 1)
        return false;
    return RunLineCommand(*this, true, std::make_unique<TDuplicateLinesUndo>(),
                          [times](const TLineList& lines, TLineList& result) {
                              result = lines;
                              for (int k = 0; k < times; ++k)
                                  for (int i = 0; i < lines.Count(); ++i)
                                      result.Add(lines.Lines[static_cast<std::size_t>(i)],
                                                 i == 0 ? leDocument : EndBefore(lines, i));
                          });
}

namespace {

bool DeleteInRow(TZvMemo& memo, bool toStart) {
    if (!MayChangeText(memo))
        return false;
    const TZvPos caret = memo.Caret();
    const int y = std::clamp(caret.Y, 0, memo.RowCount() - 1);
    const int x = std::min(caret.X, memo.RowLength(y));
    const TZvPos from = toStart ? TZvPos{0, y} : TZvPos{x, y};
    const TZvPos to = toStart ? TZvPos{x, y} : TZvPos{memo.RowLength(y), y};
    if (from == to)
        return false;
    memo.Change(from, to, TEditText(), std::make_unique<TDeleteBufUndo>(), caret);
    return true;
}

} // namespace

bool TZvMemo::acnDeleteToBeginOfLine() {
    return DeleteInRow(*this, true);
}

bool TZvMemo::acnDeleteToEndOfLine() {
    return DeleteInRow(*this, false);
}

} // namespace zv
