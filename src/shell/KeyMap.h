// The key map: shortcut texts ("Shift+Ctrl+Alt+" and a key name, "NUM " names for the
// numeric pad) and the file "Data/Zevrit.kbd" under the data root, one section "DEFAULT"
// with a line "ActionName=value" per action that takes part (Tag not negative).
#pragma once

#include "shell/ActionList.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace zv {

class TCustomIniFile;

// The text of a shortcut, modifiers in the order Shift, Ctrl, Alt ("Shift+Alt+F3",
// "Ctrl+NUM *"); empty for none or a key without a name here.
std::string ShortCutToText(TShortCut shortCut);
// The shortcut a text names; modifiers in any order and any case. No shortcut for an empty
// text or an unknown key name.
TShortCut TextToShortCut(std::string_view text);

// A value of the file in its two shortcut texts, blanks restored ("_" in the file). The
// split is at the first blank, unless that blank is inside a numeric pad key name written
// with a real blank ("Ctrl+NUM * Alt+X"): then at the next one.
std::pair<std::string, std::string> SplitKeyMapValue(std::string_view value);
// The value written for an action: the shortcut, a blank and the first secondary shortcut,
// each with blanks written as "_"; a secondary alone when there is no shortcut.
std::string KeyMapValue(const TAction& action);

// Writes the section anew from the actions, in list order.
void SaveShortcuts(const TActionList& actions, TCustomIniFile& file);
// Sets the actions the section names (unknown names and negative tags are passed over;
// actions it does not name keep theirs). "Shift+Alt+Up" is read as "Shift+Alt+F3" and
// "Shift+Alt+Down" as "Alt+F3"; ZoomResetAction without a shortcut gets "Ctrl+NUM *".
void LoadShortcuts(TActionList& actions, const TCustomIniFile& file);

// The key map file of a data root.
std::filesystem::path KeyMapPath(const std::filesystem::path& root);
// Writes the file (UTF-8) atomically; false with the reason in `error`.
bool SaveKeyMapFile(const TActionList& actions, const std::filesystem::path& file,
                    std::string& error);
// Reads the file into the actions; a missing file is first written from the built-in
// shortcuts. Tells FOnShortCutsChanged.
void LoadKeyMapFile(TActionList& actions, const std::filesystem::path& file);

} // namespace zv
