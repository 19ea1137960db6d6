// The action list: running an action through the list-wide hook, and the update pass.
#include "shell/ActionList.h"

#include "common/ActionTrace.h"
#include "common/Trace.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace zv {
namespace {

// These never become the action RunLastAction repeats. The menu search is one of them: it
// is how RunLastAction is reached without a key, and would otherwise only reopen itself.
bool NeverLast(std::string_view name) {
    static constexpr std::array<std::string_view, 6> kNames = {
        "IncrementalSearchAction", "RunLastAction", "CheckMenusAction", "UndoAction", "RedoAction",
        "FindCommandAction"};
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

} // namespace

TAction& TActionList::Add(TAction action) {
    if (Find(action.Name))
        throw std::logic_error("action added twice: " + action.Name);
    FActions.push_back(std::make_unique<TAction>(std::move(action)));
    return *FActions.back();
}

TAction* TActionList::Find(std::string_view name) const {
    for (const auto& action : FActions)
        if (action->Name == name)
            return action.get();
    return nullptr;
}

bool TActionList::Execute(std::string_view name) {
    TAction* action = Find(name);
    return action && Execute(*action);
}

bool TActionList::Execute(TAction& action) {
    Update(action);
    if (!action.Enabled)
        return false;
    bool handled = false;
    ActionListExecute(action, handled);
    if (!handled && action.OnExecute)
        action.OnExecute();
    return true;
}

void TActionList::ActionListExecute(TAction& action, bool& handled) {
    Trace("ActionListExecute() - " + action.Name);
    ActionTraceListAdd("ActionListExecute", action.Name);
    if (action.Name != "FindCommandAction" &&
        std::find(FActionHistoryList.begin(), FActionHistoryList.end(), action.Name) ==
            FActionHistoryList.end())
        FActionHistoryList.push_front(action.Name);
    if (!NeverLast(action.Name) && action.Kind == TActionKind::Plain && action.OnExecute)
        FLastAction = &action;
    if (action.Name == "CloseAction" && FKeyDown) {
        if (!FCloseActionKeyDown) {
            FCloseActionKeyDown = true;
            FCloseActionKeyCount = 0;
            return; // the first firing closes the one document
        }
        // Auto-repeat of the held key closes nothing more until the count is reached.
        handled = true;
        if (++FCloseActionKeyCount == kCloseGroupCount && FOnCloseAllInGroup)
            FOnCloseAllInGroup();
    }
}

void TActionList::ActionListUpdate(TAction&, bool& handled) const {
    // No update work while another program has the focus: the states stay as they are.
    handled = !FMainformActive;
}

bool TActionList::Update(TAction& action) {
    bool handled = false;
    ActionListUpdate(action, handled);
    if (handled)
        return false;
    const bool enabled = action.OnUpdate ? action.OnUpdate() : action.Enabled;
    const bool checked = action.OnChecked ? action.OnChecked() : action.Checked;
    const bool changed = enabled != action.Enabled || checked != action.Checked;
    action.Enabled = enabled;
    action.Checked = checked;
    return changed;
}

int TActionList::UpdateAll() {
    int changed = 0;
    for (const auto& action : FActions)
        changed += Update(*action) ? 1 : 0;
    return changed;
}

bool TActionList::RunLastAction() {
    return FLastAction && Execute(*FLastAction);
}

} // namespace zv
