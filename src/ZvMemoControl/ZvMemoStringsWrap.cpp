// Coordinate walks of the line store: rows, real (logical) lines, wrapped positions and
// character offsets. Walks start at an anchor near the view, never at the top of the text.
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {
namespace {

bool IsLineStart(const TAttribute& a) {
    return !a.Wrapped() && a.Enabled();
}

} // namespace

bool TZvMemoStrings::IsDisplayWrapped() const {
    const TZvMemoState& memo = Memo();
    return memo.FWordWrap || memo.FForceWrap || memo.FTextDiffMode;
}

int TZvMemoStrings::GetRealLine(int row) {
    if (row < 0)
        return 0;
    TZvMemoState& memo = Memo();
    if (memo.FBinaryMode || memo.FHexView)
        return row;
    if (!IsDisplayWrapped()) {
        memo.FRealTopLine = memo.FTopLine;
        return row;
    }
    if (FCount == 0)
        return 0;
    row = std::min(row, Count() - 1);
    const int anchor = std::clamp(memo.FTopLine, 0, Count() - 1);
    int real = std::max(memo.FRealTopLine, 0);
    if (row == anchor)
        return real;
    if (row > anchor) {
        const bool anchorOdd = !IsLineStart(Item(anchor)->FObject);
        for (int r = anchor; r <= row; ++r)
            real += IsLineStart(Item(r)->FObject) ? 1 : 0;
        if (!anchorOdd && Item(row)->FObject.Enabled())
            --real;
        return real;
    }
    for (int r = anchor; r >= row; --r)
        real -= IsLineStart(Item(r)->FObject) ? 1 : 0;
    if (IsLineStart(Item(row)->FObject))
        ++real;
    return std::max(real, 0);
}

int TZvMemoStrings::GetWrapIndex(int line) {
    if (!IsDisplayWrapped() || Memo().FBinaryMode || Memo().FHexView)
        return line;
    if (line <= 0 || FCount == 0)
        return 0;
    if (!InRange(FWrapLine) || FRealLine < 0 || !IsLineStart(Item(FWrapLine)->FObject))
        FRealLine = FWrapLine = 0;
    int r = FWrapLine, cur = FRealLine;
    if (cur == 0)
        r = 0;
    while (cur < line) {
        ++r;
        if (r >= Count())
            return Count() + (line - cur - 1);
        if (IsLineStart(Item(r)->FObject))
            ++cur;
    }
    while (cur > line && r > 0) {
        --r;
        if (IsLineStart(Item(r)->FObject))
            --cur;
    }
    FRealLine = cur;
    FWrapLine = r;
    return r;
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

void TZvMemoStrings::GetUnwrappedPos(int& x, int& y) {
    TZvMemoState& memo = Memo();
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
    if (memo.FHexView) {
        const int top = memo.FTopLine, real = memo.FRealTopLine;
        memo.FTopLine = memo.FRealTopLine = 0;
        y = GetRealLine(y);
        memo.FTopLine = top;
        memo.FRealTopLine = real;
        return;
    }
    y = GetRealLine(y);
}

void TZvMemoStrings::GetWrappedPos(int& x, int& a, int& y) {
    TZvMemoState& memo = Memo();
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

void TZvMemoStrings::GetWrappedPos(int& x, int& y) {
    int a = 0;
    GetWrappedPos(x, a, y);
}

void TZvMemoStrings::GetUnwrappedLinePos(int& y) {
    y = GetWrapIndex(GetRealLine(y));
}

std::u16string TZvMemoStrings::GetMainLineIndentString(int row) const {
    const auto s = Get(GetWrappedMainLineNumber(row));
    std::size_t n = 0;
    while (n < s.size() && (s[n] == u' ' || s[n] == u'\t' || s[n] == 0xA0))
        ++n;
    return std::u16string(s.substr(0, n));
}

std::int64_t TZvMemoStrings::GetCharPosFromXY(int x, int y) const {
    if (FCount == 0)
        return 0;
    y = std::clamp(y, 0, Count() - 1);
    const bool binary = Memo().FBinaryMode;
    std::int64_t pos = 0;
    for (int r = 0; r < y; ++r) {
        pos += Item(r)->FString.Length();
        if (!binary && !Item(r + 1)->FObject.Wrapped())
            pos += 2;
    }
    return pos + std::clamp<std::int64_t>(x, 0, Item(y)->FString.Length());
}

void TZvMemoStrings::GetXYFromCharPos(std::int64_t pos, int& x, int& y, bool fromStart) const {
    const bool binary = Memo().FBinaryMode;
    int r = fromStart ? std::clamp(y, 0, std::max(Count() - 1, 0)) : 0;
    for (; r < Count(); ++r) {
        const std::int64_t len = Item(r)->FString.Length();
        const bool lineEnd = !binary && r + 1 < Count() && !Item(r + 1)->FObject.Wrapped();
        if (pos <= len || r + 1 == Count()) {
            if (pos > len)
                break;
            x = static_cast<int>(pos);
            y = r;
            return;
        }
        pos -= len + (lineEnd ? 2 : 0);
        if (pos < 0) { // inside a line end: the end of the row
            x = static_cast<int>(len);
            y = r;
            return;
        }
    }
    y = std::max(Count() - 1, 0);
    x = std::max(GetLineLength(y) - 1, 0);
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
