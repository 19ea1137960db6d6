// A per-row scanner state with every part set, shared by the line-state tests.
#pragma once

#include "ZvMemoControl/LineStyle.h"

namespace zv::test {

inline TStyle StateWithEverything() {
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

} // namespace zv::test
