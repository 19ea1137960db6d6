// A search's regular expression on the shared PCRE2 wrapper.
#include "ZvMemoControl/RegexPattern.h"

namespace zv {

TRegexPattern::TRegexPattern(std::u16string_view pattern, bool caseless)
    : FRegex(pattern, caseless, true), FScratch(FRegex) {}

bool TRegexPattern::Match(std::u16string_view subject, std::size_t offset) const {
    FGroups = FRegex.FindNonEmpty(subject, offset, FScratch);
    return FGroups > 0;
}

} // namespace zv
