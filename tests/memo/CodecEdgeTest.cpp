// The codec's edge cases: empty files, odd UTF-16, line-end verdicts, CSV quoting, slice
// edges, Latin-1 read as Windows-1252, detection order, failed saves and loads, the 2 GB
// limit and a code page the system lacks. (What a save keeps of the file: SaveSafety.)
#include "MemoTestUtil.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/OpenTextFile.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <vector>

namespace zv {
namespace {

using test::ReadAll;
using test::WriteAll;

TZvMemoStrings& Detecting(TZvMemoStrings& store) {
    store.SetCodePage(cpAutoDetect);
    return store;
}

TEST(CodecEdge, EmptyFileTakesTheDefaultEncodingAndKeepsTheBomFlag) {
    TZvMemoStrings store;
    store.SetUseBOM(true);
    store.Memo().FDefaultEncoding = 1251;
    ASSERT_TRUE(Detecting(store).LoadFromBytes(""));
    EXPECT_EQ(store.Count(), 0);
    EXPECT_EQ(store.CodePage(), 1251u);
    EXPECT_TRUE(store.UseBOM());
}

// BOM detection itself is in the round trips; an odd UTF-16 length loses its last byte.
TEST(CodecEdge, OddUtf16LengthDropsTheLastByte) {
    TZvMemoStrings store;
    ASSERT_TRUE(Detecting(store).LoadFromBytes(std::string("\xFF\xFEh\0i", 5)));
    EXPECT_EQ(store.CodePage(), cpUTF16LE);
    EXPECT_EQ(store.Get(0), u"h");
}

TEST(CodecEdge, LineEndVerdicts) {
    struct TCase {
        const char* Text;
        TSysTextType Kind;
    };
    const TCase cases[] = {
        {"a\r\nb\r\n", sttWindows},
        {"a\nb\n", sttUnix},
        {"a\rb\r", sttMac},
        {"ab\r\ncd\n", sttMixedWindows},
        {"a\nb\nc\r\n", sttMixedUnix},
        {"a\rb\rc\r\n", sttMixedMac},
        {"a\rb\r\n", sttMixedWindows},
        {"a\rb\rc\n", sttMixedMac},
    };
    for (const auto& c : cases) {
        TZvMemoStrings store;
        ASSERT_TRUE(store.LoadFromBytes(c.Text));
        EXPECT_EQ(store.SysTextType(), c.Kind) << c.Text;
        EXPECT_EQ(store.SaveToBytes(), c.Text);
    }
    // No line end at all: the kind set before the load stays.
    TZvMemoStrings store;
    store.SetDefaultSysTextType(sttUnix);
    ASSERT_TRUE(store.LoadFromBytes("single"));
    EXPECT_EQ(store.SysTextType(), sttUnix);
    // Changing the kind rewrites every row's end.
    ASSERT_TRUE(store.LoadFromBytes("a\r\nb\nc\rd"));
    store.SetSysTextType(sttUnix);
    EXPECT_EQ(store.SaveToBytes(), "a\nb\nc\nd");
}

TEST(CodecEdge, QuotedFieldsOfDelimitedFiles) {
    test::TTempDir dir;
    const std::string text = "id,note\r\n1,\"two\nlines\"\r\n2,plain\r\n";
    WriteAll(dir / "a.csv", text);
    WriteAll(dir / "a.txt", text);
    TZvMemoStrings csv, txt;
    ASSERT_TRUE(csv.LoadFromFile((dir / "a.csv").string()));
    ASSERT_TRUE(txt.LoadFromFile((dir / "a.txt").string()));
    EXPECT_EQ(csv.Count(), 4);
    EXPECT_EQ(csv.Get(1), u"1,\"two\nlines\"");
    EXPECT_EQ(txt.Count(), 5);
    EXPECT_EQ(csv.SaveToBytes(), text);
}

TEST(CodecEdge, Utf8SequenceOnASliceEdge) {
    // A 3-byte character straddles byte 500000, and a CR LF straddles the next edge.
    std::string bytes(499999, 'a');
    bytes += "\xE4\xB8\xAD";
    bytes += std::string(1000000 - bytes.size() - 1, 'b');
    bytes += "\r\nend";
    TZvMemoStrings store;
    store.SetCodePage(cpUTF8);
    store.FSaveUTF = true;
    ASSERT_TRUE(store.LoadFromBytes(bytes));
    EXPECT_FALSE(store.Lossy());
    EXPECT_EQ(store.LineEndCounts().CrLf, 1);
    EXPECT_EQ(store.Get(store.Count() - 1), u"end");
    EXPECT_EQ(store.SaveToBytes(), bytes);
}

TEST(CodecEdge, UnicodeLineSeparatorsStayTextUnlessAsked) {
    const std::string bytes = "a\xE2\x80\xA8"
                              "b";
    TZvMemoStrings store;
    store.SetCodePage(cpUTF8);
    store.FSaveUTF = true;
    ASSERT_TRUE(store.LoadFromBytes(bytes));
    EXPECT_EQ(store.Count(), 1);
    EXPECT_EQ(store.SaveToBytes(), bytes);
    store.Memo().FUnicodeLineBreaks = true;
    ASSERT_TRUE(store.LoadFromBytes(bytes));
    EXPECT_EQ(store.Count(), 2); // ends the row, and is lost on save
    EXPECT_EQ(store.SaveToBytes(), "a\r\nb");
}

// Rows split where a plain split on CR LF, CR and LF (and with Unicode breaks on, U+2028,
// and U+2029 as two breaks) does, whatever stands around the line ends: units just below,
// just above and far above the ones that end rows, quotes and tabs, in texts long enough
// for the splitter's eight-unit blocks to meet a line end in every lane.
TEST(CodecEdge, RowsSplitAsAPlainSplitDoes) {
    static const char16_t kUnits[] = {u'a',   u'\t',  u'\r',  u'\n',  u'"',   0x000C, 0x000E,
                                      0x2027, 0x2028, 0x2029, 0x202A, 0x800D, 0xFFFF};
    std::mt19937 rng(11);
    for (int round = 0; round < 3000; ++round) {
        const bool unicodeBreaks = round % 2 == 1;
        std::u16string text;
        const int length = static_cast<int>(rng() % 70);
        for (int i = 0; i < length; ++i)
            text += rng() % 3 ? u'a' : kUnits[rng() % std::size(kUnits)];
        std::vector<std::u16string> rows(1);
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char16_t c = text[i];
            const bool separator = unicodeBreaks && (c == 0x2028 || c == 0x2029);
            if (c != u'\r' && c != u'\n' && !separator) {
                rows.back() += c;
                continue;
            }
            if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
                ++i;
            rows.emplace_back();
            if (c == 0x2029)
                rows.emplace_back();
        }
        if (text.empty())
            rows.clear(); // an empty file has no rows
        std::string bytes(reinterpret_cast<const char*>(text.data()), text.size() * 2);
        TZvMemoStrings store;
        store.Memo().FUnicodeLineBreaks = unicodeBreaks;
        store.SetCodePage(cpUTF16LE);
        store.FSaveUnicode = true;
        ASSERT_TRUE(store.LoadFromBytes(bytes));
        ASSERT_EQ(store.Count(), static_cast<int>(rows.size())) << "round " << round;
        for (std::size_t row = 0; row < rows.size(); ++row)
            ASSERT_EQ(store.Get(static_cast<int>(row)), rows[row]) << "round " << round;
    }
}

TEST(CodecEdge, Latin1ReadsAsWindows1252) {
    TZvMemoStrings store;
    store.SetCodePage(cpISOLatin1);
    store.FSaveCodePage = true;
    ASSERT_TRUE(store.LoadFromBytes("\x80\x93\xE9"));
    EXPECT_EQ(store.Get(0), u"\u20AC\u201C\u00E9");
    EXPECT_EQ(store.SaveToBytes(), "\x80\x93\xE9");
}

TEST(CodecEdge, DetectionOrder) {
    TZvMemoStrings store;
    store.Memo().FDefaultEncoding = 1252;
    ASSERT_TRUE(Detecting(store).LoadFromBytes("na\xC3\xAFve"));
    EXPECT_EQ(store.CodePage(), cpUTF8);
    ASSERT_TRUE(Detecting(store).LoadFromBytes("na\xEFve"));
    EXPECT_EQ(store.CodePage(), 1252u);
    ASSERT_TRUE(Detecting(store).LoadFromBytes("plain"));
    EXPECT_EQ(store.CodePage(), 1252u); // ASCII only: the default encoding
    // The declared encoding of an XML file counts when detecting; UTF-8 only for ASCII.
    store.Memo().FCodePageXML = 1251;
    ASSERT_TRUE(Detecting(store).LoadFromBytes("<?xml?>\xC0"));
    EXPECT_EQ(store.CodePage(), 1251u);
    EXPECT_EQ(store.Get(0), u"<?xml?>\u0410");
    // Detecting all: the detector's choice, through the application's hook.
    store.Memo().FCodePageXML = -1;
    store.Memo().FDetectAll = true;
    std::vector<std::string> seen;
    store.OnDetectCP = [&](TZvMemoStrings&, std::uint32_t& cp,
                           const std::vector<std::string>& candidates, const std::string&) {
        seen = candidates;
        cp = 1253;
    };
    ASSERT_TRUE(Detecting(store).LoadFromBytes("\xC1\xE8\xE2\xEB\xE9\xEF"));
    EXPECT_FALSE(seen.empty());
    EXPECT_EQ(store.CodePage(), 1253u);
}

TEST(CodecEdge, JohabIsRefusedClearly) {
    TZvMemoStrings store;
    ASSERT_TRUE(store.LoadFromBytes("keep"));
    store.SetCodePage(1361);
    store.FSaveCodePage = true;
    EXPECT_FALSE(store.LoadFromBytes("\x88\x61"));
    EXPECT_NE(store.LastError().find("1361"), std::string::npos);
    EXPECT_NE(store.LastError().find("Johab"), std::string::npos) << store.LastError();
    EXPECT_EQ(store.Get(0), u"keep"); // nothing was cleared
    test::TTempDir dir;
    EXPECT_FALSE(store.SaveToFile((dir / "out.txt").string()));
    EXPECT_FALSE(std::filesystem::exists(dir / "out.txt"));
}

// Failures report and change nothing: a save into a missing folder, a load of a missing
// file or of a folder. (A failing atomic write keeps the original: DocumentSave's tests.)
TEST(CodecEdge, FailedSaveOrLoadReportsAndLeavesTheStore) {
    test::TTempDir dir;
    TZvMemoStrings store;
    store.Add(u"kept");
    EXPECT_FALSE(store.SaveToFile((dir / "no" / "such" / "a.txt").string()));
    EXPECT_FALSE(store.LastError().empty());
    EXPECT_FALSE(store.LoadFromFile("/nonexistent/zv/file.txt"));
    EXPECT_EQ(store.Count(), 1);
    EXPECT_FALSE(store.LoadFromFile(dir.Path().string()));
    EXPECT_FALSE(store.LastError().empty());
    EXPECT_EQ(store.Get(0), u"kept");
}

TEST(CodecEdge, FilesPastTheThirtyTwoBitLimitAreRefused) {
    test::TTempDir dir;
    const auto big = dir / "big.txt";
    WriteAll(big, "x");
    std::error_code ec;
    std::filesystem::resize_file(big, (std::uintmax_t(1) << 31) + 10, ec); // sparse
    if (ec)
        GTEST_SKIP() << "no sparse files here";
    TZvMemoStrings store;
    store.Add(u"kept");
    EXPECT_FALSE(store.LoadFromFile(big.string()));
    EXPECT_NE(store.LastError().find("too large"), std::string::npos);
    EXPECT_EQ(store.Get(0), u"kept");
}

// `text` in a Unicode code page, no BOM, line ends as they stand.
std::string Encoded(std::u16string_view text, std::uint32_t codePage) {
    if (codePage == cpUTF8)
        return Utf16ToUtf8(text);
    std::string bytes;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
        bytes += codePage == cpUTF16BE ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

// A file that grows in pieces cut anywhere after a load that ended inside a line (inside a
// CR LF, inside a character of UTF-8 or UTF-16) ends as the same rows and bytes as one load
// of the whole file; with nothing new, nothing is added.
TEST(CodecEdge, AppendTailInPiecesCutAnywhereEqualsAWholeLoad) {
    const std::u16string text = u"a\r\nb\u00e9\r\r\n\u20ac\U0001F600x\ny\rz\r\n";
    for (const std::uint32_t codePage : {cpUTF8, cpUTF16LE, cpUTF16BE}) {
        const std::string bytes = Encoded(text, codePage);
        std::mt19937 random(codePage);
        for (int round = 0; round < 40; ++round) {
            test::TTempDir dir;
            const auto log = dir / "grow.log";
            // The load ends inside a line; the growth after it is cut anywhere.
            std::size_t written = Encoded(u"a\r\nb", codePage).size();
            WriteAll(log, bytes.substr(0, written));
            TZvMemoStrings store;
            store.SetCodePage(codePage);
            ASSERT_TRUE(store.LoadFromFile(log.string()));
            while (written < bytes.size()) {
                const std::size_t piece =
                    std::min<std::size_t>(1 + random() % 4, bytes.size() - written);
                std::ofstream(log, std::ios::binary | std::ios::app)
                    << bytes.substr(written, piece);
                written += piece;
                store.AppendTail();
            }
            TZvMemoStrings whole;
            whole.SetCodePage(codePage);
            ASSERT_TRUE(whole.LoadFromFile(log.string()));
            ASSERT_EQ(store.Count(), whole.Count())
                << "code page " << codePage << ", round " << round;
            for (int row = 0; row < whole.Count(); ++row)
                EXPECT_EQ(store.Get(row), whole.Get(row)) << "row " << row;
            EXPECT_EQ(store.GetTextWithLinefeeds(), text)
                << "line ends as read, code page " << codePage << ", round " << round;
            EXPECT_EQ(store.GetTextWithLinefeeds(), whole.GetTextWithLinefeeds());
            EXPECT_FALSE(store.AppendTail()) << "nothing new";
        }
    }
}

TEST(CodecEdge, OpeningAFileAsADocumentDoes) {
    test::TTempDir dir;
    WriteAll(dir / "u16.txt", std::string("h\0i\0 \0t\0h\0e\0r\0e\0", 16));
    WriteAll(dir / "enc.txt", std::string("\x01\x01", 2) + "Zv Zevrit Encrypted" +
                                  std::string("\x01\x02\x07\x06\x01\x01", 6) + "data");
    WriteAll(dir / "page.html", "<html><head><meta charset=\"windows-1251\"></head>\xC0</html>");
    TZvMemoStrings store;
    TFileType type;
    std::string error;
    ASSERT_TRUE(OpenTextFile(store, (dir / "u16.txt").string(), cpAutoDetect, type, error));
    EXPECT_EQ(store.CodePage(), cpUTF16LE);
    EXPECT_EQ(store.Get(0), u"hi there");
    EXPECT_FALSE(OpenTextFile(store, (dir / "enc.txt").string(), cpAutoDetect, type, error));
    EXPECT_EQ(type.Kind, 2);
    EXPECT_NE(error.find("encrypted"), std::string::npos);
    TZvMemoStrings page;
    ASSERT_TRUE(OpenTextFile(page, (dir / "page.html").string(), cpAutoDetect, type, error));
    EXPECT_EQ(page.CodePage(), 1251u);
}

} // namespace
} // namespace zv
