// The text commands in the real window: reached from the Edit and Format menus, checked
// against GNU sort and the bytes on disk, commenting with the marks of the document's
// syntax, and every command of the window shown in a menu with its caption.
#include "UiFixtures.h"
#include "support/ZvTestSupport.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include <QAction>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

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

    // Runs the action as a click on its item in the named menu of the bar does.
    void ClickInMenu(const char* menuName, const char* action) {
        auto* menu = window->menuBar()->findChild<QMenu*>(QString::fromLatin1(menuName));
        ASSERT_NE(menu, nullptr) << menuName;
        QAction* item = window->Actions().Get(action);
        ASSERT_TRUE(menu->actions().contains(item)) << action << " is not in " << menuName;
        window->Actions().UpdateActions();
        ASSERT_TRUE(item->isEnabled()) << action;
        item->trigger();
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
