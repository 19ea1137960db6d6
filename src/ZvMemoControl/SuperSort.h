// TSuperSort: orders lines by keys cut from them (a column range, tabs expanded, or a field
// between delimiters), as text in code point order, case-blind, or as numbers; stable, so
// lines with equal keys keep their order. The lines are views: nothing is copied.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// One sort key.
struct TSortKey {
    // Columns, 1-based and inclusive, counted with tabs expanded; End <= 0: to the line's end.
    std::int32_t Start = 1;
    std::int32_t End = 0;
    // Field > 0: the key is that field (1-based) of the line split at Delimiter instead.
    std::int32_t Field = 0;
    char16_t Delimiter = u'\t';
    bool Descending = false;
    bool IgnoreCase = false; // simple upper-case mapping of each unit before comparing
    // The key's leading number (blanks skipped, optional '-', digits, optional '.' and
    // digits); a key without one counts as 0.
    bool Numeric = false;
    bool RemoveKeyDuplicates =
        false; // of lines next to each other with equal keys, the first stays
    bool OnlyKeepKeyDuplicates = false; // lines whose key no neighbour shares go
};

// A malformed switch of SortStrings; the message is the one shown.
class TSortSwitchError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

// Bits of SortStrings' options.
enum TSortOption : unsigned {
    soDescending = 1,
    soIgnoreCase = 2,
    soIgnoreBlank = 4, // leading blanks of the key are skipped
    soNumeric = 8
};

class TSuperSort {
public:
    // Sorts by the keys in turn: a later key orders only lines all earlier keys left equal.
    // Then each key's duplicate filter runs, in key order. Returns the kept lines' indices in
    // their new order. FSortTime gets the time taken.
    std::vector<std::uint32_t> Sort(const std::vector<std::u16string_view>& lines,
                                    const std::vector<TSortKey>& keys);
    // The switch form: "-k<start>,<end>" columns, "-f<n>" field, "-d<c>" delimiter (letters
    // case-blind), with a TSortOption set. Throws TSortSwitchError for a -k without both
    // columns or a -f without a number.
    std::vector<std::uint32_t> SortStrings(const std::vector<std::u16string_view>& lines,
                                           const std::vector<std::u16string>& switches,
                                           unsigned options);
    // Drops from `order` each line equal (as text) to the line before it in `order`.
    static void RemoveDuplicates(const std::vector<std::u16string_view>& lines,
                                 std::vector<std::uint32_t>& order);
    // The key `key` cuts from `line`, with tabs of `tabSize` columns.
    static std::u16string_view KeyText(std::u16string_view line, const TSortKey& key, int tabSize);

    double FSortTime = 0; // seconds the last sort took
    bool FIsSwitches = false, FIsPositional = false, FIsDelimited = false;
    bool FDescending = false, FIgnoreCase = false, FIgnoreBlank = false;
    bool FEvalDateTime = false, FEvalNumeric = false;
    std::int32_t FFieldNum = 0, FStartPos = 0, FEndPos = 0;
    char16_t FDelimiter = u'\t';
    std::int32_t FEndAtLine = 0, FStartAtLine = 0;
    std::int32_t FTabSize = 8;
};

} // namespace zv
