// Engine time of the column block commands and of a case command at 1,000 carets, on a
// 200,000-row document of "KEY<i> = <i>" lines: numbers in a block of Arg rows, statistics
// of such a block, aligning every line at "=", and lower case at 1,000 carets (the text upper
// case first), and the first key in a block after a save. Each timed command is taken back
// untimed by undo.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include "../memo/WallClock.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

using zv::bench::Median;
using zv::bench::Seconds;

constexpr int kRows = 200'000;

struct TDoc {
    TDoc() {
        std::string text;
        for (int i = 0; i < kRows; ++i)
            text += "key" + std::to_string(i % 997) + " = " + std::to_string(i) + "\n";
        memo.SetLines(&lines);
        lines.LoadFromBytes(text);
        memo.SetLines(&lines);
        // Every row differs from the saved text, as after typing: the timed commands do not
        // pay for keeping the saved form of the rows.
        memo.SelectAll();
        memo.acnInvertCase();
    }
    zv::TZvCustomMemo& Reset() {
        memo.ExitMultiEditMode();
        memo.SetColumnMode(false);
        memo.SetTextCursor(0, 0);
        return memo;
    }
    zv::TZvMemoStrings lines;
    zv::TZvMemo memo;
};

TDoc& Doc() {
    static TDoc* doc = new TDoc;
    return *doc;
}

// Times `command` once an iteration, undoing it untimed; fails when it changed nothing.
template <typename Prepare, typename Command>
void TimeCommand(benchmark::State& state, Prepare prepare, Command command) {
    zv::TZvMemo& memo = Doc().memo;
    std::vector<double> samples;
    for (auto _ : state) {
        Doc().Reset();
        prepare(memo);
        bool changed = false;
        const double seconds = Seconds([&] { changed = command(memo); });
        state.SetIterationTime(seconds);
        samples.push_back(seconds);
        if (!changed) {
            state.SkipWithError("the command changed nothing");
            break;
        }
        memo.Undo();
    }
    state.counters["median_ms"] = Median(std::move(samples)) * 1e3;
    Doc().Reset();
}

void SelectBlock(zv::TZvMemo& memo, int rows) {
    memo.SetColumnMode(true);
    memo.SetSelection({0, 0}, {0, rows - 1});
}

void BM_InsertNumbersInBlock(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    TimeCommand(
        state, [rows](zv::TZvMemo& m) { SelectBlock(m, rows); },
        [](zv::TZvMemo& m) { return m.InsertNumbers(1, 1, false); });
}
BENCHMARK(BM_InsertNumbersInBlock)
    ->Arg(1000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void BM_StatisticsOfBlock(benchmark::State& state) {
    zv::TZvMemo& memo = Doc().memo;
    Doc().Reset();
    memo.SetColumnMode(true);
    memo.SetSelection({6, 0}, {20, static_cast<int>(state.range(0)) - 1});
    std::vector<double> samples;
    for (auto _ : state) {
        std::int64_t count = 0;
        samples.push_back(Seconds([&] { count = memo.acnColumnStatistics().Count; }));
        state.SetIterationTime(samples.back());
        if (count == 0) {
            state.SkipWithError("no numbers found");
            break;
        }
    }
    state.counters["median_ms"] = Median(std::move(samples)) * 1e3;
    Doc().Reset();
}
BENCHMARK(BM_StatisticsOfBlock)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_AlignAllLines(benchmark::State& state) {
    TimeCommand(
        state, [](zv::TZvMemo&) {},
        [](zv::TZvMemo& m) { return m.acnColumnAlignText(u"=", false, false); });
}
BENCHMARK(BM_AlignAllLines)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_LowerCaseAt1000Carets(benchmark::State& state) {
    TimeCommand(
        state,
        [](zv::TZvMemo& m) {
            for (int i = 0; i < 1000; ++i)
                m.AddMultiCursorPos(1, i * 100, 1, i * 100, 1, i * 100);
        },
        [](zv::TZvMemo& m) { return m.acnLowerCase(); });
}
BENCHMARK(BM_LowerCaseAt1000Carets)->UseManualTime()->Unit(benchmark::kMillisecond);

// The first key typed into a block of Arg rows right after a save: the rows' saved form is
// kept as the block's rows change one by one.
void BM_FirstBlockKeyAfterSave(benchmark::State& state) {
    TimeCommand(
        state,
        [&state](zv::TZvMemo& m) {
            m.Saved();
            SelectBlock(m, static_cast<int>(state.range(0)));
        },
        [](zv::TZvMemo& m) { return m.KeyPress(u'x'); });
}
BENCHMARK(BM_FirstBlockKeyAfterSave)
    ->Arg(1000)
    ->Arg(10'000)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
