// The per-row scanner state: copies share their variable parts until one of them changes, and
// clearing keeps fold words unless asked. Copies on several threads: SharedTablesThreadTest.
#include "LineStyleSample.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::StateWithEverything;

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

TEST(LineStyle, EachPropertyBitIsSetAndClearedAlone) {
    for (int bit = spStringEnd; bit <= spHyperscript; ++bit) {
        TStyleProperties p;
        p.Set(TStylePropertyBit(bit), true);
        for (int other = spStringEnd; other <= spHyperscript; ++other)
            EXPECT_EQ(p.Get(TStylePropertyBit(other)), other == bit) << bit << " " << other;
        p.Set(TStylePropertyBit(bit), false);
        EXPECT_EQ(p.FBooleanArray, 0u) << bit;
    }
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

} // namespace
} // namespace zv
