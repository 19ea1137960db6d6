// A sorted word list with two hash indexes built once: one for exact lookups and one for
// case-folded lookups. Lookups take a character range of a row and allocate nothing, and the
// table never changes after Assign, so any number of threads may look up at the same time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

class TKeywordTable {
public:
    // Replaces the words: sorted by code unit, duplicates removed, empty words dropped.
    void Assign(std::vector<std::u16string> words);
    void Clear() { Assign({}); }

    // Index into Words() of the word equal to `range` (folded when !caseSensitive), or -1.
    // A case-insensitive hit returns the first of the words that fold alike.
    int IndexOf(std::u16string_view range, bool caseSensitive) const noexcept;
    bool Contains(std::u16string_view range, bool caseSensitive) const noexcept {
        return IndexOf(range, caseSensitive) >= 0;
    }

    const std::vector<std::u16string>& Words() const { return FWords; }
    std::size_t Count() const { return FWords.size(); }
    bool Empty() const { return FWords.empty(); }

private:
    void BuildIndex(std::vector<std::int32_t>& slots, bool folded);

    std::vector<std::u16string> FWords; // sorted, unique
    std::vector<std::int32_t> FExact;   // open addressing; -1 empty; size a power of two
    std::vector<std::int32_t> FFolded;  // same, keyed by the folded word
};

} // namespace zv
