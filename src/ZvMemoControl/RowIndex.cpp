// The chunked position index of the line store: chunk bookkeeping, the gap of the chunk
// array, and the searches.
#include "ZvMemoControl/RowIndex.h"

#include <algorithm>
#include <cstring>

namespace zv {

TRowIndex::~TRowIndex() = default;

void TRowIndex::Clear() {
    FChunks.clear();
    FFree.clear();
    FEntries.clear();
    FUsed = FGap = 0;
    FTotal = {};
    FHint = kNone;
}

// ---- The chunk array --------------------------------------------------------------------

TRowIndex::TSums TRowIndex::Before(std::size_t k) const {
    if (k < FGap)
        return FEntries[k].Sums;
    return k < FUsed ? FTotal - FEntries[Physical(k)].Sums : FTotal;
}

// Entries crossing the gap switch between "sums before" and "sums from here on".
void TRowIndex::MoveGap(std::size_t k) {
    const std::size_t gap = FEntries.size() - FUsed;
    while (FGap > k) {
        --FGap;
        const TEntry e = FEntries[FGap];
        FEntries[FGap + gap] = {FTotal - e.Sums, e.Chunk};
    }
    while (FGap < k) {
        const TEntry e = FEntries[FGap + gap];
        FEntries[FGap] = {FTotal - e.Sums, e.Chunk};
        ++FGap;
    }
}

void TRowIndex::AddChunk(std::size_t k) {
    TChunk* chunk;
    if (FFree.empty()) {
        FChunks.push_back(std::make_unique<TChunk>());
        chunk = FChunks.back().get();
    } else {
        chunk = FFree.back();
        FFree.pop_back();
    }
    chunk->Count = 0;
    if (FUsed == FEntries.size()) {
        MoveGap(FUsed);
        FEntries.resize(std::max<std::size_t>(16, FEntries.size() * 2));
    }
    MoveGap(k);
    FEntries[FGap] = {Before(k), chunk};
    ++FGap;
    ++FUsed;
    ForgetHintFrom(k);
}

void TRowIndex::RemoveChunk(std::size_t k) {
    MoveGap(k);
    FFree.push_back(FEntries[Physical(k)].Chunk);
    --FUsed; // the entry behind the gap joins it
    ForgetHintFrom(k);
}

template <typename Test> std::size_t TRowIndex::FirstChunkEnd(Test test) const {
    std::size_t lo = 1, hi = FUsed;
    while (lo < hi) {
        const std::size_t mid = lo + (hi - lo) / 2;
        if (test(Before(mid)))
            hi = mid;
        else
            lo = mid + 1;
    }
    return lo;
}

TRowIndex::TPlace TRowIndex::LocateFar(std::size_t row) const {
    if (FHint != kNone && row >= FHintRow) {
        const std::size_t at = row - FHintRow;
        if (FHint + 1 < FUsed) { // ascending walks step to the next chunk
            TChunk* next = &ChunkAt(FHint + 1);
            if (at - FHintChunk->Count < next->Count) {
                FHintRow += FHintChunk->Count;
                ++FHint;
                FHintChunk = next;
                return {FHint, row - FHintRow, next};
            }
        }
    }
    const auto rows = static_cast<std::int64_t>(row);
    FHint = FirstChunkEnd([rows](const TSums& s) { return s.Rows > rows; }) - 1;
    FHintRow = static_cast<std::size_t>(Before(FHint).Rows);
    FHintChunk = &ChunkAt(FHint);
    return {FHint, row - FHintRow, FHintChunk};
}

// ---- Rows in chunks ---------------------------------------------------------------------

void TRowIndex::PutRows(std::size_t k, TChunk& c, std::size_t at, const std::uint32_t* widths,
                        const std::uint8_t* starts, std::size_t n) {
    if (n == 0)
        return;
    std::memmove(c.Widths + at + n, c.Widths + at, (c.Count - at) * sizeof(c.Widths[0]));
    std::memmove(c.Starts + at + n, c.Starts + at, c.Count - at);
    TSums delta{0, static_cast<std::int64_t>(n), 0};
    if (widths) {
        std::memcpy(c.Widths + at, widths, n * sizeof(c.Widths[0]));
        std::memcpy(c.Starts + at, starts, n);
        for (std::size_t i = 0; i < n; ++i) {
            delta.Width += widths[i];
            delta.Starts += starts[i];
        }
    } else {
        for (std::size_t i = at; i < at + n; ++i) { // mostly one row: no call
            c.Widths[i] = 0;
            c.Starts[i] = 0;
        }
    }
    c.Count += static_cast<std::uint32_t>(n);
    Adjust(k, delta);
    ForgetHintFrom(k + 1);
}

void TRowIndex::TakeRows(std::size_t k, TChunk& c, std::size_t at, std::size_t n,
                         std::uint32_t* widths, std::uint8_t* starts) {
    TSums delta{0, -static_cast<std::int64_t>(n), 0};
    for (std::size_t i = at; i < at + n; ++i) {
        delta.Width -= c.Widths[i];
        delta.Starts -= c.Starts[i];
    }
    if (widths) {
        std::memcpy(widths, c.Widths + at, n * sizeof(c.Widths[0]));
        std::memcpy(starts, c.Starts + at, n);
    }
    const std::size_t behind = c.Count - at - n;
    std::memmove(c.Widths + at, c.Widths + at + n, behind * sizeof(c.Widths[0]));
    std::memmove(c.Starts + at, c.Starts + at + n, behind);
    c.Count -= static_cast<std::uint32_t>(n);
    Adjust(k, delta);
    ForgetHintFrom(k + 1);
}

std::size_t TRowIndex::FillZeros(std::size_t k, std::size_t n) {
    for (;;) {
        TChunk& c = ChunkAt(k);
        const std::size_t put = std::min(kChunkRows - c.Count, n);
        PutRows(k, c, c.Count, nullptr, nullptr, put);
        n -= put;
        if (n == 0)
            return k;
        AddChunk(++k);
    }
}

void TRowIndex::Insert(std::size_t row, std::size_t n) {
    if (n == 0)
        return;
    if (FUsed == 0) {
        AddChunk(0);
        FillZeros(0, n);
        return;
    }
    TPlace place{FUsed - 1, 0, &ChunkAt(FUsed - 1)};
    if (row < Rows())
        place = Locate(row);
    else
        place.Offset = place.Chunk->Count;
    std::size_t k = place.Entry;
    TChunk& c = *place.Chunk;
    if (c.Count + n <= kChunkRows) {
        PutRows(k, c, place.Offset, nullptr, nullptr, n);
        return;
    }
    // The rows behind the insertion point step aside, the new rows fill this chunk and new
    // ones, and the rows that stepped aside follow: into the last chunk while it has room,
    // then into the next chunk when they fit there, else into a chunk of their own.
    std::uint32_t widths[kChunkRows];
    std::uint8_t starts[kChunkRows];
    const std::size_t tail = c.Count - place.Offset;
    TakeRows(k, c, place.Offset, tail, widths, starts);
    k = FillZeros(k, n);
    TChunk& last = ChunkAt(k);
    const std::size_t here = std::min(tail, kChunkRows - last.Count);
    PutRows(k, last, last.Count, widths, starts, here);
    const std::size_t rest = tail - here;
    if (rest == 0)
        return;
    if (k + 1 >= FUsed || ChunkAt(k + 1).Count + rest > kChunkRows)
        AddChunk(k + 1);
    PutRows(k + 1, ChunkAt(k + 1), 0, widths + here, starts + here, rest);
}

void TRowIndex::Erase(std::size_t row, std::size_t n) {
    while (n > 0) {
        const TPlace place = Locate(row);
        TChunk& c = *place.Chunk;
        const std::size_t take = std::min<std::size_t>(n, c.Count - place.Offset);
        TakeRows(place.Entry, c, place.Offset, take, nullptr, nullptr);
        n -= take;
        if (c.Count == 0)
            RemoveChunk(place.Entry);
        else
            MergeSmall(place.Entry, c);
    }
}

// A chunk below a quarter full joins a neighbour that has room for it.
void TRowIndex::MergeSmall(std::size_t k, TChunk& c) {
    const std::size_t count = c.Count;
    if (count >= kChunkRows / 4)
        return;
    std::uint32_t widths[kChunkRows];
    std::uint8_t starts[kChunkRows];
    if (k + 1 < FUsed && count + ChunkAt(k + 1).Count <= kChunkRows) {
        TChunk& next = ChunkAt(k + 1);
        const std::size_t moved = next.Count;
        TakeRows(k + 1, next, 0, moved, widths, starts);
        PutRows(k, c, count, widths, starts, moved);
        RemoveChunk(k + 1);
    } else if (k > 0 && count + ChunkAt(k - 1).Count <= kChunkRows) {
        TChunk& previous = ChunkAt(k - 1);
        TakeRows(k, c, 0, count, widths, starts);
        PutRows(k - 1, previous, previous.Count, widths, starts, count);
        RemoveChunk(k);
    }
}

// ---- Searches ---------------------------------------------------------------------------

std::int64_t TRowIndex::WidthBefore(std::size_t row) const {
    if (row >= Rows())
        return FTotal.Width;
    const TPlace place = Locate(row);
    std::int64_t sum = Before(place.Entry).Width;
    for (std::size_t i = 0; i < place.Offset; ++i)
        sum += place.Chunk->Widths[i];
    return sum;
}

std::size_t TRowIndex::StartsBefore(std::size_t row) const {
    if (row >= Rows())
        return TotalStarts();
    const TPlace place = Locate(row);
    auto sum = static_cast<std::size_t>(Before(place.Entry).Starts);
    for (std::size_t i = 0; i < place.Offset; ++i)
        sum += place.Chunk->Starts[i];
    return sum;
}

std::size_t TRowIndex::RowReaching(std::int64_t width, std::int64_t* reached) const {
    if (width <= 0) {
        if (reached)
            *reached = 0;
        return 0;
    }
    if (width > FTotal.Width)
        return Rows() + 1;
    const std::size_t k = FirstChunkEnd([width](const TSums& s) { return s.Width >= width; }) - 1;
    const TSums before = Before(k);
    const TChunk& c = ChunkAt(k);
    std::int64_t sum = before.Width;
    std::size_t i = 0;
    while ((sum += c.Widths[i]) < width && i + 1 < c.Count)
        ++i;
    if (reached)
        *reached = sum;
    return static_cast<std::size_t>(before.Rows) + i + 1;
}

std::size_t TRowIndex::NthStart(std::size_t n) const {
    if (n >= TotalStarts())
        return Rows();
    const auto wanted = static_cast<std::int64_t>(n);
    const std::size_t k = FirstChunkEnd([wanted](const TSums& s) { return s.Starts > wanted; }) - 1;
    const TSums before = Before(k);
    const TChunk& c = ChunkAt(k);
    std::int64_t seen = before.Starts;
    std::size_t i = 0;
    while (i + 1 < c.Count && (seen += c.Starts[i]) <= wanted)
        ++i;
    return static_cast<std::size_t>(before.Rows) + i;
}

} // namespace zv
