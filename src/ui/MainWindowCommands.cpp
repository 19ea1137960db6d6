// The main window's switching between documents and its status bar.
#include "ui/MainWindow.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "shell/Language.h"
#include "ui/CodeExplorerPanel.h"
#include "ui/EditorWidget.h"
#include "ui/WindowSearch.h"

#include <QAction>
#include <QKeySequence>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabWidget>

namespace zv {
namespace {

// The line-end texts of the status bar, by TSysTextType.
const char* const kLineEndKeys[] = {"025", "026", "027", "136", "137", "138"};
const char* const kLineEndTexts[] = {"(Windows)",        "(Unix)",        "(Macintosh)",
                                     "(*Mixed Windows)", "(*Mixed Unix)", "(*Mixed Macintosh)"};

QString Lang(const char* section, const char* key, const char* fallback) {
    return QString::fromStdString(LangText(section, key, fallback));
}

} // namespace

void TMainWindow::OnActiveEditor(const std::function<void(TEditorWidget&)>& command) {
    if (TEditorWidget* editor = ActiveEditor())
        command(*editor);
}

void TMainWindow::SwitchTab(int step) {
    QTabWidget& tabs = *TabGroup(FHelper.FActiveDocumentView); // within the active group
    const int count = tabs.count();
    if (count < 2)
        return;
    tabs.setCurrentIndex((tabs.currentIndex() + step + count) % count);
}

// ---- Status bar -------------------------------------------------------------------------

void TMainWindow::CreateStatusBar() {
    FStatusPosition = new QLabel(this);
    FStatusEncoding = new QLabel(this);
    FStatusLineEnds = new QLabel(this);
    FStatusMode = new QLabel(this);
    statusBar()->addPermanentWidget(FStatusPosition);
    statusBar()->addPermanentWidget(FStatusEncoding);
    statusBar()->addPermanentWidget(FStatusLineEnds);
    statusBar()->addPermanentWidget(FStatusMode);
}

QString TMainWindow::StatusPosition() const {
    const TEditorWidget* editor = ActiveEditor();
    if (!editor)
        return {};
    const TZvMemo& memo = editor->Memo();
    const TZvPos real = memo.Unwrapped(memo.Caret()); // the line and column, not the row
    QString text = tr("Ln %1, Col %2").arg(real.Y + 1).arg(real.X + 1);
    if (const auto length = memo.GetSelectionLength(); length > 0)
        text += tr(" (%1 selected)").arg(length);
    return text;
}

QString TMainWindow::StatusMode() const {
    return FStatusMode ? FStatusMode->text() : QString();
}

QString TMainWindow::StatusEncoding() const {
    const TEditorWidget* editor = ActiveEditor();
    if (!editor || !editor->Lines())
        return {};
    const TZvMemoStrings& lines = *editor->Lines();
    QString text = QString::fromStdString(CodePageName(lines.CodePage()));
    const std::uint32_t cp = lines.CodePage();
    if (lines.UseBOM() && (cp == cpUTF8 || cp == cpUTF16LE || cp == cpUTF16BE))
        text += tr(" BOM");
    return text;
}

void TMainWindow::UpdateStatus() {
    if (FCodeExplorer && !FCodeExplorer->isHidden())
        FCodeExplorer->Follow(ActiveEditor());
    if (!FStatusPosition)
        return;
    const TEditorWidget* editor = ActiveEditor();
    FStatusPosition->setText(StatusPosition());
    FStatusEncoding->setText(StatusEncoding());
    if (!editor || !editor->Lines()) {
        FStatusLineEnds->clear();
        FStatusMode->clear();
        return;
    }
    const int kind = static_cast<int>(editor->Lines()->SysTextType());
    FStatusLineEnds->setText(kind >= 0 && kind < 6
                                 ? Lang("Messages", kLineEndKeys[kind], kLineEndTexts[kind])
                                 : QString());
    const TZvMemo& memo = editor->Memo();
    QStringList mode{memo.FOverwrite ? tr("OVR") : tr("INS")};
    if (memo.FReadOnly)
        mode << tr("Read-only");
    if (editor->IsModified())
        mode << tr("Modified");
    if (editor->Lines()->InvalidBytesKept() > 0)
        mode << tr("Invalid bytes kept");
    if (const TDocument* doc = FHelper.ActiveDocument(); doc && doc->FHardLinked)
        mode << tr("Hard-linked: saved in place");
    if (editor->Scan() && editor->Scan()->Styles())
        mode << QString::fromStdU16String(editor->Scan()->Styles()->FSyntaxName);
    FStatusMode->setText(mode.join(QStringLiteral("  ")));
}

} // namespace zv
