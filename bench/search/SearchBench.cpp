// Search and replace figures. Find all in a 100 MB file (2 million lines, a million hits)
// is timed beside `grep -c -F` and `pcre2grep -c` run on the same file in the same run, so the
// ratio (counter "ratio") does not depend on the machine. Replace all of the million hits and
// its undo are timed one by one. The quick-find keystroke is the search from the top for each
// growing prefix of a word whose first hit lies near the end of a million rows.
#include "ZvMemoControl/SearchReplace.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include "../memo/WallClock.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <time.h>
#include <unistd.h>

namespace {

using zv::bench::Seconds;

// CPU seconds this thread has used.
double ThreadSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// A 100 MB file of 2 million lines; every other line holds "needle<digit>".
struct TBigFile {
    TBigFile() {
        Path = std::filesystem::temp_directory_path() /
               ("zv-search-bench-" + std::to_string(getpid()) + ".txt");
        std::ofstream out(Path, std::ios::binary);
        std::string line;
        for (int i = 0; i < 2'000'000; ++i) {
            line = i % 2 == 0 ? "needle" + std::to_string(i % 10) : "haystack";
            line += " line " + std::to_string(i) + " alpha beta gamma delta epsilon";
            line.resize(49, '.');
            out << line << '\n';
        }
        out.close();
        memo.SetLines(&lines);
        lines.SetDefaultSysTextType(zv::sttUnix);
        lines.Memo().FDefaultEncoding = 65001;
        lines.LoadFromFile(Path.string());
        memo.SetLines(&lines);
    }
    ~TBigFile() { std::filesystem::remove(Path); }
    std::filesystem::path Path;
    zv::TZvMemoStrings lines;
    zv::TZvMemo memo;
};

TBigFile& Big() {
    static TBigFile* file = new TBigFile;
    return *file;
}

// Seconds the shell command took. Its output goes to a file: grep stops at the first match
// when it writes to /dev/null.
double ToolSeconds(const std::string& command) {
    const std::string out = (std::filesystem::temp_directory_path() /
                             ("zv-search-bench-" + std::to_string(getpid()) + ".out"))
                                .string();
    const double s = Seconds([&] {
        if (std::system((command + " >" + out).c_str()) != 0)
            std::abort();
    });
    std::filesystem::remove(out);
    return s;
}

void FindAll(benchmark::State& state, const char* text, zv::TZvFindOptions options,
             const std::string& tool) {
    TBigFile& big = Big();
    zv::TTextSearch search;
    search.Prepare(std::u16string(text, text + std::char_traits<char>::length(text)), options);
    double ours = 0, theirs = 0;
    std::int64_t hits = 0;
    for (auto _ : state) {
        const double s = Seconds([&] {
            hits =
                search.ForEach(big.lines, {0, 0}, zv::TTextSearch::kTextEnd,
                               [](const zv::TSearchHit&, const zv::TMatchGroups&) { return true; });
        });
        state.SetIterationTime(s);
        ours += s;
        theirs += ToolSeconds(tool + " " + big.Path.string());
    }
    state.counters["hits"] = static_cast<double>(hits);
    state.counters["tool_s"] = theirs / static_cast<double>(state.iterations());
    state.counters["ratio"] = ours / theirs;
}

void BM_FindAllLiteral(benchmark::State& state) {
    FindAll(state, "needle", zv::frCase, "grep -c -F needle");
}
BENCHMARK(BM_FindAllLiteral)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_FindAllRegex(benchmark::State& state) {
    FindAll(state, "needle[0-9]", zv::frCase | zv::frRegExp, "pcre2grep -c 'needle[0-9]'");
}
BENCHMARK(BM_FindAllRegex)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

// Replace all of the million hits (one undo step), then its undo, each timed.
void BM_ReplaceAllMillion(benchmark::State& state) {
    TBigFile& big = Big();
    zv::TTextSearch search;
    search.Prepare(u"needle", zv::frCase);
    double undo = 0;
    std::int64_t replaced = 0;
    for (auto _ : state) {
        state.SetIterationTime(Seconds([&] {
            replaced = zv::ReplaceAll(big.memo, search, {u"pin", false});
        }));
        undo += Seconds([&] { big.memo.Undo(); });
    }
    state.counters["replaced"] = static_cast<double>(replaced);
    state.counters["undo_s"] = undo / static_cast<double>(state.iterations());
}
BENCHMARK(BM_ReplaceAllMillion)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// Each keystroke of "line 1999999" searches from the top: the worst of them scans every row.
void BM_QuickFindKeystroke(benchmark::State& state) {
    zv::TZvMemoStrings lines;
    std::string text;
    for (int i = 0; i < 1'000'000; ++i)
        text += "row " + std::to_string(i) + " of the text\n";
    lines.LoadFromBytes(text);
    const std::u16string word = u"row 999999 ";
    double worst = 0, worstCpu = 0;
    for (auto _ : state) {
        double total = 0;
        for (std::size_t n = 1; n <= word.size(); ++n) {
            zv::TTextSearch search;
            const double cpu = ThreadSeconds();
            const double s = Seconds([&] {
                search.Prepare(word.substr(0, n), 0);
                benchmark::DoNotOptimize(search.FindForward(lines, {0, 0}));
            });
            worstCpu = std::max(worstCpu, ThreadSeconds() - cpu);
            worst = std::max(worst, s);
            total += s;
        }
        state.SetIterationTime(total / static_cast<double>(word.size()));
    }
    // Wall time counts the moments another program held the core; CPU time does not.
    state.counters["worst_ms"] = worst * 1e3;
    state.counters["worst_cpu_ms"] = worstCpu * 1e3;
}
BENCHMARK(BM_QuickFindKeystroke)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

BENCHMARK_MAIN();
