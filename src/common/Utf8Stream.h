// Streaming UTF-8 for big texts: a decoder with an ASCII fast path that keeps a sequence cut
// by the end of a slice for the next slice, and an encoder that keeps a high surrogate the
// same way. By default bytes that are not UTF-8 are kept as escapes (one lone surrogate
// U+DC80..U+DCFF per byte, for each byte of a maximal invalid subpart), which the encoder writes
// back as the same bytes: any file loads and saves unchanged.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

// The escape that stands for an undecodable byte (0x80..0xFF) in the text, and back.
constexpr char16_t EscapeByte(unsigned char byte) {
    return static_cast<char16_t>(0xDC00 | byte);
}
constexpr bool IsByteEscape(char16_t unit) {
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

class TUtf8Decoder {
public:
    // How bytes that are not UTF-8 come out: escapes that save back as the same bytes (text
    // of a document), or one U+FFFD per maximal invalid subpart, ICU's rule (names, settings).
    enum class TInvalid { Escape, Replace };
    explicit TUtf8Decoder(TInvalid invalid = TInvalid::Escape) : FInvalid(invalid) {}

    // Decodes `bytes` into `dst`, which must hold bytes.size() + 4 units. With `flush` false
    // an incomplete sequence at the end waits for the next call. Returns the units written.
    std::size_t Decode(std::string_view bytes, bool flush, char16_t* dst);
    // Bytes kept as escapes (or subparts replaced) so far.
    std::size_t Substitutions() const { return FSubstitutions; }
    void Reset() { FPendingLength = 0; }

private:
    std::size_t DecodeRun(const unsigned char* p, const unsigned char* end, bool flush,
                          char16_t* dst, std::size_t& consumed);
    // Invariant: FPendingLength < 4; the bytes of a sequence not yet complete.
    unsigned char FPending[8] = {};
    std::size_t FPendingLength = 0;
    std::size_t FSubstitutions = 0;
    TInvalid FInvalid;
};

// Encodes UTF-16 as UTF-8, appending to `out`. A lone escape (U+DC80..U+DCFF) becomes its
// byte; any other lone surrogate becomes "?" (counted in `substitutions`); a high surrogate at the
// end waits in `pendingHigh` unless `flush`.
void EncodeUtf8(std::u16string_view text, bool flush, char16_t& pendingHigh, std::string& out,
                std::size_t& substitutions);
// The same into raw memory: writes at most kUtf8PerUnit * text.size() + kUtf8Slack bytes
// from `out` and returns the end of what it wrote.
constexpr std::size_t kUtf8PerUnit = 3;
constexpr std::size_t kUtf8Slack = 4;
char* EncodeUtf8(std::u16string_view text, bool flush, char16_t& pendingHigh, char* out,
                 std::size_t& substitutions);

} // namespace zv
