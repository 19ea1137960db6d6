// ICU-backed decoders and encoders with explicit substitution.
#include "ZvMemoControl/Converter.h"

#include "ZvMemoControl/CodePages.h"
#include "common/Utf8Stream.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>

#include <algorithm>

namespace zv {
namespace {

UConverter* OpenConverter(std::uint32_t codePage) {
    const TCodePageInfo* info = FindCodePage(EffectiveCodePage(codePage));
    if (!info || !info->IcuName)
        throw TCodePageError(codePage);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* cnv = ucnv_open(info->IcuName, &status);
    if (U_FAILURE(status)) {
        ucnv_close(cnv);
        throw TCodePageError(codePage);
    }
    return cnv;
}

// A lone escape (a byte that could not be decoded when read) is written back as that byte;
// anything else the code page cannot hold becomes "?" and makes the encoder lossy.
void EscapingFromUCallback(const void* context, UConverterFromUnicodeArgs* args,
                           const UChar* codeUnits, int32_t length, UChar32 codePoint,
                           UConverterCallbackReason reason, UErrorCode* err) {
    if (reason > UCNV_IRREGULAR)
        return; // reset, close, clone: nothing to write
    if (reason == UCNV_ILLEGAL && length == 1 && IsByteEscape(static_cast<char16_t>(codePoint))) {
        const char byte = static_cast<char>(codePoint & 0xFF);
        *err = U_ZERO_ERROR;
        ucnv_cbFromUWriteBytes(args, &byte, 1, 0, err);
        return;
    }
    *static_cast<bool*>(const_cast<void*>(context)) = true;
    UCNV_FROM_U_CALLBACK_SUBSTITUTE(nullptr, args, codeUnits, length, codePoint, reason, err);
}

// Each byte that does not decode is kept as an escape (and counted), so that it saves back.
void EscapingToUCallback(const void* context, UConverterToUnicodeArgs* args, const char* codeUnits,
                         int32_t length, UConverterCallbackReason reason, UErrorCode* err) {
    if (reason > UCNV_IRREGULAR)
        return;
    UChar escapes[32];
    const int32_t n = std::min<int32_t>(length, 32);
    for (int32_t i = 0; i < n; ++i)
        escapes[i] = EscapeByte(static_cast<unsigned char>(codeUnits[i]));
    *static_cast<std::size_t*>(const_cast<void*>(context)) += static_cast<std::size_t>(n);
    *err = U_ZERO_ERROR;
    ucnv_cbToUWriteUChars(args, escapes, n, 0, err);
}

std::string MessageFor(std::uint32_t codePage) {
    const TCodePageInfo* info = FindCodePage(codePage);
    std::string text = "The code page " + std::to_string(codePage);
    if (info)
        text += std::string(" (") + info->Name + ")";
    return text + " is not available on this system.";
}

} // namespace

TCodePageError::TCodePageError(std::uint32_t codePage)
    : std::runtime_error(MessageFor(codePage)), CodePage(codePage) {}

TZvDecoder::TZvDecoder(std::uint32_t codePage) : FCodePage(codePage) {
    if (codePage == cpUTF8) {
        FUtf8 = std::make_unique<TUtf8Decoder>();
        return;
    }
    FCnv = OpenConverter(codePage);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(FCnv, EscapingToUCallback, &FSubstitutions, nullptr, nullptr, &status);
}

TZvDecoder::~TZvDecoder() {
    ucnv_close(FCnv);
}

void TZvDecoder::Reset() {
    if (FUtf8)
        FUtf8->Reset();
    else
        ucnv_resetToUnicode(FCnv);
}

std::size_t TZvDecoder::Substitutions() const {
    return FUtf8 ? FUtf8->Substitutions() : FSubstitutions;
}

std::size_t TZvDecoder::DecodeInto(std::string_view& bytes, bool flush, char16_t* dst,
                                   std::size_t cap) {
    if (FUtf8) { // at most one unit per byte, plus what a held-back sequence gives
        if (cap < 5)
            return 0;
        const std::string_view part = bytes.substr(0, std::min(bytes.size(), cap - 4));
        const std::size_t n = FUtf8->Decode(part, flush && part.size() == bytes.size(), dst);
        bytes.remove_prefix(part.size());
        return n;
    }
    const char* src = bytes.data();
    const char* srcEnd = src + bytes.size();
    UChar* target = reinterpret_cast<UChar*>(dst);
    UChar* targetEnd = target + cap;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUnicode(FCnv, &target, targetEnd, &src, srcEnd, nullptr, flush, &status);
    bytes.remove_prefix(static_cast<std::size_t>(src - bytes.data()));
    return static_cast<std::size_t>(target - reinterpret_cast<UChar*>(dst));
}

void TZvDecoder::Decode(std::string_view bytes, bool flush, std::u16string& out) {
    std::size_t used = out.size();
    out.resize(used + bytes.size() + 16);
    for (;;) {
        used += DecodeInto(bytes, flush, out.data() + used, out.size() - used);
        if (bytes.empty() && used < out.size())
            break;
        out.resize(out.size() + bytes.size() + 64);
    }
    out.resize(used);
}

TZvEncoder::TZvEncoder(std::uint32_t codePage) : FCodePage(codePage) {
    if (codePage == cpUTF8) {
        FUtf8 = true;
        return;
    }
    FCnv = OpenConverter(codePage);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setSubstChars(FCnv, "?", 1, &status);
    status = U_ZERO_ERROR;
    ucnv_setFromUCallBack(FCnv, EscapingFromUCallback, &FLossy, nullptr, nullptr, &status);
}

TZvEncoder::~TZvEncoder() {
    ucnv_close(FCnv);
}

void TZvEncoder::Encode(std::u16string_view text, bool flush, std::string& out) {
    if (FUtf8) {
        EncodeUtf8(text, flush, FPendingHigh, out, FUtf8Substitutions);
        FLossy = FUtf8Substitutions > 0;
        return;
    }
    const UChar* src = reinterpret_cast<const UChar*>(text.data());
    const UChar* srcEnd = src + text.size();
    const std::size_t maxPerUnit = static_cast<std::size_t>(ucnv_getMaxCharSize(FCnv));
    const std::size_t start = out.size();
    std::size_t used = start;
    out.resize(used + text.size() * maxPerUnit + 16);
    for (;;) {
        char* target = out.data() + used;
        UErrorCode status = U_ZERO_ERROR;
        ucnv_fromUnicode(FCnv, &target, out.data() + out.size(), &src, srcEnd, nullptr, flush,
                         &status);
        used = static_cast<std::size_t>(target - out.data());
        if (status != U_BUFFER_OVERFLOW_ERROR)
            break;
        out.resize(out.size() * 2 + 64);
    }
    out.resize(used);
    // ICU's HZ encoder opens with "~}" (shift to ASCII, where a text starts anyway); other
    // writers and the files they made don't have it, so the first one is left out.
    if (!FStarted && FCodePage == 52936 && out.compare(start, 2, "~}") == 0)
        out.erase(start, 2);
    FStarted = FStarted || used > start;
}

std::u16string BytesToUnicode(std::uint32_t codePage, std::string_view bytes) {
    TZvDecoder decoder(codePage);
    std::u16string out;
    decoder.Decode(bytes, true, out);
    return out;
}

std::string UnicodeToBytes(std::uint32_t codePage, std::u16string_view text) {
    TZvEncoder encoder(codePage);
    std::string out;
    encoder.Encode(text, true, out);
    return out;
}

} // namespace zv
