// Names of sections and keys: given as UTF-16 or UTF-8, compared and hashed without case.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

// Case-insensitive (simple Unicode case folding) hash and equality of names, computed on
// code points so a UTF-8 name and a UTF-16 name that spell the same text match. Invalid
// sequences count as U+FFFD. No allocation.
uint64_t FoldedHash(std::u16string_view name);
uint64_t FoldedHash(std::string_view utf8Name);
bool FoldedEqual(std::u16string_view a, std::u16string_view b);
bool FoldedEqual(std::u16string_view a, std::string_view utf8B);
// <0, 0, >0 like strcmp, on folded code points: the order of sorted sections.
int FoldedCompare(std::u16string_view a, std::u16string_view b);

// A section or key name as the caller has it: a view of UTF-16 or of UTF-8 text. It does
// not own the text, so it lives only for the call it is passed to.
class TIniName {
public:
    TIniName(std::u16string_view name) : FWide(name), FIsWide(true) {}
    TIniName(const char16_t* name) : FWide(name), FIsWide(true) {}
    TIniName(const std::u16string& name) : FWide(name), FIsWide(true) {}
    TIniName(std::string_view utf8) : FNarrow(utf8), FIsWide(false) {}
    TIniName(const char* utf8) : FNarrow(utf8), FIsWide(false) {}
    TIniName(const std::string& utf8) : FNarrow(utf8), FIsWide(false) {}

    uint64_t Hash() const { return FIsWide ? FoldedHash(FWide) : FoldedHash(FNarrow); }
    bool Matches(std::u16string_view stored) const {
        return FIsWide ? FoldedEqual(stored, FWide) : FoldedEqual(stored, FNarrow);
    }
    // The name as UTF-16, for storing it.
    std::u16string ToU16() const;

private:
    std::u16string_view FWide;
    std::string_view FNarrow;
    bool FIsWide;
};

} // namespace zv
