// The editor widget on a million-row document: keystroke-to-painted time (a key event goes
// through the widget into the control, then the viewport repaints at once), plain and with
// C colours, and the time of one repaint while the background thread's first sweep runs.
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"
#include "syntax/ZvSyntax.h"
#include "ui/EditorWidget.h"

#include <QApplication>
#include <QTest>

#include "../ui/QtBenchmarkMain.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

namespace {

zv::TZvMemoStrings* Lines() {
    static zv::TZvMemoStrings* lines = [] {
        auto* l = new zv::TZvMemoStrings;
        std::string text;
        for (int i = 0; i < 1'000'000; ++i)
            text += "row " + std::to_string(i) + " of the text\n";
        l->LoadFromBytes(text);
        return l;
    }();
    return lines;
}

// A million rows of C (comments, strings, keywords, braces, blank rows).
zv::TZvMemoStrings* CLines() {
    static zv::TZvMemoStrings* lines = [] {
        auto* l = new zv::TZvMemoStrings;
        std::string text;
        for (int i = 0; i < 1'000'000 / 6; ++i) // six rows each
            text += "/* block " + std::to_string(i) +
                    " */\nstatic int f(int a, char *s) {\n"
                    "    if (a > 0x10) return strlen(\"text\") + 'c'; // note\n"
                    "    return a;\n}\n\n";
        l->LoadFromBytes(text);
        return l;
    }();
    return lines;
}

// The C syntax of the built data tree, coloured by the definition file's own colours.
std::shared_ptr<const zv::TMemoStyleHost> CSyntax() {
    static std::shared_ptr<zv::TMemoStyleHost> host = [] {
        auto h = std::make_shared<zv::TMemoStyleHost>();
        const auto file =
            std::filesystem::path(ZV_TOOL_PATH).parent_path().parent_path() / "Syntax" / "c.syx";
        zv::TZvSyntax loader;
        loader.LoadStyleFromFile(h.get(), zv::Utf8ToUtf16(file.string()), u"c", 1, u"");
        return h;
    }();
    return host;
}

// The first sweep starts at once and ticks every millisecond, as fast as the thread goes.
constexpr zv::TBackgroundTiming kEager{std::chrono::milliseconds(0), std::chrono::milliseconds(1),
                                       std::chrono::milliseconds(1), std::chrono::milliseconds(1)};

// Arg 0: the row the caret types in (start, middle, end); arg 1: with C colours.
void BM_KeystrokeToPainted(benchmark::State& state) {
    zv::TEditorWidget widget;
    widget.resize(900, 700);
    widget.show();
    widget.setFocus();
    if (state.range(1)) {
        widget.SetBackgroundTiming(kEager);
        widget.SetDocument(CLines(), CSyntax());
        if (!widget.Scan() || !widget.Scan()->Thread().WaitComplete(std::chrono::seconds(60)))
            return state.SkipWithError("no C syntax or no complete sweep");
    } else
        widget.SetLines(Lines());
    widget.ShowRow(static_cast<int>(state.range(0)));
    QApplication::processEvents();
    bool typing = true;
    for (auto _ : state) {
        if (typing)
            QTest::keyClick(&widget, Qt::Key_X);
        else
            QTest::keyClick(&widget, Qt::Key_Backspace);
        widget.viewport()->repaint();
        typing = !typing;
    }
    widget.SetLines(nullptr);
}
BENCHMARK(BM_KeystrokeToPainted)
    ->ArgsProduct({{0, 500'000, 999'999}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);

// One full repaint of a C view far down the document while the first sweep of the million
// rows runs on the background thread: the window keeps painting from the states it has,
// computing the rows above the view on demand, and never waits for the sweep. Each
// iteration restarts the sweep when it has ended; "swept" counts the rows stored meanwhile.
void BM_RepaintDuringFirstSweep(benchmark::State& state) {
    zv::TEditorWidget widget;
    widget.resize(900, 700);
    widget.show();
    widget.SetBackgroundTiming(kEager);
    widget.SetDocument(CLines(), CSyntax());
    if (!widget.Scan())
        return state.SkipWithError("no C syntax");
    zv::TDocumentScan& scan = *widget.Scan();
    const int rows = CLines()->Count();
    int top = rows / 2;
    std::int64_t swept = 0, during = 0;
    for (auto _ : state) {
        state.PauseTiming();
        if (scan.Scanner().Complete()) {
            swept += rows;
            scan.Thread().RequestFullScan(0);
        }
        top = top + 997 < rows ? top + 997 : rows / 2; // a new view each time
        widget.ShowRow(top);
        during += !scan.Scanner().Complete();
        state.ResumeTiming();
        widget.viewport()->repaint();
    }
    state.counters["swept"] = double(swept + scan.Scanner().States().ValidRows());
    state.counters["during_sweep"] = double(during);
    widget.SetLines(nullptr);
}
BENCHMARK(BM_RepaintDuringFirstSweep)->Unit(benchmark::kMicrosecond)->Iterations(300);

} // namespace

int main(int argc, char** argv) {
    return zv::bench::RunInApplication(argc, argv);
}
