// Brace matching across a whole document: the pair of a brace on the first row whose partner
// is on the last of 200,000 rows, with every row's state stored (the sweep has run), and on a
// fresh document whose rows the walk scans and stores on its way.
#include "common/Utf.h"
#include "syntax/BraceMatch.h"
#include "syntax/ZvSyntax.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>

namespace zv {
namespace {

constexpr int kRows = 200000;

struct TBraceDoc {
    TZvMemoStrings Store;
    TMemoStyleHost Host;
    std::unique_ptr<TScanContext> Ctx;
    std::unique_ptr<TLineScanner> Scanner;

    TBraceDoc() {
        std::u16string text = u"{\n";
        for (int row = 1; row + 1 < kRows; ++row)
            text += u"    f(a[i], \"}\", {x}); /* ) */ g(b) // ]\n";
        text += u"}\n";
        Store.SetTextStr(text);
        TZvSyntax syntax;
        const auto file = std::filesystem::path(ZV_SOURCE_DIR) / "data" / "Syntax" / "c.syx";
        syntax.LoadStyleFromFile(&Host, Utf8ToUtf16(file.string()), u"c", 1, u"");
        Ctx = std::make_unique<TScanContext>(Host, TScanOptions{});
        Scanner = std::make_unique<TLineScanner>(Store, *Ctx);
    }
};

TBraceDoc& Doc() {
    static TBraceDoc* doc = new TBraceDoc; // never destroyed: the run ends with it
    return *doc;
}

// Arg 1: the rows are swept before; arg 0: every iteration starts with no stored rows.
void BM_BracePairOverWholeDocument(benchmark::State& state) {
    TBraceDoc& d = Doc();
    const bool swept = state.range(0) != 0;
    std::atomic<bool> halt{false};
    d.Scanner->States().Reset(d.Store.Count());
    if (swept)
        d.Scanner->Sweep(halt);
    for (auto _ : state) {
        if (!swept) {
            state.PauseTiming();
            d.Scanner->States().Reset(d.Store.Count());
            state.ResumeTiming();
        }
        const TBracePair pair = FindBracePair(*d.Scanner, 0, 0, false);
        if (pair.Right.Y != kRows - 1)
            state.SkipWithError("the partner was not found");
        benchmark::DoNotOptimize(pair);
    }
}
BENCHMARK(BM_BracePairOverWholeDocument)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace zv

BENCHMARK_MAIN();
