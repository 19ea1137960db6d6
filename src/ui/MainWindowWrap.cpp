// The window's word wrap command.
#include "shell/Settings.h"
#include "ui/EditorWidget.h"
#include "ui/MainWindow.h"

namespace zv {

void TMainWindow::ToggleWordWrap() {
    TEditorWidget* editor = ActiveEditor();
    if (!editor)
        return;
    const bool on = !editor->WordWrap();
    editor->SetWordWrap(on);
    TMemIniFileW& settings = SettingsIni();
    if (settings.ReadBool("Customize", "StoreWordwrap", false))
        settings.WriteBool("EditorMisc", "Wordwrap", on);
    UpdateStatus();
}

} // namespace zv
