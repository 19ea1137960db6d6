// The end-of-row states of one document, kept beside the line store. Validity is a watermark:
// the records of rows [0, ValidRows()) are right; a record at or below it is kept (an edit
// compares against it) but not trusted. A generation number rises with every invalidation,
// so a state computed before an edit is never stored after it.
#pragma once

#include "ZvMemoControl/LineStyle.h"
#include "syntax/RowFacts.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <random>
#include <vector>

namespace zv {

class TLineStates {
public:
    // Invalidation count; a writer passes the value it read before it read the row.
    std::uint64_t Generation() const { return FGeneration.load(std::memory_order_acquire); }
    int ValidRows() const { return FValid.load(std::memory_order_acquire); }

    // Copies the stored record of `row` into `state`; true when it is valid. A row without a
    // record gives the clear state and false.
    bool Get(int row, TStyle& state) const;

    // ClearLineStylesFrom: every row from `row` on (negative counts as 0) loses its validity.
    // `rowCount` is the store's row count after the edit; when it differs from the count the
    // previous call (or Reset) saw, rows moved and a later Restore gives nothing back. So
    // every edit must be reported, one at a time.
    void ClearFrom(int row, int rowCount);

    // Stores the state of `row` unless an invalidation happened since `generation` was read.
    // Extends the valid range when `row` is its first invalid row. Returns false when dropped.
    // `facts` are the row's facts from the same scan; without them the row's facts are
    // unknown. A to-do item keeps the TodoId its row had, or gets a new one: a random number
    // from 100 to 99,999 plus the row.
    bool Store(int row, const TStyle& state, std::uint64_t generation,
               const TRowFacts* facts = nullptr);

    // Copies the facts of `row` into `facts`; true when they are valid and known.
    bool Facts(int row, TRowFacts& facts) const;

    // After an edit of `row` whose end state came out unchanged: gives back the validity the
    // last ClearFrom took, when that was at `row`, `row` was valid before it, no rows moved,
    // and the count is `rowCount`.
    bool Restore(int row, int rowCount);

    // Drops every record (a new syntax or a new text of `rowCount` rows).
    void Reset(int rowCount);

private:
    mutable std::mutex FMutex;
    std::vector<TStyle> FRows;                 // guarded by FMutex; may be shorter than the store
    std::vector<TRowFacts> FFacts;             // guarded by FMutex; as long as FRows
    std::minstd_rand FTodoRandom{20261125};    // guarded by FMutex
    std::atomic<int> FValid{0};                // written under FMutex
    std::atomic<std::uint64_t> FGeneration{0}; // written under FMutex
    // Guarded by FMutex: the row and watermark of the last ClearFrom, and the row count the
    // last ClearFrom or Reset saw.
    int FRestoreRow = -1, FRestoreValid = 0, FKnownCount = -1;
};

} // namespace zv
