// Classifying a file before it is read: encrypted headers, binary extensions, the UTF-16
// test (our stand-in for the platform's text test, same flag meanings), the UTF-8 test,
// declared encodings in XML and HTML, and charset detection over ICU's detector.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// Flags of the UTF-16 text test, with the platform's meanings and values.
enum TTextUnicodeFlag : std::uint32_t {
    tuAscii16 = 0x1,
    tuStatistics = 0x2,
    tuControls = 0x4,
    tuSignature = 0x8,
    tuReverseAscii16 = 0x10,
    tuReverseStatistics = 0x20,
    tuReverseControls = 0x40,
    tuReverseSignature = 0x80,
    tuOddLength = 0x200,
    tuNullBytes = 0x1000,
};
constexpr std::uint32_t kFileTypeTextTestMask = 0x10DD;

// Tests whether `block` looks like UTF-16. `flags` receives those flags of `mask` that hold,
// plus tuOddLength for an odd-sized block. True when some Unicode flag holds and the length
// is even (a signature passes whatever the length).
bool ZvIsTextUnicode(std::string_view block, std::uint32_t mask, std::uint32_t& flags);
// True when two successive zero bytes stand before the block's last byte.
bool HasDoubleZero(std::string_view block);

// The one-shot opening request of a document; same order as the document layer's TOpenAs.
enum TFileOpenAs : std::uint8_t {
    foNone,
    foASCII,
    foAnsi,
    foUTF8,
    foUnicode,
    foUnicodeBE,
    foBinary,
    foHex
};

struct TFileTypeOptions {
    std::string OpenAsBinary; // extensions, each followed by a blank; empty: the default list
    bool DetectUTF8 = true;
    bool DetectAll = false;
    bool AllowIllegalCtrlChars = true;
};

struct TFileType {
    int Kind = 0;                // 0 text; 1, 2, 4 encrypted forms; 3 binary
    TFileOpenAs OpenAs = foNone; // what the file asks to be opened as
};

// The default of the "OpenAsBinary" setting.
const std::string& DefaultOpenAsBinary();
// Classifies the first 4096 bytes of a file (`head`) named `fileName`; `openAs` is the
// request in force (foASCII skips the binary and UTF-16 tests).
TFileType ClassifyFileHead(std::string_view head, const std::string& fileName, TFileOpenAs openAs,
                           const TFileTypeOptions& options);
// Reads up to 4096 bytes of the file and classifies them. A missing file gives kind 0.
TFileType IsFileType(const std::string& fileName, TFileOpenAs openAs = foNone,
                     const TFileTypeOptions& options = {});
// The code page an opening request stands for, or 50001 (detect) for foNone.
std::uint32_t CodePageForOpenAs(TFileOpenAs openAs, std::uint32_t current);

// Result of the UTF-8 test.
enum TUtf8Verdict : std::uint8_t { u8No, u8Yes, u8AsciiOnly };
// The UTF-8 test on at most the first 50000 bytes of `sample`. With `sampleCut` (the file
// goes on after the sample), a sequence cut by the sample's end does not count against it.
TUtf8Verdict TestUTF8(std::string_view sample, bool sampleCut);
// Cheaper test over the whole file in blocks of 128 bytes: good pairs not below bad ones.
bool FileMayBeUTF8(const std::string& fileName);

// The encoding a file declares for itself: for ".xml" the encoding of "<?xml", for ".htm",
// ".html", ".shtml" the last <meta ... charset=>. Returns -1 when none counts; a 1200/1201
// that differs from `passed`, or any declaration while `passed` is 1200/1201, gives `passed`.
std::int32_t DeclaredCodePage(const std::string& fileName, std::string_view text,
                              std::uint32_t passed, bool checkXML = true, bool checkHTML = true);

struct TCharsetCandidate {
    std::uint32_t CodePage;
    std::string Name;
    int Percent;
    int Confidence; // -1 when the detector gave none
};
// Ranked candidates for the first 8192 bytes (up to 8). US-ASCII counts as `defaultCp`.
std::vector<TCharsetCandidate> DetectCharsets(std::string_view sample, std::uint32_t defaultCp);
// "name|percent#confidence" entries, the list handed to the OnDetectCP event.
std::vector<std::string> CandidateStrings(const std::vector<TCharsetCandidate>& list);
// The application's rule: true when the first candidate is clear enough to take without
// asking (confidence >= 75, the second's below 1, percent above 50) or there is one only.
bool DetectionIsClear(const std::vector<TCharsetCandidate>& list);

} // namespace zv
