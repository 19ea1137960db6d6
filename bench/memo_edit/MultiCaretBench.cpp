// Engine time of one keystroke at 1,000 carets (a typed character, Enter, Backspace) and of
// a typed character in a 1,000-row column block, in a million-row document. The carets
// stand one a row in a run of rows (Arg 1) or one every 1,000 rows (Arg 1000). Only the
// keystroke is timed; its effect is taken back untimed by the opposite key. One untimed key
// first makes the text differ from the saved one at every caret, as it does while one
// types: the first key after a save also keeps the saved form of the rows between the
// first and the last caret (BM_FirstKeyAfterSave).
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include "../memo/WallClock.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

using zv::bench::Median;
using zv::bench::Seconds;

constexpr int kRows = 1'000'000;
constexpr int kCarets = 1000;

struct TDoc {
    TDoc() {
        std::string text;
        text.reserve(static_cast<std::size_t>(kRows) * 24);
        for (int i = 0; i < kRows; ++i)
            text += "row " + std::to_string(i) + " of the text\n";
        memo.SetLines(&lines);
        lines.LoadFromBytes(text);
        memo.SetLines(&lines);
    }
    zv::TZvMemoStrings lines;
    zv::TZvMemo memo;
};

TDoc& Doc() {
    static TDoc* doc = new TDoc;
    return *doc;
}

void PlaceCarets(zv::TZvMemo& memo, int step) {
    memo.ExitMultiEditMode();
    memo.SetColumnMode(false);
    for (int i = 0; i < kCarets; ++i) {
        const int row = 1 + i * step;
        memo.AddMultiCursorPos(3, row, 3, row, 3, row);
    }
}

template <typename Edit, typename Restore>
void TimeKeystroke(benchmark::State& state, Edit edit, Restore restore) {
    zv::TZvMemo& memo = Doc().memo;
    PlaceCarets(memo, static_cast<int>(state.range(0)));
    memo.KeyPress(u'a');
    std::vector<double> samples;
    for (auto _ : state) {
        const double seconds = Seconds([&] { edit(memo); });
        state.SetIterationTime(seconds);
        samples.push_back(seconds);
        restore(memo);
    }
    state.counters["median_ms"] = Median(std::move(samples)) * 1e3;
    memo.ExitMultiEditMode();
}

void BM_TypeAt1000Carets(benchmark::State& state) {
    TimeKeystroke(
        state, [](zv::TZvMemo& m) { m.KeyPress(u'x'); }, [](zv::TZvMemo& m) { m.Backspace(); });
}
BENCHMARK(BM_TypeAt1000Carets)->Arg(1)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_EnterAt1000Carets(benchmark::State& state) {
    TimeKeystroke(
        state, [](zv::TZvMemo& m) { m.EnterPress(); }, [](zv::TZvMemo& m) { m.Backspace(); });
}
BENCHMARK(BM_EnterAt1000Carets)->Arg(1)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_BackspaceAt1000Carets(benchmark::State& state) {
    TimeKeystroke(
        state, [](zv::TZvMemo& m) { m.Backspace(); }, [](zv::TZvMemo& m) { m.KeyPress(u'w'); });
}
BENCHMARK(BM_BackspaceAt1000Carets)
    ->Arg(1)
    ->Arg(1000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// Undo of one key typed at 1,000 carets (one step); the key is typed untimed before.
void BM_UndoAt1000Carets(benchmark::State& state) {
    zv::TZvMemo& memo = Doc().memo;
    PlaceCarets(memo, static_cast<int>(state.range(0)));
    memo.KeyPress(u'a');
    std::vector<double> samples;
    for (auto _ : state) {
        memo.KeyPress(u'x');
        const double seconds = Seconds([&] { memo.Undo(); });
        state.SetIterationTime(seconds);
        samples.push_back(seconds);
        if (memo.RowText(1 + 999 * static_cast<int>(state.range(0))).find(u"ax") !=
            std::u16string_view::npos) {
            state.SkipWithError("the undo left the key in the text");
            break;
        }
    }
    state.counters["median_ms"] = Median(std::move(samples)) * 1e3;
    memo.ExitMultiEditMode();
}
BENCHMARK(BM_UndoAt1000Carets)->Arg(1)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);

// The first key after a save with the carets spread over a million rows.
void BM_FirstKeyAfterSave(benchmark::State& state) {
    zv::TZvMemo& memo = Doc().memo;
    PlaceCarets(memo, 1000);
    std::vector<double> samples;
    for (auto _ : state) {
        memo.Saved();
        const double seconds = Seconds([&] { memo.KeyPress(u'x'); });
        state.SetIterationTime(seconds);
        samples.push_back(seconds);
    }
    state.counters["median_ms"] = Median(std::move(samples)) * 1e3;
    memo.ExitMultiEditMode();
}
BENCHMARK(BM_FirstKeyAfterSave)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

// A zero-width block over 1,000 rows: each key types into every row.
void BM_TypeIn1000RowBlock(benchmark::State& state) {
    zv::TZvMemo& memo = Doc().memo;
    memo.ExitMultiEditMode();
    memo.SetColumnMode(true);
    memo.SetSelection({3, 1}, {3, kCarets});
    memo.KeyPress(u'a');
    std::vector<double> samples;
    for (auto _ : state) {
        const double seconds = Seconds([&] { memo.KeyPress(u'x'); });
        state.SetIterationTime(seconds);
        samples.push_back(seconds);
        memo.Backspace();
    }
    state.counters["median_ms"] = Median(std::move(samples)) * 1e3;
    memo.SetColumnMode(false);
}
BENCHMARK(BM_TypeIn1000RowBlock)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
