// Tables that the painter and the background scanner read at the same time: a loaded style
// set's keyword tables in both case modes, and row states whose parts copies share. Run under
// ThreadSanitizer by CI (label "threaded"); each worker does a bounded number of rounds.
#include "LineStyleSample.h"
#include "SyntaxTestFiles.h"

#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zv {
namespace {

// The scanner's lookups on a shipped set from two threads, one in each case mode, give what
// one thread gets alone: both case variants of every keyword table are built by the load, so
// no lookup changes a table.
TEST(StyleSet, LookupsFromTwoThreadsAgreeWithOneThread) {
    TZvSyntax syntax;
    TMemoStyleHost memo;
    ASSERT_TRUE(syntax.LoadStyleFromFile(&memo, test::U16(test::ShippedSyntaxFolder() / "cpp.syx"),
                                         u"C++", 0, u""));
    const TZvCustomMemoStyles& styles = *memo.FStyles;
    std::vector<std::u16string> probes;
    for (const TKeyWord& group : styles.FKeyWords)
        for (const std::u16string& word : group.KeyWords.Words()) {
            probes.push_back(word);
            std::u16string upper = word;
            for (char16_t& c : upper)
                if (c >= u'a' && c <= u'z')
                    c = static_cast<char16_t>(c - u'a' + u'A');
            probes.push_back(upper);
        }
    ASSERT_GT(probes.size(), 100u);
    std::vector<int> expected[2];
    for (bool caseSensitive : {false, true})
        for (const std::u16string& p : probes)
            expected[caseSensitive].push_back(styles.FindKeyword(p, caseSensitive));
    std::atomic<int> differences{0};
    auto worker = [&](bool caseSensitive) {
        for (int round = 0; round < 20; ++round)
            for (std::size_t i = 0; i < probes.size(); ++i)
                if (styles.FindKeyword(probes[i], caseSensitive) != expected[caseSensitive][i])
                    ++differences;
    };
    std::thread a(worker, true), b(worker, false);
    a.join();
    b.join();
    EXPECT_EQ(differences.load(), 0);
}

TEST(LineStyle, SharedPartsSurviveCopiesOnTwoThreads) {
    const TStyle shared = test::StateWithEverything();
    auto worker = [&shared] {
        for (int i = 0; i < 20000; ++i) {
            TStyle mine = shared;
            if (i % 3 == 0)
                mine.Block.Extra.mut().Cache.push_back(static_cast<std::int8_t>(i));
        }
    };
    std::thread a(worker), b(worker);
    a.join();
    b.join();
    EXPECT_EQ(shared.Block.Cache().size(), 2u);
    EXPECT_EQ(shared.Block.HereDocString(), u"EOF");
}

} // namespace
} // namespace zv
