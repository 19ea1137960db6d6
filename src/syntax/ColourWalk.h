// The colouring walk: cuts a row into runs of one colour and font style, starting from the
// state stored at the end of the row above, by the same one-row scan the sweep uses. Also
// the queries answered by that walk (token and set at a position).
#pragma once

#include "syntax/LineScanner.h"

#include <array>
#include <vector>

namespace zv {

struct TColourRun {
    std::int32_t Start = 0; // 0-based UTF-16 column
    std::int32_t Length = 0;
    TRunInfo Info;
};

// Collects runs, joining neighbours of the same kind, index and set.
class TRunCollector : public IRunSink {
public:
    void Run(int start, int length, const TRunInfo& info) override;
    std::vector<TColourRun> Runs;
};

// Editor choices the colours depend on.
struct TColourOptions {
    bool FMultiColorBraces = false;
    // Colours by nesting level, cycled; used when FMultiColorBraces is on.
    std::array<TColor, 4> FBraceColors{0x0000D0, 0x00A000, 0xD00000, 0x008080};
    TCharStyle FUrlStyle{0, 0xCC6600, kNoColor, fsUnderline};
};

// The colour and font of one run: its kind's style in its set, with the block's colour for
// plain text in a block, the doc-comment group for doc comments, and depth colours for
// braces. A kind without a colour takes the set's text colour.
TCharStyle RunStyle(const TColourRun& run, const TColourOptions& options);

// The runs of `row` (empty for a row out of range), and in `endState` the state behind it,
// which equals the stored state of the row when that is valid. Main thread.
std::vector<TColourRun> RowRuns(TLineScanner& scanner, int row, TStyle* endState = nullptr);
// The runs of `row` cut from `state`, the state at the end of the row above, which is left
// holding the state behind the row: a painter cuts consecutive rows with one walk up.
std::vector<TColourRun> RowRunsFrom(TLineScanner& scanner, int row, TStyle& state);

// The run holding 0-based column `x` of `row`, or null when there is none.
const TColourRun* RunAt(const std::vector<TColourRun>& runs, int x);

// Token queries by the walk up to the position.
struct TTokenAt {
    bool Found = false;
    int Start = 0, Length = 0; // 0-based column of the token
    TTokenKind Kind = TTokenKind::Text;
    const TZvCustomMemoStyles* Set = nullptr;
};
TTokenAt TokenAtXY(TLineScanner& scanner, int x, int y);
// The token ending just left of column x.
TTokenAt TokenAtLeftOfXY(TLineScanner& scanner, int x, int y);
// The style set in force at the position (the document's set when no run holds it).
const TZvCustomMemoStyles* GetStyleAt(TLineScanner& scanner, int x, int y);
// True when the position lies inside a tag or an open block.
bool IsInTagOrBlock(TLineScanner& scanner, int x, int y);
// True when the position lies in a comment or a string (no closing partner is added there).
bool IsInCommentOrString(TLineScanner& scanner, int x, int y);
// The state behind column x of row y says: in a block or line comment; in a string or
// character literal (the search's skip filters).
bool IsInComment(TLineScanner& scanner, int x, int y);
bool IsInString(TLineScanner& scanner, int x, int y);

} // namespace zv
