// The move and select commands in the real window, against plain models of the text: the
// paragraph and sentence the select commands take (a regular expression for sentences), the
// places next and previous occurrence visit (std::string::find), the rows the changed-line
// and fold walks stop at in a C file with a closed fold, and the deletes undone to the bytes.
#include "UiFixtures.h"
#include "support/ZvTestSupport.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include "ZvMemoControl/ZvMemoFolds.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <QAction>

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <regex>

namespace {

// The shipped syntax files, before the first look-up of the data root fixes it.
const bool kTreeRoot = ::setenv("ZEVRIT_ROOT", ZV_TEST_TREE, 1) == 0;

using zv::TZvPos;

// A sentence: from a character other than white space to a run of terminators followed by
// white space or the end, or up to the white space before a blank line or the end.
const std::regex kSentence(R"((?=\S)[\s\S]*?(?:[.!?]+(?=\s|$)|(?=\s*\n[ \t]*\n)|(?=\s*$)))");

class MoveActionsWindowTest : public zvtest::TShownWindowTest {
protected:
    MoveActionsWindowTest() : TShownWindowTest("zv-move-actions") {}

    void Run(const char* action) {
        window->Actions().UpdateActions();
        QAction* item = window->Actions().Get(action);
        ASSERT_TRUE(item && item->isEnabled()) << action;
        item->trigger();
    }
    static std::pair<TZvPos, TZvPos> Selection(zv::TEditorWidget& editor) {
        TZvPos s, e;
        editor.Memo().OrderedSelection(s, e);
        return {s, e};
    }
    // A text of words, sentence ends, blanks and (blank) lines drawn from `random`.
    static std::string RandomProse(std::mt19937& random, int pieces) {
        static const char* const kPieces[] = {"ab", "cd", "x",  "a.b", ".",    "!",    "?.",
                                              " ",  " ",  "\t", "\n",  "\n\n", "\n \n"};
        std::string text;
        for (int i = 0; i < pieces; ++i)
            text += kPieces[random() % std::size(kPieces)];
        return text;
    }
};

std::vector<std::string> Rows(const std::string& text) {
    std::vector<std::string> rows(1);
    for (char c : text)
        if (c == '\n')
            rows.emplace_back();
        else
            rows.back().push_back(c);
    return rows;
}

TZvPos PosOf(const std::string& text, std::size_t offset) {
    const std::size_t lineStart = text.rfind('\n', offset == 0 ? 0 : offset - 1);
    const int y = static_cast<int>(std::count(text.begin(), text.begin() + offset, '\n'));
    const std::size_t x =
        lineStart == std::string::npos || offset == 0 ? offset : offset - lineStart - 1;
    return {static_cast<int>(x), y};
}

TEST_F(MoveActionsWindowTest, ParagraphAndSentenceSelectionsEqualTheirModelsOnRandomTexts) {
    std::mt19937 random(18);
    for (int n = 0; n < 12; ++n) {
        const std::string text = RandomProse(random, 40);
        zv::TEditorWidget& editor = Open("prose" + std::to_string(n) + ".txt", text);
        const std::vector<std::string> rows = Rows(text);
        const auto blank = [&](int y) {
            return rows[y].find_first_not_of(" \t") == std::string::npos;
        };
        std::vector<std::pair<std::size_t, std::size_t>> sentences;
        for (std::sregex_iterator it(text.begin(), text.end(), kSentence), end; it != end; ++it)
            sentences.emplace_back(it->position(), it->position() + it->length());
        for (std::size_t offset = 0; offset <= text.size(); offset += 1 + random() % 3) {
            const TZvPos caret = PosOf(text, offset);
            editor.Memo().SetTextCursor(caret.X, caret.Y);
            Run("SelectParagraphAction");
            int first = caret.Y, last = caret.Y;
            while (!blank(caret.Y) && first > 0 && !blank(first - 1))
                --first;
            while (!blank(caret.Y) && last + 1 < static_cast<int>(rows.size()) && !blank(last + 1))
                ++last;
            const TZvPos paragraphEnd = last + 1 < static_cast<int>(rows.size())
                                            ? TZvPos{0, last + 1}
                                            : TZvPos{static_cast<int>(rows[last].size()), last};
            const auto expected = blank(caret.Y) ? std::pair{caret, caret}
                                                 : std::pair{TZvPos{0, first}, paragraphEnd};
            EXPECT_EQ(Selection(editor), expected) << "paragraph at " << offset << " of " << text;

            editor.Memo().SetTextCursor(caret.X, caret.Y);
            Run("SelectSentenceAction");
            const auto hit = std::find_if(sentences.begin(), sentences.end(),
                                          [&](const auto& s) { return s.second > offset; });
            const auto want = hit == sentences.end()
                                  ? std::pair{caret, caret}
                                  : std::pair{PosOf(text, hit->first), PosOf(text, hit->second)};
            EXPECT_EQ(Selection(editor), want) << "sentence at " << offset << " of " << text;
        }
    }
}

TEST_F(MoveActionsWindowTest, EveryDeleteCommandUndoneGivesBackTheBytesOnDisk) {
    std::mt19937 random(7);
    const std::string text = RandomProse(random, 120);
    zv::TEditorWidget& editor = Open("deletes.txt", text);
    for (const char* action :
         {"DeleteSentenceAction", "DeleteSentenceHomeAction", "DeleteSentenceEndAction",
          "DeleteToBeginOfScreenLineAction", "DeleteToEndOfScreenLineAction"}) {
        int changed = 0;
        for (std::size_t offset = 0; offset <= text.size(); offset += 1 + random() % 9) {
            const TZvPos caret = PosOf(text, offset);
            editor.Memo().SetTextCursor(caret.X, caret.Y);
            Run(action);
            if (zvtest::EditorText(editor) != text) {
                ++changed;
                Run("UndoAction");
            }
            ASSERT_EQ(zvtest::EditorText(editor), text) << action << " at " << offset;
        }
        EXPECT_GT(changed, 0) << action;
    }
    // The first sentence goes from the bytes on disk, and comes back.
    std::smatch first;
    ASSERT_TRUE(std::regex_search(text, first, kSentence));
    editor.Memo().SetTextCursor(0, 0);
    Run("DeleteSentenceAction");
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "deletes.txt"),
              text.substr(0, first.position()) + text.substr(first.position() + first.length()));
    Run("UndoAction");
    QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(zvtest::ReadAll(dir / "deletes.txt"), text);
}

TEST_F(MoveActionsWindowTest, NextAndPreviousOccurrenceVisitWhatFindGivesInOrderAndBack) {
    std::mt19937 random(3);
    std::string text;
    for (int i = 0; i < 400; ++i)
        text += "ab \nc"[random() % 5];
    text.insert(0, "ab ");
    std::vector<TZvPos> places; // every "ab", by std::string::find on each row
    const std::vector<std::string> rows = Rows(text);
    for (int y = 0; y < static_cast<int>(rows.size()); ++y)
        for (std::size_t x = rows[y].find("ab"); x != std::string::npos;
             x = rows[y].find("ab", x + 2))
            places.push_back({static_cast<int>(x), y});
    zv::TEditorWidget& editor = Open("words.txt", text);
    editor.Memo().SetSelection({0, 0}, {2, 0});
    std::vector<TZvPos> forward, backward;
    for (std::size_t i = 0; i < places.size(); ++i) {
        Run("NextOccurrenceAction");
        forward.push_back(Selection(editor).first);
        EXPECT_EQ(Selection(editor).second.X, forward.back().X + 2);
    }
    for (std::size_t i = 0; i < places.size(); ++i) {
        Run("PreviousOccurrenceAction");
        backward.push_back(Selection(editor).first);
    }
    std::vector<TZvPos> expected(places.begin() + 1, places.end());
    expected.push_back(places.front()); // round the end back to the first
    EXPECT_EQ(forward, expected);
    EXPECT_EQ(backward, std::vector<TZvPos>(places.rbegin(), places.rend()));
}

TEST_F(MoveActionsWindowTest, ChangedLineAndFoldWalksStopAtExactlyTheVisibleMarkedRows) {
    ASSERT_TRUE(kTreeRoot);
    std::string text;
    std::vector<int> heads;
    for (int f = 0; f < 6; ++f) {
        heads.push_back(static_cast<int>(std::count(text.begin(), text.end(), '\n')));
        text += "int f" + std::to_string(f) + "(void) {\n    a();\n    b();\n}\n";
    }
    zv::TEditorWidget& editor = Open("walk.c", text);
    const zv::TZvMemoStrings& lines = *editor.Lines();
    for (int i = 0; i < 200 && !zv::IsFoldHead(lines, heads.back()); ++i)
        QTest::qWait(50); // the background thread builds the folds
    ASSERT_TRUE(zv::IsFoldHead(lines, heads.back()));
    const std::vector<int> edited{1, 6, 9, 14, 22};
    for (int row : edited) {
        editor.Memo().SetTextCursor(0, row);
        QTest::keyClicks(&editor, "x");
        if (row == 9)
            QTest::keyClick(&editor, Qt::Key_S, Qt::ControlModifier); // changed and saved
    }
    editor.Memo().ToggleFoldAt(heads[1]); // hides rows 5 to 7: edited row 6 goes out of sight
    const auto walk = [&](const char* action, int from) {
        std::vector<int> rows;
        editor.Memo().SetTextCursor(0, from);
        for (int last = -1; editor.Memo().FCurY != last;) {
            last = editor.Memo().FCurY;
            Run(action);
            if (editor.Memo().FCurY != last)
                rows.push_back(editor.Memo().FCurY);
        }
        return rows;
    };
    EXPECT_EQ(walk("NextChangedLineAction", 0), (std::vector<int>{1, 9, 14, 22}));
    EXPECT_EQ(walk("PreviousChangedLineAction", 23), (std::vector<int>{22, 14, 9, 1}));
    EXPECT_EQ(walk("NextNodeAction", 0), (std::vector<int>{4, 8, 12, 16, 20}));
    EXPECT_EQ(walk("PreviousNodeAction", 23), (std::vector<int>{20, 16, 12, 8, 4, 0}));

    editor.Memo().SetTextCursor(2, heads[4] + 1);
    ASSERT_TRUE(editor.Memo().acnSelectCurrentProcedure());
    EXPECT_EQ(Selection(editor), std::pair(TZvPos{0, heads[4]}, TZvPos{0, heads[5]}));
    editor.Memo().SetTextCursor(2, heads[4] + 1);
    Run("SelectBraceEnclosedAction");
    EXPECT_EQ(QString::fromStdU16String(editor.Memo().GetSelection()).toStdString(),
              "\n    a();\n    b();\n");
}

TEST_F(MoveActionsWindowTest, UnderWordWrapLineSelectionsTakeTheFileLineAndScreenLinesOneRow) {
    std::mt19937 random(5);
    std::vector<std::string> lines;
    std::string text;
    for (int i = 0; i < 20; ++i) {
        lines.push_back(RandomProse(random, 60));
        std::replace(lines.back().begin(), lines.back().end(), '\n', ' ');
        text += lines.back() + "\n";
    }
    zv::TEditorWidget& editor = Open("wrapped.txt", text);
    editor.resize(300, 400);
    Run("WordWrapAction");
    zv::TZvMemo& memo = editor.Memo();
    ASSERT_GT(memo.RowCount(), 40); // the lines are cut into rows
    const auto selected = [&] {
        return QString::fromStdU16String(memo.GetSelection()).toStdString();
    };
    for (int row = 0; row + 1 < memo.RowCount(); row += 3) {
        const int x = static_cast<int>(random() % (memo.RowLength(row) + 1));
        memo.SetTextCursor(x, row);
        const TZvPos at = memo.Unwrapped(memo.Caret()); // column in the file's line
        const std::string& line = lines[static_cast<std::size_t>(at.Y)];
        Run("SelectToEOLAction");
        EXPECT_EQ(selected(), line.substr(static_cast<std::size_t>(at.X))) << row;
        memo.SetTextCursor(x, row);
        Run("SelectToBOLAction");
        EXPECT_EQ(selected(), line.substr(0, static_cast<std::size_t>(at.X))) << row;
        memo.SetTextCursor(x, row);
        Run("SelectToEndOfScreenLineAction");
        const std::u16string_view rest = memo.RowText(row).substr(static_cast<std::size_t>(x));
        EXPECT_EQ(memo.GetSelection(), rest) << row;
    }
}

TEST_F(MoveActionsWindowTest, BlockSelectActionsMakeTheRectangleAltShiftArrowsMake) {
    std::mt19937 random(21);
    std::string text;
    for (int i = 0; i < 30; ++i)
        text += std::string(random() % 14, "ab\t "[random() % 4]) + "\n";
    zv::TEditorWidget& editor = Open("block.txt", text);
    zv::TZvMemo& memo = editor.Memo();
    const std::pair<const char*, Qt::Key> kMoves[] = {{"BlockSelectUpAction", Qt::Key_Up},
                                                      {"BlockSelectDownAction", Qt::Key_Down},
                                                      {"BlockSelectLeftAction", Qt::Key_Left},
                                                      {"BlockSelectRightAction", Qt::Key_Right}};
    using TBlock = std::tuple<TZvPos, TZvPos, bool, std::u16string>;
    const auto block = [&] {
        return TBlock{memo.SelStart(), memo.SelEnd(), memo.FColumnMode, memo.GetColumnSelText()};
    };
    std::vector<int> walk(60);
    for (int& step : walk)
        step = static_cast<int>(random() % 4);
    const auto run = [&](bool byKeys) {
        memo.SetColumnMode(false);
        memo.SetTextCursor(5, 12);
        std::vector<TBlock> blocks;
        for (int step : walk) {
            if (byKeys)
                QTest::keyClick(&editor, kMoves[step].second, Qt::AltModifier | Qt::ShiftModifier);
            else
                Run(kMoves[step].first);
            blocks.push_back(block());
        }
        return blocks;
    };
    const std::vector<TBlock> byKeys = run(true);
    EXPECT_TRUE(std::get<2>(byKeys.back()) && !std::get<3>(byKeys.back()).empty());
    EXPECT_EQ(run(false), byKeys);
}

TEST_F(MoveActionsWindowTest, SelectTagTakesTheElementWhoseNameHoldsTheCaret) {
    ASSERT_TRUE(kTreeRoot);
    zv::TEditorWidget& editor =
        Open("page.html", "<div>\n <p class=\"a\">x <b>y</b></p >\n</div>\n");
    editor.Memo().SetTextCursor(2, 1); // on "p"
    Run("SelectTagAction");
    EXPECT_EQ(QString::fromStdU16String(editor.Memo().GetSelection()).toStdString(),
              "<p class=\"a\">x <b>y</b></p >");
}

} // namespace
