// The start-of-document scanner state.
#include "ZvMemoControl/LineStyle.h"

namespace zv {

void ClearStyle(TStyle& state, bool full) {
    TCowPtr<TLineFoldWords> folds = full ? TCowPtr<TLineFoldWords>{} : state.Folds;
    state = TStyle{};
    state.Folds = std::move(folds);
}

} // namespace zv
