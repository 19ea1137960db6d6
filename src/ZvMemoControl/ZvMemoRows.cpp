// Range reads and range replacement on the line store, the only place the control changes
// rows.
#include "ZvMemoControl/ZvMemoRows.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <mutex>

namespace zv {
namespace {

TLineEnd EndBefore(const TAttribute& a) {
    if (a.GetValue(abWrapped))
        return leWrap;
    const bool cr = a.GetValue2(ab2LinefeedCR), lf = a.GetValue2(ab2LinefeedLF);
    if (cr && !lf)
        return leCR;
    if (lf && !cr)
        return leLF;
    return leCRLF;
}

// Units [from, to) of a row: the row's own handle when that is the whole row.
TRowText Slice(const TZvMemoStrings& lines, int row, int from, int to) {
    const auto s = lines.Get(row);
    if (from == 0 && static_cast<std::size_t>(to) >= s.size())
        return lines.GetRowText(row);
    return TRowText(s.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
}

void SetLineEnd(TZvMemoStrings& lines, int row, TLineEnd end, const TAttribute& fresh) {
    TAttribute attribute = fresh;
    attribute.SetValue(abWrapped, end == leWrap);
    if (end != leDocument && end != leWrap) {
        attribute.SetValue2(ab2LinefeedCR, end != leLF);
        attribute.SetValue2(ab2LinefeedLF, end != leCR);
    }
    lines.SetLineAttribute(row, attribute);
}

} // namespace

TEditText ExtractText(const TZvMemoStrings& lines, TZvPos from, TZvPos to) {
    TEditText t;
    if (from.Y == to.Y) {
        t.Rows.front() = Slice(lines, from.Y, from.X, to.X);
        return t;
    }
    t.Rows.clear();
    t.Rows.reserve(static_cast<std::size_t>(to.Y - from.Y + 1));
    t.Ends.reserve(static_cast<std::size_t>(to.Y - from.Y));
    t.Rows.push_back(Slice(lines, from.Y, from.X, lines.GetLineLength(from.Y)));
    for (int row = from.Y + 1; row <= to.Y; ++row) {
        t.Ends.push_back(EndBefore(lines.GetLineAttribute(row)));
        t.Rows.push_back(row < to.Y ? lines.GetRowText(row) : Slice(lines, row, 0, to.X));
    }
    return t;
}

TZvPos ReplaceText(TZvMemoStrings& lines, TZvPos from, TZvPos to, const TEditText& text) {
    const TZvPos end = text.EndFrom(from);
    if (from.Y == to.Y && text.BreakCount() == 0) { // the keystroke path: one row in place
        if (to.X > from.X)
            lines.DeleteAt(from.Y, from.X + 1, to.X - from.X);
        lines.InsertAt(from.Y, text.Rows.front().View(), from.X + 1);
        return end;
    }
    std::lock_guard lock(lines.Lock());
    const TRowText tail = Slice(lines, to.Y, to.X, lines.GetLineLength(to.Y));
    const int oldInner = to.Y - from.Y, newInner = text.BreakCount();
    if (newInner > oldInner)
        lines.PrepareLines(to.Y + 1, newInner - oldInner);
    else if (newInner < oldInner)
        lines.DeleteLinesSilent(from.Y + 1 + newInner, oldInner - newInner);
    const TAttribute fresh = lines.CreateAttribute();
    // First row: its head stays, the new text follows.
    lines.DeleteAt(from.Y, from.X + 1, lines.GetLineLength(from.Y) - from.X);
    lines.InsertAt(from.Y, text.Rows.front().View(), from.X + 1);
    for (int i = 1; i <= newInner; ++i) {
        const int row = from.Y + i;
        lines.SetRowText(row, text.Rows[static_cast<std::size_t>(i)]);
        SetLineEnd(lines, row, text.Ends[static_cast<std::size_t>(i - 1)], fresh);
    }
    lines.InsertAt(end.Y, tail.View(), lines.GetLineLength(end.Y) + 1);
    return end;
}

} // namespace zv
