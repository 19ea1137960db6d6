// Brace and tag-pair walks over the runs of rows.
#include "syntax/BraceMatch.h"

#include <algorithm>
#include <array>

namespace zv {
namespace {

int KindOf(char16_t c) {
    switch (c) {
    case u'(':
    case u')':
        return 0;
    case u'{':
    case u'}':
        return 1;
    default:
        return 2;
    }
}
bool Opens(char16_t c) {
    return c == u'(' || c == u'{' || c == u'[';
}

struct TBraceAt {
    TBracePoint At;
    char16_t C = 0;
};

// Code braces of a row in column order.
std::vector<TBraceAt> RowBraces(TLineScanner& scanner, int row) {
    std::vector<TBraceAt> out;
    const auto text = scanner.Store().Get(row);
    for (const TColourRun& r : RowRuns(scanner, row))
        if (r.Info.Kind == TTokenKind::Brace)
            out.push_back({{r.Start, row}, text[r.Start]});
    return out;
}

// Walks from the brace at `from` in `dir` (+1 right, -1 left) to its partner. With a
// `kind` of -1 it looks for the first unbalanced brace of any kind instead.
TBracePoint Walk(TLineScanner& scanner, TBracePoint from, int dir, int kind, int maxRows,
                 char16_t* found = nullptr) {
    std::array<int, 3> depth{};
    const int last = dir > 0 ? std::min(scanner.Store().Count() - 1, from.Y + maxRows)
                             : std::max(0, from.Y - maxRows);
    for (int row = from.Y; dir > 0 ? row <= last : row >= last; row += dir) {
        auto braces = RowBraces(scanner, row);
        if (dir < 0)
            std::reverse(braces.begin(), braces.end());
        for (const TBraceAt& b : braces) {
            if (row == from.Y && (dir > 0 ? b.At.x <= from.x : b.At.x >= from.x))
                continue;
            const int k = KindOf(b.C);
            if (kind >= 0 && k != kind)
                continue;
            // Going right an opener nests; going left a closer does.
            if (Opens(b.C) == (dir > 0)) {
                ++depth[k];
            } else if (--depth[k] < 0) {
                if (found)
                    *found = b.C;
                return b.At;
            }
        }
    }
    return {};
}

} // namespace

TBracePair FindBracePair(TLineScanner& scanner, int x, int y, bool whenInside, int maxRows) {
    TBracePair pair;
    if (y < 0 || y >= scanner.Store().Count())
        return pair;
    const auto braces = RowBraces(scanner, y);
    for (const TBraceAt& b : braces) {
        if (b.At.x == x && Opens(b.C)) {
            pair.Left = b.At;
            pair.Right = Walk(scanner, b.At, +1, KindOf(b.C), maxRows);
            pair.Matched = pair.Right.x >= 0;
            return pair;
        }
    }
    for (const TBraceAt& b : braces) {
        if (b.At.x == x - 1 && !Opens(b.C)) {
            pair.Right = b.At;
            pair.Left = Walk(scanner, b.At, -1, KindOf(b.C), maxRows);
            pair.Matched = pair.Left.x >= 0;
            std::swap(pair.Left, pair.Right); // Left: the brace at the caret
            return pair;
        }
    }
    if (!whenInside)
        return pair;
    char16_t opener = 0;
    pair.Left = Walk(scanner, {x, y}, -1, -1, maxRows, &opener);
    if (pair.Left.x < 0)
        return pair;
    pair.Right = Walk(scanner, pair.Left, +1, KindOf(opener), maxRows);
    pair.Matched = pair.Right.x >= 0;
    return pair;
}

namespace {

constexpr std::u16string_view kVoidTags[] = {u"br",   u"meta", u"hr",    u"area",
                                             u"base", u"col",  u"frame", u"input",
                                             u"img",  u"link", u"param", u"basefont"};

bool SameName(std::u16string_view a, std::u16string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](auto l, auto r) {
               return (l | 0x20) == (r | 0x20);
           });
}

bool IsVoid(std::u16string_view name) {
    return std::any_of(std::begin(kVoidTags), std::end(kVoidTags),
                       [&](auto v) { return SameName(v, name); });
}

struct TTagRun {
    int X, Y, Len;
    bool Closing;
    std::u16string Name; // empty for a ">" or "/>" run
};

std::vector<TTagRun> RowTags(TLineScanner& scanner, int row) {
    std::vector<TTagRun> out;
    const auto text = scanner.Store().Get(row);
    for (const TColourRun& r : RowRuns(scanner, row)) {
        if (r.Info.Kind != TTokenKind::Tag)
            continue;
        auto t = text.substr(r.Start, r.Length);
        const bool opener = t.starts_with(u'<');
        const bool closing = t.starts_with(u"</");
        t.remove_prefix(opener ? (closing ? 2 : 1) : t.size());
        out.push_back({r.Start, row, r.Length, closing, std::u16string(t)});
    }
    return out;
}

} // namespace

TTagPosData CheckTagsToHighlight(TLineScanner& scanner, int x, int y, int maxRows) {
    TTagPosData d;
    if (y < 0 || y >= scanner.Store().Count())
        return d;
    // The name run at or left of the caret on its row.
    const auto tags = RowTags(scanner, y);
    const TTagRun* at = nullptr;
    for (const TTagRun& t : tags)
        if (!t.Name.empty() && t.X <= x)
            at = &t;
    if (!at || at->Closing || IsVoid(at->Name))
        return d;
    d.StartY = at->Y, d.StartX = at->X, d.StartLen = at->Len;
    int depth = 0;
    bool startEndSeen = false;
    const int last = std::min(scanner.Store().Count() - 1, y + maxRows);
    for (int row = y; row <= last; ++row)
        for (const TTagRun& t : RowTags(scanner, row)) {
            if (row == y && t.X <= at->X)
                continue;
            if (t.Name.empty()) {
                if (!startEndSeen)
                    startEndSeen = true, d.StartEndY = t.Y, d.StartEndX = t.X,
                    d.StartEndLen = t.Len;
                continue;
            }
            if (!SameName(t.Name, at->Name))
                continue;
            if (!t.Closing)
                ++depth;
            else if (depth-- == 0) {
                d.EndY = t.Y, d.EndX = t.X, d.EndLen = t.Len;
                return d;
            }
        }
    return d;
}

} // namespace zv
