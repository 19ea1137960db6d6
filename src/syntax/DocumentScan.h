// TDocumentScan: what ties one document's rows to its syntax: the scan context over the
// document's style host, the line scanner with its stored row states, and the background
// thread (20 ms tick) that sweeps the rows. It is the document's reader of the rows, so
// every view of the document shares it, and the document's one edit path drives it:
//
//   PauseReading   -> the thread is paused (handshake: it has stopped reading rows)
//   rows change, undo record
//   RowsChanged    -> TLineScanner::ClearLineStylesFrom(first row touched); a one-row edit
//                     rescans its row (InvalidateLine) and says what to repaint, a structural
//                     edit repaints from its first row on
//   ResumeReading  -> the thread reads rows again
//
// Rows the thread has not reached are coloured by the painter from the nearest stored state
// (GetUpStyle); the thread reports the rows it stores to every view so each repaints them.
#pragma once

#include "ZvMemoControl/MemoStyleHost.h"
#include "ZvMemoControl/TextChange.h"
#include "syntax/BackgroundThread.h"
#include "syntax/ColourWalk.h"
#include "syntax/FoldKeeper.h"

#include <memory>
#include <mutex>
#include <vector>

namespace zv {

// A view of the scanned document, as the background thread sees it. Each call comes on the
// background thread (see IBackgroundHost): post work, never wait for the main thread.
class IScanObserver {
public:
    virtual ~IScanObserver() = default;
    virtual bool ScanVisible() const = 0; // the view is shown
    virtual bool ScanBusy() const = 0;    // a key is held down in it
    // Rows from `first` on got new end states.
    virtual void RowsScanned(int first) = 0;
    // A fold pass is done: post a call of TDocumentScan::ApplyFolds to the main thread.
    virtual void FoldsReady() {}
};

class TDocumentScan final : public ITextReader {
public:
    // `store` must outlive the object; the host is kept alive by it. The thread is made but
    // not started (Start).
    TDocumentScan(const TZvMemoStrings& store, std::shared_ptr<const TMemoStyleHost> host,
                  TScanOptions options, TBackgroundTiming timing = {});
    // Stops the thread and waits for it before the scanner goes.
    ~TDocumentScan() override;
    TDocumentScan(const TDocumentScan&) = delete;
    TDocumentScan& operator=(const TDocumentScan&) = delete;

    // Starts the thread; its first folds come once the rows are swept.
    void Start() {
        FThread.RequestFolds();
        FThread.SuspendThread(false);
    }
    // Any thread. An observer must be removed before it goes; once RemoveObserver returns,
    // the thread calls it no more.
    void AddObserver(IScanObserver* observer);
    void RemoveObserver(IScanObserver* observer);

    // ITextReader: nested pause handshake; what a change makes stale.
    void PauseReading() override { FThread.SuspendThread(true); }
    void ResumeReading() override { FThread.SuspendThread(false); }
    TRowRange RowsChanged(const TTextChange& change) override;
    bool InCommentOrString(TZvPos pos) const override;

    TLineScanner& Scanner() { return FScanner; }
    const TLineScanner& Scanner() const { return FScanner; }
    TBackgroundThread& Thread() { return FThread; }
    const TScanContext& Context() const { return FCtx; }
    const TMemoStyleHost& Host() const { return *FHost; }
    const std::shared_ptr<const TMemoStyleHost>& SharedHost() const { return FHost; }
    // Main thread: hands a finished fold pass to the rows (the reader paused meanwhile);
    // true when the rows' folds changed.
    bool ApplyFolds(TZvMemoStrings& lines);
    TFoldKeeper& Folds() { return FFolds; }
    // Any thread: fold passes from now on build the code explorer's structure too; the first
    // time, a pass is asked for at once.
    void WantStructure() {
        if (!FFolds.WantStructure(true))
            FThread.RequestFolds();
    }
    // The document's own style set (null for plain text).
    const TZvCustomMemoStyles* Styles() const { return FHost->FStyles.get(); }

private:
    // The thread's host: what all observers together say.
    struct TObservers final : IBackgroundHost {
        bool Visible() const override;
        bool Busy() const override;
        void RowsScanned(int first, int last) override;
        void RunTask(TBackgroundTask task, bool fullScan) override;
        TDocumentScan* Owner = nullptr;
        mutable std::mutex Lock;
        std::vector<IScanObserver*> List; // guarded by Lock
    };

    std::shared_ptr<const TMemoStyleHost> FHost;
    TScanContext FCtx;
    mutable TLineScanner FScanner; // token queries cache in it
    void RunFoldPass();            // background thread
    TFoldKeeper FFolds;
    TObservers FObservers;
    TBackgroundThread FThread; // last: it goes first
};

} // namespace zv
