// The undo list: merging of runs, the redo branch, groups, the limit, the save point and the
// modified flag, action texts, line history, and the failure path.
#include "MemoFixture.h"

#include "common/Utf.h"

#include <gtest/gtest.h>

namespace zv::test {
namespace {

TEST(UndoList, TypingRunsMergeUntilTheCaretMoves) {
    TMemoFixture fx("");
    Type(fx.memo, u"abc");
    fx.memo.SetTextCursor(1, 0);
    Type(fx.memo, u"d");
    EXPECT_EQ(fx.memo.UndoList().Count(), 2);
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"abc");
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"");
}

TEST(UndoList, BackspaceAndDeleteRunsAreSeparateAndReadInDocumentOrder) {
    TMemoFixture fx("abcdef");
    fx.memo.SetTextCursor(3, 0);
    fx.memo.Backspace();
    fx.memo.Backspace();
    fx.memo.DeleteChar();
    fx.memo.DeleteChar();
    ASSERT_EQ(fx.memo.UndoList().Count(), 2);
    EXPECT_EQ(fx.memo.UndoList().Get(1)->FActionText, u"bc");
    EXPECT_EQ(fx.memo.UndoList().Get(0)->FActionText, u"de");
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"adef");
}

TEST(UndoList, ANewEditAfterUndoDropsTheRedoBranch) {
    TMemoFixture fx("");
    Type(fx.memo, u"ab");
    fx.memo.Undo();
    EXPECT_TRUE(fx.memo.CanRedo());
    Type(fx.memo, u"x");
    EXPECT_FALSE(fx.memo.CanRedo());
    EXPECT_EQ(fx.memo.UndoList().Count(), 1);
}

// Whether the text differs from the saved one is the model tests' job; here the listener
// hears every change of the state, once, across a save in the middle of the history.
TEST(UndoList, TheListenerHearsEveryChangeOfTheModifiedState) {
    TMemoFixture fx("text");
    std::vector<bool> told;
    fx.memo.FOnModifiedChange = [&](bool m) { told.push_back(m); };
    fx.memo.SetTextCursor(4, 0);
    Type(fx.memo, u"ab");
    fx.memo.Saved();
    Type(fx.memo, u"cd"); // no merge across the save
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"textab");
    fx.memo.Undo();
    fx.memo.Redo();
    fx.memo.Redo();
    EXPECT_EQ(told, (std::vector<bool>{true, false, true, false, true, false, true}));
}

TEST(UndoList, TheLimitDropsTheOldestRecords) {
    TMemoFixture fx("");
    fx.memo.UndoList().SetLimit(100);
    for (int i = 0; i < 101; ++i) {
        fx.memo.SetTextCursor(0, 0); // every key its own record
        Type(fx.memo, u"x");
    }
    EXPECT_EQ(fx.memo.UndoList().Count(), 100);
    while (fx.memo.CanUndo())
        fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"x"); // the oldest record can't be undone: the text stays changed
    EXPECT_TRUE(fx.memo.Modified());
}

TEST(UndoList, AGroupIsOneStep) {
    TMemoFixture fx("");
    fx.memo.BeginUndoGroup();
    for (int i = 0; i < 5; ++i) {
        fx.memo.SetTextCursor(0, 0);
        Type(fx.memo, u"m");
    }
    fx.memo.EndUndoGroup();
    Type(fx.memo, u"z");
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"mmmmm");
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"");
    fx.memo.Redo();
    EXPECT_EQ(fx.Text(), u"mmmmm");
    EXPECT_FALSE(fx.memo.CanUndo() && fx.memo.UndoList().FPos == 0);
}

TEST(UndoList, AScriptsEditsAreOneEntry) {
    TMemoFixture fx("");
    auto& list = fx.memo.UndoList();
    list.Add(std::make_unique<TScriptStartUndo>());
    for (int i = 0; i < 3; ++i) {
        fx.memo.SetTextCursor(0, 0);
        Type(fx.memo, u"s");
    }
    list.Add(std::make_unique<TScriptEndUndo>());
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(list.Get(0)->Items.size(), 3u);
    fx.memo.Undo();
    EXPECT_EQ(fx.Text(), u"");
    fx.memo.Redo();
    EXPECT_EQ(fx.Text(), u"sss");
}

// The first 16 characters, a line end counting as the units it has.
TEST(UndoList, ActionTextsShowLineEndsAndAreCut) {
    TMemoFixture fx("");
    fx.memo.InsertText(u"line one\r\nline two is long");
    EXPECT_EQ(fx.memo.UndoList().Get(0)->FActionText, u"line one[CRLF]line t...");
    EXPECT_EQ(fx.memo.UndoList().Get(0)->FAction, "015");
}

// Replay runs with every input aid off (the model tests undo and redo with all of them on
// and compare the bytes); afterwards the aids are back as they were.
TEST(UndoList, ReplayLeavesTheInputAidsAsTheyWere) {
    TMemoFixture fx("    x");
    fx.memo.SetTextCursor(5, 0);
    fx.memo.EnterPress();
    Type(fx.memo, u"y");
    fx.memo.FOverwrite = true;
    fx.memo.Undo();
    fx.memo.Redo();
    EXPECT_TRUE(fx.memo.FOverwrite);
    EXPECT_TRUE(fx.memo.FAutoIndent);
}

TEST(UndoList, AFailingRecordClearsTheListAndSaysSo) {
    TMemoFixture fx("abc\ndef");
    THeadlessPrompt prompt(false);
    TEditorServices services;
    services.Prompt = &prompt;
    services.Text = [](const std::string& section, const std::string& key,
                       const std::string& fallback) {
        return section == "Messages" && key == "172" ? "undo broke" : fallback;
    };
    fx.memo.SetServices(services);
    fx.memo.SetTextCursor(3, 1);
    fx.memo.EnterPress();
    Type(fx.memo, u"zz");
    fx.lines.DeleteLinesSilent(1, 2); // the text changes behind the list's back
    fx.memo.Undo();
    EXPECT_EQ(fx.memo.UndoList().Count(), 0);
    ASSERT_EQ(prompt.Log().size(), 1u);
    EXPECT_NE(prompt.Log()[0].find("undo broke"), std::string::npos);
    EXPECT_TRUE(fx.memo.Modified()); // the text still differs from the saved one
    fx.memo.Saved();
    EXPECT_FALSE(fx.memo.Modified());
}

TEST(UndoList, ForgettingTheHistoryKeepsTheModifiedState) {
    TMemoFixture fx("abc");
    fx.memo.ClearUndoList();
    EXPECT_FALSE(fx.memo.Modified());
    Type(fx.memo, u"x");
    fx.memo.ClearUndoList();
    EXPECT_TRUE(fx.memo.Modified());
    Type(fx.memo, u"y");
    fx.memo.Undo(); // back to the cleared state, which was never saved
    EXPECT_TRUE(fx.memo.Modified());
}

TEST(UndoList, LineHistoryMarksChangedAndSavedRows) {
    TMemoFixture fx("a\nb");
    fx.memo.SetTextCursor(1, 1);
    Type(fx.memo, u"x");
    const TAttribute& row = fx.lines.GetLineAttribute(1);
    EXPECT_TRUE(row.GetValue(abChanged));
    EXPECT_EQ(row.ChangeHistory(), 1);
    EXPECT_FALSE(fx.lines.GetLineAttribute(0).GetValue(abChanged));
    fx.memo.Saved();
    EXPECT_TRUE(fx.lines.GetLineAttribute(1).GetValue(abChangeSaved));
    fx.memo.Undo(); // past the save: changed again
    EXPECT_TRUE(fx.lines.GetLineAttribute(1).GetValue(abChanged));
    fx.memo.Redo(); // back at the save: shown as saved
    EXPECT_TRUE(fx.lines.GetLineAttribute(1).GetValue(abChangeSaved));
}

TEST(UndoList, UndoRecordsShareRowTextWithTheStore) {
    std::string big;
    for (int i = 0; i < 1000; ++i)
        big += "row " + std::to_string(i) + "\n";
    TMemoFixture fx(big);
    fx.memo.SetSelection({0, 10}, {0, 990});
    fx.memo.DeleteSelection();
    const TUndo* record = fx.memo.UndoList().Get(0);
    ASSERT_EQ(record->FRemoved.BreakCount(), 980);
    fx.memo.Undo();
    EXPECT_EQ(fx.Bytes(), big);
}

// Changes wider than the saved-row window: the window is given up and the undo position
// answers until the text is the saved one again; from there on the answer is exact again.
TEST(UndoList, ModifiedStaysTrueThroughAWindowTooWideToFollow) {
    std::string text;
    for (int i = 0; i < TSavedText::kMaxWindowRows + 10; ++i)
        text += "ab\n";
    TMemoFixture fx(text);
    const int last = fx.lines.Count() - 1;
    fx.memo.SetTextCursor(0, 0);
    Type(fx.memo, u"x");
    fx.memo.SetTextCursor(0, last);
    Type(fx.memo, u"y"); // the window would hold every row
    EXPECT_TRUE(fx.memo.Modified());
    fx.memo.Undo();
    EXPECT_TRUE(fx.memo.Modified());
    fx.memo.Undo(); // back at the load
    EXPECT_FALSE(fx.memo.Modified());
    fx.memo.SetTextCursor(1, 1);
    Type(fx.memo, u"z");
    EXPECT_TRUE(fx.memo.Modified());
    fx.memo.Backspace(); // exact again: the text is the saved one
    EXPECT_FALSE(fx.memo.Modified());

    // Saved right after pasting the rows: undoing the paste is one change wider than the
    // window, made while the list still stands at the save point.
    TMemoFixture small("top\n");
    small.memo.InsertText(Utf8ToUtf16(text));
    small.memo.Saved();
    small.memo.Undo();
    EXPECT_TRUE(small.memo.Modified());
    small.memo.Redo();
    EXPECT_FALSE(small.memo.Modified());
}

} // namespace
} // namespace zv::test
