// The bytes of a settings file: recognising their encoding and writing them back.
#include "shell/IniText.h"

#include "common/Utf.h"

#include <algorithm>
#include <array>

namespace zv {

namespace {

std::u16string DecodeUtf16(std::string_view bytes, bool bigEndian) {
    std::u16string out;
    out.resize(bytes.size() / 2);
    for (size_t i = 0; i < out.size(); ++i) {
        const auto a = static_cast<unsigned char>(bytes[2 * i]);
        const auto b = static_cast<unsigned char>(bytes[2 * i + 1]);
        out[i] = static_cast<char16_t>(bigEndian ? (a << 8) | b : (b << 8) | a);
    }
    return out;
}

// Windows-1252: 0x80-0x9F differ from Latin-1; the five unassigned bytes keep their value.
std::u16string DecodeWindows1252(std::string_view bytes) {
    static constexpr std::array<char16_t, 32> kHigh = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    std::u16string out;
    out.reserve(bytes.size());
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        out.push_back(b >= 0x80 && b < 0xA0 ? kHigh[b - 0x80] : char16_t(b));
    }
    return out;
}

// UTF-16 that lost its BOM: over the first 32 bytes every unit is a non-zero character
// below U+0100, as the ASCII start of a settings file is. A UTF-8 file would need a zero
// byte in every second place to look like this.
bool LooksLikeBomlessUtf16(std::string_view bytes, bool bigEndian) {
    const size_t length = std::min<size_t>(bytes.size(), 32) & ~size_t(1);
    for (size_t i = 0; i < length; i += 2) {
        const char low = bigEndian ? bytes[i + 1] : bytes[i];
        const char high = bigEndian ? bytes[i] : bytes[i + 1];
        if (high != 0 || low == 0)
            return false;
    }
    return length >= 2;
}

bool StartsWith(std::string_view bytes, std::string_view prefix) {
    return bytes.substr(0, prefix.size()) == prefix;
}

} // namespace

TDecodedText DecodeIniBytes(std::string_view bytes) {
    if (bytes.empty())
        return {};
    if (StartsWith(bytes, "\xFF\xFE"))
        return {DecodeUtf16(bytes.substr(2), false), TTextForm::Utf16LE};
    if (StartsWith(bytes, "\xFE\xFF"))
        return {DecodeUtf16(bytes.substr(2), true), TTextForm::Utf16BE};
    if (StartsWith(bytes, "\xEF\xBB\xBF"))
        return {Utf8ToUtf16(bytes.substr(3)), TTextForm::Utf8Bom};
    if (LooksLikeBomlessUtf16(bytes, false))
        return {DecodeUtf16(bytes, false), TTextForm::Utf16LE};
    if (LooksLikeBomlessUtf16(bytes, true))
        return {DecodeUtf16(bytes, true), TTextForm::Utf16BE};
    if (IsValidUtf8(bytes))
        return {Utf8ToUtf16(bytes), TTextForm::Utf8};
    return {DecodeWindows1252(bytes), TTextForm::Latin};
}

std::string EncodeIniText(std::u16string_view text, TIniEncoding encoding) {
    if (encoding == TIniEncoding::Utf8)
        return Utf16ToUtf8(text);
    std::string out;
    out.reserve(2 + 2 * text.size());
    out += "\xFF\xFE";
    for (char16_t unit : text) {
        out.push_back(static_cast<char>(unit & 0xFF));
        out.push_back(static_cast<char>(unit >> 8));
    }
    return out;
}

} // namespace zv
