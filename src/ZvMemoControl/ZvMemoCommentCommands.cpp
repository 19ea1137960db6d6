// Commenting and uncommenting by the syntax's comment marks: a line mark at the block's
// indent of every line, or block marks around the selection or the line.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <limits>

namespace zv {

namespace {

// The first opener of a "|"-separated list.
std::u16string_view FirstMark(std::u16string_view list) {
    return list.substr(0, list.find(u'|'));
}

struct TMarks {
    std::u16string_view Line, Start, End;
};

// The marks a comment command uses: given ones, else the syntax's (markup: block only).
TMarks PickMarks(const TZvMemo::TCommentMarks& syntax, std::u16string_view start,
                 std::u16string_view end) {
    if (!start.empty())
        return end.empty() ? TMarks{start, {}, {}} : TMarks{{}, start, end};
    TMarks m;
    if (!syntax.Markup) {
        m.Line = FirstMark(syntax.LineA);
        if (m.Line.empty())
            m.Line = FirstMark(syntax.LineB);
    }
    if (m.Line.empty() && !syntax.BlockStart.empty() && !syntax.BlockEnd.empty()) {
        m.Start = syntax.BlockStart;
        m.End = syntax.BlockEnd;
    }
    return m;
}

std::size_t IndentOf(std::u16string_view line) {
    std::size_t n = 0;
    while (n < line.size() && (line[n] == u' ' || line[n] == u'\t'))
        ++n;
    return n;
}

bool IsBlankLine(std::u16string_view line) {
    return IndentOf(line) == line.size();
}

// The line mark `line` starts with behind its indent, of the syntax's openers; empty if none.
std::u16string_view LineMarkAt(std::u16string_view line, std::u16string_view given,
                               const TZvMemo::TCommentMarks& syntax) {
    const auto text = line.substr(IndentOf(line));
    const auto starts = [&](std::u16string_view list) -> std::u16string_view {
        for (std::size_t from = 0; from <= list.size();) {
            const std::size_t bar = std::min(list.find(u'|', from), list.size());
            const auto mark = list.substr(from, bar - from);
            if (!mark.empty() && text.substr(0, mark.size()) == mark)
                return mark;
            from = bar + 1;
        }
        return {};
    };
    if (!given.empty())
        return starts(given);
    const auto a = starts(syntax.LineA);
    return a.empty() ? starts(syntax.LineB) : a;
}

bool CommentLines(TZvMemo& memo, std::u16string_view mark) {
    return RunLineCommand(memo, true, std::make_unique<TBlockCommentUndo>(),
                          [mark](const TLineList& lines, TLineList& result) {
                              std::size_t indent = std::numeric_limits<std::size_t>::max();
                              for (const TRowText& line : lines.Lines)
                                  if (!IsBlankLine(line.View()))
                                      indent = std::min(indent, IndentOf(line.View()));
                              MapLines(lines, result,
                                       [&](std::u16string_view line, std::u16string& out) {
                                           if (IsBlankLine(line))
                                               return false;
                                           out.assign(line.substr(0, indent));
                                           out.append(mark);
                                           out.append(line.substr(indent));
                                           return true;
                                       });
                          });
}

bool UncommentLines(TZvMemo& memo, std::u16string_view given) {
    const TZvMemo::TCommentMarks& syntax = memo.FCommentMarks;
    return RunLineCommand(memo, true, std::make_unique<TBlockUnCommentUndo>(),
                          [&](const TLineList& lines, TLineList& result) {
                              MapLines(lines, result,
                                       [&](std::u16string_view line, std::u16string& out) {
                                           const auto mark = LineMarkAt(line, given, syntax);
                                           if (mark.empty())
                                               return false;
                                           const std::size_t at = IndentOf(line);
                                           out.assign(line.substr(0, at));
                                           out.append(line.substr(at + mark.size()));
                                           return true;
                                       });
                          });
}

// The range block marks go around: the selection, or the caret's line behind its indent.
void BlockRange(const TZvMemo& memo, TZvPos& s, TZvPos& e) {
    if (memo.HasSelection()) {
        memo.OrderedSelection(s, e);
        s.X = std::min(s.X, memo.RowLength(s.Y));
        e.X = std::min(e.X, memo.RowLength(e.Y));
        return;
    }
    const int y = std::clamp(memo.Caret().Y, 0, memo.RowCount() - 1);
    s = {static_cast<int>(IndentOf(memo.RowText(y))), y};
    e = {memo.RowLength(y), y};
}

// Replaces [s, e) by `text` as one step and selects the text that was there, now shifted.
bool ReplaceBlock(TZvMemo& memo, TZvPos s, TZvPos e, TEditText text,
                  std::unique_ptr<TSelUndo> record, int shiftStart, int shiftEnd) {
    const bool selected = memo.HasSelection();
    const TZvPos caret = memo.Caret();
    if (selected)
        record->SetSelection(memo, memo.SelStart(), memo.SelEnd());
    memo.Change(s, e, text, std::move(record), caret);
    if (selected)
        memo.SetSelection({s.X + shiftStart, s.Y},
                          {e.X + (s.Y == e.Y ? shiftStart : 0) + shiftEnd, e.Y});
    else
        memo.SetTextCursor(caret.X, caret.Y);
    return true;
}

bool CommentRange(TZvMemo& memo, std::u16string_view start, std::u16string_view end) {
    TZvPos s, e;
    BlockRange(memo, s, e);
    TEditText text = ExtractText(memo.Lines(), s, e);
    text.Prepend(TEditText::FromString(start, true));
    text.Append(TEditText::FromString(end, true));
    return ReplaceBlock(memo, s, e, std::move(text), std::make_unique<TBlockCommentUndo>(),
                        static_cast<int>(start.size()), 0);
}

// The range without its outer blanks, when it starts with `start` and ends with `end`; marks
// right outside a selection count too (the selection a comment command left).
bool MarkedRange(const TZvMemo& memo, std::u16string_view start, std::u16string_view end, TZvPos& s,
                 TZvPos& e) {
    BlockRange(memo, s, e);
    const auto before = memo.RowText(s.Y).substr(0, static_cast<std::size_t>(s.X));
    const auto after = memo.RowText(e.Y).substr(static_cast<std::size_t>(e.X));
    if (memo.HasSelection() && before.ends_with(start) && after.starts_with(end)) {
        s.X -= static_cast<int>(start.size());
        e.X += static_cast<int>(end.size());
        return true;
    }
    const auto first = memo.RowText(s.Y);
    while (s.X < static_cast<int>(first.size()) && (first[s.X] == u' ' || first[s.X] == u'\t'))
        ++s.X;
    const auto last = memo.RowText(e.Y);
    while (e.X > 0 && (s.Y != e.Y || e.X > s.X) &&
           (last[e.X - 1] == u' ' || last[e.X - 1] == u'\t'))
        --e.X;
    const auto head = first.substr(static_cast<std::size_t>(s.X));
    const auto tail = last.substr(0, static_cast<std::size_t>(e.X));
    const std::size_t room = s.Y == e.Y ? static_cast<std::size_t>(e.X - s.X) : SIZE_MAX;
    return room >= start.size() + end.size() && head.substr(0, start.size()) == start &&
           tail.size() >= end.size() && tail.substr(tail.size() - end.size()) == end;
}

bool UncommentRange(TZvMemo& memo, std::u16string_view start, std::u16string_view end) {
    TZvPos s, e;
    if (!MarkedRange(memo, start, end, s, e))
        return false;
    TEditText text = ExtractText(memo.Lines(), s, e);
    TRowArena arena;
    text.Rows.back() =
        arena.Add(text.Rows.back().View().substr(0, text.Rows.back().Length() - end.size()));
    text.Rows.front() = arena.Add(text.Rows.front().View().substr(start.size()));
    return ReplaceBlock(memo, s, e, std::move(text), std::make_unique<TBlockUnCommentUndo>(), 0, 0);
}

} // namespace

bool TZvMemo::CommentBlock(std::u16string_view start, std::u16string_view end) {
    if (FSyncEditMode || !MayChangeText(*this))
        return false;
    const TMarks marks = PickMarks(FCommentMarks, start, end);
    if (!marks.Line.empty())
        return CommentLines(*this, marks.Line);
    if (marks.Start.empty())
        return false;
    return CommentRange(*this, marks.Start, marks.End);
}

bool TZvMemo::UnCommentBlock() {
    if (FSyncEditMode || !MayChangeText(*this))
        return false;
    const TMarks marks = PickMarks(FCommentMarks, {}, {});
    if (!marks.Line.empty())
        return UncommentLines(*this, {});
    if (marks.Start.empty())
        return false;
    return UncommentRange(*this, marks.Start, marks.End);
}

bool TZvMemo::ToggleCommentBlock() {
    if (FSyncEditMode || !MayChangeText(*this))
        return false;
    if (AtSeveralPlaces())
        return MultiEditToggleComment();
    const TMarks marks = PickMarks(FCommentMarks, {}, {});
    if (!marks.Line.empty()) {
        int first = 0, last = 0;
        CommandRows(*this, true, first, last);
        while (first < last && IsBlankLine(RowText(first)))
            ++first;
        return LineMarkAt(RowText(first), {}, FCommentMarks).empty() ? CommentBlock()
                                                                     : UnCommentBlock();
    }
    if (marks.Start.empty())
        return false;
    TZvPos s, e;
    return MarkedRange(*this, marks.Start, marks.End, s, e) ? UnCommentBlock() : CommentBlock();
}

} // namespace zv
