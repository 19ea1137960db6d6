// Hand-over of a fold pass to the rows, and folding and unfolding by number.
#include "ZvMemoControl/ZvMemoFolds.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <atomic>

namespace zv {
namespace {

constexpr std::uint32_t Bit(int b) {
    return 1u << b;
}
constexpr std::uint32_t kFoldBits = Bit(abNodeHead) | Bit(abNodeEnd) | Bit(abNodeComment) |
                                    Bit(abNodeBegin) | Bit(abRgn_Begin) | Bit(abRgn_End);
constexpr std::uint32_t kClosedBits = Bit(abNodeClosed) | Bit(abRgn_Closed) | Bit(abSelNodeClosed);
constexpr std::uint32_t kHeadBits = Bit(abNodeHead) | Bit(abRgn_Begin) | Bit(abSelNodeHead);
constexpr std::uint32_t kEndBits = Bit(abNodeEnd) | Bit(abRgn_End) | Bit(abSelNodeEnd);

// Fold numbers are unique within the process rather than random: among a hundred thousand
// folds, random 31-bit numbers would collide, and a collision makes a head find a wrong end.
std::int32_t NewFoldNumber() {
    static std::atomic<std::int32_t> next{1};
    std::int32_t n = next.fetch_add(1, std::memory_order_relaxed);
    if (n >= 0x7FFFFFFD) { // after two thousand million folds: start again
        next.store(2);
        n = 1;
    }
    return n;
}

std::uint32_t Flags(const TZvMemoStrings& lines, int row) {
    return lines.GetLineAttribute(row).FBooleanArray;
}

// The number a head row's fold goes by: the selection fold's own, else the row's number.
std::int32_t HeadId(const TAttribute& a) {
    if (a.GetValue(abSelNodeHead))
        return a.Extra().SelNodeTopIdNr;
    return a.Extra().NodeTopIdNr;
}

bool EndsFold(const TAttribute& a, std::int32_t id) {
    if (!(a.FBooleanArray & kEndBits) || !a.Enabled())
        return false;
    if (a.GetValue(abSelNodeEnd) && a.Extra().SelNodeTopIdNr == id)
        return true;
    const auto& list = a.Extra().NodeTopIdNrList;
    return std::find(list.begin(), list.end(), id) != list.end();
}

// The fold data a pass gives one row.
struct TRowFold {
    std::uint32_t Bits = 0;
    bool EndBefore = false;
    std::int32_t Nr = 0;
    std::int8_t Level = -1, RgnLevel = -1;
    TCEListItemType Item = ceNone;
};

void WriteRow(TAttribute& a, const TRowFold& f, const std::vector<std::int32_t>& ended) {
    a.FBooleanArray = (a.FBooleanArray & ~kFoldBits) | f.Bits;
    a.SetValue2(ab2NodeEndBefore, f.EndBefore);
    const bool none =
        f.Nr == 0 && ended.empty() && f.Level < 0 && f.RgnLevel < 0 && f.Item == ceNone;
    if (none && !a.HasExtra())
        return; // the common row: no side block is made
    const TAttributeExtra& old = a.Extra();
    if (old.NodeTopIdNr == f.Nr && old.NodeTopIdNrList == ended && old.NodeLevel == f.Level &&
        old.Rgn_Level == f.RgnLevel && old.ceListItem == f.Item)
        return;
    TAttributeExtra& e = a.MutableExtra();
    e.NodeTopIdNr = f.Nr;
    e.NodeTopIdNrList = ended;
    e.NodeLevel = f.Level;
    e.Rgn_Level = f.RgnLevel;
    e.ceListItem = f.Item;
}

// The numbers of a pass's folds in one hand-over. A fold's number comes from its head row as
// it stood before the hand-over: a head keeps the number it had. It is read before the head
// row is written, or, for a head outside the rows written, when its end row is.
class TFoldNumbers {
public:
    TFoldNumbers(const TZvMemoStrings& lines, const std::vector<TFoldRange>& folds)
        : FLines(lines), FFolds(folds), FNumbers(folds.size(), 0) {}
    std::int32_t Of(std::size_t k) {
        if (FNumbers[k] == 0) {
            const TAttribute& head = FLines.GetLineAttribute(FFolds[k].First);
            const std::uint32_t bit = FFolds[k].Region ? Bit(abRgn_Begin) : Bit(abNodeHead);
            const std::int32_t old = head.Extra().NodeTopIdNr;
            FNumbers[k] = (head.FBooleanArray & bit) && old > 0 ? old : NewFoldNumber();
        }
        return FNumbers[k];
    }

private:
    const TZvMemoStrings& FLines;
    const std::vector<TFoldRange>& FFolds;
    std::vector<std::int32_t> FNumbers; // by fold; 0 until read (numbers are above 0)
};

// (end row, fold) of each fold ending in `spans` (sorted, disjoint), by row and fold.
std::vector<std::pair<std::int32_t, std::int32_t>> EndsInSpans(const std::vector<TFoldRange>& folds,
                                                               const std::vector<TRowSpan>& spans) {
    const auto inSpans = [&](std::int32_t row) {
        if (spans.empty() || row < spans.front().First || row > spans.back().Last)
            return false;
        const auto it = std::upper_bound(spans.begin(), spans.end(), row,
                                         [](int r, const TRowSpan& s) { return r < s.First; });
        return it != spans.begin() && row <= std::prev(it)->Last;
    };
    std::vector<std::pair<std::int32_t, std::int32_t>> ends;
    for (std::size_t k = 0; k < folds.size(); ++k)
        if (inSpans(folds[k].Last))
            ends.emplace_back(folds[k].Last, static_cast<std::int32_t>(k));
    std::sort(ends.begin(), ends.end());
    return ends;
}

// A fold the row heads: the first one names the row; the pass makes no second.
void AddHead(TRowFold& f, const TFoldRange& r, std::int32_t nr) {
    if (f.Nr != 0)
        return;
    f.Nr = nr;
    f.Bits |= r.Region ? Bit(abRgn_Begin) : Bit(abNodeHead);
    if (r.Comment)
        f.Bits |= Bit(abNodeComment);
    (r.Region ? f.RgnLevel : f.Level) = r.Level;
    f.Item = r.Item;
}

// A fold the row ends (its number goes on the row's list apart).
void AddEnd(TRowFold& f, const TFoldRange& r) {
    f.Bits |= r.Region ? Bit(abRgn_End) : Bit(abNodeEnd);
    f.EndBefore = f.EndBefore || r.EndBefore;
    if (f.Level < 0 && !r.Region)
        f.Level = r.Level;
}

} // namespace

void UpdateFoldData(TZvMemoStrings& lines, const TFoldTemp& temp) {
    if (temp.RowCount == lines.Count())
        UpdateFoldRows(lines, temp, {TRowSpan{0, temp.RowCount - 1}});
}

TRowSpan UpdateFoldRows(TZvMemoStrings& lines, const TFoldTemp& temp,
                        const std::vector<TRowSpan>& spans) {
    TRowSpan skipped{lines.Count(), -1};
    if (temp.RowCount != lines.Count())
        return skipped;
    const std::vector<TFoldRange>& folds = temp.Folds;
    TFoldNumbers numbers(lines, folds);
    const std::vector<std::pair<std::int32_t, std::int32_t>> ends = EndsInSpans(folds, spans);
    std::size_t nextEnd = 0;
    std::vector<std::int32_t> ended;
    for (const TRowSpan& span : spans) {
        std::size_t nextHead = static_cast<std::size_t>(
            std::lower_bound(folds.begin(), folds.end(), span.First,
                             [](const TFoldRange& f, int row) { return f.First < row; }) -
            folds.begin());
        for (int row = std::max(span.First, 0); row <= span.Last && row < lines.Count(); ++row) {
            TRowFold f;
            ended.clear();
            for (; nextHead < folds.size() && folds[nextHead].First == row; ++nextHead)
                AddHead(f, folds[nextHead], numbers.Of(nextHead));
            while (nextEnd < ends.size() && ends[nextEnd].first < row)
                ++nextEnd;
            for (; nextEnd < ends.size() && ends[nextEnd].first == row; ++nextEnd) {
                const auto k = static_cast<std::size_t>(ends[nextEnd].second);
                AddEnd(f, folds[k]);
                ended.push_back(numbers.Of(k));
            }
            TAttribute* a = lines.LineAttribute(row);
            if (!a || a->Hidden() || (a->FBooleanArray & (Bit(abNodeClosed) | Bit(abRgn_Closed)))) {
                skipped = {std::min(skipped.First, row), std::max(skipped.Last, row)};
                continue; // closed folds keep their flags and stay closed
            }
            WriteRow(*a, f, ended);
        }
    }
    return skipped;
}

bool IsFoldHead(const TZvMemoStrings& lines, int row) {
    return (Flags(lines, row) & kHeadBits) != 0;
}

bool IsFoldClosed(const TZvMemoStrings& lines, int row) {
    return (Flags(lines, row) & kClosedBits) != 0;
}

int GetNodeEndFromTopLine(const TZvMemoStrings& lines, int line) {
    const TAttribute& head = lines.GetLineAttribute(line);
    if (!(head.FBooleanArray & kHeadBits))
        return line;
    const std::int32_t id = HeadId(head);
    if (id <= 0)
        return line;
    if (EndsFold(head, id)) // a one-row fold
        return line;
    const int count = lines.Count();
    for (int row = line + 1; row < count; ++row)
        if (EndsFold(lines.GetLineAttribute(row), id))
            return row;
    return line;
}

int GetNodeTopFromEndLine(const TZvMemoStrings& lines, int line) {
    const TAttribute& end = lines.GetLineAttribute(line);
    if (!(end.FBooleanArray & kEndBits))
        return line;
    std::int32_t id = end.Extra().SelNodeTopIdNr;
    if (!end.GetValue(abSelNodeEnd)) {
        const auto& list = end.Extra().NodeTopIdNrList;
        if (list.empty())
            return line;
        id = list.front();
    }
    for (int row = line; row >= 0; --row) {
        const TAttribute& a = lines.GetLineAttribute(row);
        if ((a.FBooleanArray & kHeadBits) && HeadId(a) == id)
            return row;
    }
    return line;
}

int FoldHeadAround(const TZvMemoStrings& lines, int row) {
    if (row < 0 || row >= lines.Count())
        return -1;
    if (IsFoldHead(lines, row) && GetNodeEndFromTopLine(lines, row) > row)
        return row;
    // Going up, each fold ended above `row` hides its head from the search: folds nest.
    int depth = 0;
    for (int r = row - 1; r >= 0; --r) {
        const TAttribute& a = lines.GetLineAttribute(r);
        if (a.FBooleanArray & kHeadBits) {
            if (depth > 0)
                --depth;
            else if (GetNodeEndFromTopLine(lines, r) >= row)
                return r;
        }
        if (a.FBooleanArray & kEndBits)
            depth += std::max<int>(1, static_cast<int>(a.Extra().NodeTopIdNrList.size()));
    }
    return -1;
}

bool ToggleNode(TZvMemoStrings& lines, int line, bool open) {
    TAttribute* head = lines.LineAttribute(line);
    if (!head || !(head->FBooleanArray & kHeadBits))
        return false;
    const int end = GetNodeEndFromTopLine(lines, line);
    if (end <= line)
        return false;
    const int bit = head->GetValue(abSelNodeHead) ? abSelNodeClosed
                    : head->GetValue(abNodeHead)  ? abNodeClosed
                                                  : abRgn_Closed;
    head->SetValue(bit, !open);
    for (int row = line + 1; row <= end; ++row) {
        lines.SetHiddenLine(row, !open);
        lines.LineAttribute(row)->FBooleanArray &= ~kClosedBits;
    }
    return true;
}

int CloseAllNodes(TZvMemoStrings& lines) {
    int closed = 0;
    const int count = lines.Count();
    for (int row = 0; row < count; ++row) {
        const std::uint32_t f = Flags(lines, row);
        if (!(f & kHeadBits) || (f & kClosedBits) || (f & Bit(abHidden)))
            continue;
        const int end = GetNodeEndFromTopLine(lines, row);
        if (end > row && ToggleNode(lines, row, false)) {
            ++closed;
            row = end; // inner folds stay open inside the closed one
        }
    }
    return closed;
}

int OpenAllNodes(TZvMemoStrings& lines) {
    int shown = 0;
    const int count = lines.Count();
    for (int row = 0; row < count; ++row) {
        TAttribute* a = lines.LineAttribute(row);
        a->FBooleanArray &= ~kClosedBits;
        if (a->Hidden()) {
            lines.SetHiddenLine(row, false);
            ++shown;
        }
    }
    return shown;
}

int CloseNodesOfLevel(TZvMemoStrings& lines, int level) {
    int closed = 0;
    const int count = lines.Count();
    for (int row = 0; row < count; ++row) {
        const TAttribute& a = lines.GetLineAttribute(row);
        const std::uint32_t f = a.FBooleanArray;
        if (!(f & kHeadBits) || (f & Bit(abHidden)))
            continue;
        if (f & kClosedBits) { // already closed: nothing inside shows
            row = std::max(row, GetNodeEndFromTopLine(lines, row));
            continue;
        }
        const int depth = (f & Bit(abRgn_Begin)) ? a.Extra().Rgn_Level : a.Extra().NodeLevel;
        if (depth != level)
            continue;
        const int end = GetNodeEndFromTopLine(lines, row);
        if (end > row && ToggleNode(lines, row, false)) {
            ++closed;
            row = end;
        }
    }
    return closed;
}

bool OpenNearestNode(TZvMemoStrings& lines, int row) {
    row = std::min(row, lines.Count() - 1);
    while (row >= 0 && (!IsFoldHead(lines, row) || lines.GetHiddenLine(row)))
        --row;
    return row >= 0 && IsFoldClosed(lines, row) && ToggleNode(lines, row, true);
}

bool CloseNearestNode(TZvMemoStrings& lines, int row) {
    const int head = FoldHeadAround(lines, row);
    return head >= 0 && !IsFoldClosed(lines, head) && ToggleNode(lines, head, false);
}

int CloseNestedNodes(TZvMemoStrings& lines, int line, bool regionsOnly) {
    const std::uint32_t own = Flags(lines, line);
    const std::uint32_t heads = regionsOnly ? Bit(abRgn_Begin) : Bit(abNodeHead) | Bit(abRgn_Begin);
    if (!(own & heads))
        return 0;
    const int end = GetNodeEndFromTopLine(lines, line);
    int closed = 0;
    for (int row = line + 1; row < end; ++row) {
        const std::uint32_t f = Flags(lines, row);
        if (!(f & heads) || (f & Bit(abHidden)))
            continue;
        const int inner = GetNodeEndFromTopLine(lines, row);
        if (!(f & kClosedBits) && ToggleNode(lines, row, false))
            ++closed;
        row = std::max(row, inner); // what lies inside stays as it is
    }
    return closed;
}

int RegionHeadAround(const TZvMemoStrings& lines, int row) {
    for (int r = std::min(row, lines.Count() - 1); r >= 0; --r)
        if ((Flags(lines, r) & Bit(abRgn_Begin)) && GetNodeEndFromTopLine(lines, r) >= row)
            return r;
    return -1;
}

bool SelNodesAdd(TZvMemoStrings& lines, int first, int last) {
    if (first < 0 || last <= first || last >= lines.Count())
        return false;
    for (int row = first; row <= last; ++row)
        if (Flags(lines, row) & (Bit(abSelNodeHead) | Bit(abSelNodeEnd)))
            return false;
    const std::int32_t id = NewFoldNumber();
    TAttribute& head = *lines.LineAttribute(first);
    head.SetValue(abSelNodeHead, true);
    head.SetValue(abSelNodeClosed, false);
    head.MutableExtra().SelNodeTopIdNr = id;
    TAttribute& end = *lines.LineAttribute(last);
    end.SetValue(abSelNodeEnd, true);
    end.MutableExtra().SelNodeTopIdNr = id;
    return true;
}

bool SelNodesRemove(TZvMemoStrings& lines, int line) {
    int head = std::min(line, lines.Count() - 1);
    while (head >= 0 && !(Flags(lines, head) & Bit(abSelNodeHead)))
        --head;
    if (head < 0)
        return false;
    const int end = GetNodeEndFromTopLine(lines, head);
    if (end <= head || !(Flags(lines, end) & Bit(abSelNodeEnd)))
        return false;
    if (Flags(lines, head) & Bit(abSelNodeClosed))
        ToggleNode(lines, head, true);
    for (int row : {head, end}) {
        TAttribute& a = *lines.LineAttribute(row);
        a.FBooleanArray &= ~(Bit(abSelNodeHead) | Bit(abSelNodeClosed) | Bit(abSelNodeEnd));
        a.MutableExtra().SelNodeTopIdNr = -1;
    }
    return true;
}

bool OpenNodesOnHiddenLine(TZvMemoStrings& lines, int row) {
    bool opened = false;
    while (row >= 0 && row < lines.Count() && lines.GetHiddenLine(row)) {
        int above = row - 1;
        while (above >= 0 && lines.GetHiddenLine(above))
            --above;
        if (above < 0 || !IsFoldClosed(lines, above) || !ToggleNode(lines, above, true))
            break;
        opened = true;
    }
    return opened;
}

} // namespace zv
