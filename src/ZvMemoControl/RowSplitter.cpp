// Row splitting of decoded slices.
#include "ZvMemoControl/RowSplitter.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zv {
namespace {

// Above this size a load decodes into shared arenas of this many units (8 MB).
constexpr std::uint32_t kArenaUnits = 4u << 20;

// The first index from `i` on whose unit the splitter must look at: a unit up to CR (tab,
// LF, CR and other controls), a double quote, U+2028 or U+2029; `n` when there is none.
// Most of a text is plain, so eight units are tested at once where the CPU allows.
std::uint32_t NextSpecialUnit(const char16_t* data, std::uint32_t i, std::uint32_t n) {
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i cr = _mm_set1_epi16(0x0D);
    const __m128i quote = _mm_set1_epi16(0x22);
    const __m128i lineSeparator = _mm_set1_epi16(0x2028);
    const __m128i one = _mm_set1_epi16(1);
    for (; i + 8 <= n; i += 8) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + i));
        // Unsigned v <= x is (v saturating-minus x) == 0; SSE2 has no unsigned compare.
        const __m128i control = _mm_cmpeq_epi16(_mm_subs_epu16(v, cr), zero);
        const __m128i quotes = _mm_cmpeq_epi16(v, quote);
        const __m128i separators =
            _mm_cmpeq_epi16(_mm_subs_epu16(_mm_sub_epi16(v, lineSeparator), one), zero);
        const int mask = _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(control, quotes), separators));
        if (mask != 0)
            return i + static_cast<std::uint32_t>(__builtin_ctz(static_cast<unsigned>(mask))) / 2;
    }
#endif
    for (; i < n; ++i) {
        const char16_t c = data[i];
        if (c <= u'\r' || c == u'"' || c == 0x2028 || c == 0x2029)
            return i;
    }
    return n;
}

} // namespace

TRowSplitter::TRowSplitter(TZvMemoStrings& store, bool ansiBreaks, bool quoteAware)
    : FStore(store), FAnsiBreaks(ansiBreaks), FQuoteAware(quoteAware), FExpectedBytes(store.FSize) {
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
    const bool big = FExpectedBytes > static_cast<std::int64_t>(kArenaUnits) || units > kArenaUnits;
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
    FStore.AddQuickLine(std::move(piece));
    if (FNextBits != 0xFF && row > 0) {
        TAttribute& a = FStore.Item(row)->FObject;
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
    for (; (i = NextSpecialUnit(data, i, n)) < n; ++i) {
        const char16_t c = data[i];
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
