// Day-one editing in the real window, as keystrokes: Tab and Shift+Tab, indentation that
// follows the document (make needs tabs), Alt chords, Ctrl+Tab between documents, word
// deletes against a model of the word rule, and typing that the saved file can hold.
#include "UiFixtures.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"
#include "shell/MainForm.h"
#include "shell/Settings.h"
#include "shell/ZvIniFiles.h"

#include <QKeyEvent>
#include <QTabWidget>

#include <cstdlib>
#include <random>

namespace fs = std::filesystem;

namespace {

// The shipped syntax files, before the first look-up of the data root fixes it.
const bool kTreeRoot = ::setenv("ZEVRIT_ROOT", ZV_TEST_TREE, 1) == 0;

// Types `text` as key events carrying the characters (what an input of any layout sends).
void Type(QWidget* widget, const QString& text) {
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(widget, &press);
    }
}

int Shell(const std::string& command) {
    return std::system(command.c_str());
}

class EditingKeysTest : public zvtest::TShownWindowTest {
protected:
    EditingKeysTest() : TShownWindowTest("zv-keys") {}
    void SetUp() override {
        zv::TMemIniFileW settings;
        settings.WriteInteger("EditorMisc", "DefaultEncoding", 65001);
        helper.SetCustomize(settings);
        TShownWindowTest::SetUp();
    }
    static std::string Text(const zv::TEditorWidget& editor) { return zvtest::EditorText(editor); }
    zv::TMainWindow& Win() { return *window; }
};

// Each line of `text` but empty ones with `unit` in front.
std::string Indented(const std::string& text, const std::string& unit) {
    std::string out;
    bool lineStart = true;
    for (char c : text) {
        if (lineStart && c != '\n')
            out += unit;
        out += c;
        lineStart = c == '\n';
    }
    return out;
}

TEST_F(EditingKeysTest, TabAndShiftTabIndentTheSelectedLinesInTheDocumentsOwnStyle) {
    struct TCase {
        const char* name;
        std::string text, unit;
    };
    const std::vector<TCase> cases = {
        {"tabs.c", "int f()\n{\n\treturn 1;\n\n\tx;\n}", "\t"},
        {"spaces.py", "def f():\n    return 1\n\n    pass\nx = 2", "    "},
    };
    for (const TCase& c : cases) {
        zv::TEditorWidget& editor = Open(c.name, c.text);
        QTest::keyClick(&editor, Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClick(&editor, Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), &editor) << c.name << ": Tab keeps the focus";
        EXPECT_EQ(Text(editor), Indented(c.text, c.unit)) << c.name;
        QTest::keyClick(&editor, Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(Text(editor), c.text) << c.name << ": Shift+Tab takes it back";
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Text(editor), Indented(c.text, c.unit)) << c.name << ": one undo step";
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Text(editor), c.text) << c.name;
    }
}

TEST_F(EditingKeysTest, EnterInAMakefileRecipeKeepsTheTabAndMakeAcceptsTheFile) {
    zv::TEditorWidget& editor = Open("Makefile.mk", "all:\n\techo one\n");
    editor.Memo().SetTextCursor(9, 1);
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClicks(&editor, "echo two");
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClick(&editor, Qt::Key_Backspace);
    QTest::keyClicks(&editor, "x:");
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClick(&editor, Qt::Key_Tab);
    QTest::keyClicks(&editor, "echo three");
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    const fs::path file = dir / "Makefile.mk";
    EXPECT_EQ(zvtest::ReadAll(file), "all:\n\techo one\n\techo two\nx:\n\techo three\n");
    EXPECT_EQ(Shell("make -n -s -f '" + file.string() + "' all x >/dev/null 2>&1"), 0);
}

TEST_F(EditingKeysTest, EnterIndentsDeeperAfterTheOpeningTheSyntaxNames) {
    zv::TEditorWidget& c = Open("f.c", "int f() {");
    ASSERT_NE(c.Scan(), nullptr) << "C colours and indents by its syntax file";
    c.Memo().SetTextCursor(9, 0);
    QTest::keyClick(&c, Qt::Key_Return);
    EXPECT_EQ(zv::Utf16ToUtf8(c.Memo().RowText(1)), "    ");
    zv::TEditorWidget& text = Open("f.txt", "note {");
    text.Memo().SetTextCursor(6, 0);
    QTest::keyClick(&text, Qt::Key_Return);
    EXPECT_EQ(zv::Utf16ToUtf8(text.Memo().RowText(1)), "") << "plain text has no opening";
}

TEST_F(EditingKeysTest, AltChordsTypeNothingAndCtrlTabSwitchesDocuments) {
    Open("a.txt", "alpha");
    zv::TEditorWidget& b = Open("b.txt", "beta");
    QTest::keyClick(&b, Qt::Key_1, Qt::AltModifier);
    QTest::keyClick(&b, Qt::Key_K, Qt::AltModifier);
    EXPECT_EQ(Text(b), "beta");
    EXPECT_FALSE(b.IsModified());
    QTabWidget& tabs = *Win().TabGroup();
    ASSERT_EQ(tabs.currentIndex(), 1);
    QTest::keyClick(&b, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tabs.currentIndex(), 0);
    QTest::keyClick(Win().ActiveEditor(), Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(tabs.currentIndex(), 1);
    QTest::keyClick(Win().ActiveEditor(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(tabs.currentIndex(), 0);
    QTest::keyClick(Win().ActiveEditor(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(tabs.currentIndex(), 1);
    EXPECT_EQ(Text(*Win().EditorAt(0)), "alpha");
    EXPECT_EQ(Text(b), "beta") << "no key of the switch reached the text";
}

TEST_F(EditingKeysTest, ZoomMatchingBraceAndMiddleClickPaste) {
    zv::TEditorWidget& code = Open("m.c", "int f(int a) { return (a); }");
    const qreal base = code.font().pointSizeF();
    QTest::keyClick(&code, Qt::Key_Plus, Qt::ControlModifier);
    QTest::keyClick(&code, Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(code.Zoom(), 120);
    EXPECT_NEAR(code.font().pointSizeF(), base * 1.2, 0.01);
    QTest::keyClick(&code, Qt::Key_0, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_EQ(code.Zoom(), 100);
    EXPECT_NEAR(code.font().pointSizeF(), base, 0.01);

    code.Memo().SetTextCursor(13, 0); // before "{"
    QTest::keyClick(&code, Qt::Key_B, Qt::ControlModifier);
    EXPECT_EQ(code.Memo().Caret(), (zv::TZvPos{28, 0})) << "behind the closing brace";
    QTest::keyClick(&code, Qt::Key_B, Qt::ControlModifier);
    EXPECT_EQ(code.Memo().Caret(), (zv::TZvPos{13, 0})) << "and back";
    // A partner thousands of rows down, past braces in strings and comments.
    std::string body = "void g() {\n";
    for (int i = 0; i < 5000; ++i)
        body += "  s = \"}\"; /* } */ h({a[i]});\n";
    zv::TEditorWidget& far = Open("far.c", body + "}\n");
    far.Memo().SetTextCursor(9, 0);
    QTest::keyClick(&far, Qt::Key_B, Qt::ControlModifier);
    EXPECT_EQ(far.Memo().Caret(), (zv::TZvPos{1, 5001})) << "behind the closing brace";

    code.Memo().SetTextCursor(4, 0);
    QTest::keyClick(&code, Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    zv::TEditorWidget& other = Open("p.txt", "[]");
    other.Memo().SetTextCursor(1, 0);
    QTest::mouseClick(other.viewport(), Qt::MiddleButton, Qt::NoModifier,
                      other.CaretRect().center());
    EXPECT_EQ(Text(other), "[f]") << "the selection made in the other editor";
    EXPECT_EQ(Text(code), "int f(int a) { return (a); }");
}

// The word rule: a word is a run of characters that are no boundary; a boundary alone is a
// step of its own; blanks after the step go with it.
bool Boundary(char c) {
    return std::string_view(" \t'.,;:!?()[]{}<>\"+-*/=\\|&^%$#@~`").find(c) !=
           std::string_view::npos;
}
int NextStop(const std::string& row, int x) {
    int y = x;
    while (y < static_cast<int>(row.size()) && !Boundary(row[y]))
        ++y;
    if (y == x)
        ++y;
    while (y < static_cast<int>(row.size()) && (row[y] == ' ' || row[y] == '\t'))
        ++y;
    return y;
}
int PrevStop(const std::string& row, int x) {
    while (x > 0 && (row[x - 1] == ' ' || row[x - 1] == '\t'))
        --x;
    if (x > 0 && Boundary(row[x - 1]))
        return x - 1;
    while (x > 0 && !Boundary(row[x - 1]))
        --x;
    return x;
}

TEST_F(EditingKeysTest, WordDeletesFollowTheWordRuleAndUndoBack) {
    const std::string row = "foo.bar(baz,  qux)  -> x+=y; 'it''s'\tend";
    zv::TEditorWidget& editor = Open("w.txt", row);
    std::mt19937 random(22);
    for (int i = 0; i < 60; ++i) {
        const bool back = i % 2 == 1;
        const int x = static_cast<int>(random() % row.size()) + (back ? 1 : 0);
        editor.Memo().SetTextCursor(x, 0);
        if (back)
            QTest::keyClick(&editor, Qt::Key_Backspace, Qt::ControlModifier);
        else
            QTest::keyClick(&editor, Qt::Key_Delete, Qt::ControlModifier);
        const int from = back ? PrevStop(row, x) : x, to = back ? x : NextStop(row, x);
        EXPECT_EQ(Text(editor), row.substr(0, from) + row.substr(to))
            << (back ? "Ctrl+Backspace" : "Ctrl+Delete") << " at " << x;
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
        ASSERT_EQ(Text(editor), row);
    }
}

// A pure ASCII file opens in the default encoding (UTF-8 here), so typed characters survive;
// a file in a legacy code page asks before a save would lose any, and each answer gives the
// bytes it promises.
TEST_F(EditingKeysTest, TypedCharactersNeverSilentlyTurnIntoQuestionMarks) {
    zv::TEditorWidget& ascii = Open("ascii.txt", "plain\n");
    EXPECT_EQ(ascii.Lines()->CodePage(), 65001u);
    Type(&ascii, QString::fromUtf8("é → 日本 "));
    QTest::keyClick(&ascii, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "ascii.txt"), "é → 日本 plain\n");
    EXPECT_TRUE(prompt.Asked.empty());

    const std::string latin1 = "caf\xE9\n";
    struct TAnswer {
        int answer;
        std::string expectUtf8; // what iconv makes of the file, as UTF-8
        const char* from;
    };
    for (const TAnswer& a :
         {TAnswer{zv::prCancel, "café\n", "CP1252"}, TAnswer{zv::prNo, "café? \n", "CP1252"},
          TAnswer{zv::prYes, "café→ \n", "UTF-8"}}) {
        zv::TEditorWidget& doc = Open("latin1-" + std::to_string(a.answer) + ".txt", latin1);
        EXPECT_EQ(doc.Lines()->CodePage(), 1252u) << "not UTF-8, so the ANSI code page";
        doc.Memo().SetTextCursor(4, 0);
        Type(&doc, QString::fromUtf8("→ "));
        prompt.Answers = {a.answer};
        prompt.Asked.clear();
        QTest::keyClick(&doc, Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(prompt.Asked.size(), 1u);
        EXPECT_EQ(doc.IsModified(), a.answer == zv::prCancel);
        const fs::path file = dir / ("latin1-" + std::to_string(a.answer) + ".txt");
        const fs::path out = dir / "converted";
        ASSERT_EQ(Shell("iconv -f " + std::string(a.from) + " -t UTF-8 '" + file.string() +
                        "' > '" + out.string() + "'"),
                  0);
        EXPECT_EQ(zvtest::ReadAll(out), a.expectUtf8) << "answer " << a.answer;
    }
}

TEST_F(EditingKeysTest, StatusBarShowsTheEncodingAndABlankDocumentOpensAtStart) {
    zv::TEditorWidget& doc = Open("bom.txt", "\xEF\xBB\xBFx\n");
    EXPECT_EQ(Win().StatusEncoding(), "UTF-8 BOM");
    QTest::keyClick(&doc, Qt::Key_End);
    EXPECT_EQ(Win().StatusPosition(), "Ln 1, Col 2");

    zv::OpenSettings(dir / "Zevrit.ini").WriteBool("Customize", "BlankAtStartup", true);
    zv::THeadlessPrompt quiet{false};
    zv::TMainFormHelper own{quiet};
    zv::TMainWindow second(own);
    zv::TMainForm form(own, &second);
    zv::CloseSettings();
    form.FormShow({"zevrit"});
    ASSERT_EQ(second.TabGroup()->count(), 1) << "a blank document to type into";
    zv::TLoadFileArgs args;
    args.FileName = (dir / "bom.txt").string();
    ASSERT_TRUE(own.LoadFile(args));
    EXPECT_EQ(second.TabGroup()->count(), 1) << "the untouched blank gives way to the file";
    EXPECT_EQ(second.TabGroup()->tabText(0), "bom.txt");
}

} // namespace
