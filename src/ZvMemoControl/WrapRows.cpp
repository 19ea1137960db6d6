// Cutting logical lines into rows, and recutting them after a change or a new layout.
#include "ZvMemoControl/WrapRows.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {
namespace {

constexpr int kMinWrapColumns = 16; // a narrower view is not wrapped
constexpr int kMinRowUnits = 12;    // no row is cut narrower
constexpr int kBreakReach = 20;     // how far back a cut looks for a break
constexpr int kMaxIndent = 5;       // a deeper indent shifts a continuation no further

bool IsBreakAfter(char16_t c) {
    return std::u16string_view(u" \t,.:;=)}]>").find(c) != std::u16string_view::npos;
}

bool IsBreakBefore(char16_t c) {
    return std::u16string_view(u"({[<").find(c) != std::u16string_view::npos;
}

// The columns of the leading blanks of `firstRow` (tab stops of `tabSize`), at most
// kMaxIndent. The line before its cut and its first row after it give the same: a cut
// inside the blanks leaves a full row of them.
int IndentColumns(std::u16string_view firstRow, int tabSize) {
    int columns = 0;
    for (std::size_t i = 0; i < firstRow.size() && columns < kMaxIndent &&
                            (firstRow[i] == u' ' || firstRow[i] == u'\t');
         ++i)
        columns = firstRow[i] == u' ' ? columns + 1 : (columns / tabSize + 1) * tabSize;
    return std::min(columns, kMaxIndent);
}

bool IsLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// Where `mark` (of at least 2 units) starts when it straddles `cut`; -1 when it does not.
int MarkAcross(std::u16string_view line, int cut, std::u16string_view mark) {
    if (mark.size() < 2)
        return -1;
    const int length = static_cast<int>(mark.size());
    for (int at = std::max(cut - length + 1, 0); at < cut; ++at)
        if (line.substr(static_cast<std::size_t>(at)).starts_with(mark))
            return at;
    return -1;
}

// The cut of the row [pos, ...) that may hold units up to `end` (exclusive).
int CutBefore(std::u16string_view line, int pos, int end, const TCutRule& rule) {
    const bool absolute = rule.Absolute;
    int cut = end;
    if (!absolute) {
        const int reach = std::min(kBreakReach, end - pos - 1);
        for (int i = end - 1; i > end - 1 - reach && i > pos; --i) {
            if (IsBreakAfter(line[static_cast<std::size_t>(i)])) {
                cut = i + 1;
                break;
            }
            if (IsBreakBefore(line[static_cast<std::size_t>(i)])) {
                cut = i;
                break;
            }
        }
    }
    if (cut > pos + 1 && cut < static_cast<int>(line.size()) &&
        IsLowSurrogate(line[static_cast<std::size_t>(cut)]))
        --cut; // a surrogate pair stays in one row
    // Moving before one mark may split another ("/*/"): on until none is split.
    for (bool moved = !absolute; moved;) {
        moved = false;
        for (const std::u16string_view mark : {rule.CommentStart, rule.CommentEnd})
            if (const int at = MarkAcross(line, cut, mark); at > pos) {
                cut = at;
                moved = true;
            }
    }
    return cut;
}

// The end (exclusive) of the longest piece from `pos` that fits `width` columns, at least
// one unit. `nextTab` caches the first tab at or after `pos` (below `pos`: not looked for
// yet), so lines without tabs are never walked unit by unit.
int FitEnd(std::u16string_view line, int pos, int width, int tabSize, int& nextTab) {
    const int n = static_cast<int>(line.size());
    if (tabSize <= 0)
        return std::min(pos + width, n);
    if (nextTab < pos) {
        const std::size_t tab = line.find(u'\t', static_cast<std::size_t>(pos));
        nextTab = tab == std::u16string_view::npos ? n : static_cast<int>(tab);
    }
    if (nextTab >= pos + width)
        return std::min(pos + width, n);
    int column = 0, end = pos;
    for (; end < n; ++end) {
        const int next = line[static_cast<std::size_t>(end)] == u'\t'
                             ? (column / tabSize + 1) * tabSize
                             : column + 1;
        if (next > width)
            break;
        column = next;
    }
    return std::max(end, pos + 1);
}

// Puts `text` (the logical line at `row`, `count` rows now) into rows of `lengths`:
// existing rows are reused, extra ones added as continuations, spare ones removed. The
// pieces share `text`'s buffer. Returns the rows added.
int PutLine(TZvMemoStrings& lines, int row, int count, const TRowText& text,
            const std::vector<int>& lengths) {
    const int n = static_cast<int>(lengths.size());
    if (n > count) {
        lines.PrepareLines(row + count, n - count);
        for (int r = row + count; r < row + n; ++r) {
            TAttribute* a = lines.LineAttribute(r);
            a->SetWrapped(true);
            a->SetValue(abSpellCheck, true);
        }
    } else if (n < count) {
        lines.DeleteLinesSilent(row + n, count - n);
    }
    auto* chunk = const_cast<TTextChunk*>(text.Chunk());
    const auto base = static_cast<std::uint32_t>(chunk ? text.View().data() - chunk->Data() : 0);
    std::uint32_t offset = 0;
    for (int i = 0; i < n; ++i) {
        const auto length = static_cast<std::uint32_t>(lengths[static_cast<std::size_t>(i)]);
        lines.SetRowText(row + i, chunk ? TRowText(chunk, base + offset, length) : TRowText());
        offset += length;
    }
    return n - count;
}

// The logical line of `count` rows from `row` as one text (the row's own when one).
TRowText JoinRows(const TZvMemoStrings& lines, int row, int count) {
    if (count == 1)
        return lines.GetRowText(row);
    std::u16string joined;
    for (int r = row; r < row + count; ++r)
        joined.append(lines.Get(r));
    return TRowText(joined);
}

// Recuts the logical line at `row` (a first row) of `count` rows; returns the rows added.
// `touched` is set when a row changed.
int RecutLine(TZvMemoStrings& lines, int row, int count, std::vector<int>& lengths, bool& touched) {
    const TRowText text = JoinRows(lines, row, count);
    CutLine(text.View(), CutRuleFor(lines.Memo(), lines.Get(row)), lengths);
    if (static_cast<int>(lengths.size()) == count) {
        bool same = true;
        for (int i = 0; i < count && same; ++i)
            same = lengths[static_cast<std::size_t>(i)] == lines.GetLineLength(row + i);
        if (same)
            return 0;
    }
    touched = true;
    return PutLine(lines, row, count, text, lengths);
}

int LogicalRows(const TZvMemoStrings& lines, int row) {
    int n = 1;
    while (row + n < lines.Count() && lines.GetLineAttribute(row + n).Wrapped())
        ++n;
    return n;
}

} // namespace

bool RowsAreCut(const TZvMemoState& state) {
    return (state.FWordWrap || state.FForceWrap) && !state.FBinaryMode;
}

bool WordWrapInForce(const TZvMemoState& state) {
    return state.FWordWrap && !state.FBinaryMode && !state.FHardWrapAtRightMargin &&
           state.FWrapColumns >= kMinWrapColumns;
}

TCutRule CutRuleFor(const TZvMemoState& state, std::u16string_view firstRow) {
    TCutRule rule;
    rule.Width = std::max(state.FForcewrapLength, 1);
    if (!WordWrapInForce(state))
        return rule;
    rule.Width = std::clamp(state.FWrapColumns, kMinRowUnits, rule.Width);
    rule.Absolute = state.FWrapAtAbsoluteMargin;
    rule.TabSize = std::max(state.FTabSize, 1);
    rule.CommentStart = state.FWrapCommentStart;
    rule.CommentEnd = state.FWrapCommentEnd;
    // A continuation is narrower by all of its indent: every row then ends by the same
    // column, and the column the view holds beyond the rule (see the widget's WrapColumns)
    // stays free for the wrap mark.
    if (state.FIndentWrappedLines)
        rule.Narrower = IndentColumns(firstRow, std::max(state.FTabSize, 1));
    return rule;
}

int ContinuationIndent(const TZvMemoStrings& lines, int row) {
    const TZvMemoState& state = lines.Memo();
    if (!state.FIndentWrappedLines || !WordWrapInForce(state) || row <= 0 || row >= lines.Count() ||
        !lines.GetLineAttribute(row).Wrapped())
        return 0;
    // By the position index: a line may have thousands of rows above this one.
    const int first = lines.GetWrapIndex(lines.GetRealLine(row));
    return IndentColumns(lines.Get(first), std::max(state.FTabSize, 1));
}

void CutLine(std::u16string_view line, const TCutRule& rule, std::vector<int>& lengths) {
    lengths.clear();
    const int n = static_cast<int>(line.size());
    int pos = 0, width = std::max(rule.Width, 1), nextTab = -1;
    for (int end; (end = FitEnd(line, pos, width, rule.TabSize, nextTab)) < n;) {
        const int cut = CutBefore(line, pos, end, rule);
        lengths.push_back(cut - pos);
        pos = cut;
        width = std::max(rule.Width - rule.Narrower, std::min(rule.Width, kMinRowUnits));
    }
    lengths.push_back(n - pos);
}

void ForceCutIfLong(TZvMemoStrings& lines, int first, int last) {
    TZvMemoState& state = lines.Memo();
    if (RowsAreCut(state) || state.FBinaryMode)
        return;
    for (int row = std::max(first, 0); row <= last + 1 && row < lines.Count(); ++row)
        if ((row <= last && lines.GetLineLength(row) > state.FForcewrapLength) ||
            (row > 0 && lines.GetLineAttribute(row).Wrapped())) {
            state.FForceWrap = true;
            return;
        }
}

TRowSpan RecutSpan(const TZvMemoStrings& lines, int first, int last) {
    if (lines.Count() == 0 || !RowsAreCut(lines.Memo()))
        return {};
    const int rows = lines.Count();
    first = std::clamp(first, 0, rows - 1);
    last = std::clamp(last, first, rows - 1);
    if (!WordWrapInForce(lines.Memo()))
        return {first, std::min(last + 1, rows - 1)};
    while (first > 0 && lines.GetLineAttribute(first).Wrapped())
        --first;
    while (last + 1 < rows && lines.GetLineAttribute(last + 1).Wrapped())
        ++last;
    return {first, last};
}

int Recut(TZvMemoStrings& lines, TRowSpan span, bool& touched) {
    touched = false;
    if (span.Last < span.First)
        return 0;
    std::vector<int> lengths;
    int added = 0;
    if (WordWrapInForce(lines.Memo())) {
        for (int row = span.First; row <= span.Last + added;) {
            const int count = LogicalRows(lines, row);
            const int delta = RecutLine(lines, row, count, lengths, touched);
            added += delta;
            row += count + delta;
        }
        return added;
    }
    // The forced cut alone: only rows above the limit are split (a keystroke in a long line
    // moves no other row), and an empty row inside a line goes.
    const int limit = std::max(lines.Memo().FForcewrapLength, 1);
    for (int row = span.First; row <= span.Last + added && row < lines.Count();) {
        const int length = lines.GetLineLength(row);
        const bool continuation = lines.GetLineAttribute(row).Wrapped();
        const bool continued = row + 1 < lines.Count() && lines.GetLineAttribute(row + 1).Wrapped();
        if (length > limit) {
            // Even pieces a quarter short of the limit: the next keys typed into the row
            // split nothing.
            const int target = std::max(limit - limit / 4, 1);
            const int pieces = (length + target - 1) / target;
            const int width = (length + pieces - 1) / pieces;
            const TRowText text = lines.GetRowText(row);
            CutLine(text.View(), TCutRule{width, 0, true}, lengths);
            const int delta = PutLine(lines, row, 1, text, lengths);
            added += delta;
            row += 1 + delta;
            touched = true;
        } else if (length == 0 && continuation) {
            lines.DeleteLinesSilent(row, 1);
            --added;
            touched = true;
        } else if (length == 0 && continued) { // the first row takes its continuation's text
            lines.SetRowText(row, lines.GetRowText(row + 1));
            lines.DeleteLinesSilent(row + 1, 1);
            --added;
            touched = true;
        } else {
            ++row;
        }
    }
    return added;
}

int WrapAll(TZvMemoStrings& lines) {
    if (lines.Memo().FBinaryMode || lines.Count() == 0)
        return 0;
    const int width = CutRuleFor(lines.Memo(), {}).Width;
    std::vector<int> lengths;
    int added = 0;
    for (int row = 0; row < lines.Count();) {
        const int count = LogicalRows(lines, row);
        // A one-row line that fits in units fits unless a tab widens it.
        if (count == 1 && lines.GetLineLength(row) <= width &&
            lines.Get(row).find(u'\t') == std::u16string_view::npos) {
            ++row;
            continue;
        }
        bool touched = false;
        const int delta = RecutLine(lines, row, count, lengths, touched);
        added += delta;
        row += count + delta;
    }
    return added;
}

} // namespace zv
