// Commands on a column block and at every caret: clear, fill, insert before, a counter per
// row or caret, statistics of the numbers in a block, overtype in a block, and running one
// single-caret edit at every place as one step.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>

namespace zv {
namespace {

// `n` in decimal or upper-case hex, the sign before the digits.
std::u16string FormatNumber(std::int64_t n, bool hex) {
    const bool negative = n < 0;
    // The magnitude as unsigned, so that the smallest value has one too.
    std::uint64_t m = negative ? 0 - static_cast<std::uint64_t>(n) : static_cast<std::uint64_t>(n);
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, m, hex ? 16 : 10).ptr;
    std::u16string text = negative ? u"-" : u"";
    for (const char* p = digits; p != end; ++p)
        text += static_cast<char16_t>(*p >= 'a' ? *p - 'a' + 'A' : *p);
    return text;
}

bool IsBlank(std::u16string_view row) {
    return std::all_of(row.begin(), row.end(), [](char16_t c) { return c == u' ' || c == u'\t'; });
}

// The number `word` stands for when it has the form [+-]digits[.digits] or [+-].digits.
bool ParseNumber(std::u16string_view word, double& value) {
    std::string ascii;
    std::size_t digits = 0, points = 0;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const char16_t c = word[i];
        if (c >= u'0' && c <= u'9')
            ++digits;
        else if (c == u'.' && points == 0)
            ++points;
        else if (!((c == u'-' || c == u'+') && i == 0))
            return false;
        if (c != u'+')
            ascii += static_cast<char>(c);
    }
    // "5." is no number here: a decimal point needs digits behind it.
    if (digits == 0 || (points && ascii.back() == '.'))
        return false;
    return std::from_chars(ascii.data(), ascii.data() + ascii.size(), value).ec == std::errc{};
}

} // namespace

bool TZvCustomMemo::EditAtEveryCaret(const std::function<bool()>& edit) {
    if (!CaretsActive() || FReadOnly || !CanEdit())
        return false;
    bool changed = false;
    const auto run = [&](std::size_t) { changed = edit() || changed; };
    TMultiEditUndo* record = nullptr;
    BeginCaretEdit(record);
    if (FMultiEditMode) {
        EditEach(FMultiCursorList, run);
        const TMultiCursorPos& last = FMultiCursorList.back();
        SetTextCursor(last.aCurX, last.aCurY);
    } else {
        const TZvPos start = SelStart(), end = SelEnd();
        int left = 0, right = 0;
        std::vector<TMultiCursorPos> rows = ColumnRows(left, right);
        EditEach(rows, run);
        FSelStartX = start.X;
        FSelStartY = start.Y;
        FCurX = FSelEndX = FPrevSelX = end.X;
        FCurY = FSelEndY = FPrevSelY = end.Y;
    }
    EndCaretEdit(record);
    return changed;
}

bool TZvCustomMemo::OverwriteColumn(char16_t c) {
    int left = 0, right = 0;
    std::vector<TMultiCursorPos> rows = ColumnRows(left, right);
    if (left != right)
        return false;
    TMultiEditUndo* record = nullptr;
    BeginCaretEdit(record);
    EditEach(rows, [&](std::size_t) { OverwriteChar(c); });
    SetColumnBlock(rows);
    EndCaretEdit(record);
    return true;
}

namespace {

// Whether the memo holds a column block a block command works on.
bool HasBlock(const TZvMemo& memo) {
    return memo.FColumnMode && memo.HasSelection() && MayChangeText(memo);
}

} // namespace

bool TZvMemo::acnColumnClear() {
    if (!HasBlock(*this))
        return false;
    const TZvPos s = SelStart(), e = SelEnd();
    const int width = std::abs(FromRealCursorPos(s.Y, s.X) - FromRealCursorPos(e.Y, e.X));
    return width > 0 && SetColSelText(std::u16string(static_cast<std::size_t>(width), u' '), true);
}

bool TZvMemo::acnColumnFill(std::u16string_view text) {
    return HasBlock(*this) && SetColSelText(text.substr(0, text.find_first_of(u"\r\n")), true);
}

bool TZvMemo::acnColumnInsertBefore(std::u16string_view text) {
    if (!HasBlock(*this))
        return false;
    text = text.substr(0, text.find_first_of(u"\r\n"));
    if (text.empty())
        return false;
    // A zero-width block at the left edge takes the text in every row.
    const TZvPos s = SelStart(), e = SelEnd();
    const int left = std::min(FromRealCursorPos(s.Y, s.X), FromRealCursorPos(e.Y, e.X));
    SetSelection({ToRealCursorPos(s.Y, left), s.Y}, {ToRealCursorPos(e.Y, left), e.Y});
    return SetColSelText(text, true);
}

bool TZvMemo::InsertNumbers(std::int64_t start, std::int64_t step, bool hex) {
    if (AtSeveralPlaces() && FMultiEditMode)
        return MultiEditInsertNumbers(start, step, hex);
    if (!HasBlock(*this))
        return false;
    const int top = std::min(SelStart().Y, SelEnd().Y), bottom = std::max(SelStart().Y, SelEnd().Y);
    std::vector<std::u16string> numbers;
    numbers.reserve(static_cast<std::size_t>(bottom - top + 1));
    std::size_t width = 0;
    std::int64_t n = start;
    for (int row = top; row <= bottom; ++row) {
        numbers.emplace_back();
        if (!FNumEveryLine && IsBlank(RowText(row)))
            continue;
        numbers.back() = FormatNumber(n, hex);
        width = std::max(width, numbers.back().size());
        n += step;
    }
    std::u16string text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0)
            text += u"\r\n";
        if (!numbers[i].empty())
            text.append(width - numbers[i].size(), u' ').append(numbers[i]);
    }
    return SetColSelText(text, false);
}

bool TZvMemo::MultiEditInsertNumbers(std::int64_t start, std::int64_t step, bool hex) {
    if (!FMultiEditMode || !AtSeveralPlaces())
        return false;
    std::int64_t n = start;
    return EditAtEveryCaret([&] {
        const bool done = InsertText(FormatNumber(n, hex));
        n += step;
        return done;
    });
}

TZvMemo::TColumnStats TZvMemo::acnColumnStatistics() const {
    std::u16string text;
    if (FColumnMode && HasSelection())
        text = GetColumnSelText();
    else if (HasSelection())
        text = GetSelection();
    else
        text = Lines().GetTextWithLinefeeds();
    TColumnStats stats;
    std::size_t i = 0;
    const auto blank = [](char16_t c) {
        return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
    };
    while (i < text.size()) {
        while (i < text.size() && blank(text[i]))
            ++i;
        const std::size_t from = i;
        while (i < text.size() && !blank(text[i]))
            ++i;
        double value = 0;
        if (i == from || !ParseNumber(std::u16string_view(text).substr(from, i - from), value))
            continue;
        stats.Min = stats.Count ? std::min(stats.Min, value) : value;
        stats.Max = stats.Count ? std::max(stats.Max, value) : value;
        stats.Sum += value;
        ++stats.Count;
    }
    return stats;
}

bool TZvMemo::MultiEditToggleComment() {
    int toggled = -1; // the last row a caret toggled: carets on it leave it alone
    return EditAtEveryCaret([&] {
        TZvPos s = Caret(), e = Caret();
        if (HasSelection())
            OrderedSelection(s, e);
        if (s.Y <= toggled)
            return false;
        toggled = e.Y;
        return ToggleCommentBlock();
    });
}

} // namespace zv
