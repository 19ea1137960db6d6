// A regular expression of a search: the shared PCRE2 wrapper compiled for a subject of several
// rows joined by CR LF (multi-line, either line end), with its own match scratch.
#pragma once

#include "ZvMemoControl/StyleRegex.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zv {

class TRegexPattern {
public:
    // Compiles `pattern` (UTF, invalid UTF matched, multi-line, caseless when asked). On a bad
    // pattern Valid() is false and Error() holds PCRE2's message and the offset.
    TRegexPattern(std::u16string_view pattern, bool caseless);
    TRegexPattern(const TRegexPattern&) = delete;
    TRegexPattern& operator=(const TRegexPattern&) = delete;

    bool Valid() const { return FRegex.Valid(); }
    const std::string& Error() const { return FRegex.Error(); }
    // The first non-empty match at or behind `offset`: true with the group offsets (start,
    // end pairs, unset groups as start > end) in Offsets() and their number in Groups().
    // Not thread-safe: the scratch is the object's.
    bool Match(std::u16string_view subject, std::size_t offset) const;
    const std::size_t* Offsets() const { return FScratch.Offsets(); }
    int Groups() const { return FGroups; }

private:
    TStyleRegex FRegex;
    mutable TRegexMatch FScratch; // sized for every group of FRegex
    mutable int FGroups = 0;
};

} // namespace zv
