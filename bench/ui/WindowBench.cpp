// The window with many documents: a command line of 500 files to a shown window (each tab
// is read when it first shows), and switching to a deferred tab of a 1 MB file until its
// rows are painted; and one 100 MB file to its first painted rows, against `zvtool info` on
// the same file in the same run.
#include "platform/Prompt.h"
#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"
#include "support/ZvTestSupport.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QTabWidget>

#include "StartedWindow.h"
#include "memo/WallClock.h"

#include "QtBenchmarkMain.h"

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

// About 100 MB of UTF-8 in 2 million lines, once per run.
const std::string& LargeFile() {
    static zvtest::TTempDir dir{"zv-window-large"};
    static const std::string path = [] {
        const fs::path file = dir / "large.txt";
        std::string text;
        text.reserve(101'000'000);
        for (int i = 0; text.size() < 100'000'000; ++i)
            text += "    value_" + std::to_string(i) + " = compute(\"caf\xC3\xA9\", " +
                    std::to_string(i % 97) + "); // r\xC3\xA9sum\xC3\xA9 of the row\n";
        zvtest::WriteAll(file, text);
        return file.string();
    }();
    return path;
}

// The counter `ratio` is the window's median over zvtool's, each iteration timing both.
void BM_LargeFileToPaintedRowsVsZvtoolInfo(benchmark::State& state) {
    const std::string& file = LargeFile();
    std::vector<double> window, tool;
    for (auto _ : state) {
        tool.push_back(zv::bench::Seconds([&] {
            int status = 0;
            zvtest::RunOutput(std::string(ZV_TOOL_PATH) + " info '" + file + "'", status);
            if (status != 0)
                state.SkipWithError("zvtool info failed");
        }));
        std::unique_ptr<zv::bench::TStartedWindow> run;
        window.push_back(zv::bench::Seconds([&] {
            run = std::make_unique<zv::bench::TStartedWindow>(
                std::vector<std::string>{"zevrit", file});
            run->window.ActiveEditor()->viewport()->repaint();
        }));
        state.SetIterationTime(window.back());
        if (run->helper.ActiveDocument()->Lines().Count() < 1'000'000)
            state.SkipWithError("the window did not read the file");
        run.reset();
    }
    state.counters["window_ms"] = zv::bench::Median(window) * 1e3;
    state.counters["zvtool_ms"] = zv::bench::Median(tool) * 1e3;
    state.counters["ratio"] = zv::bench::Median(window) / zv::bench::Median(tool);
}
BENCHMARK(BM_LargeFileToPaintedRowsVsZvtoolInfo)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

} // namespace

int main(int argc, char** argv) {
    return zv::bench::RunInApplication(argc, argv);
}
