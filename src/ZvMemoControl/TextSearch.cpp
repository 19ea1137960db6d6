// The plain search of TTextSearch (candidates, filters, multi-line texts, the soft-wrap
// straddle) and the steps forward and backward shared with the regular expressions.
#include "ZvMemoControl/TextSearch.h"

#include "ZvMemoControl/RegexPattern.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace zv {
namespace {

static_assert(std::endian::native == std::endian::little, "the unit scan reads bytes in order");

// The first unit equal to `c` in [p, end), or end. In a long range memchr over the unit's
// non-zero byte (its SIMD scan) finds the candidates; only those at the unit's own byte
// position count.
const char16_t* FindUnit(const char16_t* p, const char16_t* end, char16_t c) {
    if (end - p < 32) { // a call of memchr costs more than a short row
        while (p != end && *p != c)
            ++p;
        return p;
    }
    const auto lo = static_cast<unsigned char>(c & 0xFF);
    const bool byLow = lo != 0;
    const unsigned char key = byLow ? lo : static_cast<unsigned char>(c >> 8);
    const std::size_t parity = byLow ? 0 : 1;
    const auto* base = reinterpret_cast<const unsigned char*>(p);
    const auto* bytes = base;
    const auto* stop = reinterpret_cast<const unsigned char*>(end);
    while (bytes < stop) {
        const auto* q = static_cast<const unsigned char*>(
            std::memchr(bytes, key, static_cast<std::size_t>(stop - bytes)));
        if (!q)
            return end;
        const auto offset = static_cast<std::size_t>(q - base);
        if ((offset & 1) == parity && p[offset / 2] == c)
            return p + offset / 2;
        bytes = q + 1;
    }
    return end;
}

char16_t UnitLower(char16_t c) {
    return c >= 0xD800 && c <= 0xDFFF ? c : static_cast<char16_t>(u_tolower(c));
}
char16_t UnitUpper(char16_t c) {
    return c >= 0xD800 && c <= 0xDFFF ? c : static_cast<char16_t>(u_toupper(c));
}

// The lines of `text`, split at CR LF, CR and LF; at least one.
std::vector<std::u16string> SplitLines(std::u16string_view text) {
    std::vector<std::u16string> lines(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'\r' || c == u'\n') {
            if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
                ++i;
            lines.emplace_back();
        } else {
            lines.back().push_back(c);
        }
    }
    return lines;
}

// True when the row after `row` is not its wrapped continuation: the line ends there.
bool EndsLine(const TZvMemoStrings& lines, int row) {
    return row + 1 >= lines.Count() || !lines.IsLineWrapped(row + 1);
}

// The last unit of `row` (0 when empty).
char16_t LastUnit(const TZvMemoStrings& lines, int row) {
    const std::u16string_view text = lines.Get(row);
    return text.empty() ? 0 : text.back();
}

} // namespace

std::u16string_view TMatchGroups::Group(int i) const {
    if (i < 0 || i >= FCount)
        return {};
    const std::size_t start = FOffsets[2 * i], end = FOffsets[2 * i + 1];
    if (start > end || end > FSubject.size())
        return {};
    return FSubject.substr(start, end - start);
}

TTextSearch::TTextSearch() = default;
TTextSearch::~TTextSearch() = default;
TTextSearch::TTextSearch(TTextSearch&&) noexcept = default;
TTextSearch& TTextSearch::operator=(TTextSearch&&) noexcept = default;

bool TTextSearch::Prepare(std::u16string_view text, TZvFindOptions options,
                          std::u16string_view userDelimiters) {
    std::unique_ptr<TRegexPattern> pattern;
    if ((options & frRegExp) && !text.empty()) {
        pattern = std::make_unique<TRegexPattern>(text, !(options & frCase));
        if (!pattern->Valid()) {
            FError = pattern->Error();
            return false;
        }
    }
    FError.clear();
    FText = text;
    FOptions = options & ~(frDownward | frUpward);
    FDelimiters = userDelimiters;
    FPattern = std::move(pattern);
    FFragments.clear();
    if (!FPattern) {
        for (std::u16string& line : SplitLines(text)) {
            TFragment fragment{std::move(line), {}, {}};
            for (char16_t c : fragment.Text) {
                fragment.Lower.push_back(UnitLower(c));
                fragment.Upper.push_back(UnitUpper(c));
            }
            FFragments.push_back(std::move(fragment));
        }
    }
    return true;
}

std::size_t TTextSearch::FindCandidate(std::u16string_view buffer, std::size_t from) const {
    const TFragment& f = FFragments.front();
    const std::size_t n = f.Text.size();
    if (n == 0 || buffer.size() < n || from > buffer.size() - n)
        return std::u16string_view::npos;
    const char16_t* data = buffer.data();
    const char16_t* last = data + (buffer.size() - n) + 1; // one past the last possible start
    if (FOptions & frCase) {
        for (const char16_t* p = data + from; (p = FindUnit(p, last, f.Text[0])) != last; ++p)
            if (std::memcmp(p + 1, f.Text.data() + 1, (n - 1) * sizeof(char16_t)) == 0)
                return static_cast<std::size_t>(p - data);
        return std::u16string_view::npos;
    }
    const char16_t lo = f.Lower[0], up = f.Upper[0];
    const auto matchesAt = [&](const char16_t* p) {
        std::size_t i = 1;
        while (i < n && (p[i] == f.Lower[i] || p[i] == f.Upper[i]))
            ++i;
        return i == n;
    };
    if (last - (data + from) < 64) { // one pass over a short row beats two unit scans
        for (const char16_t* p = data + from; p != last; ++p)
            if ((*p == lo || *p == up) && matchesAt(p))
                return static_cast<std::size_t>(p - data);
        return std::u16string_view::npos;
    }
    // The next unit in either case, by two unit scans that leapfrog.
    const char16_t* nextLo = FindUnit(data + from, last, lo);
    const char16_t* nextUp = lo == up ? last : FindUnit(data + from, last, up);
    while (nextLo != last || nextUp != last) {
        const char16_t* p = std::min(nextLo, nextUp);
        if (p == nextLo)
            nextLo = FindUnit(p + 1, last, lo);
        else
            nextUp = FindUnit(p + 1, last, up);
        if (matchesAt(p))
            return static_cast<std::size_t>(p - data);
    }
    return std::u16string_view::npos;
}

bool TTextSearch::EqualsFragment(std::u16string_view text, const TFragment& fragment) const {
    if (text.size() != fragment.Text.size())
        return false;
    if (FOptions & frCase)
        return text == fragment.Text;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != fragment.Lower[i] && text[i] != fragment.Upper[i])
            return false;
    return true;
}

bool TTextSearch::Accepted(std::u16string_view buffer, std::size_t offset, std::size_t length,
                           TZvPos pos, char16_t before, bool lineStart) const {
    // Deliberately narrow: only a tag opened at a line's first column is skipped.
    if ((FOptions & frSkipTags) && lineStart && offset < buffer.size() && buffer[offset] == u'<')
        return false;
    if (FTokens && (FOptions & frSkipComments) && FTokens->InComment(pos))
        return false;
    if (FTokens && (FOptions & frSkipStrings) && FTokens->InString(pos))
        return false;
    if (FOptions & frWord) {
        if (before != 0 && !IsWordDelimiter(before, FDelimiters))
            return false;
        if (offset + length < buffer.size() &&
            !IsWordDelimiter(buffer[offset + length], FDelimiters))
            return false;
    }
    return true;
}

std::optional<TZvPos> TTextSearch::MultiLineEnd(const TZvMemoStrings& lines, int row,
                                                int col) const {
    const int n = static_cast<int>(FFragments.size());
    if (col + static_cast<int>(FFragments.front().Text.size()) != lines.GetLineLength(row) ||
        !EndsLine(lines, row) || row + n - 1 >= lines.Count())
        return std::nullopt;
    for (int i = 1; i + 1 < n; ++i)
        if (!EndsLine(lines, row + i) ||
            !EqualsFragment(lines.Get(row + i), FFragments[static_cast<std::size_t>(i)]))
            return std::nullopt;
    const TFragment& last = FFragments.back();
    const std::u16string_view tail = lines.Get(row + n - 1);
    if (tail.size() < last.Text.size() || !EqualsFragment(tail.substr(0, last.Text.size()), last))
        return std::nullopt;
    return TZvPos{static_cast<std::int32_t>(last.Text.size()), row + n - 1};
}

std::int64_t TTextSearch::ForEach(const TZvMemoStrings& lines, TZvPos from, TZvPos to,
                                  const THitVisitor& visit) const {
    if (FText.empty())
        return 0;
    return FPattern ? ForEachRegex(lines, from, to, INT32_MAX, visit)
                    : ForEachPlain(lines, from, to, INT32_MAX, visit);
}

std::int64_t TTextSearch::ForEachPlain(const TZvMemoStrings& lines, TZvPos from, TZvPos to,
                                       int lastRow, const THitVisitor& visit) const {
    const int rows = lines.Count();
    const std::size_t length = FFragments.front().Text.size();
    const bool multi = FFragments.size() > 1;
    std::u16string straddle, joined;
    std::int64_t count = 0;
    TZvPos at{std::max(from.X, 0), std::max(from.Y, 0)};
    const int stopRow = std::min({rows - 1, to.Y, lastRow});
    for (int row = at.Y; row <= stopRow; ++row) {
        const std::u16string_view text = lines.Get(row);
        std::u16string_view buffer = text;
        if (!multi && !EndsLine(lines, row)) { // a hit may run on into the wrapped row
            straddle.assign(text);
            straddle.append(lines.Get(row + 1).substr(0, length));
            buffer = straddle;
        }
        std::size_t col = row == at.Y ? static_cast<std::size_t>(at.X) : 0;
        while (col <= text.size()) {
            std::size_t c = text.size(); // an empty first line: only at the row's end
            if (length > 0) {
                c = FindCandidate(buffer, col);
                if (c == std::u16string_view::npos || c >= text.size())
                    break; // a hit beginning in the wrapped row is found from there
            }
            const TZvPos start{static_cast<std::int32_t>(c), row};
            col = c + std::max<std::size_t>(length, 1);
            const bool continued = c == 0 && row > 0 && lines.IsLineWrapped(row);
            const char16_t before = c > 0       ? buffer[c - 1]
                                    : continued ? LastUnit(lines, row - 1)
                                                : 0;
            if (!Accepted(buffer, c, length, start, before, c == 0 && !continued))
                continue;
            TSearchHit hit{start, {}};
            std::size_t offsets[2] = {c, c + length};
            std::u16string_view subject = buffer;
            if (multi) {
                const std::optional<TZvPos> end = MultiLineEnd(lines, row, start.X);
                if (!end)
                    break; // the rest of the row cannot reach its end
                hit.End = *end;
                joined.assign(text.substr(c));
                for (int r = row + 1; r <= end->Y; ++r) {
                    const std::u16string_view next = lines.Get(r);
                    joined.append(u"\r\n").append(r < end->Y ? next : next.substr(0, end->X));
                }
                subject = joined;
                offsets[0] = 0;
                offsets[1] = joined.size();
            } else if (c + length <= text.size()) {
                hit.End = {static_cast<std::int32_t>(c + length), row};
            } else {
                hit.End = {static_cast<std::int32_t>(c + length - text.size()), row + 1};
            }
            if (hit.End > to)
                return count;
            ++count;
            if (!visit(hit, TMatchGroups(subject, offsets, 1)))
                return count;
            if (hit.End.Y > row) {
                at = hit.End;
                row = hit.End.Y - 1; // the loop steps onto the hit's last row
                break;
            }
        }
    }
    return count;
}

std::optional<TSearchHit> TTextSearch::FindForward(const TZvMemoStrings& lines, TZvPos from,
                                                   TZvPos to) const {
    std::optional<TSearchHit> found;
    ForEach(lines, from, to, [&](const TSearchHit& hit, const TMatchGroups&) {
        found = hit;
        return false;
    });
    return found;
}

std::optional<TSearchHit> TTextSearch::FindBackward(const TZvMemoStrings& lines, TZvPos from,
                                                    TZvPos to) const {
    const int rows = lines.Count();
    if (FText.empty() || rows == 0 || from < to)
        return std::nullopt;
    // Rounds of rows from `from` up: the last hit whose start lies in the round's rows.
    const int chunk = FPattern ? 50 : 1;
    const int top = std::max(to.Y, 0);
    std::optional<TSearchHit> found;
    const THitVisitor keep = [&](const TSearchHit& hit, const TMatchGroups&) {
        found = hit;
        return true;
    };
    for (int hi = std::min(from.Y, rows - 1); hi >= top; hi -= chunk) {
        const int lo = std::max(hi - chunk + 1, top);
        const TZvPos start = std::max(TZvPos{0, lo}, to);
        if (FPattern)
            ForEachRegex(lines, start, from, hi, keep);
        else
            ForEachPlain(lines, start, from, hi, keep);
        if (found)
            return found;
    }
    return std::nullopt;
}

} // namespace zv
