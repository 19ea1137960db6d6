// The per-row scanner state: copies share their variable parts until one of them changes,
// clearing keeps fold words unless asked, and shared copies survive other threads' copies.
#include "ZvMemoControl/LineStyle.h"

#include <gtest/gtest.h>

#include <thread>

namespace zv {
namespace {

TStyle StateWithEverything() {
    TStyle s;
    s.FBooleanArray = 1;
    s.Properties.Set(spInComment, true);
    s.Properties.BracketId = 2;
    s.Block.Id = 3;
    s.Block.Force = true;
    s.Block.Extra.mut().HereDocString = u"EOF";
    s.Block.Extra.mut().Cache = {1, 2};
    s.Folds.mut().NodeStyles.push_back(TNodeStyle{.nr = 7, .sTag = u"div"});
    s.Folds.mut().RegionStyles.push_back(TRegionStyle{.nBegin = 1});
    return s;
}

TEST(LineStyle, CopiesAreIndependentValues) {
    const TStyle original = StateWithEverything();
    TStyle copy = original;
    EXPECT_EQ(copy, original);
    copy.Block.Extra.mut().Cache.push_back(9);
    copy.Folds.mut().NodeStyles.clear();
    EXPECT_EQ(original.Block.Cache().size(), 2u);
    EXPECT_EQ(original.NodeStyles().size(), 1u);
    EXPECT_NE(copy, original);
    // Equal contents compare equal even when held apart.
    TStyle rebuilt = StateWithEverything();
    EXPECT_EQ(rebuilt, original);
}

TEST(LineStyle, PropertyBitsAreIndependent) {
    TStyleProperties p;
    for (TStylePropertyBit bit : {spStringEnd, spInComment, spURL, spHyperscript}) {
        p.Set(bit, true);
        EXPECT_TRUE(p.Get(bit));
    }
    p.Set(spInComment, false);
    EXPECT_FALSE(p.Get(spInComment));
    EXPECT_TRUE(p.Get(spURL));
    EXPECT_FALSE(p.Get(spInTag));
}

TEST(LineStyle, ClearKeepsFoldWordsUnlessFull) {
    TStyle s = StateWithEverything();
    ClearStyle(s, false);
    EXPECT_FALSE(s.Valid());
    EXPECT_EQ(s.Properties.BracketId, -1);
    EXPECT_EQ(s.Properties.Index, -1);
    EXPECT_EQ(s.Block.Id, -1);
    EXPECT_FALSE(s.Block.Force);
    EXPECT_TRUE(s.Block.Cache().empty());
    EXPECT_TRUE(s.Block.HereDocString().empty());
    EXPECT_EQ(s.NodeSection, -1);
    EXPECT_EQ(s.NodeStyles().size(), 1u);
    ClearStyle(s, true);
    EXPECT_TRUE(s.NodeStyles().empty());
    EXPECT_TRUE(s.RegionStyles().empty());
}

TEST(LineStyle, SharedPartsSurviveCopiesOnTwoThreads) {
    const TStyle shared = StateWithEverything();
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
