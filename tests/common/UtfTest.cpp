// The UTF-8 and UTF-16 helpers against ICU: the same U+FFFD substitutions and the same
// verdict on well-formedness for random, mostly broken bytes; streaming decoding in random
// slices equal to decoding whole; code-point round trips; the cursor agreeing with both.
#include "common/Utf.h"
#include "common/Utf8Stream.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <random>
#include <string>
#include <vector>

namespace zv {
namespace {

// Bytes built from pieces that break UTF-8 in every known way, with valid text between.
std::string RandomBytes(std::mt19937& rng) {
    static const std::vector<std::string> kPieces = {"a",
                                                     "z ",
                                                     "\xC3\xA9",
                                                     "\xE4\xB8\xAD",
                                                     "\xF0\x9F\x98\x80", // valid 1 to 4 bytes
                                                     "\xC3",
                                                     "\xE4\xB8",
                                                     "\xF0\x9F\x98", // cut sequences
                                                     "\x80",
                                                     "\xBF",
                                                     "\xFE",
                                                     "\xFF",
                                                     "\xC0\xAF",
                                                     "\xC1\xBF", // lone tails, never-leads
                                                     "\xE0\x80\xAF",
                                                     "\xF0\x80\x80\xAF", // overlongs
                                                     "\xED\xA0\x80",
                                                     "\xED\xBF\xBF", // surrogates
                                                     "\xF4\x90\x80\x80",
                                                     "\xF5\x80\x80\x80", // above U+10FFFF
                                                     "\xEF\xBB\xBF"};
    std::string out;
    const int n = static_cast<int>(rng() % 24);
    for (int i = 0; i < n; ++i)
        out += kPieces[rng() % kPieces.size()];
    return out;
}

std::u16string IcuDecode(const std::string& bytes, UErrorCode& status) {
    std::u16string out(bytes.size() + 4, u'\0');
    int32_t length = 0;
    status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(reinterpret_cast<UChar*>(out.data()), static_cast<int32_t>(out.size()),
                         &length, bytes.data(), static_cast<int32_t>(bytes.size()), 0xFFFD, nullptr,
                         &status);
    out.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
    return out;
}

bool IcuCallsValid(const std::string& bytes) {
    std::u16string out(bytes.size() + 4, u'\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(reinterpret_cast<UChar*>(out.data()), static_cast<int32_t>(out.size()), &length,
                  bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    return U_SUCCESS(status);
}

TEST(Utf, DecodingAgreesWithIcuOnBrokenBytes) {
    std::mt19937 rng(3);
    for (int round = 0; round < 20000; ++round) {
        const std::string bytes = RandomBytes(rng);
        UErrorCode status;
        const std::u16string icu = IcuDecode(bytes, status);
        ASSERT_TRUE(U_SUCCESS(status)) << u_errorName(status);
        ASSERT_EQ(Utf8ToUtf16(bytes), icu) << "round " << round;
        ASSERT_EQ(IsValidUtf8(bytes), IcuCallsValid(bytes)) << "round " << round;
        // The cursor yields the code points of the same decoding.
        std::u16string walked;
        TU8Cursor cursor(bytes);
        for (char32_t cp; cursor.Next(cp);)
            AppendUtf16(walked, cp);
        ASSERT_EQ(walked, icu) << "round " << round;
    }
}

// Slices cut anywhere decode as the whole does, in both modes; kept escapes encode back to
// exactly the bytes read.
TEST(Utf, StreamingInRandomSlicesEqualsDecodingWholeAndEscapesSaveBack) {
    using TInvalid = TUtf8Decoder::TInvalid;
    std::mt19937 rng(5);
    for (int round = 0; round < 5000; ++round) {
        std::string bytes;
        for (int i = 0; i < 6; ++i)
            bytes += RandomBytes(rng);
        const TInvalid mode = round % 2 ? TInvalid::Replace : TInvalid::Escape;
        TUtf8Decoder decoder(mode);
        std::u16string streamed;
        std::size_t at = 0;
        while (at <= bytes.size()) {
            const std::size_t n = std::min<std::size_t>(rng() % 7, bytes.size() - at);
            const bool last = at + n == bytes.size() && rng() % 2;
            std::u16string part(n + 4, u'\0');
            part.resize(decoder.Decode(std::string_view(bytes).substr(at, n), last, part.data()));
            streamed += part;
            at += n;
            if (last)
                break;
            if (at == bytes.size()) { // end of input: flush with nothing more
                std::u16string rest(4, u'\0');
                rest.resize(decoder.Decode({}, true, rest.data()));
                streamed += rest;
                break;
            }
        }
        if (mode == TInvalid::Replace) {
            ASSERT_EQ(streamed, Utf8ToUtf16(bytes)) << "round " << round;
            continue;
        }
        std::u16string whole(bytes.size() + 4, u'\0');
        whole.resize(TUtf8Decoder().Decode(bytes, true, whole.data()));
        ASSERT_EQ(streamed, whole) << "round " << round;
        std::string saved;
        char16_t pendingHigh = 0;
        std::size_t substitutions = 0;
        EncodeUtf8(streamed, true, pendingHigh, saved, substitutions);
        ASSERT_EQ(saved, bytes) << "round " << round;
        ASSERT_EQ(substitutions, 0u);
    }
}

TEST(Utf, CodePointsRoundTripThroughBothForms) {
    std::mt19937 rng(9);
    for (int round = 0; round < 2000; ++round) {
        std::u16string text;
        for (int i = static_cast<int>(rng() % 30); i > 0; --i) {
            char32_t cp = rng() % 0x110000;
            if (cp >= 0xD800 && cp <= 0xDFFF)
                cp = u'x';
            AppendUtf16(text, cp);
        }
        const std::string utf8 = Utf16ToUtf8(text);
        ASSERT_TRUE(IsValidUtf8(utf8));
        ASSERT_EQ(Utf8ToUtf16(utf8), text) << "round " << round;
    }
    // A lone surrogate cannot be written as UTF-8: it becomes U+FFFD.
    EXPECT_EQ(Utf16ToUtf8(u"a\xD800"
                          u"b"),
              "a\xEF\xBF\xBD"
              "b");
}

} // namespace
} // namespace zv
