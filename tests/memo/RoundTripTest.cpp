// Load then save gives back the same bytes: random rows in every supported code page, with
// and without BOM, CR LF / LF / CR / mixed line ends, with and without a final line end, in
// small texts and in texts spanning several 500000-byte slices.
#include "MemoTestUtil.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/Streams.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::RandomRows;
using test::Repertoire;

enum TEnds { eCrLf, eLf, eCr, eMixed };

// The text of `rows` joined by the chosen line ends, with or without one at the end.
std::u16string JoinRows(const std::vector<std::u16string>& rows, TEnds ends, bool finalEnd,
                        std::mt19937& rng) {
    static const std::u16string_view kinds[] = {u"\r\n", u"\n", u"\r"};
    std::u16string text;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        text += rows[i];
        if (i + 1 < rows.size() || finalEnd)
            text += ends == eMixed ? kinds[rng() % 3] : kinds[ends];
    }
    return text;
}

std::string BomFor(std::uint32_t cp) {
    switch (cp) {
    case cpUTF8:
        return "\xEF\xBB\xBF";
    case cpUTF16LE:
        return "\xFF\xFE";
    case cpUTF16BE:
        return "\xFE\xFF";
    default:
        return {};
    }
}

// Loads `bytes` as code page `cp` (detection off) and saves; returns the saved bytes.
std::string LoadSave(const std::string& bytes, std::uint32_t cp, TZvMemoStrings& store) {
    store.SetCodePage(cp);
    store.FSaveCodePage = true;
    store.FSaveUTF = cp == cpUTF8;
    store.FSaveUnicode = cp == cpUTF16LE;
    EXPECT_TRUE(store.LoadFromBytes(bytes)) << store.LastError();
    return store.SaveToBytes();
}

std::vector<std::uint32_t> SupportedCodePages() {
    std::vector<std::uint32_t> out;
    for (const auto& info : KnownCodePages())
        if (IsCodePageSupported(info.CodePage))
            out.push_back(info.CodePage);
    return out;
}

class CodePageRoundTrip : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(CodePageRoundTrip, RandomRowsAllLineEndKinds) {
    const std::uint32_t cp = GetParam();
    const auto repertoire = Repertoire(cp);
    ASSERT_GT(repertoire.size(), 20u) << "code page " << cp;
    std::mt19937 rng(cp);
    for (int round = 0; round < 16; ++round) {
        const auto ends = static_cast<TEnds>(round % 4);
        const bool finalEnd = (round / 4) % 2;
        const bool bom = (round / 8) % 2 && !BomFor(cp).empty();
        const auto rows = RandomRows(repertoire, rng, 1 + static_cast<int>(rng() % 40), 60);
        const std::string bytes =
            (bom ? BomFor(cp) : "") + UnicodeToBytes(cp, JoinRows(rows, ends, finalEnd, rng));
        TZvMemoStrings store;
        const std::string saved = LoadSave(bytes, cp, store);
        ASSERT_EQ(saved, bytes) << "code page " << cp << " round " << round;
        EXPECT_EQ(store.UseBOM(), bom);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCodePage, CodePageRoundTrip,
                         ::testing::ValuesIn(SupportedCodePages()),
                         [](const auto& info) { return "cp" + std::to_string(info.param); });

// Multi-byte and stateful encodings across slice edges: one converter for the whole load.
class SliceRoundTrip : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(SliceRoundTrip, TextOfSeveralSlices) {
    const std::uint32_t cp = GetParam();
    const auto repertoire = Repertoire(cp);
    std::mt19937 rng(cp * 7 + 1);
    auto rows = RandomRows(repertoire, rng, 24000, 90);
    const std::string bytes = UnicodeToBytes(cp, JoinRows(rows, eMixed, true, rng));
    ASSERT_GT(bytes.size(), 1100000u);
    TZvMemoStrings store;
    EXPECT_EQ(LoadSave(bytes, cp, store), bytes);
    EXPECT_FALSE(store.Lossy());
    // A CR end followed by an LF end reads as one CR LF, so rows may be fewer.
    EXPECT_GT(store.Count(), 20000);
    EXPECT_LE(store.Count(), 24001);
}

INSTANTIATE_TEST_SUITE_P(MultiByte, SliceRoundTrip,
                         ::testing::Values(932u, 936u, 949u, 950u, 1200u, 1201u, 50220u, 50225u,
                                           51932u, 52936u, 54936u, 65000u, 65001u),
                         [](const auto& info) { return "cp" + std::to_string(info.param); });

TEST(RoundTrip, DetectedUtf8AndUtf16ThroughDisk) {
    test::TTempDir dir;
    std::mt19937 rng(5);
    for (std::uint32_t cp : {cpUTF8, cpUTF16LE, cpUTF16BE}) {
        const auto rows = RandomRows(Repertoire(cp), rng, 50, 40);
        const std::string bytes =
            BomFor(cp) + UnicodeToBytes(cp, JoinRows(rows, eMixed, false, rng));
        const auto file = dir / "t.txt";
        test::WriteAll(file, bytes);
        TZvMemoStrings store;
        store.SetCodePage(cpAutoDetect);
        ASSERT_TRUE(store.LoadFromFile(file.string()));
        EXPECT_EQ(store.CodePage(), cp);
        EXPECT_TRUE(store.UseBOM());
        ASSERT_TRUE(store.SaveToFile(file.string())) << store.LastError();
        EXPECT_EQ(test::ReadAll(file), bytes) << "code page " << cp;
    }
}

// Lines around the 4096-unit row limit and one of 1.2 MB that continues across slices are
// cut into rows no longer than the limit and joined again on save.
TEST(RoundTrip, LongLinesAreCutIntoRowsAndJoinOnSave) {
    std::mt19937 rng(9);
    const auto repertoire = Repertoire(cpUTF8);
    for (int length : {4095, 4096, 4097, 9000, 1200000}) {
        std::u16string line;
        while (static_cast<int>(line.size()) < length)
            line += line.size() % 997 ? repertoire[rng() % repertoire.size()] : u"\t";
        const std::string bytes = UnicodeToBytes(cpUTF8, u"short\n" + line + u"\r\nend");
        TZvMemoStrings store;
        ASSERT_EQ(LoadSave(bytes, cpUTF8, store), bytes) << length;
        EXPECT_EQ(store.Memo().FForceWrap, line.size() > 4096);
        EXPECT_TRUE(store.Memo().FHasTabs);
        for (int row = 0; row < store.Count(); ++row)
            ASSERT_LE(store.GetLineLength(row), 4096);
    }
}

// UTF-8 written from rows equals a plain code-point-by-code-point encoding, also for rows
// longer than the writer's batch (pairs cut between two pieces) and for lone surrogates,
// which become "?" and mark the save as lossy.
TEST(RoundTrip, Utf8SaveEqualsAPlainEncoding) {
    const auto plain = [](std::u16string_view text) {
        std::string out;
        for (std::size_t i = 0; i < text.size(); ++i) {
            char32_t cp = text[i];
            if ((cp & 0xFC00) == 0xD800 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00)
                cp = 0x10000 + ((cp - 0xD800) << 10) + (text[++i] - 0xDC00);
            else if ((cp & 0xF800) == 0xD800)
                cp = '?';
            AppendUtf8(out, cp);
        }
        return out;
    };
    std::mt19937 rng(21);
    for (const bool lone : {false, true}) {
        TZvMemoStrings store;
        store.SetCodePage(cpUTF8);
        std::u16string all;
        for (int row = 0; row < 4; ++row) {
            std::u16string text;
            const std::size_t length = row == 1 ? 900000 : rng() % 5000; // one row past a batch
            while (text.size() < length) {
                switch (rng() % 6) {
                case 0:
                    text += u"\U0001F600";
                    break;
                case 1:
                    text += u"\u00e9\u4e2d";
                    break;
                case 2:
                    if (lone)
                        text += rng() % 2 ? u'\xD83D' : u'\xDE00';
                    break;
                default:
                    text += u"abc ";
                }
            }
            store.Add(text);
            all += (row ? u"\r\n" : u"") + text;
        }
        ASSERT_EQ(store.SaveToBytes(), plain(all)) << lone;
        EXPECT_EQ(store.Lossy(), lone);
    }
}

} // namespace
} // namespace zv
