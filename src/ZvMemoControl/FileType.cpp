// File classification, the UTF-8 and UTF-16 tests, declared encodings, charset detection.
#include "ZvMemoControl/FileType.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Streams.h"

#include <unicode/ucsdet.h>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace zv {
namespace {

std::string Lower(std::string_view s) {
    std::string out(s);
    for (auto& c : out)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::string LowerExtension(const std::string& fileName) {
    const auto slash = fileName.find_last_of('/');
    const auto dot = fileName.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return {};
    return Lower(std::string_view(fileName).substr(dot));
}

bool HasControlByte(std::string_view block) {
    return std::any_of(block.begin(), block.end(), [](char ch) {
        const auto b = static_cast<unsigned char>(ch);
        return b < 32 && b != 13 && b != 10 && b != 9;
    });
}

// The encrypted-document header: 01 01 "Zv Zevrit Encrypted" 01 02 <variant> 06 01 01.
int EncryptedKind(std::string_view head) {
    static const std::string prefix =
        std::string("\x01\x01", 2) + "Zv Zevrit Encrypted" + std::string("\x01\x02", 2);
    if (head.size() < 27 || head.substr(0, prefix.size()) != prefix ||
        head.substr(24, 3) != std::string_view("\x06\x01\x01", 3))
        return 0;
    switch (head[23]) {
    case 0x07:
        return 2;
    case 0x06:
        return 1;
    case 0x05:
        return 4;
    default:
        return 0;
    }
}

} // namespace

bool HasDoubleZero(std::string_view block) {
    for (std::size_t i = 0; i + 2 < block.size(); ++i)
        if (block[i] == 0 && block[i + 1] == 0)
            return true;
    return false;
}

bool ZvIsTextUnicode(std::string_view block, std::uint32_t mask, std::uint32_t& flags) {
    flags = 0;
    const std::size_t n = block.size();
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(block[i]); };
    if (n % 2)
        flags |= tuOddLength;
    if (n >= 2 && byte(0) == 0xFF && byte(1) == 0xFE)
        flags |= tuSignature;
    if (n >= 2 && byte(0) == 0xFE && byte(1) == 0xFF)
        flags |= tuReverseSignature;
    if (block.find('\0') != std::string_view::npos)
        flags |= tuNullBytes;
    const std::size_t words = n / 2;
    bool leAscii = words > 0, beAscii = words > 0;
    std::size_t leControls = 0, beControls = 0, leZeroHigh = 0, beZeroHigh = 0;
    for (std::size_t w = 0; w < words; ++w) {
        const unsigned lo = byte(2 * w), hi = byte(2 * w + 1);
        leAscii = leAscii && hi == 0 && lo != 0 && lo < 128;
        beAscii = beAscii && lo == 0 && hi != 0 && hi < 128;
        const auto control = [](unsigned v) {
            return v == 0x0D || v == 0x0A || v == 0x20 || v == 0x09;
        };
        leControls += hi == 0 && control(lo);
        beControls += lo == 0 && control(hi);
        leZeroHigh += hi == 0 && lo != 0;
        beZeroHigh += lo == 0 && hi != 0;
    }
    if (leAscii)
        flags |= tuAscii16;
    if (beAscii)
        flags |= tuReverseAscii16;
    if (leControls)
        flags |= tuControls;
    if (beControls)
        flags |= tuReverseControls;
    // Statistics: most words look like zero-extended ASCII in one byte order only.
    if (words >= 2 && leZeroHigh * 2 > words && beZeroHigh * 4 < words)
        flags |= tuStatistics;
    if (words >= 2 && beZeroHigh * 2 > words && leZeroHigh * 4 < words)
        flags |= tuReverseStatistics;
    flags &= (mask | tuOddLength);
    constexpr std::uint32_t kUnicode = 0xFF;
    if (flags & (tuSignature | tuReverseSignature))
        return true;
    return (flags & kUnicode) != 0 && !(flags & tuOddLength);
}

const std::string& DefaultOpenAsBinary() {
    static const std::string list =
        ".7z .ace .alz .arc .arj .bzip2 .cab .com .cpl .elf .eea .obj .exp .exe .msi .dll .ocx "
        ".sys .vxd .bmp .gz .sit .gzip .jar .lha .lzo .lzma .lzx .pak .rar .tar .tgz .gz .tib "
        ".zip .bpl .class .dcu .jar .vbx .ocx .chm .otf .ttf .bin .chm "
        ".264 .3g2 .3gp .asf .asx .h264 .m2t .mt2s .m4v .mod .mts .mpg .ogv .swf .vob .wmv .m4a "
        ".m4b .m4p .midi .ogg .pmc .uax .wav .wma .3ga .aac .aiff .asf .cda .flac .emf .ico "
        ".icon .jpeg .jpg .png .gif .pdf .tif .tiff .svg .swf .wmf .bmp .avi .mpeg .mp2 .mp4 "
        ".mp3 .wav .mkv .fla .flv .psd .img .doc .rtf .xls .swf ";
    return list;
}

TFileType ClassifyFileHead(std::string_view head, const std::string& fileName, TFileOpenAs openAs,
                           const TFileTypeOptions& options) {
    TFileType result;
    result.OpenAs = openAs;
    result.Kind = EncryptedKind(head);
    if (result.Kind != 0)
        return result;
    const std::string ext = LowerExtension(fileName);
    if (ext == ".nfo" || ext == ".diz")
        result.OpenAs = foASCII;
    if (result.OpenAs == foASCII)
        return result;
    const std::string& list =
        options.OpenAsBinary.empty() ? DefaultOpenAsBinary() : options.OpenAsBinary;
    if (!ext.empty() && Lower(list).find(ext + " ") != std::string::npos && HasControlByte(head)) {
        result.OpenAs = foBinary;
        return result;
    }
    if (!(options.DetectUTF8 || options.DetectAll) || head.empty())
        return result;
    std::uint32_t flags = 0;
    const bool passes = ZvIsTextUnicode(head, kFileTypeTextTestMask, flags);
    const bool doubleZero = HasDoubleZero(head);
    if (passes && (flags & tuOddLength)) {
        result.OpenAs = foBinary;
        result.Kind = 3;
    } else if (flags & (tuAscii16 | tuControls | tuSignature)) {
        if ((flags & tuSignature) || !doubleZero)
            result.OpenAs = foUnicode;
        else if (!options.AllowIllegalCtrlChars) {
            result.OpenAs = foBinary;
            result.Kind = 3;
        }
    } else if (flags & (tuReverseAscii16 | tuReverseControls | tuReverseSignature)) {
        if ((flags & tuReverseSignature) || !doubleZero)
            result.OpenAs = foUnicodeBE;
        else if (!options.AllowIllegalCtrlChars) {
            result.OpenAs = foBinary;
            result.Kind = 3;
        }
    }
    return result;
}

TFileType IsFileType(const std::string& fileName, TFileOpenAs openAs,
                     const TFileTypeOptions& options) {
    TZvFileInStream in(fileName); // never waits on a pipe: such a file reads as empty here
    std::string head(4096, '\0');
    head.resize(in.Ok() ? in.Read(head.data(), head.size()) : 0);
    return ClassifyFileHead(head, fileName, openAs, options);
}

std::uint32_t CodePageForOpenAs(TFileOpenAs openAs, std::uint32_t current) {
    switch (openAs) {
    case foASCII:
        return cpOEM;
    case foAnsi:
        return SystemCodePage();
    case foUTF8:
        return cpUTF8;
    case foUnicode:
        return cpUTF16LE;
    case foUnicodeBE:
        return cpUTF16BE;
    case foBinary:
    case foHex:
        return current;
    default:
        return cpAutoDetect;
    }
}

TUtf8Verdict TestUTF8(std::string_view sample, bool sampleCut) {
    if (sample.size() > 50000) {
        sample = sample.substr(0, 50000);
        sampleCut = true;
    }
    if (sample.size() < 2)
        return u8No;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(sample[i]); };
    std::size_t good = 0, bad = 0;
    bool high = false;
    for (std::size_t i = 1; i < sample.size(); ++i) {
        high |= byte(i) >= 128;
        if ((byte(i) & 0xC0) == 0x80) {
            if (byte(i - 1) >= 192)
                ++good;
            else if (byte(i - 1) < 128)
                ++bad;
        }
    }
    if (good == bad && !high)
        return u8AsciiOnly;
    if (good <= bad)
        return u8No;
    for (std::size_t i = 0; i < sample.size();) {
        const unsigned b = byte(i);
        int follow = 0;
        if ((b & 0xC0) == 0x80)
            return u8No;
        if ((b & 0xE0) == 0xC0)
            follow = 1;
        else if ((b & 0xF0) == 0xE0)
            follow = 2;
        else if ((b & 0xF8) == 0xF0)
            follow = 3;
        else if ((b & 0xFC) == 0xF8)
            follow = 4;
        else if ((b & 0xFE) == 0xFC)
            follow = 5;
        ++i;
        for (int k = 0; k < follow; ++k, ++i) {
            if (i >= sample.size())
                return sampleCut ? u8Yes : u8No;
            if ((byte(i) & 0xC0) != 0x80)
                return u8No;
        }
    }
    return u8Yes;
}

bool FileMayBeUTF8(const std::string& fileName) {
    TZvFileInStream in(fileName);
    char block[128];
    std::size_t good = 0, bad = 0;
    for (std::size_t n; in.Ok() && (n = in.Read(block, sizeof block)) > 0;) {
        for (std::size_t i = 1; i < n; ++i) {
            const auto b = static_cast<unsigned char>(block[i]);
            const auto prev = static_cast<unsigned char>(block[i - 1]);
            if ((b & 0xC0) == 0x80) {
                good += prev >= 192;
                bad += prev < 128;
            }
        }
        if (n < sizeof block)
            break;
    }
    return good >= bad;
}

namespace {

std::int32_t ApplyUnicodeRule(std::uint32_t declared, std::uint32_t passed) {
    if (declared == 0)
        return -1;
    const bool passedWide = passed == cpUTF16LE || passed == cpUTF16BE;
    if (passedWide || ((declared == cpUTF16LE || declared == cpUTF16BE) && declared != passed))
        return static_cast<std::int32_t>(passed);
    return static_cast<std::int32_t>(declared);
}

std::int32_t XmlDeclared(const std::string& lower, std::uint32_t passed) {
    if (lower.find("?xml") == std::string::npos)
        return -1;
    const auto at = lower.find("encoding=");
    if (at == std::string::npos)
        return -1;
    const auto open = lower.find('"', at);
    const auto close = open == std::string::npos ? open : lower.find('"', open + 1);
    if (close == std::string::npos)
        return -1;
    return ApplyUnicodeRule(CodePageFromDeclaredName(lower.substr(open + 1, close - open - 1)),
                            passed);
}

std::int32_t HtmlDeclared(const std::string& lower, std::uint32_t passed) {
    const auto headEnd = lower.find("</head");
    const auto at =
        lower.rfind("charset=", headEnd == std::string::npos ? std::string::npos : headEnd);
    if (at == std::string::npos)
        return -1;
    const auto lt = lower.rfind('<', at);
    if (lt == std::string::npos || lower.compare(lt + 1, 4, "meta") != 0)
        return -1;
    std::size_t start = at + 8;
    if (start < lower.size() && (lower[start] == '"' || lower[start] == '\''))
        ++start; // <meta charset="utf-8">
    std::size_t end = start;
    while (end < lower.size() && !std::strchr(" \"'>;/\t\r\n", lower[end]))
        ++end;
    return ApplyUnicodeRule(CodePageFromDeclaredName(lower.substr(start, end - start)), passed);
}

} // namespace

std::int32_t DeclaredCodePage(const std::string& fileName, std::string_view text,
                              std::uint32_t passed, bool checkXML, bool checkHTML) {
    const std::string ext = LowerExtension(fileName);
    const std::string lower = Lower(text.substr(0, std::min<std::size_t>(text.size(), 65536)));
    if (ext == ".xml" && checkXML)
        return XmlDeclared(lower, passed);
    if ((ext == ".shtml" || ext == ".htm" || ext == ".html") && checkHTML)
        return HtmlDeclared(lower, passed);
    return -1;
}

std::vector<TCharsetCandidate> DetectCharsets(std::string_view sample, std::uint32_t defaultCp) {
    std::vector<TCharsetCandidate> out;
    sample = sample.substr(0, std::min<std::size_t>(sample.size(), 8192));
    UErrorCode status = U_ZERO_ERROR;
    UCharsetDetector* detector = ucsdet_open(&status);
    if (U_FAILURE(status))
        return out;
    ucsdet_setText(detector, sample.data(), static_cast<int32_t>(sample.size()), &status);
    int32_t found = 0;
    const UCharsetMatch** matches = ucsdet_detectAll(detector, &found, &status);
    for (int32_t i = 0; U_SUCCESS(status) && i < found && out.size() < 8; ++i) {
        UErrorCode s = U_ZERO_ERROR;
        const char* name = ucsdet_getName(matches[i], &s);
        const int confidence = ucsdet_getConfidence(matches[i], &s);
        if (U_FAILURE(s) || !name)
            continue;
        std::uint32_t cp = CodePageFromIcuName(name);
        if (cp == cpUSASCII)
            cp = defaultCp;
        if (cp == 0 ||
            std::any_of(out.begin(), out.end(), [&](auto& c) { return c.CodePage == cp; }))
            continue;
        out.push_back({cp, CodePageName(cp), confidence, confidence > 0 ? confidence : -1});
    }
    ucsdet_close(detector);
    return out;
}

std::vector<std::string> CandidateStrings(const std::vector<TCharsetCandidate>& list) {
    std::vector<std::string> out;
    for (const auto& c : list)
        out.push_back(c.Name + "|" + std::to_string(c.Percent) + "#" +
                      std::to_string(c.Confidence));
    return out;
}

bool DetectionIsClear(const std::vector<TCharsetCandidate>& list) {
    if (list.size() < 2)
        return true;
    return list[0].Confidence >= 75 && list[1].Confidence < 1 && list[0].Percent > 50;
}

} // namespace zv
