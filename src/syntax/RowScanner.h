// The one-row scanner: from the state at the end of the row above and the row's text it
// computes the state at the end of the row. The same walk, given a sink, reports the runs
// that colour the row, so the background sweep and the painter can never disagree: the sink
// only observes, it never changes where the walk goes.
#pragma once

#include "ZvMemoControl/LineStyle.h"
#include "ZvMemoControl/StyleRegex.h"
#include "syntax/RowFacts.h"
#include "syntax/ScanContext.h"

#include <atomic>
#include <cstdint>
#include <string_view>

namespace zv {

// What a run of characters is; the colour comes from the kind, the index and the set.
enum class TTokenKind : std::uint8_t {
    Text,
    Comment,
    DocComment,
    LineComment,
    String,
    Char,
    Number,
    HexNumber,
    Keyword,
    Symbol,
    Brace,
    Tag,
    AttributeName,
    AttributeValue,
    ServerTag,
    Block,
    Url,
};

// Lower-case name of a kind as the token dump prints it ("keyword" without its group).
const char* TokenKindName(TTokenKind kind);

struct TRunInfo {
    TTokenKind Kind = TTokenKind::Text;
    // Keyword: the group; Brace: the nesting level the brace colours by; Block: the block;
    // Tag: the tag group. -1 otherwise.
    std::int16_t Index = -1;
    std::int16_t Block = -1;             // the open block whose colour plain text takes, -1 none
    TTokenKind Outer = TTokenKind::Text; // for a URL: what it lies in (comment, string, text)
    const TZvCustomMemoStyles* Set = nullptr; // the set in force for this run
};

// Receives the runs of one row in order; they cover the scanned text without gaps.
class IRunSink {
public:
    virtual ~IRunSink() = default;
    virtual void Run(int start, int length, const TRunInfo& info) = 0;
};

// Scratch a scanning thread reuses so a scan allocates nothing.
struct TScanScratch {
    TRegexMatch Match;
};

struct TScanRequest {
    std::u16string_view Text;
    // Scan only units [0, Limit); a negative limit scans the whole row and applies the
    // end-of-row rule. A limit of 0 returns at once.
    int Limit = -1;
    bool NextRowIsWrapped = false; // the next row continues this line (a cut or word wrap)
    // A row of a cut line: the walk begins at Start (units a token of the row above ran
    // into) and ends at the first token boundary at or behind Stop (-1: the text's end);
    // units behind Stop are the next row's, read ahead so a token runs across the cut.
    int Start = 0;
    int Stop = -1;
    int* Reached = nullptr;     // when given, told where the walk ended
    IRunSink* Sink = nullptr;   // null: state only (the sweep)
    TRowFacts* Facts = nullptr; // a full scan fills it (braces, indent, to-do); may be null
    // Set by another thread to make the scan return at once; the state is then unusable.
    const std::atomic<bool>* Halt = nullptr;
};

// Scans one row, leaving in `state` the state behind the scanned text. Pure: the result
// depends only on the context, the request and `state`. Returns false when halted.
bool ScanRow(const TScanContext& ctx, const TScanRequest& request, TStyle& state,
             TScanScratch& scratch);

} // namespace zv
