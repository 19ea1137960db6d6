// Sorting a million lines: the sort command on a loaded document against GNU sort (C
// locale) on the same file, and the undo of that sort. The command and the undo are timed
// alone; each sort is taken back untimed. The ratio counter is command time over sort time.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include "WallClock.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <unistd.h>

namespace {

using zv::bench::Median;
using zv::bench::Seconds;

constexpr int kLines = 1'000'000;

// A million seeded random lines of 5 to 60 printable ASCII characters and words.
const std::string& Text() {
    static const std::string text = [] {
        std::mt19937 rng(2024);
        std::uniform_int_distribution<int> len(5, 60), ch(32, 126);
        std::string s;
        s.reserve(static_cast<std::size_t>(kLines) * 36);
        for (int i = 0; i < kLines; ++i) {
            for (int n = len(rng); n > 0; --n)
                s.push_back(static_cast<char>(ch(rng)));
            s.push_back('\n');
        }
        return s;
    }();
    return text;
}

std::filesystem::path TextFile() {
    static const std::filesystem::path path = [] {
        auto p = std::filesystem::temp_directory_path() /
                 ("zv-sort-bench-" + std::to_string(::getpid()) + ".txt");
        std::ofstream(p, std::ios::binary) << Text();
        return p;
    }();
    return path;
}

struct TDoc {
    TDoc() {
        memo.SetLines(&lines);
        lines.LoadFromBytes(Text());
        memo.SetLines(&lines);
    }
    zv::TZvMemoStrings lines;
    zv::TZvMemo memo;
};

double GnuSortSeconds() {
    const std::string command =
        "LC_ALL=C sort " + TextFile().string() + " -o " + TextFile().string() + ".sorted";
    return Seconds([&] {
        if (std::system(command.c_str()) != 0)
            std::abort();
    });
}

void BM_GnuSortMillionLines(benchmark::State& state) {
    for (auto _ : state)
        state.SetIterationTime(GnuSortSeconds());
}
BENCHMARK(BM_GnuSortMillionLines)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

void BM_SortMillionLines(benchmark::State& state) {
    TDoc doc;
    std::vector<double> ours, theirs;
    for (auto _ : state) {
        const double seconds = Seconds([&] { doc.memo.acnSortSelectedLines(); });
        state.SetIterationTime(seconds);
        ours.push_back(seconds);
        state.PauseTiming();
        doc.memo.Undo();
        theirs.push_back(GnuSortSeconds());
        state.ResumeTiming();
    }
    state.counters["ratio_to_gnu_sort"] = Median(ours) / Median(theirs);
}
BENCHMARK(BM_SortMillionLines)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

void BM_UndoSortMillionLines(benchmark::State& state) {
    TDoc doc;
    for (auto _ : state) {
        state.PauseTiming();
        doc.memo.acnSortSelectedLines();
        state.ResumeTiming();
        state.SetIterationTime(Seconds([&] { doc.memo.Undo(); }));
    }
}
BENCHMARK(BM_UndoSortMillionLines)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove(TextFile());
    std::filesystem::remove(TextFile().string() + ".sorted");
    return 0;
}
