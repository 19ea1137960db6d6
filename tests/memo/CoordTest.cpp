// The coordinate walks against brute-force counts on random wrapped stores: real lines,
// wrap indexes, unwrapped and wrapped positions, character offsets.
#include "ZvMemoControl/ZvMemoStrings.h"

#include <gtest/gtest.h>

#include <random>

namespace zv {
namespace {

// A store of random logical lines, each cut into 1..4 rows; some rows disabled (filler).
void FillRandom(TZvMemoStrings& store, std::mt19937& rng, int lines, bool fillers) {
    for (int line = 0; line < lines; ++line) {
        const int pieces = 1 + static_cast<int>(rng() % 4);
        for (int p = 0; p < pieces; ++p) {
            const std::u16string text(rng() % 12, static_cast<char16_t>(u'a' + p));
            const int row = p == 0 ? store.DoAdd(text) : store.AddWrapped(text);
            (void)row;
        }
        if (fillers && rng() % 7 == 0) {
            const int row = store.DoAdd(u"");
            store.LineAttribute(row)->SetEnabled(false);
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

int BruteWrapIndex(const TZvMemoStrings& s, int line) {
    int seen = -1;
    for (int r = 0; r < s.Count(); ++r)
        if (IsStart(s, r) && ++seen == line)
            return r;
    return -1;
}

TEST(Coordinates, RealLineFromAnyAnchorMatchesCount) {
    std::mt19937 rng(3);
    for (int round = 0; round < 20; ++round) {
        TZvMemoStrings store;
        store.Memo().FWordWrap = true;
        FillRandom(store, rng, 60, round % 2 == 1);
        for (int probe = 0; probe < 200; ++probe) {
            // The anchor is a line start, as the view keeps it.
            const int anchorLine = static_cast<int>(rng() % 50);
            const int anchor = BruteWrapIndex(store, anchorLine);
            if (anchor < 0)
                continue;
            store.Memo().FTopLine = anchor;
            store.Memo().FRealTopLine = anchorLine;
            const int row = static_cast<int>(rng() % store.Count());
            if (!store.GetLineAttribute(row).Enabled())
                continue; // a filler has no line of its own
            ASSERT_EQ(store.GetRealLine(row), BruteRealLine(store, row))
                << "row " << row << " anchor " << anchor;
        }
    }
}

TEST(Coordinates, WrapIndexFromTheCacheMatchesCount) {
    std::mt19937 rng(4);
    TZvMemoStrings store;
    store.Memo().FWordWrap = true;
    FillRandom(store, rng, 200, true);
    for (int probe = 0; probe < 500; ++probe) {
        const int line = static_cast<int>(rng() % 200);
        ASSERT_EQ(store.GetWrapIndex(line), BruteWrapIndex(store, line)) << line;
    }
}

TEST(Coordinates, UnwrappedAndWrappedPositionsAreInverse) {
    std::mt19937 rng(5);
    TZvMemoStrings store;
    store.Memo().FWordWrap = true;
    FillRandom(store, rng, 80, false);
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

TEST(Coordinates, CharPosRoundTripsThroughXY) {
    std::mt19937 rng(6);
    TZvMemoStrings store;
    FillRandom(store, rng, 40, false);
    for (int row = 0; row < store.Count(); ++row) {
        for (int x = 0; x <= store.GetLineLength(row); ++x) {
            const std::int64_t pos = store.GetCharPosFromXY(x, row);
            // Brute force: lengths before, 2 for each line end (not before a Wrapped row).
            std::int64_t expected = x;
            for (int r = 0; r < row; ++r)
                expected += store.GetLineLength(r) + (store.IsLineWrapped(r + 1) ? 0 : 2);
            ASSERT_EQ(pos, expected);
            int bx = -1, by = -1;
            store.GetXYFromCharPos(pos, bx, by);
            // The end of a row and the start of its continuation are the same offset.
            if (!(x == store.GetLineLength(row) && row + 1 < store.Count() &&
                  store.IsLineWrapped(row + 1)) &&
                !(x == 0 && row > 0 && store.IsLineWrapped(row))) {
                ASSERT_EQ(by, row);
                ASSERT_EQ(bx, x);
            }
        }
    }
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
