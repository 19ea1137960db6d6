// The main window's menus of what the program remembers: recent files, recently closed
// files and named sessions; and the view state a document keeps for its next opening.
#include "ui/MainWindow.h"

#include "shell/DocumentMemory.h"
#include "shell/Language.h"
#include "shell/RootFolder.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"
#include "ui/TabGroups.h"

#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>

namespace zv {

void TMainWindow::NoteViewState(const TEditorWidget& editor, TDocument& doc) {
    const TZvMemo& memo = editor.Memo();
    doc.FCaretX = memo.FCurX;
    doc.FCaretY = memo.FCurY;
    doc.FTopLine = editor.TopRow();
    doc.FSelStartX = memo.FSelStartX;
    doc.FSelStartY = memo.FSelStartY;
    doc.FSelEndX = memo.FSelEndX;
    doc.FSelEndY = memo.FSelEndY;
}

void TMainWindow::ShowViewState(TEditorWidget& editor, TDocument& doc) {
    doc.FRestoreView = false;
    // Copies: each move below reports the caret, which notes the view state in `doc`.
    const TZvPos start{doc.FSelStartX, doc.FSelStartY}, end{doc.FSelEndX, doc.FSelEndY};
    const TZvPos caret{doc.FCaretX, doc.FCaretY};
    const int top = doc.FTopLine;
    TZvMemo& memo = editor.Memo();
    if (start.X != end.X || start.Y != end.Y)
        memo.SetSelection(start, end); // the caret stands at the selection's moving end
    else
        memo.SetTextCursor(caret.X, caret.Y);
    editor.SetTopRow(top);
}

void TMainWindow::CreateMemoryMenus(QMenu* file) {
    QMenu* recent = file->addMenu(tr("&Recent files"));
    recent->setObjectName(QStringLiteral("RecentFilesMenu"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] { FillRecentMenu(recent, false); });
    QMenu* closed = file->addMenu(tr("Recen&tly closed"));
    closed->setObjectName(QStringLiteral("RecentlyClosedMenu"));
    connect(closed, &QMenu::aboutToShow, this, [this, closed] { FillRecentMenu(closed, true); });
}

void TMainWindow::CreateSessionMenu(QMenu& sessions) {
    FActions->AddTo(sessions, {"SaveSessionAction"});
    QMenu* open = sessions.addMenu(tr("&Open session"));
    open->setObjectName(QStringLiteral("OpenSessionMenu"));
    connect(open, &QMenu::aboutToShow, this, [this, open] { FillSessionMenu(open, false); });
    QMenu* remove = sessions.addMenu(tr("&Delete session"));
    remove->setObjectName(QStringLiteral("DeleteSessionMenu"));
    connect(remove, &QMenu::aboutToShow, this, [this, remove] { FillSessionMenu(remove, true); });
    QMenu* layouts = sessions.addMenu(tr("Window &layouts"));
    layouts->setObjectName(QStringLiteral("LayoutsMenu"));
    connect(layouts, &QMenu::aboutToShow, this, [this, layouts] { FillLayoutMenu(layouts); });
}

TWindowLayouts TMainWindow::Layouts() const {
    return TWindowLayouts(GetRootFolder() / "Layouts");
}

TWindowLayout TMainWindow::CurrentLayout() const {
    TWindowLayout layout;
    layout.Maximized = isMaximized();
    layout.Minimized = isMinimized();
    const QSize size = isMaximized() || isMinimized() ? normalGeometry().size() : this->size();
    layout.Width = size.width();
    layout.Height = size.height();
    layout.ShowDocumentTabs = FGroups->TabBarsVisible();
    layout.DockState = saveState().toBase64().toStdString();
    return layout;
}

void TMainWindow::ApplyLayout(const TWindowLayout& layout) {
    resize(layout.Width, layout.Height);
    restoreState(QByteArray::fromBase64(QByteArray::fromStdString(layout.DockState)));
    FGroups->SetTabBarsVisible(layout.ShowDocumentTabs);
    if (layout.Maximized)
        showMaximized();
    else if (layout.Minimized)
        showMinimized();
    else
        showNormal();
}

bool TMainWindow::SwitchLayout(const std::string& name) {
    std::string error;
    const auto layout = Layouts().Switch(name, CurrentLayout(), error);
    if (!layout) {
        FHelper.Prompter().ShowMessage(error);
        return false;
    }
    ApplyLayout(*layout);
    return true;
}

void TMainWindow::FillLayoutMenu(QMenu* menu) {
    menu->clear();
    menu->addAction(tr("&Save layout..."), this, [this] {
        const QString name = QInputDialog::getText(this, tr("Save layout"), tr("Name:"));
        std::string error;
        if (!name.trimmed().isEmpty() &&
            !Layouts().Save(name.trimmed().toStdString(), CurrentLayout(), error))
            FHelper.Prompter().ShowMessage(error);
    });
    menu->addAction(tr("&Previous layout"), this,
                    [this] { SwitchLayout(TWindowLayouts::kBackup); });
    menu->addSeparator();
    for (const std::string& name : Layouts().Names())
        menu->addAction(QString::fromStdString(name), this, [this, name] { SwitchLayout(name); });
}

void TMainWindow::FillRecentMenu(QMenu* menu, bool closed) {
    menu->clear();
    TDocumentMemory* memory = FForm ? FForm->Memory() : nullptr;
    if (!memory)
        return;
    TZvMRUList& list = closed ? memory->MRUClosed() : memory->MRU();
    const int shown = closed ? memory->MenuRecentlyClosed() : memory->MenuRecent();
    for (const std::string& path : list.RefreshList(shown, memory->RemoveInvalid())) {
        QString caption = QString::fromStdString(path);
        caption.replace(QLatin1Char('&'), QStringLiteral("&&"));
        // A file that is gone stays listed; opening it asks whether to create it.
        menu->addAction(caption, this, [this, path] {
            TLoadFileArgs args;
            args.FileName = path;
            FHelper.LoadFile(args);
        });
    }
    menu->setEnabled(true);
    if (menu->isEmpty())
        menu->addAction(tr("(none)"))->setEnabled(false);
}

void TMainWindow::FillSessionMenu(QMenu* menu, bool remove) {
    menu->clear();
    TDocumentMemory* memory = FForm ? FForm->Memory() : nullptr;
    if (!memory)
        return;
    for (const std::string& name : memory->Sessions().Names()) {
        QAction* action =
            menu->addAction(QString::fromStdString(name), this, [memory, name, remove] {
                if (remove)
                    memory->Sessions().Delete(name);
                else
                    memory->OpenSession(name);
            });
        action->setToolTip(QString::fromStdString(memory->Sessions().Description(name)));
    }
    menu->setToolTipsVisible(true);
    if (menu->isEmpty())
        menu->addAction(tr("(none)"))->setEnabled(false);
}

void TMainWindow::SaveSessionClick() {
    TDocumentMemory* memory = FForm ? FForm->Memory() : nullptr;
    if (!memory)
        return;
    bool ok = false;
    const QString name = QInputDialog::getText(this, tr("Save session"), tr("Session name:"),
                                               QLineEdit::Normal, QString(), &ok);
    if (!ok || name.trimmed().isEmpty())
        return;
    const QString desc = QInputDialog::getText(this, tr("Save session"), tr("Description:"),
                                               QLineEdit::Normal, QString(), &ok);
    if (!ok)
        return;
    if (!memory->SaveSession(name.toStdString(), desc.toStdString()))
        FHelper.Prompter().ShowMessage(
            LangText("Messages", "341", "The session could not be saved:") + " " +
            name.toStdString());
}

} // namespace zv
