// The document's scan: its reader side of the edit path and its observers.
#include "syntax/DocumentScan.h"

#include "ZvMemoControl/WrapRows.h"

#include <algorithm>

namespace zv {

TDocumentScan::TDocumentScan(const TZvMemoStrings& store,
                             std::shared_ptr<const TMemoStyleHost> host, TScanOptions options,
                             TBackgroundTiming timing)
    : FHost(std::move(host)), FCtx(*FHost, options), FScanner(store, FCtx),
      FThread(FScanner, FObservers, timing) {
    FObservers.Owner = this;
}

TDocumentScan::~TDocumentScan() {
    FThread.StopBackgroundThread(true);
}

void TDocumentScan::AddObserver(IScanObserver* observer) {
    std::lock_guard lock(FObservers.Lock);
    if (std::find(FObservers.List.begin(), FObservers.List.end(), observer) ==
        FObservers.List.end())
        FObservers.List.push_back(observer);
}

void TDocumentScan::RemoveObserver(IScanObserver* observer) {
    std::lock_guard lock(FObservers.Lock);
    std::erase(FObservers.List, observer);
}

bool TDocumentScan::TObservers::Visible() const {
    std::lock_guard lock(Lock);
    return std::any_of(List.begin(), List.end(), [](auto* o) { return o->ScanVisible(); });
}

bool TDocumentScan::TObservers::Busy() const {
    std::lock_guard lock(Lock);
    return std::any_of(List.begin(), List.end(), [](auto* o) { return o->ScanBusy(); });
}

void TDocumentScan::TObservers::RowsScanned(int first, int) {
    std::lock_guard lock(Lock);
    for (IScanObserver* o : List)
        o->RowsScanned(first);
}

void TDocumentScan::TObservers::RunTask(TBackgroundTask task, bool) {
    if (task == TBackgroundTask::Folds || task == TBackgroundTask::FullScan)
        Owner->RunFoldPass();
}

void TDocumentScan::RunFoldPass() {
    // The pass needs every row's state; an unfinished sweep or a pause asks again.
    if (!FScanner.Complete() || !FFolds.RunPass(FScanner, FThread.HaltFlag())) {
        FThread.RequestFolds();
        return;
    }
    std::lock_guard lock(FObservers.Lock);
    for (IScanObserver* o : FObservers.List)
        o->FoldsReady();
}

bool TDocumentScan::ApplyFolds(TZvMemoStrings& lines) {
    PauseReading();
    const bool applied = FFolds.Apply(lines);
    ResumeReading();
    return applied;
}

TRowRange TDocumentScan::RowsChanged(const TTextChange& change) {
    FFolds.Edited(change);
    FThread.RequestFolds();
    // The states of rows above the first row touched stay right unless a wrapped row
    // continues into it.
    const int first = change.From.Y;
    const TZvMemoStrings& store = FScanner.Store();
    // A row of a cut line reads the head of the next row: an edit within that head changes
    // the end of the row above, and one near the row's end what the next row begins with.
    const int reach = TLineScanner::kCutReadAhead;
    const TZvPos end = change.InsertedEnd;
    // (The row above may have read ahead into this one, or stopped being cut by the edit.)
    const bool nearHead = first > 0 && RowsAreCut(store.Memo()) && change.From.X < reach;
    const bool nearTail =
        store.IsLineWrapped(end.Y + 1) && store.GetLineLength(end.Y) - end.X < reach;
    const int cleared = FCtx.Options().FWordWrap || nearHead ? std::max(first - 1, 0) : first;
    FScanner.ClearLineStylesFrom(cleared);
    if (change.InOneRow() && cleared == first && !nearTail) {
        const TRedrawRange range = FScanner.InvalidateLine(first);
        // The next row of the line is painted from this one's end.
        const bool next = range.Last >= 0 && store.IsLineWrapped(first + 1);
        return {range.First, next ? range.Last + 1 : range.Last};
    }
    return {std::min(first, cleared), -1};
}

bool TDocumentScan::InCommentOrString(TZvPos pos) const {
    if (!Styles())
        return false;
    return IsInCommentOrString(FScanner, pos.X, pos.Y);
}

} // namespace zv
