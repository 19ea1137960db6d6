// Engine time of one keystroke (a typed character, Enter, Backspace joining two rows) at
// the start, middle and end of a 10-million-row document, and the undo of one edit that
// replaced a million rows. Only the edit is timed; each is taken back untimed.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <string>

namespace {

struct TDoc {
    explicit TDoc(int rows) {
        std::string text;
        text.reserve(static_cast<std::size_t>(rows) * 24);
        for (int i = 0; i < rows; ++i)
            text += "row " + std::to_string(i) + " of the text\n";
        memo.SetLines(&lines);
        lines.LoadFromBytes(text);
        memo.SetLines(&lines);
    }
    zv::TZvMemoStrings lines;
    zv::TZvMemo memo;
};

TDoc& BigDoc() {
    static TDoc* doc = new TDoc(10'000'000);
    return *doc;
}

int RowFor(zv::TZvMemo& memo, int where) {
    const int last = memo.RowCount() - 2;
    return where == 0 ? 1 : where == 1 ? last / 2 : last;
}

template <typename F> double Seconds(F&& f) {
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Arg: 0 start, 1 middle, 2 end of the document.
void BM_TypeChar(benchmark::State& state) {
    zv::TZvMemo& memo = BigDoc().memo;
    const int row = RowFor(memo, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        memo.SetTextCursor(3, row);
        state.SetIterationTime(Seconds([&] { memo.InsertChar(u'x'); }));
        memo.Backspace();
    }
}
BENCHMARK(BM_TypeChar)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_Enter(benchmark::State& state) {
    zv::TZvMemo& memo = BigDoc().memo;
    const int row = RowFor(memo, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        memo.SetTextCursor(3, row);
        state.SetIterationTime(Seconds([&] { memo.EnterPress(); }));
        memo.Backspace();
    }
}
BENCHMARK(BM_Enter)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMicrosecond);

// Backspace at column 0: joins two rows, the costliest backspace.
void BM_BackspaceJoin(benchmark::State& state) {
    zv::TZvMemo& memo = BigDoc().memo;
    const int row = RowFor(memo, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        memo.SetTextCursor(0, row);
        state.SetIterationTime(Seconds([&] { memo.Backspace(); }));
        memo.EnterPress();
    }
}
BENCHMARK(BM_BackspaceJoin)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_BackspaceChar(benchmark::State& state) {
    zv::TZvMemo& memo = BigDoc().memo;
    const int row = RowFor(memo, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        memo.SetTextCursor(3, row);
        state.SetIterationTime(Seconds([&] { memo.Backspace(); }));
        memo.InsertChar(u'w');
    }
}
BENCHMARK(BM_BackspaceChar)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMicrosecond);

// One paste replaced rows 0..1,000,000 of a 2-million-row document by a million new rows;
// the undo puts the old rows back.
void BM_UndoMillionRowReplace(benchmark::State& state) {
    TDoc doc(2'000'000);
    std::u16string replacement;
    for (int i = 0; i < 1'000'000; ++i)
        replacement += u"a new row of pasted text\n";
    doc.memo.SetSelection({0, 0}, {0, 1'000'000});
    doc.memo.InsertText(replacement);
    for (auto _ : state) {
        state.SetIterationTime(Seconds([&] { doc.memo.Undo(); }));
        doc.memo.Redo();
    }
}
BENCHMARK(BM_UndoMillionRowReplace)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
