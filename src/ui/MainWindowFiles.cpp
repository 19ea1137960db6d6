// The main window's further file commands: reopening in another encoding, saving a copy,
// and opening files dropped on the window.
#include "ui/MainWindow.h"

#include "ZvMemoControl/CodePages.h"
#include "ui/EditorWidget.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

namespace zv {
namespace {

// The local files a drag carries; empty when it carries anything else.
QStringList DroppedFiles(const QMimeData* data) {
    QStringList files;
    if (!data->hasUrls())
        return files;
    for (const QUrl& url : data->urls()) {
        if (!url.isLocalFile())
            return {};
        files << url.toLocalFile();
    }
    return files;
}

} // namespace

void TMainWindow::CreateFileExtras(QMenu* file) {
    QMenu* reopen = file->addMenu(tr("Reopen with &encoding"));
    reopen->setObjectName(QStringLiteral("ReopenEncodingMenu"));
    for (const TCodePageInfo& page : KnownCodePages()) {
        if (!IsCodePageSupported(page.CodePage))
            continue;
        const std::uint32_t cp = page.CodePage;
        reopen->addAction(QStringLiteral("%1 (%2)").arg(page.Name).arg(cp), this, [this, cp] {
            if (TDocument* doc = FHelper.ActiveDocument())
                FHelper.ReopenWithEncoding(*doc, cp);
        });
    }
}

void TMainWindow::SaveCopyAsClick() {
    TDocument* doc = FHelper.ActiveDocument();
    if (!doc)
        return;
    const QString name = QFileDialog::getSaveFileName(this, tr("Save Copy As"));
    if (!name.isEmpty())
        FHelper.SaveFileCopy(*doc, name.toStdString());
}

void TMainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!DroppedFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void TMainWindow::dropEvent(QDropEvent* event) {
    const QStringList files = DroppedFiles(event->mimeData());
    for (const QString& name : files) {
        TLoadFileArgs args;
        args.FileName = name.toStdString();
        FHelper.LoadFile(args);
    }
    if (!files.isEmpty())
        event->acceptProposedAction();
}

} // namespace zv
