// The key map file: any key map written and read back writes the same bytes and gives the
// same shortcuts; the reading rules for old and hand-written files.
#include "shell/KeyMap.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <random>

namespace {

namespace fs = std::filesystem;

// Keys the file can name: letters, digits, function keys, named keys, punctuation, and
// the numeric pad.
std::vector<zv::TShortCut> KeyPool() {
    std::vector<Qt::Key> keys;
    for (int k = Qt::Key_A; k <= Qt::Key_Z; ++k)
        keys.push_back(Qt::Key(k));
    for (int k = Qt::Key_0; k <= Qt::Key_9; ++k)
        keys.push_back(Qt::Key(k));
    for (int k = Qt::Key_F1; k <= Qt::Key_F24; ++k)
        keys.push_back(Qt::Key(k));
    for (Qt::Key k : {Qt::Key_Backspace, Qt::Key_Tab,       Qt::Key_Return,      Qt::Key_Escape,
                      Qt::Key_Space,     Qt::Key_PageUp,    Qt::Key_PageDown,    Qt::Key_End,
                      Qt::Key_Home,      Qt::Key_Left,      Qt::Key_Up,          Qt::Key_Right,
                      Qt::Key_Down,      Qt::Key_Insert,    Qt::Key_Delete,      Qt::Key_Plus,
                      Qt::Key_Minus,     Qt::Key_Equal,     Qt::Key_Comma,       Qt::Key_Period,
                      Qt::Key_Slash,     Qt::Key_Semicolon, Qt::Key_BracketLeft, Qt::Key_Backslash,
                      Qt::Key_Underscore})
        keys.push_back(k);
    std::vector<zv::TShortCut> pool;
    for (Qt::Key k : keys)
        pool.emplace_back(Qt::NoModifier, k);
    for (Qt::Key k : {Qt::Key_0, Qt::Key_5, Qt::Key_9, Qt::Key_Asterisk, Qt::Key_Plus,
                      Qt::Key_Minus, Qt::Key_Slash, Qt::Key_Period, Qt::Key_Enter})
        pool.emplace_back(Qt::KeypadModifier, k);
    return pool;
}

zv::TShortCut RandomKey(std::mt19937& random, const std::vector<zv::TShortCut>& pool) {
    for (;;) {
        const zv::TShortCut base = pool[random() % pool.size()];
        Qt::KeyboardModifiers mods = base.keyboardModifiers();
        const unsigned bits = random() % 8;
        if (bits & 1)
            mods |= Qt::ShiftModifier;
        if (bits & 2)
            mods |= Qt::ControlModifier;
        if (bits & 4)
            mods |= Qt::AltModifier;
        const zv::TShortCut key(mods, base.key());
        // Old bindings that reading moves elsewhere cannot come back as written.
        const auto shiftAlt = Qt::ShiftModifier | Qt::AltModifier;
        if (mods == shiftAlt && (base.key() == Qt::Key_Up || base.key() == Qt::Key_Down))
            continue;
        return key;
    }
}

zv::TActionList Actions(int count) {
    zv::TActionList list;
    for (int i = 0; i < count; ++i) {
        zv::TAction action;
        action.Name = i == 0 ? "ZoomResetAction" : "Action" + std::to_string(i);
        action.Tag = i % 7 == 3 ? -1 : 0; // some stay out of the file
        list.Add(std::move(action));
    }
    return list;
}

TEST(KeyMapTest, AnyKeyMapWrittenAndReadBackGivesTheSameBytesAndShortcuts) {
    zvtest::TTempDir dir("zv-kbd");
    const auto pool = KeyPool();
    std::mt19937 random(20240613);
    for (int round = 0; round < 60; ++round) {
        zv::TActionList written = Actions(40);
        for (const auto& action : written.Actions()) {
            const unsigned shape = random() % 4; // none, key, key + secondary, secondary only
            if (shape == 1 || shape == 2 || action->Name == "ZoomResetAction")
                action->ShortCut = RandomKey(random, pool);
            if (shape >= 2)
                action->SecondaryShortCuts.push_back(RandomKey(random, pool));
        }
        const fs::path first = dir / "first.kbd", second = dir / "second.kbd";
        std::string error;
        ASSERT_TRUE(zv::SaveKeyMapFile(written, first, error)) << error;
        zv::TActionList read = Actions(40);
        zv::LoadKeyMapFile(read, first);
        ASSERT_TRUE(zv::SaveKeyMapFile(read, second, error)) << error;
        const std::string bytes = zvtest::ReadAll(first);
        ASSERT_EQ(zvtest::ReadAll(second), bytes) << "round " << round;

        for (size_t i = 0; i < written.Actions().size(); ++i) {
            const zv::TAction& w = *written.Actions()[i];
            const zv::TAction& r = *read.Actions()[i];
            if (w.Tag < 0) {
                EXPECT_EQ(bytes.find(w.Name + "="), std::string::npos) << w.Name;
                continue;
            }
            // A secondary shortcut alone is read back as the shortcut.
            std::vector<zv::TShortCut> keys;
            if (zv::HasShortCut(w.ShortCut))
                keys.push_back(w.ShortCut);
            keys.insert(keys.end(), w.SecondaryShortCuts.begin(), w.SecondaryShortCuts.end());
            std::vector<zv::TShortCut> back;
            if (zv::HasShortCut(r.ShortCut))
                back.push_back(r.ShortCut);
            back.insert(back.end(), r.SecondaryShortCuts.begin(), r.SecondaryShortCuts.end());
            EXPECT_EQ(back, keys) << "round " << round << ", " << w.Name << ": "
                                  << zv::KeyMapValue(w);
        }
    }
}

TEST(KeyMapTest, OldAndHandWrittenLinesAreReadAsTheirKeysMean) {
    zvtest::TTempDir dir("zv-kbd");
    const fs::path file = dir / "Zevrit.kbd";
    zvtest::WriteAll(file, "[DEFAULT]\r\n"
                           "FindNextAction=Shift+Alt+Up\r\n"
                           "FindPreviousAction=Shift+Alt+Down ctrl+shift+f\r\n"
                           "ZoomInAction=Ctrl+NUM * Alt+X\r\n"
                           "ZoomOutAction=Ctrl+NUM_- Shift+Ctrl+NUM_+\r\n"
                           "GoneAction=Ctrl+G\r\n"
                           "ZoomResetAction=\r\n");
    zv::TActionList list;
    for (const char* name : {"FindNextAction", "FindPreviousAction", "ZoomInAction",
                             "ZoomOutAction", "ZoomResetAction", "KeptAction"}) {
        zv::TAction action;
        action.Name = name;
        action.ShortCut = zv::TextToShortCut("F9");
        list.Add(std::move(action));
    }
    zv::LoadKeyMapFile(list, file);
    const auto text = [&list](const char* name) {
        const zv::TAction& a = *list.Find(name);
        std::string t = zv::ShortCutToText(a.ShortCut);
        for (const zv::TShortCut key : a.SecondaryShortCuts)
            t += " | " + zv::ShortCutToText(key);
        return t;
    };
    EXPECT_EQ(text("FindNextAction"), "Shift+Alt+F3");
    EXPECT_EQ(text("FindPreviousAction"), "Alt+F3 | Shift+Ctrl+F");
    EXPECT_EQ(text("ZoomInAction"), "Ctrl+NUM * | Alt+X") << "the blank in the pad's name";
    EXPECT_EQ(text("ZoomOutAction"), "Ctrl+NUM - | Shift+Ctrl+NUM +");
    EXPECT_EQ(text("ZoomResetAction"), "Ctrl+NUM *") << "never left without a key";
    EXPECT_EQ(text("KeptAction"), "F9") << "an action the file does not name keeps its key";
    EXPECT_EQ(zv::TextToShortCut("Ctrl+NUM *").keyboardModifiers(),
              Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_NE(zv::TextToShortCut("Ctrl+*"), zv::TextToShortCut("Ctrl+NUM *"));

    // A missing file is written from the keys in force, then read.
    const fs::path fresh = dir / "Data" / "Zevrit.kbd";
    fs::create_directories(fresh.parent_path());
    zv::LoadKeyMapFile(list, fresh);
    const std::string bytes = zvtest::ReadAll(fresh);
    EXPECT_NE(bytes.find("ZoomInAction=Ctrl+NUM_* Alt+X\r\n"), std::string::npos) << bytes;
    EXPECT_NE(bytes.find("KeptAction=F9\r\n"), std::string::npos) << bytes;
}

} // namespace
