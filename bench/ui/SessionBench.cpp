// Starting with the last session of 200 documents (20 KB each, one of 1 MB active) and a
// memory of 500 files: from the main object's first show to the window painted with its
// active document. The other tabs are read when they first show.
#include "platform/Prompt.h"
#include "shell/FileQue.h"
#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"
#include "shell/RootFolder.h"
#include "shell/Sessions.h"
#include "shell/Settings.h"
#include "support/ZvTestSupport.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QTabWidget>

#include "StartedWindow.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

namespace fs = std::filesystem;

const zvtest::TTempDir& Root() {
    static const zvtest::TTempDir root{"zv-session-bench-root"};
    return root;
}

// The files, "_reopen.txt" naming them, and "FileInfo.xml" remembering them and 300 others.
void MakeSession() {
    static zvtest::TTempDir dir{"zv-session-bench"};
    static bool made = false;
    if (made)
        return;
    made = true;
    std::string row;
    for (int i = 0; i < 60; ++i)
        row += static_cast<char>('a' + i % 26);
    row += '\n';
    zv::TOpenFiles open{{{}}, 0, 100};
    zv::TFileQue memory(Root() / "Data" / "FileInfo.xml", {});
    for (int f = 0; f < 500; ++f) {
        const fs::path file = dir / ("f" + std::to_string(1000 + f) + ".txt");
        zv::TFileInfo info;
        info.LocalFile = file.string();
        info.Cursor = zv::TCursorInfo{5, 40, 20, 0, 0, 5, 40};
        info.Enc = 65001;
        info.BOM = false;
        memory.AddFiledata(info);
        if (f >= 200)
            continue;
        const int rows = f == 100 ? 1'000'000 / 61 : 20'000 / 61;
        std::string text;
        for (int r = 0; r < rows; ++r)
            text += row;
        zvtest::WriteAll(file, text);
        open.Views[0].push_back(file.string());
    }
    memory.SaveFile();
    zv::SaveLastOpenFiles(Root() / "Data" / "_reopen.txt", open);
}

void BM_StartWithASessionOf200Documents(benchmark::State& state) {
    MakeSession();
    zv::SettingsIni().WriteBool("EditorMisc", "ReopenLastDoc", true);
    for (auto _ : state) {
        auto run = std::make_unique<zv::bench::TStartedWindow>(std::vector<std::string>{"zevrit"});
        run->window.ActiveEditor()->viewport()->repaint();
        QApplication::processEvents();
        state.PauseTiming(); // closing the window is not part of the figure
        if (run->window.TabGroup()->count() != 200)
            state.SkipWithError("the session did not come back whole");
        run.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_StartWithASessionOf200Documents)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

int main(int argc, char** argv) {
    ::setenv("ZEVRIT_ROOT", Root().Path().c_str(), 1); // before anything asks for the root
    fs::create_directories(Root() / "Data");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
