// Code-point cursors and whole-string UTF-8/UTF-16 conversions.
#include "common/Utf.h"

#include "common/Utf8Stream.h"

namespace zv {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

const unsigned char* Bytes(std::string_view s) {
    return reinterpret_cast<const unsigned char*>(s.data());
}

} // namespace

bool TU16Cursor::Next(char32_t& cp) {
    if (FPos >= FText.size())
        return false;
    const char16_t unit = FText[FPos++];
    if (unit >= 0xD800 && unit <= 0xDBFF && FPos < FText.size()) {
        const char16_t low = FText[FPos];
        if (low >= 0xDC00 && low <= 0xDFFF) {
            ++FPos;
            cp = 0x10000 + ((char32_t(unit) - 0xD800) << 10) + (low - 0xDC00);
            return true;
        }
    }
    cp = (unit >= 0xD800 && unit <= 0xDFFF) ? kReplacement : unit;
    return true;
}

bool TU8Cursor::Next(char32_t& cp) {
    if (FPos >= FText.size())
        return false;
    const TUtf8Read read = ReadUtf8(Bytes(FText) + FPos, Bytes(FText) + FText.size(), cp);
    if (read.Length == 0) {
        cp = kReplacement; // one for the whole broken part, as the streaming decoder does
        FPos += static_cast<size_t>(read.Valid);
    } else {
        FPos += static_cast<size_t>(read.Length);
    }
    return true;
}

bool IsValidUtf8(std::string_view bytes) {
    const unsigned char* p = Bytes(bytes);
    const unsigned char* const end = p + bytes.size();
    char32_t cp;
    while (p < end) {
        const TUtf8Read read = ReadUtf8(p, end, cp);
        if (read.Length == 0)
            return false;
        p += read.Length;
    }
    return true;
}

void AppendUtf16(std::u16string& out, char32_t cp) {
    char16_t units[2];
    out.append(units, PutUtf16(units, cp));
}

void AppendUtf8(std::string& out, char32_t cp) {
    char bytes[4];
    out.append(bytes, PutUtf8(bytes, cp));
}

std::u16string Utf8ToUtf16(std::string_view utf8) {
    std::u16string out(utf8.size() + 4, u'\0');
    TUtf8Decoder decoder(TUtf8Decoder::TInvalid::Replace);
    out.resize(decoder.Decode(utf8, true, out.data()));
    return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    TU16Cursor cursor(text);
    for (char32_t cp; cursor.Next(cp);)
        AppendUtf8(out, cp);
    return out;
}

} // namespace zv
