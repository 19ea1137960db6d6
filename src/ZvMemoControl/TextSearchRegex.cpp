// The regular-expression walk of TTextSearch: the rows are matched in blocks of 51 (one row
// before them for context), joined by CR LF, never the whole document as one string; the
// next block starts at the last row of the one before, so a hit may cross any two rows.
#include "ZvMemoControl/RegexPattern.h"
#include "ZvMemoControl/TextSearch.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {
namespace {

constexpr int kBlockRows = 51;

// Rows [First, Last] joined: CR LF after each row the next does not continue (wrapped).
class TRegexBlock {
public:
    void Build(const TZvMemoStrings& lines, int first, int last) {
        FLines = &lines;
        FFirst = first;
        Subject.clear();
        FStarts.clear();
        for (int row = first; row <= last; ++row) {
            FStarts.push_back(Subject.size());
            Subject.append(lines.Get(row));
            if (row + 1 < lines.Count() && !lines.IsLineWrapped(row + 1))
                Subject.append(u"\r\n");
        }
    }
    // The subject offset of `p` (its row in the block, its column clipped to the row).
    std::size_t OffsetOf(TZvPos p) const {
        const std::size_t i = static_cast<std::size_t>(p.Y - FFirst);
        const auto length = static_cast<std::size_t>(FLines->GetLineLength(p.Y));
        return FStarts[i] + std::min(static_cast<std::size_t>(std::max(p.X, 0)), length);
    }
    // The position of `offset`; inside a line end, the row's end for a start (`end` false)
    // and the next row's start for an end.
    TZvPos PosOf(std::size_t offset, bool end) const {
        const auto it = std::upper_bound(FStarts.begin(), FStarts.end(), offset) - 1;
        const int row = FFirst + static_cast<int>(it - FStarts.begin());
        const auto col = static_cast<std::int32_t>(offset - *it);
        const std::int32_t length = FLines->GetLineLength(row);
        if (col <= length)
            return {col, row};
        return end ? TZvPos{0, row + 1} : TZvPos{length, row};
    }

    std::u16string Subject;

private:
    const TZvMemoStrings* FLines = nullptr;
    int FFirst = 0;
    std::vector<std::size_t> FStarts; // subject offset of each row
};

} // namespace

std::int64_t TTextSearch::ForEachRegex(const TZvMemoStrings& lines, TZvPos from, TZvPos to,
                                       int lastRow, const THitVisitor& visit) const {
    const int rows = lines.Count();
    if (rows == 0)
        return 0;
    TZvPos at = std::max(from, TZvPos{0, 0});
    if (at.Y >= rows)
        return 0;
    TRegexBlock block;
    std::int64_t count = 0;
    for (int start = at.Y;;) {
        int last = std::min(start + kBlockRows - 1, rows - 1);
        while (last + 1 < rows && lines.IsLineWrapped(last + 1))
            ++last; // a block ends where a line ends
        block.Build(lines, std::max(start - 1, 0), last);
        std::size_t offset = block.OffsetOf(at);
        while (FPattern->Match(block.Subject, offset)) {
            const std::size_t* ov = FPattern->Offsets();
            const TSearchHit hit{block.PosOf(ov[0], false), block.PosOf(ov[1], true)};
            if (hit.End > to || hit.Start.Y > lastRow)
                return count;
            offset = ov[1];
            const char16_t before = ov[0] > 0 ? block.Subject[ov[0] - 1] : 0;
            const bool lineStart =
                hit.Start.X == 0 && (hit.Start.Y == 0 || !lines.IsLineWrapped(hit.Start.Y));
            if (!Accepted(block.Subject, ov[0], ov[1] - ov[0], hit.Start, before, lineStart))
                continue;
            ++count;
            if (!visit(hit, TMatchGroups(block.Subject, ov, FPattern->Groups())))
                return count;
            at = hit.End;
        }
        if (last >= rows - 1 || last >= to.Y || last >= lastRow)
            return count;
        start = last;
        at = std::max(at, TZvPos{0, start});
    }
}

} // namespace zv
