// Folding in the real window: the fold margin shows a marker on each fold's head once the
// background thread has built the folds, a click there folds and the painted rows skip the
// hidden ones, the caret and the mouse step over them, and fold all then unfold all from the
// View menu leave the text, the caret and the bytes on disk as they were; nested folds and
// selection folds from the same menu.
#include "UiFixtures.h"
#include "support/ZvTestSupport.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include "ZvMemoControl/ZvMemoFolds.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace {

// The shipped syntax files, before the first look-up of the data root fixes it.
const bool kTreeRoot = ::setenv("ZEVRIT_ROOT", ZV_TEST_TREE, 1) == 0;

class FoldsWindowTest : public zvtest::TShownWindowTest {
protected:
    FoldsWindowTest() : TShownWindowTest("zv-folds") {}

    // The rows one paint draws, top to bottom.
    static std::vector<int> PaintedRows(zv::TEditorWidget& editor) {
        std::vector<int> rows;
        editor.FOnRowPainted = [&](int row, const auto&) { rows.push_back(row); };
        editor.viewport()->repaint();
        editor.FOnRowPainted = nullptr;
        return rows;
    }
    // The x of the fold marker painted in the gutter on the view's `line`-th row, or -1.
    static int MarkerX(zv::TEditorWidget& editor, int line) {
        const QImage image = editor.viewport()->grab().toImage();
        const int h = editor.fontMetrics().lineSpacing();
        for (int y = line * h; y < (line + 1) * h && y < image.height(); ++y)
            for (int x = 0; x < image.width() / 3; ++x)
                if (image.pixelColor(x, y) == zv::TEditorWidget::kFoldMarkColor)
                    return x;
        return -1;
    }
};

TEST_F(FoldsWindowTest, MarginClicksMenuCommandsAndTheCaretOverFolds) {
    ASSERT_TRUE(kTreeRoot);
    const std::string original = "int f(void)\n{\n    if (a) {\n        b();\n    }\n}\n"
                                 "int g(void) {\n    return 1;\n}\nint c;\n";
    zv::TEditorWidget& editor = Open("folds.c", original);
    const zv::TZvMemoStrings& lines = *editor.Lines();
    for (int i = 0; i < 200 && !zv::IsFoldHead(lines, 6); ++i)
        QTest::qWait(50); // the background thread builds the folds
    ASSERT_TRUE(zv::IsFoldHead(lines, 0));
    ASSERT_TRUE(zv::IsFoldHead(lines, 6));
    // Marks stand on the heads (rows 0, 2, 6) and the ends (4, 5, 8), nowhere else.
    for (int row = 0; row < 10; ++row)
        EXPECT_EQ(MarkerX(editor, row) >= 0, std::set<int>({0, 2, 4, 5, 6, 8}).count(row) == 1)
            << row;

    // A click on the first marker folds the function: the paint skips its body.
    const int h = editor.fontMetrics().lineSpacing();
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, QPoint(MarkerX(editor, 0) + 2, h / 2));
    EXPECT_TRUE(zv::IsFoldClosed(lines, 0));
    std::vector<int> painted = PaintedRows(editor);
    painted.resize(std::min<std::size_t>(painted.size(), 4));
    EXPECT_EQ(painted, (std::vector<int>{0, 6, 7, 8}));
    // The caret steps over the fold; a click on the second painted row lands on row 6.
    editor.Memo().SetTextCursor(0, 0);
    QTest::keyClick(&editor, Qt::Key_Down);
    EXPECT_EQ(editor.CaretRow(), 6);
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, QPoint(editor.width() / 2, h + h / 2));
    EXPECT_EQ(editor.CaretRow(), 6);

    // Fold all and unfold all from the View menu's Folding submenu.
    auto* folding = window->menuBar()->findChild<QMenu*>("FoldingMenu");
    ASSERT_NE(folding, nullptr);
    window->Actions().UpdateActions();
    for (const char* name : {"FoldAllAction", "UnfoldAllAction", "ToggleFoldAction",
                             "GotoFoldStartAction", "GotoFoldEndAction"})
        EXPECT_TRUE(folding->actions().contains(window->Actions().Get(name))) << name;
    editor.Memo().SetTextCursor(3, 9);
    folding->actions()[0]->trigger(); // Fold all
    EXPECT_EQ(lines.VisibleCount(), 3 + 1);
    EXPECT_EQ(PaintedRows(editor).size(), 4u);
    window->Actions().Get("UnfoldAllAction")->trigger();
    EXPECT_EQ(lines.VisibleCount(), lines.Count());
    EXPECT_EQ(editor.Memo().Caret(), (zv::TZvPos{3, 9}));
    EXPECT_EQ(zvtest::EditorText(editor), original);
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "folds.c"), original);

    // The fold's start and end from inside the body; fold by level closes the inner fold.
    editor.Memo().SetTextCursor(0, 3);
    window->Actions().Get("GotoFoldStartAction")->trigger();
    EXPECT_EQ(editor.CaretRow(), 2);
    window->Actions().Get("GotoFoldEndAction")->trigger();
    EXPECT_EQ(editor.CaretRow(), 4);
    window->Actions().Get("FoldLevel2Action")->trigger();
    EXPECT_TRUE(zv::IsFoldClosed(lines, 2));
    EXPECT_FALSE(zv::IsFoldClosed(lines, 0));
    EXPECT_EQ(editor.CaretRow(), 2) << "the caret leaves the hidden rows for their head";

    // The scroll bar counts shown rows only (3 and 4 are hidden): each of its values puts
    // the next shown row on top, and a shown row put on top gives the value back.
    editor.resize(editor.width(), editor.height() - editor.viewport()->height() + 3 * h);
    std::vector<int> shown;
    for (int row = 0; row < lines.Count(); ++row)
        if (!lines.GetHiddenLine(row))
            shown.push_back(row);
    QScrollBar& bar = *editor.verticalScrollBar();
    EXPECT_EQ(bar.maximum(), static_cast<int>(shown.size()) - editor.VisibleRowCount() + 1);
    for (int value = 0; value <= bar.maximum(); ++value) {
        bar.setValue(value);
        EXPECT_EQ(PaintedRows(editor).front(), shown[static_cast<std::size_t>(value)]) << value;
        editor.SetTopRow(shown[static_cast<std::size_t>(value)]);
        EXPECT_EQ(bar.value(), value);
    }
    editor.SetTopRow(4); // a hidden row: its head shows on top
    EXPECT_EQ(editor.TopRow(), 2);
}

// The commands a user finds under View > Folding for nested folds and folds of a selection:
// the nested command closes only the outermost folds inside the current one, and a selection
// fold hides exactly its rows, survives a fold pass after an edit elsewhere and goes again.
TEST_F(FoldsWindowTest, NestedAndSelectionFoldsFromTheMenu) {
    ASSERT_TRUE(kTreeRoot);
    const std::string original = "int f(void)\n{\n    if (a) {\n        b();\n    }\n"
                                 "    while (c) {\n        if (d) {\n            e();\n"
                                 "        }\n    }\n}\nint g;\nint h;\nint k;\n";
    zv::TEditorWidget& editor = Open("nested.c", original);
    const zv::TZvMemoStrings& lines = *editor.Lines();
    for (int i = 0; i < 200 && !zv::IsFoldHead(lines, 6); ++i)
        QTest::qWait(50);
    ASSERT_TRUE(zv::IsFoldHead(lines, 0));
    auto* folding = window->menuBar()->findChild<QMenu*>("FoldingMenu");
    ASSERT_NE(folding, nullptr);
    const auto hidden = [&] {
        std::set<int> rows;
        for (int row = 0; row < lines.Count(); ++row)
            if (lines.GetHiddenLine(row))
                rows.insert(row);
        return rows;
    };
    const auto run = [&](const char* name) {
        QAction* action = window->Actions().Get(name);
        EXPECT_TRUE(action && folding->actions().contains(action)) << name;
        if (action)
            action->trigger();
    };

    editor.Memo().SetTextCursor(0, 0);
    run("FoldNestedNodesInCurrentAction");
    EXPECT_FALSE(zv::IsFoldClosed(lines, 0));
    EXPECT_FALSE(zv::IsFoldClosed(lines, 6)) << "a fold inside a closed one stays as it was";
    EXPECT_EQ(hidden(), (std::set<int>{3, 4, 6, 7, 8, 9}));
    run("UnfoldAllAction");

    editor.Memo().SetSelection({0, 11}, {3, 13});
    run("AddFoldableSelectionAction");
    EXPECT_EQ(hidden(), (std::set<int>{12, 13}));
    EXPECT_EQ(editor.CaretRow(), 11);
    editor.Memo().SetTextCursor(0, 3);
    QTest::keyClicks(&editor, "x");
    editor.Memo().SetTextCursor(0, 11);
    QTest::keyClicks(&editor, "y"); // typing on the closed head keeps it closed
    bool applied = false;
    QObject::connect(&editor, &zv::TEditorWidget::FoldsApplied, [&] { applied = true; });
    for (int i = 0; i < 200 && !applied; ++i)
        QTest::qWait(50);
    ASSERT_TRUE(applied);
    EXPECT_EQ(hidden(), (std::set<int>{12, 13})) << "the fold pass leaves selection folds alone";
    EXPECT_EQ(zv::GetNodeEndFromTopLine(lines, 11), 13);
    run("RemoveFoldableSelectionAction");
    EXPECT_TRUE(hidden().empty());
    EXPECT_FALSE(zv::IsFoldHead(lines, 11));
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    std::string expected = original;
    expected.insert(expected.find("int g;"), "y");
    expected.insert(expected.find("        b();"), "x");
    EXPECT_EQ(zvtest::ReadAll(dir / "nested.c"), expected);
}

} // namespace
