// TFoldKeeper: the fold pass of one document between its two threads. The background thread
// runs the pass and leaves the result here; the main thread takes it and hands it to the
// rows in one step (TFoldHandOver: only the rows whose folds can have changed), unless the text
// changed since the pass began: then the result is dropped and the next pass, which every edit asks
// for, brings the right one. When asked to, each pass also builds the code explorer's structure of
// the same text, handed over with the folds.
#pragma once

#include "syntax/CodeStructure.h"
#include "syntax/FoldHandOver.h"
#include "syntax/FoldPass.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace zv {

class TZvMemoStrings;

class TFoldKeeper {
public:
    // Main thread, inside the edit path (the reader paused): the rows changed.
    void Edited(const TTextChange& change) {
        FEdits.fetch_add(1, std::memory_order_acq_rel);
        FHandOver.Edited(change);
    }
    // Any thread: the options of the passes from now on.
    void SetOptions(const TFoldPassOptions& options);

    // Background thread, with its read permission, every row state valid: runs the pass.
    // False when `halt` stopped it (nothing is kept; ask for another pass).
    bool RunPass(TLineScanner& scanner, const std::atomic<bool>& halt);

    // Any thread: passes from now on build the structure too (true) or not. True when it
    // was asked before.
    bool WantStructure(bool want) { return FWantStructure.exchange(want); }

    // Main thread, with the reader paused: hands the waiting result, if it is still about
    // this text, to the rows of `lines`. True when it did.
    bool Apply(TZvMemoStrings& lines);
    // Main thread: the structure handed over with the last applied pass (null before one
    // built it). Its rows are those of that pass's text.
    const std::shared_ptr<const TCodeStructure>& Structure() const { return FStructure; }
    // Main thread: how many rows the last hand-over wrote (or skipped as hidden or closed).
    int RowsHandedOver() const { return FHandOver.RowsWritten(); }
    // True when a result waits.
    bool Pending() const;

private:
    mutable std::mutex FMutex;
    TFoldPassOptions FOptions;       // guarded by FMutex
    TFoldTemp FPending;              // guarded by FMutex
    std::uint64_t FPendingEdits = 0; // guarded by FMutex: FEdits when the pass began
    bool FHasPending = false;        // guarded by FMutex
    std::shared_ptr<const TCodeStructure> FPendingStructure; // guarded by FMutex
    std::shared_ptr<const TCodeStructure> FStructure;        // main thread only
    TFoldHandOver FHandOver;                                 // main thread only
    std::atomic<std::uint64_t> FEdits{0};
    std::atomic<bool> FWantStructure{false};
    TFoldTemp FWork; // the thread's own: the pass being made
};

} // namespace zv
