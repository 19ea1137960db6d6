// Folds on the rows of a store: the result of a fold pass (TFoldTemp), its hand-over to the
// rows' live fold flags, and the fold commands that hide and show rows. A fold has a head row
// and an end row that carry the same number, so its end is found again after edits that
// shift rows. Every function here runs on the thread that owns the store (the main thread).
#pragma once

#include "ZvMemoControl/StyleTypes.h"
#include "ZvMemoControl/WrapRows.h"

#include <cstdint>
#include <vector>

namespace zv {

class TZvMemoStrings;

// One fold found by a pass: head row First, end row Last (First <= Last).
struct TFoldRange {
    std::int32_t First = 0, Last = 0;
    std::int8_t Level = 1;         // nesting depth, 1 for an outermost fold
    TCEListItemType Item = ceNone; // what the code explorer lists it as
    bool Comment = false;          // a run of line comments or a block comment
    bool Region = false;           // a region ([Region] words): Rgn_ flags, not Node flags
    bool EndBefore = false;        // the fold stops on the row above the one that ended it
    bool operator==(const TFoldRange&) const = default;
};

// The temporary attributes of one pass, kept apart from the rows: the painter reads the live
// flag word of a row without a lock, so the background thread never writes it.
// Invariant: Folds sorted by First, then by Last descending (outer before inner); RowCount is
// the store's row count the pass saw.
struct TFoldTemp {
    std::vector<TFoldRange> Folds;
    std::int32_t RowCount = 0;
};

// Takes over a pass's result (UpdateFoldData): every row that is neither hidden nor the head
// of a closed fold or region gets the pass's fold flags, number, ended-fold list, level and
// list item; closed folds keep theirs, so they stay closed over a rebuild. A head keeps the
// number it had when it already was a head; other folds get a new random number. Does
// nothing when `temp` was made for another row count. One walk over the rows; no allocation
// for rows without fold data.
void UpdateFoldData(TZvMemoStrings& lines, const TFoldTemp& temp);
// The same for the rows of `spans` only (sorted, disjoint, inside the store): each gets what
// UpdateFoldData would give it (a fold's number still comes from its head row, written or
// not; only new numbers differ between calls). Returns the first and last row it left alone for
// being hidden or closed (Last < First when none). Work in proportion to the rows of the
// spans plus one look at each fold.
TRowSpan UpdateFoldRows(TZvMemoStrings& lines, const TFoldTemp& temp,
                        const std::vector<TRowSpan>& spans);

// True when the row heads a fold (NodeHead, Rgn_Begin or SelNodeHead).
bool IsFoldHead(const TZvMemoStrings& lines, int row);
bool IsFoldClosed(const TZvMemoStrings& lines, int row);
// The end row of the fold headed by `line` (found by number, going down), or `line` itself
// when there is none.
int GetNodeEndFromTopLine(const TZvMemoStrings& lines, int line);
// The head of the fold ending at `line`, or `line` when none.
int GetNodeTopFromEndLine(const TZvMemoStrings& lines, int line);
// The head of the innermost fold holding `row` (the row itself when it is a head), or -1.
int FoldHeadAround(const TZvMemoStrings& lines, int row);

// Closes (open false) or opens the fold headed by `line`: sets or clears its closed flag and
// hides or shows every row below the head through its end, clearing closed flags there (an
// inner closed fold comes back open). False when `line` heads no fold that reaches below it.
bool ToggleNode(TZvMemoStrings& lines, int line, bool open);
// Closes every outermost open fold (inner ones stay open inside); returns how many.
int CloseAllNodes(TZvMemoStrings& lines);
// Opens every closed fold: no row stays hidden. Returns how many rows were shown.
int OpenAllNodes(TZvMemoStrings& lines);
// Closes every fold of nesting `level` (1 outermost) that is not inside a closed one.
int CloseNodesOfLevel(TZvMemoStrings& lines, int level);
// Opens the closed fold whose head is the nearest head at or above `row` that is visible.
bool OpenNearestNode(TZvMemoStrings& lines, int row);
// Closes the fold around `row` (its own when it is a head); false when none or closed.
bool CloseNearestNode(TZvMemoStrings& lines, int row);
// Closes, inside the fold or region headed by `line`, every outermost open fold and region
// (`regionsOnly`: `line` must head a region, and only regions close); folds inside those stay
// open. Returns how many it closed; 0 when `line` heads no fold (or, with `regionsOnly`, no
// region).
int CloseNestedNodes(TZvMemoStrings& lines, int line, bool regionsOnly);
// The head of the innermost region holding `row` (the row itself when it begins one), or -1.
int RegionHeadAround(const TZvMemoStrings& lines, int row);

// Selection folds, made by the user and left alone by the fold pass. SelNodesAdd makes rows
// `first`..`last` one (head and end share a new number); false when last <= first or a row
// there already heads or ends a selection fold. SelNodesRemove removes the one whose head is
// the nearest selection head at or above `line`, opening it first; false when none.
bool SelNodesAdd(TZvMemoStrings& lines, int first, int last);
bool SelNodesRemove(TZvMemoStrings& lines, int line);

// For a hidden row: opens the closed folds above it until it shows. Returns true when it
// opened any.
bool OpenNodesOnHiddenLine(TZvMemoStrings& lines, int row);

} // namespace zv
