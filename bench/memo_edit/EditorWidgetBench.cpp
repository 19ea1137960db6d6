// The editor widget's keystroke-to-painted time on a million-row document: a key event goes
// through the widget into the control, then the viewport repaints at once.
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ui/EditorWidget.h"

#include <QApplication>
#include <QTest>

#include <benchmark/benchmark.h>

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

// Arg: the row the caret types in (start, middle, end).
void BM_KeystrokeToPainted(benchmark::State& state) {
    zv::TEditorWidget widget;
    widget.resize(900, 700);
    widget.show();
    widget.setFocus();
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
BENCHMARK(BM_KeystrokeToPainted)->Arg(0)->Arg(500'000)->Arg(999'999)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
