// The main window's editing and view commands (each an action named as the key map names
// it) and its status bar.
#include "ui/MainWindow.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "shell/Language.h"
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

// An action named `name` in `menu`, with its shortcuts, calling `slot`.
QAction* AddAction(QMenu* menu, const char* name, const QString& caption,
                   const QList<QKeySequence>& keys, const std::function<void()>& slot) {
    QAction* action = menu->addAction(caption);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcuts(keys);
    QObject::connect(action, &QAction::triggered, action, slot);
    return action;
}

} // namespace

void TMainWindow::OnActiveEditor(const std::function<void(TEditorWidget&)>& command) {
    if (TEditorWidget* editor = ActiveEditor())
        command(*editor);
}

void TMainWindow::CreateEditMenus() {
    using E = TEditorWidget;
    const auto on = [this](void (*command)(E&)) {
        return [this, command] { OnActiveEditor(command); };
    };
    struct TMemoCommand {
        const char* Name;
        const char* Caption;
        bool (TZvMemo::*Command)();
    };
    static constexpr TMemoCommand kEdit[] = {
        {"IndentAction", "&Indent", &TZvMemo::acnIndent},
        {"UnIndentAction", "&Unindent", &TZvMemo::acnUnIndent},
        {"DeleteWordAction", "Delete &word", &TZvMemo::acnDeleteWord},
        {"DeletePrevWordAction", "Delete &previous word", &TZvMemo::acnDeletePreviousWord},
    };
    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    for (const TMemoCommand& c : kEdit)
        AddAction(edit, c.Name, tr(c.Caption), {}, [this, command = c.Command] {
            OnActiveEditor([command](E& e) { e.Run([command](TZvMemo& m) { (m.*command)(); }); });
        });

    QMenu* search = menuBar()->addMenu(tr("&Search"));
    FSearch = new TWindowSearch(*this, FHelper);
    FSearch->AddActions(search);
    AddAction(search, "MatchingBraceAction", tr("&Matching brace"),
              {QKeySequence(Qt::CTRL | Qt::Key_B)}, on([](E& e) { e.GoToMatchingBrace(); }));

    QMenu* view = menuBar()->addMenu(tr("&View"));
    AddAction(view, "ZoomInAction", tr("Zoom &in"),
              {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
              on([](E& e) { e.ZoomIn(); }));
    AddAction(view, "ZoomOutAction", tr("Zoom &out"), {QKeySequence(Qt::CTRL | Qt::Key_Minus)},
              on([](E& e) { e.ZoomOut(); }));
    AddAction(view, "ZoomResetAction", tr("&Reset zoom"), {QKeySequence(Qt::CTRL | Qt::Key_0)},
              on([](E& e) { e.ZoomReset(); }));

    QMenu* window = menuBar()->addMenu(tr("&Window"));
    AddAction(window, "NextEditorTabAction", tr("&Next document"),
              {QKeySequence(Qt::CTRL | Qt::Key_Tab), QKeySequence(Qt::CTRL | Qt::Key_PageDown)},
              [this] { SwitchTab(1); });
    AddAction(window, "PreviousEditorTabAction", tr("&Previous document"),
              {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab),
               QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab),
               QKeySequence(Qt::CTRL | Qt::Key_PageUp)},
              [this] { SwitchTab(-1); });
}

void TMainWindow::SwitchTab(int step) {
    const int count = FTabs->count();
    if (count < 2)
        return;
    FTabs->setCurrentIndex((FTabs->currentIndex() + step + count) % count);
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
    QString text = tr("Ln %1, Col %2").arg(memo.FCurY + 1).arg(memo.FCurX + 1);
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
