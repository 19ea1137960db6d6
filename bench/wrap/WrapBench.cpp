// Word wrap's costs: switching wrap on for a 110 MB document of 2 million lines at 100
// columns and off again (each timed alone, the other way back untimed), and one keystroke in
// the middle of a single 10 MB line that the load cut into rows: the edit through the
// control, the scanner told, and the 60 rows around the caret given their colours.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"
#include "syntax/ColourWalk.h"
#include "syntax/DocumentScan.h"
#include "syntax/ZvSyntax.h"

#include "../memo/WallClock.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

using zv::bench::Median;
using zv::bench::Seconds;

// 2 million lines, 110 MB: lengths 0 to 70 with every seventh line 150 to 190 units long,
// so that about one line in seven is cut at 100 columns.
struct TManyLines {
    TManyLines() {
        std::string text;
        text.reserve(105'000'000);
        const std::string words = "alpha beta, gamma(delta) = epsilon; zeta.eta theta ";
        for (int line = 0; line < 2'000'000; ++line) {
            const int length = line % 7 == 0 ? 150 + line % 41 : line % 71;
            for (int i = 0; i < length; ++i)
                text += words[static_cast<std::size_t>(i + line) % words.size()];
            text += '\n';
        }
        Bytes = static_cast<std::int64_t>(text.size());
        memo.SetLines(&lines);
        lines.LoadFromBytes(text);
        memo.SetLines(&lines);
        memo.SetTextCursor(7, 1'000'001);
    }
    zv::TZvMemoStrings lines;
    zv::TZvMemo memo;
    std::int64_t Bytes = 0;
};

TManyLines& ManyLines() {
    static TManyLines* doc = new TManyLines; // built once, left to the end of the run
    return *doc;
}

void BM_WrapAll100MB(benchmark::State& state) {
    TManyLines& d = ManyLines();
    for (auto _ : state) {
        state.SetIterationTime(Seconds([&] { d.memo.SetWordWrap(true, 100); }));
        state.counters["rows"] = d.lines.Count();
        d.memo.SetWordWrap(false, 100);
    }
    state.counters["lines"] = d.lines.Count();
    state.counters["MB"] = static_cast<double>(d.Bytes) / 1e6;
}
BENCHMARK(BM_WrapAll100MB)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

void BM_UnwrapAll100MB(benchmark::State& state) {
    TManyLines& d = ManyLines();
    for (auto _ : state) {
        d.memo.SetWordWrap(true, 100);
        state.SetIterationTime(Seconds([&] { d.memo.SetWordWrap(false, 100); }));
    }
    state.counters["lines"] = d.lines.Count();
}
BENCHMARK(BM_UnwrapAll100MB)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

// One line of 10 MB of script text, cut into rows of 4096 at load, coloured as JavaScript,
// every row's state known before the first keystroke.
struct TLongLine {
    TLongLine() {
        std::string text;
        const std::string piece =
            "function f(a){return a+1;} var s=\"a \\\" b\"; /* c */ x=[1,2]; ";
        while (text.size() < 10'000'000)
            text += piece;
        text += '\n';
        memo.SetLines(&lines);
        lines.LoadFromBytes(text);
        memo.SetLines(&lines);
        auto host = std::make_shared<zv::TMemoStyleHost>();
        zv::TZvSyntax syntax;
        const auto file =
            std::filesystem::path(ZV_SOURCE_DIR) / "data" / "Syntax" / "javascript.syx";
        Loaded = syntax.LoadStyleFromFile(host.get(), zv::Utf8ToUtf16(file.string()), u"javascript",
                                          1, u"");
        memo.Document().SetStyleHost(host);
        scan = std::make_shared<zv::TDocumentScan>(lines, host, zv::TScanOptions{});
        memo.Document().SetReader(scan);
        const std::atomic<bool> halt{false};
        scan->Scanner().Sweep(halt);
    }
    zv::TZvMemoStrings lines;
    zv::TZvMemo memo;
    std::shared_ptr<zv::TDocumentScan> scan;
    bool Loaded = false;
};

TLongLine& LongLine() {
    static TLongLine* doc = new TLongLine;
    return *doc;
}

void BM_KeystrokeInA10MBLine(benchmark::State& state) {
    TLongLine& d = LongLine();
    if (!d.Loaded || !d.memo.DocState().FForceWrap) {
        state.SkipWithError("the long line was not loaded cut, or its syntax not found");
        return;
    }
    const int row = d.lines.Count() / 2;
    // The rows the change asks to redraw get their runs, as the painter asks for them (at
    // most a screen of 60 rows).
    zv::TRowRange redraw;
    d.memo.FOnInvalidate = [&redraw](int first, int last) { redraw = {first, last}; };
    std::vector<double> samples, edits; // the whole keystroke, the edit alone
    for (auto _ : state) {
        d.memo.SetTextCursor(1000, row);
        double edit = 0;
        const double seconds = Seconds([&] {
            edit = Seconds([&] { d.memo.InsertChar(u'x'); });
            zv::TLineScanner& scanner = d.scan->Scanner();
            const int last = redraw.Last < 0 ? redraw.First + 59 : redraw.Last;
            zv::TStyle colours = scanner.GetUpStyle(redraw.First - 1);
            std::size_t runs = 0;
            for (int r = redraw.First; r <= std::min(last, redraw.First + 59); ++r)
                runs += zv::RowRunsFrom(scanner, r, colours).size();
            benchmark::DoNotOptimize(runs);
        });
        state.SetIterationTime(seconds);
        samples.push_back(seconds);
        edits.push_back(edit);
        d.memo.Backspace();
    }
    state.counters["rows"] = d.lines.Count();
    state.counters["median_us"] = Median(std::move(samples)) * 1e6;
    state.counters["edit_median_us"] = Median(std::move(edits)) * 1e6;
    state.counters["redrawn_rows"] = redraw.Last < 0 ? 60 : redraw.Last - redraw.First + 1;
}
BENCHMARK(BM_KeystrokeInA10MBLine)->UseManualTime()->Iterations(200)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
