// The action model's hot paths: the update pass over every action of the shown window that
// runs at each idle round (target: at most 0.2 ms), and the menu search filtering 1,000
// entries as each key of a word is typed (target: under 5 ms per keystroke).
#include "support/ZvTestSupport.h"
#include "ui/Actions.h"
#include "ui/CommandPalette.h"
#include "ui/EditorWidget.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>

#include "StartedWindow.h"

#include "QtBenchmarkMain.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

// A shown, active window with a document open in a focused editor, as at an idle round.
zv::bench::TStartedWindow& Window() {
    static zvtest::TTempDir dir{"zv-actions-bench"};
    static const std::string file = [] {
        const auto path = dir / "a.c";
        zvtest::WriteAll(path, "int main(void) {\n    return 0;\n}\n");
        return path.string();
    }();
    static zv::bench::TStartedWindow run({"zevrit", file});
    QApplication::setActiveWindow(&run.window);
    run.window.ActiveEditor()->setFocus();
    QApplication::processEvents();
    return run;
}

void BM_UpdatePassOverAllActions(benchmark::State& state) {
    zv::TWindowActions& actions = Window().window.Actions();
    actions.UpdateActions(); // takes the window's active state
    if (!actions.List().FMainformActive)
        state.SkipWithError("the window is not active: the pass would do nothing");
    for (auto _ : state)
        actions.UpdateActions();
    state.counters["actions"] = static_cast<double>(actions.List().Actions().size());
}
BENCHMARK(BM_UpdatePassOverAllActions)->Unit(benchmark::kMicrosecond);

// The window's commands and file names make up 1,000 entries; each iteration is one key of
// a word typed into the box (after its last key the word starts again), the list refiltered.
void BM_MenuSearchFiltersAThousandEntriesPerKey(benchmark::State& state) {
    zv::TMainWindow& window = Window().window;
    auto* form = new zv::TMenuSearchForm(window, window.Actions());
    const size_t commands = window.Actions().List().Actions().size();
    std::vector<zv::TMenuSearchForm::TItem> extras;
    for (size_t i = commands; i < 1000; ++i)
        extras.push_back({QStringLiteral("source_file_%1.cpp").arg(i),
                          QStringLiteral("Recent files"),
                          {},
                          {},
                          [] {}});
    form->Open(std::move(extras));
    const QString word = QStringLiteral("save file");
    qsizetype typed = 0;
    for (auto _ : state) {
        typed = typed % word.size() + 1;
        form->UpdateList(word.left(typed));
    }
    form->UpdateList(QString());
    state.counters["entries"] = static_cast<double>(form->ListView().count());
    form->Close();
    delete form;
}
BENCHMARK(BM_MenuSearchFiltersAThousandEntriesPerKey)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return zv::bench::RunInApplication(argc, argv);
}
