// The file classifier's decision table, the UTF-8 test, declared encodings and
// the choice of code page from the locale.
#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/FileType.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

std::string Utf16Le(std::u16string_view s) {
    return UnicodeToBytes(cpUTF16LE, s);
}
std::string Utf16Be(std::u16string_view s) {
    return UnicodeToBytes(cpUTF16BE, s);
}

std::string Encrypted(char variant) {
    return std::string("\x01\x01", 2) + "Zv Zevrit Encrypted" + std::string("\x01\x02", 2) +
           variant + std::string("\x06\x01\x01", 3) + "payload";
}

struct TRow {
    const char* Why;
    std::string Head;
    std::string Name;
    TFileTypeOptions Options;
    int Kind;
    TFileOpenAs OpenAs;
};

TEST(Classifier, DecisionTable) {
    TFileTypeOptions strict;
    strict.AllowIllegalCtrlChars = false;
    TFileTypeOptions noDetect;
    noDetect.DetectUTF8 = false;
    const std::string zeros = std::string("ab\0\0cd\0\0ef", 10);
    const TRow rows[] = {
        {"encrypted, current form", Encrypted('\x07'), "a.txt", {}, 2, foNone},
        {"encrypted, older form", Encrypted('\x06'), "a.txt", {}, 1, foNone},
        {"encrypted, line form", Encrypted('\x05'), "a.txt", {}, 4, foNone},
        {"unknown variant is text", Encrypted('\x09'), "a.txt", {}, 0, foNone},
        {"nfo is OEM", "text", "readme.NFO", {}, 0, foASCII},
        {"diz is OEM even with UTF-16 look", Utf16Le(u"\uFEFFhi"), "file_id.diz", {}, 0, foASCII},
        {"binary extension with control bytes", "MZ\x90\x01\x02", "a.exe", {}, 0, foBinary},
        {"binary extension, plain text", "just text\r\n", "a.exe", {}, 0, foNone},
        {"unlisted extension keeps text", "MZ\x90\x01\x02", "a.xyz", {}, 0, foNone},
        {"UTF-16LE with BOM", Utf16Le(u"\uFEFFhello"), "a.txt", {}, 0, foUnicode},
        {"UTF-16LE ASCII look", Utf16Le(u"hello world"), "a.txt", {}, 0, foUnicode},
        {"UTF-16BE with BOM", Utf16Be(u"\uFEFFhello"), "a.txt", {}, 0, foUnicodeBE},
        {"UTF-16BE ASCII look", Utf16Be(u"hello world"), "a.txt", {}, 0, foUnicodeBE},
        {"UTF-16LE by its spaces alone", Utf16Le(u"\u4E2D \u6587"), "a.txt", {}, 0, foUnicode},
        {"UTF-16BE by its spaces alone", Utf16Be(u"\u4E2D \u6587"), "a.txt", {}, 0, foUnicodeBE},
        {"odd length with signature is binary",
         Utf16Le(u"\uFEFFhi") + "x",
         "a.txt",
         {},
         3,
         foBinary},
        {"double zeros, allowed", zeros + std::string("\0 \0", 3), "a.txt", {}, 0, foNone},
        {"double zeros, refused", std::string("a\0\0\0 \0b\0", 8), "a.txt", strict, 3, foBinary},
        {"plain ASCII", "hello world\r\n", "a.txt", {}, 0, foNone},
        {"detection off", Utf16Le(u"hello"), "a.txt", noDetect, 0, foNone},
        {"empty", "", "a.txt", {}, 0, foNone},
    };
    for (const auto& row : rows) {
        const TFileType type = ClassifyFileHead(row.Head, row.Name, foNone, row.Options);
        EXPECT_EQ(type.Kind, row.Kind) << row.Why;
        EXPECT_EQ(type.OpenAs, row.OpenAs) << row.Why;
    }
    // The double-zero test ignores the block's last byte.
    EXPECT_FALSE(HasDoubleZero(std::string("ab\0", 3) + std::string("\0", 1)));
    EXPECT_TRUE(HasDoubleZero(std::string("a\0\0b", 4)));
}

TEST(Classifier, Utf8Test) {
    EXPECT_EQ(TestUTF8("a", false), u8No);
    EXPECT_EQ(TestUTF8("plain ascii", false), u8AsciiOnly);
    EXPECT_EQ(TestUTF8("gr\xC3\xBC\xC3\x9F", false), u8Yes);
    EXPECT_EQ(TestUTF8("Latin-1 \xFC text \xDF", false), u8No);
    EXPECT_EQ(TestUTF8("\xC3\xBC\x80\x80\x80", false), u8No);
    // A sequence cut by the end: against the file at its real end, not at a sample's end.
    const std::string cut = "\xE4\xB8\xAD\xE6\x96";
    EXPECT_EQ(TestUTF8(cut, false), u8No);
    EXPECT_EQ(TestUTF8(cut, true), u8Yes);
    // A 50000-byte sample of Cyrillic UTF-8 cut in the middle of a character passes.
    std::string cyrillic;
    while (cyrillic.size() < 50001)
        cyrillic += "\xD0\x96";
    EXPECT_EQ(TestUTF8(std::string_view(cyrillic).substr(0, 50001), false), u8Yes);
}

TEST(Classifier, DeclaredEncodings) {
    struct TCase {
        const char* Why;
        const char* Name;
        const char* Head;
        std::uint32_t Passed;
        int Expected;
    };
    const TCase cases[] = {
        {"XML", "a.xml", "<?xml version=\"1.0\" encoding=\"windows-1251\"?>", 50001, 1251},
        {"any case", "a.XML", "<?XML version=\"1.0\" ENCODING=\"Shift-JIS\"?>", 50001, 932},
        {"only in the declaration", "a.xml", "<root encoding=\"koi8-r\"/>", 50001, -1},
        {"the last charset= before </head counts", "a.html",
         "<html><head><meta charset=utf-8><meta http-equiv=x "
         "content=\"text/html; charset=iso-8859-2\"></head>",
         50001, 28592},
        {"quoted charset", "a.htm", "<head><meta charset=\"big5\"></head>", 50001, 950},
        {"unknown windows page", "a.html", "<head><meta charset=windows-abc></head>", 50001, 1252},
        {"passed UTF-16 wins", "a.xml", "<?xml encoding=\"utf-8\"?>", 1200, 1200},
        {"not an XML or HTML name", "a.txt", "<?xml encoding=\"utf-8\"?>", 50001, -1},
        {"ASCII declares nothing", "a.xml", "<?xml encoding=\"us-ascii\"?>", 50001, -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(DeclaredCodePage(c.Name, c.Head, c.Passed), c.Expected) << c.Why;
}

TEST(Classifier, AnsiCodePageFromLocale) {
    // The language picks the page; only Chinese also looks at the region.
    EXPECT_EQ(AnsiCodePageForLanguage("ru_RU.UTF-8"), 1251u);
    EXPECT_EQ(AnsiCodePageForLanguage("zh_CN.UTF-8"), 936u);
    EXPECT_EQ(AnsiCodePageForLanguage("zh_TW.UTF-8"), 950u);
    EXPECT_EQ(AnsiCodePageForLanguage("C.UTF-8"), 1252u);
    SetSystemCodePageOverride(1251);
    EXPECT_EQ(SystemCodePage(), 1251u);
    SetSystemCodePageOverride(65001); // never UTF-8
    EXPECT_NE(SystemCodePage(), 65001u);
    SetSystemCodePageOverride(0);
}

TEST(Classifier, CharsetDetectionRanksTheRightPage) {
    const std::u16string russian =
        u"\u042D\u0442\u043E \u043F\u0440\u043E\u0441\u0442\u043E\u0439 \u0442\u0435\u043A"
        u"\u0441\u0442 \u043D\u0430 \u0440\u0443\u0441\u0441\u043A\u043E\u043C \u044F\u0437"
        u"\u044B\u043A\u0435, \u0447\u0442\u043E\u0431\u044B \u043F\u0440\u043E\u0432\u0435"
        u"\u0440\u0438\u0442\u044C \u043E\u043F\u0440\u0435\u0434\u0435\u043B\u0435\u043D"
        u"\u0438\u0435 \u043A\u043E\u0434\u0438\u0440\u043E\u0432\u043A\u0438. ";
    std::u16string text;
    for (int i = 0; i < 20; ++i)
        text += russian;
    const auto list = DetectCharsets(UnicodeToBytes(1251, text), 1252);
    ASSERT_FALSE(list.empty());
    EXPECT_EQ(list.front().CodePage, 1251u);
    const auto strings = CandidateStrings(list);
    EXPECT_NE(strings.front().find('|'), std::string::npos);
    EXPECT_NE(strings.front().find('#'), std::string::npos);
}

TEST(Classifier, CodePageNames) {
    std::uint32_t cp = 0;
    // Numbers, UTF-8 and table names are used by the tool's oracle tests.
    EXPECT_TRUE(ParseCodePage("cp1252", cp));
    EXPECT_EQ(cp, 1252u);
    EXPECT_TRUE(ParseCodePage("shift_jis", cp)); // an ICU alias
    EXPECT_EQ(cp, 932u);
    EXPECT_FALSE(ParseCodePage("no-such-encoding", cp));
    EXPECT_EQ(CodePageFromDeclaredName("x-euc-jp"), 51932u);
    EXPECT_EQ(CodePageFromDeclaredName("iso-8859-9"), 28599u); // first of the table's rows
    EXPECT_FALSE(IsCodePageSupported(1361));
    EXPECT_TRUE(IsCodePageSupported(28591));
}

} // namespace
} // namespace zv
