// The window's commands as actions (name, category, caption key, built-in shortcuts, what
// runs and when it is enabled), and the menu bar, toolbar and editor menu built from them.
#include "ui/MainWindow.h"

#include "shell/DocumentMemory.h"
#include "shell/KeyMap.h"
#include "shell/Language.h"
#include "shell/RootFolder.h"
#include "shell/Settings.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/CodeExplorerPanel.h"
#include "ui/CommandPalette.h"
#include "ui/EditorWidget.h"
#include "ui/KeyDialog.h"
#include "ui/WindowSearch.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>

namespace zv {
bool TMainWindow::HasTextMemoFocus() const {
    QWidget* focus = QApplication::focusWidget();
    if (!focus) // keys reach the window itself, and its commands the active editor
        return isActiveWindow() && ActiveEditor();
    const auto* editor = qobject_cast<const TEditorWidget*>(focus);
    return editor && editor->window() == this;
}

std::pair<std::function<void()>, std::function<bool()>>
TMainWindow::EditHandlers(TMemoCommand command, bool (*can)(const TZvMemo&)) {
    return {[this, command] { OnActiveEditor([command](TEditorWidget& e) { e.Run(command); }); },
            [this, can] {
                const TEditorWidget* editor = ActiveEditor();
                return editor && HasTextMemoFocus() && (!can || can(editor->Memo()));
            }};
}

void TMainWindow::CreateActions() {
    FActions = new TWindowActions(*this);
    TActionList& list = FActions->List();
    std::vector<std::pair<const char*, const char*>> icons; // set once the QActions exist
    const auto add = [&list, &icons](const TActionDef& def, std::function<void()> run,
                                     std::function<bool()> update = {}) -> TAction& {
        if (def.Icon)
            icons.emplace_back(def.Name, def.Icon);
        return list.Add(MakeAction(def, std::move(run), std::move(update)));
    };
    // An editing command on the active editor, enabled while an editor has the focus and
    // `can` allows.
    const auto edit = [this, &add](const TActionDef& def, TMemoCommand command,
                                   bool (*can)(const TZvMemo&) = nullptr) -> TAction& {
        auto [run, update] = EditHandlers(command, can);
        return add(def, std::move(run), std::move(update));
    };
    const auto writable = [](const TZvMemo& m) { return !m.FReadOnly; };
    const auto hasEditor = [this] { return ActiveEditor() != nullptr; };
    const auto hasDocument = [this] { return FHelper.ActiveDocument() != nullptr; };

    // File
    add({"NewFileAction", "File", "001", "&New", {"Ctrl+N"}, "document-new"},
        [this] { FHelper.NewDocument(); });
    add({"OpenFileAction", "File", "002", "&Open...", {"Ctrl+O"}, "document-open"},
        [this] { OpenFileClick(); });
    add(
        {"ReOpenFileAction", "File", "003", "Reloa&d"},
        [this] {
            if (TDocument* doc = FHelper.ActiveDocument())
                FHelper.ReopenWithEncoding(*doc, 50001);
        },
        hasDocument);
    add(
        {"SaveAction", "File", "004", "&Save", {"Ctrl+S"}, "document-save"},
        [this] { SaveClick(); }, hasDocument);
    add(
        {"SaveAsAction", "File", "005", "Save &As...", {"Shift+Ctrl+S"}, "document-save-as"},
        [this] { FHelper.SaveFileAs(); }, hasDocument);
    add(
        {"SaveCopyAsAction", "File", "006", "Save Cop&y As..."}, [this] { SaveCopyAsClick(); },
        hasDocument);
    add({"SaveAllAction", "File", "007", "Sa&ve All"}, [this] { FHelper.SaveAllFiles(); });
    add({"SaveSessionAction", "File", "008", "&Save session..."}, [this] { SaveSessionClick(); });
    add({"CloseAction", "File", "009", "&Close", {"Ctrl+W"}}, [this] { CloseActiveView(); });
    add({"CloseAllAction", "File", "010", "Close A&ll", {"Shift+Ctrl+W"}},
        [this] { FHelper.CloseAllDocumentTabs(); });
    add({"CloseOthersAction", "File", "011", "Close Ot&hers"}, [this] {
        const TDocument* doc = FHelper.ActiveDocument();
        FHelper.CloseAllDocumentTabs(doc ? FHelper.DocumentIndex(*doc) : -1);
    });
    add({"ExitAction", "File", "012", "E&xit", {"Ctrl+Q"}, "application-exit"},
        [this] { close(); });

    // Edit
    TAction& undo = edit(
        {"UndoAction", "Edit", "020", "&Undo", {"Ctrl+Z"}, "edit-undo"},
        [](TZvMemo& m) { m.acnUndo(); }, [](const TZvMemo& m) { return m.CanUndo(); });
    undo.Kind = TActionKind::StandardEdit;
    edit(
        {"RedoAction", "Edit", "021", "&Redo", {"Shift+Ctrl+Z", "Ctrl+Y"}, "edit-redo"},
        [](TZvMemo& m) { m.acnRedo(); }, [](const TZvMemo& m) { return m.CanRedo(); });
    edit(
        {"CutAction", "Edit", "022", "Cu&t", {"Ctrl+X"}, "edit-cut"},
        [](TZvMemo& m) { m.acnCut(); },
        [](const TZvMemo& m) { return !m.FReadOnly && m.CanCopy(); })
        .Kind = TActionKind::StandardEdit;
    edit(
        {"CopyAction", "Edit", "023", "&Copy", {"Ctrl+C"}, "edit-copy"},
        [](TZvMemo& m) { m.acnCopy(); }, [](const TZvMemo& m) { return m.CanCopy(); })
        .Kind = TActionKind::StandardEdit;
    edit(
        {"PasteAction", "Edit", "024", "&Paste", {"Ctrl+V"}, "edit-paste"},
        [](TZvMemo& m) { m.acnPaste(); }, [](const TZvMemo& m) { return m.CanPaste(); })
        .Kind = TActionKind::StandardEdit;
    edit(
        {"DeleteAction", "Edit", "025", "&Delete"}, [](TZvMemo& m) { m.acnDelete(); }, writable);
    edit({"SelectAllAction", "Edit", "026", "Select &All", {"Ctrl+A"}},
         [](TZvMemo& m) { m.acnSelectAll(); });
    edit(
        {"DupLineAction", "Edit", "027", "Duplicat&e line"},
        [](TZvMemo& m) { m.DuplicateCurrentLine(); }, writable);
    edit(
        {"DelLineAction", "Edit", "028", "Delete &line"}, [](TZvMemo& m) { m.DeleteCurrentLine(); },
        writable);
    edit(
        {"DeleteWordAction", "Edit", "029", "Delete &word", {"Ctrl+Del"}},
        [](TZvMemo& m) { m.acnDeleteWord(); }, writable);
    edit(
        {"DeletePrevWordAction", "Edit", "030", "Delete pre&vious word", {"Ctrl+Backspace"}},
        [](TZvMemo& m) { m.acnDeletePreviousWord(); }, writable);
    TAction& overwrite = edit({"InsertModeAction", "Edit", "031", "&Overwrite mode", {"Ins"}},
                              [](TZvMemo& m) { m.acnToggleOverwrite(); });
    overwrite.Checkable = true;
    overwrite.OnChecked = [this] { return ActiveEditor() && ActiveEditor()->Memo().FOverwrite; };

    // Format
    edit(
        {"IndentAction", "Format", "040", "&Indent"}, [](TZvMemo& m) { m.acnIndent(); }, writable);
    edit(
        {"UnIndentAction", "Format", "041", "&Unindent"}, [](TZvMemo& m) { m.acnUnIndent(); },
        writable);

    // Search
    add(
        {"MatchingBraceAction", "Search", "050", "&Matching brace", {"Ctrl+B"}},
        [this] { OnActiveEditor([](TEditorWidget& e) { e.GoToMatchingBrace(); }); },
        [this] { return ActiveEditor() && HasTextMemoFocus(); });

    // View
    add(
        {"ZoomInAction", "View", "060", "Zoom &in", {"Ctrl++", "Ctrl+="}, "zoom-in"},
        [this] { OnActiveEditor([](TEditorWidget& e) { e.ZoomIn(); }); }, hasEditor);
    add(
        {"ZoomOutAction", "View", "061", "Zoom &out", {"Ctrl+-"}, "zoom-out"},
        [this] { OnActiveEditor([](TEditorWidget& e) { e.ZoomOut(); }); }, hasEditor);
    add(
        {"ZoomResetAction", "View", "062", "Reset &zoom", {"Ctrl+NUM 0"}, "zoom-original"},
        [this] { OnActiveEditor([](TEditorWidget& e) { e.ZoomReset(); }); }, hasEditor);
    TAction& toolbar = add({"ToggleToolbarAction", "View", "063", "&Toolbar"},
                           [this] { FToolBar->setVisible(!FToolBar->isVisible()); });
    toolbar.Checkable = true;
    toolbar.OnChecked = [this] { return FToolBar && !FToolBar->isHidden(); };
    TAction& status = add({"StatusbarAction", "Statusbar", "064", "&Status bar"},
                          [this] { statusBar()->setVisible(statusBar()->isHidden()); });
    status.Checkable = true;
    status.OnChecked = [this] { return !statusBar()->isHidden(); };
    TAction& full = add({"ToggleFullScreenAction", "View", "065", "&Full screen", {"F11"}},
                        [this] { isFullScreen() ? showNormal() : showFullScreen(); });
    full.Checkable = true;
    full.OnChecked = [this] { return isFullScreen(); };
    TAction& wrap = add(
        {"WordWrapAction", "View", "430", "&Word wrap", {"Ctrl+Alt+W"}},
        [this] { ToggleWordWrap(); }, hasEditor);
    wrap.Checkable = true;
    wrap.OnChecked = [this] { return ActiveEditor() && ActiveEditor()->WordWrap(); };
    FCodeExplorer = new TCodeExplorerPanel(this);
    addDockWidget(Qt::LeftDockWidgetArea, FCodeExplorer);
    FCodeExplorer->hide();
    TAction& explorer = add({"CodeExplorerAction", "View", "480", "&Code explorer"}, [this] {
        FCodeExplorer->setVisible(FCodeExplorer->isHidden());
        UpdateStatus();
    });
    explorer.Checkable = true;
    explorer.OnChecked = [this] { return !FCodeExplorer->isHidden(); };

    // Tools
    add({"FindCommandAction",
         "Tools",
         "070",
         "&Find command...",
         {"Shift+Ctrl+P"},
         "system-search"},
        [this] { OpenMenuSearch(); });
    add(
        {"RunLastAction", "Tools", "071", "&Repeat last command"},
        [&list] { list.RunLastAction(); }, [&list] { return list.LastAction() != nullptr; });
    add({"CustomizeKeyboardAction", "Tools", "072", "&Keyboard shortcuts..."},
        [this] { OpenKeyDialog(); });

    // Window
    add({"NextEditorTabAction", "Windows", "080", "&Next document", {"Ctrl+Tab", "Ctrl+PgDn"}},
        [this] { SwitchTab(1); });
    add({"PreviousEditorTabAction",
         "Windows",
         "081",
         "&Previous document",
         {"Shift+Ctrl+Tab", "Ctrl+PgUp"}},
        [this] { SwitchTab(-1); });

    // Help
    add({"AboutAction", "Help", "090", "&About Zevrit"}, [this] {
        QMessageBox::about(this, QStringLiteral("Zevrit"),
                           QString::fromStdString(LangText("Misc", "400", "Zevrit 0.1.0")));
    });

    CreateGroupActions();
    CreateTextActions();
    CreateExportActions();
    CreateBookmarkActions();
    CreateClipActions();
    CreateHighlightActions();
    CreateFoldActions();
    CreateCaretActions();
    CreateMoveActions();
    FSearch = new TWindowSearch(*this, FHelper);
    FSearch->AddActions(list);
    list.FOnCloseAllInGroup = [this] {
        FHelper.CloseAllDocumentTabs(-1, FHelper.FActiveDocumentView);
    };
    list.FOnShortCutsChanged = [this] { FActions->ApplyShortCuts(); };
    FActions->Bind();
    for (const auto& [name, icon] : icons)
        FActions->Get(name)->setIcon(QIcon::fromTheme(QString::fromLatin1(icon)));
}

void TMainWindow::CreateMenuBar() {
    TWindowActions& a = *FActions;
    QMenuBar& bar = *menuBar();
    QMenu* file = a.AddMenu(bar, "m00", "&File", "FileMenu");
    a.AddTo(*file, {"NewFileAction", "OpenFileAction"});
    CreateMemoryMenus(file);
    a.AddTo(*file, {"ReOpenFileAction"});
    CreateFileExtras(file);
    a.AddTo(*file, {"-", "SaveAction", "SaveAsAction", "SaveCopyAsAction", "SaveAsHtmlAction",
                    "SaveAllAction", "-"});
    CreateSessionMenu(*a.AddSubMenu(*file, "100", "Sess&ions", "SessionsMenu"));
    a.AddTo(*file, {"-", "CloseAction", "CloseAllAction", "CloseOthersAction", "-", "ExitAction"});

    QMenu* edit = a.AddMenu(bar, "m01", "&Edit", "EditMenu");
    a.AddTo(*edit,
            {"UndoAction", "RedoAction", "-", "CutAction", "CopyAction", "CopyAsHtmlAction",
             "PasteAction", "DeleteAction", "-", "SelectAllAction", "-", "DupLineAction",
             "DelLineAction", "DeleteWordAction", "DeletePrevWordAction", "-", "InsertModeAction"});
    QMenu* search = a.AddMenu(bar, "m02", "&Search", "SearchMenu");
    a.AddTo(*search,
            {"FindInTextAction", "ReplaceInTextAction", "SearchDialogAction", "-", "FindNextAction",
             "FindPreviousAction", "FindAllAction", "UnHighlightFindAction", "-",
             "GotoSelectLineAction", "MatchingBraceAction", "-"});
    FillHighlightMenu(*a.AddSubMenu(*search, "117", "Highligh&t", "HighlightMenu"));
    QMenu* view = a.AddMenu(bar, "m03", "&View", "ViewMenu");
    a.AddTo(*view, {"ZoomInAction", "ZoomOutAction", "ZoomResetAction", "-", "ToggleToolbarAction",
                    "StatusbarAction", "ToggleFullScreenAction", "-", "SplitWindowHorzAction",
                    "SplitWindowVertAction", "SplitWindowLeftAction", "SplitWindowRightAction",
                    "UnsplitWindowAction", "-", "NewTabGroupAction", "MoveTabToNextGroupAction",
                    "MoveTabToPreviousGroupAction"});
    a.AddTo(*view, {"-", "WordWrapAction"});
    a.AddTo(*a.AddSubMenu(*view, "104", "T&ab groups", "TabGroupsMenu"),
            {"ToggleTabGroup1Action", "ToggleTabGroup2Action", "ToggleTabGroup3Action",
             "ToggleTabGroup4Action", "ToggleTabGroup5Action"});
    FillFoldMenu(*a.AddSubMenu(*view, "112", "Fol&ding", "FoldingMenu"));
    a.AddTo(*view, {"-", "CodeExplorerAction"});
    QMenu* format = a.AddMenu(bar, "m04", "F&ormat", "FormatMenu");
    a.AddTo(*format, {"IndentAction", "UnIndentAction"});
    AddTextMenus(*edit, *format);
    AddCaretMenu(*edit);
    AddMoveMenus(*edit, *search);
    QMenu* bookmarks = a.AddMenu(bar, "m05", "&Bookmarks", "BookmarksMenu");
    FillBookmarksMenu(*bookmarks);
    AddClipMenus(*edit, *view, *bookmarks);
    a.AddTo(*a.AddMenu(bar, "m07", "&Tools", "ToolsMenu"),
            {"FindCommandAction", "RunLastAction", "-", "WordCountAction", "-",
             "CustomizeKeyboardAction"});
    a.AddTo(*a.AddMenu(bar, "m0A", "&Window", "WindowMenu"),
            {"NextEditorTabAction", "PreviousEditorTabAction"});
    a.AddTo(*a.AddMenu(bar, "m0B", "&Help", "HelpMenu"), {"AboutAction"});
    TWindowActions::HideEmptyMenus(bar);

    FToolBar = addToolBar(QString::fromStdString(LangText("Menu", "101", "Toolbar")));
    FToolBar->setObjectName(QStringLiteral("MainToolBar"));
    a.AddTo(*FToolBar,
            {"NewFileAction", "OpenFileAction", "SaveAction", "-", "CutAction", "CopyAction",
             "PasteAction", "-", "UndoAction", "RedoAction", "-", "FindCommandAction"});
}

void TMainWindow::ShowEditorMenu(TEditorWidget& editor, const QPoint& at) {
    QMenu menu(&editor);
    FActions->AddTo(menu, {"UndoAction", "RedoAction", "-", "CutAction", "CopyAction",
                           "PasteAction", "DeleteAction", "-", "SelectAllAction", "-",
                           "IndentAction", "UnIndentAction", "-", "CloseAction"});
    FActions->UpdateActions();
    menu.exec(editor.mapToGlobal(at));
}

void TMainWindow::OpenMenuSearch() {
    if (!FMenuSearch)
        FMenuSearch = new TMenuSearchForm(*this, *FActions);
    const auto group = [](const char* key, const char* caption) {
        return QString::fromStdString(LangText("Menu", key, caption)).remove(QLatin1Char('&'));
    };
    const auto file = [](const std::string& path) {
        return QFileInfo(QString::fromStdString(path));
    };
    std::vector<TMenuSearchForm::TItem> extras;
    const TCustomIniFile& settings = SettingsIni();
    if (settings.ReadBool("Customize", "AppSearchFiles", true))
        for (const auto& doc : FHelper.Documents())
            extras.push_back({file(doc->FFilePath).fileName(),
                              group("102", "Documents"),
                              {},
                              {},
                              [this, d = doc.get()] {
                                  if (const int index = FHelper.DocumentIndex(*d); index >= 0)
                                      FHelper.Activate(index);
                              }});
    TDocumentMemory* memory = FForm ? FForm->Memory() : nullptr;
    if (memory && settings.ReadBool("Customize", "AppSearchRecent", true))
        for (const std::string& path :
             memory->MRU().RefreshList(memory->MenuRecent(), memory->RemoveInvalid()))
            extras.push_back(
                {file(path).fileName(), group("103", "Recent files"), {}, {}, [this, path] {
                     TLoadFileArgs args;
                     args.FileName = path;
                     FHelper.LoadFile(args);
                 }});
    if (memory && settings.ReadBool("Customize", "AppSearchSessions", true))
        for (const std::string& name : memory->Sessions().Names())
            extras.push_back(
                {QString::fromStdString(name), group("100", "Sess&ions"), {}, {}, [memory, name] {
                     memory->OpenSession(name);
                 }});
    FMenuSearch->Open(std::move(extras));
}

void TMainWindow::OpenKeyDialog() {
    TfrmCustomKeyboard dialog(this, FActions->List());
    if (dialog.exec() != QDialog::Accepted)
        return;
    FActions->ApplyShortCuts();
    std::string error;
    if (!SaveKeyMapFile(FActions->List(), KeyMapPath(GetRootFolder()), error))
        FHelper.Prompter().ShowMessage(error);
}

void TMainWindow::LoadKeyMap() {
    LoadKeyMapFile(FActions->List(), KeyMapPath(GetRootFolder()));
}

} // namespace zv
