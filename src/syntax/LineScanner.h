// The line-state scanner of one document: scans rows of the line store, keeps their end
// states, finds the state above any row (the cache walk), and decides after an edit how far
// the colours below have changed. Main-thread calls and the background sweep share one
// TLineStates; the sweep reads rows only while the editor lets it (see TBackgroundThread).
#pragma once

#include "ZvMemoControl/ZvMemoStrings.h"
#include "syntax/LineStates.h"
#include "syntax/RowScanner.h"

#include <atomic>
#include <functional>

namespace zv {

// Rows an edit needs redrawn: [First, Last], Last -1 meaning to the end of the document.
struct TRedrawRange {
    int First = 0;
    int Last = -1;
    bool operator==(const TRedrawRange&) const = default;
};

class TLineScanner {
public:
    // `store` and `ctx` must outlive the scanner. Rows are read directly on the main thread
    // and under the store's lock from the sweep.
    TLineScanner(const TZvMemoStrings& store, const TScanContext& ctx);

    const TScanContext& Context() const { return FCtx; }
    const TZvMemoStrings& Store() const { return FStore; }
    TLineStates& States() { return FStates; }
    const TLineStates& States() const { return FStates; }

    // Scans row `line` from `state`. fromX 0 with toX -1 is a full-row scan (end-of-row rule
    // applied); otherwise units up to toX (1-based, clamped; toX 0 returns at once). `sink`
    // receives the runs; `facts`, on a full-row scan, the row's facts. Returns false when
    // `halt` stopped it.
    bool GetUpLineStyleFromThread(int line, int fromX, int toX, TStyle& state, IRunSink* sink,
                                  bool fromThread, const std::atomic<bool>* halt = nullptr,
                                  TRowFacts* facts = nullptr);
    bool GetUpLineStyle(int line, int fromX, int toX, TStyle& state, IRunSink* sink = nullptr) {
        return GetUpLineStyleFromThread(line, fromX, toX, state, sink, false);
    }

    // The state at the end of `line` (clear state for a negative line). Missing states above
    // are computed: from the nearest valid row, or, when more than 100 rows up no valid one
    // was met, from a blank row with a clear state (such states are used but not stored).
    // Main thread only.
    TStyle GetUpStyle(int line);

    // The facts of row `line` (braces, indent, to-do) into `facts`. Rows from the first
    // invalid one down to `line` are scanned and stored first, from the state above them and
    // without the blank-row cut, so the facts are exact; that scan is paid once. False for a
    // row outside the store or a document without syntax. Main thread.
    bool GetRowFacts(int line, TRowFacts& facts);

    // The stored record of `line`; `valid` tells whether it can be trusted.
    TStyle GetLineStyle(int line, bool& valid) const;

    // Every row from `line` on needs a rescan (a negative line counts as 0).
    void ClearLineStylesFrom(int line);

    // After an edit of row `line`: rescans it from the state above and compares the whole
    // end state with the one it had. Unchanged: only the row is redrawn and the rows below
    // keep their states. Changed: every row below is invalid and redrawn.
    TRedrawRange InvalidateLine(int line);

    // Scans rows from the first invalid one to the end, storing each, for the sweep. Returns
    // true when every row is valid, false when `halt` stopped it. An invalidation during the
    // pass lowers the watermark and the pass goes on from there, so no request is lost. A
    // document over 5,000 rows yields 1 ms every 500 rows. `scanned`, when given, is told the
    // stored rows in batches (first, last; at most kSweepReportRows rows, and whatever was
    // stored when the pass ends or yields), never once per row. `yield`, when given, replaces
    // the 1 ms sleep: it may let others change the store meanwhile (every row count, state
    // and watermark is read again after it) and returns false to end the pass as halted.
    bool Sweep(const std::atomic<bool>& halt,
               const std::function<void(int first, int last)>& scanned = {},
               const std::function<bool()>& yield = {});
    static constexpr int kSweepReportRows = 4096;

    // Units of the next row a row of a cut line reads ahead (a token may run into them).
    static constexpr int kCutReadAhead = 256;

    // True when every row holds a valid state.
    bool Complete() const { return FStates.ValidRows() >= FStore.Count(); }

private:
    bool NextIsWrapped(int line) const;
    // Rows of a cut line (CutRowScan.cpp): the row is read with the head of the next one, so
    // a token runs across the cut, and begins where the token from the row above ended.
    struct TCarry {
        int Row = -1;          // the row whose token ran into Row + 1
        std::uint64_t Key = 0; // the store revision (main) or state generation (sweep)
        int Units = 0;         // units of Row + 1 that token covers
        TRunInfo Info;         // what they are
    };
    bool ScanCutRow(int line, TScanRequest& request, TStyle& state, bool fromThread, int depth = 0);
    int CarryInto(int line, bool fromThread, TRunInfo& info, int depth);
    // The main thread keeps the carries of the rows it scanned last (slot: row mod size),
    // dropped from the first row an edit touches on (ClearLineStylesFrom); the sweep keeps
    // its last one for its state generation.
    static constexpr int kMainCarries = 64;
    TCarry FMainCarries[kMainCarries];
    TCarry FThreadCarry;
    std::u16string FMainJoin, FThreadJoin;
    TScanScratch FMainScratch, FThreadScratch;
    const TZvMemoStrings& FStore;
    const TScanContext& FCtx;
    TLineStates FStates;
};

} // namespace zv
