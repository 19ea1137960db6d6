// Scanner benchmarks. The corpus is a 90 MB C file made of the machine's C headers
// (make_c_corpus.sh); ZV_SCANNER_CORPUS names another file.
#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/OpenTextFile.h"
#include "common/Utf.h"
#include "syntax/BackgroundThread.h"
#include "syntax/ColourWalk.h"
#include "syntax/ZvSyntax.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace zv {
namespace {

std::string CorpusPath() {
    if (const char* p = std::getenv("ZV_SCANNER_CORPUS"); p && *p)
        return p;
    const std::string path = "/tmp/zv-corpus-90.c";
    const std::string cmd =
        std::string(ZV_SOURCE_DIR) + "/bench/scanner/make_c_corpus.sh " + path + " 90";
    if (std::system(cmd.c_str()) != 0)
        return {};
    return path;
}

struct TBenchDoc {
    TZvMemoStrings Store;
    TMemoStyleHost Host;
    std::unique_ptr<TScanContext> Ctx;
    std::unique_ptr<TLineScanner> Scanner;
    std::int64_t Bytes = 0;

    bool LoadSyntax() {
        TZvSyntax syntax;
        const auto file = std::filesystem::path(ZV_SOURCE_DIR) / "data" / "Syntax" / "c.syx";
        if (!syntax.LoadStyleFromFile(&Host, Utf8ToUtf16(file.string()), u"c", 1, u""))
            return false;
        Ctx = std::make_unique<TScanContext>(Host, TScanOptions{});
        Scanner = std::make_unique<TLineScanner>(Store, *Ctx);
        return true;
    }
};

TBenchDoc& Corpus() {
    // Built once and never destroyed: the store is not movable and the run ends with it.
    static TBenchDoc* doc = [] {
        auto* d = new TBenchDoc;
        TFileType type;
        std::string error;
        const std::string path = CorpusPath();
        if (!path.empty() && OpenTextFile(d->Store, path, cpAutoDetect, type, error))
            d->Bytes = std::int64_t(std::filesystem::file_size(path));
        d->LoadSyntax();
        return d;
    }();
    return *doc;
}

// A document of about a million rows of C, swept complete.
TBenchDoc& MillionRows() {
    static TBenchDoc* doc = [] {
        auto* d = new TBenchDoc;
        std::u16string text;
        const std::u16string_view block =
            u"/* a comment\n   of two rows */\nstatic int f(int a, char *s) {\n"
            u"    if (a > 0x10) return strlen(\"text\") + 'c'; // note\n    return a;\n}\n\n";
        const auto blockRows = std::count(block.begin(), block.end(), u'\n');
        for (std::ptrdiff_t rows = 0; rows < 1'000'000; rows += blockRows)
            text += block;
        d->Store.SetTextStr(text);
        d->LoadSyntax();
        std::atomic<bool> halt{false};
        d->Scanner->Sweep(halt);
        return d;
    }();
    return *doc;
}

// Every row of the 90 MB file through the one-row scanner, state carried, no sink.
void BM_ScanRows90MB(benchmark::State& state) {
    TBenchDoc& d = Corpus();
    if (!d.Ctx || d.Bytes == 0)
        return state.SkipWithError("no corpus");
    TScanScratch scratch;
    TRowFacts facts; // arg 1: the row facts too, as the sweep gathers them
    for (auto _ : state) {
        TStyle s;
        ClearStyle(s, true);
        for (int row = 0; row < d.Store.Count(); ++row) {
            TScanRequest r;
            r.Text = d.Store.Get(row);
            r.Facts = state.range(0) ? &facts : nullptr;
            ScanRow(*d.Ctx, r, s, scratch);
        }
        benchmark::DoNotOptimize(s);
    }
    state.SetBytesProcessed(state.iterations() * d.Bytes);
    state.counters["rows"] = d.Store.Count();
}
BENCHMARK(BM_ScanRows90MB)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// Per language: a file of the language (the oracle's own samples, or a Debian package's file)
// repeated to about 8 MB, every row through the scanner with the colouring sink, as a
// repaint of the whole file would. The figure to keep above 30 MB/s.
struct TLanguageFile {
    const char* Syntax;
    const char* File; // relative to the source tree, or absolute
};
constexpr TLanguageFile kLanguageFiles[] = {
    {"c", "/usr/include/stdio.h"},
    {"cpp", "/usr/include/c++/12/bits/stl_vector.h"},
    {"python", "/usr/lib/python3.11/argparse.py"},
    {"perl", "/usr/share/perl/5.36.0/Getopt/Long.pm"},
    {"ruby", "/usr/lib/ruby/3.1.0/optparse.rb"},
    {"yaml", "/usr/share/doc/python3-yaml/examples/pygments-lexer/example.yaml"},
    {"markdown", "/usr/share/doc/nodejs/api/readline.md"},
    {"cmake", "/usr/share/cmake-3.25/Modules/FindThreads.cmake"},
    {"rust", "tests/scanner/samples/sample.rs"},
    {"php", "tests/scanner/samples/sample.php"},
    {"typescript", "tests/scanner/samples/sample.ts"},
    {"toml", "tests/scanner/samples/sample.toml"},
    {"kotlin", "tests/scanner/samples/sample.kt"},
    {"haskell", "tests/scanner/samples/sample.hs"},
    {"powershell", "tests/scanner/samples/sample.ps1"},
    {"batch", "tests/scanner/samples/sample.bat"},
    {"scala", "tests/scanner/samples/sample.scala"},
    {"dart", "tests/scanner/samples/sample.dart"},
    {"elixir", "tests/scanner/samples/sample.ex"},
    {"erlang", "/usr/lib/erlang/lib/stdlib-4.2/src/gen_server.erl"},
    {"zig", "tests/scanner/samples/sample.zig"},
    {"nim", "/usr/lib/nim/lib/pure/parseutils.nim"},
    {"julia", "tests/scanner/samples/sample.jl"},
    {"r", "/usr/lib/R/library/stats/demo/lm.glm.R"},
    {"objectivec", "tests/scanner/samples/sample.m"},
    {"fortran", "/usr/lib/gcc/x86_64-linux-gnu/12/finclude/openacc.f90"},
    {"fortranfixed", "tests/scanner/samples/sample.f"},
    {"pascal", "/usr/share/doc/fp-units-fcl/3.2.2/examples/fcl-base/htdump.pp"},
    {"groovy", "tests/scanner/samples/sample.groovy"},
    {"latex", "/usr/share/texlive/texmf-dist/tex/latex/base/article.cls"},
    {"scss", "/usr/share/nodejs/bootstrap/scss/mixins/_grid.scss"},
    {"less", "/usr/share/javascript/bootstrap/less/buttons.less"},
    {"gas", "/usr/share/go-1.19/src/runtime/cgo/gcc_amd64.S"},
    {"nasm", "tests/scanner/samples/sample.asm"},
    {"hcl", "tests/scanner/samples/sample.tf"},
    {"nginx", "/etc/nginx/sites-available/default"},
    {"apache", "tests/scanner/samples/apache2.sample.conf"},
    {"editorconfig", "tests/scanner/samples/sample.editorconfig"},
    {"tsx", "tests/scanner/samples/sample.tsx"},
    {"jsx", "tests/scanner/samples/sample.jsx"},
    {"jinja", "tests/scanner/samples/sample.j2"},
    {"twig", "tests/scanner/samples/sample.twig"},
    {"aspx", "tests/scanner/samples/sample.aspx"},
    {"vbscript", "tests/scanner/samples/sample.vbs"},
};

void BM_ColourRunsByLanguage(benchmark::State& state) {
    const TLanguageFile& lf = kLanguageFiles[state.range(0)];
    state.SetLabel(lf.Syntax);
    std::filesystem::path file(lf.File);
    if (file.is_relative())
        file = std::filesystem::path(ZV_SOURCE_DIR) / file;
    std::string bytes;
    if (std::FILE* f = std::fopen(file.c_str(), "rb")) {
        char buf[65536];
        for (std::size_t n; (n = std::fread(buf, 1, sizeof buf, f)) > 0;)
            bytes.append(buf, n);
        std::fclose(f);
    }
    if (bytes.empty())
        return state.SkipWithError("file missing");
    std::string big;
    while (big.size() < 8'000'000)
        big += bytes;
    TZvMemoStrings store;
    store.SetTextStr(Utf8ToUtf16(big));
    TMemoStyleHost host;
    TZvSyntax syntax;
    const auto syx = std::filesystem::path(ZV_SOURCE_DIR) / "data" / "Syntax" /
                     (std::string(lf.Syntax) + ".syx");
    if (!syntax.LoadStyleFromFile(&host, Utf8ToUtf16(syx.string()), Utf8ToUtf16(lf.Syntax), 1, u""))
        return state.SkipWithError("no syntax");
    const TScanContext ctx(host, TScanOptions{});
    TScanScratch scratch;
    TRunCollector runs;
    for (auto _ : state) {
        TStyle s;
        ClearStyle(s, true);
        for (int row = 0; row < store.Count(); ++row) {
            runs.Runs.clear();
            TScanRequest r;
            r.Text = store.Get(row);
            r.Sink = &runs;
            ScanRow(ctx, r, s, scratch);
        }
        benchmark::DoNotOptimize(s);
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(big.size()));
}
BENCHMARK(BM_ColourRunsByLanguage)
    ->DenseRange(0, int(std::size(kLanguageFiles)) - 1)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

// The same with the colouring walk's sink (runs collected, as the painter and export do).
void BM_ColourRuns90MB(benchmark::State& state) {
    TBenchDoc& d = Corpus();
    if (!d.Ctx || d.Bytes == 0)
        return state.SkipWithError("no corpus");
    TScanScratch scratch;
    TRunCollector runs;
    for (auto _ : state) {
        TStyle s;
        ClearStyle(s, true);
        for (int row = 0; row < d.Store.Count(); ++row) {
            runs.Runs.clear();
            TScanRequest r;
            r.Text = d.Store.Get(row);
            r.Sink = &runs;
            ScanRow(*d.Ctx, r, s, scratch);
        }
        benchmark::DoNotOptimize(runs.Runs.data());
    }
    state.SetBytesProcessed(state.iterations() * d.Bytes);
}
BENCHMARK(BM_ColourRuns90MB)->Unit(benchmark::kMillisecond)->Iterations(2);

// One keystroke in the middle of a million-row document, as the editor handles it: the row
// changes, the scanner is told, and the 60 rows on screen get their runs. Arg 0 types a
// letter (end state unchanged); arg 1 opens a block comment (every row below changes).
void BM_KeystrokeToRecolouredRows(benchmark::State& state) {
    TBenchDoc& d = MillionRows();
    const int row = d.Store.Count() / 2;
    const std::u16string_view typed = state.range(0) ? u"/*" : u"x";
    for (auto _ : state) {
        state.PauseTiming();
        // Undo the previous keystroke, untimed. The rows below an opened comment are left
        // for the sweep: the keystroke invalidates them anyway, and the rows it recolours
        // on screen are found from the valid rows above it either way.
        d.Store.SetLineString(row, u"    return a;");
        d.Scanner->ClearLineStylesFrom(row);
        d.Scanner->InvalidateLine(row);
        state.ResumeTiming();
        d.Store.InsertAt(row, typed, 5);
        d.Scanner->ClearLineStylesFrom(row);
        const TRedrawRange redraw = d.Scanner->InvalidateLine(row);
        std::size_t runs = 0;
        for (int r = row - 30; r < row + 30; ++r)
            runs += RowRuns(*d.Scanner, r).size();
        benchmark::DoNotOptimize(redraw);
        benchmark::DoNotOptimize(runs);
    }
    state.counters["rows"] = d.Store.Count();
}
BENCHMARK(BM_KeystrokeToRecolouredRows)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// How long an edit waits for the handshake while the first sweep of a million rows runs.
void BM_PauseDuringFirstSweep(benchmark::State& state) {
    TBenchDoc& d = MillionRows();
    IBackgroundHost host;
    for (auto _ : state) {
        state.PauseTiming();
        d.Scanner->ClearLineStylesFrom(0);
        TBackgroundThread thread(*d.Scanner, host,
                                 {std::chrono::milliseconds(0), std::chrono::milliseconds(1),
                                  std::chrono::milliseconds(1), std::chrono::milliseconds(1)});
        thread.SuspendThread(false);
        while (d.Scanner->States().ValidRows() < 50'000)
            std::this_thread::yield();
        state.ResumeTiming();
        thread.SuspendThread(true);
        state.PauseTiming();
        thread.SuspendThread(false);
        thread.StopBackgroundThread(true);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_PauseDuringFirstSweep)->Unit(benchmark::kMicrosecond)->Iterations(20);

} // namespace
} // namespace zv

BENCHMARK_MAIN();
