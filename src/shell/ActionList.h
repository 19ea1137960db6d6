// The action model: every command of the program is a named action with a caption, a
// category, shortcuts, an enabled state and handlers. The list runs each action through one
// hook (trace, history, the last action, the close key held down) and keeps the update pass
// off while the window is inactive. No widgets: the window binds its menus and keys to it.
#pragma once

#include <QKeyCombination>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// A shortcut: one key with its modifiers (Shift, Ctrl, Alt; the keypad modifier marks the
// numeric pad's keys). A default-constructed one is "no shortcut".
using TShortCut = QKeyCombination;

inline bool HasShortCut(TShortCut shortCut) {
    return shortCut.key() != Qt::Key_unknown && shortCut.key() != Qt::Key(0);
}

// How the list treats an action's run: the standard editing kinds never become the last
// action that RunLastAction repeats.
enum class TActionKind { Plain, StandardEdit };

struct TAction {
    std::string Name;     // unique; the key in the key map
    std::string Category; // "File", "Edit", "Text Cursor", ...
    std::string Caption;  // shown text, "&" marks the accelerator
    std::string Hint;
    // The language file's text for Caption (section, key); empty key: Caption stays.
    std::string CaptionSection, CaptionKey;
    TShortCut ShortCut;
    std::vector<TShortCut> SecondaryShortCuts;
    int Tag = 0; // negative: kept out of the key map
    bool Enabled = true;
    bool Checked = false;
    bool Checkable = false;
    TActionKind Kind = TActionKind::Plain;
    std::function<void()> OnExecute;
    // Gives the state Enabled takes in the update pass (and Checked through SetChecked).
    std::function<bool()> OnUpdate;
    std::function<bool()> OnChecked; // null: Checked stays as set
};

class TActionList {
public:
    // Adds an action (its name must be new) and returns it; actions keep their address.
    TAction& Add(TAction action);
    // The action of that name, or null.
    TAction* Find(std::string_view name) const;
    // In list order.
    const std::vector<std::unique_ptr<TAction>>& Actions() const { return FActions; }

    // Runs the action as a key, a menu item or the palette does: its update first (when the
    // window is active), nothing when it is then disabled; then the list-wide hook, then its
    // own handler unless the hook handled it. True when something ran.
    bool Execute(TAction& action);
    bool Execute(std::string_view name);
    // The list-wide hook before an action's own handler (see the file's header).
    void ActionListExecute(TAction& action, bool& handled);
    // The list-wide hook of the update pass: handled (no update) while the window is inactive.
    void ActionListUpdate(TAction& action, bool& handled) const;
    // One update pass over every action; returns how many changed their enabled or checked
    // state.
    int UpdateAll();
    // Updates one action; true when its enabled or checked state changed.
    bool Update(TAction& action);

    // Runs FLastAction again; false when there is none.
    bool RunLastAction();
    // A key went down (auto-repeats too) or up (not an auto-repeat): the close key's
    // firings count only while a key is held, so closing from a menu never counts.
    void KeyPressed() { FKeyDown = true; }
    void KeyReleased() {
        FKeyDown = false;
        FCloseActionKeyDown = false;
    }

    // Names of the actions run so far, newest first, each once (the palette's recent list).
    const std::deque<std::string>& History() const { return FActionHistoryList; }
    const TAction* LastAction() const { return FLastAction; }

    // The main window is the active window (the update pass runs only then).
    bool FMainformActive = true;
    // Closes every document of the active group (the close key held down).
    std::function<void()> FOnCloseAllInGroup;
    // Told after each change of shortcuts (key map loaded, key dialog).
    std::function<void()> FOnShortCutsChanged;

    // The firing of the close key at which the whole group closes.
    static constexpr int kCloseGroupCount = 4;

private:
    std::vector<std::unique_ptr<TAction>> FActions;
    std::deque<std::string> FActionHistoryList;
    TAction* FLastAction = nullptr;
    bool FKeyDown = false;
    bool FCloseActionKeyDown = false; // the close key fired and was not released since
    int FCloseActionKeyCount = 0;     // its further firings while held
};

} // namespace zv
