// Word wrap switched or laid out anew from the control: the rows are cut again while the
// caret and the selection keep their unwrapped places.
#include "ZvMemoControl/WrapRows.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

void TZvCustomMemo::SetWordWrap(bool on, int columns) {
    TZvMemoState& state = DocState();
    if (state.FWordWrap == on && state.FWrapColumns == columns)
        return;
    const TZvPos caret = Unwrapped(Caret()), start = Unwrapped(SelStart()),
                 end = Unwrapped(SelEnd());
    const int top = Lines().GetRealLine(FTopLine);
    FDoc->Relayout([&] {
        state.FWordWrap = on;
        state.FWrapColumns = columns;
        WrapAll(Lines());
        if (on)
            return;
        // Lines that fit the limit again are whole rows: the forced cut ends with them.
        state.FForceWrap = false;
        for (int row = 1; row < Lines().Count() && !state.FForceWrap; ++row)
            state.FForceWrap = Lines().IsLineWrapped(row);
    });
    const TZvPos c = Wrapped(caret), s = Wrapped(start), e = Wrapped(end);
    FSelStartX = s.X;
    FSelStartY = s.Y;
    FSelEndX = FPrevSelX = e.X;
    FSelEndY = FPrevSelY = e.Y;
    FCurX = c.X;
    FCurY = c.Y;
    FTopLine = Lines().GetWrapIndex(top);
    NotifySelection();
    NotifyCursor();
    if (FOnInvalidate)
        FOnInvalidate(0, -1);
}

} // namespace zv
