// The saved-text window: widened by each change, narrowed by comparing its edge rows.
#include "ZvMemoControl/ZvMemoSavedText.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {

int TSavedText::Rows(const TZvMemoStrings& lines) {
    return std::max(lines.Count(), 1);
}

// 0 for the first row (nothing stands before it); else bit 0 for a continuation, or the
// line end's CR and LF bits.
std::uint8_t TSavedText::Break(const TZvMemoStrings& lines, int row) {
    if (row <= 0 || row >= lines.Count())
        return 0;
    const TAttribute& a = lines.GetLineAttribute(row);
    if (a.GetValue(abWrapped))
        return 1;
    return static_cast<std::uint8_t>(2 | (a.GetValue2(ab2LinefeedCR) ? 4 : 0) |
                                     (a.GetValue2(ab2LinefeedLF) ? 8 : 0));
}

std::size_t TSavedText::Units(const TZvMemoStrings& lines, int row) {
    return Units(Break(lines, row), row < lines.Count() ? lines.Get(row).size() : 0);
}

TSavedText::TSavedRow TSavedText::Take(const TZvMemoStrings& lines, int row) const {
    return {row < lines.Count() ? lines.GetRowText(row) : TRowText(), Break(lines, row)};
}

bool TSavedText::Same(const TZvMemoStrings& lines, int row, const TSavedRow& saved, int savedRow) {
    // What stands before the first row has no meaning; a first row and a later one differ.
    if ((row == 0) != (savedRow == 0))
        return false;
    if (row > 0 && Break(lines, row) != saved.Break)
        return false;
    const std::u16string_view now = lines.Get(row), then = saved.Text.View();
    return now.size() == then.size() && (now.data() == then.data() || now == then);
}

void TSavedText::Reset(const TZvMemoStrings& lines) {
    FMid.clear();
    FRows = Rows(lines);
    FTop = FRows;
    FTail = 0;
    FForced = false;
    FOverflowed = false;
    FNowUnits = FThenUnits = 0;
}

void TSavedText::BeforeChange(const TZvMemoStrings& lines, int first, int last) {
    if (FOverflowed)
        return;
    // Rows loaded into the store behind the document's back: the window's units are counted
    // again rather than trusted.
    const bool untold = Rows(lines) != FRows;
    FRows = Rows(lines);
    first = std::clamp(first, 0, FRows - 1);
    last = std::clamp(last, first, FRows - 1);
    if (FMid.empty() && FTop + FTail == FRows) { // no window: open an empty one at the change
        FTop = first;
        FTail = FRows - first;
    }
    const std::int64_t taken =
        std::int64_t(std::max(FTop - first, 0)) + std::max(last - (FRows - FTail) + 1, 0);
    if (std::int64_t(FMid.size()) + taken > kMaxWindowRows) {
        FMid.clear();
        FOverflowed = true;
        return;
    }
    for (; FTop > first; --FTop) {
        FMid.push_front(Take(lines, FTop - 1));
        FNowUnits += Units(FMid.front());
        FThenUnits += Units(FMid.front());
    }
    for (int next = FRows - FTail; next <= last; ++next, --FTail) {
        FMid.push_back(Take(lines, next));
        FNowUnits += Units(FMid.back());
        FThenUnits += Units(FMid.back());
    }
    if (untold) {
        FNowUnits = 0;
        for (int row = FTop; row < FRows - FTail; ++row)
            FNowUnits += Units(lines, row);
    }
    for (int row = first; row <= last; ++row)
        FNowUnits -= Units(lines, row);
    FChangeFirst = first;
    FChangeLast = last;
    FRowsBefore = FRows;
}

void TSavedText::AfterChange(const TZvMemoStrings& lines) {
    if (FOverflowed)
        return;
    FRows = Rows(lines);
    const int changedEnd = std::min(FChangeLast + FRows - FRowsBefore, FRows - 1);
    for (int row = FChangeFirst; row <= changedEnd; ++row)
        FNowUnits += Units(lines, row);
    FChangeLast = -1;
    while (!FMid.empty() && FTop < FRows - FTail && Same(lines, FTop, FMid.front(), FTop)) {
        FNowUnits -= Units(lines, FTop);
        FThenUnits -= Units(FMid.front());
        FMid.pop_front();
        ++FTop;
    }
    while (!FMid.empty() && FTop < FRows - FTail) {
        const int row = FRows - FTail - 1;
        const int savedRow = FTop + static_cast<int>(FMid.size()) - 1;
        if (!Same(lines, row, FMid.back(), savedRow))
            break;
        FNowUnits -= Units(lines, row);
        FThenUnits -= Units(FMid.back());
        FMid.pop_back();
        ++FTail;
    }
    if (!FMid.empty() || FTop + FTail != FRows)
        SettleCuts(lines);
}

// The window's text written out with the line end before each row (a cut writes nothing),
// so that rows cut elsewhere compare by the text they make. Texts of different lengths
// differ: only a window as long as the saved one is written out.
void TSavedText::SettleCuts(const TZvMemoStrings& lines) {
    constexpr std::size_t kMaxRows = 1 << 16; // a wider window waits for the row comparison
    const int end = FRows - FTail;
    if (FNowUnits != FThenUnits || FMid.size() > kMaxRows ||
        end - FTop > static_cast<int>(kMaxRows))
        return;
    const auto mark = [](std::u16string& out, std::uint8_t brk) {
        if (brk != 1) // 1: a continuation, nothing stands before it
            out.append({char16_t(0xFFFF), char16_t(brk)});
    };
    std::u16string now, then;
    now.reserve(FNowUnits);
    then.reserve(FThenUnits);
    for (int row = FTop; row < end; ++row) {
        mark(now, Break(lines, row));
        now.append(lines.Get(row));
    }
    for (const TSavedRow& saved : FMid) {
        mark(then, saved.Break);
        then.append(saved.Text.View());
    }
    if (now != then)
        return;
    FMid.clear();
    FTop = FRows;
    FTail = 0;
    FNowUnits = FThenUnits = 0;
}

} // namespace zv
