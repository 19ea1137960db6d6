// Word and token lookups at the caret or a position, and the word steps of Ctrl+Left/Right.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <unicode/uchar.h>

namespace zv {
namespace {

// Delimiters when no syntax gives its own.
constexpr std::u16string_view kDefaultDelimiters = u".,;:!?()[]{}<>\"+-*/=\\|&^%$#@~`";
constexpr std::u16string_view kAlwaysDelimiters = u" \t\u00A0\u00B7'";

bool IsIdentifierChar(char16_t c) {
    return c == u'_' || u_isalnum(c);
}

} // namespace

bool TZvCustomMemo::CharIsWhiteSpace(char16_t c, bool tabToo) {
    if (c == u'\t')
        return tabToo;
    return IsWhiteSpace(c);
}

bool TZvCustomMemo::IsSymbolBoundary(char16_t c) const {
    if (kAlwaysDelimiters.find(c) != std::u16string_view::npos)
        return true;
    const std::u16string_view own = FHasSyntax && !FUserDelimiters.empty()
                                        ? std::u16string_view(FUserDelimiters)
                                        : kDefaultDelimiters;
    return own.find(c) != std::u16string_view::npos;
}

// The word containing or touching column `col`: [from, to).
void TZvCustomMemo::WordBounds(std::u16string_view row, int col, int& from, int& to) const {
    const int len = static_cast<int>(row.size());
    from = to = std::clamp(col, 0, len);
    while (to < len && !IsSymbolBoundary(row[to]))
        ++to;
    while (from > 0 && !IsSymbolBoundary(row[from - 1]))
        --from;
}

std::u16string TZvCustomMemo::WordAtCursorPos(int& start, bool select) {
    start = 0;
    const int y = std::clamp(FCurY, 0, RowCount() - 1);
    const auto row = RowText(y);
    if (FCurX > static_cast<int>(row.size()))
        return {};
    int from = 0, to = 0;
    WordBounds(row, FCurX, from, to);
    if (from == to)
        return {};
    start = from + 1;
    if (select)
        SetSelection({from, y}, {to, y});
    return std::u16string(
        row.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
}

std::u16string TZvCustomMemo::WordAtCursor() {
    int start = 0;
    return WordAtCursorPos(start, false);
}

std::u16string TZvCustomMemo::FullWordAtCursor() {
    const auto row = RowText(FCurY);
    if (FCurX > static_cast<int>(row.size()))
        return {};
    int from = std::min(FCurX, static_cast<int>(row.size())), to = from;
    while (to < static_cast<int>(row.size()) && !CharIsWhiteSpace(row[to], true))
        ++to;
    while (from > 0 && !CharIsWhiteSpace(row[from - 1], true))
        --from;
    return std::u16string(
        row.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
}

std::u16string TZvCustomMemo::LeftWordAtCursor() const {
    const auto row = RowText(FCurY);
    const int to = std::min(FCurX, static_cast<int>(row.size()));
    int from = to;
    while (from > 0 && !IsSymbolBoundary(row[from - 1]))
        --from;
    return std::u16string(
        row.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
}

std::u16string TZvCustomMemo::WordAtXY(int x, int y) const {
    if (y < 0 || y >= RowCount())
        return {};
    const auto row = RowText(y);
    if (x > static_cast<int>(row.size()))
        return {};
    int from = 0, to = 0;
    WordBounds(row, x, from, to);
    return std::u16string(
        row.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
}

// A word at `p`, else the single non-blank character under it.
std::u16string TZvCustomMemo::TokenAt(TZvPos p) const {
    std::u16string word = WordAtXY(p.X, p.Y);
    if (!word.empty())
        return word;
    const auto row = RowText(p.Y);
    if (p.X < static_cast<int>(row.size()) && !CharIsWhiteSpace(row[p.X], true))
        return std::u16string(1, row[p.X]);
    return {};
}

std::u16string TZvCustomMemo::TokenAtCursor() const {
    return TokenAt(Caret());
}

std::u16string TZvCustomMemo::IdentifierAtCursor() const {
    const auto row = RowText(FCurY);
    const int len = static_cast<int>(row.size());
    if (FCurX > len)
        return {};
    int from = FCurX, to = FCurX;
    while (to < len && IsIdentifierChar(row[to]))
        ++to;
    while (from > 0 && IsIdentifierChar(row[from - 1]))
        --from;
    return std::u16string(
        row.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
}

std::u16string TZvCustomMemo::NumberAtCursor() const {
    const auto row = RowText(FCurY);
    const int len = static_cast<int>(row.size());
    if (FCurX > len)
        return {};
    const auto numeric = [](char16_t c) {
        return (c >= u'0' && c <= u'9') || c == u'.' || c == u'x' || c == u'X' ||
               (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    };
    int from = FCurX, to = FCurX;
    while (to < len && numeric(row[to]))
        ++to;
    while (from > 0 && numeric(row[from - 1]))
        --from;
    const std::u16string_view s =
        row.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
    if (s.empty() || !(s[0] >= u'0' && s[0] <= u'9'))
        return {};
    return std::u16string(s);
}

char16_t TZvCustomMemo::CharValueAtCursor() const {
    const auto row = RowText(FCurY);
    return FCurX < static_cast<int>(row.size()) ? row[FCurX] : 0;
}

// ---- Word steps: the column on the same row, or -1 to cross to the next/previous row.

int TZvCustomMemo::NextWordStart(TZvPos p) const {
    const auto row = RowText(p.Y);
    const int len = static_cast<int>(row.size());
    if (p.X >= len)
        return p.Y + 1 < RowCount() ? -1 : p.X;
    int x = p.X;
    while (x < len && !IsSymbolBoundary(row[x]))
        ++x;
    if (x == p.X)
        ++x; // a delimiter is a step of its own
    while (x < len && CharIsWhiteSpace(row[x], true))
        ++x;
    return x;
}

int TZvCustomMemo::PrevWordStart(TZvPos p) const {
    const auto row = RowText(p.Y);
    int x = std::min(p.X, static_cast<int>(row.size()));
    if (x == 0)
        return p.Y > 0 ? -1 : 0;
    while (x > 0 && CharIsWhiteSpace(row[x - 1], true))
        --x;
    if (x > 0 && IsSymbolBoundary(row[x - 1]))
        return x - 1;
    while (x > 0 && !IsSymbolBoundary(row[x - 1]))
        --x;
    return x;
}

TZvPos TZvCustomMemo::WordStep(TZvPos p, int dx) const {
    p.X = dx > 0 ? NextWordStart(p) : PrevWordStart(p);
    if (p.X < 0) { // crossed a row
        p.Y += dx > 0 ? 1 : -1;
        p.X = dx > 0 ? 0 : RowLength(p.Y);
    }
    return p;
}

} // namespace zv
