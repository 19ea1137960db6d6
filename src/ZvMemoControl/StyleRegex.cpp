// PCRE2 (16-bit) behind TStyleRegex.
#include "ZvMemoControl/StyleRegex.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <charconv>

namespace zv {

std::string RegexErrorText(int errorCode, std::size_t offset) {
    PCRE2_UCHAR message[256];
    const int n = pcre2_get_error_message(errorCode, message, 256);
    std::string text;
    for (int i = 0; i < n; ++i)
        text.push_back(message[i] < 0x80 ? static_cast<char>(message[i]) : '?');
    char at[24];
    auto end = std::to_chars(at, at + sizeof at, offset).ptr;
    return text + " at offset " + std::string(at, end);
}

TRegexMatch::TRegexMatch() : FData(pcre2_match_data_create(10, nullptr)) {}

TRegexMatch::TRegexMatch(const TStyleRegex& regex)
    : FData(regex.FCode ? pcre2_match_data_create_from_pattern(regex.FCode, nullptr)
                        : pcre2_match_data_create(1, nullptr)) {}

const std::size_t* TRegexMatch::Offsets() const {
    return pcre2_get_ovector_pointer(FData);
}

TRegexMatch::~TRegexMatch() {
    pcre2_match_data_free(FData);
}

TStyleRegex::TStyleRegex(std::u16string_view pattern, bool caseless, bool multiLine) {
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    std::uint32_t options = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF | (caseless ? PCRE2_CASELESS : 0u);
    pcre2_compile_context* context = nullptr;
    if (multiLine) {
        options |= PCRE2_MULTILINE;
        context = pcre2_compile_context_create(nullptr);
        pcre2_set_newline(context, PCRE2_NEWLINE_ANYCRLF);
    }
    FCode = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options,
                          &errorCode, &errorOffset, context);
    pcre2_compile_context_free(context);
    if (!FCode) {
        FError = RegexErrorText(errorCode, errorOffset);
        return;
    }
    pcre2_jit_compile(FCode, PCRE2_JIT_COMPLETE); // falls back to the interpreter on failure
    LearnFirstUnits(caseless);
}

// The code units a match can begin with, as the compiler worked them out.
void TStyleRegex::LearnFirstUnits(bool caseless) {
    std::uint32_t type = 0, unit = 0;
    const std::uint8_t* bitmap = nullptr;
    pcre2_pattern_info(FCode, PCRE2_INFO_FIRSTCODETYPE, &type);
    if (type == 1 && pcre2_pattern_info(FCode, PCRE2_INFO_FIRSTCODEUNIT, &unit) == 0 &&
        (caseless ? unit < 128 : unit < 255)) {
        // Caseless, an ASCII letter also begins a match in its other case (the Unicode
        // kin of "k" and "s" lie above 255, where every unit may begin one).
        FAnyStart = false;
        FStarts.set(unit);
        if (caseless && ((unit | 0x20u) >= 'a' && (unit | 0x20u) <= 'z'))
            FStarts.set(unit ^ 0x20u);
    } else if (type == 0 && pcre2_pattern_info(FCode, PCRE2_INFO_FIRSTBITMAP, &bitmap) == 0 &&
               bitmap) {
        FAnyStart = false;
        for (int c = 0; c < 256; ++c)
            if (bitmap[c / 8] & (1u << (c % 8)))
                FStarts.set(c);
    }
}

bool TStyleRegex::MayStartWith(char16_t c) const {
    return FAnyStart || c >= 255 || FStarts.test(c);
}

bool TStyleRegex::Jitted() const {
    std::size_t size = 0;
    return FCode && pcre2_pattern_info(FCode, PCRE2_INFO_JITSIZE, &size) == 0 && size > 0;
}

TStyleRegex::~TStyleRegex() {
    pcre2_code_free(FCode);
}

int TStyleRegex::Exec(std::u16string_view subject, std::size_t offset, std::uint32_t options,
                      TRegexMatch& scratch) const {
    if (!FCode || offset > subject.size())
        return -1;
    return pcre2_match(FCode, reinterpret_cast<PCRE2_SPTR>(subject.data()), subject.size(), offset,
                       options, scratch.Data(), nullptr);
}

long long TStyleRegex::Run(std::u16string_view subject, std::size_t offset, bool anchored,
                           TRegexMatch& scratch, int& length) const {
    length = 0;
    if (Exec(subject, offset, anchored ? PCRE2_ANCHORED : 0u, scratch) < 0)
        return -1;
    const PCRE2_SIZE* ov = scratch.Offsets();
    if (ov[1] < ov[0]) // \K can put the end before the start
        return -1;
    length = static_cast<int>(ov[1] - ov[0]);
    return static_cast<long long>(ov[0]);
}

int TStyleRegex::FindNonEmpty(std::u16string_view subject, std::size_t offset,
                              TRegexMatch& scratch) const {
    const int groups = Exec(subject, offset, PCRE2_NOTEMPTY, scratch);
    if (groups <= 0)
        return 0;
    const PCRE2_SIZE* ov = scratch.Offsets();
    return ov[1] > ov[0] ? groups : 0; // \K can put the end before the start
}

int TStyleRegex::MatchAt(std::u16string_view subject, std::size_t offset,
                         TRegexMatch& scratch) const {
    int length = 0;
    return Run(subject, offset, true, scratch, length) >= 0 ? length : -1;
}

long long TStyleRegex::Find(std::u16string_view subject, std::size_t offset, TRegexMatch& scratch,
                            int& length) const {
    return Run(subject, offset, false, scratch, length);
}

} // namespace zv
