// The control's adapter over the line store: reading a range of rows as an edit text (rows
// shared, not copied) and replacing a range by an edit text with the row array moved once.
#pragma once

#include "ZvMemoControl/ZvMemoEditText.h"

namespace zv {

class TZvMemoStrings;

// The text of [from, to) with each line end as the store has it. Positions must lie in the
// text (from <= to, columns at most the row's length). Whole rows share their buffers.
TEditText ExtractText(const TZvMemoStrings& lines, TZvPos from, TZvPos to);

// Replaces [from, to) by `text` and returns where the inserted text ends. Rows in between
// are reused, added or removed with one block move; rows that begin inside the new text get
// fresh attributes whose line-end bits follow `text` (leDocument: the document's kind).
// Positions must lie in the text.
TZvPos ReplaceText(TZvMemoStrings& lines, TZvPos from, TZvPos to, const TEditText& text);

} // namespace zv
