// TRowIndex: the position index of the line store. Per row it keeps a width (what the row
// adds to the character offset of the rows below it) and whether the row begins a real line,
// and answers sums over rows and the row where a sum is reached in O(log n).
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace zv {

// Rows are kept in chunks of at most kChunkRows consecutive rows; an array of the chunks in
// row order holds the sums before each chunk. That array is a gap buffer whose entries before
// the gap hold the sums before the chunk and whose entries behind it hold the sums from the
// chunk to the end: a change of one chunk moves the gap next to it and changes only the
// totals, so a run of changes at one place costs O(1) and a change far away moves the gap
// over chunks, never over rows.
//
// Memory: 5 bytes per row slot (a 32-bit width and a one-byte line-start flag) and 32 bytes
// per chunk of kChunkRows slots, so 5.1 bytes a row in full chunks; a chunk that falls below
// a quarter full merges with a neighbour that has room. Allocation is per chunk, never per
// row.
class TRowIndex {
public:
    static constexpr std::size_t kChunkRows = 256;

    TRowIndex() = default;
    TRowIndex(const TRowIndex&) = delete;
    TRowIndex& operator=(const TRowIndex&) = delete;
    ~TRowIndex();

    std::size_t Rows() const { return static_cast<std::size_t>(FTotal.Rows); }
    std::size_t TotalStarts() const { return static_cast<std::size_t>(FTotal.Starts); }

    void Clear();
    // Inserts `n` rows of zero weight before `row` (row <= Rows()).
    void Insert(std::size_t row, std::size_t n);
    // Removes rows [row, row + n); both must lie within Rows().
    void Erase(std::size_t row, std::size_t n);
    // Rewrites the weights of rows [row, row + n) (within Rows()); weightOf(r, width, start)
    // sets the width and the start (0 or 1) of row r.
    template <typename WeightOf> void Rewrite(std::size_t row, std::size_t n, WeightOf weightOf);
    // Appends rows Rows() to Rows() + n - 1, weighed as Rewrite does.
    template <typename WeightOf> void Append(std::size_t n, WeightOf weightOf);

    // Sum of the widths of the rows before `row` (row <= Rows()).
    std::int64_t WidthBefore(std::size_t row) const;
    // Number of line starts among the rows before `row` (row <= Rows()).
    std::size_t StartsBefore(std::size_t row) const;
    // The smallest k with WidthBefore(k) >= width, and that sum in `reached` when given;
    // Rows() + 1 (and `reached` untouched) when the total width is less.
    std::size_t RowReaching(std::int64_t width, std::int64_t* reached = nullptr) const;
    // The row of the n-th line start (0-based); Rows() when there are no more than n.
    std::size_t NthStart(std::size_t n) const;

private:
    struct TSums {
        std::int64_t Width = 0, Rows = 0, Starts = 0;
        TSums operator+(const TSums& o) const {
            return {Width + o.Width, Rows + o.Rows, Starts + o.Starts};
        }
        TSums operator-(const TSums& o) const {
            return {Width - o.Width, Rows - o.Rows, Starts - o.Starts};
        }
    };
    // Invariant: 1 <= Count <= kChunkRows while the chunk is in the index.
    struct TChunk {
        std::uint32_t Count = 0;
        std::uint32_t Widths[kChunkRows];
        std::uint8_t Starts[kChunkRows]; // 0 or 1
    };
    // Sums before the chunk (entries before the gap) or from the chunk on (behind it).
    struct TEntry {
        TSums Sums;
        TChunk* Chunk = nullptr;
    };

    std::size_t Physical(std::size_t k) const {
        return k < FGap ? k : k + (FEntries.size() - FUsed);
    }
    // The sums over chunks [0, k); k <= FUsed.
    TSums Before(std::size_t k) const;
    TChunk& ChunkAt(std::size_t k) const { return *FEntries[Physical(k)].Chunk; }
    void MoveGap(std::size_t k);
    // The chunk grew by `delta`: the sums of every later chunk move with it.
    void Adjust(std::size_t k, const TSums& delta) {
        if (FGap != k + 1)
            MoveGap(k + 1);
        FTotal = FTotal + delta;
    }
    // An empty chunk inserted as entry k, or the empty chunk of entry k removed.
    void AddChunk(std::size_t k);
    void RemoveChunk(std::size_t k);
    // Where `row` (< Rows()) is: its chunk's entry, its offset in the chunk, the chunk.
    struct TPlace {
        std::size_t Entry, Offset;
        TChunk* Chunk;
    };
    TPlace Locate(std::size_t row) const {
        if (FHint != kNone && row >= FHintRow && row - FHintRow < FHintChunk->Count)
            return {FHint, row - FHintRow, FHintChunk};
        return LocateFar(row);
    }
    TPlace LocateFar(std::size_t row) const;
    // The smallest k in [1, FUsed] whose Before(k) passes `test` (which turns true once).
    template <typename Test> std::size_t FirstChunkEnd(Test test) const;
    // Puts `n` rows (zero weight when `widths` is null) into chunk `c`, entry k, at `at`;
    // they must fit.
    void PutRows(std::size_t k, TChunk& c, std::size_t at, const std::uint32_t* widths,
                 const std::uint8_t* starts, std::size_t n);
    // Removes `n` rows of chunk `c`, entry k, from `at`, copied out first when `widths` is
    // not null.
    void TakeRows(std::size_t k, TChunk& c, std::size_t at, std::size_t n, std::uint32_t* widths,
                  std::uint8_t* starts);
    // Appends `n` zero rows behind chunk k's rows, in new chunks after it as needed;
    // returns the last chunk that took rows.
    std::size_t FillZeros(std::size_t k, std::size_t n);
    void MergeSmall(std::size_t k, TChunk& c);
    // Writes the weights of rows [row, row + n) into slots [at, at + n) of chunk `c`; returns
    // how much their widths and starts grew. `fresh`: the slots held no rows.
    template <typename WeightOf>
    static TSums Weigh(TChunk& c, std::size_t at, std::size_t row, std::size_t n, bool fresh,
                       WeightOf weightOf);

    std::vector<std::unique_ptr<TChunk>> FChunks; // every chunk; FFree lists the unused ones
    std::vector<TChunk*> FFree;
    std::vector<TEntry> FEntries; // FUsed entries and a gap, in chunk order
    std::size_t FUsed = 0;
    std::size_t FGap = 0; // Invariant: FGap <= FUsed <= FEntries.size()
    TSums FTotal;
    // A change in chunk k leaves the chunks before it where they were.
    void ForgetHintFrom(std::size_t k) {
        if (FHint != kNone && FHint >= k)
            FHint = kNone;
    }

    // The chunk the last lookup found and its first row; kNone when a change of the rows
    // may have moved it.
    mutable std::size_t FHint = kNone, FHintRow = 0;
    mutable TChunk* FHintChunk = nullptr;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
};

// Fresh slots hold nothing to take away: the compiler drops the reads of the old weights.
template <typename WeightOf>
TRowIndex::TSums TRowIndex::Weigh(TChunk& c, std::size_t at, std::size_t row, std::size_t n,
                                  bool fresh, WeightOf weightOf) {
    std::uint32_t* widths = c.Widths + at;
    std::uint8_t* starts = c.Starts + at;
    std::int64_t width = 0, starting = 0;
    for (std::size_t i = 0; i < n; ++i) {
        std::uint32_t w;
        std::uint8_t s;
        weightOf(row + i, w, s);
        if (!fresh) {
            width -= widths[i];
            starting -= starts[i];
        }
        widths[i] = w;
        starts[i] = s;
        width += w;
        starting += s;
    }
    return {width, 0, starting};
}

template <typename WeightOf>
void TRowIndex::Rewrite(std::size_t row, std::size_t n, WeightOf weightOf) {
    while (n > 0) {
        const TPlace place = Locate(row); // past the first chunk: one step from the hint
        const std::size_t take = std::min<std::size_t>(n, place.Chunk->Count - place.Offset);
        const TSums delta = Weigh(*place.Chunk, place.Offset, row, take, false, weightOf);
        if (delta.Width != 0 || delta.Starts != 0)
            Adjust(place.Entry, delta);
        n -= take;
        row += take;
    }
}

template <typename WeightOf> void TRowIndex::Append(std::size_t n, WeightOf weightOf) {
    for (std::size_t row = Rows(); n > 0;) {
        if (FUsed == 0 || ChunkAt(FUsed - 1).Count == kChunkRows)
            AddChunk(FUsed);
        const std::size_t k = FUsed - 1;
        TChunk& c = ChunkAt(k);
        const std::size_t take = std::min<std::size_t>(n, kChunkRows - c.Count);
        TSums delta = Weigh(c, c.Count, row, take, true, weightOf);
        delta.Rows = static_cast<std::int64_t>(take);
        c.Count += static_cast<std::uint32_t>(take);
        Adjust(k, delta);
        n -= take;
        row += take;
    }
}

} // namespace zv
