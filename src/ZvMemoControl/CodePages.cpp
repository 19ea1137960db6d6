// The code-page table (Windows number to ICU converter), the charset table and the choice of
// the system ANSI code page from the locale.
#include "ZvMemoControl/CodePages.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <charconv>
#include <cstdlib>

namespace zv {
namespace {

// Ascending by code page. A null ICU name marks a code page ICU lacks.
constexpr TCodePageInfo kCodePages[] = {
    {37, "ibm-37", "IBM037"},
    {437, "ibm-437", "cp437"},
    {500, "ibm-500", "IBM500"},
    {708, "ISO-8859-6", "ASMO-708"},
    {720, "ibm-720", "cp720"},
    {737, "ibm-737", "cp737"},
    {775, "ibm-775", "cp775"},
    {850, "ibm-850", "cp850"},
    {852, "ibm-852", "cp852"},
    {855, "ibm-855", "cp855"},
    {857, "ibm-857", "cp857"},
    {858, "ibm-858", "cp858"},
    {860, "ibm-860", "cp860"},
    {861, "ibm-861", "cp861"},
    {862, "ibm-862", "cp862"},
    {863, "ibm-863", "cp863"},
    {864, "ibm-864", "cp864"},
    {865, "ibm-865", "cp865"},
    {866, "ibm-866", "cp866"},
    {869, "ibm-869", "cp869"},
    {874, "windows-874", "windows-874"},
    {932, "windows-932", "shift_jis"},
    {936, "windows-936", "gb2312"},
    {949, "windows-949", "ks_c_5601-1987"},
    {950, "windows-950", "big5"},
    {1200, "UTF-16LE", "UTF-16LE"},
    {1201, "UTF-16BE", "UTF-16BE"},
    {1250, "windows-1250", "windows-1250"},
    {1251, "windows-1251", "windows-1251"},
    {1252, "windows-1252", "windows-1252"},
    {1253, "windows-1253", "windows-1253"},
    {1254, "windows-1254", "windows-1254"},
    {1255, "windows-1255", "windows-1255"},
    {1256, "windows-1256", "windows-1256"},
    {1257, "windows-1257", "windows-1257"},
    {1258, "windows-1258", "windows-1258"},
    {1361, nullptr, "Johab"},
    {10000, "macintosh", "macintosh"},
    {10007, "x-mac-cyrillic", "x-mac-cyrillic"},
    {12000, "UTF-32LE", "UTF-32LE"},
    {12001, "UTF-32BE", "UTF-32BE"},
    {20127, "US-ASCII", "us-ascii"},
    {20866, "KOI8-R", "koi8-r"},
    {20878, "KOI8-R", "koi8-r"},
    {20932, "EUC-JP", "euc-jp"},
    {21866, "KOI8-U", "koi8-u"},
    {28591, "ISO-8859-1", "iso-8859-1"},
    {28592, "ISO-8859-2", "iso-8859-2"},
    {28593, "ISO-8859-3", "iso-8859-3"},
    {28594, "ISO-8859-4", "iso-8859-4"},
    {28595, "ISO-8859-5", "iso-8859-5"},
    {28596, "ISO-8859-6", "iso-8859-6"},
    {28597, "ISO-8859-7", "iso-8859-7"},
    {28598, "ISO-8859-8", "iso-8859-8"},
    {28599, "ISO-8859-9", "iso-8859-9"},
    {28603, "ISO-8859-13", "iso-8859-13"},
    {28605, "ISO-8859-15", "iso-8859-15"},
    {50220, "ISO-2022-JP", "iso-2022-jp"},
    {50221, "ISO-2022-JP-1", "csISO2022JP"},
    {50222, "ISO-2022-JP-2", "iso-2022-jp"},
    {50225, "ISO-2022-KR", "iso-2022-kr"},
    {50227, "ISO-2022-CN", "x-cp50227"},
    {51932, "EUC-JP", "euc-jp"},
    {51936, "EUC-CN", "EUC-CN"},
    {51949, "EUC-KR", "euc-kr"},
    {52936, "HZ", "hz-gb-2312"},
    {54936, "GB18030", "GB18030"},
    {65000, "UTF-7", "UTF-7"},
    {65001, "UTF-8", "UTF-8"},
};

constexpr TCharsetRow kCharsets[] = {
    {"Auto Detect", "", 50001, 0, "", "AUTO_DETECT"},
    {"US ASCII", "", 0, 0, "", "ANSI_CHARSET"},
    {"US ASCII", "", 0, 0, "us-ascii", "ANSI_CHARSET"},
    {"Western Europe (ISO)", "", 28591, 0, "iso-8859-1", "ANSI_CHARSET"},
    {"Western Europe (Windows)", "", 1252, 0, "windows-1252", "ANSI_CHARSET"},
    {"Latin (3)", "", 28593, 162, "iso-8859-3", "TURKISH_CHARSET"},
    {"Latin (9)", "", 28605, 0, "iso-8859-15", "ANSI_CHARSET"},
    {"Thai", ".th", 874, 222, "iso-8859-11", "ARABIC_CHARSET"},
    {"Japanese (JIS)", ".jp", 50220, 128, "iso-2022-jp", "SHIFTJIS_CHARSET"},
    {"Japanese (EUC)", "", 51932, 128, "euc-jp", "SHIFTJIS_CHARSET"},
    {"Japanese (EUC)", "", 51932, 128, "x-euc-jp", "SHIFTJIS_CHARSET"},
    {"Japanese (Shift-JIS)", "", 932, 128, "shift-jis", "SHIFTJIS_CHARSET"},
    {"Japanese (Shift-JIS)", "", 932, 128, "x-shift-jis", "SHIFTJIS_CHARSET"},
    {"Chinese - Simplified (GB2312)", "", 936, 134, "gb2312", "GB2312_CHARSET"},
    {"Chinese - Simplified (HZ)", "", 52936, 134, "hz-gb-2312", "GB2312_CHARSET"},
    {"Chinese - Traditional (Big5)", ".cn", 950, 136, "big5", "CHINESEBIG5_CHARSET"},
    {"Chinese - Traditional (Big5)", "", 950, 136, "x-big5", "CHINESEBIG5_CHARSET"},
    {"Korean", ".kr", 949, 129, "iso-2022-kr", "HANGEUL_CHARSET"},
    {"Korean", "", 949, 129, "KS_C_5601-1987", "HANGEUL_CHARSET"},
    {"Korean (EUC)", "", 51949, 129, "euc-kr", "HANGEUL_CHARSET"},
    {"Korean (EUC)", "", 51949, 129, "x-euc-kr", "HANGEUL_CHARSET"},
    {"Central European (ISO)", "", 28592, 238, "iso-8859-2", "EASTEUROPE_CHARSET"},
    {"Central European (Windows)", "", 1250, 238, "windows-1250", "EASTEUROPE_CHARSET"},
    {"Russian (KOI8-R)", ".ru", 20878, 204, "koi8-r", "RUSSIAN_CHARSET"},
    {"Russian (KOI8-R)", "", 20878, 204, "x-koi8-r", "RUSSIAN_CHARSET"},
    {"Russian (KOI8)", "", 20866, 204, "koi8", "RUSSIAN_CHARSET"},
    {"Russian (KOI8)", "", 20866, 204, "x-koi8", "RUSSIAN_CHARSET"},
    {"Russian (ISO)", "", 28595, 204, "iso-8859-5", "RUSSIAN_CHARSET"},
    {"Russian (Windows)", "", 1251, 204, "windows-1251", "RUSSIAN_CHARSET"},
    {"Greek (ISO)", "", 28597, 161, "iso-8859-7", "GREEK_CHARSET"},
    {"Greek (Windows)", ".gr", 1253, 161, "windows-1253", "GREEK_CHARSET"},
    {"Turkish (ISO)", ".tr", 28599, 162, "iso-8859-9", "TURKISH_CHARSET"},
    {"Hebrew (Windows)", ".il", 1255, 177, "windows-1255", "HEBREW_CHARSET"},
    {"Hebrew (ISO)", "", 28598, 177, "iso-8859-9", "HEBREW_CHARSET"},
    {"Arabic (ISO)", "", 28596, 178, "iso-8859-6", "ARABIC_CHARSET"},
    {"Baltic (ISO)", "", 28594, 186, "iso-8859-4", "BALTIC_CHARSET"},
    {"Unicode (UTF-8)", "", 65001, 0, "utf-8", "BALTIC_CHARSET"},
};

std::atomic<std::uint32_t> gSystemOverride{0};

bool EqualNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

bool ParseNumber(std::string_view text, std::uint32_t& value) {
    if (text.empty())
        return false;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    return ec == std::errc() && end == text.data() + text.size();
}

} // namespace

std::span<const TCodePageInfo> KnownCodePages() {
    return kCodePages;
}
std::span<const TCharsetRow> CharsetTable() {
    return kCharsets;
}

const TCodePageInfo* FindCodePage(std::uint32_t codePage) {
    auto it =
        std::lower_bound(std::begin(kCodePages), std::end(kCodePages), codePage,
                         [](const TCodePageInfo& e, std::uint32_t cp) { return e.CodePage < cp; });
    return it != std::end(kCodePages) && it->CodePage == codePage ? &*it : nullptr;
}

std::uint32_t EffectiveCodePage(std::uint32_t codePage) {
    if (codePage == 0)
        return SystemCodePage();
    return codePage == cpISOLatin1 ? cpWindowsLatin1 : codePage;
}

bool IsCodePageSupported(std::uint32_t codePage) {
    const TCodePageInfo* info = FindCodePage(EffectiveCodePage(codePage));
    if (!info || !info->IcuName)
        return false;
    UErrorCode status = U_ZERO_ERROR;
    UConverter* cnv = ucnv_open(info->IcuName, &status);
    ucnv_close(cnv);
    return U_SUCCESS(status);
}

bool IsUnicodeCodePage(std::uint32_t codePage) {
    return codePage == cpUTF8 || codePage == cpUTF16LE || codePage == cpUTF16BE ||
           codePage == cpUTF7 || codePage == 12000 || codePage == 12001;
}

std::uint32_t CodePageFromIcuName(std::string_view name) {
    const std::string wanted(name);
    UErrorCode status = U_ZERO_ERROR;
    const char* canonical = ucnv_getCanonicalName(wanted.c_str(), "", &status);
    if (U_FAILURE(status) || !canonical) {
        status = U_ZERO_ERROR;
        canonical = ucnv_getAlias(wanted.c_str(), 0, &status);
    }
    // Prefer the Windows code page of an ISO name: the detector says ISO-8859-1 for 1252 text.
    if (EqualNoCase(name, "ISO-8859-1"))
        return cpWindowsLatin1;
    if (EqualNoCase(name, "Shift_JIS"))
        return 932;
    if (EqualNoCase(name, "Big5"))
        return 950;
    if (EqualNoCase(name, "GB18030"))
        return 936;
    if (EqualNoCase(name, "EUC-KR"))
        return 949;
    for (const auto& e : kCodePages) {
        if (!e.IcuName)
            continue;
        if (EqualNoCase(e.IcuName, name) ||
            (canonical && ucnv_compareNames(e.IcuName, canonical) == 0))
            return e.CodePage;
    }
    return 0;
}

std::string CodePageName(std::uint32_t codePage) {
    if (codePage == cpAutoDetect)
        return "auto-detect";
    if (const TCodePageInfo* info = FindCodePage(codePage))
        return info->Name;
    return "cp" + std::to_string(codePage);
}

bool ParseCodePage(std::string_view text, std::uint32_t& codePage) {
    if (ParseNumber(text, codePage))
        return true;
    if (text.size() > 2 && EqualNoCase(text.substr(0, 2), "cp") &&
        ParseNumber(text.substr(2), codePage))
        return true;
    if (EqualNoCase(text, "utf8") || EqualNoCase(text, "utf-8")) {
        codePage = cpUTF8;
        return true;
    }
    if (EqualNoCase(text, "ansi")) {
        codePage = SystemCodePage();
        return true;
    }
    for (const auto& e : kCodePages)
        if (EqualNoCase(e.Name, text) || (e.IcuName && EqualNoCase(e.IcuName, text))) {
            codePage = e.CodePage;
            return true;
        }
    codePage = CodePageFromIcuName(text);
    return codePage != 0;
}

std::uint32_t AnsiCodePageForLanguage(std::string_view locale) {
    const std::string_view lang = locale.substr(0, locale.find_first_of("_.@"));
    const std::string_view region = locale.size() > lang.size() + 1 && locale[lang.size()] == '_'
                                        ? locale.substr(lang.size() + 1, 2)
                                        : "";
    struct Map {
        const char* lang;
        std::uint32_t cp;
    };
    static constexpr Map kMap[] = {
        {"ja", 932},  {"ko", 949},  {"th", 874},  {"ru", 1251}, {"uk", 1251}, {"bg", 1251},
        {"sr", 1251}, {"pl", 1250}, {"cs", 1250}, {"sk", 1250}, {"hu", 1250}, {"sl", 1250},
        {"hr", 1250}, {"ro", 1250}, {"el", 1253}, {"tr", 1254}, {"he", 1255}, {"ar", 1256},
        {"lt", 1257}, {"lv", 1257}, {"et", 1257}, {"vi", 1258}};
    if (lang == "zh")
        return region == "TW" || region == "HK" ? 950 : 936;
    for (const auto& m : kMap)
        if (lang == m.lang)
            return m.cp;
    return cpWindowsLatin1;
}

std::uint32_t SystemCodePage() {
    if (const std::uint32_t forced = gSystemOverride.load(); forced != 0 && forced != cpUTF8)
        return forced;
    static const std::uint32_t fromLocale = [] {
        for (const char* var : {"LC_ALL", "LC_CTYPE", "LANG"})
            if (const char* value = std::getenv(var); value && *value)
                return AnsiCodePageForLanguage(value);
        return std::uint32_t(cpWindowsLatin1);
    }();
    return fromLocale;
}

void SetSystemCodePageOverride(std::uint32_t codePage) {
    gSystemOverride.store(codePage);
}

std::uint32_t CodePageFromDeclaredName(std::string_view name) {
    if (EqualNoCase(name, "us-ascii"))
        return 0;
    if (name.size() >= 8 && EqualNoCase(name.substr(0, 8), "windows-")) {
        std::uint32_t cp = 0;
        return ParseNumber(name.substr(8), cp) ? cp : cpWindowsLatin1;
    }
    for (const auto& row : kCharsets)
        if (*row.MimeName && EqualNoCase(row.MimeName, name))
            return row.CodePage;
    return 0;
}

} // namespace zv
