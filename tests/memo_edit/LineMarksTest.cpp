// Bookmarks and line marks follow their lines through the edit path and through undo and redo.
#include "MemoFixture.h"

#include "ZvMemoControl/LineMarks.h"

#include <gtest/gtest.h>

#include <random>

namespace zv::test {
namespace {

// The mark of each row: a bookmark number, 10 for a plain mark, -1 none.
using TMarks = std::vector<int>;

TMarks MarksOf(const TZvMemoStrings& lines) {
    TMarks marks;
    for (int row = 0; row < lines.Count(); ++row)
        marks.push_back(HasLinemark(lines, row) ? 10 : GetBookmark(lines, row));
    return marks;
}

void Replace(TZvMemo& m, TZvPos from, TZvPos to, std::u16string_view text) {
    m.SetSelection(from, to);
    if (from == to)
        m.InsertText(text);
    else if (text.empty())
        m.DeleteSelection();
    else
        m.InsertText(text);
}

// Random edits whose effect on a line is unambiguous (no marked line is removed, no marked
// line is joined away); the model moves the marks as lines move.
TEST(LineMarks, FollowTheirLinesThroughEditsUndoAndRedo) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        std::mt19937 rng(seed);
        std::string text;
        for (int i = 0; i < 30; ++i)
            text += "line" + std::to_string(i) + "\n";
        TMemoFixture fx(text);
        TMarks model(fx.lines.Count(), -1);
        for (int n = 0; n < 10; ++n) {
            const int row = static_cast<int>(rng() % 29);
            if (model[row] < 0) {
                SetBookmark(fx.lines, row, n);
                model[row] = n;
            }
        }
        ToggleLinemark(fx.lines, 29);
        model[29] = 10;
        ASSERT_EQ(MarksOf(fx.lines), model);
        std::vector<TMarks> states{model};
        for (int step = 0; step < 40; ++step) {
            const int count = fx.lines.Count();
            const int r = static_cast<int>(rng() % (count - 1));
            const int len = fx.lines.GetLineLength(r);
            switch (rng() % 5) {
            case 0: // typing inside a line
                Replace(fx.memo, {static_cast<int>(rng() % (len + 1)), r},
                        {static_cast<int>(rng() % (len + 1)), r}, u"xy");
                break;
            case 1: // whole lines inserted above row r
                Replace(fx.memo, {0, r}, {0, r}, u"new\nnew\n");
                model.insert(model.begin() + r, 2, -1);
                break;
            case 2: { // a line break inside row r (at its start the line moves down)
                const int x = static_cast<int>(rng() % (len + 1));
                Replace(fx.memo, {x, r}, {x, r}, u"\n");
                model.insert(model.begin() + (x == 0 ? r : r + 1), -1);
                break;
            }
            case 3: // unmarked whole lines deleted
                if (model[r] >= 0 || model[r + 1] >= 0)
                    continue;
                Replace(fx.memo, {0, r}, {0, r + 2}, u"");
                model.erase(model.begin() + r, model.begin() + r + 2);
                break;
            default: // row r joined with an unmarked row below
                if (model[r + 1] >= 0 || len == 0)
                    continue;
                Replace(fx.memo, {len, r}, {0, r + 1}, u"");
                model.erase(model.begin() + r + 1);
                break;
            }
            ASSERT_EQ(MarksOf(fx.lines), model) << "seed " << seed << " step " << step;
            states.push_back(model);
        }
        for (size_t i = states.size() - 1; i > 0; --i) {
            ASSERT_TRUE(fx.memo.Undo());
            ASSERT_EQ(MarksOf(fx.lines), states[i - 1]) << "seed " << seed << " undo " << i;
        }
        for (size_t i = 1; i < states.size(); ++i) {
            ASSERT_TRUE(fx.memo.Redo());
            ASSERT_EQ(MarksOf(fx.lines), states[i]) << "seed " << seed << " redo " << i;
        }
    }
}

// Joining lines keeps the mark of the line whose text survives; a number lives on one row;
// next and previous form one ring of bookmarks and plain marks.
TEST(LineMarks, JoinsNumbersAndTheRing) {
    TMemoFixture fx("a\nb\nc\nd\n");
    SetBookmark(fx.lines, 1, 3);
    Replace(fx.memo, {1, 0}, {0, 1}, u""); // "ab": the lower line's mark moves up
    EXPECT_EQ(GetBookmark(fx.lines, 0), 3);
    SetBookmark(fx.lines, 2, 3); // the number moves
    EXPECT_EQ(GetBookmark(fx.lines, 0), -1);
    EXPECT_EQ(FindBookmark(fx.lines, 3), 2);
    SetBookmark(fx.lines, 2, 3); // and toggles off
    EXPECT_EQ(FindBookmark(fx.lines, 3), -1);
    SetBookmark(fx.lines, 1, 0);
    ToggleLinemark(fx.lines, 2);
    EXPECT_EQ(NextMarkedRow(fx.lines, 2, true), 1); // wraps past the end
    EXPECT_EQ(NextMarkedRow(fx.lines, 1, false), 2);
    EXPECT_EQ(NextMarkedRow(fx.lines, 1, true), 2);
    ToggleLinemark(fx.lines, 2);
    EXPECT_EQ(NextMarkedRow(fx.lines, 1, true), 1); // one mark: comes back to itself
    ClearMarks(fx.lines, true);
    EXPECT_EQ(NextMarkedRow(fx.lines, 0, true), -1);
}

} // namespace
} // namespace zv::test
