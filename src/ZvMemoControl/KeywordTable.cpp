// Hash indexes of a keyword list: FNV-1a over code units, or over folded code points.
#include "ZvMemoControl/KeywordTable.h"

#include "shell/IniName.h"

#include <algorithm>
#include <bit>

namespace zv {

namespace {

std::uint64_t HashExact(std::u16string_view s) noexcept {
    std::uint64_t h = 1469598103934665603ull; // FNV-1a over code units
    for (char16_t c : s)
        h = (h ^ c) * 1099511628211ull;
    return h;
}

} // namespace

void TKeywordTable::Assign(std::vector<std::u16string> words) {
    std::erase_if(words, [](const std::u16string& w) { return w.empty(); });
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
    FWords = std::move(words);
    BuildIndex(FExact, false);
    BuildIndex(FFolded, true);
}

void TKeywordTable::BuildIndex(std::vector<std::int32_t>& slots, bool folded) {
    slots.clear();
    if (FWords.empty())
        return;
    slots.assign(std::bit_ceil(FWords.size() * 2), -1);
    const std::size_t mask = slots.size() - 1;
    for (std::size_t w = 0; w < FWords.size(); ++w) {
        const std::u16string_view word = FWords[w];
        std::size_t i = (folded ? FoldedHash(word) : HashExact(word)) & mask;
        bool duplicate = false;
        for (; slots[i] >= 0; i = (i + 1) & mask) {
            if (folded && FoldedEqual(FWords[slots[i]], word)) {
                duplicate = true;
                break;
            }
        }
        if (!duplicate)
            slots[i] = static_cast<std::int32_t>(w);
    }
}

int TKeywordTable::IndexOf(std::u16string_view range, bool caseSensitive) const noexcept {
    const std::vector<std::int32_t>& slots = caseSensitive ? FExact : FFolded;
    if (slots.empty() || range.empty())
        return -1;
    const std::size_t mask = slots.size() - 1;
    std::size_t i = (caseSensitive ? HashExact(range) : FoldedHash(range)) & mask;
    for (; slots[i] >= 0; i = (i + 1) & mask) {
        const std::u16string_view word = FWords[slots[i]];
        if (caseSensitive ? word == range : FoldedEqual(word, range))
            return slots[i];
    }
    return -1;
}

} // namespace zv
