// Reading text into rows: choosing the encoding, decoding in 500000-byte slices with one
// converter, splitting into rows with their line-end bits, and the line-end verdict.
#include "ZvMemoControl/ZvMemoStrings.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/FileType.h"
#include "ZvMemoControl/RowSplitter.h"
#include "ZvMemoControl/Streams.h"
#include "common/MemoryBudget.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <system_error>

namespace zv {
namespace {

constexpr std::size_t kSliceBytes = 500000;
// Positions are 32-bit: a larger file cannot be addressed.
constexpr std::int64_t kMaxFileBytes = std::numeric_limits<std::int32_t>::max();

bool StartsWith(std::string_view s, std::string_view prefix) {
    return s.size() >= prefix.size() && s.substr(0, prefix.size()) == prefix;
}

bool QuoteAwareExtension(const std::string& fileName) {
    const auto dot = fileName.find_last_of('.');
    if (dot == std::string::npos)
        return false;
    std::string ext = fileName.substr(dot);
    for (auto& c : ext)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext == ".csv" || ext == ".psv" || ext == ".tsv";
}

} // namespace

// ---- Loading ----------------------------------------------------------------------------

bool TZvMemoStrings::LoadFromFile(const std::string& fileName, bool /*clearUndo*/) {
    FLastError.clear();
    TZvFileInStream in(fileName);
    if (!in.Ok()) {
        FLastError = in.Error();
        return false;
    }
    if (in.Size() > kMaxFileBytes) {
        FLastError = "The file is too large: files above 2 GB (2147483647 bytes) cannot be opened.";
        return false;
    }
    FCurrentStreamPos = 0;
    FFileName = fileName;
    Memo().FFilePath = fileName;
    FSaveUnicode = FCodePage == cpUTF16LE;
    FSaveBigUnicode = false;
    FSaveUTF = FCodePage == cpUTF8;
    FSaveCodePage = FCodePage != cpAutoDetect;
    Memo().FOpeningFile = true;
    bool ok = false;
    try {
        ok = LoadFromStream(in);
    } catch (const std::system_error& e) {
        // A read that fails part way (a folder, a vanished disk) is reported, never thrown.
        FLastError = "Cannot read the file: " + e.code().message();
    } catch (const std::bad_alloc&) {
        // The projection missed (memory taken by others meanwhile): the half-read rows go.
        ClearQuick();
        FLastError = "There is not enough memory to open the file.";
    }
    Memo().FOpeningFile = false;
    if (ok && Memo().FBinaryMode)
        for (std::size_t i = 0; i < FCount; ++i)
            Item(i)->FObject.SetWrapped(false);
    return ok;
}

bool TZvMemoStrings::LoadFromBytes(std::string_view bytes) {
    TZvMemoryInStream in(bytes);
    return LoadFromStream(in);
}

std::uint32_t TZvMemoStrings::ChooseCodePage(std::string_view sample) {
    const TZvMemoState& memo = Memo();
    const std::uint32_t fallback = memo.FDefaultEncoding > 0
                                       ? static_cast<std::uint32_t>(memo.FDefaultEncoding)
                                       : SystemCodePage();
    if (!(FCodePage == cpAutoDetect && (memo.FDetectUTF8 || memo.FDetectAll)))
        return fallback;
    const bool cut = static_cast<std::int64_t>(sample.size()) < FSize;
    const TUtf8Verdict utf8 = TestUTF8(sample, cut);
    // Bytes proven not to be UTF-8 are not read as UTF-8 because that is the default for
    // new text: the system's ANSI code page reads each of them as a character.
    const std::uint32_t base = utf8 == u8No && fallback == cpUTF8 ? SystemCodePage() : fallback;
    std::uint32_t cp = base;
    std::vector<TCharsetCandidate> candidates;
    if (utf8 != u8Yes && memo.FDetectAll) {
        candidates = DetectCharsets(sample, base);
        cp = candidates.empty() ? base : candidates.front().CodePage;
    }
    if (cp == cpUTF8 || utf8 == u8Yes)
        return cpUTF8;
    const auto declared = [&](std::uint32_t otherwise) {
        if (memo.FCodePageXML < 0)
            return otherwise;
        const auto xml = static_cast<std::uint32_t>(memo.FCodePageXML);
        if (xml == cpUTF8 && utf8 != u8AsciiOnly)
            return base;
        return xml == 0 ? otherwise : xml;
    };
    if (memo.FDetectAll) {
        cp = declared(cp);
        if (OnDetectCP)
            OnDetectCP(*this, cp, CandidateStrings(candidates), FFileName);
        return cp == cpAutoDetect ? base : cp;
    }
    return declared(base);
}

bool TZvMemoStrings::LoadFromStream(TZvInStream& stream) {
    FInString = false;
    FLastError.clear();
    FLossy = false;
    FInvalidBytes = 0;
    FTrailingByte = -1;
    const std::int64_t start = stream.Position();
    const std::int64_t size = stream.Size() - start;
    if (size < 0)
        throw std::runtime_error("Invalid AnsiString header read from the stream");
    if (size > kMaxFileBytes) {
        FLastError = "The text is too large: above 2 GB (2147483647 bytes) it cannot be opened.";
        return false;
    }
    TZvMemoState& memo = Memo();
    FSize = size;
    // The first slice decides the encoding, before anything is cleared: a refusal (no
    // converter) leaves the store as it was.
    std::string head(static_cast<std::size_t>(std::min<std::int64_t>(size, kSliceBytes)), '\0');
    head.resize(stream.Read(head.data(), head.size()));
    stream.Seek(start);
    std::size_t bom = 0;
    bool ansiBreaks = false;
    const std::uint32_t cp =
        size == 0 || memo.FBinaryMode ? FCodePage : ChooseEncoding(head, bom, ansiBreaks);
    if (size > 0 && !memo.FBinaryMode && !IsCodePageSupported(cp)) {
        FLastError = TCodePageError(cp).what();
        return false;
    }
    BeginUpdate();
    ClearQuick();
    FLineEndCounts = {};
    memo.FForceWrap = false;
    memo.FHasTabs = false;
    memo.FMaxLength = 80;
    if (size == 0) {
        FCodePage = memo.FDefaultEncoding > 0 ? static_cast<std::uint32_t>(memo.FDefaultEncoding)
                                              : SystemCodePage();
    } else if (memo.FBinaryMode) {
        // One unit per byte, rows of 80; the code page stays for the text view.
        FUseBOM = false;
        LoadBinary(stream);
    } else {
        if (OnProgress && size > 100000)
            OnProgress(0, size);
        FUseBOM = bom > 0;
        FCodePage = cp;
        stream.Seek(start + static_cast<std::int64_t>(bom));
        const bool fits = LoadSlices(stream, cp, ansiBreaks);
        if (OnProgress && size > 100000)
            OnProgress(-1, 0);
        if (!fits) {
            ClearQuick();
            EndUpdate();
            return false;
        }
    }
    FCurrentStreamPos = stream.Size();
    EndUpdate();
    return true;
}

// The encoding of a text by its first slice: a UTF-16 BOM (or the UTF-16 request), a UTF-8
// BOM (or the UTF-8 request), the code page asked for, else detection.
std::uint32_t TZvMemoStrings::ChooseEncoding(std::string_view head, std::size_t& bom,
                                             bool& ansiBreaks) {
    bom = 0;
    ansiBreaks = false;
    if (StartsWith(head, "\xFE\xFF")) {
        bom = 2;
        return cpUTF16BE;
    }
    if (StartsWith(head, "\xFF\xFE") || FSaveUnicode) {
        bom = StartsWith(head, "\xFF\xFE") ? 2 : 0;
        return cpUTF16LE;
    }
    if (FSaveUTF || StartsWith(head, "\xEF\xBB\xBF")) {
        bom = StartsWith(head, "\xEF\xBB\xBF") ? 3 : 0;
        return cpUTF8;
    }
    const std::uint32_t cp = FSaveCodePage ? FCodePage : ChooseCodePage(head);
    ansiBreaks = cp == SystemCodePage() && !(FSaveCodePage ? false : Memo().FDetectAll);
    return cp;
}

// The memory a whole load needs, projected from the part read so far: two bytes of text per
// byte at most, and the rows in the proportion found so far.
std::int64_t TZvMemoStrings::ProjectedLoadBytes(std::int64_t read, std::int64_t total) const {
    const double rows = static_cast<double>(FCount) * static_cast<double>(total) /
                        static_cast<double>(std::max<std::int64_t>(read, 1));
    return 2 * total + static_cast<std::int64_t>(rows * sizeof(TRowItem) * kRowGrowthSlack);
}

bool TZvMemoStrings::FitsInMemory(std::int64_t read, std::int64_t total) {
    const std::int64_t need = ProjectedLoadBytes(read, total);
    const std::int64_t available = AvailableMemoryBytes();
    if (need <= available)
        return true;
    char needText[32], availableText[32];
    FLastError = std::string("Opening this file needs about ") + FormatMemory(need, needText) +
                 " of memory, but only " + FormatMemory(available, availableText) +
                 " are available.";
    return false;
}

bool TZvMemoStrings::LoadSlices(TZvInStream& stream, std::uint32_t codePage, bool ansiBreaks) {
    TZvMemoState& memo = Memo();
    const std::int64_t begin = stream.Position();
    std::int64_t end = stream.Size();
    const bool wide = codePage == cpUTF16LE || codePage == cpUTF16BE;
    if (wide && (end - begin) % 2) {
        // No character holds the odd last byte: it is kept aside and written back after the text.
        unsigned char last = 0;
        stream.Seek(--end);
        if (stream.Read(reinterpret_cast<char*>(&last), 1) == 1)
            FTrailingByte = last;
    }
    stream.Seek(begin);
    TZvDecoder decoder(codePage);
    // The store loads on its own, before any view shows it: quoted fields are always kept.
    TRowSplitter splitter(*this, ansiBreaks, QuoteAwareExtension(FFileName));
    std::string bytes(kSliceBytes, '\0');
    std::int64_t position = begin;
    while (position < end) {
        const auto want =
            static_cast<std::size_t>(std::min<std::int64_t>(kSliceBytes, end - position));
        bytes.resize(want);
        const std::size_t got = stream.Read(bytes.data(), want);
        if (got == 0)
            break;
        bytes.resize(got);
        position += static_cast<std::int64_t>(got);
        const bool last = position >= end;
        splitter.Feed(decoder, bytes, last);
        if (OnProgress && FSize > 100000)
            OnProgress(position, FSize);
        if (!FitsInMemory(position - begin, end - begin))
            return false; // refused while the rows read so far are still few
    }
    splitter.Finish();
    FInvalidBytes = static_cast<std::int64_t>(decoder.Substitutions()) + (FTrailingByte >= 0);
    FLineEndCounts = {splitter.CrLfCount(), splitter.LfCount(), splitter.CrCount()};
    ApplyLineEndVerdict(splitter.CrLfCount(), splitter.LfCount(), splitter.CrCount());
    memo.FHasTabs = splitter.HasTabs();
    memo.FMaxLength = std::max(memo.FMaxLength, splitter.LongestLine() + 100);
    return true;
}

// The prevailing kind names the document; it is pure only when no other kind occurs at all,
// so a CR LF among LF ends is written back as CR LF (row bits) and the bytes survive.
void TZvMemoStrings::LoadBinary(TZvInStream& stream) {
    TRowSplitter splitter(*this, true, false);
    std::string bytes(kSliceBytes, '\0');
    for (;;) {
        bytes.resize(kSliceBytes);
        bytes.resize(stream.Read(bytes.data(), bytes.size()));
        if (bytes.empty())
            break;
        splitter.FeedBinary(bytes);
    }
    splitter.Finish();
}

void TZvMemoStrings::ApplyLineEndVerdict(std::int64_t a, std::int64_t b, std::int64_t c) {
    if (c > b && c > a)
        FSysTextType = (a != 0 || b != 0) ? sttMixedMac : sttMac;
    else if (b > c && b > a)
        FSysTextType = (a != 0 || c != 0) ? sttMixedUnix : sttUnix;
    else if (c != 0 || b != 0)
        FSysTextType = sttMixedWindows;
    else if (a > 0)
        FSysTextType = sttWindows;
}

void TZvMemoStrings::SetSysTextType(TSysTextType kind) {
    FSysTextType = kind;
    const bool mixed = kind == sttMixedWindows || kind == sttMixedUnix || kind == sttMixedMac;
    const bool cr = !mixed && (kind == sttWindows || kind == sttMac);
    const bool lf = !mixed && (kind == sttWindows || kind == sttUnix);
    for (std::size_t i = 0; i < FCount; ++i) {
        Item(i)->FObject.SetValue2(ab2LinefeedCR, cr);
        Item(i)->FObject.SetValue2(ab2LinefeedLF, lf);
    }
}

// ---- Load-time row cutting --------------------------------------------------------------

void TZvMemoStrings::AddQuickLine(TRowText&& s) {
    TZvMemoState& memo = Memo();
    const std::uint32_t limit = RowLimit();
    TRowItem& first = AppendItem();
    first.FObject = NewAttribute();
    ++FVisibleCount;
    if (s.Length() <= limit) {
        first.FString = std::move(s);
        return;
    }
    if (!memo.FBinaryMode)
        memo.FForceWrap = true;
    AppendPieces(s, 0, limit, first);
}

// Cuts `s` from unit `from` into rows of at most `limit` units: the first piece goes into
// `first`, the rest into new `Wrapped` rows. A cut never separates a surrogate pair.
void TZvMemoStrings::AppendPieces(const TRowText& s, std::uint32_t from, std::uint32_t limit,
                                  TRowItem& first) {
    const std::u16string_view text = s.View();
    bool isFirst = true;
    while (from < text.size()) {
        std::uint32_t n =
            std::min<std::uint32_t>(limit, static_cast<std::uint32_t>(text.size()) - from);
        if (from + n < text.size() && n > 1 && (text[from + n - 1] & 0xFC00) == 0xD800)
            --n;
        TRowText piece = s;
        piece.Erase(from + n, static_cast<std::uint32_t>(text.size()));
        piece.Erase(0, from);
        if (isFirst) {
            first.FString = std::move(piece);
            isFirst = false;
        } else {
            TRowItem& row = AppendItem();
            row.FString = std::move(piece);
            row.FObject = NewAttribute();
            row.FObject.SetWrapped(true);
            ++FVisibleCount;
        }
        from += n;
    }
}

} // namespace zv

namespace zv {

std::uint32_t TZvMemoStrings::RowLimit() const {
    const TZvMemoState& memo = Memo();
    return static_cast<std::uint32_t>(
        memo.FBinaryMode ? 80 : std::max<std::int32_t>(memo.FForcewrapLength, 16));
}

void TZvMemoStrings::ContinueLastRow(const TRowText& piece) {
    if (piece.Empty() || FCount == 0)
        return;
    const std::uint32_t limit = RowLimit();
    TRowText& last = Item(FCount - 1)->FString;
    if (last.Length() + piece.Length() <= limit) {
        last.Append(piece.View());
        return;
    }
    if (!Memo().FBinaryMode)
        Memo().FForceWrap = true;
    std::uint32_t room = limit > last.Length() ? limit - last.Length() : 0;
    if (room > 0 && (piece.View()[room - 1] & 0xFC00) == 0xD800)
        --room;
    const auto continuation = [this]() -> TRowItem& {
        TRowItem& rest = AppendItem();
        rest.FObject = NewAttribute();
        rest.FObject.SetWrapped(true);
        ++FVisibleCount;
        return rest;
    };
    const std::u16string_view kept = last.View();
    if (room == 0 && kept.size() > 1 && (kept.back() & 0xFC00) == 0xD800) {
        // The slice ended inside a pair on a full row: the pair starts the next row whole.
        // Rare, so the copy of the piece does not matter.
        std::u16string moved(1, kept.back());
        moved.append(piece.View());
        last.Erase(last.Length() - 1, 1);
        AppendPieces(TRowText(moved), 0, limit, continuation());
        return;
    }
    last.Append(piece.View().substr(0, room));
    TRowItem& rest = continuation();
    AppendPieces(piece, room, limit, rest);
}

} // namespace zv
