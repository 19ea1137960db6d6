// Stored end-of-row states with a validity watermark and a generation counter.
#include "syntax/LineStates.h"

#include <algorithm>

namespace zv {

bool TLineStates::Get(int row, TStyle& state) const {
    std::lock_guard lock(FMutex);
    if (row < 0 || row >= int(FRows.size())) {
        ClearStyle(state, true);
        return false;
    }
    state = FRows[row];
    return row < FValid.load(std::memory_order_relaxed);
}

bool TLineStates::Facts(int row, TRowFacts& facts) const {
    std::lock_guard lock(FMutex);
    if (row < 0 || row >= int(FFacts.size()) || row >= FValid.load(std::memory_order_relaxed))
        return false;
    facts = FFacts[row];
    return facts.Known();
}

void TLineStates::ClearFrom(int row, int rowCount) {
    row = std::max(row, 0);
    std::lock_guard lock(FMutex);
    const int valid = FValid.load(std::memory_order_relaxed);
    if (rowCount != FKnownCount) // rows moved: nothing below may be given back
        FRestoreRow = -1;
    else if (FRestoreRow != row) {
        FRestoreRow = row;
        FRestoreValid = valid;
    } else
        FRestoreValid = std::max(FRestoreValid, valid);
    FKnownCount = rowCount;
    FValid.store(std::min(valid, row), std::memory_order_release);
    FGeneration.fetch_add(1, std::memory_order_acq_rel);
}

bool TLineStates::Store(int row, const TStyle& state, std::uint64_t generation,
                        const TRowFacts* facts) {
    if (row < 0)
        return false;
    std::lock_guard lock(FMutex);
    if (generation != FGeneration.load(std::memory_order_relaxed))
        return false;
    if (row >= int(FRows.size())) {
        FRows.resize(std::max<std::size_t>(row + 1, FRows.size() + FRows.size() / 2));
        FFacts.resize(FRows.size());
    }
    FRows[row] = state;
    TRowFacts& f = FFacts[row];
    const std::int32_t oldTodo = f.TodoId;
    f = facts ? *facts : TRowFacts{};
    if (f.TodoItem())
        f.TodoId =
            oldTodo > 0 ? oldTodo : std::int32_t(100 + FTodoRandom() % 99900) + std::int32_t(row);
    FRows[row].FBooleanArray |= 1u;
    if (row == FValid.load(std::memory_order_relaxed))
        FValid.store(row + 1, std::memory_order_release);
    return true;
}

bool TLineStates::Restore(int row, int rowCount) {
    std::lock_guard lock(FMutex);
    // The record `row` was compared against must have been trusted before the edit: one
    // past the watermark may be stale, and the rows below were painted from another state.
    if (row != FRestoreRow || rowCount != FKnownCount || FRestoreValid <= row ||
        FValid.load(std::memory_order_relaxed) != row + 1)
        return false;
    FValid.store(std::max(row + 1, std::min(FRestoreValid, rowCount)), std::memory_order_release);
    FRestoreRow = -1;
    return true;
}

void TLineStates::Reset(int rowCount) {
    std::lock_guard lock(FMutex);
    FKnownCount = rowCount;
    FRows.clear();
    FFacts.clear();
    FValid.store(0, std::memory_order_release);
    FGeneration.fetch_add(1, std::memory_order_acq_rel);
    FRestoreRow = -1;
}

} // namespace zv
