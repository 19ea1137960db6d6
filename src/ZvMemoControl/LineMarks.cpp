// Bookmarks and plain line marks on the rows' attributes, and their carrying across edits.
#include "ZvMemoControl/LineMarks.h"

#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {
namespace {

TAttribute* MainLine(TZvMemoStrings& lines, int row) {
    if (row < 0 || row >= lines.Count())
        return nullptr;
    return lines.LineAttribute(lines.GetWrappedMainLineNumber(row));
}

const TAttribute* MainLine(const TZvMemoStrings& lines, int row) {
    if (row < 0 || row >= lines.Count())
        return nullptr;
    return &lines.GetLineAttribute(lines.GetWrappedMainLineNumber(row));
}

bool Marked(const TAttribute& a) {
    return a.Bookmark >= 0 || a.GetValue(abLinemark);
}

} // namespace

void SetBookmark(TZvMemoStrings& lines, int row, int number) {
    TAttribute* a = MainLine(lines, row);
    if (!a || number < 0 || number >= kBookmarkCount)
        return;
    a->SetValue(abLinemark, false);
    if (a->Bookmark == number) {
        a->Bookmark = -1;
        return;
    }
    if (TAttribute* old = MainLine(lines, FindBookmark(lines, number)))
        old->Bookmark = -1;
    a->Bookmark = static_cast<std::int8_t>(number);
}

int GetBookmark(const TZvMemoStrings& lines, int row) {
    const TAttribute* a = MainLine(lines, row);
    return a ? a->Bookmark : -1;
}

int FindBookmark(const TZvMemoStrings& lines, int number) {
    if (number < 0 || number >= kBookmarkCount)
        return -1;
    for (int row = 0; row < lines.Count(); ++row)
        if (lines.GetLineAttribute(row).Bookmark == number)
            return row;
    return -1;
}

void ToggleLinemark(TZvMemoStrings& lines, int row) {
    TAttribute* a = MainLine(lines, row);
    if (!a)
        return;
    a->Bookmark = -1;
    a->SetValue(abLinemark, !a->GetValue(abLinemark));
}

bool HasLinemark(const TZvMemoStrings& lines, int row) {
    const TAttribute* a = MainLine(lines, row);
    return a && a->GetValue(abLinemark);
}

void ClearMarks(TZvMemoStrings& lines, bool bookmarks) {
    for (int row = 0; row < lines.Count(); ++row) {
        TAttribute* a = lines.LineAttribute(row);
        if (bookmarks)
            a->Bookmark = -1;
        else
            a->SetValue(abLinemark, false);
    }
}

int NextMarkedRow(const TZvMemoStrings& lines, int row, bool forward) {
    const int count = lines.Count();
    if (count == 0)
        return -1;
    const int step = forward ? 1 : count - 1;
    int at = ((row % count) + count) % count;
    for (int i = 0; i < count; ++i) {
        at = (at + step) % count;
        if (Marked(lines.GetLineAttribute(at)))
            return at;
    }
    return -1;
}

std::vector<TRowMarks> NoteMarks(const TZvMemoStrings& lines, int fromRow, int toRow) {
    std::vector<TRowMarks> marks;
    for (int row = std::max(fromRow, 0); row <= toRow && row < lines.Count(); ++row) {
        const TAttribute& a = lines.GetLineAttribute(row);
        if (Marked(a))
            marks.push_back({row, a.Bookmark, a.GetValue(abLinemark)});
    }
    return marks;
}

void KeepMarksAcross(TZvMemoStrings& lines, const std::vector<TRowMarks>& marks,
                     const TTextChange& change) {
    if (marks.empty())
        return;
    // Rows the change wrote may keep a stale copy of a mark; the noted ones are the truth.
    for (int row = change.From.Y; row <= change.InsertedEnd.Y && row < lines.Count(); ++row) {
        TAttribute* a = lines.LineAttribute(row);
        a->Bookmark = -1;
        a->SetValue(abLinemark, false);
    }
    // The first line keeps its own text when the edit starts inside it; else the last
    // removed line's rest is the text that survives.
    const bool firstSurvives = change.From.X > 0;
    const int survivor = firstSurvives ? change.From.Y : change.RemovedEnd.Y;
    const auto target = [&](int row) {
        if (row == change.From.Y && firstSurvives)
            return change.From.Y;
        return MapPosition({0, row}, change, true).Y;
    };
    // Numbers are unique and the noted ones came from the rewritten rows, so only the marks
    // placed here can clash: no walk over the document on an edit of a marked line.
    const auto place = [&](const TRowMarks& m) {
        TAttribute* a = MainLine(lines, target(m.Row));
        if (!a || Marked(*a))
            return;
        a->Bookmark = static_cast<std::int8_t>(m.Bookmark);
        a->SetValue(abLinemark, m.Linemark);
    };
    for (const TRowMarks& m : marks)
        if (m.Row == survivor)
            place(m);
    for (const TRowMarks& m : marks)
        if (m.Row != survivor)
            place(m);
}

} // namespace zv
