// What a window command is before it runs: the description the window's action lists are
// written in, and the action it makes.
#pragma once

#include "shell/ActionList.h"
#include "shell/KeyMap.h"

#include <functional>
#include <vector>

namespace zv {

// An action's name, category, caption ("Actions"/key), built-in shortcut texts (the first is
// the shortcut, the rest secondary) and toolbar icon.
struct TActionDef {
    const char* Name;
    const char* Category;
    const char* Key;
    const char* Caption;
    std::vector<const char*> Keys = {};
    const char* Icon = nullptr;
};

// The action `def` describes, running `run` when `update` (empty: always) allows.
inline TAction MakeAction(const TActionDef& def, std::function<void()> run,
                          std::function<bool()> update = {}) {
    TAction action;
    action.Name = def.Name;
    action.Category = def.Category;
    action.CaptionSection = "Actions";
    action.CaptionKey = def.Key;
    action.Caption = def.Caption;
    for (size_t i = 0; i < def.Keys.size(); ++i) {
        const TShortCut key = TextToShortCut(def.Keys[i]);
        if (i == 0)
            action.ShortCut = key;
        else
            action.SecondaryShortCuts.push_back(key);
    }
    action.OnExecute = std::move(run);
    action.OnUpdate = std::move(update);
    return action;
}

} // namespace zv
