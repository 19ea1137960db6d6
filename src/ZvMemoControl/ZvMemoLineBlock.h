// The lines a line command works on: read from the store as logical lines (a cut or wrapped
// line's rows joined), changed by the command as a list, and written back as one change of
// the control, so one undo step whatever the number of lines. Unchanged lines share the
// store's row buffers; new texts are packed into shared arenas, not one block per line.
#pragma once

#include "ZvMemoControl/ZvMemoEditText.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

class TZvMemo;
class TUndo;
class TSelUndo;

// Builds row texts in large shared buffers. Rows it hands out stay valid after it is gone.
class TRowArena {
public:
    TRowArena() = default;
    TRowArena(const TRowArena&) = delete;
    TRowArena& operator=(const TRowArena&) = delete;
    ~TRowArena();
    TRowText Add(std::u16string_view text);

private:
    TTextChunk* FChunk = nullptr; // holds one reference while it is being filled
    std::uint32_t FUsed = 0;
};

// Logical lines with the line end between each two. Invariant: Ends.size() + 1 ==
// Lines.size(), or both empty (no line at all).
struct TLineList {
    std::vector<TRowText> Lines;
    std::vector<TLineEnd> Ends; // Ends[i] stands between Lines[i] and Lines[i + 1]
    int Count() const { return static_cast<int>(Lines.size()); }
    std::u16string_view Text(int i) const { return Lines[static_cast<std::size_t>(i)].View(); }
    // Appends a line; `endBefore` is ignored for the first one.
    void Add(TRowText line, TLineEnd endBefore);
};

// A block of whole logical lines of the store.
struct TLineBlock {
    int FirstRow = 0; // first row of the first line
    TLineList Old;
    // First row of each line (and one past the last row at the end), to map lines to rows.
    std::vector<int> LineRows;
};

// Rows the command works on: the lines the selection touches (a selection that ends at
// column 0 of a later row leaves that row out), or without a selection the whole document
// but the empty row behind a final line end (`caretLineOnly`: the caret's line). Both ends
// are widened to whole logical lines.
void CommandRows(const TZvMemo& memo, bool caretLineOnly, int& first, int& last);

// Reads rows first..last (whole logical lines) of the control's store.
TLineBlock ReadLines(const TZvMemo& memo, int first, int last);

// Writes `result` over the block's lines as one change carrying `record` (one undo step);
// a changed line becomes one row. Lines equal at both ends of the block are left out of the
// change. Returns the rows the block takes afterwards, or -1, with nothing recorded, when the
// result equals the block. The caret lands behind the change.
int WriteLines(TZvMemo& memo, const TLineBlock& block, const TLineList& result,
               std::unique_ptr<TUndo> record);

// After a command on rows first..first+rows-1: selects those lines whole when `select`,
// else puts the caret at `caret` clipped to the text.
void SelectLines(TZvMemo& memo, int first, int rows, bool select, TZvPos caret);

// Whether a command may change the text now: not read-only, not the hex view, and the
// application's edit test agrees.
bool MayChangeText(const TZvMemo& memo);

// The body of a line command: fills `result` from `lines` (the lines it works on).
using TLineEdit = std::function<void(const TLineList& lines, TLineList& result)>;

// Runs a line command on rows first..last (whole logical lines): `edit` makes the result from
// the lines, which is written as one step recorded by `record` (with the selection as it
// was). Returns the rows the lines take afterwards, or -1 when refused or nothing changed.
int RunLineCommandOn(TZvMemo& memo, int first, int last, std::unique_ptr<TSelUndo> record,
                     const TLineEdit& edit);

// The same on the command's rows (CommandRows); a selection afterwards covers the changed
// lines whole, without one the caret stays where it was. False when refused or unchanged.
bool RunLineCommand(TZvMemo& memo, bool caretLineOnly, std::unique_ptr<TSelUndo> record,
                    const TLineEdit& edit);

// The result of changing every line on its own: `map` writes a line's new text into `out`
// (cleared before) and says whether it differs. Unchanged lines stay shared.
using TLineMap = std::function<bool(std::u16string_view line, std::u16string& out)>;
void MapLines(const TLineList& lines, TLineList& result, const TLineMap& map);

} // namespace zv
