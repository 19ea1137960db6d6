// The window's side of the action model: one QAction per action of the list, for menus,
// the toolbar, context menus and shortcuts; captions from the language object; the update
// pass when the program is idle and before each key is matched to a shortcut.
#pragma once

#include "shell/ActionList.h"

#include <QObject>

#include <string>
#include <string_view>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace zv {

class TWindowActions : public QObject {
    Q_OBJECT
public:
    // The QActions are children of `window`, and their shortcuts work in all of it.
    explicit TWindowActions(QWidget& window);
    ~TWindowActions() override;

    TActionList& List() { return FList; }
    const TActionList& List() const { return FList; }
    // Makes the QActions of the actions added since the last call, with their captions,
    // shortcuts and states.
    void Bind();
    // The QAction of an action, or null for a name that is not in the list.
    QAction* Get(std::string_view name) const;

    // A top menu of the bar titled by "Menu"/`key` (the built-in `caption` when the language
    // file lacks it); `objectName` names it (e.g. "FileMenu").
    QMenu* AddMenu(QMenuBar& bar, const char* key, const char* caption, const char* objectName);
    // A submenu titled by "Menu"/`key` likewise.
    QMenu* AddSubMenu(QMenu& menu, const char* key, const char* caption, const char* objectName);
    // Adds the actions named, in order, to a menu or toolbar; "-" is a separator. Names of
    // actions that do not exist are passed over.
    void AddTo(QWidget& target, const std::vector<const char*>& names) const;
    // Hides each top menu of the bar with no visible item (its commands do not exist yet).
    static void HideEmptyMenus(QMenuBar& bar);

    // Gives each action and menu its text from the language object (SetActionsLanguage).
    void SetActionsLanguage();
    // Puts the list's shortcuts on the QActions; a shortcut held by an earlier action in the
    // list is not bound again (the first wins).
    void ApplyShortCuts();
    // The update pass over the list; the QActions take the new states.
    void UpdateActions();

protected:
    // Key presses run the update pass before shortcuts are matched, and tell the list that
    // a key is held; key releases that it is not.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct TMenuText {
        QMenu* Menu;
        const char* Key;
        const char* Caption;
    };
    void SyncState(const TAction& action, QAction& qaction) const;
    // Titles the menu from the language object and keeps it for SetActionsLanguage.
    QMenu* Titled(QMenu* menu, const char* key, const char* caption, const char* objectName);

    QWidget& FWindow;
    TActionList FList;
    // Parallel to FList.Actions() up to its bound size; the built-in captions likewise.
    std::vector<QAction*> FQActions;
    std::vector<std::string> FBuiltinCaptions;
    std::vector<TMenuText> FMenus;
    bool FUpdating = false; // guards the pass against events it causes
};

} // namespace zv
