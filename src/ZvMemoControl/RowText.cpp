// Copy-on-write row buffers: allocation, sharing and the in-place edits of one row.
#include "ZvMemoControl/RowText.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace zv {

namespace {

constexpr std::size_t kHugePage = std::size_t(2) << 20;

// Maps `bytes` (a multiple of 2 MB) and asks for huge pages: a big load then costs a few
// hundred page faults, not tens of thousands.
void* MapHuge(std::size_t bytes) {
    void* mem = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mem == MAP_FAILED)
        throw std::bad_alloc();
#ifdef MADV_HUGEPAGE
    ::madvise(mem, bytes, MADV_HUGEPAGE);
#endif
    return mem;
}

} // namespace

TTextChunk* TTextChunk::Create(std::uint32_t capacity) {
    const std::size_t bytes = sizeof(TTextChunk) + std::size_t(capacity) * sizeof(char16_t);
    std::uint64_t mapped = 0;
    void* mem;
    if (bytes >= 2 * kHugePage) {
        mapped = (bytes + kHugePage - 1) / kHugePage * kHugePage;
        mem = MapHuge(mapped);
        capacity = static_cast<std::uint32_t>((mapped - sizeof(TTextChunk)) / sizeof(char16_t));
    } else {
        mem = ::operator new(bytes);
    }
    auto* chunk = static_cast<TTextChunk*>(mem);
    new (&chunk->Refs) std::atomic<std::uint32_t>(0);
    chunk->Capacity = capacity;
    chunk->MappedBytes = mapped;
    return chunk;
}

void TTextChunk::Release(TTextChunk* chunk) {
    if (chunk && chunk->Refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        const std::uint64_t mapped = chunk->MappedBytes;
        chunk->Refs.~atomic();
        if (mapped)
            ::munmap(chunk, mapped);
        else
            ::operator delete(chunk);
    }
}

TRowText::TRowText(std::u16string_view text) {
    Assign(text);
}

TRowText::TRowText(TTextChunk* chunk, std::uint32_t offset, std::uint32_t length)
    : FChunk(length ? chunk : nullptr), FOffset(length ? offset : 0), FLength(length) {
    if (FChunk)
        FChunk->Refs.fetch_add(1, std::memory_order_relaxed);
}

TRowText::TRowText(const TRowText& other)
    : FChunk(other.FChunk), FOffset(other.FOffset), FLength(other.FLength) {
    if (FChunk)
        FChunk->Refs.fetch_add(1, std::memory_order_relaxed);
}

TRowText::TRowText(TRowText&& other) noexcept
    : FChunk(other.FChunk), FOffset(other.FOffset), FLength(other.FLength) {
    other.FChunk = nullptr;
    other.FOffset = other.FLength = 0;
}

TRowText& TRowText::operator=(const TRowText& other) {
    if (this != &other) {
        TRowText copy(other);
        *this = std::move(copy);
    }
    return *this;
}

TRowText& TRowText::operator=(TRowText&& other) noexcept {
    if (this != &other) {
        TTextChunk::Release(FChunk);
        FChunk = other.FChunk;
        FOffset = other.FOffset;
        FLength = other.FLength;
        other.FChunk = nullptr;
        other.FOffset = other.FLength = 0;
    }
    return *this;
}

void TRowText::Reset() {
    TTextChunk::Release(FChunk);
    FChunk = nullptr;
    FOffset = FLength = 0;
}

// Afterwards the row owns its chunk alone, starting at offset 0, with room for `capacity`.
void TRowText::MakeUnique(std::uint32_t capacity) {
    const bool owned = FChunk && FChunk->Refs.load(std::memory_order_acquire) == 1;
    if (owned && FOffset == 0 && FChunk->Capacity >= capacity)
        return;
    const std::uint32_t grown = std::max<std::uint32_t>(capacity, FLength + FLength / 2);
    TTextChunk* chunk = TTextChunk::Create(std::max<std::uint32_t>(grown, 8));
    chunk->Refs.store(1, std::memory_order_relaxed);
    if (FLength)
        std::memcpy(chunk->Data(), FChunk->Data() + FOffset, FLength * sizeof(char16_t));
    TTextChunk::Release(FChunk);
    FChunk = chunk;
    FOffset = 0;
}

char16_t* TRowText::MutableData(std::uint32_t length) {
    if (length == 0) {
        Reset();
        return nullptr;
    }
    const std::uint32_t keep = std::min(length, FLength);
    FLength = keep;
    MakeUnique(length);
    FLength = length;
    return FChunk->Data();
}

void TRowText::Assign(std::u16string_view text) {
    if (text.empty()) {
        Reset();
        return;
    }
    // Copy first: `text` may point into this row's own buffer.
    TTextChunk* chunk = TTextChunk::Create(static_cast<std::uint32_t>(text.size()));
    chunk->Refs.store(1, std::memory_order_relaxed);
    std::memcpy(chunk->Data(), text.data(), text.size() * sizeof(char16_t));
    TTextChunk::Release(FChunk);
    FChunk = chunk;
    FOffset = 0;
    FLength = static_cast<std::uint32_t>(text.size());
}

void TRowText::Insert(std::uint32_t pos, std::u16string_view text) {
    if (text.empty())
        return;
    pos = std::min(pos, FLength);
    if (FChunk && text.data() >= FChunk->Data() &&
        text.data() < FChunk->Data() + FChunk->Capacity) {
        TRowText copy(text);
        Insert(pos, copy.View());
        return;
    }
    const auto n = static_cast<std::uint32_t>(text.size());
    const std::uint32_t old = FLength;
    char16_t* data = MutableData(old + n);
    std::memmove(data + pos + n, data + pos, (old - pos) * sizeof(char16_t));
    std::memcpy(data + pos, text.data(), n * sizeof(char16_t));
}

void TRowText::Append(std::u16string_view text) {
    Insert(FLength, text);
}

void TRowText::Erase(std::uint32_t pos, std::uint32_t count) {
    if (pos >= FLength || count == 0)
        return;
    count = std::min(count, FLength - pos);
    if (pos + count == FLength) {
        Truncate(pos);
        return;
    }
    if (pos == 0) { // a view may simply start later
        FOffset += count;
        FLength -= count;
        return;
    }
    char16_t* data = MutableData(FLength);
    std::memmove(data + pos, data + pos + count, (FLength - pos - count) * sizeof(char16_t));
    FLength -= count;
}

void TRowText::Truncate(std::uint32_t length) {
    if (length == 0)
        Reset();
    else if (length < FLength)
        FLength = length; // the view shrinks; the buffer is untouched
}

} // namespace zv
