// Streaming UTF-8 for big texts: a decoder with an ASCII fast path that keeps a sequence cut
// by the end of a slice for the next slice, and an encoder that keeps a high surrogate the
// same way. Broken input follows ICU's rule: one U+FFFD per maximal invalid subpart.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

class TUtf8Decoder {
public:
    // Decodes `bytes` into `dst`, which must hold bytes.size() + 4 units. With `flush` false
    // an incomplete sequence at the end waits for the next call. Returns the units written.
    std::size_t Decode(std::string_view bytes, bool flush, char16_t* dst);
    std::size_t Substitutions() const { return FSubstitutions; }
    void Reset() { FPendingLength = 0; }

private:
    std::size_t DecodeRun(const unsigned char* p, const unsigned char* end, bool flush,
                          char16_t* dst, std::size_t& consumed);
    // Invariant: FPendingLength < 4; the bytes of a sequence not yet complete.
    unsigned char FPending[8] = {};
    std::size_t FPendingLength = 0;
    std::size_t FSubstitutions = 0;
};

// Encodes UTF-16 as UTF-8, appending to `out`. A lone surrogate becomes "?" (counted in
// `substitutions`); a high surrogate at the end waits in `pendingHigh` unless `flush`.
void EncodeUtf8(std::u16string_view text, bool flush, char16_t& pendingHigh, std::string& out,
                std::size_t& substitutions);
// The same into raw memory: writes at most kUtf8PerUnit * text.size() + kUtf8Slack bytes
// from `out` and returns the end of what it wrote.
constexpr std::size_t kUtf8PerUnit = 3;
constexpr std::size_t kUtf8Slack = 4;
char* EncodeUtf8(std::u16string_view text, bool flush, char16_t& pendingHigh, char* out,
                 std::size_t& substitutions);

} // namespace zv
