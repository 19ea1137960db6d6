// Tab groups and split views in the real window: split halves and clones edit one text
// (what one types the other paints, undo in either takes it back, each keeps its caret),
// a tab moved to another group and back keeps text, caret and modified mark, files open
// into the active group, and closing a document closes its clones while a clone closes
// alone; a modified document still asks, and each answer does what it says on disk.
#include "ui/TabGroups.h"
#include "UiFixtures.h"

#include <QTabWidget>

namespace fs = std::filesystem;

namespace {

using TSplitKind = zv::TMainWindow::TSplitKind;

class TabGroupsTest : public zvtest::TShownWindowTest {
protected:
    TabGroupsTest() : TShownWindowTest("zv-groups") {}
    zv::TDocument& Doc(const std::string& name) {
        const int index = helper.FindDocMemo((dir / name).string());
        EXPECT_GE(index, 0) << name;
        return *helper.Documents()[static_cast<size_t>(index)];
    }
    bool Shown(int group) const { return window->TabGroups().IsShown(group); }
};

TEST_F(TabGroupsTest, SplitHalvesAndClonesEditOneTextEachWithItsOwnCaret) {
    zv::TEditorWidget& main = Open("s.txt", "one\ntwo\nthree\n");
    main.Memo().SetTextCursor(0, 2);
    ASSERT_TRUE(window->SplitCurrentMemo(TSplitKind::Horizontal));
    zv::TEditorWidget* half = window->ActiveEditor();
    ASSERT_NE(half, &main);
    EXPECT_EQ(window->TabGroup(0)->count(), 1) << "the split stands inside the tab";
    EXPECT_EQ(half->Memo().Caret(), (zv::TZvPos{0, 2})) << "the new view starts at the caret";

    int paintedLength = -1; // of row 0 in the main view
    main.FOnRowPainted = [&](int row, const std::vector<zv::TColourRun>& runs) {
        if (row == 0)
            for (const auto& run : runs)
                paintedLength = std::max(paintedLength, 0) + run.Length;
    };
    half->Memo().SetTextCursor(0, 0);
    QTest::keyClicks(half, "X");
    paintedLength = -1;
    QApplication::processEvents();
    EXPECT_EQ(paintedLength, 4) << "the other half repaints the row it shows";
    EXPECT_EQ(zvtest::EditorText(main), "Xone\ntwo\nthree\n");
    EXPECT_EQ(main.Memo().Caret(), (zv::TZvPos{0, 2})) << "each view keeps its own caret";
    EXPECT_EQ(window->TabGroup(0)->tabText(0), "s.txt*");

    main.setFocus();
    QTest::keyClick(&main, Qt::Key_Z, Qt::ControlModifier); // undo in the other half
    EXPECT_EQ(zvtest::EditorText(*half), "one\ntwo\nthree\n");
    EXPECT_FALSE(Doc("s.txt").Modified()) << "undone to the saved text";

    ASSERT_TRUE(window->SplitCurrentMemo(TSplitKind::Right));
    zv::TEditorWidget* clone = window->ActiveEditor();
    ASSERT_TRUE(Shown(1));
    ASSERT_EQ(window->TabGroup(1)->count(), 1);
    EXPECT_EQ(window->TabGroup(1)->tabText(0), "--");
    EXPECT_EQ(helper.Documents().size(), 1U) << "a clone is a view, not a document";
    EXPECT_EQ(Doc("s.txt").FTabGroup, 0);
    clone->Memo().SetTextCursor(0, 1);
    QTest::keyClicks(clone, "Y");
    EXPECT_EQ(zvtest::EditorText(main), "one\nYtwo\nthree\n");
    EXPECT_EQ(zvtest::EditorText(*half), "one\nYtwo\nthree\n");
    EXPECT_EQ(window->TabGroup(1)->tabText(0), "--*");
    QTest::keyClick(clone, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "s.txt"), "one\nYtwo\nthree\n");
    EXPECT_EQ(window->TabGroup(0)->tabText(0), "s.txt");

    QTest::keyClick(half, Qt::Key_Z, Qt::ControlModifier); // the clone's edit, from the half
    EXPECT_EQ(zvtest::EditorText(*clone), "one\ntwo\nthree\n");
    ASSERT_TRUE(window->SplitCurrentMemo(TSplitKind::Vertical)) << "the half's tab turns";
    main.setFocus();
    ASSERT_TRUE(window->UnsplitCurrentMemo());
    EXPECT_EQ(window->ActiveEditor(), &main) << "the tab's first editor stays";
    EXPECT_EQ(window->TabGroup(0)->widget(0), &main);
}

TEST_F(TabGroupsTest, ATabMovedToAnotherGroupAndBackKeepsTextCaretAndModifiedMark) {
    Open("a.txt", "alpha\n");
    zv::TEditorWidget& b = Open("b.txt", "beta\n");
    b.Memo().SetTextCursor(4, 0);
    QTest::keyClicks(&b, "zz");
    ASSERT_TRUE(window->MoveTabToGroup(1));
    ASSERT_TRUE(Shown(1));
    EXPECT_EQ(window->TabGroup(0)->count(), 1);
    ASSERT_EQ(window->TabGroup(1)->count(), 1);
    EXPECT_EQ(window->TabGroup(1)->widget(0), &b);
    EXPECT_EQ(window->TabGroup(1)->tabText(0), "b.txt*");
    EXPECT_EQ(Doc("b.txt").FTabGroup, 1);
    EXPECT_EQ(window->ActiveEditor(), &b);

    Open("c.txt", "gamma\n"); // into the active group
    int group = -1;
    EXPECT_EQ(window->FindDocMemo((dir / "c.txt").string(), group), 1);
    EXPECT_EQ(group, 1);
    EXPECT_EQ(window->FindDocMemo((dir / "C.txt").string(), group), -1) << "case counts";

    window->TabGroup(1)->setCurrentIndex(0); // b
    ASSERT_TRUE(window->MoveTabToGroup(-1));
    EXPECT_TRUE(Shown(1)) << "c is still there";
    ASSERT_TRUE(window->MoveTabToGroup(1) && window->MoveTabToGroup(-1));
    window->EditorAt(helper.FindDocMemo((dir / "c.txt").string()))->setFocus(); // c is in charge
    ASSERT_TRUE(window->MoveTabToGroup(-1));
    EXPECT_FALSE(Shown(1)) << "an emptied group goes";
    EXPECT_FALSE(window->MoveTabToGroup(-1)) << "no group left of the first";

    EXPECT_EQ(zvtest::EditorText(b), "betazz\n");
    EXPECT_EQ(b.Memo().Caret(), (zv::TZvPos{6, 0}));
    EXPECT_TRUE(Doc("b.txt").Modified());
    QTabWidget& first = *window->TabGroup(0);
    ASSERT_EQ(first.count(), 3);
    for (int i = 0; i < 3; ++i) // the helper's documents stand in tab order
        EXPECT_EQ(first.tabToolTip(i).toStdString(), helper.Documents()[i]->FFilePath);
    EXPECT_EQ(first.tabText(first.indexOf(&b)), "b.txt*");
}

TEST_F(TabGroupsTest, ClosingADocumentClosesItsClonesAndAClonesCloseOnlyItself) {
    for (const int answer : {zv::prCancel, zv::prNo, zv::prYes}) {
        const std::string what = "answer " + std::to_string(answer);
        zv::TEditorWidget& main = Open("x.txt", "orig\n");
        ASSERT_TRUE(window->SplitCurrentMemo(TSplitKind::Right));
        zv::TEditorWidget* clone = window->ActiveEditor();
        QTest::keyClicks(clone, "new ");
        prompt.Asked.clear();
        emit window->TabGroup(1)->tabCloseRequested(0); // the clone alone
        EXPECT_TRUE(prompt.Asked.empty()) << what << ": a clone closes without a question";
        EXPECT_FALSE(Shown(1)) << what;
        ASSERT_EQ(helper.Documents().size(), 1U) << what;
        EXPECT_EQ(zvtest::EditorText(main), "new orig\n") << what;

        main.setFocus();
        ASSERT_TRUE(window->SplitCurrentMemo(TSplitKind::Right));
        main.setFocus();
        ASSERT_TRUE(window->SplitCurrentMemo(TSplitKind::Vertical));
        prompt.Answers = {answer};
        QTest::keyClick(window->ActiveEditor(), Qt::Key_W, Qt::ControlModifier);
        EXPECT_EQ(prompt.Asked.size(), 1U) << what;
        const bool kept = answer == zv::prCancel;
        EXPECT_EQ(helper.Documents().size(), kept ? 1U : 0U) << what;
        EXPECT_EQ(Shown(1), kept) << what << ": the clone goes with its document";
        EXPECT_EQ(window->TabGroup(0)->count(), kept ? 1 : 0) << what;
        EXPECT_EQ(zvtest::ReadAll(dir / "x.txt"), answer == zv::prYes ? "new orig\n" : "orig\n")
            << what;
        if (kept) {
            EXPECT_EQ(zvtest::EditorText(*window->ActiveEditor()), "new orig\n") << what;
            prompt.Answers = {zv::prNo};
            ASSERT_TRUE(helper.CloseAllDocumentTabs());
            EXPECT_FALSE(Shown(1));
        }
        zvtest::WriteAll(dir / "x.txt", "orig\n");
    }
}

} // namespace
