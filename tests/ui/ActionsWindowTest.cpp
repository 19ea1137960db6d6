// Commands in the real window: shortcuts (built in, from the key map file, from the key
// dialog) run their actions, the close key held down closes the group, the menu search
// filters and runs commands and documents, and menus take their captions from the
// language file.
#include "UiFixtures.h"
#include "shell/ActionList.h"
#include "shell/KeyMap.h"
#include "shell/Language.h"
#include "shell/Settings.h"
#include "support/ZvTestSupport.h"
#include "ui/Actions.h"
#include "ui/CommandPalette.h"
#include "ui/EditorWidget.h"
#include "ui/KeyDialog.h"

#include <QAction>
#include <QClipboard>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;

// This program's data (the key map) goes to a folder of its own, set before the first
// look-up of the root.
const zvtest::TTempDir& Root() {
    static const zvtest::TTempDir root{"zv-actions-root"};
    static const bool made = fs::create_directories(root / "Data");
    (void)made;
    return root;
}
const bool kRootSet = ::setenv("ZEVRIT_ROOT", Root().Path().c_str(), 1) == 0;

// The key=value lines of one section of a settings file, read apart from the program.
std::map<std::string, std::string> Section(const std::string& bytes, const std::string& name) {
    std::map<std::string, std::string> values;
    bool inside = false;
    size_t start = 0;
    while (start < bytes.size()) {
        size_t end = bytes.find('\n', start);
        if (end == std::string::npos)
            end = bytes.size();
        std::string line = bytes.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty() && line[0] == '[')
            inside = line == "[" + name + "]";
        else if (inside && line.find('=') != std::string::npos && line[0] != ';')
            values.emplace(line.substr(0, line.find('=')), line.substr(line.find('=') + 1));
    }
    return values;
}

void UseLanguageFile(const fs::path& file) {
    zv::OpenLanguage(file);
    zv::SetLanguageLookup([](const std::string& s, const std::string& k, const std::string& d) {
        return zv::LanguageIni().ReadString(s, k, std::string_view(d));
    });
}

// Every (section, key) the program's sources read from the language file: texts of the
// wrappers of LangText given a section, the key dialog's "Misc" wrapper, the action
// descriptions' "Actions" keys and the menus' "Menu" keys.
std::set<std::pair<std::string, std::string>> LanguageKeysReadBySources() {
    static const std::regex call(R"re(\b(?:LangText|Lang|Text)\(\s*"([A-Za-z ]+)",\s*"(\w+)")re");
    static const std::regex misc(R"re(\bLang\(\s*"(\d+)",)re");
    static const std::regex action(R"re(\{\s*"(\w+Action)",\s*"[A-Za-z ]+",\s*"(\d+)",)re");
    static const std::regex menu(R"re(\b(?:AddMenu|AddSubMenu|group)\((?:[^,()]+,)?\s*"(\w+)",)re");
    std::set<std::pair<std::string, std::string>> keys;
    const auto collect = [&keys](const std::string& text, const std::regex& pattern,
                                 const char* section, int keyGroup, int sectionGroup) {
        for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it)
            keys.emplace(section ? section : (*it)[sectionGroup].str(), (*it)[keyGroup].str());
    };
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(ZV_SOURCE_DIR) / "src")) {
        const std::string ext = entry.path().extension().string();
        if (ext != ".cpp" && ext != ".h")
            continue;
        const std::string text = zvtest::ReadAll(entry.path());
        collect(text, call, nullptr, 2, 1);
        collect(text, misc, "Misc", 1, 0);
        collect(text, action, "Actions", 2, 0);
        collect(text, menu, "Menu", 1, 0);
    }
    return keys;
}

// The accelerator letters of a menu's visible items (its submenus' titles included), with
// the texts that use each, recursing into the submenus; reports each letter used twice.
void ExpectDistinctAccelerators(const QWidget& menu, const std::string& path) {
    std::map<QChar, std::vector<std::string>> byLetter;
    for (QAction* item : menu.actions()) {
        if (!item->isVisible() || item->isSeparator())
            continue;
        const QString text = item->text();
        for (qsizetype i = text.indexOf('&'); i >= 0 && i + 1 < text.size();
             i = text.indexOf('&', i + 2))
            if (text[i + 1] != '&') {
                byLetter[text[i + 1].toLower()].push_back(text.toStdString());
                break;
            }
        if (item->menu())
            ExpectDistinctAccelerators(*item->menu(), path + " > " + text.toStdString());
    }
    for (const auto& [letter, texts] : byLetter)
        EXPECT_EQ(texts.size(), 1u) << path << ": \"" << texts[0] << "\" and \"" << texts.back()
                                    << "\" share their accelerator";
}

class ActionsWindowTest : public zvtest::TShownWindowTest {
protected:
    ActionsWindowTest() : TShownWindowTest("zv-actions") {}
    void TearDown() override { zv::SetLanguageLookup({}); }
    static std::string Text(const zv::TEditorWidget& editor) { return zvtest::EditorText(editor); }
};

TEST_F(ActionsWindowTest, ShortcutsFromTheBuiltInsTheKeyMapFileAndTheKeyDialogRunTheirActions) {
    zv::TEditorWidget& editor = Open("a.txt", "one two\nthree\n");
    QTest::keyClick(&editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(Text(editor), "");
    QTest::keyClick(&editor, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Text(editor), "one two\nthree\none two\nthree\n");
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Text(editor), "one two\nthree\n");
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(Text(editor), "one two\nthree\none two\nthree\n") << "both redo keys";
    editor.Memo().SetTextCursor(7, 0);
    QTest::keyClick(&editor, Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(Text(editor).substr(0, 5), "one \n");
    QTest::keyClick(&editor, Qt::Key_Insert);
    EXPECT_TRUE(editor.Memo().FOverwrite);
    window->Actions().UpdateActions();
    EXPECT_TRUE(window->Actions().Get("InsertModeAction")->isChecked());

    // The key map file of the data root rebinds: a new key, a removed one, a secondary.
    zvtest::WriteAll(zv::KeyMapPath(Root().Path()), "[DEFAULT]\r\n"
                                                    "DelLineAction=Ctrl+K\r\n"
                                                    "SelectAllAction=\r\n"
                                                    "UndoAction=Alt+Backspace Ctrl+Z\r\n");
    window->LoadKeyMap();
    zv::TEditorWidget& b = Open("b.txt", "first\nsecond\nthird");
    b.Memo().SetTextCursor(0, 1);
    QTest::keyClick(&b, Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(Text(b), "first\nthird");
    QTest::keyClick(&b, Qt::Key_A, Qt::ControlModifier);
    EXPECT_FALSE(b.Memo().HasSelection()) << "Ctrl+A was taken off Select All";
    QTest::keyClick(&b, Qt::Key_Backspace, Qt::AltModifier);
    EXPECT_EQ(Text(b), "first\nsecond\nthird");

    // The key dialog: Ctrl+B taken from the matching brace for Delete line; the file keeps it.
    QTimer::singleShot(0, [] {
        auto* dialog = qobject_cast<zv::TfrmCustomKeyboard*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->FindBox().setText(QStringLiteral("line"));
        ASSERT_TRUE(dialog->Select("DelLineAction"));
        const QString message =
            dialog->Assign(zv::TextToShortCut("Ctrl+B"), zv::TextToShortCut("Ctrl+K"));
        EXPECT_TRUE(message.contains(QStringLiteral("Matching brace"))) << message.toStdString();
        dialog->accept();
    });
    window->Actions().List().Execute("CustomizeKeyboardAction");
    QApplication::setActiveWindow(window.get()); // the window manager's part, off screen
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    const std::string file = zvtest::ReadAll(zv::KeyMapPath(Root().Path()));
    EXPECT_NE(file.find("\r\nDelLineAction=Ctrl+B Ctrl+K\r\n"), std::string::npos) << file;
    EXPECT_NE(file.find("\r\nMatchingBraceAction=\r\n"), std::string::npos) << file;
    b.setFocus();
    b.Memo().SetTextCursor(0, 0);
    QTest::keyClick(&b, Qt::Key_B, Qt::ControlModifier);
    EXPECT_EQ(Text(b), "second\nthird");
}

TEST_F(ActionsWindowTest, HoldingTheCloseKeyClosesOneDocumentThenAtTheFifthFiringTheGroup) {
    for (int i = 0; i < 6; ++i)
        Open("f" + std::to_string(i) + ".txt", "text\n");
    for (int firing = 1; firing <= 5; ++firing) {
        QTest::keyPress(window->ActiveEditor(), Qt::Key_W, Qt::ControlModifier);
        EXPECT_EQ(helper.Documents().size(), firing < 5 ? 5u : 0u) << "firing " << firing;
    }
    QTest::keyRelease(window.get(), Qt::Key_W, Qt::ControlModifier);
    Open("g.txt", "g\n");
    Open("h.txt", "h\n");
    for (int press = 0; press < 2; ++press) { // the key goes up where the focus went
        QTest::keyPress(window->ActiveEditor(), Qt::Key_W, Qt::ControlModifier);
        QTest::keyRelease(window.get(), Qt::Key_W, Qt::ControlModifier);
    }
    EXPECT_TRUE(helper.Documents().empty()) << "released in between, each press closes one";
}

TEST_F(ActionsWindowTest, TheMenuSearchFiltersEveryCommandAndRunsTheChoice) {
    Open("b.txt", "bee\n");
    zv::TEditorWidget& a = Open("a.txt", "alpha\nbeta");
    QTest::keyClick(&a, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    zv::TMenuSearchForm* search = window->MenuSearch();
    ASSERT_NE(search, nullptr);
    ASSERT_TRUE(search->isVisible());
    QListWidget& list = search->ListView();
    EXPECT_EQ(static_cast<size_t>(list.count()), window->Actions().List().Actions().size() + 2)
        << "every command once, and the two documents";

    QTest::keyClicks(&search->SearchBox(), "DUP lin");
    ASSERT_GE(list.count(), 1);
    for (int row = 0; row < list.count(); ++row) {
        const QString shown = list.item(row)->text();
        EXPECT_TRUE(shown.contains("dup", Qt::CaseInsensitive) &&
                    shown.contains("lin", Qt::CaseInsensitive))
            << shown.toStdString();
    }
    EXPECT_TRUE(list.currentItem()->text().startsWith("Duplicate line"));
    QTest::keyClick(&search->SearchBox(), Qt::Key_Return);
    EXPECT_FALSE(search->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &a);
    EXPECT_EQ(Text(a), "alpha\nalpha\nbeta");

    QTest::keyClick(&a, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClicks(&search->SearchBox(), "b.txt");
    ASSERT_EQ(list.count(), 1);
    QTest::keyClick(&search->SearchBox(), Qt::Key_Return);
    zv::TEditorWidget& b = *window->ActiveEditor();
    EXPECT_EQ(Text(b), "bee\n");

    // The palette itself is never the command repeated: the last one is.
    QTest::keyClick(&b, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClicks(&search->SearchBox(), "repeat last");
    QTest::keyClick(&search->SearchBox(), Qt::Key_Return);

    EXPECT_EQ(Text(b), "bee\nbee\n");
    EXPECT_FALSE(search->isVisible());
}

TEST_F(ActionsWindowTest, MenusAndCommandsTakeTheirCaptionsFromTheLanguageFile) {
    const fs::path shipped = fs::path(ZV_SOURCE_DIR) / "data" / "Language" / "eng.ini";
    UseLanguageFile(shipped);
    window = zvtest::ShownWindow(helper);
    const std::string bytes = zvtest::ReadAll(shipped);
    const auto menus = Section(bytes, "Menu"), captions = Section(bytes, "Actions");
    std::vector<std::string> expected; // the top menus' captions in key order
    for (const auto& [key, caption] : menus)
        if (key.size() == 3 && key[0] == 'm')
            expected.push_back(caption);
    std::vector<std::string> shown;
    for (QAction* top : window->menuBar()->actions())
        if (top->isVisible())
            shown.push_back(top->text().toStdString());
    for (const char* needed :
         {"&File", "&Edit", "&Search", "&View", "F&ormat", "&Tools", "&Window", "&Help"})
        EXPECT_NE(std::find(shown.begin(), shown.end(), needed), shown.end()) << needed;
    auto next = expected.begin();
    for (const std::string& title : shown) {
        next = std::find(next, expected.end(), title);
        EXPECT_NE(next, expected.end()) << title << ": a Menu caption, in key order";
    }
    for (const auto& action : window->Actions().List().Actions()) {
        ASSERT_TRUE(captions.count(action->CaptionKey)) << action->Name << " has no caption";
        EXPECT_EQ(window->Actions().Get(action->Name)->text().toStdString(),
                  captions.at(action->CaptionKey))
            << action->Name;
    }

    // Another language: its texts replace the menus' and commands'; what it lacks stays.
    const fs::path other = dir / "other.ini";
    zvtest::WriteAll(other, "[Menu]\r\nm00=&Datei\r\n[Actions]\r\n001=&Neu\r\n");
    UseLanguageFile(other);
    window->Actions().SetActionsLanguage();
    EXPECT_EQ(window->menuBar()->actions()[0]->text().toStdString(), "&Datei");
    EXPECT_EQ(window->Actions().Get("NewFileAction")->text().toStdString(), "&Neu");
    EXPECT_EQ(window->Actions().Get("OpenFileAction")->text().toStdString(), "&Open...");
}

TEST_F(ActionsWindowTest, TheLanguageFileHoldsEveryKeyTheSourcesReadAndMenusKeepAcceleratorsApart) {
    const fs::path shipped = fs::path(ZV_SOURCE_DIR) / "data" / "Language" / "eng.ini";
    const std::string bytes = zvtest::ReadAll(shipped);
    const auto keys = LanguageKeysReadBySources();
    std::map<std::string, std::map<std::string, std::string>> sections;
    for (const auto& [section, key] : keys) {
        if (!sections.count(section))
            sections[section] = Section(bytes, section);
        EXPECT_TRUE(sections[section].count(key)) << "[" << section << "] " << key << " is missing";
    }
    for (const char* section : {"Messages", "Misc", "Menu", "Actions", "FindReplace"})
        EXPECT_TRUE(sections.count(section)) << "the scan found no read of " << section;

    UseLanguageFile(shipped);
    window = zvtest::ShownWindow(helper);
    ExpectDistinctAccelerators(*window->menuBar(), "menu bar");
}

} // namespace
