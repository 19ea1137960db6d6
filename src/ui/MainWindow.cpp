// Main window: tabs follow the helper's documents; menu commands call the helper.
#include "ui/MainWindow.h"

#include "common/Trace.h"
#include "common/Utf.h"
#include "shell/MemoOptions.h"
#include "shell/RootFolder.h"
#include "shell/Settings.h"
#include "shell/TailKeywords.h"
#include "ui/EditorWidget.h"
#include "ui/SaveAsDialog.h"
#include "ui/TabCloser.h"

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

} // namespace

TMainWindow::TMainWindow(TMainFormHelper& helper, QWidget* parent)
    : QMainWindow(parent), FHelper(helper), FTabs(new QTabWidget(this)) {
    FTabs->setDocumentMode(true);
    FTabs->setMovable(false);
    setCentralWidget(FTabs);
    setAcceptDrops(true);
    connect(FTabs, &QTabWidget::tabCloseRequested, this, &TMainWindow::CloseTabClick);
    FCloser = new TTabCloser(*FTabs->tabBar());
    connect(FCloser, &TTabCloser::closeRequested, this, &TMainWindow::CloseTabClick);
    connect(FTabs, &QTabWidget::currentChanged, this, &TMainWindow::TabChanged);
    CreateStatusBar();
    CreateActions();
    CreateMenuBar();
    resize(1000, 700);
    FHelper.SetListener(this);
    FHelper.FOnAskSaveAs = [this](const TDocument& doc) { return AskSaveAs(doc); };
    UpdateTitle();
}

TMainWindow::~TMainWindow() {
    FHelper.SetListener(nullptr);
    FHelper.FOnAskSaveAs = nullptr;
    // The editors die in the base class's destructor, when this is no longer a TMainWindow:
    // what they signal then must not reach it.
    for (QObject* child : findChildren<QObject*>())
        child->disconnect(this);
}

void TMainWindow::closeEvent(QCloseEvent* event) {
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
    return qobject_cast<TEditorWidget*>(FTabs->widget(index));
}

TEditorWidget* TMainWindow::ActiveEditor() const {
    return EditorAt(FTabs->currentIndex());
}

void TMainWindow::AttachForm(TMainForm& form) {
    FForm = &form;
    // The key map waits until the window is up, as the start-up's other data does.
    QTimer::singleShot(TMainForm::kParamsDelayMs, this, &TMainWindow::LoadKeyMap);
    connect(&form, &TMainForm::pasteRequested, this, &TMainWindow::PasteHandedOver);
    // A hidden tab bar lays its tabs out once, when it shows again: a batch of 500 files
    // would otherwise lay out all tabs for each one added.
    connect(&form, &TMainForm::batchChanged, this, [this](bool inBatch) {
        FTabs->tabBar()->setVisible(!inBatch);
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

int TMainWindow::IndexOf(const TDocument& doc) const {
    return FHelper.DocumentIndex(doc);
}

void TMainWindow::DocumentAdded(TDocument& doc) {
    auto* editor = new TEditorWidget(FTabs);
    editor->SetTextDocument(doc.Text);
    ApplyMemoMiscOptions(editor->Memo(), FHelper.MemoMiscOptions());
    const std::u16string forced = Utf8ToUtf16(doc.FHighlighter);
    doc.FHighlighter =
        Utf16ToUtf8(editor->SetSyntaxForFile(doc.FFilePath, GetRootFolder(), Colors(), forced));
    editor->FollowDocumentIndent();
    editor->Memo().FReadOnly = doc.FReadOnly;
    if (doc.Modified()) { // text brought back from the crash session
        editor->Memo().SetTextCursor(doc.FCaretX, doc.FCaretY);
    } else if (doc.FRestoreView && !doc.FDeferred) { // remembered from a former opening
        ShowViewState(*editor, doc);
    }
    BindEditor(*editor, doc);
    FSyncingTabs = true;
    const int index = FTabs->addTab(editor, TabCaption(doc));
    FTabs->setTabToolTip(index, QString::fromStdString(doc.FFilePath));
    FSyncingTabs = false;
    Trace("DocumentAdded() - tab " + std::to_string(index + 1) + ": " + doc.FFilePath);
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
    if (const int index = IndexOf(doc); index >= 0)
        FTabs->setTabText(index, TabCaption(doc));
}

void TMainWindow::DocumentRemoved(TDocument& doc) {
    if (FPendingActive == &doc)
        FPendingActive = nullptr;
    // The helper has already dropped the document: its tab is the one whose editor
    // still shows doc's rows.
    for (int i = 0; i < FTabs->count(); ++i) {
        if (EditorAt(i)->Lines() == &doc.Lines()) {
            if (!doc.FDeferred)
                NoteViewState(*EditorAt(i), doc); // remembered for the next opening
            QWidget* page = FTabs->widget(i);
            FSyncingTabs = true;
            FTabs->removeTab(i);
            FSyncingTabs = false;
            delete page;
            break;
        }
    }
    UpdateTitle();
    KeepUnsavedText();
}

void TMainWindow::DocumentActivated(TDocument& doc) {
    if (FInBatch) { // each current-tab change lays the bar out: done once at the end
        FPendingActive = &doc;
        return;
    }
    const int index = IndexOf(doc);
    if (index < 0)
        return;
    FSyncingTabs = true;
    FTabs->setCurrentIndex(index);
    FSyncingTabs = false;
    UpdateTitle();
}

void TMainWindow::DocumentReloaded(TDocument& doc) {
    if (auto* editor = EditorAt(IndexOf(doc))) { // it shows the new rows already
        ApplyMemoMiscOptions(editor->Memo(), FHelper.MemoMiscOptions());
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
    TEditorWidget* editor = EditorAt(IndexOf(doc));
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
    if (auto* editor = EditorAt(IndexOf(doc)))
        editor->Memo().SetModified(true);
    KeepUnsavedText(); // the file no longer holds this text: the crash session must
}

void TMainWindow::TabChanged(int index) {
    FCloser->Follow(index);
    if (!FSyncingTabs && index >= 0)
        FHelper.Activate(index);
    if (auto* editor = EditorAt(index))
        editor->setFocus();
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
    const int index = IndexOf(doc);
    TEditorWidget* editor = EditorAt(index);
    if (!editor)
        return;
    editor->MarkSaved();
    editor->Memo().FReadOnly = doc.FReadOnly;
    const QString path = QString::fromStdString(doc.FFilePath);
    if (FTabs->tabToolTip(index) != path) { // saved under a new name: its syntax may differ
        FTabs->setTabToolTip(index, path);
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

void TMainWindow::CloseTabClick(int index) {
    FHelper.ClosePage(index);
}

} // namespace zv
