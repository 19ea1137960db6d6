// Engine time of one keystroke (a typed character, Enter, Backspace joining two rows) at
// the start, middle and end of a 10-million-row document shown in two views (the change
// record goes to both, and the second view's caret and selection follow it), the same with every keystroke at
// the other end from the last, and the undo of one edit that replaced a million rows. Only
// the edit is timed; each is taken back untimed.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include "../memo/WallClock.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using zv::bench::Median;
using zv::bench::Seconds;

struct TDoc {
    explicit TDoc(int rows) {
        std::string text;
        text.reserve(static_cast<std::size_t>(rows) * 24);
        for (int i = 0; i < rows; ++i)
            text += "row " + std::to_string(i) + " of the text\n";
        memo.SetLines(&lines);
        lines.LoadFromBytes(text);
        memo.SetLines(&lines);
        other.SetDocument(memo.SharedDocument());
        other.SetSelection({0, rows / 3}, {4, rows / 3 + 2});
    }
    zv::TZvMemoStrings lines;
    zv::TZvMemo memo;
    zv::TZvMemo other; // the second view
};

TDoc& BigDoc() {
    static TDoc* doc = new TDoc(10'000'000);
    return *doc;
}

int RowFor(zv::TZvMemo& memo, int where) {
    const int last = memo.RowCount() - 2;
    return where == 0 ? 1 : where == 1 ? last / 2 : last;
}

// Times `edit` with the caret at column `x` of row `rowOf(iteration)`; `restore` takes the
// edit back untimed. Reports the median beside Google Benchmark's mean.
template <typename RowOf, typename Edit, typename Restore>
void TimeKeystroke(benchmark::State& state, int x, RowOf rowOf, Edit edit, Restore restore) {
    zv::TZvMemo& memo = BigDoc().memo;
    std::vector<double> samples;
    std::size_t iteration = 0;
    for (auto _ : state) {
        memo.SetTextCursor(x, rowOf(memo, iteration++));
        const double seconds = Seconds([&] { edit(memo); });
        state.SetIterationTime(seconds);
        if (samples.size() < (1u << 20))
            samples.push_back(seconds);
        restore(memo);
    }
    state.counters["median_us"] = Median(std::move(samples)) * 1e6;
}

// Arg: 0 start, 1 middle, 2 end of the document.
auto AtArg(const benchmark::State& state) {
    const int where = static_cast<int>(state.range(0));
    return [where](zv::TZvMemo& memo, std::size_t) { return RowFor(memo, where); };
}

void TypeChar(zv::TZvMemo& memo) {
    memo.InsertChar(u'x');
}
void Enter(zv::TZvMemo& memo) {
    memo.EnterPress();
}
void Backspace(zv::TZvMemo& memo) {
    memo.Backspace();
}

void BM_TypeChar(benchmark::State& state) {
    TimeKeystroke(state, 3, AtArg(state), TypeChar, Backspace);
}
BENCHMARK(BM_TypeChar)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_Enter(benchmark::State& state) {
    TimeKeystroke(state, 3, AtArg(state), Enter, Backspace);
}
BENCHMARK(BM_Enter)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMicrosecond);

// Backspace at column 0: joins two rows, the costliest backspace.
void BM_BackspaceJoin(benchmark::State& state) {
    TimeKeystroke(state, 0, AtArg(state), Backspace, Enter);
}
BENCHMARK(BM_BackspaceJoin)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_BackspaceChar(benchmark::State& state) {
    TimeKeystroke(state, 3, AtArg(state), Backspace,
                  [](zv::TZvMemo& memo) { memo.InsertChar(u'w'); });
}
BENCHMARK(BM_BackspaceChar)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMicrosecond);

// The worst case of the row array's gap: every Enter lands at the other end of the document
// from the one before, so each moves the gap past all 10 million rows.
void BM_EnterAlternatingEnds(benchmark::State& state) {
    const auto alternate = [](zv::TZvMemo& memo, std::size_t iteration) {
        return RowFor(memo, iteration % 2 == 0 ? 0 : 2);
    };
    TimeKeystroke(state, 3, alternate, Enter, Backspace);
}
BENCHMARK(BM_EnterAlternatingEnds)->UseManualTime()->Iterations(40)->Unit(benchmark::kMicrosecond);

// One paste replaced rows 0..1,000,000 of a 2-million-row document by a million new rows;
// the undo puts the old rows back.
void BM_UndoMillionRowReplace(benchmark::State& state) {
    TDoc doc(2'000'000);
    std::u16string replacement;
    for (int i = 0; i < 1'000'000; ++i)
        replacement += u"a new row of pasted text\n";
    doc.memo.SetSelection({0, 0}, {0, 1'000'000});
    doc.memo.InsertText(replacement);
    for (auto _ : state) {
        state.SetIterationTime(Seconds([&] { doc.memo.Undo(); }));
        doc.memo.Redo();
    }
}
BENCHMARK(BM_UndoMillionRowReplace)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
