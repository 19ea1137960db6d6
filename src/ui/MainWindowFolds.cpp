// The window's fold commands: fold and unfold all, the fold at the caret and the folds nested
// in it, folds by nesting level, the caret to the fold's start or end, and folds made of the
// selection; the View menu's Folding submenu.
#include "ui/MainWindow.h"

#include "ZvMemoControl/ZvMemo.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include <QMenu>

#include <string>

namespace zv {
namespace {

// Names, caption keys and captions of the nine level commands, kept for the program's life.
struct TLevelCommand {
    std::string Name, Key, Caption;
};

const std::vector<TLevelCommand>& LevelCommands() {
    static const std::vector<TLevelCommand> table = [] {
        std::vector<TLevelCommand> t;
        for (int level = 1; level <= 9; ++level)
            t.push_back({"FoldLevel" + std::to_string(level) + "Action",
                         std::to_string(442 + level), "Level &" + std::to_string(level)});
        return t;
    }();
    return table;
}

} // namespace

void TMainWindow::CreateFoldActions() {
    TActionList& list = FActions->List();
    const auto hasEditor = [this] { return ActiveEditor() != nullptr; };
    const auto add = [&](const TActionDef& def, std::function<bool(TZvMemo&)> command) {
        list.Add(MakeAction(
            def,
            [this, command] {
                OnActiveEditor([&](TEditorWidget& e) { e.Run([&](TZvMemo& m) { command(m); }); });
            },
            hasEditor));
    };
    add({"FoldAllAction", "View", "440", "&Fold all"}, [](TZvMemo& m) { return m.acnFoldAll(); });
    add({"UnfoldAllAction", "View", "441", "&Unfold all"},
        [](TZvMemo& m) { return m.acnUnfoldAll(); });
    add({"ToggleFoldAction", "View", "442", "&Toggle current fold", {"Shift+Ctrl+["}},
        [](TZvMemo& m) { return m.acnToggleCurrentFold(); });
    for (const TLevelCommand& c : LevelCommands()) {
        const int level = static_cast<int>(&c - LevelCommands().data()) + 1;
        add({c.Name.c_str(), "View", c.Key.c_str(), c.Caption.c_str()},
            [level](TZvMemo& m) { return m.acnFoldLevel(level); });
    }
    add({"GotoFoldStartAction", "View", "452", "Go to fold &start"},
        [](TZvMemo& m) { return m.acnGoToFoldStart(); });
    add({"GotoFoldEndAction", "View", "453", "Go to fold &end"},
        [](TZvMemo& m) { return m.acnGoToFoldEnd(); });
    add({"FoldNestedNodesInCurrentAction", "View", "615", "Fold &nested folds in current"},
        [](TZvMemo& m) { return m.acnCloseCurrentNestedNodes(); });
    add({"FoldNestedRgnInCurrentAction", "View", "616", "Fold nested &regions in current"},
        [](TZvMemo& m) { return m.acnCloseCurrentNestedRegions(); });
    add({"AddFoldableSelectionAction", "View", "617", "&Add foldable selection"},
        [](TZvMemo& m) { return m.acnAddSelectionFold(); });
    add({"RemoveFoldableSelectionAction", "View", "618", "Re&move foldable selection"},
        [](TZvMemo& m) { return m.acnRemoveSelectionFold(); });
}

void TMainWindow::FillFoldMenu(QMenu& menu) {
    TWindowActions& a = *FActions;
    a.AddTo(menu, {"FoldAllAction", "UnfoldAllAction", "ToggleFoldAction",
                   "FoldNestedNodesInCurrentAction", "FoldNestedRgnInCurrentAction"});
    QMenu& levels = *a.AddSubMenu(menu, "113", "Fold &level", "FoldLevelMenu");
    for (const TLevelCommand& c : LevelCommands())
        a.AddTo(levels, {c.Name.c_str()});
    a.AddTo(menu, {"-", "GotoFoldStartAction", "GotoFoldEndAction", "-",
                   "AddFoldableSelectionAction", "RemoveFoldableSelectionAction"});
}

} // namespace zv
