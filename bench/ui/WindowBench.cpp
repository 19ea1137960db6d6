// The window with many documents: a command line of 500 files to a shown window (each tab
// is read when it first shows), and switching to a deferred tab of a 1 MB file until its
// rows are painted.
#include "platform/Prompt.h"
#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"
#include "support/ZvTestSupport.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QTabWidget>

#include "StartedWindow.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

// 499 files of 20 KB and one of 1 MB (the first, so that it is deferred), once per run.
const std::vector<std::string>& CommandLine() {
    static zvtest::TTempDir dir{"zv-window-bench"};
    static const std::vector<std::string> argv = [] {
        std::vector<std::string> args{"zevrit"};
        std::string row;
        for (int i = 0; i < 60; ++i)
            row += static_cast<char>('a' + i % 26);
        row += '\n';
        for (int f = 0; f < 500; ++f) {
            const int rows = f == 0 ? 1'000'000 / 61 : 20'000 / 61;
            std::string text;
            for (int r = 0; r < rows; ++r)
                text += row;
            const fs::path file = dir / ("f" + std::to_string(1000 + f) + ".txt");
            zvtest::WriteAll(file, text);
            args.push_back(file.string());
        }
        return args;
    }();
    return argv;
}

void BM_CommandLineOf500FilesToShownWindow(benchmark::State& state) {
    CommandLine();
    for (auto _ : state) {
        auto run = std::make_unique<zv::bench::TStartedWindow>(CommandLine());
        run->window.ActiveEditor()->viewport()->repaint();
        QApplication::processEvents();
        benchmark::DoNotOptimize(run->window.TabGroup()->count());
        state.PauseTiming(); // closing the window is not part of the figure
        run.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_CommandLineOf500FilesToShownWindow)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_SwitchToADeferredTabOf1MB(benchmark::State& state) {
    CommandLine();
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<zv::bench::TStartedWindow>(CommandLine());
        state.ResumeTiming();
        run->window.TabGroup()->setCurrentIndex(0); // f1000.txt, 1 MB, not read yet
        run->window.ActiveEditor()->viewport()->repaint();
        state.PauseTiming();
        run.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_SwitchToADeferredTabOf1MB)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
