// Row operations of the line store: shared buffers, attributes and their defaults, hidden
// rows, whole-text extraction, search primitives, tab expansion, hashes.
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <gtest/gtest.h>

#include <random>

namespace zv {
namespace {

TEST(RowText, CopiesShareUntilOneChanges) {
    TRowText a(u"hello world");
    TRowText b = a;
    EXPECT_EQ(a.View().data(), b.View().data()); // one buffer
    b.Append(u"!");
    EXPECT_EQ(a.View(), u"hello world");
    EXPECT_EQ(b.View(), u"hello world!");
    b.Insert(0, b.View().substr(6, 5)); // from its own buffer
    EXPECT_EQ(b.View(), u"worldhello world!");
    b.Erase(5, 6);
    EXPECT_EQ(b.View(), u"worldworld!");
    b.Erase(0, 5);
    EXPECT_EQ(b.View(), u"world!");
    b.Truncate(5);
    EXPECT_EQ(b.View(), u"world");
    b.Erase(10, 1); // out of range: nothing
    EXPECT_EQ(b.View(), u"world");
}

// Hidden rows and the caret against deletes; the plain row operations are checked against
// a vector model below.
TEST(Store, RowsAndVisibleCount) {
    TZvMemoStrings store;
    EXPECT_EQ(store.Get(0), u"");
    EXPECT_EQ(store.GetLineLength(-1), 0);
    store.Add(u"one");
    store.Add(u"three");
    store.Insert(1, u"two");
    store.Insert(-5, u"zero"); // negative becomes 0
    ASSERT_EQ(store.Count(), 4);
    EXPECT_EQ(store.Get(0), u"zero");
    store.SetHiddenLine(1, true);
    store.SetHiddenLine(1, true); // twice: counted once
    EXPECT_EQ(store.VisibleCount(), 3);
    store.Delete(1); // a hidden row leaves the count alone
    EXPECT_EQ(store.VisibleCount(), 3);
}

// The row array keeps its free slots as a gap that follows the edits. Random inserts,
// deletes, moves and swaps all over a store big enough to be a memory mapping must leave the
// same rows, in the same order, as a plain vector given the same operations; and the saved
// text must be the model's rows joined by the line end.
TEST(Store, RandomRowOperationsAgreeWithAVectorModel) {
    TZvMemoStrings store;
    store.SetSysTextType(sttUnix);
    std::vector<std::u16string> model;
    std::mt19937 rng(7);
    const auto text = [&rng] { return u"r" + std::u16string(1, u'a' + rng() % 26) + u"\u00e9"; };
    for (int i = 0; i < 40000; ++i) { // 40000 rows of 32 bytes: above the 1 MB mapping threshold
        model.push_back(text());
        store.DoAdd(model.back());
    }
    const auto pick = [&rng](std::size_t n) { return static_cast<int>(rng() % n); };
    for (int step = 0; step < 20000; ++step) {
        const int size = static_cast<int>(model.size());
        switch (rng() % 8) {
        case 0: {
            const int row = pick(size + 1);
            model.insert(model.begin() + row, text());
            store.DoInsert(row, model[row]);
            break;
        }
        case 1:
            if (size > 1) {
                const int row = pick(size);
                model.erase(model.begin() + row);
                store.DoDelete(row);
            }
            break;
        case 2: {
            const int row = pick(size + 1);
            const int n = 1 + pick(300);
            model.insert(model.begin() + row, n, std::u16string());
            store.PrepareLines(row, n);
            break;
        }
        case 3:
            if (size > 400) {
                const int row = pick(size);
                const int n = std::min(1 + pick(300), size - row);
                model.erase(model.begin() + row, model.begin() + row + n);
                store.DeleteLinesSilent(row, n);
            }
            break;
        case 4: {
            const int from = pick(size), to = pick(size);
            const std::u16string moved = model[from];
            model.erase(model.begin() + from);
            model.insert(model.begin() + to, moved);
            store.Move(from, to);
            break;
        }
        case 5: {
            const int a = pick(size), b = pick(size);
            std::swap(model[a], model[b]);
            store.SwapLines(a, b);
            break;
        }
        case 6:
            model.push_back(text());
            store.DoAdd(model.back());
            break;
        default: {
            const int row = pick(size);
            model[row] = text() + model[row];
            store.SetLineString(row, model[row]);
            break;
        }
        }
        ASSERT_EQ(store.Count(), static_cast<int>(model.size())) << "step " << step;
        const int probe = pick(model.size());
        ASSERT_EQ(store.Get(probe), model[probe]) << "step " << step << " row " << probe;
    }
    for (std::size_t row = 0; row < model.size(); ++row)
        ASSERT_EQ(store.Get(static_cast<int>(row)), model[row]) << "row " << row;
    EXPECT_EQ(store.VisibleCount(), static_cast<int>(model.size()));
    std::u16string joined;
    for (std::size_t row = 0; row < model.size(); ++row)
        joined += (row ? u"\n" : u"") + model[row];
    store.SetCodePage(1200);
    const std::string saved = store.SaveToBytes();
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(saved.data()), saved.size() / 2),
              joined);
}

TEST(Store, AttributeDefaultsFollowLineEndKind) {
    TZvMemoStrings store;
    store.SetDefaultSysTextType(sttUnix);
    const TAttribute a = store.CreateAttribute();
    EXPECT_EQ(a.Bookmark, -1);
    EXPECT_TRUE(a.Enabled());
    EXPECT_TRUE(a.GetValue2(ab2LinefeedLF));
    EXPECT_FALSE(a.GetValue2(ab2LinefeedCR));
    EXPECT_FALSE(a.HasExtra()); // rare fields cost nothing until written
    store.SetDefaultSysTextType(sttMac);
    EXPECT_TRUE(store.CreateAttribute().GetValue2(ab2LinefeedCR));
    EXPECT_FALSE(store.CreateAttribute().GetValue2(ab2LinefeedLF));
    // Beyond the end: a default that belongs to no row.
    EXPECT_EQ(store.GetLineAttribute(99).Bookmark, -1);
}

TEST(Store, SetLineAttributeCopiesAllButHidden) {
    TZvMemoStrings store;
    store.Add(u"row");
    TAttribute a = store.CreateAttribute();
    a.Bookmark = 3;
    a.SetValue(abTodoItem, true);
    a.MutableExtra().SpellList.push_back({1, 2, 3, 4});
    a.SetChangeHistory(7);
    store.SetLineAttribute(0, a);
    const TAttribute& got = store.GetLineAttribute(0);
    EXPECT_EQ(got.Bookmark, 3);
    EXPECT_TRUE(got.GetValue(abTodoItem));
    EXPECT_EQ(got.ChangeHistory(), 7);
    std::vector<TSpellRec> spell;
    EXPECT_EQ(store.GetSpellList(0, spell), 1);
    store.ClearSSA();
    EXPECT_EQ(store.GetSpellList(0, spell), 0);
    // `Hidden` has no setter on the attribute: only SetHiddenLine changes it.
    a.SetValue(abHidden, true);
    EXPECT_FALSE(a.Hidden());
}

// The change count of an edited row needs no side block in the usual range, keeps every
// value beyond it, and leaves the line-end bits and the enabled mark alone.
TEST(Store, ChangeHistoryKeepsEveryValueAndTheBitsBesideIt) {
    TAttribute a;
    a.SetValue2(ab2LinefeedCR, true);
    a.SetEnabled(false);
    for (int v = -70000; v <= 70000; v += (v > -1100 && v < 1100) ? 1 : 997) {
        a.SetChangeHistory(v);
        ASSERT_EQ(a.ChangeHistory(), v);
        TAttribute fresh;
        fresh.SetChangeHistory(v);
        ASSERT_EQ(fresh.HasExtra(), v < -1023 || v > 1023) << v;
        ASSERT_TRUE(a.GetValue2(ab2LinefeedCR));
        ASSERT_FALSE(a.GetValue2(ab2LinefeedLF));
        ASSERT_FALSE(a.Enabled());
        if (v > 1023) { // back into range: one form per value, so copies compare equal
            TAttribute b = a;
            b.SetChangeHistory(5);
            TAttribute c;
            c.SetValue2(ab2LinefeedCR, true);
            c.SetEnabled(false);
            c.SetChangeHistory(5);
            c.MutableExtra();
            ASSERT_TRUE(b == c);
        }
    }
}

TEST(Store, RowEditsAndQuietAnswers) {
    TZvMemoStrings store;
    store.Add(u"abcdef");
    EXPECT_EQ(store.InsertAt(0, u"XY", 3), 8);
    EXPECT_EQ(store.Get(0), u"abXYcdef");
    EXPECT_EQ(store.InsertAt(0, u"!", 100), 9); // past the end appends
    EXPECT_EQ(store.DeleteAt(0, 3, 2), 7);
    EXPECT_EQ(store.Get(0), u"abcdef!");
    store.OverWriteAt(0, u"ZZZ", 6);
    EXPECT_EQ(store.Get(0), u"abcdeZZZ");
    EXPECT_EQ(store.GetCharAt(0, 1), u'a');
    EXPECT_EQ(store.GetCharAt(0, 0), 0);
    EXPECT_EQ(store.GetStringAt(0, 2, 3, false), u"bcd");
    store.Add(u" \t\u00A0 x \u00A0\t ");
    EXPECT_EQ(store.GetStringAt(1, 1, 100, true), u"x");
    EXPECT_EQ(store.RemoveTrailingBlanks(1, true), u" ");
    EXPECT_EQ(store.Get(1), u" \t\u00A0 x \u00A0\t");
    EXPECT_EQ(store.RemoveTrailingBlanks(1, false), u" \u00A0\t");
    EXPECT_TRUE(store.IsLineBlank(99));
    store.Add(u"");
    store.Add(u"");
    EXPECT_FALSE(store.CompareLines(2, 3)); // two empty rows compare as different
    EXPECT_TRUE(store.IsAnsiBetween(0, 1, 8));
    store.CopyLineTo(0, 2);
    EXPECT_EQ(store.Get(2), u"abcdeZZZ");
    EXPECT_TRUE(store.CompareLines(0, 2));
    std::u16string buffer;
    EXPECT_EQ(store.GetBuffer(0, buffer), 8);
    EXPECT_GE(buffer.size(), 108u);
}

TEST(Store, RealCountOfACrLfOnlyStore) {
    TZvMemoStrings store;
    store.DoAdd(u"\r\n");
    EXPECT_EQ(store.RealCount(), 0);
    store.DoAdd(u"x");
    EXPECT_EQ(store.RealCount(), 2);
}

TEST(Store, TextWithAndWithoutTheFilesLineEnds) {
    TZvMemoStrings store;
    ASSERT_TRUE(store.LoadFromBytes("one\ntwo\nthree"));
    EXPECT_EQ(store.GetText(), u"one\r\ntwo\r\nthree");
    EXPECT_EQ(store.GetTextWithLinefeeds(), u"one\ntwo\nthree");
    EXPECT_EQ(store.GetText(0, 2, 2, 3, false, false, false), u"ne\ntwo\nthr");
    EXPECT_EQ(store.GetText(2, 0, 3, 2, false, false, false), u"ne\ntwo\nthr"); // swapped
    EXPECT_EQ(store.GetText(1, 1, 2, 1, false, true, false), u"");
    EXPECT_EQ(store.GetText(0, 2, 2, 3, true, true, false), u"ne\r\nwo\r\nhr"); // column
    store.LineAttribute(1)->SetEnabled(false);                                  // filler
    EXPECT_EQ(store.GetTextWithLinefeeds(), u"one\nthree");
}

// SetText reuses the rows it has and marks the new ones changed; the silent form keeps
// each row's marks.
TEST(Store, SetTextKeepsRowsAndMarksNewOnes) {
    TZvMemoStrings store;
    ASSERT_TRUE(store.LoadFromBytes("a\nb\nc\nd"));
    store.SetText(u"x\r\ny\nz\n");
    ASSERT_EQ(store.Count(), 4);
    EXPECT_EQ(store.Get(3), u"");
    store.SetText(u"1\n2\n3\n4\n5");
    ASSERT_EQ(store.Count(), 5);
    EXPECT_TRUE(store.GetLineAttribute(4).GetValue(abChanged));
    EXPECT_EQ(store.GetLineAttribute(4).ChangeHistory(), 1);
    EXPECT_FALSE(store.GetLineAttribute(0).GetValue(abChanged));
    store.LineAttribute(1)->Bookmark = 4;
    store.LineAttribute(2)->SetValue(abLinemark, true);
    store.SetTextStrSilent(u"x\ny\nz\nw\nv\nu");
    EXPECT_EQ(store.GetLineAttribute(1).Bookmark, 4);
    EXPECT_TRUE(store.GetLineAttribute(2).GetValue(abLinemark));
    EXPECT_EQ(store.Get(5), u"u");
}

TEST(Store, SearchPrimitives) {
    TZvMemoStrings store;
    store.Add(u"Hello hello HELLO");
    EXPECT_EQ(store.WPosAt(0, u"hello", 1, false), 7);
    EXPECT_EQ(store.WPosAt(0, u"hello", 1, true), 1);
    EXPECT_EQ(store.WNCPosAt(0, u"HELLO", 2), 7);
    EXPECT_EQ(store.WRPosAt(0, u"hello", 0), 7);
    EXPECT_EQ(store.WNCRPosAt(0, u"hello", 0), 13);
    EXPECT_EQ(store.WNCRPosAt(0, u"hello", 12), 7);
    EXPECT_EQ(store.WTextPosAt(0, u"HELLO", 1, 12, false), 0); // window ends before it
    EXPECT_EQ(store.WTextPosAt(0, u"HELLO", 1, 17, false), 13);
    EXPECT_EQ(store.WPosAt(5, u"x", 1, false), 0);
    std::u16string match = u"stale";
    EXPECT_EQ(store.WRegexPosAt(0, u"h.l", 1, match), -1); // no callback
    EXPECT_TRUE(match.empty());
    store.OnRegExFind = [](std::u16string_view row, std::u16string_view, int from,
                           std::u16string& m) {
        const int col = WPosEx(u"lo", row, from);
        if (col)
            m = u"lo";
        return col;
    };
    EXPECT_EQ(store.WRegexPosAt(0, u"lo", 5, match), 10);
    EXPECT_EQ(match, u"lo");
    EXPECT_EQ(WStringReplace(u"a-b-c", u"-", u"+", true, false), u"a+b+c");
    EXPECT_EQ(WStringReplace(u"aXbxc", u"x", u"_", false, true), u"a_bxc");
    EXPECT_EQ(MatchCase(u"WORD", u"value"), u"VALUE");
    EXPECT_EQ(MatchCase(u"Word", u"value"), u"Value");
}

TEST(Store, TabExpansionFollowsTheColumnRule) {
    std::u16string s = u"a\tbc\t\td";
    EXPECT_TRUE(WConvertTabToSpace(s, 4, u'.'));
    EXPECT_EQ(s, u"a...bc......d");
    std::u16string none = u"abc";
    EXPECT_FALSE(WConvertTabToSpace(none, 4, u' '));
    TZvMemoStrings store;
    store.Memo().FPreserveTab = false;
    store.Add(u"\tx");
    EXPECT_EQ(store.Get(0), u"    x");
    store.Memo().FPreserveTab = true;
    store.Add(u"\tx");
    EXPECT_EQ(store.Get(1), u"\tx");
    EXPECT_EQ(store.GetTabExpanded(1), u"    x");
    EXPECT_EQ(store.GetVisualLength(1), 5);
    EXPECT_EQ(store.GetVisualIndent(1, 8, false), 8);
    store.Add(u" \t ");
    EXPECT_EQ(store.GetVisualIndent(2, 4, true), -1);
}

TEST(Store, HashesAreStandardCrc32InRowOrder) {
    EXPECT_EQ(Crc32("123456789", 9), 0xCBF43926u); // the standard check value
    TZvMemoStrings store;
    store.Add(u"a b");
    store.Add(u"A\tB");
    store.Add(u"ab");
    std::vector<std::uint32_t> plain, folded;
    store.FillHashList(plain, false, false);
    store.FillHashList(folded, true, true);
    ASSERT_EQ(plain.size(), 3u);
    EXPECT_EQ(plain[2], Crc32(u"ab", 4));
    EXPECT_NE(plain[0], plain[1]);
    EXPECT_EQ(folded[0], folded[1]);
    EXPECT_EQ(folded[1], folded[2]);
}

} // namespace
} // namespace zv
