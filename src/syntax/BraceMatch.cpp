// Brace and tag-pair walks over the runs of rows; the brace walk crosses rows by their facts.
#include "syntax/BraceMatch.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zv {
namespace {

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

// The counters of a walk in one direction: one per brace kind, or only `kind`'s when it is
// not -1. Going right an opener nests and a closer unnests; going left the other way round.
class TBraceWalk {
public:
    TBraceWalk(int dir, int kind) : FDir(dir), FKind(kind) {}

    // Offers the next brace met; true when it is the partner looked for.
    bool Offer(char16_t c) {
        const int k = TRowFacts::BraceKind(c);
        if (!Counts(k))
            return false;
        if (TRowFacts::Opens(c) == (FDir > 0)) {
            ++FDepth[k];
            return false;
        }
        return --FDepth[k] < 0;
    }

    // True when a row of these facts may hold the partner; otherwise passes over the row.
    bool MayHold(const TRowFacts& f) {
        for (int k = 0; k < 3; ++k)
            if (Counts(k) && (f.Saturated(k) || (FDir < 0 ? f.Open[k] : f.Close[k]) > FDepth[k]))
                return true;
        for (int k = 0; k < 3; ++k)
            FDepth[k] += FDir < 0 ? f.Close[k] - f.Open[k] : f.Open[k] - f.Close[k];
        return false;
    }

private:
    bool Counts(int k) const { return k >= 0 && (FKind < 0 || k == FKind); }
    int FDir, FKind;
    std::array<int, 3> FDepth{};
};

// Walks from the brace (or caret column) at `from` in `dir` (+1 right, -1 left) to its
// partner of `kind`; with a `kind` of -1 to the first unbalanced brace of any kind.
TBracePoint Walk(TLineScanner& scanner, TBracePoint from, int dir, int kind,
                 char16_t* found = nullptr) {
    TBraceWalk walk(dir, kind);
    const int count = scanner.Store().Count();
    for (int row = from.Y; row >= 0 && row < count; row += dir) {
        TRowFacts facts;
        if (row != from.Y && scanner.GetRowFacts(row, facts) && !walk.MayHold(facts))
            continue;
        auto braces = RowBraces(scanner, row);
        if (dir < 0)
            std::reverse(braces.begin(), braces.end());
        for (const TBraceAt& b : braces) {
            if (row == from.Y && (dir > 0 ? b.At.x <= from.x : b.At.x >= from.x))
                continue;
            if (walk.Offer(b.C)) {
                if (found)
                    *found = b.C;
                return b.At;
            }
        }
    }
    return {};
}

} // namespace

TBracePair FindBracePair(TLineScanner& scanner, int x, int y, bool whenInside) {
    TBracePair pair;
    TRowFacts facts;
    // The rows above the caret get exact stored states first, so the caret row is cut as
    // the rows the walk crosses are.
    if (!scanner.GetRowFacts(y, facts))
        return pair;
    const auto braces = RowBraces(scanner, y);
    for (const TBraceAt& b : braces) {
        if (b.At.x == x && TRowFacts::Opens(b.C)) {
            pair.Left = b.At;
            pair.Right = Walk(scanner, b.At, +1, TRowFacts::BraceKind(b.C));
            pair.Matched = pair.Right.x >= 0;
            return pair;
        }
    }
    for (const TBraceAt& b : braces) {
        if (b.At.x == x - 1 && !TRowFacts::Opens(b.C)) {
            pair.Right = b.At;
            pair.Left = Walk(scanner, b.At, -1, TRowFacts::BraceKind(b.C));
            pair.Matched = pair.Left.x >= 0;
            std::swap(pair.Left, pair.Right); // Left: the brace at the caret
            return pair;
        }
    }
    if (!whenInside)
        return pair;
    char16_t opener = 0;
    pair.Left = Walk(scanner, {x, y}, -1, -1, &opener);
    if (pair.Left.x < 0)
        return pair;
    pair.Right = Walk(scanner, pair.Left, +1, TRowFacts::BraceKind(opener));
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
    bool SelfEnd;        // a "/>" run
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
        const bool selfEnd = !opener && t.starts_with(u"/>");
        t.remove_prefix(opener ? (closing ? 2 : 1) : t.size());
        out.push_back({r.Start, row, r.Length, closing, selfEnd, std::u16string(t)});
    }
    return out;
}

// The end (">" or "/>") of the opening tag `at`.
const TTagRun* FindTagEnd(TLineScanner& scanner, const TTagRun& at, int last,
                          std::vector<TTagRun>& keep) {
    for (int row = at.Y; row <= last; ++row) {
        keep = RowTags(scanner, row);
        for (const TTagRun& t : keep)
            if (t.Name.empty() && (row > at.Y || t.X > at.X))
                return &t;
    }
    return nullptr;
}

// From the opening tag `at` down to its closing tag; d.Start* are set.
void WalkToClosing(TLineScanner& scanner, const TTagRun& at, int last, TTagPosData& d) {
    std::vector<TTagRun> keep;
    const TTagRun* end = FindTagEnd(scanner, at, last, keep);
    if (!end)
        return;
    d.StartEndY = end->Y, d.StartEndX = end->X, d.StartEndLen = end->Len;
    if (end->SelfEnd)
        return; // "<a/>" closes itself
    int depth = 0;
    bool nestedOpen = false; // the last name run was an opening tag of the same name
    for (int row = end->Y; row <= last; ++row)
        for (const TTagRun& t : RowTags(scanner, row)) {
            if (row == end->Y && t.X <= end->X)
                continue;
            if (t.Name.empty()) {
                if (t.SelfEnd && nestedOpen)
                    --depth;
                nestedOpen = false;
                continue;
            }
            nestedOpen = false;
            if (!SameName(t.Name, at.Name))
                continue;
            if (!t.Closing) {
                ++depth;
                nestedOpen = true;
            } else if (depth-- == 0) {
                d.EndY = t.Y, d.EndX = t.X, d.EndLen = t.Len;
                return;
            }
        }
}

// From the closing tag `at` up to its opening tag; d.End* are set.
void WalkToOpening(TLineScanner& scanner, const TTagRun& at, int first, int last, TTagPosData& d) {
    int depth = 0;
    bool selfEnded = false; // the run behind the name met next (going up) was "/>"
    for (int row = at.Y; row >= first; --row) {
        auto tags = RowTags(scanner, row);
        std::reverse(tags.begin(), tags.end());
        for (const TTagRun& t : tags) {
            if (row == at.Y && t.X >= at.X)
                continue;
            if (t.Name.empty()) {
                selfEnded = t.SelfEnd;
                continue;
            }
            const bool selfClosed = std::exchange(selfEnded, false);
            if (selfClosed || !SameName(t.Name, at.Name))
                continue;
            if (t.Closing) {
                ++depth;
            } else if (depth-- == 0) {
                d.StartY = t.Y, d.StartX = t.X, d.StartLen = t.Len;
                std::vector<TTagRun> keep;
                if (const TTagRun* end = FindTagEnd(scanner, t, last, keep))
                    d.StartEndY = end->Y, d.StartEndX = end->X, d.StartEndLen = end->Len;
                return;
            }
        }
    }
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
    if (!at || IsVoid(at->Name))
        return d;
    const int last = std::min(scanner.Store().Count() - 1, y + maxRows);
    if (!at->Closing) {
        d.StartY = at->Y, d.StartX = at->X, d.StartLen = at->Len;
        WalkToClosing(scanner, *at, last, d);
        return d;
    }
    d.EndY = at->Y, d.EndX = at->X, d.EndLen = at->Len;
    WalkToOpening(scanner, *at, std::max(0, y - maxRows), last, d);
    if (d.StartY < 0)
        d = {}; // a closing tag without its opening one pairs with nothing
    return d;
}

} // namespace zv
