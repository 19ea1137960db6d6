// Position lookups on a 10-million-row document whose lines are cut into Wrapped rows:
// offset to (column, row), (column, row) to offset, row to real line and real line to row,
// each at random places; and a typed character in the middle row with the offset of the
// caret after it (the index brought up to date included). Medians per call in median_us.
#include "ZvMemoControl/ZvMemoStrings.h"

#include "WallClock.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

namespace {

using zv::bench::Median;
using zv::bench::Seconds;

// 10 million rows: 2.5 million lines of 50 characters, each cut into 4 rows by the load
// (rows of at most 16 units).
zv::TZvMemoStrings& BigDoc() {
    static zv::TZvMemoStrings* lines = [] {
        auto* store = new zv::TZvMemoStrings;
        store->Memo().FForcewrapLength = 16;
        std::string text;
        text.reserve(2'500'000u * 60);
        for (int i = 0; i < 2'500'000; ++i) {
            const std::string number = std::to_string(i);
            text += "line " + std::string(7 - number.size(), '0') + number +
                    " of the text, cut into rows of sixteen\n";
        }
        store->LoadFromBytes(text);
        store->GetCharPosFromXY(0, 0); // the index is read once before the timing
        return store;
    }();
    return *lines;
}

// Times `calls` per iteration on random arguments drawn once; reports per call.
template <typename Call> void TimeLookups(benchmark::State& state, std::int64_t range, Call call) {
    zv::TZvMemoStrings& lines = BigDoc();
    if (lines.Count() < 10'000'000)
        state.SkipWithError("the document has too few rows");
    std::mt19937_64 rng(7);
    std::vector<std::int64_t> args(1 << 16);
    for (auto& a : args)
        a = static_cast<std::int64_t>(rng() % static_cast<std::uint64_t>(range));
    constexpr int kCalls = 64;
    std::vector<double> samples;
    std::size_t next = 0;
    std::int64_t sink = 0;
    for (auto _ : state) {
        const double seconds = Seconds([&] {
            for (int i = 0; i < kCalls; ++i)
                sink += call(lines, args[next++ % args.size()]);
        });
        state.SetIterationTime(seconds / kCalls);
        samples.push_back(seconds / kCalls);
    }
    benchmark::DoNotOptimize(sink);
    state.counters["rows"] = lines.Count();
    state.counters["median_us"] = Median(std::move(samples)) * 1e6;
}

std::int64_t TextLength(zv::TZvMemoStrings& lines) {
    return lines.GetCharPosFromXY(1 << 30, lines.Count() - 1);
}

void BM_OffsetToXY(benchmark::State& state) {
    TimeLookups(state, TextLength(BigDoc()), [](zv::TZvMemoStrings& lines, std::int64_t pos) {
        int x = 0, y = 0;
        lines.GetXYFromCharPos(pos, x, y);
        return static_cast<std::int64_t>(x + y);
    });
}
BENCHMARK(BM_OffsetToXY)->UseManualTime()->Iterations(20000)->Unit(benchmark::kMicrosecond);

void BM_XYToOffset(benchmark::State& state) {
    TimeLookups(state, BigDoc().Count(), [](zv::TZvMemoStrings& lines, std::int64_t row) {
        return lines.GetCharPosFromXY(5, static_cast<int>(row));
    });
}
BENCHMARK(BM_XYToOffset)->UseManualTime()->Iterations(20000)->Unit(benchmark::kMicrosecond);

void BM_RowToRealLine(benchmark::State& state) {
    TimeLookups(state, BigDoc().Count(), [](zv::TZvMemoStrings& lines, std::int64_t row) {
        return static_cast<std::int64_t>(lines.GetRealLine(static_cast<int>(row)));
    });
}
BENCHMARK(BM_RowToRealLine)->UseManualTime()->Iterations(20000)->Unit(benchmark::kMicrosecond);

void BM_RealLineToRow(benchmark::State& state) {
    TimeLookups(state, BigDoc().Count() / 4, [](zv::TZvMemoStrings& lines, std::int64_t line) {
        return static_cast<std::int64_t>(lines.GetWrapIndex(static_cast<int>(line)));
    });
}
BENCHMARK(BM_RealLineToRow)->UseManualTime()->Iterations(20000)->Unit(benchmark::kMicrosecond);

// One typed character in the middle row and the caret's offset after it; the character is
// taken back untimed.
void BM_KeystrokeInTheMiddle(benchmark::State& state) {
    zv::TZvMemoStrings& lines = BigDoc();
    const int row = lines.Count() / 2;
    std::vector<double> samples;
    std::int64_t sink = 0;
    for (auto _ : state) {
        const double seconds = Seconds([&] {
            lines.InsertAt(row, u"x", 4);
            sink += lines.GetCharPosFromXY(4, row);
        });
        state.SetIterationTime(seconds);
        if (samples.size() < (1u << 20))
            samples.push_back(seconds);
        lines.DeleteAt(row, 4, 1);
    }
    benchmark::DoNotOptimize(sink);
    state.counters["median_us"] = Median(std::move(samples)) * 1e6;
}
BENCHMARK(BM_KeystrokeInTheMiddle)
    ->UseManualTime()
    ->Iterations(1000000)
    ->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
