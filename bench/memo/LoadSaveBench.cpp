// Loading and saving a generated 100 MB, 2-million-line UTF-8 source-like file, with glibc's
// iconv (UTF-8 to UTF-16LE) on the same file in the same run for comparison; loading 1 to
// 10 million rows to show that no step grows with the square of the row count.
#include "ZvMemoControl/ZvMemoStrings.h"

#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;

fs::path BenchFolder() {
    static const fs::path dir = [] {
        fs::path p = fs::temp_directory_path() / "zv_memo_bench";
        fs::create_directories(p);
        return p;
    }();
    return dir;
}

// About 100 MB in 2 million lines of indented, code-like text with some non-ASCII words.
const fs::path& SourceLikeFile() {
    static const fs::path file = [] {
        const fs::path p = BenchFolder() / "source_100mb.txt";
        if (fs::exists(p) && fs::file_size(p) > 99'000'000)
            return p;
        static const char* const words[] = {"int",
                                            "return",
                                            "value",
                                            "if",
                                            "else",
                                            "for",
                                            "while",
                                            "static",
                                            "const",
                                            "auto",
                                            "std::string",
                                            "=",
                                            "+",
                                            "(",
                                            ")",
                                            "{",
                                            "}",
                                            ";",
                                            "//",
                                            "name",
                                            "count",
                                            "size_t",
                                            "\xC3\xBC"
                                            "bung",
                                            "na\xC3\xAFve"};
        std::mt19937 rng(1);
        std::string out;
        out.reserve(101'000'000);
        for (int line = 0; line < 2'000'000; ++line) {
            out.append(4 * (rng() % 4), ' ');
            const int n = 4 + static_cast<int>(rng() % 9);
            for (int w = 0; w < n; ++w) {
                out += words[rng() % (sizeof words / sizeof words[0])];
                out += ' ';
            }
            while (out.size() < (line + 1) * 50ull)
                out += "x";
            out += '\n';
        }
        std::ofstream(p, std::ios::binary) << out;
        return p;
    }();
    return file;
}

const fs::path& RowsFile(long rows) {
    static std::map<long, fs::path> files;
    auto& p = files[rows];
    if (p.empty()) {
        p = BenchFolder() / ("rows_" + std::to_string(rows) + ".txt");
        if (!fs::exists(p)) {
            std::string out;
            out.reserve(static_cast<std::size_t>(rows) * 4);
            for (long i = 0; i < rows; ++i)
                out += "ab\n";
            std::ofstream(p, std::ios::binary) << out;
        }
    }
    return p;
}

double PeakRssMB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void BM_Load100MB(benchmark::State& state) {
    const auto& file = SourceLikeFile();
    for (auto _ : state) {
        zv::TZvMemoStrings store;
        store.SetCodePage(50001); // decide as when opening
        if (!store.LoadFromFile(file.string()))
            state.SkipWithError(store.LastError().c_str());
        benchmark::DoNotOptimize(store.Count());
        state.counters["rows"] = store.Count();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(file)));
    state.counters["peak_rss_MB"] = PeakRssMB();
    state.counters["file_MB"] = static_cast<double>(fs::file_size(file)) / 1e6;
}

void BM_Save100MB(benchmark::State& state) {
    const auto& file = SourceLikeFile();
    zv::TZvMemoStrings store;
    store.SetCodePage(50001);
    store.LoadFromFile(file.string());
    const fs::path out = BenchFolder() / "saved.txt";
    for (auto _ : state) {
        if (!store.SaveToFile(out.string()))
            state.SkipWithError(store.LastError().c_str());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(file)));
    fs::remove(out);
}

// The reference: glibc's iconv decoding the same file to UTF-16LE (output discarded).
void BM_Iconv100MB(benchmark::State& state) {
    const auto& file = SourceLikeFile();
    const std::string command = "iconv -f UTF-8 -t UTF-16LE '" + file.string() + "' >/dev/null";
    for (auto _ : state)
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("iconv failed");
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(file)));
}

void BM_LoadRows(benchmark::State& state) {
    const auto& file = RowsFile(state.range(0));
    for (auto _ : state) {
        zv::TZvMemoStrings store;
        store.SetCodePage(65001);
        store.LoadFromFile(file.string());
        benchmark::DoNotOptimize(store.Count());
    }
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_Load100MB)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Iconv100MB)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Save100MB)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadRows)
    ->Unit(benchmark::kMillisecond)
    ->Arg(1'000'000)
    ->Arg(2'500'000)
    ->Arg(5'000'000)
    ->Arg(10'000'000)
    ->Iterations(2)
    ->Complexity(benchmark::oN);

BENCHMARK_MAIN();
