// The store's position index against plain walks from row 0, after every step of random
// edits through the store's own operations: loads that cut long lines into rows, appends,
// a followed file growing, inserts, deletes, edits of rows, word wrap cutting and joining
// lines, filler rows, moves, sorting, copies, and the wrap and binary modes switching.
#include "MemoTestUtil.h"
#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>

namespace zv {
namespace {

// The answers of the walks from row 0, for every row.
struct TWalk {
    std::vector<std::int64_t> RowStart; // offset of the row's first unit
    std::vector<int> RealLine;
    std::vector<int> LineRow; // the row where each real line begins
};

TWalk WalkFromTop(const TZvMemoStrings& s) {
    TWalk w;
    const bool binary = s.Memo().FBinaryMode;
    std::int64_t pos = 0;
    for (int r = 0; r < s.Count(); ++r) {
        const TAttribute& a = s.GetLineAttribute(r);
        w.RowStart.push_back(pos);
        pos += s.GetLineLength(r);
        if (!binary && r + 1 < s.Count() && !s.IsLineWrapped(r + 1))
            pos += 2;
        if (r == 0 || (!a.Wrapped() && a.Enabled()))
            w.LineRow.push_back(r);
        const bool filler = r > 0 && !a.Enabled();
        w.RealLine.push_back(static_cast<int>(w.LineRow.size()) - 1 + (filler ? 1 : 0));
    }
    return w;
}

// GetXYFromCharPos as a walk forward from the start row.
void WalkToOffset(const TZvMemoStrings& s, std::int64_t pos, int& x, int& y, bool fromStart) {
    const bool binary = s.Memo().FBinaryMode;
    for (int r = fromStart ? std::clamp(y, 0, std::max(s.Count() - 1, 0)) : 0; r < s.Count(); ++r) {
        const std::int64_t len = s.GetLineLength(r);
        if (pos <= len || r + 1 == s.Count()) {
            if (pos > len)
                break;
            x = static_cast<int>(pos);
            y = r;
            return;
        }
        pos -= len + (!binary && !s.IsLineWrapped(r + 1) ? 2 : 0);
        if (pos < 0) {
            x = static_cast<int>(len);
            y = r;
            return;
        }
    }
    y = std::max(s.Count() - 1, 0);
    x = std::max(s.GetLineLength(y) - 1, 0);
}

void ExpectIndexAgreesWithWalks(const TZvMemoStrings& s, std::mt19937& rng) {
    const TWalk w = WalkFromTop(s);
    const TZvMemoState& memo = s.Memo();
    const bool wrapped =
        (memo.FWordWrap || memo.FForceWrap || memo.FTextDiffMode) && !memo.FBinaryMode;
    for (int r = 0; r < s.Count(); ++r) {
        const int x = static_cast<int>(rng() % 40) - 2;
        ASSERT_EQ(s.GetCharPosFromXY(x, r), w.RowStart[r] + std::clamp(x, 0, s.GetLineLength(r)))
            << "row " << r;
        ASSERT_EQ(s.GetRealLine(r), wrapped ? w.RealLine[r] : r) << "row " << r;
    }
    // Past the last line the rows count on; an empty store answers row 0.
    const auto lines = static_cast<int>(w.LineRow.size());
    for (int line = 0; line < lines + 3; ++line)
        ASSERT_EQ(s.GetWrapIndex(line), !wrapped       ? line
                                        : lines == 0   ? 0
                                        : line < lines ? w.LineRow[line]
                                                       : s.Count() + line - lines)
            << "line " << line;
    const std::int64_t total = s.Count() ? w.RowStart.back() + s.GetLineLength(s.Count() - 1) : 0;
    for (int probe = 0; probe < 60; ++probe) {
        const std::int64_t pos = static_cast<std::int64_t>(rng() % (total + 8)) - 3;
        const bool fromStart = probe % 3 == 0;
        const int start = s.Count() ? static_cast<int>(rng() % s.Count()) : 0;
        int x = -7, y = start, wx = -7, wy = start;
        s.GetXYFromCharPos(fromStart ? pos / 4 : pos, x, y, fromStart);
        WalkToOffset(s, fromStart ? pos / 4 : pos, wx, wy, fromStart);
        ASSERT_EQ(y, wy) << "offset " << pos << " from row " << (fromStart ? start : 0);
        ASSERT_EQ(x, wx) << "offset " << pos << " from row " << (fromStart ? start : 0);
    }
}

std::u16string RandomLine(std::mt19937& rng) {
    // Mostly short lines, some far above the cut length.
    const int length =
        rng() % 6 == 0 ? static_cast<int>(rng() % 120) : static_cast<int>(rng() % 14);
    std::u16string s;
    for (int i = 0; i < length; ++i)
        s += rng() % 10 ? static_cast<char16_t>(u'a' + rng() % 26) : u'\u00e9';
    return s;
}

std::string RandomDocument(std::mt19937& rng, int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i) {
        text += Utf16ToUtf8(RandomLine(rng));
        text += rng() % 9 == 0 ? "\r\n" : "\n";
    }
    return text;
}

// Word wrap as the control does it: the logical line holding `row` is cut anew into rows of
// `width` units (0: joined into one row), reusing its rows, inserting or deleting the rest.
void Rewrap(TZvMemoStrings& s, int row, int width) {
    const int first = s.GetWrappedMainLineNumber(row);
    int count = 0;
    const std::u16string line = s.GetUnwrappedLine(first, count);
    std::vector<std::u16string> pieces;
    for (std::size_t at = 0; width > 0 && at < line.size(); at += width)
        pieces.push_back(line.substr(at, width));
    if (pieces.empty())
        pieces.push_back(line);
    s.PutWrappedFirst(first, pieces[0]);
    for (int i = 1; i < static_cast<int>(pieces.size()); ++i) {
        if (i < count)
            s.PutWrapped(first + i, pieces[i]);
        else
            s.InsertWrapped(first + i, pieces[i]);
    }
    const int extra = count - static_cast<int>(pieces.size());
    if (extra > 0)
        s.DeleteLinesSilent(first + static_cast<int>(pieces.size()), extra);
}

// One random change through the store's own operations.
void RandomStep(TZvMemoStrings& s, std::mt19937& rng, const test::TTempDir& dir) {
    TZvMemoState& memo = s.Memo();
    const int n = s.Count();
    const int row = n ? static_cast<int>(rng() % n) : 0;
    const auto log = dir / "followed.log";
    memo.FBinaryMode = false; // on for one step at most
    switch (rng() % 20) {
    case 0: // a load: lines above the cut length become Wrapped rows
        if (rng() % 2 == 0) {
            s.LoadFromBytes(RandomDocument(rng, 200 + static_cast<int>(rng() % 1500)));
        } else {
            test::WriteAll(log, RandomDocument(rng, static_cast<int>(rng() % 300)));
            s.LoadFromFile(log.string());
        }
        break;
    case 1: // the followed file grows, maybe in the middle of a long line
        std::ofstream(log, std::ios::binary | std::ios::app)
            << RandomDocument(rng, static_cast<int>(rng() % 20)) << std::string(rng() % 40, 'q');
        s.AppendTail();
        break;
    case 2:
        for (int i = static_cast<int>(rng() % 30); i > 0; --i)
            rng() % 3 ? s.DoAdd(RandomLine(rng)) : s.AddWrapped(RandomLine(rng));
        break;
    case 3:
        s.Insert(row, RandomLine(rng));
        break;
    case 4:
        rng() % 2 ? s.InsertWrapped(row, RandomLine(rng))
                  : s.InsertWrappedFirst(row, RandomLine(rng));
        break;
    case 5:
        s.PrepareLines(row, static_cast<int>(rng() % 400));
        break;
    case 6:
        rng() % 2 ? s.DoDelete(row) : s.DeleteSilent(row, true);
        break;
    case 7:
        s.DeleteLinesSilent(row, static_cast<int>(rng() % 500));
        break;
    case 8:
        s.InsertAt(row, RandomLine(rng), static_cast<int>(rng() % 20));
        s.DeleteAt(static_cast<int>(rng() % std::max(n, 1)), static_cast<int>(rng() % 20),
                   static_cast<int>(rng() % 8));
        break;
    case 9:
        s.SetLineString(row, RandomLine(rng));
        break;
    case 10:
    case 11:
        for (int i = 0; i < 20 && n; ++i)
            Rewrap(s, static_cast<int>(rng() % n), static_cast<int>(rng() % 12));
        break;
    case 12: // a filler row of text compare, or a row's flags replaced
        if (TAttribute* a = s.LineAttribute(row))
            a->SetEnabled(!a->Enabled());
        if (n) {
            TAttribute a = s.GetLineAttribute(row);
            a.SetWrapped(rng() % 2 == 0);
            s.SetLineAttribute(static_cast<int>(rng() % n), a);
        }
        break;
    case 13:
        s.Move(row, n ? static_cast<int>(rng() % n) : 0);
        s.SwapLines(row, n ? static_cast<int>(rng() % n) : 0);
        break;
    case 14:
        if (rng() % 4 == 0)
            s.CustomSort([](std::u16string_view a, std::u16string_view b) { return a.compare(b); });
        break;
    case 15: {
        TZvMemoStrings other;
        other.LoadFromBytes(RandomDocument(rng, static_cast<int>(rng() % 1500)));
        s.Assign(other);
        break;
    }
    case 16:
        memo.FWordWrap = !memo.FWordWrap;
        memo.FTextDiffMode = rng() % 3 == 0;
        break;
    case 17:
        memo.FBinaryMode = true;
        break;
    case 18:
        if (rng() % 8 == 0)
            rng() % 2 ? s.Clear() : s.SetTextStr(u"x\r\ny");
        else
            s.AddLine(RandomLine(rng), s.CreateAttribute());
        break;
    default: // an encoding command: each é becomes its two UTF-8 bytes and back
        rng() % 2 ? s.ConvertStringLinesToAscii(cpUTF8) : s.ConvertAsciiLinesToString();
        s.CopyLineTo(row, n ? static_cast<int>(rng() % n) : 0);
        break;
    }
}

TEST(PositionIndex, AgreesWithWalksFromTheTopAfterEveryRandomEdit) {
    test::TTempDir dir;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        std::mt19937 rng(seed);
        TZvMemoStrings store;
        store.SetCodePage(cpUTF8);
        store.Memo().FForcewrapLength = 16;
        store.Memo().FPreserveTab = true;
        for (int step = 0; step < 250; ++step) {
            RandomStep(store, rng, dir);
            ExpectIndexAgreesWithWalks(store, rng);
            if (HasFailure()) {
                ADD_FAILURE() << "seed " << seed << " step " << step;
                return;
            }
        }
    }
}

} // namespace
} // namespace zv
