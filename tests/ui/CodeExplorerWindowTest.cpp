// The code explorer in the real window, as a user drives it: View > Code explorer shows the
// panel with the classes of the open file; moving the caret with the keys keeps the class and
// member around it selected; a click on a member puts the caret on its line; the filter box
// hides what does not match; typing a new function shows it once typing stops; a page lists
// its tags.
#include "UiFixtures.h"
#include "ui/Actions.h"
#include "ui/CodeExplorerPanel.h"

#include <QAction>
#include <QLineEdit>
#include <QListWidget>

namespace {

// The shipped syntax files, before the first look-up of the data root fixes it.
const bool kTreeRoot = ::setenv("ZEVRIT_ROOT", ZV_TEST_TREE, 1) == 0;

const std::string kSource = "class Shape {\n"            // 0
                            "public:\n"                  // 1
                            "    void Move(int dx) {\n"  // 2
                            "        x += dx;\n"         // 3
                            "    }\n"                    // 4
                            "    int x = 0;\n"           // 5
                            "};\n"                       // 6
                            "void Shape::Draw() {\n"     // 7
                            "}\n"                        // 8
                            "struct Point { int y; };\n" // 9
                            "int main() {\n"             // 10
                            "    return 0;\n"            // 11
                            "}\n";                       // 12

class CodeExplorerWindowTest : public zvtest::TShownWindowTest {
protected:
    CodeExplorerWindowTest() : TShownWindowTest("zv-explorer-ui") {}
    zv::TCodeExplorerPanel& Panel() const { return window->CodeExplorer(); }
    // Waits (at most 10 s) until the panel holds a structure that `ready` accepts: it comes
    // with the editor's next fold pass.
    template <class F> bool Built(F ready) const {
        for (int i = 0; i < 1000; ++i) {
            if (Panel().Structure() && ready())
                return true;
            QTest::qWait(10);
        }
        return false;
    }
    bool Built() const {
        return Built([] { return true; });
    }
    static QString Selected(const QListWidget* view) {
        return view->currentItem() ? view->currentItem()->text().trimmed() : QString();
    }
    static QStringList Visible(const QListWidget* view) {
        QStringList out;
        for (int i = 0; i < view->count(); ++i)
            if (!view->item(i)->isHidden())
                out << view->item(i)->text().trimmed();
        return out;
    }
};

TEST_F(CodeExplorerWindowTest, FollowsTheCaretGoesToClickedItemsFiltersAndRebuildsAfterTyping) {
    (void)kTreeRoot;
    zv::TEditorWidget& editor = Open("shapes.cpp", kSource);
    QAction* show = window->Actions().Get("CodeExplorerAction");
    ASSERT_NE(show, nullptr);
    show->trigger();
    ASSERT_TRUE(Panel().isVisible());
    ASSERT_TRUE(Built());
    EXPECT_EQ(Visible(Panel().OuterView()),
              (QStringList{"class Shape {", "struct Point { int y; };", "Module"}));

    // Down through the file: the outer and member entries around the caret, row by row.
    const std::vector<std::pair<QString, QString>> expected = {
        {"class Shape {", ""},          {"class Shape {", ""},
        {"class Shape {", "void Move"}, {"class Shape {", "void Move"},
        {"class Shape {", "void Move"}, {"class Shape {", ""},
        {"class Shape {", ""},          {"class Shape {", "void Draw"},
        {"class Shape {", "void Draw"}, {"struct Point { int y; };", ""},
        {"Module", "int main"},         {"Module", "int main"},
        {"Module", "int main"}};
    editor.setFocus();
    for (int row = 0; row < static_cast<int>(expected.size()); ++row) {
        ASSERT_EQ(editor.CaretRow(), row);
        EXPECT_EQ(Selected(Panel().OuterView()), expected[static_cast<std::size_t>(row)].first)
            << "row " << row;
        EXPECT_EQ(Selected(Panel().MemberView()), expected[static_cast<std::size_t>(row)].second)
            << "row " << row;
        QTest::keyClick(&editor, Qt::Key_Down);
    }

    // A click on a member of Shape: the caret goes to its line, and the editor takes the keys.
    QTest::keyClick(&editor, Qt::Key_Home, Qt::ControlModifier);
    QListWidget* members = Panel().MemberView();
    ASSERT_EQ(Visible(members), (QStringList{"void Move", "void Draw"}));
    QTest::mouseClick(members->viewport(), Qt::LeftButton, {},
                      members->visualItemRect(members->item(1)).center());
    EXPECT_EQ(editor.CaretRow(), 7);
    EXPECT_TRUE(editor.hasFocus());

    // The filter hides what does not match; the fixed entries stay.
    QTest::keyClicks(Panel().FilterBox(), "poi");
    EXPECT_EQ(Visible(Panel().OuterView()), (QStringList{"struct Point { int y; };", "Module"}));
    EXPECT_TRUE(Visible(members).isEmpty());
    Panel().FilterBox()->clear();

    // A function typed at the end is listed once typing stops.
    editor.setFocus();
    QTest::keyClick(&editor, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&editor, "void Later() {");
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClicks(&editor, "}");
    ASSERT_TRUE(Built([&] { return Visible(Panel().MemberView()).contains("void Later"); }));
    ASSERT_EQ(Selected(Panel().OuterView()), "Module");
    EXPECT_EQ(Visible(Panel().MemberView()), (QStringList{"int main", "void Later"}));

    // A line added on top moves every item down a row: the entries follow.
    QTest::keyClick(&editor, Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(&editor, Qt::Key_Return);
    ASSERT_TRUE(Built([&] { return Panel().OuterList().front().Row == 1; }));
}

// A page's tags in the outer list, as the syntax's tag folds name them, nested as they stand;
// the tag around the caret is the one selected.
TEST_F(CodeExplorerWindowTest, PageTagsAreOuterItems) {
    (void)kTreeRoot;
    zv::TEditorWidget& editor = Open("page.html", "<html>\n<head>\n  <title>T</title>\n"
                                                  "</head>\n<body>\n  <div class=\"a\">\n"
                                                  "    <p>x</p>\n  </div>\n  <script>\n"
                                                  "    var v = 1;\n  </script>\n</body>\n"
                                                  "</html>\n");
    window->Actions().Get("CodeExplorerAction")->trigger();
    ASSERT_TRUE(Built([&] { return Panel().OuterList().size() > 1; }));
    EXPECT_EQ(Visible(Panel().OuterView()),
              (QStringList{"<head>", "<body>", "<div class=\"a\">", "<script>", "Module"}));
    EXPECT_EQ(Panel().OuterList()[2].nLevel, 1);
    EXPECT_EQ(Panel().OuterList()[2].sLongParent, u"<body>");
    editor.setFocus();
    editor.Memo().SetTextCursor(0, 6);
    Panel().Follow(&editor);
    EXPECT_EQ(Selected(Panel().OuterView()), "<div class=\"a\">");
    editor.Memo().SetTextCursor(0, 11); // behind the script, still in the body
    Panel().Follow(&editor);
    EXPECT_EQ(Selected(Panel().OuterView()), "<body>");
}

} // namespace
