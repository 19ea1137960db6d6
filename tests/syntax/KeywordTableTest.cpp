// Keyword tables and case folding: lookups by range agree with a plain scan of the words, in
// both case modes. Lookups from several threads: SharedTablesThreadTest.
#include "ZvMemoControl/KeywordTable.h"
#include "ZvMemoControl/CaseFold.h"
#include "shell/IniName.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace zv {
namespace {

std::u16string RandomWord(std::mt19937& rng) {
    static constexpr char16_t kAlphabet[] = u"aAbBzZ_9\u00e9\u00c9\u03c3\u03a3\u03c2\u00df";
    std::u16string w;
    const int len = 1 + rng() % 5;
    for (int i = 0; i < len; ++i)
        w += kAlphabet[rng() % (std::size(kAlphabet) - 1)];
    if (rng() % 8 == 0)
        w += u"\U00010400"; // a letter outside the BMP, which folds to U+10428
    return w;
}

// The oracle: a linear scan with the same comparison rules; an empty word is no keyword.
bool ScanContains(const std::vector<std::u16string>& words, std::u16string_view w, bool exact) {
    for (const auto& word : words)
        if (!word.empty() && (exact ? word == w : FoldCase(word) == FoldCase(w)))
            return true;
    return false;
}

// Lookups agree with the oracle for views into a longer row (a lookup must stop at the
// view's end), and the table holds each non-empty word once, in code-unit order.
TEST(KeywordTable, AgreesWithLinearScanInBothCaseModes) {
    std::mt19937 rng(7);
    for (int round = 0; round < 40; ++round) {
        std::vector<std::u16string> words;
        for (int i = 0, n = rng() % 60; i < n; ++i)
            words.push_back(rng() % 16 ? RandomWord(rng) : std::u16string());
        TKeywordTable table;
        table.Assign(words);
        std::set<std::u16string> distinct(words.begin(), words.end());
        distinct.erase(u"");
        ASSERT_EQ(table.Words(), std::vector<std::u16string>(distinct.begin(), distinct.end()));
        for (int probe = 0; probe < 200; ++probe) {
            const std::u16string word = probe % 2       ? RandomWord(rng)
                                        : words.empty() ? u"x"
                                                        : words[rng() % words.size()];
            const std::u16string row = word + RandomWord(rng);
            const std::u16string_view w = std::u16string_view(row).substr(0, word.size());
            ASSERT_EQ(table.Contains(w, true), ScanContains(words, w, true));
            ASSERT_EQ(table.Contains(w, false), ScanContains(words, w, false));
            const int exact = table.IndexOf(w, true);
            if (exact >= 0) {
                EXPECT_EQ(table.Words()[exact], w);
            }
        }
    }
}

TEST(CaseFold, SimpleFoldingIsPerCodePoint) {
    // Simple folding keeps lengths: sharp s stays, final sigma meets sigma.
    EXPECT_TRUE(FoldedEqual(u"\u03a3\u039f\u03a6\u0399\u0391", u"\u03c3\u03bf\u03c6\u03b9\u03b1"));
    EXPECT_TRUE(FoldedEqual(u"\u03c2", u"\u03c3"));
    EXPECT_FALSE(FoldedEqual(u"STRASSE", u"stra\u00dfe"));
    EXPECT_TRUE(FoldedEqual(u"\U00010400x", u"\U00010428X"));
    EXPECT_EQ(LowerCase(u"HTML.SYX"), u"html.syx");
}

TEST(CaseFold, EqualsFoldedMatchesComparingFoldedCopies) {
    std::mt19937 rng(11);
    for (int i = 0; i < 2000; ++i) {
        const std::u16string a = RandomWord(rng), b = RandomWord(rng);
        ASSERT_EQ(FoldedEqual(a, b), FoldCase(a) == FoldCase(b));
        ASSERT_TRUE(FoldedEqual(a, FoldCase(a)));
    }
    // An unpaired surrogate must not derail the walk over the rest of the text.
    const std::u16string lone = u"\xD800";
    EXPECT_TRUE(FoldedEqual(lone + u"A", lone + u"a"));
    EXPECT_FALSE(FoldedEqual(lone + u"A", lone + u"b"));
}

} // namespace
} // namespace zv
