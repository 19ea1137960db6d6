// Coordinates of the line store: rows, real (logical) lines, wrapped positions and
// character offsets. Conversions across the text are lookups in the position index; only
// the walks within one logical line go row by row.
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {

bool TZvMemoStrings::IsDisplayWrapped() const {
    const TZvMemoState& memo = Memo();
    return memo.FWordWrap || memo.FForceWrap || memo.FTextDiffMode;
}

int TZvMemoStrings::GetRealLine(int row) const {
    if (row < 0)
        return 0;
    const TZvMemoState& memo = Memo();
    if (memo.FBinaryMode || memo.FHexView || !IsDisplayWrapped())
        return row;
    if (FCount == 0)
        return 0;
    row = std::min(row, Count() - 1);
    RefreshIndex();
    const bool filler = row > 0 && !Item(row)->FObject.Enabled();
    return static_cast<int>(FIndex.StartsBefore(static_cast<std::size_t>(row) + 1)) - 1 +
           (filler ? 1 : 0);
}

int TZvMemoStrings::GetWrapIndex(int line) const {
    if (!IsDisplayWrapped() || Memo().FBinaryMode || Memo().FHexView)
        return line;
    if (line <= 0 || FCount == 0)
        return 0;
    RefreshIndex();
    const auto lines = static_cast<int>(FIndex.TotalStarts());
    if (line >= lines)
        return Count() + (line - lines);
    return static_cast<int>(FIndex.NthStart(static_cast<std::size_t>(line)));
}

int TZvMemoStrings::GetWrappedMainLineNumber(int row) const {
    if (FCount == 0)
        return 0;
    row = std::clamp(row, 0, Count() - 1);
    if (Memo().FHardWrapAtRightMargin || !IsDisplayWrapped())
        return row;
    while (row > 0 && Item(row)->FObject.Wrapped())
        --row;
    return row;
}

int TZvMemoStrings::GetWrappedLineCount(int row) const {
    if (Memo().FBinaryMode || Memo().FHexView || !InRange(row))
        return 1;
    int n = 1;
    while (InRange(row + n) && Item(row + n)->FObject.Wrapped())
        ++n;
    return n;
}

std::u16string TZvMemoStrings::GetUnwrappedLine(int row, int& count) const {
    count = 0;
    if (!InRange(row))
        return {};
    int start = row;
    while (start > 0 && Item(start)->FObject.Wrapped())
        --start;
    std::u16string line(Get(start));
    count = 1;
    while (InRange(start + count) && Item(start + count)->FObject.Wrapped())
        line.append(Get(start + count++));
    return line;
}

void TZvMemoStrings::GetUnwrappedPos(int& x, int& y) const {
    const TZvMemoState& memo = Memo();
    if (memo.FBinaryMode) {
        while (x > 79) {
            ++y;
            x -= 80;
        }
        return;
    }
    if (memo.FHardWrapAtRightMargin || !(memo.FWordWrap || memo.FForceWrap) || !InRange(y))
        return;
    for (int r = y; r > 0 && Item(r)->FObject.Wrapped(); --r)
        x += GetLineLength(r - 1);
    y = GetRealLine(y);
}

void TZvMemoStrings::GetWrappedPos(int& x, int& a, int& y) const {
    const TZvMemoState& memo = Memo();
    if (memo.FBinaryMode || memo.FHardWrapAtRightMargin || !(memo.FWordWrap || memo.FForceWrap))
        return;
    int row = GetWrapIndex(y);
    if (!InRange(row))
        return;
    while (x > GetLineLength(row) && InRange(row + 1) && Item(row + 1)->FObject.Wrapped()) {
        x -= GetLineLength(row);
        a -= GetLineLength(row);
        ++row;
    }
    y = row;
}

void TZvMemoStrings::GetWrappedPos(int& x, int& y) const {
    int a = 0;
    GetWrappedPos(x, a, y);
}

void TZvMemoStrings::GetUnwrappedLinePos(int& y) const {
    y = GetWrapIndex(GetRealLine(y));
}

std::u16string TZvMemoStrings::GetMainLineIndentString(int row) const {
    const auto s = Get(GetWrappedMainLineNumber(row));
    std::size_t n = 0;
    while (n < s.size() && (s[n] == u' ' || s[n] == u'\t' || s[n] == 0xA0))
        ++n;
    return std::u16string(s.substr(0, n));
}

// The index sums, per row, its units and the line end before it, so the units and line
// ends before row y plus y's own units is the index's width up to and including row y.
std::int64_t TZvMemoStrings::GetCharPosFromXY(int x, int y) const {
    if (FCount == 0)
        return 0;
    y = std::clamp(y, 0, Count() - 1);
    RefreshIndex();
    const std::int64_t length = Item(y)->FString.Length();
    const std::int64_t start = FIndex.WidthBefore(static_cast<std::size_t>(y) + 1) - length;
    return start + std::clamp<std::int64_t>(x, 0, length);
}

void TZvMemoStrings::GetXYFromCharPos(std::int64_t pos, int& x, int& y, bool fromStart) const {
    if (FCount == 0) {
        x = y = 0;
        return;
    }
    const int first = fromStart ? std::clamp(y, 0, Count() - 1) : 0;
    const std::int64_t firstLength = Item(first)->FString.Length();
    if (pos <= firstLength) {
        x = static_cast<int>(pos);
        y = first;
        return;
    }
    RefreshIndex();
    // The offset from the start of the text (row 0 starts at 0: no line end before it);
    // the first row whose end reaches it holds it.
    const std::int64_t firstStart =
        first == 0 ? 0 : FIndex.WidthBefore(static_cast<std::size_t>(first) + 1) - firstLength;
    const std::int64_t target = firstStart + pos;
    std::int64_t end = 0;
    const std::size_t reached = FIndex.RowReaching(target, &end);
    if (reached > FCount) { // past the end
        y = Count() - 1;
        x = std::max(GetLineLength(y) - 1, 0);
        return;
    }
    const auto row = static_cast<int>(reached - 1);
    const std::int64_t start = end - Item(row)->FString.Length();
    if (target < start) { // inside the line end before the row
        y = row - 1;
        x = GetLineLength(y);
        return;
    }
    x = static_cast<int>(target - start);
    y = row;
}

// ---- Wrapped rows -----------------------------------------------------------------------

int TZvMemoStrings::AddWrapped(std::u16string_view s) {
    TRowItem& item = AppendItem();
    item.FString.Assign(s);
    item.FObject = NewAttribute();
    item.FObject.SetWrapped(true);
    ++FVisibleCount;
    return Count() - 1;
}

int TZvMemoStrings::AddWrappedFirst(std::u16string_view s, const TAttribute& attribute) {
    TRowItem& item = AppendItem();
    item.FString.Assign(s);
    item.FObject = attribute;
    SetHiddenBit(item.FObject, false);
    item.FObject.SetWrapped(false);
    ++FVisibleCount;
    return Count() - 1;
}

void TZvMemoStrings::InsertWrapped(int row, std::u16string_view s) {
    row = std::clamp(row, 0, Count());
    OpenGap(static_cast<std::size_t>(row), 1);
    Item(row)->FString.Assign(s);
    Item(row)->FObject = NewAttribute();
    Item(row)->FObject.SetWrapped(true);
    Item(row)->FObject.SetValue(abSpellCheck, true);
    ++FVisibleCount;
}

void TZvMemoStrings::InsertWrappedFirst(int row, std::u16string_view s) {
    row = std::clamp(row, 0, Count());
    OpenGap(static_cast<std::size_t>(row), 1);
    Item(row)->FString.Assign(s);
    Item(row)->FObject = NewAttribute();
    ++FVisibleCount;
}

void TZvMemoStrings::PutWrapped(int row, std::u16string_view s) {
    if (!InRange(row))
        return;
    Item(row)->FString.Assign(s);
    Item(row)->FObject.SetWrapped(true);
    Item(row)->FObject.SetValue(abSpellCheck, true);
}

void TZvMemoStrings::PutWrappedFirst(int row, std::u16string_view s) {
    if (!InRange(row))
        return;
    Item(row)->FString.Assign(s);
    Item(row)->FObject.SetWrapped(false);
}

} // namespace zv
