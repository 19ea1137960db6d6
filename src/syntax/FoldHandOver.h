// TFoldHandOver: the main thread's side of handing fold passes to the rows, writing only the
// rows whose fold data can have changed. A row's fold data depends only on the folds that
// head or end at it, so after the rows received one pass, the next one needs the rows of the
// folds that differ between the two, the rows the edits since touched (they may carry copied
// or cleared attributes), and the rows the last hand-over skipped (hidden or closed).
#pragma once

#include "ZvMemoControl/TextChange.h"
#include "ZvMemoControl/ZvMemoFolds.h"

namespace zv {

class TFoldHandOver {
public:
    // The rows changed as `change` says (main thread, in the edit path).
    void Edited(const TTextChange& change);
    // Hands `next`, a pass over the present text of `lines`, to the rows: each row gets what
    // UpdateFoldData would give it. The first time, and when the edits do not add up to the
    // row count change, every row is written. `next` is left holding the list the rows had
    // before (its buffer is reused).
    void Apply(TZvMemoStrings& lines, TFoldTemp& next);
    // How many rows the last Apply wrote (or skipped as hidden or closed).
    int RowsWritten() const { return FRowsWritten; }

private:
    TFoldTemp FApplied;       // the pass the rows hold, in the rows of that time
    bool FHasApplied = false; // FApplied was handed to the rows
    // Rows of the present text that may hold something else than FApplied gives them:
    // touched by edits since, or skipped by the last hand-over. Last < First when none.
    TRowSpan FDirty{0, -1};
    int FRowsAdded = 0; // rows added by the edits since the last hand-over (may be negative)
    int FRowsWritten = 0;
};

} // namespace zv
