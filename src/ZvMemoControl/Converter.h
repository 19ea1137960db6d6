// Converters between bytes in a code page and UTF-16, over ICU. One converter object lives
// for a whole load or save, so stateful and multi-byte encodings (ISO-2022, HZ, UTF-7, the
// double-byte pages) never lose a character at a slice edge. Characters a code page cannot
// hold become "?" when writing; bytes that cannot be decoded are kept as escapes (U+DC80 to
// U+DCFF, one per byte) when reading, and escapes are written back as their bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct UConverter;

namespace zv {

class TUtf8Decoder;

// Raised when a code page has no converter on this system (Johab, unknown numbers).
class TCodePageError : public std::runtime_error {
public:
    explicit TCodePageError(std::uint32_t codePage);
    std::uint32_t CodePage;
};

class TZvDecoder {
public:
    // Throws TCodePageError when the code page cannot be served.
    explicit TZvDecoder(std::uint32_t codePage);
    ~TZvDecoder();
    TZvDecoder(const TZvDecoder&) = delete;
    TZvDecoder& operator=(const TZvDecoder&) = delete;

    // Decodes `bytes` and appends to `out`. With `flush` false, an incomplete sequence at the
    // end is kept for the next call; with true it is finished (as escapes when broken).
    void Decode(std::string_view bytes, bool flush, std::u16string& out);
    // Decodes into `dst` (capacity `cap` units) and returns the units written; `bytes` is
    // advanced over what was consumed. Stops when `dst` is full; with cap at least
    // bytes.size() + 4 everything is consumed.
    std::size_t DecodeInto(std::string_view& bytes, bool flush, char16_t* dst, std::size_t cap);
    void Reset();
    std::uint32_t CodePage() const { return FCodePage; }
    // Bytes met so far that could not be decoded (each kept as an escape).
    std::size_t Substitutions() const;

private:
    UConverter* FCnv = nullptr;
    std::unique_ptr<TUtf8Decoder> FUtf8; // UTF-8 takes the fast path, not ICU
    std::uint32_t FCodePage;
    std::size_t FSubstitutions = 0;
};

class TZvEncoder {
public:
    explicit TZvEncoder(std::uint32_t codePage);
    ~TZvEncoder();
    TZvEncoder(const TZvEncoder&) = delete;
    TZvEncoder& operator=(const TZvEncoder&) = delete;

    // Encodes `text` and appends to `out`; `flush` ends the text (closing shift states).
    void Encode(std::u16string_view text, bool flush, std::string& out);
    // True when the last Encode calls met a character the code page cannot hold.
    bool Lossy() const { return FLossy; }
    std::uint32_t CodePage() const { return FCodePage; }

private:
    UConverter* FCnv = nullptr;
    std::uint32_t FCodePage;
    bool FLossy = false;
    bool FUtf8 = false;
    bool FStarted = false; // some bytes were written
    char16_t FPendingHigh = 0;
    std::size_t FUtf8Substitutions = 0;
};

// Whole-string forms. Code page 0 means the system ANSI code page; 28591 works as 1252.
std::u16string BytesToUnicode(std::uint32_t codePage, std::string_view bytes);
std::string UnicodeToBytes(std::uint32_t codePage, std::u16string_view text);

} // namespace zv
