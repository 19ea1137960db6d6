// Names of sections and keys: given as UTF-16 or UTF-8, compared and hashed without case.
#include "shell/IniName.h"

#include "common/Utf.h"

#include <unicode/uchar.h>

namespace zv {

namespace {

char32_t Fold(char32_t cp) {
    if (cp < 0x80)
        return (cp >= 'A' && cp <= 'Z') ? cp + ('a' - 'A') : cp;
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(cp), U_FOLD_CASE_DEFAULT));
}

// FNV-1a over folded code points, so both encodings hash alike.
template <class Cursor> uint64_t HashFolded(Cursor cursor) {
    uint64_t hash = 1469598103934665603ull;
    for (char32_t cp; cursor.Next(cp);) {
        hash ^= Fold(cp);
        hash *= 1099511628211ull;
    }
    return hash;
}

template <class CursorA, class CursorB> int CompareFolded(CursorA a, CursorB b) {
    for (;;) {
        char32_t ca = 0, cb = 0;
        const bool hasA = a.Next(ca);
        const bool hasB = b.Next(cb);
        if (!hasA || !hasB)
            return int(hasA) - int(hasB);
        ca = Fold(ca);
        cb = Fold(cb);
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
}

} // namespace

uint64_t FoldedHash(std::u16string_view name) {
    return HashFolded(TU16Cursor(name));
}
uint64_t FoldedHash(std::string_view utf8Name) {
    return HashFolded(TU8Cursor(utf8Name));
}

bool FoldedEqual(std::u16string_view a, std::u16string_view b) {
    if (a.size() == b.size() && a == b)
        return true;
    return CompareFolded(TU16Cursor(a), TU16Cursor(b)) == 0;
}

bool FoldedEqual(std::u16string_view a, std::string_view utf8B) {
    return CompareFolded(TU16Cursor(a), TU8Cursor(utf8B)) == 0;
}

int FoldedCompare(std::u16string_view a, std::u16string_view b) {
    return CompareFolded(TU16Cursor(a), TU16Cursor(b));
}

std::u16string TIniName::ToU16() const {
    return FIsWide ? std::u16string(FWide) : Utf8ToUtf16(FNarrow);
}

} // namespace zv
