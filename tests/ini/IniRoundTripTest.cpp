// Settings files loaded and saved again: bytes checked with iconv and cmp as outside
// judges, for every encoding the reader accepts and every kind of line end.
#include "IniTestSupport.h"

#include "shell/ZvIniFiles.h"

#include <map>
#include <random>

namespace zv {
namespace {

using test::Quote;
using test::Shell;

// A settings file as people leave them: comments, blanks inside a section, names with
// blanks around them, values with blanks behind (OpenAsBinary), "=" inside values, a bare
// line, a duplicate key, a number with blanks around it and names outside ASCII. It is
// already in the written form (one blank line closes each section), so saving it must give
// back the same text.
constexpr std::string_view kRealLooking = "[Customize]\n"
                                          "; kept as it was\n"
                                          "LoadInTab=1\n"
                                          "  Language = English\n"
                                          "MenuRecent= 15 \n"
                                          "menurecent=99\n"
                                          "\n"
                                          "[EditorMisc]\n"
                                          "OpenAsBinary=.7z .zip .exe \n"
                                          "Title==a=b\n"
                                          "bare line without equals\n"
                                          "   \n"
                                          "DefaultEncoding=65001\n"
                                          "\n"
                                          "[Ünïcödé 名前]\n"
                                          "Path=/home/ü/файл.txt\n"
                                          "Emoji=😀 x\t\n"
                                          "Empty=\n"
                                          "\n";

std::string WithLineEnds(std::string_view text, std::string_view end) {
    std::string out;
    for (char c : text)
        if (c == '\n')
            out.append(end);
        else
            out.push_back(c);
    return out;
}

class IniRoundTrip : public ::testing::TestWithParam<const char*> {
protected:
    test::TTempDir FDir;
};

// The text in UTF-8 with line ends `end`, re-encoded by iconv into the form under test.
std::filesystem::path EncodeWithIconv(const test::TTempDir& dir, std::string_view form,
                                      std::string_view end) {
    const auto plain = dir / "plain.txt";
    const std::string bom = form == "UTF-8" ? "" : "\xEF\xBB\xBF";
    test::WriteAll(plain, bom + WithLineEnds(kRealLooking, end));
    const auto input = dir / "input.ini";
    const std::string iconvTo = form == "UTF-8-BOM" ? "UTF-8" : std::string(form);
    EXPECT_EQ(Shell("iconv -f UTF-8 -t " + iconvTo + " " + Quote(plain) + " > " + Quote(input)), 0);
    return input;
}

TEST_P(IniRoundTrip, SavingGivesTheSameTextAsUtf16LeWithCrLf) {
    for (const char* end : {"\n", "\r\n", "\r"}) {
        SCOPED_TRACE(std::string(GetParam()) + " line end " + (end[0] == '\r' ? "CR.." : "LF"));
        TMemIniFileW ini(EncodeWithIconv(FDir, GetParam(), end));
        ASSERT_EQ(ini.LoadStatus(), TIniLoadStatus::Loaded);
        const auto saved = FDir / "saved.ini";
        test::WriteAll(saved, ini.SaveToBytes());
        // The judge: iconv decodes what we wrote; it must be the BOM and the CR LF text.
        const auto expected = FDir / "expected.txt";
        test::WriteAll(expected, "\xEF\xBB\xBF" + WithLineEnds(kRealLooking, "\r\n"));
        EXPECT_EQ(
            Shell("iconv -f UTF-16LE -t UTF-8 " + Quote(saved) + " | cmp -s - " + Quote(expected)),
            0);
        EXPECT_EQ(Shell("head -c 2 " + Quote(saved) + " | xxd -p | grep -qx fffe"), 0);
    }
}

TEST_P(IniRoundTrip, ValuesReadAsWritten) {
    const TMemIniFileW ini(EncodeWithIconv(FDir, GetParam(), "\r\n"));
    EXPECT_EQ(ini.ReadString("customize", "LANGUAGE", ""), " English");
    EXPECT_EQ(ini.ReadInteger("Customize", "MenuRecent", 0), 15);
    EXPECT_EQ(ini.ReadString("EditorMisc", "OpenAsBinary", ""), ".7z .zip .exe ");
    EXPECT_EQ(ini.ReadString("EditorMisc", "Title", ""), "=a=b");
    EXPECT_EQ(ini.ReadString(u"ÜNÏCÖDÉ 名前", u"emoji", u""), u"😀 x\t");
    EXPECT_EQ(ini.ReadString("ünïcödé 名前", "PATH", ""), "/home/ü/файл.txt");
    EXPECT_EQ(ini.ReadString("Customize", "Missing", "def"), "def");
    EXPECT_EQ(ini.ReadString("ünïcödé 名前", "Empty", "default"), "");
    EXPECT_FALSE(ini.ValueExists("Customize", "; kept as it was"));
    const auto values = ini.ReadSectionValues("EditorMisc");
    EXPECT_NE(std::find(values.begin(), values.end(), u"bare line without equals"), values.end());
}

INSTANTIATE_TEST_SUITE_P(Encodings, IniRoundTrip,
                         ::testing::Values("UTF-8", "UTF-8-BOM", "UTF-16LE", "UTF-16BE"),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST(IniRoundTripForms, Utf16WithoutBomAndLatinTextAreRead) {
    test::TTempDir dir;
    const auto plain = dir / "plain.txt";
    test::WriteAll(plain, "[Sec]\r\nName=caf\xC3\xA9\r\n");
    const auto le = dir / "le.ini";
    const auto latin = dir / "latin.ini";
    ASSERT_EQ(Shell("iconv -f UTF-8 -t UTF-16LE " + Quote(plain) + " > " + Quote(le)), 0);
    ASSERT_EQ(Shell("iconv -f UTF-8 -t CP1252 " + Quote(plain) + " > " + Quote(latin)), 0);
    EXPECT_EQ(TMemIniFileW(le).ReadString("Sec", "Name", ""), "café");
    const TMemIniFileW fromLatin(latin);
    EXPECT_EQ(fromLatin.SourceForm(), TTextForm::Latin);
    EXPECT_EQ(fromLatin.ReadString("Sec", "Name", ""), "café");
}

// Any keys and values written, saved and read again come back unchanged; saving twice
// gives the same bytes.
TEST(IniRoundTripProperty, RandomContentSurvivesSaveAndLoad) {
    std::mt19937 random(20241123);
    const std::u16string alphabet = u"aZ09 _.-=\t;[]äß名\U0001F600&\"";
    auto text = [&](size_t maxLength, bool name) {
        std::u16string s;
        const size_t length = 1 + random() % maxLength;
        while (s.size() < length) {
            char16_t c = alphabet[random() % alphabet.size()];
            if (name && (c == u'=' || c == u' ' || c == u'\t' || c == u';' || c == u'['))
                c = u'k';
            s.push_back(c);
            if (c >= 0xD800 && c <= 0xDBFF) // keep the pair of the emoji whole
                s.push_back(alphabet[alphabet.find(c) + 1]);
            else if (c >= 0xDC00 && c <= 0xDFFF)
                s.back() = u'x';
        }
        return s;
    };
    for (int round = 0; round < 40; ++round) {
        TMemIniFileW written({}, round % 2 ? TIniEncoding::Utf8 : TIniEncoding::Utf16LE);
        // The alphabet has no two letters that differ only in case, so exact names are the
        // keys of the expectation.
        std::map<std::pair<std::u16string, std::u16string>, std::u16string> expected;
        for (int i = 0; i < 30; ++i) {
            auto section = text(6, true), key = text(10, true), value = text(20, false);
            written.WriteString(section, key, value);
            expected[{section, key}] = value;
        }
        TMemIniFileW read({}, written.Encoding());
        read.LoadFromBytes(written.SaveToBytes());
        for (const auto& [name, value] : expected)
            ASSERT_EQ(read.ReadString(name.first, name.second, u"<missing>"), value);
        EXPECT_EQ(read.SaveToBytes(), written.SaveToBytes());
    }
}

} // namespace
} // namespace zv
