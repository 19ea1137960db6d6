// The hand-over of fold passes from the background thread to the main thread.
#include "syntax/FoldKeeper.h"

#include "ZvMemoControl/ZvMemoStrings.h"
#include "syntax/LineScanner.h"

namespace zv {

void TFoldKeeper::SetOptions(const TFoldPassOptions& options) {
    std::lock_guard lock(FMutex);
    FOptions = options;
}

bool TFoldKeeper::RunPass(TLineScanner& scanner, const std::atomic<bool>& halt) {
    // No edit can happen while the thread reads rows, so the count read now is the one the
    // pass sees to its end.
    const std::uint64_t edits = FEdits.load(std::memory_order_acquire);
    TFoldPassOptions options;
    {
        std::lock_guard lock(FMutex);
        options = FOptions;
    }
    if (!RunFoldPass(scanner, options, FWork, true, &halt))
        return false;
    std::shared_ptr<const TCodeStructure> structure;
    if (FWantStructure.load(std::memory_order_acquire)) {
        structure = BuildCodeStructure(scanner.Store(), scanner.Context(), true, &halt, &FWork);
        if (!structure)
            return false;
    }
    std::lock_guard lock(FMutex);
    std::swap(FPending, FWork);
    FPendingStructure = std::move(structure);
    FPendingEdits = edits;
    FHasPending = true;
    return true;
}

bool TFoldKeeper::Apply(TZvMemoStrings& lines) {
    std::lock_guard lock(FMutex);
    if (!FHasPending)
        return false;
    FHasPending = false;
    if (FPendingEdits != FEdits.load(std::memory_order_acquire) ||
        FPending.RowCount != lines.Count())
        return false;
    FHandOver.Apply(lines, FPending);
    if (FPendingStructure)
        FStructure = std::move(FPendingStructure);
    return true;
}

bool TFoldKeeper::Pending() const {
    std::lock_guard lock(FMutex);
    return FHasPending;
}

} // namespace zv
