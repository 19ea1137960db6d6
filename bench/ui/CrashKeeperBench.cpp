// What keeping unsaved text costs while typing: a key every 100 ms of simulated time into a
// modified 10 MB document (beside a second modified 10 MB document left alone), with the
// keeper's two-second write driven directly. Reports the share of one CPU that keeping
// takes in all (the writer thread included) and on the window's own thread.
#include "platform/Prompt.h"
#include "shell/CrashKeeper.h"
#include "shell/MainFormHelper.h"
#include "support/ZvTestSupport.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"

#include "QtBenchmarkMain.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int kKeyMs = 100; // a steady typist

// CPU seconds used by this thread or by the whole process.
double CpuSeconds(clockid_t clock) {
    timespec now{};
    ::clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// A file of 10 MB in rows of 100 bytes.
void WriteTenMegabytes(const fs::path& file) {
    std::string row(99, 'w');
    row += '\n';
    std::string text;
    text.reserve(10'000'000);
    while (text.size() < 10'000'000)
        text += row;
    zvtest::WriteAll(file, text);
}

void BM_KeepingUnsavedTextWhileTyping(benchmark::State& state) {
    zvtest::TTempDir dir{"zv-crash-bench"};
    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
    zv::TMainWindow window(helper);
    zv::TCrashKeeper keeper(helper, dir.Path() / "Crash");
    std::vector<zv::TEditorWidget*> editors;
    for (const char* name : {"idle.txt", "typed.txt"}) {
        WriteTenMegabytes(dir.Path() / name);
        zv::TLoadFileArgs args;
        args.FileName = (dir.Path() / name).string();
        helper.LoadFile(args);
        editors.push_back(window.ActiveEditor());
        editors.back()->Memo().KeyPress(u'a');
    }
    keeper.WriteNow(); // both kept once, as after the first edits
    keeper.WaitWritten();
    const int keysPerWrite = zv::TCrashKeeper::kDelayMs / kKeyMs;
    double allCpu = 0, windowCpu = 0, simulated = 0;
    for (auto _ : state) {
        for (int key = 0; key < keysPerWrite; ++key) {
            editors.back()->Memo().KeyPress(u'k');
            keeper.TextChanged();
        }
        const double process = CpuSeconds(CLOCK_PROCESS_CPUTIME_ID);
        const double thread = CpuSeconds(CLOCK_THREAD_CPUTIME_ID);
        keeper.WriteNow(); // the timer's shot
        windowCpu += CpuSeconds(CLOCK_THREAD_CPUTIME_ID) - thread;
        keeper.WaitWritten();
        allCpu += CpuSeconds(CLOCK_PROCESS_CPUTIME_ID) - process;
        simulated += zv::TCrashKeeper::kDelayMs / 1000.0;
    }
    state.counters["keeping_cpu_percent"] = 100.0 * allCpu / simulated;
    state.counters["window_thread_cpu_percent"] = 100.0 * windowCpu / simulated;
    state.counters["texts_written"] = keeper.TextsWritten();
}
BENCHMARK(BM_KeepingUnsavedTextWhileTyping)->Unit(benchmark::kMillisecond)->Iterations(15);

} // namespace

int main(int argc, char** argv) {
    return zv::bench::RunInApplication(argc, argv);
}
