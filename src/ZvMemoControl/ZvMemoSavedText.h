// TSavedText: tells whether a store's text differs from the text it had when it was last
// saved, exactly and cheaply. Only the rows of a window that may differ are kept from the
// saved text; above and below the window both texts are known to be the same rows. A window
// that would pass kMaxWindowRows is given up (Overflowed): the owner then answers from the
// undo position until the text is known to be the saved one again (Reset).
#pragma once

#include "ZvMemoControl/RowText.h"

#include <cstddef>
#include <cstdint>
#include <deque>

namespace zv {

class TZvMemoStrings;

class TSavedText {
public:
    // The store's current text is the saved text.
    void Reset(const TZvMemoStrings& lines);
    // Call before rows [first, last] of the store are replaced (rows may be added or removed
    // there; rows added past the end count as replacing the last row). Keeps the saved form
    // of every row that enters the window.
    void BeforeChange(const TZvMemoStrings& lines, int first, int last);
    // Call after that change: compares the rows at the window's edges with the saved ones and
    // narrows the window while they agree; a window whose rows make the saved text cut at
    // other places closes. Costs the length of the rows changed and compared, and a pass
    // over the window only when its text is as long as the saved one's.
    void AfterChange(const TZvMemoStrings& lines);
    // The text (rows, with the line end or continuation before each) is not the saved text.
    // Meaningless while Overflowed().
    bool Differs() const { return FForced || !FMid.empty() || FTop + FTail != FRows; }
    // Counts as differing until the next Reset (e.g. the encoding changed).
    void Force() { FForced = true; }
    bool Overflowed() const { return FOverflowed; }

    // Saved rows kept at most: 24 bytes each.
    static constexpr int kMaxWindowRows = 1 << 20;

private:
    // A saved row: its text and what stands before it (see Break()).
    struct TSavedRow {
        TRowText Text;
        std::uint8_t Break;
    };
    static int Rows(const TZvMemoStrings& lines);
    static std::uint8_t Break(const TZvMemoStrings& lines, int row);
    // The units a row adds to the window's text written out: its own and the line end
    // before it (a continuation has none).
    static std::size_t Units(std::uint8_t brk, std::size_t length) {
        return length + (brk != 1 ? 2 : 0);
    }
    static std::size_t Units(const TZvMemoStrings& lines, int row);
    static std::size_t Units(const TSavedRow& saved) {
        return Units(saved.Break, saved.Text.Length());
    }
    static bool Same(const TZvMemoStrings& lines, int row, const TSavedRow& saved, int savedRow);
    TSavedRow Take(const TZvMemoStrings& lines, int row) const;
    void SettleCuts(const TZvMemoStrings& lines);

    // Invariants: rows [0, FTop) of the store are the saved rows [0, FTop); its last FTail
    // rows are the saved text's last FTail rows; FMid holds the saved rows in between, so
    // the saved text has FTop + FMid.size() + FTail rows; FTop + FTail <= FRows.
    std::deque<TSavedRow> FMid;
    int FTop = 1; // a new control: its one empty row is the saved text
    int FTail = 0;
    int FRows = 1; // the store's rows (an empty store counts as one empty row)
    bool FForced = false;
    bool FOverflowed = false;
    // Units of the window's text now and as saved, kept in step with each change so that a
    // change costs its own rows, not the window's (edits in a block of many rows).
    std::size_t FNowUnits = 0, FThenUnits = 0;
    // The rows the change under way replaces, and the store's rows before it.
    int FChangeFirst = 0, FChangeLast = -1, FRowsBefore = 1;
};

} // namespace zv
