// Shown rows by runs of hidden ones: a binary search over the runs maps either way.
#include "ZvMemoControl/ShownRows.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {

void TShownRows::Refresh(const TZvMemoStrings& lines) {
    const int count = lines.Count();
    if (lines.StoreId() == FStoreId && lines.Revision() == FRevision && count == FRowCount)
        return;
    FStoreId = lines.StoreId();
    FRevision = lines.Revision();
    FRowCount = count;
    FShown = lines.VisibleCount();
    FRuns.clear();
    if (FShown >= count) // nothing hidden: every row shows
        return;
    int hidden = 0;
    for (int row = 0; row < count; ++row) {
        if (!lines.GetHiddenLine(row))
            continue;
        if (!FRuns.empty() && FRuns.back().First + FRuns.back().Length == row)
            ++FRuns.back().Length;
        else
            FRuns.push_back({row, 1, hidden});
        ++hidden;
    }
    FShown = count - hidden;
}

int TShownRows::IndexOf(int row) const {
    const auto after = std::upper_bound(FRuns.begin(), FRuns.end(), row,
                                        [](int r, const TRun& run) { return r < run.First; });
    if (after == FRuns.begin())
        return row;
    const TRun& run = *(after - 1);
    if (row < run.First + run.Length) // hidden: the shown row above
        return std::max(0, run.First - run.HiddenBefore - 1);
    return row - run.HiddenBefore - run.Length;
}

int TShownRows::RowOf(int index) const {
    index = std::max(index, 0);
    // The first shown row after a run has the index First - HiddenBefore.
    const auto after =
        std::upper_bound(FRuns.begin(), FRuns.end(), index,
                         [](int i, const TRun& run) { return i < run.First - run.HiddenBefore; });
    if (after == FRuns.begin())
        return index;
    const TRun& run = *(after - 1);
    return index + run.HiddenBefore + run.Length;
}

} // namespace zv
