// Shortcut texts and the key map file.
#include "shell/KeyMap.h"

#include "common/Trace.h"
#include "common/Utf.h"
#include "shell/ZvIniFiles.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace zv {
namespace {

constexpr std::string_view kSection = "DEFAULT";
constexpr std::string_view kNumPrefix = "NUM ";

struct TKeyName {
    Qt::Key Key;
    std::string_view Name;
};

// Keys whose name is not their character. Printable ASCII keys are named by their character
// (letters in upper case), except "_", which the file uses for a blank.
constexpr std::array<TKeyName, 20> kNamedKeys = {{
    {Qt::Key_Backspace, "Backspace"},
    {Qt::Key_Tab, "Tab"},
    {Qt::Key_Return, "Enter"},
    {Qt::Key_Escape, "Esc"},
    {Qt::Key_Space, "Space"},
    {Qt::Key_PageUp, "PgUp"},
    {Qt::Key_PageDown, "PgDn"},
    {Qt::Key_End, "End"},
    {Qt::Key_Home, "Home"},
    {Qt::Key_Left, "Left"},
    {Qt::Key_Up, "Up"},
    {Qt::Key_Right, "Right"},
    {Qt::Key_Down, "Down"},
    {Qt::Key_Insert, "Ins"},
    {Qt::Key_Delete, "Del"},
    {Qt::Key_Pause, "Pause"},
    {Qt::Key_Print, "Print"},
    {Qt::Key_Menu, "Menu"},
    {Qt::Key_Underscore, "Underscore"},
    {Qt::Key_Enter, "Enter"},
}};

// The keys of the numeric pad that carry a "NUM " name.
bool IsNumPadKey(Qt::Key key) {
    return (key >= Qt::Key_0 && key <= Qt::Key_9) || key == Qt::Key_Asterisk ||
           key == Qt::Key_Plus || key == Qt::Key_Minus || key == Qt::Key_Slash ||
           key == Qt::Key_Period || key == Qt::Key_Enter;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::toupper(static_cast<unsigned char>(x)) ==
                      std::toupper(static_cast<unsigned char>(y));
           });
}

bool StartsNoCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && EqualNoCase(text.substr(0, prefix.size()), prefix);
}

std::string KeyName(Qt::Key key) {
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return "F" + std::to_string(key - Qt::Key_F1 + 1);
    for (const TKeyName& named : kNamedKeys)
        if (named.Key == key)
            return std::string(named.Name);
    if (key > 0x20 && key < 0x7F)
        return std::string(1, static_cast<char>(key));
    return {};
}

Qt::Key KeyOfName(std::string_view name) {
    if (name.size() == 1 && name[0] > 0x20 && name[0] < 0x7F && name[0] != '_')
        return static_cast<Qt::Key>(std::toupper(static_cast<unsigned char>(name[0])));
    for (const TKeyName& named : kNamedKeys)
        if (EqualNoCase(named.Name, name))
            return named.Key == Qt::Key_Enter ? Qt::Key_Return : named.Key;
    if (name.size() >= 2 && (name[0] == 'F' || name[0] == 'f')) {
        int number = 0;
        for (char c : name.substr(1)) {
            if (c < '0' || c > '9')
                return Qt::Key_unknown;
            number = number * 10 + (c - '0');
        }
        if (number >= 1 && number <= 35)
            return static_cast<Qt::Key>(Qt::Key_F1 + number - 1);
    }
    return Qt::Key_unknown;
}

std::string BlanksTo(std::string text, char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

// "Shift+Alt+Up" and "Shift+Alt+Down" were bindings of the find commands before they moved.
TShortCut Migrated(TShortCut shortCut) {
    const Qt::KeyboardModifiers shiftAlt = Qt::ShiftModifier | Qt::AltModifier;
    if (shortCut.keyboardModifiers() == shiftAlt && shortCut.key() == Qt::Key_Up)
        return TShortCut(shiftAlt, Qt::Key_F3);
    if (shortCut.keyboardModifiers() == shiftAlt && shortCut.key() == Qt::Key_Down)
        return TShortCut(Qt::AltModifier, Qt::Key_F3);
    return shortCut;
}

} // namespace

std::string ShortCutToText(TShortCut shortCut) {
    if (!HasShortCut(shortCut))
        return {};
    const Qt::KeyboardModifiers mods = shortCut.keyboardModifiers();
    std::string name = KeyName(shortCut.key());
    if (name.empty())
        return {};
    if ((mods & Qt::KeypadModifier) && IsNumPadKey(shortCut.key()))
        name = std::string(kNumPrefix) + (shortCut.key() == Qt::Key_Enter ? "Enter" : name);
    std::string text;
    if (mods & Qt::ShiftModifier)
        text += "Shift+";
    if (mods & Qt::ControlModifier)
        text += "Ctrl+";
    if (mods & Qt::AltModifier)
        text += "Alt+";
    return text + name;
}

TShortCut TextToShortCut(std::string_view text) {
    Qt::KeyboardModifiers mods;
    for (bool more = true; more;) {
        more = false;
        for (const auto& [prefix, modifier] :
             {std::pair<std::string_view, Qt::KeyboardModifier>{"Shift+", Qt::ShiftModifier},
              {"Ctrl+", Qt::ControlModifier},
              {"Alt+", Qt::AltModifier}}) {
            // "Ctrl++" is Ctrl with the plus key: a prefix never takes the last character.
            if (text.size() > prefix.size() && StartsNoCase(text, prefix)) {
                mods |= modifier;
                text.remove_prefix(prefix.size());
                more = true;
            }
        }
    }
    bool numPad = false;
    if (text.size() > kNumPrefix.size() && StartsNoCase(text, kNumPrefix)) {
        numPad = true;
        text.remove_prefix(kNumPrefix.size());
    }
    Qt::Key key = KeyOfName(text);
    if (key == Qt::Key_unknown)
        return {};
    if (numPad) {
        if (key == Qt::Key_Return)
            key = Qt::Key_Enter;
        if (!IsNumPadKey(key))
            return {};
        mods |= Qt::KeypadModifier;
    }
    return TShortCut(mods, key);
}

std::pair<std::string, std::string> SplitKeyMapValue(std::string_view value) {
    size_t blank = value.find(' ');
    // A real blank inside a numeric pad name: "NUM" before it, the pad key's character
    // (between "(" and "G") behind it.
    if (blank != std::string_view::npos && blank >= 3 && blank + 1 < value.size() &&
        EqualNoCase(value.substr(blank - 3, 3), "NUM") && value[blank + 1] >= '(' &&
        value[blank + 1] <= 'G')
        blank = value.find(' ', blank + 1);
    const std::string_view first = value.substr(0, blank);
    const std::string_view second =
        blank == std::string_view::npos ? std::string_view() : value.substr(blank + 1);
    return {BlanksTo(std::string(first), '_', ' '), BlanksTo(std::string(second), '_', ' ')};
}

std::string KeyMapValue(const TAction& action) {
    std::string value = BlanksTo(ShortCutToText(action.ShortCut), ' ', '_');
    if (!action.SecondaryShortCuts.empty()) {
        const std::string second =
            BlanksTo(ShortCutToText(action.SecondaryShortCuts.front()), ' ', '_');
        value = value.empty() ? second : value + ' ' + second;
    }
    return value;
}

void SaveShortcuts(const TActionList& actions, TCustomIniFile& file) {
    file.EraseSection(kSection);
    for (const auto& action : actions.Actions())
        if (action->Tag >= 0)
            file.WriteString(kSection, action->Name, std::string_view(KeyMapValue(*action)));
}

void LoadShortcuts(TActionList& actions, const TCustomIniFile& file) {
    for (const std::u16string& line : file.ReadSectionValues(kSection)) {
        const std::string text = Utf16ToUtf8(line);
        const size_t equal = text.find('=');
        if (equal == std::string::npos)
            continue;
        TAction* action = actions.Find(text.substr(0, equal));
        if (!action || action->Tag < 0)
            continue; // an action that no longer exists
        const auto [first, second] = SplitKeyMapValue(std::string_view(text).substr(equal + 1));
        action->ShortCut = Migrated(TextToShortCut(first));
        action->SecondaryShortCuts.clear();
        if (const TShortCut extra = Migrated(TextToShortCut(second)); HasShortCut(extra))
            action->SecondaryShortCuts.push_back(extra);
    }
    if (TAction* zoom = actions.Find("ZoomResetAction"); zoom && !HasShortCut(zoom->ShortCut))
        zoom->ShortCut = TextToShortCut("Ctrl+NUM *");
}

std::filesystem::path KeyMapPath(const std::filesystem::path& root) {
    return root / "Data" / "Zevrit.kbd";
}

bool SaveKeyMapFile(const TActionList& actions, const std::filesystem::path& file,
                    std::string& error) {
    TMemIniFileW out(file, TIniEncoding::Utf8);
    out.Clear(); // written in full: nothing of the old file stays
    SaveShortcuts(actions, out);
    return out.UpdateFile(error);
}

void LoadKeyMapFile(TActionList& actions, const std::filesystem::path& file) {
    std::error_code ec;
    if (!std::filesystem::exists(file, ec)) {
        std::string error;
        if (!SaveKeyMapFile(actions, file, error))
            Trace("LoadKeyMapFile() - not written: " + error);
    }
    LoadShortcuts(actions, TMemIniFileW(file, TIniEncoding::Utf8));
    if (actions.FOnShortCutsChanged)
        actions.FOnShortCutsChanged();
}

} // namespace zv
