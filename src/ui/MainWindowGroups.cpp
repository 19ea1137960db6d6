// The main window's tab groups and views: which editor is in charge, where a document's tab
// stands, moving tabs between groups, split views and clones, and the group layout kept
// across starts.
#include "ui/MainWindow.h"

#include "shell/Settings.h"
#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"
#include "ui/SplitView.h"
#include "ui/TabGroups.h"

#include <QScrollBar>
#include <QTabWidget>

#include <algorithm>

namespace zv {
namespace {

constexpr int kGroups = TTabGroups::kCount;

// A new view starts where `like` stands.
void StartLike(TEditorWidget& view, const TEditorWidget& like) {
    view.Memo().SetTextCursor(like.Memo().FCurX, like.Memo().FCurY);
    view.SetTopRow(like.TopRow());
}

} // namespace

QTabWidget* TMainWindow::TabGroup(int group) const {
    return FGroups->Group(group);
}

TDocument* TMainWindow::DocumentOf(const TEditorWidget& editor) const {
    const auto found = FDocViews.find(editor.TextDocument().get());
    return found == FDocViews.end() ? nullptr : found->second.Doc;
}

TEditorWidget* TMainWindow::MainView(const TDocument& doc) const {
    const auto found = FDocViews.find(doc.Text.get());
    return found == FDocViews.end() ? nullptr : found->second.Main.data();
}

std::vector<std::pair<int, QWidget*>> TMainWindow::PagesOf(const TDocument& doc) const {
    std::vector<std::pair<int, QWidget*>> pages;
    for (int group = 0; group < kGroups; ++group) {
        const QTabWidget& tabs = *TabGroup(group);
        for (int i = 0; i < tabs.count(); ++i) {
            const std::vector<TEditorWidget*> editors = EditorsOfPage(tabs.widget(i));
            if (!editors.empty() && editors.front()->TextDocument() == doc.Text)
                pages.emplace_back(group, tabs.widget(i));
        }
    }
    return pages;
}

bool TMainWindow::IsClonePage(QWidget* page) const {
    const std::vector<TEditorWidget*> editors = EditorsOfPage(page);
    const TDocument* doc = editors.empty() ? nullptr : DocumentOf(*editors.front());
    return doc && std::find(editors.begin(), editors.end(), MainView(*doc)) == editors.end();
}

TEditorWidget* TMainWindow::GetMemoControl(bool activeInGroup) const {
    if (!activeInGroup && FActiveMemo)
        return FActiveMemo;
    if (const QTabWidget* tabs = TabGroup(FHelper.FActiveDocumentView))
        if (const auto editors = EditorsOfPage(tabs->currentWidget()); !editors.empty())
            return editors.front();
    if (activeInGroup)
        return nullptr;
    const TDocument* doc = FHelper.ActiveDocument();
    return doc ? MainView(*doc) : nullptr;
}

int TMainWindow::FindDocMemo(const std::string& path, int& group) const {
    group = -1;
    const int index = FHelper.FindDocMemo(path);
    TEditorWidget* main = index >= 0 ? MainView(*FHelper.Documents()[index]) : nullptr;
    if (!main)
        return -1;
    QWidget* page = PageOfEditor(*main);
    group = FGroups->GroupOf(page);
    return group < 0 ? -1 : TabGroup(group)->indexOf(page);
}

void TMainWindow::MemoFocused(TEditorWidget& editor) {
    // The window's own tab moves place the focus themselves; the same view taking the
    // focus back (after a dialog) leaves the active group as the user chose it.
    if (FSyncingTabs || editor.window() != this || FActiveMemo == &editor)
        return;
    TDocument* doc = DocumentOf(editor);
    const int group = FGroups->GroupOf(PageOfEditor(editor));
    if (!doc || group < 0)
        return;
    FActiveMemo = &editor;
    FHelper.FActiveDocumentView = group;
    if (FHelper.ActiveDocument() != doc)
        FHelper.Activate(FHelper.DocumentIndex(*doc));
    UpdateTitle();
    UpdateStatus();
}

void TMainWindow::LeaveGroup(int group) {
    if (group <= 0 || TabGroup(group)->count() > 0)
        return;
    FGroups->SetShown(group, false);
    if (FHelper.FActiveDocumentView == group)
        FHelper.FActiveDocumentView =
            FActiveMemo ? std::max(FGroups->GroupOf(PageOfEditor(*FActiveMemo)), 0) : 0;
}

void TMainWindow::CloseClonePage(QWidget* page) {
    const int group = FGroups->GroupOf(page);
    FSyncingTabs = true;
    TabGroup(group)->removeTab(TabGroup(group)->indexOf(page));
    FSyncingTabs = false;
    delete page;
    LeaveGroup(group);
    if (FActiveMemo)
        FActiveMemo->setFocus();
    else if (TDocument* doc = FHelper.ActiveDocument())
        DocumentActivated(*doc); // the clone was in charge: its document's own tab takes over
}

void TMainWindow::MovePage(QWidget* page, int to) {
    const int from = FGroups->GroupOf(page);
    QTabWidget& source = *TabGroup(from);
    QTabWidget& target = *TabGroup(to);
    const int index = source.indexOf(page);
    const QString caption = source.tabText(index), tip = source.tabToolTip(index);
    FGroups->SetShown(to, true);
    FSyncingTabs = true;
    source.removeTab(index);
    const int at = target.addTab(page, caption);
    target.setTabToolTip(at, tip);
    target.setCurrentIndex(at);
    FSyncingTabs = false;
    // The helper keeps the group of a document, not of its other views.
    if (!IsClonePage(page))
        if (TDocument* doc = DocumentOf(*EditorsOfPage(page).front()))
            FHelper.MoveToGroup(*doc, to);
}

bool TMainWindow::MoveTabToGroup(int step) {
    TEditorWidget* editor = ActiveEditor();
    if (!editor)
        return false;
    QWidget* page = PageOfEditor(*editor);
    const int from = FGroups->GroupOf(page), to = from + step;
    if (from < 0 || to < 0 || to >= kGroups || to == from)
        return false;
    MovePage(page, to);
    LeaveGroup(from);
    FActiveMemo = editor;
    FHelper.FActiveDocumentView = to;
    editor->setFocus();
    UpdateStatus();
    return true;
}

bool TMainWindow::NewTabGroup() {
    for (int group = 1; group < kGroups; ++group)
        if (!FGroups->IsShown(group)) {
            ShowTabGroup(group, true);
            return true;
        }
    return false;
}

void TMainWindow::ShowTabGroup(int group, bool shown) {
    if (group <= 0 || group >= kGroups)
        return;
    if (shown) {
        FGroups->SetShown(group, true);
        FHelper.FActiveDocumentView = group; // the next opened file goes there
        return;
    }
    QTabWidget& tabs = *TabGroup(group);
    while (tabs.count() > 0) {
        QWidget* page = tabs.widget(0);
        if (IsClonePage(page))
            CloseClonePage(page);
        else
            MovePage(page, 0);
    }
    FGroups->SetShown(group, false);
    FHelper.FActiveDocumentView = 0;
    if (FActiveMemo) {
        FHelper.FActiveDocumentView = std::max(FGroups->GroupOf(PageOfEditor(*FActiveMemo)), 0);
        FActiveMemo->setFocus();
    }
}

bool TMainWindow::SplitCurrentMemo(TSplitKind kind) {
    TEditorWidget* editor = ActiveEditor();
    TDocument* doc = editor ? DocumentOf(*editor) : nullptr;
    if (!doc || (doc->FDeferred && !FHelper.LoadDeferred(*doc)))
        return false;
    QWidget* page = PageOfEditor(*editor);
    const int group = FGroups->GroupOf(page);
    TEditorWidget* view = nullptr;
    if (kind == TSplitKind::Left || kind == TSplitKind::Right) {
        const int to = group + (kind == TSplitKind::Left ? -1 : 1);
        if (group < 0 || to < 0 || to >= kGroups)
            return false;
        view = MakeView(*doc);
        FGroups->SetShown(to, true);
        QTabWidget& target = *TabGroup(to);
        FSyncingTabs = true;
        const int at =
            target.addTab(view, doc->Modified() ? QStringLiteral("--*") : QStringLiteral("--"));
        target.setTabToolTip(at, QString::fromStdString(doc->FFilePath));
        target.setCurrentIndex(at);
        FSyncingTabs = false;
        FHelper.FActiveDocumentView = to;
    } else {
        const Qt::Orientation orientation =
            kind == TSplitKind::Horizontal ? Qt::Vertical : Qt::Horizontal;
        if (auto* split = qobject_cast<TSplitPage*>(page)) { // one split per tab: it turns
            split->setOrientation(orientation);
            return true;
        }
        QTabWidget& tabs = *TabGroup(group);
        const int index = tabs.indexOf(page);
        const QString caption = tabs.tabText(index), tip = tabs.tabToolTip(index);
        view = MakeView(*doc);
        FSyncingTabs = true;
        tabs.removeTab(index);
        auto* split = new TSplitPage(orientation, *editor, *view);
        tabs.insertTab(index, split, caption);
        tabs.setTabToolTip(index, tip);
        tabs.setCurrentIndex(index);
        FSyncingTabs = false;
    }
    view->FollowDocumentIndent();
    StartLike(*view, *editor);
    FActiveMemo = view;
    view->setFocus();
    return true;
}

bool TMainWindow::UnsplitCurrentMemo() {
    TEditorWidget* editor = ActiveEditor();
    auto* split = editor ? qobject_cast<TSplitPage*>(PageOfEditor(*editor)) : nullptr;
    if (!split)
        return false;
    TEditorWidget* first = split->First();
    QTabWidget& tabs = *TabGroup(FGroups->GroupOf(split));
    const int index = tabs.indexOf(split);
    const QString caption = tabs.tabText(index), tip = tabs.tabToolTip(index);
    FSyncingTabs = true;
    tabs.removeTab(index);
    tabs.insertTab(index, first, caption); // out of the split, which then goes
    tabs.setTabToolTip(index, tip);
    tabs.setCurrentIndex(index);
    FSyncingTabs = false;
    delete split;
    FActiveMemo = first;
    first->setFocus();
    return true;
}

void TMainWindow::LoadTabGroupLayout() {
    const TCustomizeOptions& options = FHelper.Customize();
    if (!options.SaveTabLayout)
        return;
    for (int group = 1; group < kGroups; ++group)
        FGroups->SetShown(group, options.TabGroup[static_cast<size_t>(group - 1)]);
}

void TMainWindow::SaveTabGroupLayout() const {
    if (!FHelper.Customize().SaveTabLayout)
        return;
    for (int group = 1; group < kGroups; ++group)
        SettingsIni().WriteBool("Window", "TabGroup" + std::to_string(group),
                                FGroups->IsShown(group));
}

void TMainWindow::CreateGroupActions() {
    TActionList& list = FActions->List();
    const auto add = [&list](const TActionDef& def, std::function<void()> run,
                             std::function<bool()> update) -> TAction& {
        return list.Add(MakeAction(def, std::move(run), std::move(update)));
    };
    const auto activeGroup = [this] {
        TEditorWidget* editor = ActiveEditor();
        return editor ? FGroups->GroupOf(PageOfEditor(*editor)) : -1;
    };
    const auto hasEditor = [this] { return ActiveEditor() != nullptr; };
    const auto split = [this](TSplitKind kind) { return [this, kind] { SplitCurrentMemo(kind); }; };
    add({"SplitWindowHorzAction", "View", "300", "Split &horizontally"},
        split(TSplitKind::Horizontal), hasEditor);
    add({"SplitWindowVertAction", "View", "301", "Split &vertically"}, split(TSplitKind::Vertical),
        hasEditor);
    add({"SplitWindowLeftAction", "View", "302", "Clone to the &left group"},
        split(TSplitKind::Left), [activeGroup] { return activeGroup() > 0; });
    add({"SplitWindowRightAction", "View", "303", "Clone to the &right group"},
        split(TSplitKind::Right), [activeGroup] {
            const int group = activeGroup();
            return group >= 0 && group + 1 < kGroups;
        });
    add(
        {"UnsplitWindowAction", "View", "304", "&Unsplit"}, [this] { UnsplitCurrentMemo(); },
        [this] {
            const TEditorWidget* editor = ActiveEditor();
            return editor && qobject_cast<TSplitPage*>(editor->parentWidget()) != nullptr;
        });
    add(
        {"NewTabGroupAction", "View", "305", "New tab &group"}, [this] { NewTabGroup(); },
        [this] {
            for (int group = 1; group < kGroups; ++group)
                if (!FGroups->IsShown(group))
                    return true;
            return false;
        });
    add(
        {"MoveTabToNextGroupAction", "View", "306", "Move tab to the ne&xt group"},
        [this] { MoveTabToGroup(1); },
        [activeGroup] {
            const int group = activeGroup();
            return group >= 0 && group + 1 < kGroups;
        });
    add(
        {"MoveTabToPreviousGroupAction", "View", "307", "Move tab to the &previous group"},
        [this] { MoveTabToGroup(-1); }, [activeGroup] { return activeGroup() > 0; });
    static const char* const kToggleNames[] = {"ToggleTabGroup1Action", "ToggleTabGroup2Action",
                                               "ToggleTabGroup3Action", "ToggleTabGroup4Action",
                                               "ToggleTabGroup5Action"};
    static const char* const kToggleKeys[] = {"308", "309", "310", "311", "312"};
    static const char* const kToggleCaptions[] = {"Tab group &1", "Tab group &2", "Tab group &3",
                                                  "Tab group &4", "Tab group &5"};
    for (int group = 1; group < kGroups; ++group) {
        const auto i = static_cast<size_t>(group - 1);
        TAction& toggle = add({kToggleNames[i], "View", kToggleKeys[i], kToggleCaptions[i]},
                              [this, group] { ShowTabGroup(group, !FGroups->IsShown(group)); }, {});
        toggle.Checkable = true;
        toggle.OnChecked = [this, group] { return FGroups->IsShown(group); };
    }
}

} // namespace zv
