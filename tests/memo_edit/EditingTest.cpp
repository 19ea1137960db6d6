// Editing behaviour at the edges: virtual space, auto-indent, auto-close, overtype, joins,
// columns, Home, clipboard forms, words and the change sequence's hooks.
#include "MemoFixture.h"

#include <gtest/gtest.h>

namespace zv::test {
namespace {

TEditorServices ClipboardOnly(IClipboard& clipboard) {
    TEditorServices services;
    services.Clipboard = &clipboard;
    return services;
}

// One edit at a caret, with the options it needs: the text and the caret it leaves, and
// undoing it gives the loaded bytes back with the caret where it stood.
enum TOption { kTabAsSpaces = 1, kOverwrite = 2, kAutoClose = 4, kCopyLine = 8 };
enum class TEdit { Keys, Enter, SmartPaste, Cut };

struct TEditCase {
    const char* name;
    const char* text;
    TZvPos caret;
    int options;
    TEdit edit;
    std::u16string_view input; // the keys or the pasted text
    std::u16string_view expected;
    TZvPos after;
    bool undoRestoresCaret = true; // a whole-line cut's undo leaves it below the line
};

// One case a row.
// clang-format off
const TEditCase kEdits[] = {
    {"typing past the end pads", "ab\ncd", {6, 0}, 0, TEdit::Keys, u"x", u"ab    x\ncd", {7, 0}},
    {"Enter inside the indent splits it", "    abc", {2, 0}, 0, TEdit::Enter, u"", u"  \n    abc",
     {2, 1}},
    {"Enter copies a tab as spaces", "\tx", {2, 0}, kTabAsSpaces, TEdit::Enter, u"", u"\tx\n    ",
     {4, 1}},
    {"Enter in overtype moves down only", "abc\ndef", {2, 0}, kOverwrite, TEdit::Enter, u"",
     u"abc\ndef", {2, 1}},
    {"overtype replaces clusters", "ab\xF0\x9F\x98\x80" "c", {2, 0}, kOverwrite, TEdit::Keys,
     u"XYZ", u"abXYZ", {5, 0}},
    {"auto-close adds the partner", "", {0, 0}, kAutoClose, TEdit::Keys, u"(", u"()", {1, 0}},
    {"auto-close steps over the partner", "", {0, 0}, kAutoClose, TEdit::Keys, u"()", u"()", {2, 0}},
    {"no partner for a quote after a letter", "it", {2, 0}, kAutoClose, TEdit::Keys, u"\"",
     u"it\"", {3, 0}},
    {"a partner for a quote after a blank", "it ", {3, 0}, kAutoClose, TEdit::Keys, u"\"",
     u"it \"\"", {4, 0}},
    {"no partner before a letter", "it", {0, 0}, kAutoClose, TEdit::Keys, u"(", u"(it", {1, 0}},
    {"smart paste moves following lines to the column", "    x", {4, 0}, 0, TEdit::SmartPaste,
     u"if {\n  a;\n}", u"    if {\n      a;\n    }x", {5, 2}},
    {"cut without selection takes the whole line", "one\ntwo\nthree", {1, 1}, kCopyLine,
     TEdit::Cut, u"", u"one\nthree", {0, 1}, false},
};
// clang-format on

void Apply(TZvMemo& m, const TEditCase& c) {
    m.FTabAsSpaces = c.options & kTabAsSpaces;
    m.FOverwrite = c.options & kOverwrite;
    m.FAutoCloseBracesText = c.options & kAutoClose;
    m.FCopyLineToClipboard = c.options & kCopyLine;
    m.SetTextCursor(c.caret.X, c.caret.Y);
    switch (c.edit) {
    case TEdit::Keys:
        return Type(m, c.input);
    case TEdit::Enter:
        m.EnterPress();
        return;
    case TEdit::SmartPaste:
        m.SmartPasteText(c.input, false, true);
        return;
    case TEdit::Cut:
        m.CutToClipboard();
    }
}

TEST(Editing, EditsAtTheCaretAndTheirUndo) {
    for (const TEditCase& c : kEdits) {
        SCOPED_TRACE(c.name);
        TMemoFixture fx(c.text);
        const std::string original = fx.Bytes();
        Apply(fx.memo, c);
        EXPECT_EQ(fx.Text(), c.expected);
        EXPECT_EQ(fx.memo.Caret(), c.after);
        while (fx.memo.CanUndo())
            fx.memo.Undo();
        EXPECT_EQ(fx.Bytes(), original);
        EXPECT_FALSE(fx.memo.Modified());
        if (c.undoRestoresCaret && fx.memo.UndoList().Count() > 0) { // virtual space too
            EXPECT_EQ(fx.memo.Caret(), c.caret);
        }
    }
}

// Edits with nothing to do, or refused, change nothing and record nothing.
TEST(Editing, RefusedEditsRecordNothing) {
    TMemoFixture fx("ab");
    fx.memo.SetTextCursor(0, 0);
    EXPECT_FALSE(fx.memo.Backspace());
    fx.memo.FReadOnly = true;
    EXPECT_FALSE(fx.memo.KeyPress(u'x'));
    EXPECT_FALSE(fx.memo.EnterPress());
    EXPECT_FALSE(fx.memo.DeleteChar());
    EXPECT_EQ(fx.Text(), u"ab");
    fx.memo.FReadOnly = false;
    EXPECT_TRUE(fx.memo.DeleteCurrentLine()); // the only line empties once
    EXPECT_EQ(fx.Text(), u"");
    EXPECT_FALSE(fx.memo.DeleteCurrentLine());
    EXPECT_EQ(fx.memo.UndoList().Count(), 1);
}

// Backspace over a pair is the model tests' job; the caret must never stop inside one.
TEST(Editing, TheCaretNeverStopsInsideASurrogatePair) {
    TMemoFixture fx("a\xF0\x9F\x98\x80"
                    "b");
    fx.memo.SetTextCursor(3, 0);
    fx.memo.MoveCursor(-1, 0, 0);
    EXPECT_EQ(fx.memo.Caret().X, 1);
    fx.memo.MoveCursor(1, 0, 0);
    EXPECT_EQ(fx.memo.Caret().X, 3);
}

TEST(Editing, ATabKeyIsNeverMergedWithTyping) {
    TMemoFixture fx("");
    Type(fx.memo, u"ab\tc");
    EXPECT_EQ(fx.Text(), u"ab  c"); // tab as spaces to the next stop
    EXPECT_EQ(fx.memo.UndoList().Count(), 3);
}

TEST(Editing, ColumnsConvertBothWays) {
    TMemoFixture fx("\tb");
    EXPECT_EQ(fx.memo.FromRealCursorPos(0, 1), 4);
    EXPECT_EQ(fx.memo.FromRealCursorPos(0, 2), 5);
    EXPECT_EQ(fx.memo.FromRealCursorPos(0, 4), 7); // past the end each column counts 1
    EXPECT_EQ(fx.memo.ToRealCursorPos(0, 1), 0);   // first half of the tab: before it
    EXPECT_EQ(fx.memo.ToRealCursorPos(0, 3), 1);   // second half: behind it
    EXPECT_EQ(fx.memo.ToRealCursorPos(0, 7), 4);
}

TEST(Editing, HomeTogglesBetweenTheIndentAndColumnZero) {
    TMemoFixture fx("   x\n    ");
    fx.memo.SetTextCursor(4, 0);
    fx.memo.GoHome(0);
    EXPECT_EQ(fx.memo.Caret().X, 0);
    fx.memo.GoHome(0);
    EXPECT_EQ(fx.memo.Caret().X, 3);
    fx.memo.SetTextCursor(0, 1);
    fx.memo.GoHome(0); // blanks only: stays
    EXPECT_EQ(fx.memo.Caret().X, 0);
}

TEST(Editing, NotepadCaretWrapsAtLineEndsOthersMayPassThem) {
    TMemoFixture fx("ab\ncd");
    fx.memo.SetTextCursor(2, 0);
    fx.memo.MoveCursor(1, 0, 0);
    EXPECT_EQ(fx.memo.Caret(), (TZvPos{3, 0}));
    fx.memo.FNotepadCursor = true;
    fx.memo.SetTextCursor(2, 0);
    fx.memo.MoveCursor(1, 0, 0);
    EXPECT_EQ(fx.memo.Caret(), (TZvPos{0, 1}));
    fx.memo.MoveCursor(-1, 0, 0);
    EXPECT_EQ(fx.memo.Caret(), (TZvPos{2, 0}));
}

TEST(Editing, ShiftMovesExtendAndCtrlMovesByWords) {
    TMemoFixture fx("one two.three");
    fx.memo.MoveCursor(1, 0, ssCtrl);
    EXPECT_EQ(fx.memo.Caret().X, 4);
    fx.memo.MoveCursor(1, 0, ssCtrl | ssShift);
    fx.memo.MoveCursor(1, 0, ssCtrl | ssShift);
    EXPECT_EQ(fx.memo.GetSelection(), u"two.");
    fx.memo.MoveCursor(-1, 0, 0);
    EXPECT_FALSE(fx.memo.HasSelection());
}

TEST(Editing, CopyWithoutSelectionTakesTheTokenOrTheWholeLine) {
    TMemoFixture fx("alpha beta\ngamma");
    TMemoryClipboard clipboard;
    fx.memo.SetServices(ClipboardOnly(clipboard));
    fx.memo.SetTextCursor(7, 0);
    ASSERT_TRUE(fx.memo.CopyToClipboard());
    std::u16string text;
    bool whole = true;
    clipboard.GetText(text, whole);
    EXPECT_EQ(text, u"beta");
    EXPECT_FALSE(whole);

    fx.memo.FCopyLineToClipboard = true;
    fx.memo.CopyToClipboard();
    clipboard.GetText(text, whole);
    EXPECT_EQ(text, u"alpha beta\n");
    EXPECT_TRUE(whole);
    fx.memo.SetTextCursor(2, 1);
    fx.memo.PasteFromClipboard();
    EXPECT_EQ(fx.Text(), u"alpha beta\nalpha beta\ngamma"); // above the caret's row
    EXPECT_EQ(fx.memo.Caret(), (TZvPos{2, 2}));
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"alpha beta\ngamma");
}

TEST(Editing, ClipboardCarriesLfAndReadsTheInTextLineMark) {
    TMemoFixture fx("a\r\nb");
    TMemoryClipboard clipboard;
    fx.memo.SetServices(ClipboardOnly(clipboard));
    fx.memo.SelectAll();
    fx.memo.CopyToClipboard();
    std::u16string text;
    bool whole = false;
    clipboard.GetText(text, whole);
    EXPECT_EQ(text, u"a\nb");
    std::u16string marked = u"x\r\n";
    for (char16_t c : {0, 0, 0, 0, 1})
        marked.push_back(c);
    EXPECT_TRUE(TZvCustomMemo::SplitClipboardText(marked));
    EXPECT_EQ(marked, u"x\r\n");
    std::u16string plain = u"y";
    EXPECT_FALSE(TZvCustomMemo::SplitClipboardText(plain));
}

TEST(Editing, DragMoveIsOneUndoStep) {
    TMemoFixture fx("abc def\nghi");
    fx.memo.SetSelection({0, 0}, {3, 0});
    fx.memo.DropText(3, 1, u"abc", true); // the moved text: the model tests' job
    EXPECT_EQ(fx.memo.GetSelection(), u"abc");
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"abc def\nghi");
    EXPECT_EQ(fx.memo.GetSelection(), u"abc");
}

TEST(Editing, WordsAtTheCaret) {
    TMemoFixture fx("call foo_bar(0x1F, y);");
    fx.memo.SetTextCursor(7, 0);
    int start = 0;
    EXPECT_EQ(fx.memo.WordAtCursorPos(start, true), u"foo_bar");
    EXPECT_EQ(start, 6);
    EXPECT_EQ(fx.memo.GetSelection(), u"foo_bar");
    fx.memo.SetTextCursor(15, 0);
    EXPECT_EQ(fx.memo.NumberAtCursor(), u"0x1F");
    EXPECT_EQ(fx.memo.IdentifierAtCursor(), u"0x1F");
    fx.memo.SetTextCursor(40, 0);
    EXPECT_EQ(fx.memo.WordAtCursor(), u""); // past the end: no word
}

TEST(Editing, ABracketOrQuoteTypedOverASelectionEnclosesIt) {
    TMemoFixture fx("a\r\nbc\r\nd");
    fx.memo.SetSelection({1, 0}, {1, 1});
    Type(fx.memo, u"(");
    EXPECT_EQ(fx.Text(), u"a(c\r\nd"); // option off: the bracket replaces the selection
    fx.memo.Undo();
    fx.memo.FEncloseSelectionWithParenthesis = true;
    fx.memo.FEncloseSelectionWithQuotes = true;
    const std::string before = fx.Bytes();
    fx.memo.SetSelection({1, 1}, {0, 0}); // reversed ends
    Type(fx.memo, u"[");
    EXPECT_EQ(fx.Bytes(), "[a\r\nb]c\r\nd"); // the enclosed line end keeps its kind
    EXPECT_EQ(fx.memo.GetSelection(), u"a\r\nb");
    Type(fx.memo, u"'");
    EXPECT_EQ(fx.Bytes(), "['a\r\nb']c\r\nd");
    fx.memo.Undo();
    fx.memo.Undo();
    EXPECT_EQ(fx.Bytes(), before);
}

TEST(Editing, WholeLinesAreDeletedInsertedAndDuplicatedAsOneStep) {
    TMemoFixture fx("one\ntwo\nthree");
    const std::string original = fx.Bytes();
    fx.memo.SetTextCursor(2, 1);
    fx.memo.DuplicateCurrentLine(); // the texts of these edits: the model tests' job
    EXPECT_EQ(fx.memo.Caret(), (TZvPos{2, 1}));
    fx.memo.SetTextCursor(1, 3);
    fx.memo.DeleteCurrentLine(); // the last line takes the line end before it
    EXPECT_EQ(fx.memo.Caret(), (TZvPos{1, 2}));
    fx.memo.InsertLine(0);
    EXPECT_EQ(fx.Text(), u"\none\ntwo\ntwo");
    EXPECT_EQ(fx.memo.UndoList().Get(0)->FAction, "009");
    EXPECT_EQ(fx.memo.UndoList().Get(1)->FAction, "006");
    EXPECT_EQ(fx.memo.UndoList().Get(2)->FAction, "007");
    while (fx.memo.CanUndo())
        fx.memo.Undo();
    EXPECT_EQ(fx.Bytes(), original);
}

TEST(Editing, EveryChangePassesTheOneSequence) {
    // The reader is paused around the row writes and told the change before any view paints.
    struct TReader : ITextReader {
        std::vector<std::string>& calls;
        explicit TReader(std::vector<std::string>& c) : calls(c) {}
        void PauseReading() override { calls.push_back("pause"); }
        void ResumeReading() override { calls.push_back("resume"); }
        TRowRange RowsChanged(const TTextChange& c) override {
            calls.push_back("changed" + std::to_string(c.From.Y) + "+" +
                            std::to_string(c.RowsAdded));
            return {c.From.Y, c.InOneRow() ? c.From.Y : -1};
        }
    };
    std::vector<std::string> calls;
    TZvMemoStrings lines;
    lines.SetTextStr(u"a\nb\nc");
    TZvMemo m;
    m.SetLines(&lines);
    m.Document().SetReader(std::make_shared<TReader>(calls));
    std::vector<std::pair<int, int>> painted;
    m.FOnInvalidate = [&](int a, int b) {
        calls.push_back("paint");
        painted.emplace_back(a, b);
    };
    m.SetTextCursor(1, 1);
    m.KeyPress(u'x');
    m.EnterPress();
    m.Undo();
    EXPECT_EQ(calls, (std::vector<std::string>{"pause", "changed1+0", "resume", "paint", "pause",
                                               "changed1+1", "resume", "paint", "pause",
                                               "changed1+-1", "resume", "paint"}));
    EXPECT_EQ(painted[0], (std::pair<int, int>{1, 1}));  // one row
    EXPECT_EQ(painted[1], (std::pair<int, int>{1, -1})); // rows moved: to the end
}

} // namespace
} // namespace zv::test
