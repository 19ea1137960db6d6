// The Zevrit main window: six tab groups of editor widgets, the menus, and the view side of
// the main object. A document has one main view, the first editor of its tab in its group;
// split halves and clones ("--" tabs in other groups) are further views of the same text.
// A tab's caption and the window title end in "*" while the document differs from its file.
#pragma once

#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"
#include "shell/WindowLayouts.h"

#include "syntax/TypeColors.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

class QLabel;
class QMenu;
class QTabWidget;
class QToolBar;

namespace zv {

class TCodeExplorerPanel;
class TMenuSearchForm;
class TTabGroups;
class TWindowActions;
class TWindowSearch;

class TEditorWidget;
class TTailKeywords;
class TZvMemo;

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

    // The tab list of group `group` (GetPageControlFromIndex); null outside 0..5.
    QTabWidget* TabGroup(int group = 0) const;
    TTabGroups& TabGroups() const { return *FGroups; }
    // The main view of the helper's document `index`, or null.
    // The search commands (find bar, find next, replace, find all, go to line).
    TWindowSearch& Search() const { return *FSearch; }
    // The code explorer panel (hidden until View > Code explorer).
    TCodeExplorerPanel& CodeExplorer() const { return *FCodeExplorer; }
    TEditorWidget* EditorAt(int index) const;
    // The document an editor of this window shows, or null.
    TDocument* DocumentOf(const TEditorWidget& editor) const;
    // The editor in charge. With `activeInGroup` false: the view that last had the focus
    // (a split half or a clone is itself a view with its own caret), while it lives. With
    // true, or when there is none: the first editor of the active group's current tab, else
    // the active document's main view; null without documents.
    TEditorWidget* GetMemoControl(bool activeInGroup) const;
    // The tab of the open document with `path` (any group; paths compare byte for byte):
    // its index in its group, which goes to `group`; -1 (and `group` -1) when not open.
    int FindDocMemo(const std::string& path, int& group) const;
    bool IsFileOpen(const std::string& path) const { return FHelper.IsFileOpen(path); }
    // An editor of this window got the focus: it is in charge, its document is the active
    // one and its group the active group (where opened files go).
    void MemoFocused(TEditorWidget& editor);

    enum class TSplitKind { Horizontal, Vertical, Left, Right };
    // A second view of the active view's document: inside its tab (Horizontal: one above
    // the other; Vertical: side by side; a split tab only turns), or a tab "--" in the group
    // to the left or right, shown first if hidden. It starts at the same caret and takes the
    // focus. False without a document or a group on that side.
    bool SplitCurrentMemo(TSplitKind kind);
    // The active tab's split goes; its first editor stays. False when it is not split.
    bool UnsplitCurrentMemo();
    // Moves the active tab to the group `step` away (shown first), as its last tab; text,
    // caret and modified state stay. False at either end of the row or without a tab.
    bool MoveTabToGroup(int step);
    // Shows the first hidden group and makes it the active one; false when all show.
    bool NewTabGroup();
    // Shows or hides group 1..5. A hidden group's documents move to group 0 and its clones
    // close; a group left empty by a close or a move hides by itself.
    void ShowTabGroup(int group, bool shown);
    // The window's layout as it stands, and applying one (size, state, tab bar, docks).
    TWindowLayout CurrentLayout() const;
    void ApplyLayout(const TWindowLayout& layout);
    // Keeps the present layout as the backup and applies the saved layout `name`; a missing
    // or damaged one is told and changes nothing.
    bool SwitchLayout(const std::string& name);
    // The layouts of the data root's "Layouts" folder.
    TWindowLayouts Layouts() const;
    TEditorWidget* ActiveEditor() const { return GetMemoControl(false); }

    // Every command of the window as an action: menus, toolbar, editor menu and shortcuts.
    TWindowActions& Actions() { return *FActions; }
    // True when an editor of this window has the focus (or the window itself, with an
    // active editor to take its commands): what editing commands need to be enabled.
    bool HasTextMemoFocus() const;
    // Reads the key map file of the data root (writing it first from the built-in
    // shortcuts when it is missing) and binds the shortcuts it gives.
    void LoadKeyMap();
    // The command palette (null until first opened).
    TMenuSearchForm* MenuSearch() const { return FMenuSearch; }

    // The status bar's texts: caret position, encoding, line ends, typing mode.
    QString StatusPosition() const;
    QString StatusEncoding() const;
    QString StatusMode() const; // typing mode, read-only, modified, syntax

private:
    // The actions (MainWindowActions.cpp), then the menus and the toolbar that show them.
    void CreateActions();
    void CreateMenuBar();
    void ShowEditorMenu(TEditorWidget& editor, const QPoint& at);
    void OpenMenuSearch();
    // Word wrap of the active editor on or off; stored as "EditorMisc"/"Wordwrap" when
    // "Customize"/"StoreWordwrap" says so.
    void ToggleWordWrap();
    void OpenKeyDialog();
    // File > Reopen with encoding (every code page this system converts).
    void CreateFileExtras(QMenu* file);
    void SaveCopyAsClick();
    // Save as HTML (File menu) and copy as HTML (Edit menu), in MainWindowExport.cpp.
    void CreateExportActions();
    void SaveAsHtmlClick();
    // File > Recent files and Recently closed.
    void CreateMemoryMenus(QMenu* file);
    // The Sessions menu: save, open and delete sessions, and window layouts.
    void CreateSessionMenu(QMenu& sessions);
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
    // Ctrl+Tab and Ctrl+PageDown (+1), Ctrl+Shift+Tab and Ctrl+PageUp (-1), wrapping around
    // within the active group.
    void SwitchTab(int step);
    // Runs `command` on the active editor, if there is one.
    void OnActiveEditor(const std::function<void(TEditorWidget&)>& command);
    // The save dialog for `doc`; empty when cancelled.
    TSaveAsChoice AskSaveAs(const TDocument& doc);
    void OpenFileClick();
    void SaveClick();
    // A tab's close: a clone tab closes alone, a document's tab closes the document.
    void CloseTabClick(int group, int index);
    void CloseActiveView();
    void TabChanged(int group, int index);
    // The tab group actions (MainWindowGroups.cpp).
    void CreateGroupActions();
    // The text commands' actions (MainWindowTextActions.cpp) and their menus in Edit and
    // Format; actions and menus that are not there are passed over.
    void CreateTextActions();
    void AddTextMenus(QMenu& edit, QMenu& format);
    // What an editing command runs and when it is enabled: `command` on the active editor,
    // while an editor has the focus and `can` (null: always) allows.
    using TMemoCommand = void (*)(TZvMemo&);
    std::pair<std::function<void()>, std::function<bool()>>
    EditHandlers(TMemoCommand command, bool (*can)(const TZvMemo&) = nullptr);
    void CreateBookmarkActions();
    void FillBookmarksMenu(QMenu& menu);
    // Marked-line, clipboard-variant, insert and font actions (MainWindowClipActions.cpp)
    // and their places in the Edit, View and Bookmarks menus.
    void CreateClipActions();
    void AddClipMenus(QMenu& edit, QMenu& view, QMenu& bookmarks);
    void CreateHighlightActions();
    void FillHighlightMenu(QMenu& menu);
    void CreateFoldActions();
    void FillFoldMenu(QMenu& menu); // the View menu's Folding submenu
    // Column mode and the caret list's actions (MainWindowCaretActions.cpp), their Edit submenu.
    void CreateCaretActions();
    void AddCaretMenu(QMenu& edit);
    // The column block commands' actions (MainWindowColumnActions.cpp), their Edit submenu.
    void CreateColumnActions();
    void AddColumnMenu(QMenu& edit);
    void CreateMoveActions();
    void AddMoveMenus(QMenu& edit, QMenu& search);
    // With "Window"/"SaveTabLayout", the groups "TabGroup1".."TabGroup5" show at start, and
    // the groups showing are written back at exit.
    void LoadTabGroupLayout();
    void SaveTabGroupLayout() const;
    // A view of `doc` bound to it, with the editor options and the document's read-only
    // state; its parent is set when it goes into a tab.
    TEditorWidget* MakeView(TDocument& doc);
    TEditorWidget* MainView(const TDocument& doc) const;
    // Every tab page that shows `doc`, with its group.
    std::vector<std::pair<int, QWidget*>> PagesOf(const TDocument& doc) const;
    bool IsClonePage(QWidget* page) const;
    void CloseClonePage(QWidget* page);
    // Moves a tab page to the end of group `to` (shown first) as its current tab; a
    // document's own page takes the document to that group.
    void MovePage(QWidget* page, int to);
    // Group `group` lost a tab: empty, it hides (unless it is group 0).
    void LeaveGroup(int group);
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
    TTabGroups* FGroups;
    // Per document (by its text): the document and its main view.
    struct TDocViews {
        TDocument* Doc = nullptr;
        QPointer<TEditorWidget> Main;
    };
    std::unordered_map<const TZvTextDocument*, TDocViews> FDocViews;
    QPointer<TEditorWidget> FActiveMemo;        // the view that last had the focus
    QMetaObject::Connection FFocusWatch;        // the application's focus changes: MemoFocused
    bool FSyncingTabs = false;                  // set while the window moves tabs itself
    bool FInBatch = false;                      // many documents opening at once
    TDocument* FPendingActive = nullptr;        // activated during the batch, shown after it
    std::unique_ptr<const TTypeColors> FColors; // made on the first document
    TWindowSearch* FSearch = nullptr;           // a child, made with the Search menu
    QLabel* FStatusPosition = nullptr;
    QLabel* FStatusEncoding = nullptr;
    QLabel* FStatusLineEnds = nullptr;
    QLabel* FStatusMode = nullptr;
    TWindowActions* FActions = nullptr; // a child, made first
    QToolBar* FToolBar = nullptr;
    TMenuSearchForm* FMenuSearch = nullptr; // a child, made when first opened
    // A child dock, made with the actions.
    TCodeExplorerPanel* FCodeExplorer = nullptr;

    std::shared_ptr<const TTailKeywords> FTailKeywords; // made on the first followed line
};

} // namespace zv
