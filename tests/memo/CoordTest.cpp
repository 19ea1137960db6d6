// Positions within logical lines against brute-force counts on random wrapped stores:
// unwrapped and wrapped positions, joins, binary rows, the rows of one logical line.
#include "ZvMemoControl/ZvMemoStrings.h"

#include <gtest/gtest.h>

#include <random>

namespace zv {
namespace {

// A store of random logical lines, each cut into 1..4 rows.
void FillRandom(TZvMemoStrings& store, std::mt19937& rng, int lines) {
    for (int line = 0; line < lines; ++line) {
        const int pieces = 1 + static_cast<int>(rng() % 4);
        for (int p = 0; p < pieces; ++p) {
            const std::u16string text(rng() % 12, static_cast<char16_t>(u'a' + p));
            p == 0 ? store.DoAdd(text) : store.AddWrapped(text);
        }
    }
}

bool IsStart(const TZvMemoStrings& s, int row) {
    return !s.GetLineAttribute(row).Wrapped() && s.GetLineAttribute(row).Enabled();
}

// Real line of a row by counting from the top: line starts before it, minus one when the
// row itself is one.
int BruteRealLine(const TZvMemoStrings& s, int row) {
    int starts = 0;
    for (int r = 0; r <= row; ++r)
        starts += IsStart(s, r) ? 1 : 0;
    return std::max(starts - 1, 0);
}

TEST(Coordinates, UnwrappedAndWrappedPositionsAreInverse) {
    std::mt19937 rng(5);
    TZvMemoStrings store;
    store.Memo().FWordWrap = true;
    FillRandom(store, rng, 80);
    for (int row = 0; row < store.Count(); ++row) {
        for (int x = 0; x < store.GetLineLength(row); ++x) {
            int ux = x, uy = row;
            store.GetUnwrappedPos(ux, uy);
            int count = 0;
            const std::u16string line = store.GetUnwrappedLine(row, count);
            ASSERT_EQ(uy, BruteRealLine(store, row));
            ASSERT_EQ(line[ux], store.Get(row)[x]);
            int wx = ux, wy = uy;
            store.GetWrappedPos(wx, wy);
            if (x > 0) {
                ASSERT_EQ(wy, row);
                ASSERT_EQ(wx, x);
            } else { // column 0 of a continuation is the join: the upper row's end
                int ax = wx, ay = wy;
                store.GetUnwrappedPos(ax, ay);
                ASSERT_EQ(ax, ux);
                ASSERT_EQ(ay, uy);
            }
        }
    }
}

TEST(Coordinates, JoinColumnStaysOnTheUpperRow) {
    TZvMemoStrings store;
    store.Memo().FWordWrap = true;
    store.DoAdd(u"abcd");
    store.AddWrapped(u"efgh");
    int x = 4, y = 0;
    store.GetWrappedPos(x, y);
    EXPECT_EQ(y, 0);
    EXPECT_EQ(x, 4);
    x = 5;
    y = 0;
    store.GetWrappedPos(x, y);
    EXPECT_EQ(y, 1);
    EXPECT_EQ(x, 1);
}

TEST(Coordinates, BinaryRowsAreEightyUnits) {
    TZvMemoStrings store;
    store.Memo().FBinaryMode = true;
    int x = 80, y = 3;
    store.GetUnwrappedPos(x, y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 4);
}

TEST(Coordinates, MainLineAndRowCountOfALogicalLine) {
    TZvMemoStrings store;
    store.Memo().FWordWrap = true;
    store.DoAdd(u"  first");
    store.AddWrapped(u"second");
    store.AddWrapped(u"third");
    store.DoAdd(u"next");
    EXPECT_EQ(store.GetWrappedMainLineNumber(2), 0);
    EXPECT_EQ(store.GetWrappedLineCount(0), 3);
    EXPECT_EQ(store.GetMainLineIndentString(2), u"  ");
    int count = 0;
    EXPECT_EQ(store.GetUnwrappedLine(1, count), u"  firstsecondthird");
    EXPECT_EQ(count, 3);
    int y = 2;
    store.GetUnwrappedLinePos(y);
    EXPECT_EQ(y, 0);
    EXPECT_EQ(store.GetRealLine(3), 1);
}

} // namespace
} // namespace zv
