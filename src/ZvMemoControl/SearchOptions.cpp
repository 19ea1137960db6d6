// The whole-word character set of the search filter.
#include "ZvMemoControl/SearchOptions.h"

namespace zv {
namespace {

constexpr std::u16string_view kWordSet =
    u"\t \u00A0()[]{},.;:\"=<>+-/\\?!|\u00A8\u00A4&\u00B4`^*#$%'\u180E\u202F\u205F\u3000\uFEFF"
    u"\r\n";

} // namespace

bool IsWordDelimiter(char16_t c, std::u16string_view userDelimiters) {
    if (c >= 0x2000 && c <= 0x200B)
        return true;
    return kWordSet.find(c) != std::u16string_view::npos ||
           userDelimiters.find(c) != std::u16string_view::npos;
}

} // namespace zv
