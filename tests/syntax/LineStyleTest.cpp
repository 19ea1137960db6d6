// The per-row scanner state: each property bit on its own, and clearing keeps fold words
// unless asked. Copies that share parts: the scanner's properties (stored states equal fresh
// ones) and, on several threads, SharedTablesThreadTest.
#include "LineStyleSample.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::StateWithEverything;

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
