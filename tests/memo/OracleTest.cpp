// The codec against outside tools: ICU's uconv and glibc's iconv for conversions (our
// converters are ICU's, so iconv is the independent one), dos2unix for line ends and BOMs,
// and the CJK sample pairs of Python's test suite. Each test skips when its tool or
// data is missing on the machine.
#include "MemoTestUtil.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <gtest/gtest.h>

#include <glob.h>
#include <map>
#include <sstream>

namespace zv {
namespace {

using test::ReadAll;
using test::RunOutput;
using test::WriteAll;

const std::string kTool = ZV_TOOL_PATH;

std::string Quote(const std::filesystem::path& p) {
    return "'" + p.string() + "'";
}

int Shell(const std::string& line) {
    int status = 0;
    RunOutput(line + " 2>/dev/null", status);
    return status;
}

struct TOracleCase {
    std::uint32_t CodePage;
    const char* UconvName;
    const char* IconvName; // nullptr: glibc's mapping or escapes differ from the Windows page
};

const TOracleCase kCases[] = {
    {437, "ibm-437", "CP437"},
    {866, "ibm-866", "CP866"},
    {874, "windows-874", "CP874"},
    {932, "windows-932", "CP932"},
    {936, "windows-936", nullptr},
    {949, "windows-949", "CP949"},
    {950, "windows-950", nullptr},
    {1200, "UTF-16LE", "UTF-16LE"},
    {1201, "UTF-16BE", "UTF-16BE"},
    {1250, "windows-1250", "CP1250"},
    {1251, "windows-1251", "CP1251"},
    {1252, "windows-1252", "CP1252"},
    {1253, "windows-1253", "CP1253"},
    {1254, "windows-1254", "CP1254"},
    {1255, "windows-1255", "CP1255"},
    {1256, "windows-1256", "CP1256"},
    {1257, "windows-1257", "CP1257"},
    {20866, "KOI8-R", "KOI8-R"},
    {21866, "KOI8-U", "KOI8-U"},
    {28592, "ISO-8859-2", "ISO-8859-2"},
    {28595, "ISO-8859-5", "ISO-8859-5"},
    {28597, "ISO-8859-7", "ISO-8859-7"},
    {28605, "ISO-8859-15", "ISO-8859-15"},
    {50220, "ISO-2022-JP", nullptr},
    {51932, "EUC-JP", "EUC-JP"},
    {51949, "EUC-KR", "EUC-KR"},
    {52936, "HZ", nullptr},
    {54936, "GB18030", "GB18030"},
    {65000, "UTF-7", nullptr},
};

TEST(Oracle, ConvertAgreesWithUconvAndIconvBothWays) {
    if (!test::HaveProgram("uconv"))
        GTEST_SKIP() << "uconv (icu-devtools) is not installed";
    const bool haveIconv = test::HaveProgram("iconv");
    test::TTempDir dir;
    std::mt19937 rng(42);
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.CodePage);
        const auto rows = test::RandomRows(test::Repertoire(c.CodePage), rng, 30, 50);
        std::u16string text;
        for (const auto& row : rows)
            text += row + u"\n";
        const auto utf8 = dir / "in.txt", ours = dir / "ours.txt", theirs = dir / "theirs.txt";
        WriteAll(utf8, UnicodeToBytes(cpUTF8, text));
        const std::string cp = std::to_string(c.CodePage);
        ASSERT_EQ(Shell(kTool + " convert --from 65001 --to " + cp + " " + Quote(utf8) + " " +
                        Quote(ours)),
                  0);
        ASSERT_EQ(Shell("uconv -f UTF-8 -t " + std::string(c.UconvName) + " -o " + Quote(theirs) +
                        " " + Quote(utf8)),
                  0);
        std::string uconvBytes = ReadAll(theirs);
        if (c.CodePage == 52936 && uconvBytes.starts_with("~}"))
            uconvBytes.erase(0, 2); // ICU's HZ opens with a no-op shift; we leave it out
        EXPECT_EQ(ReadAll(ours), uconvBytes) << "uconv, to " << c.UconvName;
        if (haveIconv && c.IconvName) {
            ASSERT_EQ(Shell("iconv -f UTF-8 -t " + std::string(c.IconvName) + " " + Quote(utf8) +
                            " > " + Quote(theirs)),
                      0);
            EXPECT_EQ(ReadAll(ours), ReadAll(theirs)) << "iconv, to " << c.IconvName;
        }
        // And back: the outside tool's bytes read by us give the original text.
        const auto back = dir / "back.txt";
        ASSERT_EQ(Shell(kTool + " convert --from " + cp + " --to 65001 " + Quote(theirs) + " " +
                        Quote(back)),
                  0);
        EXPECT_EQ(ReadAll(back), ReadAll(utf8)) << "from " << c.UconvName;
    }
}

// Parses the values of `zvtool info`.
std::map<std::string, std::string> Info(const std::filesystem::path& file) {
    int status = 0;
    std::istringstream out(RunOutput(kTool + " info " + Quote(file), status));
    std::map<std::string, std::string> values;
    for (std::string line; std::getline(out, line);)
        if (const auto colon = line.find(": "); colon != std::string::npos)
            values[line.substr(0, colon)] = line.substr(colon + 2);
    return values;
}

std::string RandomLineEndText(std::mt19937& rng, int lines) {
    static const char* const ends[] = {"\r\n", "\n", "\r"};
    const int mix = static_cast<int>(rng() % 4); // 0..2 a single kind, 3 mixed
    std::string text;
    for (int i = 0; i < lines; ++i) {
        text += "line " + std::to_string(rng() % 1000) + " \xC3\xA9t\xC3\xA9";
        if (i + 1 < lines || rng() % 2)
            text += ends[mix == 3 ? rng() % 3 : static_cast<unsigned>(mix)];
    }
    return text;
}

TEST(Oracle, LineEndCountsAndBomAgreeWithDos2unix) {
    if (!test::HaveProgram("dos2unix"))
        GTEST_SKIP() << "dos2unix is not installed";
    test::TTempDir dir;
    std::mt19937 rng(7);
    for (int round = 0; round < 12; ++round) {
        const bool bom = round % 2;
        const auto file = dir / "t.txt";
        WriteAll(file, (bom ? "\xEF\xBB\xBF" : "") + RandomLineEndText(rng, 5 + round * 3));
        int status = 0;
        std::istringstream in(RunOutput("dos2unix --info " + Quote(file), status));
        long dos = 0, unix = 0, mac = 0;
        std::string bomWord;
        in >> dos >> unix >> mac >> bomWord;
        auto info = Info(file);
        SCOPED_TRACE(round);
        EXPECT_EQ(info["crlf"], std::to_string(dos));
        EXPECT_EQ(info["lf"], std::to_string(unix));
        EXPECT_EQ(info["cr"], std::to_string(mac));
        EXPECT_EQ(info["bom"], bomWord == "no_bom" ? "no" : "yes");
        // Saving the unchanged text keeps dos2unix's counts: nothing was normalised.
        const auto copy = dir / "copy.txt";
        ASSERT_EQ(Shell(kTool + " convert --to 65001 " + Quote(file) + " " + Quote(copy)), 0);
        EXPECT_EQ(ReadAll(copy), ReadAll(file));
    }
}

// Every flag of zvtool convert against dos2unix's own converters on the same file: --eol
// gives the bytes of unix2dos/dos2unix/unix2mac (which also keep or add the BOM as told),
// --bom/--no-bom the BOM that dos2unix --info then reports, and code-page names work as
// well as numbers.
TEST(Oracle, ConvertFlagsAgreeWithTheDos2unixConverters) {
    for (const char* tool : {"dos2unix", "unix2dos", "unix2mac"})
        if (!test::HaveProgram(tool))
            GTEST_SKIP() << tool << " is not installed";
    test::TTempDir dir;
    std::mt19937 rng(5);
    struct TEol {
        const char* Flag;
        const char* Tool;
    };
    const TEol eols[] = {{"crlf", "unix2dos"}, {"lf", "dos2unix"}, {"cr", "unix2mac"}};
    for (int round = 0; round < 6; ++round) {
        const auto in = dir / "in.txt", ours = dir / "ours.txt", theirs = dir / "theirs.txt";
        // dos2unix's converters take one kind of line end as input; start from LF.
        std::string text;
        for (int i = 0; i < 5 + round; ++i)
            text += "line " + std::to_string(rng() % 1000) + " \xC3\xA9t\xC3\xA9\n";
        WriteAll(in, text);
        for (const auto& eol : eols) {
            for (const bool bom : {false, true}) {
                SCOPED_TRACE(std::string(eol.Flag) + (bom ? " bom" : " no bom"));
                ASSERT_EQ(Shell(kTool + " convert --from utf-8 --to 65001 " +
                                (bom ? "--bom" : "--no-bom") + " --eol " + eol.Flag + " " +
                                Quote(in) + " " + Quote(ours)),
                          0);
                ASSERT_EQ(Shell(std::string(eol.Tool) + (bom ? " --add-bom" : " --remove-bom") +
                                " -q -n " + Quote(in) + " " + Quote(theirs)),
                          0);
                EXPECT_EQ(ReadAll(ours), ReadAll(theirs));
                int status = 0;
                const std::string info = RunOutput("dos2unix --info " + Quote(ours), status);
                EXPECT_NE(info.find(bom ? "UTF-8" : "no_bom"), std::string::npos) << info;
            }
        }
        // A name for the target and UTF-16LE with a BOM: dos2unix reads it and counts alike.
        ASSERT_EQ(Shell(kTool + " convert --to utf-16le --bom " + Quote(in) + " " + Quote(ours)),
                  0);
        int status = 0;
        std::istringstream counts(RunOutput("dos2unix --info=ub " + Quote(ours), status));
        long lf = -1;
        std::string bomWord;
        counts >> lf >> bomWord;
        EXPECT_EQ(lf, 5 + round);
        EXPECT_EQ(bomWord, "UTF-16LE");
    }
}

std::string PythonCjkFolder() {
    glob_t found{};
    std::string folder;
    for (const char* pattern : {"/usr/lib/python3*/test/cjkencodings",
                                "/root/.pyenv/versions/*/lib/python3*/test/cjkencodings"})
        if (folder.empty() && ::glob(pattern, 0, nullptr, &found) == 0 && found.gl_pathc > 0)
            folder = found.gl_pathv[found.gl_pathc - 1];
    globfree(&found);
    return folder;
}

TEST(Oracle, PythonCjkSamplesDecodeAndRoundTrip) {
    const std::string folder = PythonCjkFolder();
    if (folder.empty())
        GTEST_SKIP() << "Python's cjkencodings test data is not on this machine";
    struct TPair {
        const char* Name;
        std::uint32_t CodePage;
        bool SameText; // false: Python's codec decodes some sequences its own way
    };
    const TPair pairs[] = {
        {"big5", 950, true},         {"cp949", 949, true},     {"euc_jp", 51932, true},
        {"euc_kr", 51949, false},    {"gb18030", 54936, true}, {"gb2312", 936, true},
        {"gbk", 936, true},          {"hz", 52936, true},      {"iso2022_jp", 50220, true},
        {"iso2022_kr", 50225, true}, {"shift_jis", 932, true}};
    for (const auto& pair : pairs) {
        SCOPED_TRACE(pair.Name);
        const std::string bytes = ReadAll(folder + "/" + pair.Name + ".txt");
        const std::string utf8 = ReadAll(folder + "/" + pair.Name + "-utf8.txt");
        TZvMemoStrings store;
        store.SetCodePage(pair.CodePage);
        store.FSaveCodePage = true;
        ASSERT_TRUE(store.LoadFromBytes(bytes));
        if (pair.SameText) {
            EXPECT_EQ(UnicodeToBytes(cpUTF8, store.GetTextWithLinefeeds()), utf8);
        }
        EXPECT_EQ(store.SaveToBytes(), bytes);
    }
}

} // namespace
} // namespace zv
