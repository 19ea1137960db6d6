// Rows of a cut line scan as that one line: each row is read together with the head of the
// row after it, so a token (a comment mark, an escaped quote, a word) that the cut splits is
// still one token, and the next row begins behind it.
#include "syntax/LineScanner.h"

#include <algorithm>
#include <mutex>

namespace zv {
namespace {

// Units of the next row read ahead: enough for any mark or word; a longer token ends there
// as it would at a cut of its line and goes on in the state, as comments and strings do.
constexpr std::size_t kReadAhead = TLineScanner::kCutReadAhead;
// Rows walked back for a carry that was not kept (a row painted first, far from the last).
constexpr int kCarryDepth = 16;

// Passes on the runs inside the row and notes the one that runs behind its end.
class TRowEndSink : public IRunSink {
public:
    TRowEndSink(IRunSink* inner, int end) : FInner(inner), FEnd(end) {}
    void Run(int start, int length, const TRunInfo& info) override {
        if (start + length > FEnd && !FSeen) {
            Beyond = info;
            FSeen = true;
        }
        if (FInner && start < FEnd)
            FInner->Run(start, std::min(length, FEnd - start), info);
    }
    TRunInfo Beyond;

private:
    IRunSink* FInner;
    int FEnd;
    bool FSeen = false;
};

} // namespace

bool TLineScanner::ScanCutRow(int line, TScanRequest& request, TStyle& state, bool fromThread,
                              int depth) {
    TRowText row, next;
    bool cutAfter = false, cutBefore = false;
    {
        std::unique_lock<std::recursive_mutex> lock;
        if (fromThread)
            lock = std::unique_lock(FStore.Lock());
        row = FStore.GetRowText(line);
        cutBefore = line > 0 && FStore.IsLineWrapped(line);
        cutAfter = FStore.IsLineWrapped(line + 1);
        if (cutAfter)
            next = FStore.GetRowText(line + 1);
    }
    const int length = static_cast<int>(row.Length());
    TRunInfo carried;
    const int start = cutBefore ? std::min(CarryInto(line, fromThread, carried, depth), length) : 0;
    std::u16string& join = fromThread ? FThreadJoin : FMainJoin;
    request.Text = row.View();
    if (cutAfter) {
        join.assign(row.View());
        join.append(next.View().substr(0, kReadAhead));
        request.Text = join;
    }
    request.NextRowIsWrapped = cutAfter;
    request.Start = start;
    request.Stop = cutAfter ? length : -1;
    int reached = start;
    request.Reached = &reached;
    if (request.Sink && start > 0)
        request.Sink->Run(0, request.Limit < 0 ? start : std::min(start, request.Limit), carried);
    TRowEndSink rowEnd(request.Sink, length);
    request.Sink = &rowEnd;
    const bool done = ScanRow(FCtx, request, state, fromThread ? FThreadScratch : FMainScratch);
    if (done && cutAfter && request.Limit < 0) {
        TCarry& carry = fromThread ? FThreadCarry : FMainCarries[line % kMainCarries];
        carry.Row = line;
        carry.Key = fromThread ? FStates.Generation() : 0;
        carry.Units = std::max(reached - length, 0);
        carry.Info = rowEnd.Beyond;
    }
    return done;
}

int TLineScanner::CarryInto(int line, bool fromThread, TRunInfo& info, int depth) {
    const TCarry& kept = fromThread ? FThreadCarry : FMainCarries[(line - 1) % kMainCarries];
    const std::uint64_t key = fromThread ? FStates.Generation() : 0;
    if (kept.Row == line - 1 && kept.Key == key) {
        info = kept.Info;
        return kept.Units;
    }
    if (depth >= kCarryDepth)
        return 0;
    // Scan the row above again from the state above it.
    TStyle state;
    bool valid = true;
    if (line - 2 < 0)
        ClearStyle(state, true);
    else if (!FStates.Get(line - 2, state))
        valid = false;
    if (!valid) {
        if (fromThread)
            return 0;
        state = GetUpStyle(line - 2);
    }
    TScanRequest request;
    if (!ScanCutRow(line - 1, request, state, fromThread, depth + 1))
        return 0;
    const TCarry& carry = fromThread ? FThreadCarry : FMainCarries[(line - 1) % kMainCarries];
    info = carry.Info;
    return carry.Row == line - 1 ? carry.Units : 0;
}

} // namespace zv
