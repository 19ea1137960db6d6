// Search and replace in a document against outside tools on real files of the machine (grep,
// pcre2grep, sed), with the long lines cut into wrapped rows so that hits straddle the cuts;
// the properties of the steps (find next visits what find all lists, backward the reverse;
// replace all then undo gives the original bytes), and the edge cases of the rules.
#include "memo/MemoTestUtil.h"

#include "ZvMemoControl/SearchReplace.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zv::test {
namespace {

// ASCII files with LF line ends (a byte is a unit, so the tools and the rows agree).
const std::vector<std::string> kFiles = {"/usr/share/common-licenses/GPL-3",
                                         "/usr/include/c++/12/bits/stl_algo.h",
                                         "/usr/include/stdio.h"};

// A control over `bytes`, rows cut at `cut` units (a cut line's rows are one line).
struct TDoc {
    explicit TDoc(const std::string& bytes, int cut = 4096) {
        memo.SetLines(&lines);
        lines.SetDefaultSysTextType(sttUnix);
        lines.Memo().FDefaultEncoding = 65001;
        lines.Memo().FForcewrapLength = cut;
        lines.LoadFromBytes(bytes);
        memo.SetLines(&lines);
    }
    TZvMemoStrings lines;
    TZvMemo memo;
};

std::string Utf8(std::u16string_view s) {
    return std::string(s.begin(), s.end()); // ASCII only here
}

std::u16string Utf16(std::string_view s) {
    return std::u16string(s.begin(), s.end());
}

// The hits' texts, each followed by LF (what `grep -o` prints).
std::string HitTexts(const TZvMemoStrings& lines, const TTextSearch& search) {
    std::string out;
    search.ForEach(lines, {0, 0}, TTextSearch::kTextEnd,
                   [&](const TSearchHit&, const TMatchGroups& g) {
                       out += Utf8(g.Group(0)) + "\n";
                       return true;
                   });
    return out;
}

std::string Quote(const std::string& s) {
    std::string q = "'";
    for (char c : s)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

TTextSearch Prepared(const std::string& text, TZvFindOptions options) {
    TTextSearch search;
    EXPECT_TRUE(search.Prepare(Utf16(text), options)) << search.Error();
    return search;
}

// The whole-word set of the search as a PCRE class of what may NOT stand beside a word (ASCII
// part).
const std::string kNotDelimiter = R"([^\t ()\[\]{},.;:"=<>+\-/\\?!|&`^*#$%'])";

TEST(SearchOracleTest, PlainWordAndCaselessHitsMatchGrep) {
    if (!HaveProgram("grep"))
        GTEST_SKIP() << "no grep";
    for (const std::string& file : kFiles) {
        const TDoc doc(ReadAll(file), 40);
        ASSERT_GT(doc.lines.Count(), 100);
        for (const std::string word : {"the", "if", "return", "_M_", "std", "a", "iter"}) {
            const std::string q = Quote(word);
            EXPECT_EQ(HitTexts(doc.lines, Prepared(word, frCase)),
                      RunOutput("LC_ALL=C grep -o -F -- " + q + " " + file))
                << file << " " << word;
            EXPECT_EQ(HitTexts(doc.lines, Prepared(word, 0)),
                      RunOutput("LC_ALL=C grep -o -i -F -- " + q + " " + file))
                << file << " caseless " << word;
            // grep -w counts any non-word character as a border; the search's set is narrower
            // ("~" and "@" are no delimiters), so the word test goes by that set.
            EXPECT_EQ(
                HitTexts(doc.lines, Prepared(word, frCase | frWord)),
                RunOutput("LC_ALL=C grep -o -P -- " +
                          Quote("(?<!" + kNotDelimiter + ")" + word + "(?!" + kNotDelimiter + ")") +
                          " " + file))
                << file << " word " << word;
        }
    }
    // Where no word meets "~" or "@", grep -w agrees.
    const std::string gpl = kFiles[0];
    const TDoc doc(ReadAll(gpl), 40);
    EXPECT_EQ(HitTexts(doc.lines, Prepared("the", frCase | frWord)),
              RunOutput("LC_ALL=C grep -o -w -F the " + gpl));
}

TEST(SearchOracleTest, RegularExpressionHitsMatchPcre2grep) {
    if (!HaveProgram("pcre2grep"))
        GTEST_SKIP() << "no pcre2grep (package pcre2-utils)";
    const std::vector<std::string> patterns = {R"(\b[A-Z][a-z]+\b)",
                                               R"([0-9]+)",
                                               R"((?i)licen[sc]e)",
                                               R"(\w+\()",
                                               R"(^[ \t]*#[ \t]*(include|define))",
                                               R"(_M_\w+;$)",
                                               R"(\(([^()\r\n]*)\))"};
    for (const std::string& file : kFiles) {
        const TDoc doc(ReadAll(file), 40);
        for (const std::string& pattern : patterns)
            EXPECT_EQ(HitTexts(doc.lines, Prepared(pattern, frCase | frRegExp)),
                      RunOutput("pcre2grep -u -o -- " + Quote(pattern) + " " + file))
                << file << " " << pattern;
    }
}

TEST(SearchOracleTest, ReplaceAllMatchesSedAndUndoGivesTheOriginal) {
    if (!HaveProgram("sed"))
        GTEST_SKIP() << "no sed";
    struct TCase {
        std::string Find, Replace, Sed;
        TZvFindOptions Options;
    };
    const std::vector<TCase> cases = {
        {"([a-z]+)ing\\b", "\\1ED", "s/([a-z]+)ing\\b/\\1ED/g", frCase | frRegExp},
        {"(\\w+) \\(([^()\\r\\n]*)\\)", "$2<-${1}", "s/(\\w+) \\(([^()]*)\\)/\\2<-\\1/g",
         frCase | frRegExp},
        {";", ";\\n", "s/;/;\\n/g", frCase | frRegExp},
        {"the", "THE", "s/the/THE/g", frCase},
        {"it", "", "s/it//g", frCase},
    };
    for (const std::string& file : kFiles) {
        const std::string original = ReadAll(file);
        for (const TCase& c : cases) {
            TDoc doc(original, 40);
            TTextSearch search = Prepared(c.Find, c.Options);
            const std::u16string replace =
                (c.Options & frRegExp) ? ProcessRegExReplace(Utf16(c.Replace)) : Utf16(c.Replace);
            const int undoBefore = doc.memo.UndoList().Count();
            EXPECT_GT(ReplaceAll(doc.memo, search, {replace, false}), 0) << c.Find;
            EXPECT_EQ(doc.memo.UndoList().Count(), undoBefore + 1) << "one undo step";
            EXPECT_EQ(doc.lines.SaveToBytes(), RunOutput("sed -E " + Quote(c.Sed) + " " + file))
                << file << " " << c.Find;
            ASSERT_TRUE(doc.memo.Undo());
            EXPECT_EQ(doc.lines.SaveToBytes(), original) << file << " " << c.Find;
        }
    }
}

// Find next from the start visits the hits of find all in order; backward in reverse.
TEST(SearchStepTest, NextAndPreviousVisitWhatFindAllLists) {
    const TDoc doc(ReadAll(kFiles[1]), 40);
    for (const auto& [text, options] :
         std::vector<std::pair<std::string, TZvFindOptions>>{{"__first", frCase},
                                                             {"iterator", frWord},
                                                             {"__[a-z]+", frCase | frRegExp},
                                                             {"std::\\w+", frRegExp},
                                                             {";\n", frCase}}) {
        const TTextSearch search = Prepared(text, options);
        std::vector<TSearchHit> all;
        search.ForEach(doc.lines, {0, 0}, TTextSearch::kTextEnd,
                       [&](const TSearchHit& hit, const TMatchGroups&) {
                           all.push_back(hit);
                           return true;
                       });
        ASSERT_GT(all.size(), 10u) << text;
        std::vector<TSearchHit> forward, backward;
        for (auto hit = search.FindForward(doc.lines, {0, 0}); hit;
             hit = search.FindForward(doc.lines, hit->End))
            forward.push_back(*hit);
        const TZvPos end{doc.lines.GetLineLength(doc.lines.Count() - 1), doc.lines.Count() - 1};
        for (auto hit = search.FindBackward(doc.lines, end); hit;
             hit = search.FindBackward(doc.lines, hit->Start))
            backward.push_back(*hit);
        EXPECT_EQ(forward, all) << text;
        EXPECT_EQ(std::vector<TSearchHit>(backward.rbegin(), backward.rend()), all) << text;
    }
}

std::vector<TSearchHit> Hits(const TDoc& doc, const std::string& text, TZvFindOptions options) {
    std::vector<TSearchHit> hits;
    Prepared(text, options)
        .ForEach(doc.lines, {0, 0}, TTextSearch::kTextEnd,
                 [&](const TSearchHit& hit, const TMatchGroups&) {
                     hits.push_back(hit);
                     return true;
                 });
    return hits;
}

TEST(SearchEdgeTest, EdgeCasesOfTheRules) {
    // A text ending in a line break matches only where its last line ends a line.
    const TDoc lines("ab\nxab\nab c\nab\n");
    EXPECT_EQ(Hits(lines, "ab\n", frCase),
              (std::vector<TSearchHit>{{{0, 0}, {0, 1}}, {{1, 1}, {0, 2}}, {{0, 3}, {0, 4}}}));
    // A text whose first line is empty matches at a line's end.
    EXPECT_EQ(Hits(lines, "\nab c", frCase), (std::vector<TSearchHit>{{{3, 1}, {4, 2}}}));
    // Whole word: between parentheses and before a hyphen, not before an underscore or letter.
    const TDoc words("(word) word-x word_x words xword\n");
    EXPECT_EQ(Hits(words, "word", frWord),
              (std::vector<TSearchHit>{{{1, 0}, {5, 0}}, {{7, 0}, {11, 0}}}));
    // Skip tags refuses "<" opening a line, not one column later.
    const TDoc tags("<b>\n <b>\n");
    EXPECT_EQ(Hits(tags, "<b", frSkipTags), (std::vector<TSearchHit>{{{1, 1}, {3, 1}}}));
    // A hit straddling a cut line selects across the two rows.
    const TDoc cut(std::string(20, 'x') + "needle" + std::string(10, 'y') + "\n", 23);
    EXPECT_EQ(Hits(cut, "needle", frCase), (std::vector<TSearchHit>{{{20, 0}, {3, 1}}}));
    // A regular expression crossing more rows than a block holds is not found.
    std::string many = "start\n";
    for (int i = 0; i < 60; ++i)
        many += "-\n";
    const TDoc blocks(many + "end\n");
    EXPECT_TRUE(Hits(blocks, "start(\\s|-)*end", frRegExp).empty());
    // Two rows are always in one block (blocks share a row): every pair of dashes is found.
    EXPECT_EQ(Hits(blocks, "-\\s+-", frRegExp).size(), 30u);
}

TEST(SearchEdgeTest, InvalidExpressionLeavesTheSearchAsItWas) {
    TTextSearch search = Prepared("abc", frCase);
    EXPECT_FALSE(search.Prepare(u"a(b", frRegExp));
    EXPECT_NE(search.Error().find("at offset 3"), std::string::npos) << search.Error();
    EXPECT_EQ(search.Text(), u"abc");
    EXPECT_EQ(search.Options(), frCase);
}

TEST(ReplaceTextTest, EscapesAndPreserveCase) {
    EXPECT_EQ(ProcessRegExReplace(u"a\\tb\\r\\nc\\nd\\x41\\x\\1\\\\n"),
              u"a\tb\r\nc\r\ndA\\x\\1\\\\n");
    EXPECT_EQ(MatchCaseByLetter(u"HeLlO", u"world"), u"WoRlD");
    EXPECT_EQ(MatchCaseByLetter(u"HI", u"there you"), u"THERE you");
    EXPECT_EQ(MatchCaseByLetter(u"hello", u"WORLD"), u"world");
}

} // namespace
} // namespace zv::test
