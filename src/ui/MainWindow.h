// The Zevrit main window: one tab group of editor widgets, the File menu, and the view
// side of the main object. A tab's caption and the window title end in "*" while the
// document differs from its file.
#pragma once

#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"
#include "shell/WindowLayouts.h"

#include "syntax/TypeColors.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class QLabel;
class QMenu;
class QTabWidget;

namespace zv {

class TTabCloser;
class TWindowSearch;

class TEditorWidget;
class TTailKeywords;

class TMainWindow : public QMainWindow, public IMainView, public IDocumentListener {
    Q_OBJECT
public:
    explicit TMainWindow(TMainFormHelper& helper, QWidget* parent = nullptr);
    ~TMainWindow() override;

    // IMainView
    bool IsVisible() const override;
    bool IsMinimized() const override;
    void BringUp() override;
    void ShowLine(int line) override;

    // IDocumentListener
    void DocumentAdded(TDocument& doc) override;
    void DocumentRemoved(TDocument& doc) override;
    void DocumentActivated(TDocument& doc) override;
    void DocumentReloaded(TDocument& doc) override;
    void DocumentSaved(TDocument& doc) override;
    void DocumentDiffersFromFile(TDocument& doc) override;
    // The editor runs the append with its scan paused, repaints, and moves to the last row.
    bool DocumentGrows(TDocument& doc, const std::function<bool()>& append) override;

    // Takes the main object's requests that need an editor (hand-over kind 1009: paste).
    void AttachForm(TMainForm& form);
    // Pastes handed-over text into the active editor by smart paste; a selection is first
    // reduced to its start, so the text goes in before it and nothing is replaced.
    void PasteHandedOver(const QString& text);

    // The keywords whose lines a followed log's editor colours; read from the root's
    // "Data/TailKeywords.ini" when first needed unless set here.
    void SetMonitorLogFileOptions(std::shared_ptr<const TTailKeywords> keywords) {
        FTailKeywords = std::move(keywords);
    }

    QTabWidget* TabGroup() const { return FTabs; }
    // The search commands (find bar, find next, replace, find all, go to line).
    TWindowSearch& Search() const { return *FSearch; }
    TEditorWidget* EditorAt(int index) const;
    // The window's layout as it stands, and applying one (size, state, tab bar, docks).
    TWindowLayout CurrentLayout() const;
    void ApplyLayout(const TWindowLayout& layout);
    // Keeps the present layout as the backup and applies the saved layout `name`; a missing
    // or damaged one is told and changes nothing.
    bool SwitchLayout(const std::string& name);
    // The layouts of the data root's "Layouts" folder.
    TWindowLayouts Layouts() const;
    TEditorWidget* ActiveEditor() const;

    // The status bar's texts: caret position, encoding, line ends, typing mode.
    QString StatusPosition() const;
    QString StatusEncoding() const;
    QString StatusMode() const; // typing mode, read-only, modified, syntax

private:
    void CreateMenus();
    // File > Reopen with encoding (every code page this system converts) and Save Copy As.
    void CreateFileExtras(QMenu* file);
    void CreateEditMenus();
    // File > Recent files and Recently closed, and the Sessions menu with window layouts.
    void CreateMemoryMenus(QMenu* file);
    void FillLayoutMenu(QMenu* menu);
    void FillRecentMenu(QMenu* menu, bool closed);
    void FillSessionMenu(QMenu* menu, bool remove);
    void SaveSessionClick();
    // The view's caret, selection and top row go to the document, and back.
    static void NoteViewState(const TEditorWidget& editor, TDocument& doc);
    // ShowViewState applies a remembered state once (then clears FRestoreView).
    static void ShowViewState(TEditorWidget& editor, TDocument& doc);
    void CreateStatusBar();
    void UpdateStatus();
    // The crash session follows an edit, a save or a close.
    void KeepUnsavedText();
    // Ctrl+Tab and Ctrl+PageDown (+1), Ctrl+Shift+Tab and Ctrl+PageUp (-1), wrapping around.
    void SwitchTab(int step);
    // Runs `command` on the active editor, if there is one.
    void OnActiveEditor(const std::function<void(TEditorWidget&)>& command);
    // The save dialog for `doc`; empty when cancelled.
    TSaveAsChoice AskSaveAs(const TDocument& doc);
    void OpenFileClick();
    void SaveClick();
    void CloseTabClick(int index);
    void TabChanged(int index);
    int IndexOf(const TDocument& doc) const;
    // The editor follows the document: modified mark, saving through the helper.
    void BindEditor(TEditorWidget& editor, TDocument& doc);
    void ModifiedChanged(TDocument& doc, bool modified);
    void UpdateCaption(const TDocument& doc);
    void UpdateTitle();
    // The colour scheme of the settings' theme, read once for every document of the window.
    const TTypeColors& Colors();

protected:
    void changeEvent(QEvent* event) override;
    // The window's close button and Exit: every modified document is asked about first.
    void closeEvent(QCloseEvent* event) override;
    // Files dropped on the window open as documents.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    TMainFormHelper& FHelper;
    TMainForm* FForm = nullptr; // set by AttachForm
    QTabWidget* FTabs;
    bool FSyncingTabs = false;                  // set while the helper drives the tab group
    bool FInBatch = false;                      // many documents opening at once
    TDocument* FPendingActive = nullptr;        // activated during the batch, shown after it
    TTabCloser* FCloser;                        // owned by the tab bar
    std::unique_ptr<const TTypeColors> FColors; // made on the first document
    TWindowSearch* FSearch = nullptr;           // a child, made with the Search menu
    QLabel* FStatusPosition = nullptr;
    QLabel* FStatusEncoding = nullptr;
    QLabel* FStatusLineEnds = nullptr;
    QLabel* FStatusMode = nullptr;

    std::shared_ptr<const TTailKeywords> FTailKeywords; // made on the first followed line
};

} // namespace zv
