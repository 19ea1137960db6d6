// The rows a view shows when closed folds hide some: each shown row's index among the shown
// rows and back, so a scroll bar can count shown rows only.
#pragma once

#include <cstdint>
#include <vector>

namespace zv {

class TZvMemoStrings;

class TShownRows {
public:
    // Brings the index up to the rows of `lines`: free when no row changed since the last
    // call or no row is hidden; otherwise one walk over the rows' flags.
    void Refresh(const TZvMemoStrings& lines);
    // The number of shown rows.
    int Count() const { return FShown; }
    // The index of `row` among the shown rows; a hidden row gives that of the shown row above
    // it (0 when none). Rows past the end count on as shown. O(log runs).
    int IndexOf(int row) const;
    // The shown row at `index` (0 for a negative one); indexes past the last shown row count
    // on beyond the rows. O(log runs).
    int RowOf(int index) const;

private:
    // A maximal run of hidden rows. Invariant: runs sorted by First and apart (a shown row
    // between any two); HiddenBefore is the number of hidden rows in the runs before it.
    struct TRun {
        int First, Length, HiddenBefore;
    };
    std::vector<TRun> FRuns;
    std::uint64_t FStoreId = 0, FRevision = 0;
    int FRowCount = -1, FShown = 0;
};

} // namespace zv
