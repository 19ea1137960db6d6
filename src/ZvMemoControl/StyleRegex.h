// The one PCRE2 (16-bit) wrapper: a regular expression of a syntax (a "#" keyword group or
// block) or of a search, compiled once with the JIT. The compiled code is immutable and shared
// by every thread; each thread brings its own TRegexMatch scratch.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct pcre2_real_code_16;
struct pcre2_real_match_data_16;

namespace zv {

// PCRE2's message for a compile error `errorCode`, with " at offset N" (UTF-16 units).
std::string RegexErrorText(int errorCode, std::size_t offset);

// Per-thread match scratch; reuse it across calls so matching does not allocate.
class TRegexMatch {
public:
    TRegexMatch();
    // Scratch with room for every group of `regex` (one pair when it is invalid).
    explicit TRegexMatch(const class TStyleRegex& regex);
    ~TRegexMatch();
    TRegexMatch(const TRegexMatch&) = delete;
    TRegexMatch& operator=(const TRegexMatch&) = delete;
    pcre2_real_match_data_16* Data() const { return FData; }
    // The (start, end) pairs of the last match; unset groups have start > end.
    const std::size_t* Offsets() const;

private:
    pcre2_real_match_data_16* FData;
};

class TStyleRegex {
public:
    // Compiles `pattern` with UTF and invalid-UTF matching, caseless when asked; `multiLine`
    // for a subject of rows joined by CR LF (^ and $ at either line end). On a bad pattern
    // Valid() is false and Error() says why and where.
    TStyleRegex(std::u16string_view pattern, bool caseless, bool multiLine = false);
    ~TStyleRegex();
    TStyleRegex(const TStyleRegex&) = delete;
    TStyleRegex& operator=(const TStyleRegex&) = delete;

    bool Valid() const { return FCode != nullptr; }
    // True when the expression runs as machine code (PCRE2's JIT compiled it).
    bool Jitted() const;
    const std::string& Error() const { return FError; }

    // Length of the match that starts exactly at `offset` of `subject`, or -1 for none (also
    // on a match error or an invalid pattern). The subject may be any part of a row.
    int MatchAt(std::u16string_view subject, std::size_t offset, TRegexMatch& scratch) const;

    // False when no match can begin with `c` (a quick test before MatchAt); true for code
    // units from 255 up.
    bool MayStartWith(char16_t c) const;

    // The first match at or behind `offset`: its start, with its length in `length`; -1 for
    // none.
    long long Find(std::u16string_view subject, std::size_t offset, TRegexMatch& scratch,
                   int& length) const;

    // The first non-empty match at or behind `offset`: the number of groups set (their pairs
    // in scratch.Offsets()), 0 for none (also when the scratch has too few pairs).
    int FindNonEmpty(std::u16string_view subject, std::size_t offset, TRegexMatch& scratch) const;

private:
    friend class TRegexMatch; // sizes its pairs from the pattern

    // pcre2_match's result: groups set, 0 when the scratch is too small, negative for none.
    int Exec(std::u16string_view subject, std::size_t offset, std::uint32_t options,
             TRegexMatch& scratch) const;
    void LearnFirstUnits(bool caseless);
    long long Run(std::u16string_view subject, std::size_t offset, bool anchored,
                  TRegexMatch& scratch, int& length) const;

    pcre2_real_code_16* FCode = nullptr;
    std::string FError;
    std::bitset<256> FStarts; // code units below 255 a match may begin with, unless FAnyStart
    bool FAnyStart = true;
};

} // namespace zv
