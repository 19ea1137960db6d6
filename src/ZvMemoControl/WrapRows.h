// Cutting logical lines into rows: word wrap at a width (with a search for a break) and the
// forced cut of overlong lines. Keeps the store's row invariant: a logical line is a first
// row followed by `Wrapped` continuation rows whose texts, joined, are the line.
#pragma once

#include <string_view>
#include <vector>

namespace zv {

class TZvMemoStrings;
struct TZvMemoState;

// True when the rows of a logical line may be several (word wrap or a forced cut), outside
// binary mode: carets then stay within rows and a row end before a continuation is a cut.
bool RowsAreCut(const TZvMemoState& state);
// True when word wrap (not only the forced cut) lays the rows out.
bool WordWrapInForce(const TZvMemoState& state);

// How one logical line is cut.
struct TCutRule {
    int Width = 4096;     // units of the first row, at least 1
    int Narrower = 0;     // continuation rows hold this many units less (never below 12)
    bool Absolute = true; // cut exactly at the width, no search for a break
    int TabSize = 0;      // width counts columns, tabs to stops of this from the row's start;
                          // 0: every unit is one column
    // Block comment marks a cut at a break moves before rather than split (shorter than 2
    // units: ignored). They must outlive the rule.
    std::u16string_view CommentStart{}, CommentEnd{};
};
// The rule in force for a line whose first row is `firstRow`.
TCutRule CutRuleFor(const TZvMemoState& state, std::u16string_view firstRow);
// Columns by which row `row` is drawn right of where its first row starts: on a
// continuation row, with word wrap laying out the rows and FIndentWrappedLines, the first
// row's indent (tabs expanded), at most 5; otherwise 0. The cut gives such rows room for it.
int ContinuationIndent(const TZvMemoStrings& lines, int row);
// The lengths of the rows `line` is cut into (one entry, the whole length, when it fits;
// an empty line is one empty row). No row is wider than its width unless it is one unit (or
// one surrogate pair). Without Absolute a cut looks back up to 20 units (less on narrow
// rows) for a break: after a blank or one of ",.:;=)}]>", before one of "({[<"; a comment
// mark the cut would split moves to the next row whole.
void CutLine(std::u16string_view line, const TCutRule& rule, std::vector<int>& lengths);

// A change left rows [first, last]: when one is above the forced limit, or a continuation
// row came in (an undo puts back text that was cut), the forced cut comes into force
// (FForceWrap), as a load of a long line sets it.
void ForceCutIfLong(TZvMemoStrings& lines, int first, int last);
// Rows [First, Last] (inclusive) that a recut may change.
struct TRowSpan {
    int First = 0;
    int Last = -1;
};
// The rows a recut after a change of rows [first, last] may touch: with word wrap the whole
// logical lines, with the forced cut alone those rows and the one after.
TRowSpan RecutSpan(const TZvMemoStrings& lines, int first, int last);
// Recuts `span` (from RecutSpan, before any other change): with word wrap each logical line
// is cut anew by its rule; with the forced cut alone rows above the limit are split and
// empty rows inside a line go; an overlong row splits into even pieces a quarter short of
// the limit. Returns the rows added (may be negative); `touched` tells whether any row
// changed. Positions are the caller's to keep, through unwrapped coordinates.
int Recut(TZvMemoStrings& lines, TRowSpan span, bool& touched);

// Cuts every logical line of the store by the rule in force: with word wrap its layout,
// else the forced cut alone, which joins lines that fit the limit into one row (turning
// wrap off). First rows keep their attributes; continuation rows already there are reused.
// Returns the rows added (negative when rows were joined).
int WrapAll(TZvMemoStrings& lines);

} // namespace zv
