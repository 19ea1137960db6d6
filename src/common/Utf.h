// UTF-8 and UTF-16 at the level of code points: the one UTF-8 sequence reader and writer of
// the program, code-point cursors and whole-string conversions. The streaming codec of big
// texts (Utf8Stream.h) builds on the same reader and writer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

// Length of the UTF-8 sequence a lead byte announces; 0 for a byte that cannot lead.
inline int Utf8SequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 0;
}

// What reading one sequence found. Length 0: malformed at `p`, and `Valid` bytes (at least
// 1) form the longest well-formed prefix; `AtEnd` says that prefix runs into the end of the
// input, so more bytes could still complete it.
struct TUtf8Read {
    int Length = 0;
    int Valid = 1;
    bool AtEnd = false;
};

// Reads the sequence at p (p < end) into `cp`. Overlongs, surrogates and values above
// U+10FFFF are malformed: the first continuation byte is checked against the lead.
inline TUtf8Read ReadUtf8(const unsigned char* p, const unsigned char* end, char32_t& cp) {
    const unsigned char lead = *p;
    const int length = Utf8SequenceLength(lead);
    if (length <= 1) {
        cp = lead;
        return {length, 1, false};
    }
    const auto secondFits = [lead](unsigned char b) {
        switch (lead) {
        case 0xE0:
            return b >= 0xA0 && b <= 0xBF;
        case 0xED:
            return b >= 0x80 && b <= 0x9F;
        case 0xF0:
            return b >= 0x90 && b <= 0xBF;
        case 0xF4:
            return b >= 0x80 && b <= 0x8F;
        default:
            return (b & 0xC0) == 0x80;
        }
    };
    int valid = 1;
    while (valid < length && p + valid < end &&
           (valid == 1 ? secondFits(p[1]) : (p[valid] & 0xC0) == 0x80))
        ++valid;
    if (valid < length)
        return {0, valid, p + valid >= end};
    char32_t value = lead & (0x7F >> length);
    for (int k = 1; k < length; ++k)
        value = (value << 6) | (p[k] & 0x3F);
    cp = value;
    return {length, length, false};
}

// Writes `cp` (at most U+10FFFF, no surrogate) as UTF-8 at `out`; returns the end.
inline char* PutUtf8(char* out, char32_t cp) {
    if (cp < 0x80) {
        *out++ = static_cast<char>(cp);
    } else if (cp < 0x800) {
        *out++ = static_cast<char>(0xC0 | (cp >> 6));
        *out++ = static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (cp >> 12));
        *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        *out++ = static_cast<char>(0xF0 | (cp >> 18));
        *out++ = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (cp & 0x3F));
    }
    return out;
}

// Writes `cp` as one or two UTF-16 units at `out`; returns the end.
inline char16_t* PutUtf16(char16_t* out, char32_t cp) {
    if (cp < 0x10000) {
        *out++ = static_cast<char16_t>(cp);
    } else {
        cp -= 0x10000;
        *out++ = static_cast<char16_t>(0xD800 + (cp >> 10));
        *out++ = static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
    }
    return out;
}

// Walks code points of UTF-16 text; a lone surrogate yields U+FFFD.
class TU16Cursor {
public:
    explicit TU16Cursor(std::u16string_view s) : FText(s) {}
    bool Next(char32_t& cp);

private:
    std::u16string_view FText;
    size_t FPos = 0;
};

// Walks code points of UTF-8 text; each maximal ill-formed part (ICU's rule, the same as
// the streaming decoder's) yields one U+FFFD.
class TU8Cursor {
public:
    explicit TU8Cursor(std::string_view s) : FText(s) {}
    bool Next(char32_t& cp);

private:
    std::string_view FText;
    size_t FPos = 0;
};

// True if the bytes are well-formed UTF-8 (no overlongs, no surrogates, at most U+10FFFF).
bool IsValidUtf8(std::string_view bytes);

// Conversions; malformed input becomes U+FFFD (one per maximal ill-formed part of UTF-8, one
// per lone surrogate of UTF-16), never an error.
std::u16string Utf8ToUtf16(std::string_view utf8);
std::string Utf16ToUtf8(std::u16string_view text);
void AppendUtf16(std::u16string& out, char32_t cp);
void AppendUtf8(std::string& out, char32_t cp);

} // namespace zv
