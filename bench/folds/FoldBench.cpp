// Fold benchmarks on the first million rows of the C corpus (the machine's C headers, made
// by bench/scanner/make_c_corpus.sh); ZV_FOLD_CORPUS names another file. The rows are swept
// once before the runs, as the background thread does before its pass.
#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/OpenTextFile.h"
#include "ZvMemoControl/ZvMemoFolds.h"
#include "common/Utf.h"
#include "syntax/FoldHandOver.h"
#include "syntax/FoldPass.h"
#include "syntax/LineScanner.h"
#include "syntax/ZvSyntax.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace zv {
namespace {

constexpr int kRows = 1'000'000;

std::string CorpusPath() {
    if (const char* p = std::getenv("ZV_FOLD_CORPUS"); p && *p)
        return p;
    const std::string corpus = "/tmp/zv-corpus-90.c", path = "/tmp/zv-folds-1m.c";
    const std::string cmd = std::string(ZV_SOURCE_DIR) + "/bench/scanner/make_c_corpus.sh " +
                            corpus + " 90 && head -n " + std::to_string(kRows) + " " + corpus +
                            " > " + path;
    return std::system(cmd.c_str()) == 0 ? path : std::string();
}

struct TFoldDoc {
    TZvMemoStrings Store;
    TMemoStyleHost Host;
    std::unique_ptr<TScanContext> Ctx;
    std::unique_ptr<TLineScanner> Scanner;
    TFoldTemp Folds;
    bool Ready = false;
};

TFoldDoc& Doc() {
    // Built once and never destroyed: the store is not movable and the run ends with it.
    static TFoldDoc* doc = [] {
        auto* d = new TFoldDoc;
        TFileType type;
        std::string error;
        TZvSyntax syntax;
        const auto file = std::filesystem::path(ZV_SOURCE_DIR) / "data" / "Syntax" / "c.syx";
        const std::string path = CorpusPath();
        if (path.empty() || !OpenTextFile(d->Store, path, cpAutoDetect, type, error) ||
            !syntax.LoadStyleFromFile(&d->Host, Utf8ToUtf16(file.string()), u"c", 1, u""))
            return d;
        d->Ctx = std::make_unique<TScanContext>(d->Host, TScanOptions{});
        d->Scanner = std::make_unique<TLineScanner>(d->Store, *d->Ctx);
        std::atomic<bool> halt{false};
        d->Ready = d->Scanner->Sweep(halt) && RunFoldPass(*d->Scanner, {}, d->Folds, false);
        UpdateFoldData(d->Store, d->Folds);
        return d;
    }();
    return *doc;
}

// The pass over every row (the background thread's work after typing stops).
void BM_FoldPass(benchmark::State& state) {
    TFoldDoc& d = Doc();
    if (!d.Ready)
        return state.SkipWithError("no corpus");
    TFoldTemp temp;
    for (auto _ : state)
        benchmark::DoNotOptimize(RunFoldPass(*d.Scanner, {}, temp, false));
    state.counters["rows"] = d.Store.Count();
    state.counters["folds"] = double(temp.Folds.size());
}
BENCHMARK(BM_FoldPass)->Unit(benchmark::kMillisecond)->Iterations(3);

// The main thread's hand-over of a pass to the rows.
void BM_UpdateFoldData(benchmark::State& state) {
    TFoldDoc& d = Doc();
    if (!d.Ready)
        return state.SkipWithError("no corpus");
    for (auto _ : state)
        UpdateFoldData(d.Store, d.Folds);
}
BENCHMARK(BM_UpdateFoldData)->Unit(benchmark::kMillisecond)->Iterations(5);

// The hand-over after a one-row edit in the middle row, as typing brings it: a character
// typed (argument 0: no fold moves) or a row inserted below it (argument 1: every fold below
// moves one row; the row goes again, untimed, after each run). The folds of the pass are the
// corpus's own, shifted where the row came in.
void BM_HandOverAfterOneRowEdit(benchmark::State& state) {
    TFoldDoc& d = Doc();
    if (!d.Ready)
        return state.SkipWithError("no corpus");
    const bool insert = state.range(0) != 0;
    const int row = d.Store.Count() / 2;
    TFoldHandOver handOver;
    TFoldTemp next = d.Folds;
    handOver.Apply(d.Store, next); // the first one writes every row
    TFoldTemp shifted = d.Folds;
    for (TFoldRange& f : shifted.Folds) {
        f.First += f.First > row ? 1 : 0;
        f.Last += f.Last > row ? 1 : 0;
    }
    ++shifted.RowCount;
    const int length = d.Store.GetLineLength(row);
    TTextChange typed; // a character typed at the row's end, or a line end
    typed.From = typed.RemovedEnd = {length, row};
    typed.InsertedEnd = insert ? TZvPos{0, row + 1} : TZvPos{length + 1, row};
    typed.RowsAdded = insert ? 1 : 0;
    TTextChange removed; // the inserted line end taken away again
    removed.From = removed.InsertedEnd = {length, row};
    removed.RemovedEnd = {0, row + 1};
    removed.RowsAdded = -1;
    int written = 0; // by the timed hand-over
    for (auto _ : state) {
        state.PauseTiming();
        next = insert ? shifted : d.Folds;
        if (insert)
            d.Store.Insert(row + 1, u"");
        handOver.Edited(typed);
        state.ResumeTiming();
        handOver.Apply(d.Store, next);
        written = handOver.RowsWritten();
        if (insert) {
            state.PauseTiming();
            d.Store.Delete(row + 1);
            handOver.Edited(removed);
            next = d.Folds;
            handOver.Apply(d.Store, next);
            state.ResumeTiming();
        }
    }
    state.counters["rows"] = d.Store.Count();
    state.counters["rows_written"] = written;
}
BENCHMARK(BM_HandOverAfterOneRowEdit)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_FoldAll(benchmark::State& state) {
    TFoldDoc& d = Doc();
    if (!d.Ready)
        return state.SkipWithError("no corpus");
    for (auto _ : state) {
        benchmark::DoNotOptimize(CloseAllNodes(d.Store));
        state.PauseTiming();
        OpenAllNodes(d.Store);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_FoldAll)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_UnfoldAll(benchmark::State& state) {
    TFoldDoc& d = Doc();
    if (!d.Ready)
        return state.SkipWithError("no corpus");
    for (auto _ : state) {
        state.PauseTiming();
        CloseAllNodes(d.Store);
        state.ResumeTiming();
        benchmark::DoNotOptimize(OpenAllNodes(d.Store));
    }
}
BENCHMARK(BM_UnfoldAll)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
} // namespace zv

BENCHMARK_MAIN();
