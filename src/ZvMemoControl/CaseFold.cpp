// Case mapping per code point through ICU's simple mappings.
#include "ZvMemoControl/CaseFold.h"

#include "common/Utf.h"

#include <unicode/uchar.h>

namespace zv {

char32_t FoldCodePoint(char32_t c) noexcept {
    if (c < 0x80)
        return (c >= 'A' && c <= 'Z') ? c + 32 : c;
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT));
}

namespace {

template <class Map> std::u16string MapEach(std::u16string_view text, Map map) {
    std::u16string out;
    out.reserve(text.size());
    TU16Cursor cursor(text);
    for (char32_t c; cursor.Next(c);)
        AppendUtf16(out, map(c));
    return out;
}

} // namespace

std::u16string FoldCase(std::u16string_view text) {
    return MapEach(text, FoldCodePoint);
}

std::u16string LowerCase(std::u16string_view text) {
    return MapEach(
        text, [](char32_t c) { return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c))); });
}

bool EqualsAsciiNoCase(std::u16string_view a, std::u16string_view b) noexcept {
    if (a.size() != b.size())
        return false;
    auto lower = [](char16_t c) { return (c >= 'A' && c <= 'Z') ? char16_t(c + 32) : c; };
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lower(a[i]) != lower(b[i]))
            return false;
    return true;
}

} // namespace zv
