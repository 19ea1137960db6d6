// TEditorScan: what ties one editor's rows to its syntax: the scan context over the
// document's style host, the line scanner with its stored row states, and the background
// thread (20 ms tick) that sweeps the rows. TEditorMemo: the editing control of the widget,
// which drives the scanner through the control's one change sequence:
//
//   BeforeChange        -> the thread is paused (handshake: it has stopped reading rows)
//   rows change, undo record
//   LineChanged(first)  -> remembered
//   ClearLineStylesFrom -> TLineScanner::ClearLineStylesFrom(first row touched)
//   FOnInvalidate       -> one-row edit: TLineScanner::InvalidateLine(first) says what to
//                          repaint; a structural edit repaints from `first` on
//   FOnChange           -> the thread resumes
//
// Rows the thread has not reached are coloured by the painter from the nearest stored state
// (GetUpStyle); the thread reports the rows it stores so the widget repaints them.
#pragma once

#include "ZvMemoControl/MemoStyleHost.h"
#include "ZvMemoControl/ZvMemo.h"
#include "syntax/BackgroundThread.h"
#include "syntax/ColourWalk.h"

#include <memory>

namespace zv {

class TEditorScan {
public:
    // `store` must outlive the object; the host is kept alive by it. The thread is made but
    // not started (Start).
    TEditorScan(const TZvMemoStrings& store, std::shared_ptr<const TMemoStyleHost> host,
                TScanOptions options, TBackgroundCallbacks callbacks,
                TBackgroundTiming timing = {});
    // Stops the thread and waits for it before the scanner goes.
    ~TEditorScan();
    TEditorScan(const TEditorScan&) = delete;
    TEditorScan& operator=(const TEditorScan&) = delete;

    void Start() { FThread.SuspendThread(false); }
    // Nested pause handshake: Pause returns once the thread no longer reads rows.
    void Pause() { FThread.SuspendThread(true); }
    void Resume() { FThread.SuspendThread(false); }

    TLineScanner& Scanner() { return FScanner; }
    const TLineScanner& Scanner() const { return FScanner; }
    TBackgroundThread& Thread() { return FThread; }
    const TScanContext& Context() const { return FCtx; }
    const TMemoStyleHost& Host() const { return *FHost; }
    // The document's own style set (null for plain text).
    const TZvCustomMemoStyles* Styles() const { return FHost->FStyles.get(); }

private:
    std::shared_ptr<const TMemoStyleHost> FHost;
    TScanContext FCtx;
    TLineScanner FScanner;
    TBackgroundCallbacks FCallbacks;
    TBackgroundThread FThread; // last: it goes first
};

// The widget's editing control: the scanner hooks of the change sequence.
class TEditorMemo : public TZvMemo {
public:
    using TZvMemo::TZvMemo;

    // The scan to drive; null detaches (no syntax). Resumes a pause still held.
    void SetScan(TEditorScan* scan);
    TEditorScan* Scan() const { return FScan; }

    // Called by the widget for FOnInvalidate: scans an edited row and returns the rows to
    // repaint ({first, -1}: to the end).
    TRedrawRange Invalidated(int first, int last);
    // Ends the pause the last change took (FOnChange, or after a command as a safety net).
    void ResumeScan();
    bool ScanPaused() const { return FPaused; }

    void BeforeChange() override;
    void LineChanged(int row) override;
    void ClearLineStylesFrom(int row) override;
    bool InCommentOrString(TZvPos pos) const override;

private:
    TEditorScan* FScan = nullptr;
    bool FPaused = false;
    int FChangedRow = -1; // first row of the change in progress
    int FClearedRow = -1; // the row the last change cleared states from, until Invalidated
};

} // namespace zv
