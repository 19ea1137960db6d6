// Main window: tabs follow the helper's documents, each in its group; menu commands call the
// helper.
#include "ui/MainWindow.h"

#include "common/Trace.h"
#include "common/Utf.h"
#include "shell/DocumentMemory.h"
#include "shell/MemoOptions.h"
#include "shell/RootFolder.h"
#include "shell/Settings.h"
#include "shell/TailKeywords.h"
#include "ui/EditorWidget.h"
#include "ui/SaveAsDialog.h"
#include "ui/SplitView.h"
#include "ui/TabGroups.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeySequence>
#include <QMenuBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>

#include <utility>

namespace zv {
namespace {

// A tab shows the file name; "&" is doubled so that it is not taken for a mnemonic.
QString TabCaption(const TDocument& doc) {
    QString caption = QFileInfo(QString::fromStdString(doc.FFilePath)).fileName();
    caption.replace(QLatin1Char('&'), QStringLiteral("&&"));
    if (doc.FDeferred)
        caption.prepend(QStringLiteral("**")); // read when the tab first shows
    return doc.Modified() ? caption + QLatin1Char('*') : caption;
}

// A clone's tab: another view of a document whose own tab stands elsewhere.
QString CloneCaption(const TDocument& doc) {
    return doc.Modified() ? QStringLiteral("--*") : QStringLiteral("--");
}

} // namespace

TMainWindow::TMainWindow(TMainFormHelper& helper, QWidget* parent)
    : QMainWindow(parent), FHelper(helper), FGroups(new TTabGroups(this)) {
    setCentralWidget(FGroups);
    setAcceptDrops(true);
    connect(FGroups, &TTabGroups::closeRequested, this, &TMainWindow::CloseTabClick);
    connect(FGroups, &TTabGroups::currentChanged, this, &TMainWindow::TabChanged);
    FFocusWatch = connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (auto* editor = qobject_cast<TEditorWidget*>(now))
            MemoFocused(*editor);
    });
    CreateStatusBar();
    CreateActions();
    CreateMenuBar();
    resize(1000, 700);
    FHelper.SetListener(this);
    FHelper.FOnAskSaveAs = [this](const TDocument& doc) { return AskSaveAs(doc); };
    UpdateTitle();
}

TMainWindow::~TMainWindow() {
    disconnect(FFocusWatch); // focus moves while the editors die
    FHelper.SetListener(nullptr);
    FHelper.FOnAskSaveAs = nullptr;
    // The editors die in the base class's destructor, when this is no longer a TMainWindow:
    // what they signal then must not reach it.
    for (QObject* child : findChildren<QObject*>())
        child->disconnect(this);
}

void TMainWindow::closeEvent(QCloseEvent* event) {
    SaveTabGroupLayout(); // before the closing documents empty the groups
    if (FForm ? !FForm->FormCloseQuery() : !FHelper.CloseAllDocumentTabs())
        return event->ignore();
    event->accept();
}

void TMainWindow::changeEvent(QEvent* event) {
    // The user turns to another program: what they typed is kept now, not in two seconds.
    if (event->type() == QEvent::ActivationChange && !isActiveWindow() && FForm)
        FForm->Crash().Flush();
    QMainWindow::changeEvent(event);
}

void TMainWindow::KeepUnsavedText() {
    if (FForm)
        FForm->Crash().TextChanged();
}

bool TMainWindow::IsVisible() const {
    return isVisible();
}
bool TMainWindow::IsMinimized() const {
    return isMinimized();
}

void TMainWindow::BringUp() {
    if (!isVisible())
        show();
    if (isMinimized())
        showNormal();
    raise();
    activateWindow();
}

void TMainWindow::ShowLine(int line) {
    Trace("ShowLine() - line " + std::to_string(line));
    if (auto* editor = ActiveEditor()) {
        editor->ShowRow(line - 1);
        editor->setFocus();
    }
}

TEditorWidget* TMainWindow::EditorAt(int index) const {
    const auto& docs = FHelper.Documents();
    return index >= 0 && index < static_cast<int>(docs.size()) ? MainView(*docs[index]) : nullptr;
}

void TMainWindow::AttachForm(TMainForm& form) {
    FForm = &form;
    // The key map waits until the window is up, as the start-up's other data does.
    QTimer::singleShot(TMainForm::kParamsDelayMs, this, &TMainWindow::LoadKeyMap);
    connect(&form, &TMainForm::pasteRequested, this, &TMainWindow::PasteHandedOver);
    LoadTabGroupLayout(); // the main object has read the settings
    // A hidden tab bar lays its tabs out once, when it shows again: a batch of 500 files
    // would otherwise lay out all tabs for each one added.
    connect(&form, &TMainForm::batchChanged, this, [this](bool inBatch) {
        FGroups->SetTabBarsVisible(!inBatch);
        FInBatch = inBatch;
        // Only the last document activated in the batch is shown, once.
        if (TDocument* doc = std::exchange(FPendingActive, nullptr); !inBatch && doc)
            DocumentActivated(*doc);
    });
}

void TMainWindow::PasteHandedOver(const QString& text) {
    TEditorWidget* editor = ActiveEditor();
    const TDocument* doc = FHelper.ActiveDocument();
    if (!editor || !doc) {
        Trace("PasteHandedOver() - no document to paste into");
        return;
    }
    TZvMemo& memo = editor->Memo();
    if (memo.HasSelection()) {
        TZvPos start, end;
        memo.OrderedSelection(start, end);
        memo.ClearSelection();
        memo.SetTextCursor(start.X, start.Y);
    }
    editor->PasteText(text);
    Trace("PasteHandedOver() - " + std::to_string(text.size()) + " characters into " +
          doc->FFilePath);
}

void TMainWindow::DocumentAdded(TDocument& doc) {
    TEditorWidget* editor = MakeView(doc);
    const std::u16string forced = Utf8ToUtf16(doc.FHighlighter);
    doc.FHighlighter =
        Utf16ToUtf8(editor->SetSyntaxForFile(doc.FFilePath, GetRootFolder(), Colors(), forced));
    editor->FollowDocumentIndent();
    if (doc.Modified()) { // text brought back from the crash session
        editor->Memo().SetTextCursor(doc.FCaretX, doc.FCaretY);
    } else if (doc.FRestoreView && !doc.FDeferred) { // remembered from a former opening
        ShowViewState(*editor, doc);
    }
    FDocViews[doc.Text.get()] = {&doc, editor};
    QTabWidget& tabs = *TabGroup(doc.FTabGroup);
    FGroups->SetShown(doc.FTabGroup, true);
    FSyncingTabs = true;
    const int index = tabs.addTab(editor, TabCaption(doc));
    tabs.setTabToolTip(index, QString::fromStdString(doc.FFilePath));
    FSyncingTabs = false;
    Trace("DocumentAdded() - tab " + std::to_string(index + 1) + ": " + doc.FFilePath +
          (doc.FTabGroup > 0 ? " (group " + std::to_string(doc.FTabGroup) + ")" : ""));
}

TEditorWidget* TMainWindow::MakeView(TDocument& doc) {
    auto* editor = new TEditorWidget;
    editor->SetTextDocument(doc.Text);
    ApplyMemoMiscOptions(editor->Memo(), FHelper.MemoMiscOptions());
    editor->ApplyWrapSettings(SettingsIni());
    editor->Memo().FReadOnly = doc.FReadOnly;
    BindEditor(*editor, doc);
    return editor;
}

const TTypeColors& TMainWindow::Colors() {
    if (!FColors)
        FColors = std::make_unique<const TTypeColors>(GetRootFolder() / "Syntax" / "Colors.ini",
                                                      SettingsIni());
    return *FColors;
}

void TMainWindow::BindEditor(TEditorWidget& editor, TDocument& doc) {
    // The editor dies with its tab, before the document it refers to.
    connect(&editor, &TEditorWidget::ModifiedChanged, this,
            [this, &doc](bool modified) { ModifiedChanged(doc, modified); });
    connect(&editor, &TEditorWidget::CursorChanged, this, [this, &editor, &doc] {
        NoteViewState(editor, doc);
        if (&editor == ActiveEditor())
            UpdateStatus();
    });
    connect(&editor, &TEditorWidget::TextChanged, this, [this] { KeepUnsavedText(); });
    connect(&editor, &TEditorWidget::FoldsApplied, this, [&editor, &doc] {
        if (!doc.FRememberedFolds.empty()) { // the first folds of a file opened again
            CloseFoldsAt(editor.Memo().Lines(), std::exchange(doc.FRememberedFolds, {}));
            editor.viewport()->update();
        }
    });
    editor.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&editor, &QWidget::customContextMenuRequested, this,
            [this, &editor](const QPoint& at) { ShowEditorMenu(editor, at); });
    editor.FOnSave = [this, &doc] { return FHelper.SaveFile(&doc); };
    editor.FOnRowStyle = [this, &doc](std::u16string_view row) -> const TCharStyle* {
        if (!doc.FMonitored)
            return nullptr;
        if (!FTailKeywords)
            FTailKeywords = MemoGetFollowTailOptions(GetRootFolder());
        return FTailKeywords->Match(row);
    };
}

void TMainWindow::ModifiedChanged(TDocument& doc, bool) {
    UpdateCaption(doc);
    UpdateTitle();
    UpdateStatus();
}

void TMainWindow::UpdateCaption(const TDocument& doc) {
    for (const auto& [group, page] : PagesOf(doc)) {
        QTabWidget& tabs = *TabGroup(group);
        tabs.setTabText(tabs.indexOf(page),
                        IsClonePage(page) ? CloneCaption(doc) : TabCaption(doc));
    }
}

void TMainWindow::DocumentRemoved(TDocument& doc) {
    if (FPendingActive == &doc)
        FPendingActive = nullptr;
    if (TEditorWidget* main = MainView(doc); main && !doc.FDeferred)
        NoteViewState(*main, doc); // remembered for the next opening
    // The document's tab and its clones go; the focus moves on when the helper activates
    // the next document.
    for (const auto& [group, page] : PagesOf(doc)) {
        FSyncingTabs = true;
        TabGroup(group)->removeTab(TabGroup(group)->indexOf(page));
        FSyncingTabs = false;
        delete page;
        LeaveGroup(group);
    }
    FDocViews.erase(doc.Text.get());
    UpdateTitle();
    KeepUnsavedText();
}

void TMainWindow::DocumentActivated(TDocument& doc) {
    if (FInBatch) { // each current-tab change lays the bar out: done once at the end
        FPendingActive = &doc;
        return;
    }
    TEditorWidget* main = MainView(doc);
    if (!main)
        return;
    // A view of the document in charge already (a split half, a clone) stays in charge.
    if (!FActiveMemo || DocumentOf(*FActiveMemo) != &doc) {
        QWidget* page = PageOfEditor(*main);
        const int group = FGroups->GroupOf(page);
        FSyncingTabs = true;
        TabGroup(group)->setCurrentWidget(page);
        FSyncingTabs = false;
        FActiveMemo = main;
        FHelper.FActiveDocumentView = group;
        main->setFocus();
    }
    UpdateTitle();
    UpdateStatus();
}

void TMainWindow::DocumentReloaded(TDocument& doc) {
    for (const auto& [group, page] : PagesOf(doc))
        for (TEditorWidget* view : EditorsOfPage(page))
            ApplyMemoMiscOptions(view->Memo(), FHelper.MemoMiscOptions());
    if (auto* editor = MainView(doc)) { // it shows the new rows already
        editor->FollowDocumentIndent();
        if (doc.FRestoreView && !doc.FMonitored) { // a deferred tab's remembered view
            ShowViewState(*editor, doc);
        } else {
            // A followed log shows its newest line; another document keeps its caret's place.
            const int row = doc.FMonitored ? editor->Memo().RowCount() - 1 : doc.FCaretY;
            editor->Memo().SetTextCursor(doc.FMonitored ? 0 : doc.FCaretX, row);
            editor->ShowRow(editor->Memo().FCurY);
        }
    }
    UpdateCaption(doc);
    UpdateTitle();
    UpdateStatus();
}

bool TMainWindow::DocumentGrows(TDocument& doc, const std::function<bool()>& append) {
    TEditorWidget* editor = MainView(doc);
    if (!editor)
        return append();
    const bool grew = editor->Memo().AppendFromFile(append);
    if (grew) { // a followed log shows its newest line
        editor->Memo().SetTextCursor(0, editor->Memo().RowCount() - 1);
        editor->ShowRow(editor->Memo().FCurY);
        UpdateStatus();
    }
    return grew;
}

void TMainWindow::DocumentDiffersFromFile(TDocument& doc) {
    // Through the editor, whose modified mark the tab and the closing questions follow.
    if (auto* editor = MainView(doc))
        editor->Memo().SetModified(true);
    KeepUnsavedText(); // the file no longer holds this text: the crash session must
}

void TMainWindow::TabChanged(int group, int index) {
    const std::vector<TEditorWidget*> editors = EditorsOfPage(TabGroup(group)->widget(index));
    TEditorWidget* editor = editors.empty() ? nullptr : editors.front();
    if (editor && !FSyncingTabs) {
        FActiveMemo = editor;
        FHelper.FActiveDocumentView = group;
        if (TDocument* doc = DocumentOf(*editor))
            FHelper.Activate(FHelper.DocumentIndex(*doc)); // a deferred one is read now
        editor->setFocus();
    } else if (editor && !qobject_cast<TEditorWidget*>(QApplication::focusWidget())) {
        // A tab the window shows itself takes the focus only when no editor holds it.
        editor->setFocus();
    }
    UpdateTitle();
    UpdateStatus();
}

void TMainWindow::UpdateTitle() {
    const TDocument* doc = FHelper.ActiveDocument();
    if (!doc) {
        setWindowTitle(QStringLiteral("Zevrit"));
        return;
    }
    const QString title = QStringLiteral("Zevrit - ") + QString::fromStdString(doc->FFilePath);
    setWindowTitle(doc->Modified() ? title + QLatin1Char('*') : title);
}

void TMainWindow::OpenFileClick() {
    const QStringList names = QFileDialog::getOpenFileNames(this, tr("Open"));
    for (const QString& name : names) {
        TLoadFileArgs args;
        args.FileName = name.toStdString();
        FHelper.LoadFile(args);
    }
}

TSaveAsChoice TMainWindow::AskSaveAs(const TDocument& doc) {
    TSaveAsDialog dialog(this, doc, tr("Save As"));
    dialog.exec();
    return dialog.Choice();
}

void TMainWindow::DocumentSaved(TDocument& doc) {
    TEditorWidget* editor = MainView(doc);
    if (!editor)
        return;
    editor->MarkSaved();
    const QString path = QString::fromStdString(doc.FFilePath);
    bool renamed = false;
    for (const auto& [group, page] : PagesOf(doc)) {
        for (TEditorWidget* view : EditorsOfPage(page))
            view->Memo().FReadOnly = doc.FReadOnly;
        QTabWidget& tabs = *TabGroup(group);
        renamed = tabs.tabToolTip(tabs.indexOf(page)) != path || renamed;
        tabs.setTabToolTip(tabs.indexOf(page), path);
    }
    if (renamed) { // saved under a new name: its syntax may differ
        // After the save returns: the editor's scan is paused by the save until then.
        QMetaObject::invokeMethod(
            editor,
            [this, editor, &doc, name = doc.FFilePath] { // doc lives as long as its editor
                doc.FHighlighter =
                    Utf16ToUtf8(editor->SetSyntaxForFile(name, GetRootFolder(), Colors()));
                editor->FollowDocumentIndent();
            },
            Qt::QueuedConnection);
    }
    UpdateCaption(doc);
    UpdateTitle();
    UpdateStatus();
    KeepUnsavedText();
}

void TMainWindow::SaveClick() {
    // Through the editor, so that its modified mark is cleared with the document's.
    if (auto* editor = ActiveEditor())
        editor->Save();
    else
        FHelper.SaveFile();
}

void TMainWindow::CloseTabClick(int group, int index) {
    QWidget* page = TabGroup(group) ? TabGroup(group)->widget(index) : nullptr;
    const std::vector<TEditorWidget*> editors = EditorsOfPage(page);
    if (editors.empty())
        return;
    if (IsClonePage(page))
        return CloseClonePage(page);
    if (const TDocument* doc = DocumentOf(*editors.front()))
        FHelper.ClosePage(FHelper.DocumentIndex(*doc));
}

void TMainWindow::CloseActiveView() {
    if (TEditorWidget* editor = ActiveEditor()) {
        QWidget* page = PageOfEditor(*editor);
        const int group = FGroups->GroupOf(page);
        CloseTabClick(group, TabGroup(group)->indexOf(page));
    }
}

} // namespace zv
