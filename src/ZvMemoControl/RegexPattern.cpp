// PCRE2 (16-bit) behind TRegexPattern.
#include "ZvMemoControl/RegexPattern.h"

#include "ZvMemoControl/StyleRegex.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

namespace zv {

TRegexPattern::TRegexPattern(std::u16string_view pattern, bool caseless) {
    pcre2_compile_context* context = pcre2_compile_context_create(nullptr);
    pcre2_set_newline(context, PCRE2_NEWLINE_ANYCRLF);
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    const std::uint32_t options =
        PCRE2_UTF | PCRE2_MATCH_INVALID_UTF | PCRE2_MULTILINE | (caseless ? PCRE2_CASELESS : 0u);
    FCode = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options,
                          &errorCode, &errorOffset, context);
    pcre2_compile_context_free(context);
    if (!FCode) {
        FError = RegexErrorText(errorCode, errorOffset);
        return;
    }
    pcre2_jit_compile(FCode, PCRE2_JIT_COMPLETE); // falls back to the interpreter on failure
    FData = pcre2_match_data_create_from_pattern(FCode, nullptr);
}

TRegexPattern::~TRegexPattern() {
    pcre2_match_data_free(FData);
    pcre2_code_free(FCode);
}

bool TRegexPattern::Match(std::u16string_view subject, std::size_t offset) const {
    FGroups = 0;
    if (!FCode || offset > subject.size())
        return false;
    const int rc = pcre2_match(FCode, reinterpret_cast<PCRE2_SPTR>(subject.data()), subject.size(),
                               offset, PCRE2_NOTEMPTY, FData, nullptr);
    if (rc <= 0)
        return false;
    const PCRE2_SIZE* ov = pcre2_get_ovector_pointer(FData);
    if (ov[1] <= ov[0]) // \K can put the end before the start
        return false;
    FGroups = rc;
    return true;
}

const std::size_t* TRegexPattern::Offsets() const {
    return pcre2_get_ovector_pointer(FData);
}

} // namespace zv
