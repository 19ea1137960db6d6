// Loading and saving a generated 100 MB, 2-million-line UTF-8 source-like file, with glibc's
// iconv (UTF-8 to UTF-16LE) on the same file interleaved in the same run for comparison;
// loading 1 to 10 million rows to show that no step grows with the square of the row count.
#include "ZvMemoControl/Streams.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf8Stream.h"

#include "WallClock.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using zv::bench::Median;
using zv::bench::Seconds;

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

// Writes the rows as the file's bytes to /dev/null: the save without the disk's part.
void EncodeToNull(zv::TZvMemoStrings& store) {
    const int fd = ::open("/dev/null", O_WRONLY);
    {
        zv::TZvFdOutStream out(fd);
        store.SaveTextToStream(out);
        out.Flush();
    }
    ::close(fd);
}

// Each iteration loads the file into rows, saves the rows (a crash-safe save: temporary file,
// fsync, rename), writes the same bytes to /dev/null (the save's own work, without the disk),
// runs glibc's iconv (UTF-8 to UTF-16LE, output discarded) on the same file, and copies the
// file with `dd conv=fsync` (what the disk needs to take the bytes safely), all on the wall
// clock. Interleaved, they see the same machine load, so their ratios hold on a busy machine.
// The reported time is the load; the counters are medians over the iterations. Freeing the
// rows is not timed.
void BM_LoadSaveVsIconv(benchmark::State& state) {
    const auto& file = SourceLikeFile();
    const fs::path out = BenchFolder() / "saved.txt";
    const std::string iconv = "iconv -f UTF-8 -t UTF-16LE '" + file.string() + "' >/dev/null";
    // The disk's floor for a crash-safe save of these bytes: copy them and fsync.
    const fs::path copy = BenchFolder() / "dd_copy.txt";
    const std::string dd =
        "dd if='" + file.string() + "' of='" + copy.string() + "' bs=1M conv=fsync status=none";
    std::vector<double> load, save, encode, reference, disk;
    int rows = 0;
    for (auto _ : state) {
        auto store = std::make_unique<zv::TZvMemoStrings>();
        store->SetCodePage(50001); // decide as when opening
        bool ok = false;
        load.push_back(Seconds([&] { ok = store->LoadFromFile(file.string()); }));
        if (!ok)
            state.SkipWithError(store->LastError().c_str());
        rows = store->Count();
        save.push_back(Seconds([&] { ok = store->SaveToFile(out.string()); }));
        if (!ok)
            state.SkipWithError(store->LastError().c_str());
        encode.push_back(Seconds([&] { EncodeToNull(*store); }));
        int status = 0;
        reference.push_back(Seconds([&] { status = std::system(iconv.c_str()); }));
        if (status != 0)
            state.SkipWithError("iconv failed");
        disk.push_back(Seconds([&] { status = std::system(dd.c_str()); }));
        if (status != 0)
            state.SkipWithError("dd failed");
        state.SetIterationTime(load.back());
        store.reset();
    }
    const auto bytes = static_cast<std::int64_t>(fs::file_size(file));
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["rows"] = rows;
    state.counters["load_ms"] = Median(load) * 1e3;
    state.counters["save_ms"] = Median(save) * 1e3;
    state.counters["encode_ms"] = Median(encode) * 1e3;
    state.counters["iconv_ms"] = Median(reference) * 1e3;
    state.counters["load_per_iconv"] = Median(load) / Median(reference);
    state.counters["save_per_load"] = Median(save) / Median(load);
    state.counters["encode_per_load"] = Median(encode) / Median(load);
    state.counters["dd_fsync_ms"] = Median(disk) * 1e3;
    state.counters["save_per_dd_fsync"] = Median(save) / Median(disk);
    const std::string cmp = "cmp -s '" + file.string() + "' '" + out.string() + "'";
    state.counters["same_bytes"] = std::system(cmp.c_str()) == 0 ? 1 : 0;
    state.counters["peak_rss_MB"] = PeakRssMB();
    state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
    fs::remove(out);
    fs::remove(copy);
}

// Rows of two characters, so the time is the per-row work; linear growth shows as a constant
// time per row (the Big-O fit at the end).
void BM_LoadRows(benchmark::State& state) {
    const auto& file = RowsFile(state.range(0));
    for (auto _ : state) {
        auto store = std::make_unique<zv::TZvMemoStrings>();
        store->SetCodePage(65001);
        state.SetIterationTime(Seconds([&] { store->LoadFromFile(file.string()); }));
        if (store->Count() != state.range(0) + 1) // the last line end leaves an empty last row
            state.SkipWithError("wrong row count");
        store.reset();
    }
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Keeping undecodable bytes as escapes against replacing them (the former rule), decoding the
// same valid 100 MB file interleaved in one run: the counter `escape_cost` is the ratio of the
// medians (1.0: no cost), beside the whole load's time for scale.
void BM_EscapeCostOnValidUtf8(benchmark::State& state) {
    std::ifstream in(SourceLikeFile(), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::u16string out(bytes.size() + 4, u'\0');
    std::vector<double> escape, replace, load;
    for (auto _ : state) {
        for (auto mode : {zv::TUtf8Decoder::TInvalid::Escape, zv::TUtf8Decoder::TInvalid::Replace})
            (mode == zv::TUtf8Decoder::TInvalid::Escape ? escape : replace).push_back(Seconds([&] {
                zv::TUtf8Decoder decoder(mode);
                benchmark::DoNotOptimize(decoder.Decode(bytes, true, out.data()));
            }));
        zv::TZvMemoStrings store;
        store.SetCodePage(65001);
        load.push_back(Seconds([&] { store.LoadFromFile(SourceLikeFile().string()); }));
        state.SetIterationTime(escape.back());
    }
    state.counters["escape_ms"] = Median(escape) * 1e3;
    state.counters["replace_ms"] = Median(replace) * 1e3;
    state.counters["load_ms"] = Median(load) * 1e3;
    state.counters["escape_cost"] = Median(escape) / Median(replace);
}

} // namespace

BENCHMARK(BM_EscapeCostOnValidUtf8)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(7);
BENCHMARK(BM_LoadSaveVsIconv)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(7);
BENCHMARK(BM_LoadRows)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Arg(1'000'000)
    ->Arg(2'000'000)
    ->Arg(5'000'000)
    ->Arg(10'000'000)
    ->Iterations(2)
    ->Complexity(benchmark::oN);

BENCHMARK_MAIN();
