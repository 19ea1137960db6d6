// TEditText: a piece of text as edits and undo records hold it: rows that share the line
// store's copy-on-write buffers, and the line end between each two rows. Moving a million
// rows into an undo record copies handles, not characters. Also TZvPos, a caret position.
#pragma once

#include "ZvMemoControl/RowText.h"

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// A position: column (0-based UTF-16 unit, may lie past the row's end) and row.
struct TZvPos {
    std::int32_t X = 0;
    std::int32_t Y = 0;
    // Row first, then column: document order.
    auto operator<=>(const TZvPos& o) const { return Y != o.Y ? Y <=> o.Y : X <=> o.X; }
    bool operator==(const TZvPos&) const = default;
};

// How a line end inside an edit text is written into the store.
enum TLineEnd : std::uint8_t {
    leCRLF,
    leLF,
    leCR,
    leDocument, // the document's own kind (typed or pasted text)
    leWrap      // no line end: the next row continues the same line (a cut long line)
};

class TEditText {
public:
    // One empty row.
    TEditText() : Rows(1) {}
    // Splits at CR LF, CR and LF. With `documentEnds` every line end becomes leDocument;
    // otherwise each keeps its kind, so the text goes back byte for byte.
    static TEditText FromString(std::u16string_view s, bool documentEnds);
    // The text with each line end written out (leDocument as CR LF, leWrap as nothing).
    std::u16string ToString() const;
    // The text with LF for every line end, leWrap joining its rows (the clipboard's form).
    std::u16string ToLfString() const;

    int BreakCount() const { return static_cast<int>(Ends.size()); }
    bool Empty() const { return Ends.empty() && Rows.front().Empty(); }
    // Units of text, each line end counting as its written length.
    std::size_t Length() const;
    // Where the text ends when it is inserted at row position `at`.
    TZvPos EndFrom(TZvPos at) const;
    // The same for an unwrapped position (logical line, column in the line): a continuation
    // (leWrap) keeps the line and adds its row to the column.
    TZvPos LineEndFrom(TZvPos at) const;
    // Joins `other` behind this text (its first row continues our last) or in front.
    void Append(const TEditText& other);
    void Prepend(const TEditText& other);
    // The first `n` units of the text as one string (for action texts); breaks as CR LF.
    std::u16string Head(std::size_t n) const;

    // Invariant: Rows.size() == Ends.size() + 1, never empty.
    std::vector<TRowText> Rows;
    std::vector<TLineEnd> Ends;
};

} // namespace zv
