// The text of one row: a handle to a reference-counted, copy-on-write UTF-16 buffer. Many
// rows may view one shared buffer (a whole decoded slice of a file), so loading allocates
// per slice, not per row; the first change to a shared row gives it a buffer of its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>

namespace zv {

// One heap block of UTF-16 units. Invariant: Refs counts the TRowText handles on it.
struct TTextChunk {
    std::atomic<std::uint32_t> Refs;
    std::uint32_t Capacity;
    std::uint64_t MappedBytes; // non-zero: the block is its own memory mapping of that size
    char16_t* Data() { return reinterpret_cast<char16_t*>(this + 1); }

    // A chunk with room for `capacity` units and no holder yet (Refs 0). Large chunks (the
    // arenas a load decodes into) are mapped with huge pages where the system allows.
    static TTextChunk* Create(std::uint32_t capacity);
    static void Release(TTextChunk* chunk);
};

class TRowText {
public:
    TRowText() = default;
    explicit TRowText(std::u16string_view text);
    // A view of units [offset, offset + length) of `chunk`; takes one reference.
    TRowText(TTextChunk* chunk, std::uint32_t offset, std::uint32_t length);
    TRowText(const TRowText& other);
    TRowText(TRowText&& other) noexcept;
    TRowText& operator=(const TRowText& other);
    TRowText& operator=(TRowText&& other) noexcept;
    ~TRowText() { Reset(); }

    std::u16string_view View() const {
        return FChunk ? std::u16string_view(FChunk->Data() + FOffset, FLength)
                      : std::u16string_view();
    }
    std::uint32_t Length() const { return FLength; }
    bool Empty() const { return FLength == 0; }
    // The buffer the row views (nullptr when empty): rows of one buffer lie in one block of
    // memory, in the order they were cut from it.
    const TTextChunk* Chunk() const { return FChunk; }

    void Reset();
    void Assign(std::u16string_view text);
    void Append(std::u16string_view text);
    // Inserts at unit `pos` (clipped to the length).
    void Insert(std::uint32_t pos, std::u16string_view text);
    // Removes up to `count` units from `pos`; out of range removes nothing.
    void Erase(std::uint32_t pos, std::uint32_t count);
    void Truncate(std::uint32_t length);
    // A writable buffer of exactly `length` units, private to this row; the first
    // min(old, length) units keep their text.
    char16_t* MutableData(std::uint32_t length);

private:
    void MakeUnique(std::uint32_t capacity);

    TTextChunk* FChunk = nullptr;
    std::uint32_t FOffset = 0;
    std::uint32_t FLength = 0;
};

} // namespace zv
