// The window's bookmark and line mark commands: set and go to bookmarks 0-9, the ring of
// marks (next, previous), clearing, and toggling a plain line mark.
#include "ui/MainWindow.h"

#include "ZvMemoControl/LineMarks.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include <QMenu>

#include <string>

namespace zv {
namespace {

// Names, captions and keys of the numbered commands; they must outlive the action list's
// construction only, but the table keeps them for the program's life.
struct TNumbered {
    std::string SetName, GotoName, SetKey, GotoKey, SetCaption, GotoCaption, SetShortCut,
        GotoShortCut;
};

const std::vector<TNumbered>& NumberedCommands() {
    static const std::vector<TNumbered> table = [] {
        std::vector<TNumbered> t;
        for (int n = 0; n < kBookmarkCount; ++n) {
            const std::string d = std::to_string(n);
            t.push_back({"SetBook" + d, "GotoBook" + d, std::to_string(400 + n),
                         std::to_string(410 + n), "Toggle bookmark &" + d, "Go to bookmark &" + d,
                         "Shift+Ctrl+" + d, "Ctrl+" + d});
        }
        return t;
    }();
    return table;
}

} // namespace

void TMainWindow::CreateBookmarkActions() {
    TActionList& list = FActions->List();
    const auto hasEditor = [this] { return ActiveEditor() != nullptr; };
    const auto add = [&list, hasEditor](const TActionDef& def, std::function<void()> run) {
        list.Add(MakeAction(def, std::move(run), hasEditor));
    };
    // Runs `command` on the active editor's rows and caret row, then repaints.
    const auto onRows = [this](std::function<void(TZvMemo&)> command) {
        return [this, command] { OnActiveEditor([&](TEditorWidget& e) { e.Run(command); }); };
    };
    const auto moveTo = [](TZvMemo& m, int row) {
        if (row >= 0)
            m.SetTextCursor(0, row);
    };
    for (const TNumbered& c : NumberedCommands()) {
        const int n = static_cast<int>(&c - NumberedCommands().data());
        add({c.SetName.c_str(),
             "Bookmarks",
             c.SetKey.c_str(),
             c.SetCaption.c_str(),
             {c.SetShortCut.c_str()}},
            onRows([n](TZvMemo& m) { SetBookmark(m.Lines(), m.FCurY, n); }));
        add({c.GotoName.c_str(),
             "Bookmarks",
             c.GotoKey.c_str(),
             c.GotoCaption.c_str(),
             {c.GotoShortCut.c_str()}},
            onRows([n, moveTo](TZvMemo& m) { moveTo(m, FindBookmark(m.Lines(), n)); }));
    }
    add({"GotoNextBookmark", "Bookmarks", "420", "&Next bookmark", {"F2"}},
        onRows([moveTo](TZvMemo& m) { moveTo(m, NextMarkedRow(m.Lines(), m.FCurY, true)); }));
    add({"GotoPreviousBookmark", "Bookmarks", "421", "&Previous bookmark", {"Shift+F2"}},
        onRows([moveTo](TZvMemo& m) { moveTo(m, NextMarkedRow(m.Lines(), m.FCurY, false)); }));
    add({"ToggleBookmark", "Bookmarks", "422", "Toggle line &mark", {"Ctrl+F2"}},
        onRows([](TZvMemo& m) { ToggleLinemark(m.Lines(), m.FCurY); }));
    add({"ClearBookmarkedLinesAction", "Bookmarks", "423", "&Clear all bookmarks"},
        onRows([](TZvMemo& m) { ClearMarks(m.Lines(), true); }));
    add({"ClearLinemarksAction", "Bookmarks", "424", "Clear all &line marks"},
        onRows([](TZvMemo& m) { ClearMarks(m.Lines(), false); }));
}

// The Bookmarks menu: the ring, the marks, then the numbered commands in two submenus.
void TMainWindow::FillBookmarksMenu(QMenu& menu) {
    TWindowActions& a = *FActions;
    a.AddTo(menu, {"ToggleBookmark", "GotoNextBookmark", "GotoPreviousBookmark", "-",
                   "ClearBookmarkedLinesAction", "ClearLinemarksAction", "-"});
    QMenu& set = *a.AddSubMenu(menu, "140", "&Set bookmark", "Bookmark");
    QMenu& go = *a.AddSubMenu(menu, "141", "&Go to bookmark", "GotoBookmarkMenu");
    for (const TNumbered& c : NumberedCommands()) {
        a.AddTo(set, {c.SetName.c_str()});
        a.AddTo(go, {c.GotoName.c_str()});
    }
}

} // namespace zv
