// Which rows a fold pass's hand-over must write, and the hand-over itself.
#include "syntax/FoldHandOver.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {
namespace {

constexpr std::int32_t kInDirty = -1;

// An old fold in the rows of the present text; a row the edits touched becomes kInDirty,
// which no new fold has.
TFoldRange MapOld(TFoldRange f, TRowSpan dirty, int rowsAdded) {
    const auto map = [&](std::int32_t row) {
        if (dirty.Last < dirty.First || row < dirty.First)
            return row;
        return row + rowsAdded > dirty.Last ? row + rowsAdded : kInDirty;
    };
    f.First = map(f.First);
    f.Last = map(f.Last);
    return f;
}

// Sorted, disjoint spans of `dirty` and `rows`, within [0, count).
std::vector<TRowSpan> Spans(TRowSpan dirty, const std::vector<int>& rows, int count) {
    std::vector<TRowSpan> spans;
    if (dirty.First <= dirty.Last)
        spans.push_back({std::max(dirty.First, 0), std::min(dirty.Last, count - 1)});
    for (int row : rows)
        if (row >= 0 && row < count)
            spans.push_back({row, row});
    std::sort(spans.begin(), spans.end(),
              [](const TRowSpan& a, const TRowSpan& b) { return a.First < b.First; });
    std::vector<TRowSpan> merged;
    for (const TRowSpan& s : spans) {
        if (s.Last < s.First)
            continue;
        if (!merged.empty() && s.First <= merged.back().Last + 1)
            merged.back().Last = std::max(merged.back().Last, s.Last);
        else
            merged.push_back(s);
    }
    return merged;
}

// The rows whose fold data `next` can give otherwise than `previous` did, the rows of the
// present text being as `dirty` and `rowsAdded` say.
std::vector<TRowSpan> RowsToWrite(const TFoldTemp& previous, const TFoldTemp& next, TRowSpan dirty,
                                  int rowsAdded) {
    const std::vector<TFoldRange>& o = previous.Folds;
    const std::vector<TFoldRange>& n = next.Folds;
    const std::size_t common = std::min(o.size(), n.size());
    std::size_t prefix = 0, suffix = 0;
    while (prefix < common && MapOld(o[prefix], dirty, rowsAdded) == n[prefix])
        ++prefix;
    while (prefix + suffix < common &&
           MapOld(o[o.size() - 1 - suffix], dirty, rowsAdded) == n[n.size() - 1 - suffix])
        ++suffix;
    // Folds that differ: their rows lose or gain a fold. A fold with a row among the touched
    // rows never equals an old one, so every head whose number the edits may have disturbed
    // has its end row written too.
    std::vector<int> rows;
    for (std::size_t k = prefix; k + suffix < o.size(); ++k) {
        const TFoldRange f = MapOld(o[k], dirty, rowsAdded);
        rows.push_back(f.First);
        rows.push_back(f.Last);
    }
    for (std::size_t k = prefix; k + suffix < n.size(); ++k) {
        rows.push_back(n[k].First);
        rows.push_back(n[k].Last);
    }
    return Spans(dirty, rows, next.RowCount);
}

} // namespace

void TFoldHandOver::Edited(const TTextChange& change) {
    const int first = change.From.Y;
    const int last = std::max(change.InsertedEnd.Y, first);
    FRowsAdded += change.RowsAdded;
    if (FDirty.Last < FDirty.First) {
        FDirty = {first, last};
        return;
    }
    const auto map = [&](int row) {
        if (row < first)
            return row;
        return row >= change.RemovedEnd.Y ? row + change.RowsAdded : last;
    };
    FDirty = {std::min(FDirty.First, first), std::max(map(FDirty.Last), last)};
}

void TFoldHandOver::Apply(TZvMemoStrings& lines, TFoldTemp& next) {
    const bool whole = !FHasApplied || FApplied.RowCount + FRowsAdded != next.RowCount;
    const std::vector<TRowSpan> spans = whole ? std::vector<TRowSpan>{{0, next.RowCount - 1}}
                                              : RowsToWrite(FApplied, next, FDirty, FRowsAdded);
    FDirty = UpdateFoldRows(lines, next, spans);
    FRowsWritten = 0;
    for (const TRowSpan& s : spans)
        FRowsWritten += s.Last - s.First + 1;
    FRowsAdded = 0;
    std::swap(FApplied, next);
    FHasApplied = true;
}

} // namespace zv
