// Following a log: one round of 10,000 appended lines read into a followed document of
// 1 MB and of 64 MB. The time per appended line (per_line, seconds) must not grow with the
// document.
#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int kLinesPerRound = 10'000;

// A private file name in the temporary folder, removed with the object.
struct TScratchFile {
    fs::path Path =
        fs::temp_directory_path() / ("zv-append-bench-" + std::to_string(::getpid()) + ".log");
    ~TScratchFile() {
        std::error_code ec;
        fs::remove(Path, ec);
    }
};

std::string Lines(int count, int first) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "2026-01-01 12:00:00 worker " + std::to_string(first + i) + " done\n";
    return text;
}

void BM_AppendTailRoundIntoFollowedDocument(benchmark::State& state) {
    const std::int64_t documentBytes = state.range(0) << 20;
    TScratchFile file;
    {
        std::ofstream out(file.Path, std::ios::binary);
        for (int first = 0; out.tellp() < documentBytes; first += kLinesPerRound)
            out << Lines(kLinesPerRound, first);
    }
    zv::TZvMemoStrings store;
    store.SetCodePage(zv::cpUTF8);
    if (!store.LoadFromFile(file.Path.string()))
        state.SkipWithError("cannot load the document");
    int next = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::ofstream(file.Path, std::ios::binary | std::ios::app) << Lines(kLinesPerRound, next);
        next += kLinesPerRound;
        state.ResumeTiming();
        benchmark::DoNotOptimize(store.AppendTail());
    }
    state.SetItemsProcessed(state.iterations() * kLinesPerRound);
    state.counters["per_line"] =
        benchmark::Counter(static_cast<double>(state.iterations() * kLinesPerRound),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["rows"] = store.Count();
}
BENCHMARK(BM_AppendTailRoundIntoFollowedDocument)
    ->Arg(1)
    ->Arg(64)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);

} // namespace

BENCHMARK_MAIN();
