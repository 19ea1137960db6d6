// The code explorer on a million-row C++ document of namespaces, classes, methods defined in
// and outside their class, and free functions. BM_CaretInStep: the caret moves (a jump of a
// few hundred rows, so each move crosses items and often changes the outer entry and the
// member list), and the panel brings its selection in step; the time of the two together is
// measured, with the slowest move as a counter, and the slowest hand-over of a finished
// structure to the panel (its lists filled on the main thread). BM_StructureBuild: the build the
// background thread adds to each fold pass once a panel follows the document, and the
// comparison by which the panel keeps its lists when an edit left the items as they were.
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"
#include "syntax/CodeStructure.h"
#include "syntax/ZvSyntax.h"
#include "ui/CodeExplorerPanel.h"
#include "ui/EditorWidget.h"

#include <QApplication>
#include <QListWidget>
#include <QTest>

#include "../ui/QtBenchmarkMain.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

namespace {

constexpr int kRows = 1'000'000;

// Twenty-four rows a block, each block its own namespace, class and functions.
zv::TZvMemoStrings* CppLines() {
    static zv::TZvMemoStrings* lines = [] {
        auto* l = new zv::TZvMemoStrings;
        std::string text;
        for (int i = 0; i < kRows / 24; ++i) {
            const std::string n = std::to_string(i);
            text += "namespace n" + n + " {\nclass C" + n +
                    " : public Base {\npublic:\n    int Get(int a) const {\n"
                    "        return a + 1;\n    }\n    void Set(int v)\n    {\n"
                    "        value = v; // {\n    }\nprivate:\n    int value = 0;\n};\n}\n"
                    "int C" +
                    n +
                    "::Extra(int x) {\n    if (x) {\n        return x;\n    }\n"
                    "    return 0;\n}\nstatic int helper" +
                    n + "(const char* s) {\n    return s[0];\n}\n\n";
        }
        l->LoadFromBytes(text);
        return l;
    }();
    return lines;
}

std::shared_ptr<const zv::TMemoStyleHost> CppSyntax() {
    static std::shared_ptr<zv::TMemoStyleHost> host = [] {
        auto h = std::make_shared<zv::TMemoStyleHost>();
        const auto file =
            std::filesystem::path(ZV_TOOL_PATH).parent_path().parent_path() / "Syntax" / "cpp.syx";
        zv::TZvSyntax loader;
        loader.LoadStyleFromFile(h.get(), zv::Utf8ToUtf16(file.string()), u"cpp", 1, u"");
        return h;
    }();
    return host;
}

void BM_CaretInStep(benchmark::State& state) {
    zv::TEditorWidget editor;
    editor.resize(900, 700);
    editor.show();
    editor.SetDocument(CppLines(), CppSyntax());
    zv::TCodeExplorerPanel panel;
    panel.resize(300, 700);
    panel.show();
    panel.Follow(&editor);
    // The structure comes with a fold pass of the editor's background thread.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    while (!panel.Structure() && std::chrono::steady_clock::now() < deadline)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    if (!panel.Structure() || panel.Structure()->Items.size() < 100'000u) {
        state.SkipWithError("the structure was not built");
        return;
    }
    const int rows = CppLines()->Count();
    int row = 0;
    double slowest = 0;
    std::int64_t outOfStep = 0;
    for (auto _ : state) {
        row = (row + 337) % rows;
        const auto start = std::chrono::steady_clock::now();
        editor.ShowRow(row);
        panel.Follow(&editor);
        const double ms =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count();
        slowest = std::max(slowest, ms);
        // In step: the selected member, if any, holds the caret's row.
        const int m = panel.MemberIndex();
        if (m >= 0) {
            const auto& entry = panel.MemberList()[static_cast<std::size_t>(m)];
            const auto& item =
                panel.Structure()
                    ->Items[static_cast<std::size_t>(panel.Structure()->FindId(entry.idNr))];
            outOfStep += row < item.Row || row > item.EndRow;
        }
    }
    state.counters["slowest_ms"] = slowest;
    state.counters["out_of_step"] = static_cast<double>(outOfStep);
    state.counters["items"] = static_cast<double>(panel.Structure()->Items.size());
    // What the main thread pays when a pass brings a structure: the panel fills its lists.
    double handOver = 0;
    for (int i = 0; i < 3; ++i) {
        panel.Follow(nullptr);
        const auto start = std::chrono::steady_clock::now();
        panel.Follow(&editor);
        handOver = std::max(handOver, std::chrono::duration<double, std::milli>(
                                          std::chrono::steady_clock::now() - start)
                                          .count());
    }
    state.counters["hand_over_ms"] = handOver;
}
BENCHMARK(BM_CaretInStep)->Unit(benchmark::kMillisecond)->Iterations(300);

void BM_StructureBuild(benchmark::State& state) {
    const zv::TScanContext ctx(*CppSyntax(), zv::TScanOptions{});
    std::shared_ptr<const zv::TCodeStructure> built;
    for (auto _ : state)
        built = zv::BuildCodeStructure(*CppLines(), ctx);
    // An edit that leaves the items as they were costs the panel this comparison only.
    const auto again = zv::BuildCodeStructure(*CppLines(), ctx);
    const auto start = std::chrono::steady_clock::now();
    const bool same = built->SameItemsAs(*again);
    state.counters["compare_ms"] =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    if (!same)
        state.SkipWithError("two builds of one text differ");
    state.counters["items"] = static_cast<double>(built->Items.size());
    state.counters["rows"] = CppLines()->Count();
}
BENCHMARK(BM_StructureBuild)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace

int main(int argc, char** argv) {
    return zv::bench::RunInApplication(argc, argv);
}
