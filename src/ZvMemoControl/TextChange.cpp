// Mapping positions through a change record.
#include "ZvMemoControl/TextChange.h"

namespace zv {

TZvPos MapPosition(TZvPos p, const TTextChange& change, bool stickToEnd) {
    if (p < change.From || (p == change.From && !stickToEnd))
        return p;
    if (p < change.RemovedEnd || (p == change.RemovedEnd && change.RemovedEnd == change.From))
        return stickToEnd ? change.InsertedEnd : change.From;
    if (p.Y == change.RemovedEnd.Y)
        return {change.InsertedEnd.X + (p.X - change.RemovedEnd.X), change.InsertedEnd.Y};
    return {p.X, p.Y + change.RowsAdded};
}

} // namespace zv
