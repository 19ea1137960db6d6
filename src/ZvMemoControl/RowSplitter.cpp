// Row splitting of decoded slices.
#include "ZvMemoControl/RowSplitter.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <cstring>

namespace zv {
namespace {

// Above this size a load decodes into shared arenas of this many units (8 MB).
constexpr std::uint32_t kArenaUnits = 4u << 20;

} // namespace

TRowSplitter::TRowSplitter(TZvMemoStrings& store, bool ansiBreaks, bool quoteAware)
    : FStore(store), FAnsiBreaks(ansiBreaks), FQuoteAware(quoteAware) {
    FInString = store.FInString;
}

TRowSplitter::~TRowSplitter() {
    TTextChunk::Release(FArena);
}

// Room for `units` more units in the current arena; a new arena when it is too full. Small
// texts get a block of their own size.
char16_t* TRowSplitter::Reserve(std::uint32_t units) {
    if (FArena && FArena->Capacity - FArenaUsed >= units)
        return FArena->Data() + FArenaUsed;
    TTextChunk::Release(FArena);
    const bool big = FStore.FSize > static_cast<std::int64_t>(kArenaUnits) || units > kArenaUnits;
    FArena = TTextChunk::Create(big ? std::max(units, kArenaUnits) : units);
    FArena->Refs.store(1, std::memory_order_relaxed);
    FArenaUsed = 0;
    return FArena->Data();
}

void TRowSplitter::Commit(std::uint32_t units, bool last) {
    const std::uint32_t begin = FArenaUsed;
    FArenaUsed += units;
    Split(FArena, begin, FArenaUsed, last);
}

void TRowSplitter::Feed(TZvDecoder& decoder, std::string_view bytes, bool last) {
    if (decoder.CodePage() == cpUTF16LE || decoder.CodePage() == cpUTF16BE) {
        // Units are taken as they stand, lone surrogates included, so any text round-trips.
        const auto n = static_cast<std::uint32_t>(bytes.size() / 2);
        char16_t* data = Reserve(n);
        std::memcpy(data, bytes.data(), n * sizeof(char16_t));
        if (decoder.CodePage() == cpUTF16BE)
            for (std::uint32_t i = 0; i < n; ++i)
                data[i] = static_cast<char16_t>((data[i] << 8) | (data[i] >> 8));
        Commit(n, last);
        return;
    }
    // No code page gives more units than bytes, but a held-back sequence adds a few.
    const auto cap = static_cast<std::uint32_t>(bytes.size() + 16);
    char16_t* data = Reserve(cap);
    auto n = static_cast<std::uint32_t>(decoder.DecodeInto(bytes, last, data, cap));
    if (!bytes.empty()) {
        std::u16string rest(data, n);
        decoder.Decode(bytes, last, rest);
        n = static_cast<std::uint32_t>(rest.size());
        data = Reserve(n);
        std::memcpy(data, rest.data(), n * sizeof(char16_t));
    }
    FSubstituted = FSubstituted || decoder.Substitutions() > 0;
    Commit(n, last);
}

void TRowSplitter::FeedBinary(std::string_view bytes) {
    const auto n = static_cast<std::uint32_t>(bytes.size());
    char16_t* data = Reserve(n);
    for (std::uint32_t i = 0; i < n; ++i)
        data[i] = static_cast<unsigned char>(bytes[i]);
    FNoBreaks = true;
    Commit(n, false);
}

void TRowSplitter::FeedText(std::u16string_view text, bool last) {
    const auto n = static_cast<std::uint32_t>(text.size());
    std::memcpy(Reserve(n), text.data(), n * sizeof(char16_t));
    Commit(n, last);
}

void TRowSplitter::Finish() {
    if (FPendingCR) {
        FPendingCR = false;
        ++FCr;
        EndLine(1, 1);
        EmitPiece(nullptr, 0, 0);
    }
    if (!FOpenRow && FStore.FCount > 0 && FNextBits != 0xFF) {
        // The text ended in a line end that no piece followed yet: one empty last row.
        EmitPiece(nullptr, 0, 0);
    }
    FStore.FInString = FInString;
    FLongest = static_cast<std::int32_t>(std::max<std::int64_t>(FLongest, FLineLength));
}

void TRowSplitter::EndLine(std::uint32_t bits, std::uint32_t lineEndLength) {
    FLineLength += lineEndLength;
    FLongest = static_cast<std::int32_t>(std::max<std::int64_t>(FLongest, FLineLength));
    FLineLength = 0;
    FNextBits = bits;
    FLastBits = bits == 0xFF ? 0 : bits;
    FOpenRow = false;
}

void TRowSplitter::EmitPiece(TTextChunk* chunk, std::uint32_t offset, std::uint32_t length) {
    TRowText piece(chunk, offset, length);
    FLineLength += length;
    if (FOpenRow && FStore.FCount > 0) {
        FStore.ContinueLastRow(piece);
        return;
    }
    const std::size_t row = FStore.FCount;
    FStore.AddQuickLine(piece);
    if (FNextBits != 0xFF && row > 0) {
        TAttribute& a = FStore.FList[row].FObject;
        a.SetValue2(ab2LinefeedCR, FNextBits & 1);
        a.SetValue2(ab2LinefeedLF, FNextBits & 2);
    }
    FNextBits = 0xFF;
    FOpenRow = true;
}

void TRowSplitter::Split(TTextChunk* chunk, std::uint32_t begin, std::uint32_t n, bool last) {
    const char16_t* data = chunk->Data();
    std::uint32_t i = begin;
    if (FPendingCR && n > begin) {
        FPendingCR = false;
        if (data[begin] == u'\n') {
            ++FCrLf;
            EndLine(3, 2);
            ++i;
        } else {
            ++FCr;
            EndLine(1, 1);
        }
    }
    std::uint32_t lineStart = i;
    const bool unicodeBreaks = !FAnsiBreaks && FStore.Memo().FUnicodeLineBreaks;
    for (; i < n; ++i) {
        const char16_t c = data[i];
        if (c > u'\r' && c != u'"' && (c < 0x2028 || c > 0x2029))
            continue;
        if (c == u'\t') {
            FHasTabs = true;
            continue;
        }
        if (FNoBreaks)
            continue;
        if (c == u'"') {
            if (FQuoteAware)
                FInString = !FInString;
            continue;
        }
        const bool isBreak = c == u'\r' || c == u'\n' || (unicodeBreaks && c >= 0x2028);
        if (!isBreak || FInString)
            continue;
        EmitPiece(chunk, lineStart, i - lineStart);
        if (c == u'\r') {
            if (i + 1 < n && data[i + 1] == u'\n') {
                ++FCrLf;
                EndLine(3, 2);
                ++i;
            } else if (i + 1 < n || last) {
                ++FCr;
                EndLine(1, 1);
            } else {
                FPendingCR = true; // the next slice tells CR from CR LF
                FOpenRow = false;
                lineStart = n;
                return;
            }
        } else if (c == u'\n') {
            ++FLf;
            EndLine(2, 1);
        } else {
            EndLine(0xFF, 1);
            if (c == 0x2029) {
                EmitPiece(nullptr, 0, 0);
                EndLine(0xFF, 0);
            }
        }
        lineStart = i + 1;
    }
    EmitPiece(chunk, lineStart, n - lineStart);
}

} // namespace zv
