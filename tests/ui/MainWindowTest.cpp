// The first window off screen: files of a command line become tabs, tabs follow documents,
// the editor widget scrolls to a line, keys move through a long document,
// Ctrl+S saves, the modified mark shows, handed-over text is pasted, editors take the
// editor keys of the settings.
#include "UiFixtures.h"
#include "common/Utf.h"
#include "shell/HandOver.h"
#include "shell/MainForm.h"
#include "shell/Settings.h"

#include <QAbstractButton>
#include <QTabBar>
#include <QTabWidget>

namespace fs = std::filesystem;

namespace {

class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override { zvtest::TheApp<QApplication>(); }
    std::string Write(const std::string& name, const std::string& text) {
        zvtest::WriteAll(dir / name, text);
        return (dir / name).string();
    }
    bool Load(const std::string& path) {
        zv::TLoadFileArgs args;
        args.FileName = path;
        return helper.LoadFile(args);
    }
    zvtest::TTempDir temp{"zv-ui"};
    const fs::path dir = temp.Path();
    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
};

TEST_F(MainWindowTest, CommandLineFilesBecomeTabsShowingTheirText) {
    std::string longText;
    for (int i = 1; i <= 40; ++i)
        longText += "int line" + std::to_string(i) + ";\n";
    const auto b = Write("b.c", longText);
    const auto a = Write("a.txt", "alpha\nbeta");
    zv::TMainWindow window(helper);
    zv::TMainForm form(helper, &window);
    window.show();
    form.FormShow({"zevrit", b, "/L:3", a, "/R"});
    ASSERT_EQ(window.TabGroup()->count(), 2);
    EXPECT_EQ(window.TabGroup()->tabText(0), "**a.txt")
        << "collected files open sorted; one not shown yet is read when it first shows";
    EXPECT_EQ(window.TabGroup()->tabText(1), "b.c");
    EXPECT_EQ(zvtest::EditorText(*window.EditorAt(1)), longText);
    EXPECT_EQ(window.TabGroup()->currentIndex(), 1) << "the last file opened is active";
    EXPECT_EQ(window.ActiveEditor()->CaretRow(), 2) << "/L:3 puts the caret on line 3";
    EXPECT_TRUE(helper.Documents()[0]->FReadOnly && helper.Documents()[1]->FReadOnly);
    window.TabGroup()->setCurrentIndex(0);
    EXPECT_EQ(window.TabGroup()->tabText(0), "a.txt");
    EXPECT_EQ(zvtest::EditorText(*window.EditorAt(0)), zvtest::ReadAll(a));
}

TEST_F(MainWindowTest, ModifiedMarkFollowsTheEditorUntilSaved) {
    const auto path = Write("R&D.txt", "abc\n");
    ASSERT_TRUE(Load(path));
    zv::TMainWindow window(helper);
    window.show();
    QApplication::setActiveWindow(&window); // shortcuts reach the active window only
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.DocumentAdded(*helper.Documents()[0]);
    EXPECT_EQ(window.TabGroup()->tabText(0), "R&&D.txt") << "no mnemonic from the name";
    auto* editor = window.EditorAt(0);
    QTest::keyClicks(editor, "x");
    const zv::TDocument& doc = *helper.Documents()[0];
    EXPECT_TRUE(doc.Modified());
    EXPECT_EQ(window.TabGroup()->tabText(0), "R&&D.txt*");
    EXPECT_EQ(window.windowTitle().toStdString(), "Zevrit - " + path + "*");

    QTest::keyClick(window.windowHandle(), Qt::Key_S, Qt::ControlModifier); // the window's key
    EXPECT_EQ(zvtest::ReadAll(path), "xabc\n");
    EXPECT_FALSE(doc.Modified());
    EXPECT_EQ(window.TabGroup()->tabText(0), "R&&D.txt");
    EXPECT_EQ(window.windowTitle().toStdString(), "Zevrit - " + path);

    QTest::keyClick(editor, Qt::Key_Backspace);
    EXPECT_TRUE(doc.Modified());
    QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(doc.Modified()) << "undo back to the saved text clears the mark";
    EXPECT_EQ(window.TabGroup()->tabText(0), "R&&D.txt");
}

TEST_F(MainWindowTest, HandedOverTextIsPastedBeforeTheSelection) {
    zv::TMainWindow window(helper);
    zv::TMainForm form(helper, &window);
    window.AttachForm(form);
    window.show();
    form.HandOverReceived(zv::kHandOverPaste, "lost"); // no document: nothing to paste into
    ASSERT_TRUE(Load(Write("p.txt", "alpha beta\n")));
    auto& memo = window.ActiveEditor()->Memo();
    memo.SetSelection({2, 0}, {5, 0});
    form.HandOverReceived(zv::kHandOverPaste, "XY");
    EXPECT_EQ(zv::Utf16ToUtf8(memo.RowText(0)), "alXYpha beta")
        << "the selection stays, text goes first";
    EXPECT_TRUE(helper.Documents()[0]->Modified());

    form.HandOverReceived(zv::kHandOverZenWindow, " 4711 ");
    EXPECT_EQ(form.FZenHWnd, 4711u);
}

TEST_F(MainWindowTest, TabsFollowDocumentsAndTitleNamesTheActiveOne) {
    zv::TMainWindow window(helper);
    window.show();
    const auto a = Write("a.txt", "alpha\n");
    const auto b = Write("b.txt", "beta\n");
    ASSERT_TRUE(Load(a));
    ASSERT_TRUE(Load(b));
    ASSERT_EQ(window.TabGroup()->count(), 2);
    EXPECT_EQ(window.TabGroup()->tabText(1), "b.txt");
    EXPECT_EQ(window.windowTitle().toStdString(), "Zevrit - " + b);
    ASSERT_TRUE(Load(a)) << "an open file is activated, not opened twice";
    EXPECT_EQ(window.TabGroup()->count(), 2);
    EXPECT_EQ(window.TabGroup()->currentIndex(), 0);
    window.TabGroup()->setCurrentIndex(1);
    EXPECT_EQ(helper.ActiveDocument()->FFilePath, b) << "clicking a tab activates its document";
    window.TabGroup()->tabCloseRequested(0);
    ASSERT_EQ(window.TabGroup()->count(), 1);
    EXPECT_EQ(helper.Documents().size(), 1u);
    EXPECT_EQ(window.EditorAt(0)->Lines(), &helper.Documents()[0]->Lines());

    // The current tab alone carries a close button, which follows it; a middle click closes
    // any tab.
    for (const char* name : {"c.txt", "d.txt", "e.txt"})
        ASSERT_TRUE(Load(Write(name, "x\n")));
    QTabBar* bar = window.TabGroup()->tabBar();
    QApplication::processEvents();
    window.TabGroup()->setCurrentIndex(1);
    for (int i = 0; i < bar->count(); ++i)
        EXPECT_EQ(bar->tabButton(i, QTabBar::RightSide) != nullptr, i == 1) << i;
    auto* button = qobject_cast<QAbstractButton*>(bar->tabButton(1, QTabBar::RightSide));
    ASSERT_NE(button, nullptr);
    button->click();
    ASSERT_EQ(bar->count(), 3);
    EXPECT_EQ(helper.FindDocMemo((dir / "c.txt").string()), -1) << "c.txt was tab 1";
    ASSERT_NE(bar->tabButton(bar->currentIndex(), QTabBar::RightSide), nullptr);
    QTest::mouseClick(bar, Qt::MiddleButton, {}, bar->tabRect(0).center());
    ASSERT_EQ(bar->count(), 2);
    EXPECT_EQ(helper.FindDocMemo(b), -1) << "b.txt was tab 0";
}

// What the editor paints is checked pixel by pixel in the colour tests.
TEST_F(MainWindowTest, EditorScrollsToALineAndKeysMoveThroughALongDocument) {
    std::string text;
    for (int i = 1; i <= 5000; ++i)
        text += "row " + std::to_string(i) + "\tMMMM\n";
    ASSERT_TRUE(Load(Write("long.txt", text)));
    zv::TMainWindow window(helper);
    window.resize(600, 400);
    window.show();
    window.DocumentAdded(*helper.Documents()[0]);
    auto* full = window.EditorAt(0);
    full->resize(600, 400);

    window.ShowLine(3000);
    EXPECT_EQ(full->CaretRow(), 2999);
    EXPECT_LE(full->TopRow(), 2999);
    EXPECT_GT(full->TopRow() + full->VisibleRowCount(), 2999);

    full->ShowRow(0);
    QTest::keyClick(full, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(full->CaretRow(), helper.Documents()[0]->Lines().Count() - 1);
    const int top = full->TopRow();
    QTest::keyClick(full, Qt::Key_Up);
    EXPECT_EQ(full->TopRow(), top) << "one row up inside the view does not scroll";
}

// Each editor takes the "EditorMisc" keys read when the main object was made: with
// AutoIndent off a new row starts at column 0; with the default it keeps the indent.
TEST_F(MainWindowTest, EditorsTakeTheEditorKeysOfTheSettings) {
    const auto path = Write("indent.txt", "    x");
    auto newRowAfterEnter = [&](bool autoIndent) {
        zv::OpenSettings(dir / "Zevrit.ini").WriteBool("EditorMisc", "AutoIndent", autoIndent);
        zv::THeadlessPrompt quiet{false};
        zv::TMainFormHelper own{quiet};
        zv::TMainWindow window(own);
        zv::TMainForm form(own, &window);
        zv::CloseSettings();
        window.show();
        form.FormShow({"zevrit", path});
        auto* editor = window.ActiveEditor();
        editor->Memo().SetTextCursor(5, 0);
        QTest::keyClick(editor, Qt::Key_Return);
        return zv::Utf16ToUtf8(editor->Memo().RowText(1));
    };
    EXPECT_EQ(newRowAfterEnter(true), "    ");
    EXPECT_EQ(newRowAfterEnter(false), "");
}

} // namespace
