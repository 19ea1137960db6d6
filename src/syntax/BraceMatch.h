// Brace and tag-pair matching. Only braces the scanner saw as code count (not those in
// strings or comments), and only tags it saw as tags. The brace walk crosses rows by their
// stored brace facts and reads the text of the row that holds the partner only, so it has no
// row limit; the tag walk reads rows and is bounded.
#pragma once

#include "syntax/ColourWalk.h"

namespace zv {

struct TBracePoint {
    std::int32_t x = -1; // 0-based column
    std::int32_t Y = -1; // row
    bool operator==(const TBracePoint&) const = default;
};

struct TBracePair {
    TBracePoint Left, Right; // Left.x -1: no brace at the caret
    bool Matched = false;    // false: the found brace has no partner (colour E)
};

// The pair at caret column x (0-based, between characters) of row y: an opener right of the
// caret or a closer left of it; with `whenInside` the nearest enclosing pair otherwise.
// Rows between the stored ones and the rows walked are scanned and stored on the way.
TBracePair FindBracePair(TLineScanner& scanner, int x, int y, bool whenInside);

// The tag pair under the caret. Rows beyond the document become -1.
struct TTagPosData {
    std::int32_t StartY = -1, StartX = -1, StartLen = 0;          // "<name" of the opening tag
    std::int32_t StartEndY = -1, StartEndX = -1, StartEndLen = 0; // its ">"
    std::int32_t EndY = -1, EndX = -1, EndLen = 0;                // "</name" of the closing tag
    bool operator==(const TTagPosData&) const = default;
};

// The caret may be on the opening or on the closing tag's name. Void elements ("br", "img",
// ...) have no closing tag and yield only the opening one; a self-closed tag ("<a/>") has
// none either. Walks at most `maxRows` rows from the caret.
TTagPosData CheckTagsToHighlight(TLineScanner& scanner, int x, int y, int maxRows = 2000);

} // namespace zv
