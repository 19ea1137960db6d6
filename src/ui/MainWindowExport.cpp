// The window's export commands: File > Save as HTML and Edit > Copy as HTML, on the active
// editor.
#include "ui/MainWindow.h"

#include "shell/Language.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorHtmlExport.h"
#include "ui/EditorWidget.h"

#include <QFileDialog>
#include <QMessageBox>

namespace zv {
namespace {

QString Misc(const char* key, const char* fallback) {
    return QString::fromStdString(LangText("Misc", key, fallback));
}

} // namespace

void TMainWindow::CreateExportActions() {
    TActionList& list = FActions->List();
    const auto hasEditor = [this] { return ActiveEditor() != nullptr; };
    list.Add(MakeAction(
        {"SaveAsHtmlAction", "File", "475", "Save as HT&ML..."}, [this] { SaveAsHtmlClick(); },
        hasEditor));
    list.Add(MakeAction(
        {"CopyAsHtmlAction", "Edit", "476", "Copy as &HTML"},
        [this] { OnActiveEditor([](TEditorWidget& e) { CopyHTMLToClipboard(e); }); }, hasEditor));
}

void TMainWindow::SaveAsHtmlClick() {
    TEditorWidget* editor = ActiveEditor();
    if (!editor)
        return;
    const std::string source = editor->Lines()->FileName();
    const QString suggested = source.empty() ? QString() : QString::fromStdString(source + ".html");
    const QString name = QFileDialog::getSaveFileName(this, Misc("445", "Save as HTML"), suggested,
                                                      Misc("446", "HTML files (*.html *.htm)"));
    if (name.isEmpty())
        return;
    std::string error;
    if (!SaveToHTML(*editor, name.toStdString(), error))
        QMessageBox::warning(
            this, Misc("445", "Save as HTML"),
            Misc("447", "Could not write %1: %2").arg(name, QString::fromStdString(error)));
}

} // namespace zv
