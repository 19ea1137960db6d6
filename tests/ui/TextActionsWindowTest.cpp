// The text commands in the real window: reached from the Edit and Format menus, checked
// against GNU sort and the bytes on disk, commenting with the marks of the document's
// syntax, indenting a C file by its folds against its brace depth, and every command of the
// window shown in a menu with its caption.
#include "UiFixtures.h"
#include "shell/Settings.h"
#include "support/ZvTestSupport.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include "ZvMemoControl/ZvMemoFolds.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSpinBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;

// The shipped syntax files, before the first look-up of the data root fixes it.
const bool kTreeRoot = ::setenv("ZEVRIT_ROOT", ZV_TEST_TREE, 1) == 0;

// Every QAction the menu bar shows, submenus included.
void CollectMenuActions(const QWidget& menu, std::set<const QAction*>& found) {
    for (QAction* item : menu.actions()) {
        found.insert(item);
        if (item->menu())
            CollectMenuActions(*item->menu(), found);
    }
}

class TextActionsWindowTest : public zvtest::TShownWindowTest {
protected:
    TextActionsWindowTest() : TShownWindowTest("zv-text-actions") {}

    void ClickInMenu(const char* menuName, const char* action) {
        zvtest::ClickInMenu(*window, menuName, action);
    }

    // After a modal dialog: the window active again (the window manager's part, off
    // screen), the editor focused, and the document saved as Ctrl+S does.
    void RefocusAndSave(QWidget& editor) {
        QApplication::setActiveWindow(window.get());
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        editor.setFocus();
        QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    }

    // The output of the shell `pipeline` run on `original` as the file named by $1.
    std::string ToolOn(const std::string& original, const std::string& pipeline) {
        return zvtest::ToolOutput(dir / "original.txt", original, pipeline);
    }
};

TEST_F(TextActionsWindowTest, SortFromTheMenuMatchesGnuSortAndUndoGivesBackTheBytesOnDisk) {
    std::string original;
    for (int i = 0; i < 200; ++i)
        original += "k" + std::to_string((i * 7919) % 211) + (i % 3 ? " b" : " A") + "\n";
    zv::TEditorWidget& editor = Open("lines.txt", original);
    ClickInMenu("SortMenu", "SortLinesAction");
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    zvtest::WriteAll(dir / "original.txt", original);
    int status = 0;
    const std::string sorted =
        zvtest::RunOutput("LC_ALL=C sort '" + (dir / "original.txt").string() + "'", status);
    ASSERT_EQ(status, 0);
    const std::string saved = zvtest::ReadAll(dir / "lines.txt");
    EXPECT_EQ(saved, sorted);
    EXPECT_NE(saved, original);

    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "lines.txt"), original);

    editor.Memo().FReadOnly = true;
    window->Actions().UpdateActions();
    EXPECT_FALSE(window->Actions().Get("SortLinesAction")->isEnabled()) << "read-only";
    EXPECT_TRUE(window->Actions().Get("WordCountAction")->isEnabled()) << "counting reads only";
}

TEST_F(TextActionsWindowTest, ToggleCommentUsesTheLineMarkOfTheDocumentsSyntax) {
    const std::string source = "int a;\nint b;\n";
    zv::TEditorWidget& c = Open("a.c", source);
    ClickInMenu("FormatMenu", "CommentAction");
    EXPECT_EQ(zvtest::EditorText(c).substr(0, 2), "//") << zvtest::EditorText(c);
    EXPECT_NE(zvtest::EditorText(c).find("\nint b;"), std::string::npos) << "the caret's line only";
    ClickInMenu("FormatMenu", "CommentAction");
    EXPECT_EQ(zvtest::EditorText(c), "int a;\nint b;\n");

    zv::TEditorWidget& yaml = Open("b.yaml", "key: 1\n");
    QTest::keyClick(&yaml, Qt::Key_Slash, Qt::ControlModifier);
    EXPECT_EQ(zvtest::EditorText(yaml).substr(0, 1), "#") << zvtest::EditorText(yaml);
}

TEST_F(TextActionsWindowTest, DuplicateLinesAsksHowManyCopiesAndOneUndoTakesThemAway) {
    zv::TEditorWidget& editor = Open("d.txt", "one\ntwo\n");
    QTimer::singleShot(0, [] {
        auto* ask = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(ask, nullptr);
        ask->setIntValue(3);
        ask->accept();
    });
    ClickInMenu("LinesMenu", "DuplicateLinesNTimesAction");
    EXPECT_EQ(zvtest::EditorText(editor), "one\none\none\none\ntwo\n");
    QApplication::setActiveWindow(window.get()); // the window manager's part, off screen
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    editor.setFocus();
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(zvtest::EditorText(editor), "one\ntwo\n");
}

TEST_F(TextActionsWindowTest, JsonMenuPrettyPrintsLikePythonAndTellsWhyTextIsNotJson) {
    const std::string original = "{\"k\": [1.50, -0, \"\\u00e9\"], \"e\": {}}\n";
    zv::TEditorWidget& editor = Open("j.json", original);
    ClickInMenu("JsonMenu", "JsonPrettyPrintAction");
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    // Python rewrites numbers and escapes; these are kept as written, so Python gets them
    // in its own spelling.
    zvtest::WriteAll(dir / "python.json", "{\"k\": [1.5, 0, \"\xc3\xa9\"], \"e\": {}}\n");
    const std::string tab = std::to_string(editor.Memo().DocState().FTabSize);
    std::string pretty = zvtest::RunOutput("python3 -m json.tool --no-ensure-ascii --indent " +
                                           tab + " '" + (dir / "python.json").string() + "'");
    for (auto [from, to] : {std::pair{"1.5", "1.50"}, {" 0,", " -0,"}, {"\xc3\xa9", "\\u00e9"}})
        pretty.replace(pretty.find(from), std::string(from).size(), to);
    EXPECT_EQ(zvtest::ReadAll(dir / "j.json"), pretty);
    ClickInMenu("JsonMenu", "JsonMinifyAction");
    EXPECT_EQ(zvtest::EditorText(editor), "{\"k\":[1.50,-0,\"\\u00e9\"],\"e\":{}}\n");

    zv::TEditorWidget& bad = Open("bad.json", "{\"a\": 1,\n \"b\" 2}\n");
    QString told;
    QTimer::singleShot(0, [&told] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        told = box->text();
        box->accept();
    });
    ClickInMenu("JsonMenu", "JsonPrettyPrintAction");
    EXPECT_TRUE(told.contains(QLatin1String("line 2, column 6"))) << told.toStdString();
    EXPECT_EQ(zvtest::EditorText(bad), "{\"a\": 1,\n \"b\" 2}\n");
    EXPECT_FALSE(bad.Memo().CanUndo());
}

TEST_F(TextActionsWindowTest, RemoveMenuTakesAskedCharactersAndZeroWidthSpacesLikeSed) {
    const std::string original = "a\xe2\x80\x8b"
                                 "b;c\xef\xbb\xbf\n\xe2\x81\xa0x;y\xe2\x80\x8e\n";
    zv::TEditorWidget& editor = Open("z.txt", original);
    ClickInMenu("RemoveMenu", "RemoveZeroWidthSpacesAction");
    QTimer::singleShot(0, [] {
        auto* ask = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(ask, nullptr);
        ask->setTextValue(QStringLiteral(";y"));
        ask->accept();
    });
    ClickInMenu("RemoveMenu", "RemoveCharactersAction");
    RefocusAndSave(editor);
    const std::string expected = ToolOn(
        original, "LC_ALL=C sed -e \"s/\\xe2\\x80[\\x8b-\\x8d]//g\" -e "
                  "\"s/\\xe2\\x81\\xa0//g\" -e \"s/\\xef\\xbb\\xbf//g\" \"$1\" | tr -d \";y\"");
    EXPECT_EQ(zvtest::ReadAll(dir / "z.txt"), expected);
}

TEST_F(TextActionsWindowTest, AdvancedSortDialogKeysMatchGnuSortKeysAndOneUndoRestores) {
    std::string original;
    for (int i = 0; i < 300; ++i)
        original += std::string(1, "aBbA"[(i * 7) % 4]) + std::to_string((i * 37) % 23) + " " +
                    std::string(1, "xYz"[(i * 5) % 3]) + std::to_string(i % 4) + "\n";
    zv::TEditorWidget& editor = Open("s.txt", original);
    QTimer::singleShot(0, [] {
        auto* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        ASSERT_EQ(dialog->objectName(), QStringLiteral("SortDialog"));
        const auto box = [dialog](const char* name) {
            return dialog->findChild<QAbstractButton*>(QString::fromLatin1(name));
        };
        const auto spin = [dialog](const char* name, int value) {
            dialog->findChild<QSpinBox*>(QString::fromLatin1(name))->setValue(value);
        };
        box("Key1IgnoreCase")->setChecked(true); // key 1: column 1, case-blind, descending
        box("Key1Descending")->setChecked(true);
        spin("Key1Start", 1);
        spin("Key1End", 1);
        box("Key2Enabled")->setChecked(true); // key 2: columns 2-3 as numbers
        box("Key2Numeric")->setChecked(true);
        spin("Key2Start", 2);
        spin("Key2End", 3);
        box("Key3Enabled")->setChecked(true); // key 3: to the line end, descending
        box("Key3Descending")->setChecked(true);
        spin("Key3Start", 4);
        spin("Key3End", 0);
        box("RemoveDuplicates")->setChecked(true);
        qobject_cast<QDialog*>(dialog)->accept();
    });
    ClickInMenu("SortMenu", "AdvancedSortAction");
    RefocusAndSave(editor);
    const std::string sorted = ToolOn(
        original,
        "LC_ALL=C sort -s -t \"$(printf \\\\001)\" -k1.1,1.1fr -k1.2,1.3n -k1.4r \"$1\" | uniq");
    EXPECT_EQ(zvtest::ReadAll(dir / "s.txt"), sorted);
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(zvtest::EditorText(editor), original);
}

// A key set saved by name in the dialog is in the settings file written at the end; after a
// restart that reads the file again, picking the name sets the keys, and they sort as GNU
// sort does with the same keys.
TEST_F(TextActionsWindowTest, NamedKeySetSurvivesARestartAndSortsAsGnuSort) {
    const fs::path ini = dir / "Zevrit.ini";
    zv::OpenSettings(ini);
    std::string original;
    for (int i = 0; i < 200; ++i)
        original += std::string(1, "aBbA"[(i * 7) % 4]) + std::to_string((i * 37) % 23) + " x" +
                    std::to_string(i % 4) + "\n";
    zv::TEditorWidget& editor = Open("k.txt", original);
    QTimer::singleShot(0, [] {
        auto* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        const auto box = [dialog](const char* name) {
            return dialog->findChild<QAbstractButton*>(QString::fromLatin1(name));
        };
        box("Key1IgnoreCase")->setChecked(true); // key 1: column 1, case-blind, descending
        box("Key1Descending")->setChecked(true);
        dialog->findChild<QSpinBox*>("Key1End")->setValue(1);
        box("Key2Enabled")->setChecked(true); // key 2: columns 2-3 as numbers
        box("Key2Numeric")->setChecked(true);
        dialog->findChild<QSpinBox*>("Key2Start")->setValue(2);
        dialog->findChild<QSpinBox*>("Key2End")->setValue(3);
        dialog->findChild<QComboBox*>("KeySetName")->setCurrentText("by letter and number");
        box("SaveKeySet")->click();
        qobject_cast<QDialog*>(dialog)->reject();
    });
    ClickInMenu("SortMenu", "AdvancedSortAction");
    EXPECT_EQ(zvtest::EditorText(editor), original) << "a cancel sorts nothing";
    ASSERT_TRUE(zv::SettingsIni().UpdateFile());
    zv::CloseSettings();
    int status = 0;
    EXPECT_EQ(zvtest::RunOutput("iconv -f UTF-16 -t UTF-8 '" + ini.string() +
                                    "' | tr -d \"\\r\" | grep -c \"^by letter and number=\"",
                                status),
              "1\n");

    zv::OpenSettings(ini); // the next start
    QTimer::singleShot(0, [] {
        auto* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        auto* names = dialog->findChild<QComboBox*>("KeySetName");
        ASSERT_EQ(names->count(), 1);
        QTest::keyClick(names, Qt::Key_Down); // picks the one set
        qobject_cast<QDialog*>(dialog)->accept();
    });
    ClickInMenu("SortMenu", "AdvancedSortAction");
    RefocusAndSave(editor);
    EXPECT_EQ(zvtest::ReadAll(dir / "k.txt"),
              ToolOn(original, "LC_ALL=C sort -s -k1.1,1.1fr -k1.2,1.3n \"$1\""));
    zv::CloseSettings();
}

// A C file's lines indented by brace depth: a line that begins with "}" stands at the depth
// it closes to; blank lines stay.
std::string IndentByBraces(const std::string& text, const std::string& unit, int from, int to) {
    std::istringstream in(text);
    std::string out, line;
    int depth = 0;
    for (int row = 0; std::getline(in, line); ++row) {
        const std::size_t start = line.find_first_not_of(" \t");
        if (start != std::string::npos && row >= from && row <= to) {
            const int level = depth - (line[start] == '}' ? 1 : 0);
            std::string indent;
            for (int k = 0; k < level; ++k)
                indent += unit;
            line = indent + line.substr(start);
        }
        depth += static_cast<int>(std::count(line.begin(), line.end(), '{') -
                                  std::count(line.begin(), line.end(), '}'));
        out += line + "\n";
    }
    return out;
}

TEST_F(TextActionsWindowTest, IndentByFoldEqualsBraceDepthOnACFileAndUndoGivesBackTheBytes) {
    ASSERT_TRUE(kTreeRoot);
    const std::string source = R"(#include <stdio.h>

/* Counts the words of standard input
   and prints the longest. */
struct counter {
  int words;
  int longest;
};

static int is_blank(int c)
{
  return c == ' ' || c == '\t' || c == '\n';
}

int main(void) {
  struct counter n = {0, 0};
  int c, length = 0;
  while ((c = getchar()) != EOF) {
    // A blank ends a word;
    // anything else makes it longer.
    if (!is_blank(c)) {
      length++;
      if (length > n.longest) {
        n.longest = length;
      }
    } else if (length > 0) {
      n.words++;
      length = 0;
    } else {
      continue;
    }
  }
  printf("%d %d\n", n.words, n.longest);
  return 0;
}
)";
    zv::TEditorWidget& editor = Open("words.c", source);
    zv::TZvMemo& memo = editor.Memo();
    const zv::TZvMemoStrings& lines = *editor.Lines();
    const auto awaitFolds = [&] { // the background thread builds the folds after each change
        for (int i = 0; i < 200 && !zv::IsFoldHead(lines, 20); ++i)
            QTest::qWait(50);
        ASSERT_TRUE(zv::IsFoldHead(lines, 14) && zv::IsFoldHead(lines, 20));
    };
    awaitFolds();

    memo.FTabAsSpaces = false;
    ClickInMenu("FormatMenu", "IndentByFoldAction");
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "words.c"), IndentByBraces(source, "\t", 0, 99));
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "words.c"), source);

    // A selection: only its lines change, by three spaces a level.
    awaitFolds();
    memo.FTabAsSpaces = true;
    memo.DocState().FTabSize = 3;
    memo.SetSelection({2, 19}, {0, 32});
    ClickInMenu("FormatMenu", "IndentByFoldAction");
    EXPECT_EQ(zvtest::EditorText(editor), IndentByBraces(source, "   ", 19, 31));
}

TEST_F(TextActionsWindowTest, EveryCommandHasACaptionAndAnItemInTheMenuBar) {
    std::set<const QAction*> shown;
    CollectMenuActions(*window->menuBar(), shown);
    for (const auto& action : window->Actions().List().Actions()) {
        const QAction* item = window->Actions().Get(action->Name);
        EXPECT_FALSE(item->text().isEmpty()) << action->Name;
        EXPECT_TRUE(shown.count(item)) << action->Name << " is in no menu";
    }
}

} // namespace
