// Numbered bookmarks (0-9) and plain line marks: both live on the first row of a logical
// line (its attribute's `Bookmark` and `Linemark`), so they travel with rows that move; the
// edit path asks KeepMarksAcross to carry them over rows a change replaces.
#pragma once

#include "ZvMemoControl/TextChange.h"

#include <vector>

namespace zv {

class TZvMemoStrings;

inline constexpr int kBookmarkCount = 10;

// Toggles bookmark `number` (0-9) on the line of `row`: the line's plain mark goes, the
// number leaves any other row; on a line holding that number it is cleared instead. Rows
// out of range and other numbers do nothing.
void SetBookmark(TZvMemoStrings& lines, int row, int number);
// The bookmark number on the line of `row`, -1 none (or out of range).
int GetBookmark(const TZvMemoStrings& lines, int row);
// The row holding bookmark `number`, -1 when unset or out of 0-9.
int FindBookmark(const TZvMemoStrings& lines, int number);
// Toggles the plain mark on the line of `row`, dropping a bookmark there first.
void ToggleLinemark(TZvMemoStrings& lines, int row);
bool HasLinemark(const TZvMemoStrings& lines, int row);
// Drops every bookmark (`bookmarks`) or every plain mark (otherwise).
void ClearMarks(TZvMemoStrings& lines, bool bookmarks);
// From the row after (`forward`) or before `row`, wrapping once, the first row holding a
// bookmark or plain mark (one ring for both); -1 when there is none. Visits each row at most
// once.
int NextMarkedRow(const TZvMemoStrings& lines, int row, bool forward);

// The marks of the rows an edit of [from, to) replaces, noted before the rows change.
struct TRowMarks {
    int Row = 0;
    int Bookmark = -1;
    bool Linemark = false;
};
std::vector<TRowMarks> NoteMarks(const TZvMemoStrings& lines, int fromRow, int toRow);
// Puts the noted marks back after `change`: the mark of the edited first line stays on it
// unless its whole text moved down (an edit at column 0), marks of removed lines join the
// line that takes their text, and where two meet the one of the line whose text survives
// wins (the upper one for a join).
void KeepMarksAcross(TZvMemoStrings& lines, const std::vector<TRowMarks>& marks,
                     const TTextChange& change);

} // namespace zv
