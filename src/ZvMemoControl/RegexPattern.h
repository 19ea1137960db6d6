// A regular expression of a search: PCRE2 (16-bit) compiled once with the JIT for a subject
// of several rows joined by CR LF (multi-line, either line end), with its match scratch.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

struct pcre2_real_code_16;
struct pcre2_real_match_data_16;

namespace zv {

class TRegexPattern {
public:
    // Compiles `pattern` (UTF, invalid UTF matched, multi-line, caseless when asked). On a bad
    // pattern Valid() is false and Error() holds PCRE2's message and the offset.
    TRegexPattern(std::u16string_view pattern, bool caseless);
    ~TRegexPattern();
    TRegexPattern(const TRegexPattern&) = delete;
    TRegexPattern& operator=(const TRegexPattern&) = delete;

    bool Valid() const { return FCode != nullptr; }
    const std::string& Error() const { return FError; }
    // The first non-empty match at or behind `offset`: true with the group offsets (start,
    // end pairs, unset groups as start > end) in Offsets() and their number in Groups().
    // Not thread-safe: the scratch is the object's.
    bool Match(std::u16string_view subject, std::size_t offset) const;
    const std::size_t* Offsets() const;
    int Groups() const { return FGroups; }

private:
    pcre2_real_code_16* FCode = nullptr;
    pcre2_real_match_data_16* FData = nullptr;
    mutable int FGroups = 0;
    std::string FError;
};

} // namespace zv
