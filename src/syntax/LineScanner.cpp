// The document-level scanner: the cache walk, the edit rule and the sweep.
#include "syntax/LineScanner.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace zv {
namespace {

constexpr int kWalkBeforeBlankCut = 100;
constexpr int kYieldRowThreshold = 5000;
constexpr int kYieldEveryRows = 500;

bool IsBlankRow(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char16_t c) { return c == u' ' || c == u'\t'; });
}

} // namespace

TLineScanner::TLineScanner(const TZvMemoStrings& store, const TScanContext& ctx)
    : FStore(store), FCtx(ctx) {
    FStates.Reset(store.Count());
}

bool TLineScanner::NextIsWrapped(int line) const {
    return FStore.IsLineWrapped(line + 1);
}

bool TLineScanner::GetUpLineStyleFromThread(int line, int fromX, int toX, TStyle& state,
                                            IRunSink* sink, bool fromThread,
                                            const std::atomic<bool>* halt, TRowFacts* facts) {
    if (toX == 0)
        return true;
    TScanRequest request;
    request.Sink = sink;
    request.Facts = facts;
    request.Halt = halt;
    request.Limit = fromX == 0 && toX == -1 ? -1 : std::max(toX, 0);
    if (!fromThread) {
        request.Text = FStore.Get(line);
        request.NextRowIsWrapped = NextIsWrapped(line);
        if (request.NextRowIsWrapped || (line > 0 && FStore.IsLineWrapped(line)))
            return ScanCutRow(line, request, state, false);
        return ScanRow(FCtx, request, state, FMainScratch);
    }
    TRowText text;
    bool cut = false;
    {
        std::lock_guard lock(FStore.Lock());
        text = FStore.GetRowText(line);
        request.NextRowIsWrapped = NextIsWrapped(line);
        cut = request.NextRowIsWrapped || (line > 0 && FStore.IsLineWrapped(line));
    }
    if (cut)
        return ScanCutRow(line, request, state, true);
    request.Text = text.View();
    return ScanRow(FCtx, request, state, FThreadScratch);
}

TStyle TLineScanner::GetLineStyle(int line, bool& valid) const {
    TStyle state;
    valid = line >= 0 && FStates.Get(line, state);
    if (line < 0)
        ClearStyle(state, true);
    return state;
}

TStyle TLineScanner::GetUpStyle(int line) {
    TStyle state;
    ClearStyle(state, true);
    line = std::min(line, FStore.Count() - 1);
    if (line < 0 || !FCtx.HasSyntax())
        return state;
    const int valid = FStates.ValidRows();
    if (line < valid) {
        FStates.Get(line, state);
        return state;
    }
    // Walk up to the nearest valid row; far up, a blank row is taken as a fresh start.
    int start = valid;
    bool exact = true;
    for (int row = line, walked = 1; row >= valid; --row, ++walked)
        if ((walked > kWalkBeforeBlankCut || row == 0) && IsBlankRow(FStore.Get(row))) {
            start = row;
            exact = row == 0 || row == valid;
            break;
        }
    if (start > 0 && exact)
        FStates.Get(start - 1, state);
    const std::uint64_t generation = FStates.Generation();
    TRowFacts facts;
    for (int row = start; row <= line; ++row) {
        GetUpLineStyleFromThread(row, 0, -1, state, nullptr, false, nullptr, &facts);
        if (exact)
            FStates.Store(row, state, generation, &facts);
    }
    return state;
}

bool TLineScanner::GetRowFacts(int line, TRowFacts& facts) {
    if (line < 0 || line >= FStore.Count() || !FCtx.HasSyntax())
        return false;
    // Each round extends the valid rows by one; an invalid row below them is rescanned too.
    for (int row = FStates.ValidRows(); row <= line; row = FStates.ValidRows()) {
        TStyle state;
        ClearStyle(state, true);
        if (row > 0 && !FStates.Get(row - 1, state))
            continue; // the watermark moved in between: read it again
        const std::uint64_t generation = FStates.Generation();
        GetUpLineStyleFromThread(row, 0, -1, state, nullptr, false, nullptr, &facts);
        FStates.Store(row, state, generation, &facts);
    }
    if (FStates.Facts(line, facts))
        return true;
    // A state stored without its facts: scan the row again from the state above it.
    TStyle state = GetUpStyle(line - 1);
    GetUpLineStyleFromThread(line, 0, -1, state, nullptr, false, nullptr, &facts);
    return true;
}

void TLineScanner::ClearLineStylesFrom(int line) {
    FStates.ClearFrom(line, FStore.Count());
    for (TCarry& carry : FMainCarries)
        if (carry.Row >= line)
            carry.Row = -1;
}

TRedrawRange TLineScanner::InvalidateLine(int line) {
    if (line < 0 || line >= FStore.Count() || !FCtx.HasSyntax())
        return {std::max(line, 0), std::max(line, 0)};
    bool hadValid = false; // the record counts even when an edit already invalidated it
    const TStyle old = GetLineStyle(line, hadValid);
    if (FStates.ValidRows() > line)
        ClearLineStylesFrom(line);
    TStyle state = GetUpStyle(line - 1);
    TRowFacts facts;
    GetUpLineStyleFromThread(line, 0, -1, state, nullptr, false, nullptr, &facts);
    const std::uint64_t generation = FStates.Generation();
    const bool stored = FStates.Store(line, state, generation, &facts);
    TStyle now = state;
    now.FBooleanArray |= 1u; // stored records carry the valid bit
    if (stored && old.Valid() && now == old && FStates.Restore(line, FStore.Count()))
        return {line, line};
    ClearLineStylesFrom(line + 1);
    return {line, -1};
}

bool TLineScanner::Sweep(const std::atomic<bool>& halt,
                         const std::function<void(int, int)>& scanned,
                         const std::function<bool()>& yield) {
    int first = -1, last = -1; // the stored rows not yet reported
    auto report = [&] {
        if (first >= 0 && scanned)
            scanned(first, last);
        first = last = -1;
    };
    for (;;) {
        const std::uint64_t generation = FStates.Generation();
        const int row = FStates.ValidRows();
        const int count = FStore.Count();
        if (row >= count) {
            report();
            return true;
        }
        TStyle state;
        if (row > 0 && !FStates.Get(row - 1, state))
            continue; // an edit lowered the watermark in between: read it again
        if (row == 0)
            ClearStyle(state, true);
        TRowFacts facts;
        if (!GetUpLineStyleFromThread(row, 0, -1, state, nullptr, true, &halt, &facts)) {
            report();
            return false;
        }
        if (FStates.Store(row, state, generation, &facts)) {
            if (first < 0 || row != last + 1 || row - first >= kSweepReportRows)
                report();
            if (first < 0)
                first = row;
            last = row;
        } else if (halt.load(std::memory_order_relaxed)) {
            report();
            return false;
        }
        if (count <= kYieldRowThreshold || row % kYieldEveryRows != kYieldEveryRows - 1)
            continue;
        if (!yield) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        report();
        if (!yield())
            return false;
    }
}

} // namespace zv
