// Code pages: the Windows numbers the data formats use, the ICU converter behind each, the
// charset table shown to users, and the system's "ANSI" code page on this machine.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zv {

// Code page numbers with a meaning of their own.
enum : std::uint32_t {
    cpHexView = 0,
    cpOEM = 437,
    cpUTF16LE = 1200,
    cpUTF16BE = 1201,
    cpWindowsLatin1 = 1252,
    cpUSASCII = 20127,
    cpISOLatin1 = 28591,
    cpAutoDetect = 50001,
    cpUTF7 = 65000,
    cpUTF8 = 65001,
};

struct TCodePageInfo {
    std::uint32_t CodePage;
    const char* IcuName; // nullptr: this system has no converter for it
    const char* Name;    // for messages and `zvtool info`
};

// Every code page the codec knows, in ascending number.
std::span<const TCodePageInfo> KnownCodePages();
// The entry of `codePage`, or nullptr when the codec does not know it.
const TCodePageInfo* FindCodePage(std::uint32_t codePage);
// The code page the converters really use: 28591 reads and writes as 1252, 0 is ANSI.
std::uint32_t EffectiveCodePage(std::uint32_t codePage);
// True when a converter for the code page can be opened here.
bool IsCodePageSupported(std::uint32_t codePage);
// True for the forms of Unicode (UTF-7, UTF-8, UTF-16, UTF-32), which hold any character.
bool IsUnicodeCodePage(std::uint32_t codePage);
// The code page of an ICU converter or charset name (as the charset detector gives), or 0.
std::uint32_t CodePageFromIcuName(std::string_view name);
// A short name for people: "UTF-8", "windows-1251", "cp437"...
std::string CodePageName(std::uint32_t codePage);
// Parses "1252", "cp1252", "utf-8", "windows-1251", "shift_jis" and other ICU names; 0 when
// nothing fits. Accepts 0 itself only as "0".
bool ParseCodePage(std::string_view text, std::uint32_t& codePage);

// The system "ANSI" code page: 1252 unless the locale's language says otherwise (LC_ALL,
// LC_CTYPE, LANG); never 65001. A non-zero override (the setting) wins.
std::uint32_t SystemCodePage();
void SetSystemCodePageOverride(std::uint32_t codePage);
std::uint32_t AnsiCodePageForLanguage(std::string_view localeName);

// One row of the charset table the program shows and consults (display name, domain, code
// page, charset number, MIME name, charset constant); its odd cells are kept on purpose.
struct TCharsetRow {
    const char* DisplayName;
    const char* Domain;
    std::uint32_t CodePage;
    std::uint8_t Charset;
    const char* MimeName;
    const char* CharsetConstant;
};
std::span<const TCharsetRow> CharsetTable();

// The code page a declared encoding name stands for: "us-ascii" 0, "windows-N" N (not a
// number: 1252), else the MIME column of the charset table without regard to case, else 0.
std::uint32_t CodePageFromDeclaredName(std::string_view name);

} // namespace zv
