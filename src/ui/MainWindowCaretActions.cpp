// The window actions of editing at several places: the column-mode toggle, carets added
// above and below or at the next occurrence of a word, sync edit, and the Edit submenu that
// shows them.
#include "ui/MainWindow.h"

#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include <QMenu>

namespace zv {

void TMainWindow::CreateCaretActions() {
    TActionList& list = FActions->List();
    // Carets are added while a writable, unwrapped document has the focus.
    bool (*canAdd)(const TZvMemo&) = [](const TZvMemo& m) {
        return !m.FReadOnly && !m.DocState().FWordWrap;
    };
    const auto caret = [this, &list, canAdd](const TActionDef& def, TMemoCommand command) {
        auto [run, update] = EditHandlers(command, canAdd);
        list.Add(MakeAction(def, std::move(run), std::move(update)));
    };
    caret({"ColumnModeAction", "Edit", "460", "Co&lumn mode", {"Shift+Alt+Ins"}},
          [](TZvMemo& m) { m.SetColumnMode(!m.FColumnMode); });
    caret({"MultiSelectionAddWordAction", "Edit", "461", "Add &next occurrence", {"Ctrl+D"}},
          [](TZvMemo& m) { m.acnMultiSelectionAddWord(); });
    caret({"MultiSelectionSkipWordAction", "Edit", "462", "&Skip to next occurrence", {"Ctrl+K"}},
          [](TZvMemo& m) { m.acnMultiSelectionSkipWord(); });
    caret({"MultiSelectionUndoAddWordAction",
           "Edit",
           "463",
           "&Remove last occurrence",
           {"Shift+Ctrl+D"}},
          [](TZvMemo& m) { m.acnMultiSelectionUndoAddWord(); });
    caret({"AddCaretAboveAction", "Edit", "464", "Add caret &above", {"Ctrl+Alt+Up"}},
          [](TZvMemo& m) { m.AddCaretVertically(-1); });
    caret({"AddCaretBelowAction", "Edit", "465", "Add caret &below", {"Ctrl+Alt+Down"}},
          [](TZvMemo& m) { m.AddCaretVertically(1); });
    caret({"SingleCaretAction", "Edit", "466", "Single &caret"},
          [](TZvMemo& m) { m.ExitMultiEditMode(); });
    caret({"SyncEditAction", "Edit", "467", "S&ync edit", {"Shift+Ctrl+J"}},
          [](TZvMemo& m) { m.acnSyncEdit(); });
    CreateColumnActions();
}

void TMainWindow::AddCaretMenu(QMenu& edit) {
    TWindowActions& a = *FActions;
    a.AddTo(*a.AddSubMenu(edit, "114", "&Block and carets", "CaretsMenu"),
            {"ColumnModeAction", "-", "MultiSelectionAddWordAction", "MultiSelectionSkipWordAction",
             "MultiSelectionUndoAddWordAction", "-", "AddCaretAboveAction", "AddCaretBelowAction",
             "SingleCaretAction", "-", "SyncEditAction"});
    AddColumnMenu(edit);
}

} // namespace zv
