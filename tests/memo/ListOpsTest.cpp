// The store as a list (copy, compare, sort, find) and the encoding commands, whose result
// must equal reading the file's bytes in the new code page to begin with.
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TZvMemoStrings& LoadAs(TZvMemoStrings& store, const std::string& bytes, std::uint32_t cp) {
    store.SetCodePage(cp);
    store.FSaveCodePage = true;
    EXPECT_TRUE(store.LoadFromBytes(bytes));
    return store;
}

TEST(ListOps, AssignSharesTextAndEqualsCompares) {
    TZvMemoStrings a, b;
    LoadAs(a, "one\ntwo\nthree", 65001);
    b.Assign(a);
    EXPECT_TRUE(b.Equals(a));
    EXPECT_EQ(b.Get(1).data(), a.Get(1).data()); // one buffer for both
    EXPECT_EQ(b.SaveToBytes(), "one\ntwo\nthree");
    b.SetLineString(1, u"TWO");
    EXPECT_FALSE(b.Equals(a));
    EXPECT_EQ(a.Get(1), u"two");
}

TEST(ListOps, SortFindAndNames) {
    TZvMemoStrings s;
    for (auto w : {u"pear", u"Apple", u"fig", u"banana", u"apple"})
        s.Add(w);
    s.Sort();
    for (int i = 1; i < s.Count(); ++i)
        EXPECT_LE(WUpperCase(s.Get(i - 1)), WUpperCase(s.Get(i)));
    int index = -1;
    EXPECT_TRUE(s.Find(u"FIG", index));
    EXPECT_EQ(s.Get(index), u"fig");
    EXPECT_FALSE(s.Find(u"grape", index));
    EXPECT_EQ(s.Get(index), u"pear"); // where it would go
    s.Add(u"Key=value");
    EXPECT_EQ(s.IndexOfName(u"key"), s.Count() - 1);
    EXPECT_EQ(s.IndexOfName(u"value"), -1);
}

TEST(ListOps, ReadingAgainInAnotherCodePageEqualsReadingItSo) {
    const std::string bytes = "\xC0\xE1\xE2 \xE3\n\xD0\xE0\xE7";
    TZvMemoStrings asWestern, asCyrillic;
    LoadAs(asWestern, bytes, 1252);
    LoadAs(asCyrillic, bytes, 1251);
    int changed = 0;
    asWestern.OnLineChanged = [&](int) { ++changed; };
    asWestern.ConvertAnsiLinesToAnsi(1251);
    EXPECT_TRUE(asWestern.Equals(asCyrillic));
    EXPECT_EQ(changed, 2);
    EXPECT_EQ(asWestern.CodePage(), 1251u);
    EXPECT_EQ(asWestern.SaveToBytes(), bytes);
}

TEST(ListOps, AnsiKeepsWhatTheCodePageHolds) {
    TZvMemoStrings s;
    LoadAs(s, "caf\xC3\xA9 \xE2\x82\xAC \xE4\xB8\xAD", 65001);
    s.ConvertStringLinesToAnsi(1252);
    EXPECT_EQ(s.Get(0), u"caf\u00E9 \u20AC ?");
    EXPECT_EQ(s.SaveToBytes(), "caf\xE9 \x80 ?");
}

TEST(ListOps, RawByteViewAndBack) {
    TZvMemoStrings s;
    LoadAs(s, "\xC0\xE1 text", 1251);
    const std::u16string original(s.Get(0));
    s.ConvertStringLinesToAscii(1251);
    EXPECT_EQ(s.Get(0), u"\u00C0\u00E1 text"); // one unit per byte
    s.ConvertAsciiLinesToString();
    EXPECT_EQ(s.Get(0), original);
}

TEST(ListOps, VisualForm) {
    TZvMemoStrings s;
    s.Add(u"a b\tc\x01");
    s.Add(u"last");
    // "a b<tab>c<SOH>": the tab at column 4 fills to column 4 with one space.
    EXPECT_EQ(s.GetVisual(0, true, true, true, true), u"a\u00B7b c\u2401\u00B6");
    EXPECT_EQ(s.GetVisual(1, true, false, false, false), u"last"); // the last row ends no line
    EXPECT_EQ(s.GetVisual(0, false, false, false, false), u"a b\tc\x01");
}

} // namespace
} // namespace zv
