// UTF-8 decoding with an ASCII fast path, and encoding, slice by slice.
#include "common/Utf8Stream.h"

#include "common/Utf.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zv {
namespace {

// Widens the run of ASCII bytes at the start of [p, end) to UTF-16 at `out`, sixteen at a
// time where the CPU allows; stops before the first block that holds a non-ASCII byte.
inline void WidenAsciiRun(const unsigned char*& p, const unsigned char* end, char16_t*& out) {
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    while (end - p >= 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        if (_mm_movemask_epi8(v) != 0)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(v, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(v, zero));
        out += 16;
        p += 16;
    }
#else
    (void)p;
    (void)end;
    (void)out;
#endif
}

inline bool AllAscii8(const unsigned char* p) {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return (v & 0x8080808080808080ull) == 0;
}

// Narrows the run of ASCII units at the start of [p, end) to bytes at `out`, eight at a time
// where the CPU allows; stops before the first block that holds a unit above 0x7F.
inline void NarrowAsciiRun(const char16_t*& p, const char16_t* end, char*& out) {
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
    while (end - p >= 16) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(_mm_or_si128(a, b), high), zero)) !=
            0xFFFF)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(a, b));
        out += 16;
        p += 16;
    }
    while (end - p >= 8) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(v, high), zero)) != 0xFFFF)
            break;
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(v, v));
        out += 8;
        p += 8;
    }
#else
    (void)p;
    (void)end;
    (void)out;
#endif
}

} // namespace

// Decodes [p, end); stops before an incomplete sequence at the end unless `flush`.
std::size_t TUtf8Decoder::DecodeRun(const unsigned char* p, const unsigned char* end, bool flush,
                                    char16_t* dst, std::size_t& consumed) {
    const unsigned char* const start = p;
    char16_t* out = dst;
    while (p < end) {
        WidenAsciiRun(p, end, out);
        while (end - p >= 8 && AllAscii8(p)) {
            for (int k = 0; k < 8; ++k)
                out[k] = p[k];
            out += 8;
            p += 8;
        }
        if (p >= end)
            break;
        if (*p < 0x80) {
            *out++ = *p++;
            continue;
        }
        char32_t cp = 0;
        const TUtf8Read read = ReadUtf8(p, end, cp);
        if (read.Length > 0) {
            out = PutUtf16(out, cp);
            p += read.Length;
            continue;
        }
        if (read.AtEnd && !flush)
            break; // incomplete at the end: wait for more bytes
        if (FInvalid == TInvalid::Replace) {
            *out++ = 0xFFFD;
            ++FSubstitutions;
        } else { // each byte is kept as an escape, so it is written back as it was
            for (int k = 0; k < read.Valid; ++k)
                *out++ = EscapeByte(p[k]);
            FSubstitutions += static_cast<std::size_t>(read.Valid);
        }
        p += read.Valid;
    }
    consumed = static_cast<std::size_t>(p - start);
    return static_cast<std::size_t>(out - dst);
}

std::size_t TUtf8Decoder::Decode(std::string_view bytes, bool flush, char16_t* dst) {
    auto p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto end = p + bytes.size();
    std::size_t written = 0;
    if (FPendingLength > 0) {
        // Finish the sequence the previous slice ended with, through a small buffer.
        unsigned char joined[8];
        std::memcpy(joined, FPending, FPendingLength);
        const std::size_t take = std::min<std::size_t>(4, bytes.size());
        if (take) // an empty slice may have no data pointer
            std::memcpy(joined + FPendingLength, p, take);
        const bool last = flush && take == bytes.size();
        std::size_t consumed = 0;
        written = DecodeRun(joined, joined + FPendingLength + take, last, dst, consumed);
        if (consumed < FPendingLength) { // this slice is too short to finish it
            std::memcpy(FPending + FPendingLength, p, take);
            FPendingLength += take;
            return written;
        }
        p += consumed - FPendingLength;
        FPendingLength = 0;
    }
    std::size_t consumed = 0;
    written += DecodeRun(p, end, flush, dst + written, consumed);
    p += consumed;
    FPendingLength = static_cast<std::size_t>(end - p);
    if (FPendingLength) // p may be null for an empty slice
        std::memcpy(FPending, p, FPendingLength);
    return written;
}

void EncodeUtf8(std::u16string_view text, bool flush, char16_t& pendingHigh, std::string& out,
                std::size_t& substitutions) {
    const std::size_t used = out.size();
    out.resize(used + text.size() * kUtf8PerUnit + kUtf8Slack);
    char* end = EncodeUtf8(text, flush, pendingHigh, out.data() + used, substitutions);
    out.resize(static_cast<std::size_t>(end - out.data()));
}

char* EncodeUtf8(std::u16string_view text, bool flush, char16_t& pendingHigh, char* o,
                 std::size_t& substitutions) {
    std::size_t i = 0;
    if (pendingHigh) {
        if (!text.empty() && (text[0] & 0xFC00) == 0xDC00) {
            o = PutUtf8(o, 0x10000 + ((pendingHigh - 0xD800u) << 10) + (text[0] - 0xDC00u));
            i = 1;
        } else {
            *o++ = '?';
            ++substitutions;
        }
        pendingHigh = 0;
    }
    const std::size_t n = text.size();
    while (i < n) {
        const char16_t* run = text.data() + i;
        NarrowAsciiRun(run, text.data() + n, o);
        i = static_cast<std::size_t>(run - text.data());
        while (i + 4 <= n && (text[i] | text[i + 1] | text[i + 2] | text[i + 3]) < 0x80) {
            o[0] = static_cast<char>(text[i]);
            o[1] = static_cast<char>(text[i + 1]);
            o[2] = static_cast<char>(text[i + 2]);
            o[3] = static_cast<char>(text[i + 3]);
            o += 4;
            i += 4;
        }
        if (i >= n)
            break;
        const char16_t c = text[i++];
        if ((c & 0xF800) != 0xD800) {
            o = PutUtf8(o, c);
        } else if ((c & 0xFC00) == 0xD800 && i < n && (text[i] & 0xFC00) == 0xDC00) {
            o = PutUtf8(o, 0x10000 + ((c - 0xD800u) << 10) + (text[i++] - 0xDC00u));
        } else if ((c & 0xFC00) == 0xD800 && i == n && !flush) {
            pendingHigh = c;
        } else if (IsByteEscape(c)) {
            *o++ = static_cast<char>(c & 0xFF); // a byte that was not UTF-8 when read
        } else {
            *o++ = '?';
            ++substitutions;
        }
    }
    return o;
}

} // namespace zv
