// TTextChange: what one change of a document's text did, as the edit path tells every
// listener (the other views, the scanner, and later marks, search hits and the language
// server), so that each can move its own positions instead of being told only "rows changed".
#pragma once

#include "ZvMemoControl/ZvMemoEditText.h"

#include <cstdint>

namespace zv {

// Rows to repaint after a change: [First, Last]; Last -1 means to the end of the text.
struct TRowRange {
    int First = 0;
    int Last = -1;
};

// Positions are rows and columns of the store (continuation rows count as rows).
struct TTextChange {
    TZvPos From;                         // where the change starts (same before and after)
    TZvPos RemovedEnd;                   // end of the replaced range in the text before
    TZvPos InsertedEnd;                  // end of the inserted text in the text after
    const TEditText* Inserted = nullptr; // valid only during the call that reports it
    std::int64_t RemovedLength = 0;      // units removed, each line end counting 1
    std::int64_t InsertedLength = 0;     // units inserted, each line end counting 1
    int RowsAdded = 0;                   // rows after minus rows before (may be negative)
    std::uint64_t Revision = 0;          // the document's revision after the change
    bool Replay = false;                 // an undo or redo step
    bool FromFile = false;               // text the file grew by (a followed log), not an edit

    // A one-row change that moved no row.
    bool InOneRow() const { return From.Y == RemovedEnd.Y && From.Y == InsertedEnd.Y; }
};

// Where `p` (a position in the text before `change`) stands after it. A position inside the
// replaced range goes to the start of the change, or with `stickToEnd` to the end of the
// inserted text; a position at the change's start stays before inserted text unless
// `stickToEnd`. Columns past a row's end keep their distance.
TZvPos MapPosition(TZvPos p, const TTextChange& change, bool stickToEnd = false);

// A listener of one document's changes. Called on the main thread, after the rows changed
// and the background reader has taken note; `redraw` is the rows whose look may have
// changed. The view that made the change hears of it too (its caret is already mapped).
class ITextListener {
public:
    virtual ~ITextListener() = default;
    virtual void TextChanged(const TTextChange& change, TRowRange redraw) = 0;
    // The store was replaced (a reload) or its reader (the scanner) replaced or dropped:
    // positions start anew, scanners attach again.
    virtual void DocumentReset() {}
    // The rows are about to be cut anew (word wrap switched or laid out again) with the text
    // unchanged; DocumentReset follows. A view may note its places as unwrapped positions.
    virtual void RelayoutComing() {}
    // The text began or stopped differing from the saved text.
    virtual void ModifiedChanged(bool /*modified*/) {}
    // The undo list changed (can-undo or can-redo may differ).
    virtual void UndoChanged() {}
};

// The reader of the rows on another thread (the scanner's sweep). The document pauses it
// around each change of the rows (the store's row writes take no lock) and tells it what
// changed before any view repaints.
class ITextReader {
public:
    virtual ~ITextReader() = default;
    // Returns once the reader no longer reads rows; pauses nest.
    virtual void PauseReading() = 0;
    virtual void ResumeReading() = 0;
    // Called while paused, after the rows changed: drops what the change made stale and says
    // which rows to repaint.
    virtual TRowRange RowsChanged(const TTextChange& change) = 0;
    // True when `pos` lies in a comment or string as the reader sees it.
    virtual bool InCommentOrString(TZvPos /*pos*/) const { return false; }
};

} // namespace zv
