// UTF-16 search, case and tab helpers over ICU's character properties.
#include "ZvMemoControl/ZvUniUtils.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>

namespace zv {

bool IsWhiteSpace(char16_t c) {
    return u_isUWhiteSpace(c);
}

char16_t UpperChar(char16_t c) {
    if (U16_IS_SURROGATE(c))
        return c;
    const UChar32 u = u_toupper(c);
    return u <= 0xFFFF ? static_cast<char16_t>(u) : c;
}

static char16_t FoldChar(char16_t c) {
    if (c < 128)
        return c >= 'A' && c <= 'Z' ? static_cast<char16_t>(c + 32) : c;
    if (U16_IS_SURROGATE(c))
        return c;
    const UChar32 u = u_foldCase(c, U_FOLD_CASE_DEFAULT);
    return u <= 0xFFFF ? static_cast<char16_t>(u) : c;
}

std::u16string WUpperCase(std::u16string_view s) {
    std::u16string out(s);
    for (auto& c : out)
        c = UpperChar(c);
    return out;
}

bool NeedsShaping(std::u16string_view s) {
    for (std::size_t i = 0; i < s.size();) {
        UChar32 c;
        U16_NEXT(s.data(), i, s.size(), c);
        if (c < 0x300)
            continue;
        const auto dir = u_charDirection(c);
        const auto cat = u_charType(c);
        if (dir == U_RIGHT_TO_LEFT || dir == U_RIGHT_TO_LEFT_ARABIC || cat == U_NON_SPACING_MARK ||
            cat == U_COMBINING_SPACING_MARK || cat == U_ENCLOSING_MARK || c == 0x200C ||
            c == 0x200D)
            return true;
        const UScriptCode script = static_cast<UScriptCode>(u_getIntPropertyValue(c, UCHAR_SCRIPT));
        switch (script) {
        case USCRIPT_THAI:
        case USCRIPT_LAO:
        case USCRIPT_KHMER:
        case USCRIPT_MYANMAR:
        case USCRIPT_TIBETAN:
        case USCRIPT_DEVANAGARI:
        case USCRIPT_BENGALI:
        case USCRIPT_TAMIL:
        case USCRIPT_TELUGU:
        case USCRIPT_KANNADA:
        case USCRIPT_MALAYALAM:
        case USCRIPT_GUJARATI:
        case USCRIPT_GURMUKHI:
        case USCRIPT_ORIYA:
        case USCRIPT_SINHALA:
            return true;
        default:
            break;
        }
    }
    return false;
}

namespace {

template <class Eq>
int FindForward(std::u16string_view what, std::u16string_view s, int from, Eq eq) {
    if (what.empty() || from < 1)
        from = std::max(from, 1);
    if (what.empty() || what.size() > s.size())
        return 0;
    for (std::size_t i = static_cast<std::size_t>(from - 1); i + what.size() <= s.size(); ++i) {
        std::size_t k = 0;
        while (k < what.size() && eq(s[i + k], what[k]))
            ++k;
        if (k == what.size())
            return static_cast<int>(i + 1);
    }
    return 0;
}

bool SameUnit(char16_t a, char16_t b) {
    return a == b;
}
bool SameFolded(char16_t a, char16_t b) {
    return a == b || FoldChar(a) == FoldChar(b);
}

} // namespace

int WPosEx(std::u16string_view what, std::u16string_view s, int from) {
    return FindForward(what, s, from, SameUnit);
}

int WNCPosEx(std::u16string_view what, std::u16string_view s, int from) {
    return FindForward(what, s, from, SameFolded);
}

int WRPosEx(std::u16string_view what, std::u16string_view s, int from, bool caseless) {
    if (what.empty() || what.size() > s.size())
        return 0;
    std::size_t start = s.size() - what.size();
    if (from > 0)
        start = std::min(start, static_cast<std::size_t>(from - 1));
    for (std::size_t i = start + 1; i-- > 0;) {
        std::size_t k = 0;
        while (k < what.size() && (caseless ? SameFolded(s[i + k], what[k]) : s[i + k] == what[k]))
            ++k;
        if (k == what.size())
            return static_cast<int>(i + 1);
    }
    return 0;
}

int WTextPos(std::u16string_view what, std::u16string_view s, int from, int count, bool caseless) {
    if (from < 1 || count <= 0 || static_cast<std::size_t>(from) > s.size())
        return 0;
    const auto window = s.substr(0, std::min(s.size(), static_cast<std::size_t>(from - 1 + count)));
    return caseless ? WNCPosEx(what, window, from) : WPosEx(what, window, from);
}

bool WConvertTabToSpace(std::u16string& s, int tabSize, char16_t filler) {
    if (s.find(u'\t') == std::u16string::npos)
        return false;
    tabSize = std::max(tabSize, 1);
    std::u16string out;
    out.reserve(s.size() + 16);
    for (char16_t c : s) {
        if (c != u'\t') {
            out.push_back(c);
            continue;
        }
        // out.size() is (p - 1) + d for the tab at 1-based p with d units added before it.
        const std::size_t n = tabSize - out.size() % tabSize;
        out.append(n, filler);
    }
    s.swap(out);
    return true;
}

std::u16string WStringReplace(std::u16string_view s, std::u16string_view from,
                              std::u16string_view to, bool all, bool caseless) {
    if (from.empty())
        return std::u16string(s);
    std::u16string out;
    int pos = 1;
    for (;;) {
        const int hit = caseless ? WNCPosEx(from, s, pos) : WPosEx(from, s, pos);
        if (hit == 0)
            break;
        out.append(s.substr(pos - 1, hit - pos));
        out.append(to);
        pos = hit + static_cast<int>(from.size());
        if (!all)
            break;
    }
    out.append(s.substr(pos - 1));
    return out;
}

std::u16string MatchCase(std::u16string_view model, std::u16string_view s) {
    bool anyLower = false, anyUpper = false;
    for (char16_t c : model) {
        anyLower |= u_islower(c) != 0;
        anyUpper |= u_isupper(c) != 0;
    }
    std::u16string out(s);
    if (anyUpper && !anyLower) {
        for (auto& c : out)
            c = UpperChar(c);
    } else if (anyLower && !anyUpper) {
        for (auto& c : out)
            if (!U16_IS_SURROGATE(c))
                c = static_cast<char16_t>(std::min<UChar32>(u_tolower(c), 0xFFFF));
    } else if (!model.empty() && u_isupper(model[0]) && !out.empty()) {
        out[0] = UpperChar(out[0]);
    }
    return out;
}

std::uint32_t Crc32(const void* data, std::size_t size, std::uint32_t crc) {
    static const auto table = [] {
        std::array<std::uint32_t, 256> t{};
        for (std::uint32_t i = 0; i < 256; ++i) {
            std::uint32_t c = i;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[i] = c;
        }
        return t;
    }();
    const auto* p = static_cast<const unsigned char*>(data);
    crc = ~crc;
    for (std::size_t i = 0; i < size; ++i)
        crc = table[(crc ^ p[i]) & 0xFF] ^ (crc >> 8);
    return ~crc;
}

std::uint32_t LineHash(std::u16string_view row, bool ignoreCase, bool ignoreSpaces,
                       std::u16string& work) {
    if (!ignoreCase && !ignoreSpaces)
        return Crc32(row.data(), row.size() * sizeof(char16_t));
    work.clear();
    for (char16_t c : row)
        if (!ignoreSpaces || !IsWhiteSpace(c))
            work.push_back(ignoreCase ? UpperChar(c) : c);
    return Crc32(work.data(), work.size() * sizeof(char16_t));
}

} // namespace zv
