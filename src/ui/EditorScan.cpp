// The editor's scan binding and the scanner hooks of its editing control.
#include "ui/EditorScan.h"

namespace zv {

TEditorScan::TEditorScan(const TZvMemoStrings& store, std::shared_ptr<const TMemoStyleHost> host,
                         TScanOptions options, TBackgroundCallbacks callbacks,
                         TBackgroundTiming timing)
    : FHost(std::move(host)), FCtx(*FHost, options), FScanner(store, FCtx),
      FCallbacks(std::move(callbacks)), FThread(FScanner, FCallbacks, timing) {}

TEditorScan::~TEditorScan() {
    FThread.StopBackgroundThread(true);
}

void TEditorMemo::SetScan(TEditorScan* scan) {
    ResumeScan();
    FScan = scan;
    FChangedRow = FClearedRow = -1;
}

void TEditorMemo::BeforeChange() {
    TZvMemo::BeforeChange();
    if (FScan && !FPaused) {
        FScan->Pause();
        FPaused = true;
    }
}

void TEditorMemo::ResumeScan() {
    if (!FPaused)
        return;
    FPaused = false;
    if (FScan)
        FScan->Resume();
}

void TEditorMemo::LineChanged(int row) {
    TZvMemo::LineChanged(row);
    FChangedRow = row;
}

void TEditorMemo::ClearLineStylesFrom(int row) {
    TZvMemo::ClearLineStylesFrom(row);
    if (!FScan)
        return;
    // The control asks from the row above the edit; the states of rows above the first row
    // touched stay right unless a wrapped row continues into it.
    int first = FChangedRow >= 0 ? FChangedRow : row;
    if (FScan->Context().Options().FWordWrap)
        first = std::min(first, row);
    FScan->Scanner().ClearLineStylesFrom(first);
    FClearedRow = first;
    FChangedRow = -1;
}

TRedrawRange TEditorMemo::Invalidated(int first, int last) {
    const int cleared = FClearedRow;
    FClearedRow = -1;
    if (!FScan || cleared < 0)
        return {first, last};
    if (last == first && cleared == first)
        return FScan->Scanner().InvalidateLine(first);
    return {std::min(first, cleared), -1};
}

bool TEditorMemo::InCommentOrString(TZvPos pos) const {
    if (!FScan || !FScan->Styles())
        return false;
    return IsInCommentOrString(FScan->Scanner(), pos.X, pos.Y);
}

} // namespace zv
