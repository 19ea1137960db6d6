// Writing rows back: BOM, the encoding through one converter for the whole text, and each
// line end as the row bits or the document's kind say. Wrapped rows are joined again.
#include "ZvMemoControl/ZvMemoStrings.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/Streams.h"
#include "common/AtomicFile.h"
#include "common/Utf8Stream.h"

#include <algorithm>
#include <bit>
#include <memory>

namespace zv {
namespace {

constexpr std::size_t kBatchUnits = 1 << 18;

// The UTF-16 code page whose byte order is this machine's.
constexpr std::uint32_t NativeUtf16() {
    return std::endian::native == std::endian::little ? cpUTF16LE : cpUTF16BE;
}

bool IsMixed(TSysTextType kind) {
    return kind == sttMixedWindows || kind == sttMixedUnix || kind == sttMixedMac;
}

std::u16string_view LineEndOf(TSysTextType kind) {
    switch (kind) {
    case sttUnix:
        return u"\n";
    case sttMac:
        return u"\r";
    default:
        return u"\r\n";
    }
}

// Hands the rows' text, in large batches, to the byte form of the target. UTF-8 (the usual
// case) is encoded row by row straight into the byte batch; other targets collect UTF-16
// first.
class TBatchWriter {
public:
    TBatchWriter(TZvOutStream& out, std::uint32_t codePage, bool lowBytes)
        : FOut(out), FCodePage(codePage), FLowBytes(lowBytes),
          FUtf8(!lowBytes && codePage == cpUTF8) {
        if (FUtf8) {
            FRaw.reset(new char[kBatchBytes]); // not zero-filled: only written parts are read
            FEnd = FRaw.get();
            return;
        }
        if (!lowBytes && codePage != cpUTF16LE && codePage != cpUTF16BE)
            FEncoder = std::make_unique<TZvEncoder>(codePage);
        FText.reserve(kBatchUnits + 4096);
    }
    void Add(std::u16string_view s) {
        if (FUtf8) {
            AddUtf8(s);
            return;
        }
        FText.append(s);
        if (FText.size() >= kBatchUnits)
            Flush(false);
    }
    void Flush(bool end) {
        if (FUtf8) {
            if (end)
                FEnd = EncodeUtf8({}, true, FPendingHigh, FEnd, FSubstitutions);
            FOut.Write(FRaw.get(), static_cast<std::size_t>(FEnd - FRaw.get()));
            FEnd = FRaw.get();
            return;
        }
        FBytes.clear();
        if (!FEncoder && !FLowBytes && FCodePage == NativeUtf16()) {
            // The units in memory are already the file's bytes.
            FOut.Write(reinterpret_cast<const char*>(FText.data()), FText.size() * 2);
            FText.clear();
            return;
        }
        if (FEncoder) {
            FEncoder->Encode(FText, end, FBytes);
        } else if (FLowBytes) {
            FBytes.resize(FText.size());
            for (std::size_t i = 0; i < FText.size(); ++i)
                FBytes[i] = static_cast<char>(FText[i] & 0xFF);
        } else {
            FBytes.resize(FText.size() * 2);
            const int hi = FCodePage == cpUTF16BE ? 0 : 1;
            for (std::size_t i = 0; i < FText.size(); ++i) {
                FBytes[2 * i + hi] = static_cast<char>(FText[i] >> 8);
                FBytes[2 * i + 1 - hi] = static_cast<char>(FText[i] & 0xFF);
            }
        }
        FOut.Write(FBytes);
        FText.clear();
    }
    bool Lossy() const { return FUtf8 ? FSubstitutions > 0 : FEncoder && FEncoder->Lossy(); }

private:
    static constexpr std::size_t kBatchBytes = 1 << 20;

    // A row longer than the batch goes in pieces; a surrogate pair cut between two pieces
    // waits in FPendingHigh.
    void AddUtf8(std::u16string_view s) {
        if (s.size() <= 2 && FPendingHigh == 0 && kBatchBytes - (FEnd - FRaw.get()) >= 2) {
            // A line end: ASCII, one byte per unit.
            for (char16_t c : s) {
                if (c >= 0x80)
                    return AddUtf8Pieces(s);
            }
            for (char16_t c : s)
                *FEnd++ = static_cast<char>(c);
            return;
        }
        AddUtf8Pieces(s);
    }
    void AddUtf8Pieces(std::u16string_view s) {
        while (!s.empty()) {
            const std::size_t left = kBatchBytes - static_cast<std::size_t>(FEnd - FRaw.get());
            const std::size_t room = left > kUtf8Slack ? (left - kUtf8Slack) / kUtf8PerUnit : 0;
            if (room < std::min<std::size_t>(s.size(), 4096)) {
                Flush(false);
                continue;
            }
            const std::size_t take = std::min(room, s.size());
            FEnd = EncodeUtf8(s.substr(0, take), false, FPendingHigh, FEnd, FSubstitutions);
            s.remove_prefix(take);
        }
    }

    TZvOutStream& FOut;
    std::uint32_t FCodePage;
    bool FLowBytes;
    bool FUtf8;
    std::unique_ptr<TZvEncoder> FEncoder;
    std::u16string FText;
    std::string FBytes;
    // UTF-8: the byte batch [FRaw, FEnd) and the encoder's state.
    std::unique_ptr<char[]> FRaw;
    char* FEnd = nullptr;
    char16_t FPendingHigh = 0;
    std::size_t FSubstitutions = 0;
};

// Joins what is to be written into runs of adjacent memory. The rows of a load view one
// decoded block with their line ends still between them, so where the line end to write is
// the one in the block, a row, its line end and the next row go to the writer as one run:
// a few long runs instead of two short pieces per row.
class TRunJoiner {
public:
    explicit TRunJoiner(TBatchWriter& writer) : FWriter(writer) {}
    void Row(const TRowText& row) {
        if (row.Empty())
            return; // what stands between two rows may still join them
        const std::u16string_view text = row.View();
        if (row.Chunk() == FChunk && FRun.size() < kMaxRun && Follows(text)) {
            FRun = {FRun.data(), FRun.size() + FBetween.size() + text.size()};
        } else {
            Flush();
            FRun = text;
            FChunk = row.Chunk();
        }
        FBetween.clear();
    }
    void LineEnd(std::u16string_view end) { FBetween.append(end); }
    void Flush() {
        if (!FRun.empty())
            FWriter.Add(FRun);
        if (!FBetween.empty())
            FWriter.Add(FBetween);
        FRun = {};
        FChunk = nullptr;
        FBetween.clear();
    }

private:
    // A run is encoded while what joining it touched is still in the cache.
    static constexpr std::size_t kMaxRun = 1 << 14;

    // `text` (in the run's block) starts right behind the run and what stands between.
    // Compared unit by unit: what stands between is a line end or two, too short for memcmp.
    bool Follows(std::u16string_view text) const {
        const char16_t* end = FRun.data() + FRun.size();
        if (text.data() != end + FBetween.size())
            return false;
        for (std::size_t i = 0; i < FBetween.size(); ++i)
            if (end[i] != FBetween[i])
                return false;
        return true;
    }

    TBatchWriter& FWriter;
    std::u16string_view FRun; // Invariant: empty, or units of FChunk's block
    const TTextChunk* FChunk = nullptr;
    std::u16string FBetween; // line ends after the run, not yet written
};

} // namespace

void TZvMemoStrings::WriteRows(TZvOutStream& stream, std::uint32_t codePage) {
    const TZvMemoState& memo = Memo();
    // The OEM view (FIsASCII) decodes its bytes through the code page like any other text,
    // so it is encoded back through it: only binary rows hold one byte per unit.
    const bool lowBytes = memo.FBinaryMode;
    TBatchWriter writer(stream, codePage, lowBytes);
    TRunJoiner runs(writer);
    const bool mixed = IsMixed(FSysTextType);
    const std::u16string_view fixedEnd = LineEndOf(FSysTextType);
    for (std::size_t i = 0; i < FCount; ++i) {
        if (!ReadItem(i)->FObject.Enabled())
            continue;
        runs.Row(ReadItem(i)->FString);
        if (memo.FBinaryMode || i + 1 >= FCount || ReadItem(i + 1)->FObject.Wrapped())
            continue;
        runs.LineEnd(mixed ? LineEndBefore(ReadItem(i + 1)->FObject) : fixedEnd);
    }
    runs.Flush();
    writer.Flush(true);
    FLossy = writer.Lossy();
}

void TZvMemoStrings::SaveTextToStream(TZvOutStream& stream) {
    const std::uint32_t cp = FCodePage == cpAutoDetect ? cpUTF8 : FCodePage;
    if (FUseBOM) {
        if (cp == cpUTF16LE)
            stream.Write("\xFF\xFE", 2);
        else if (cp == cpUTF16BE)
            stream.Write("\xFE\xFF", 2);
        else if (cp == cpUTF8)
            stream.Write("\xEF\xBB\xBF", 3);
    }
    WriteRows(stream, cp);
    if (FTrailingByte >= 0 && (cp == cpUTF16LE || cp == cpUTF16BE) && !Memo().FBinaryMode) {
        const char byte = static_cast<char>(FTrailingByte);
        stream.Write(&byte, 1);
    }
    FCurrentStreamPos = stream.Size();
}

std::string TZvMemoStrings::SaveToBytes() {
    TZvStringOutStream out;
    SaveTextToStream(out);
    return std::move(out.Bytes());
}

bool TZvMemoStrings::SaveToFile(const std::string& fileName, TAtomicWriteOptions* options) {
    FLastError.clear();
    FSaveUnicode = FCodePage == cpUTF16LE;
    FSaveBigUnicode = FCodePage == cpUTF16BE;
    FSaveUTF = FCodePage == cpUTF8;
    FSaveCodePage = !(FSaveUnicode || FSaveBigUnicode || FSaveUTF);
    const std::uint32_t cp = FCodePage == cpAutoDetect ? cpUTF8 : FCodePage;
    if (!FSaveUnicode && !FSaveBigUnicode && !Memo().FBinaryMode && !Memo().FIsASCII &&
        !IsCodePageSupported(cp)) {
        FLastError = TCodePageError(cp).what();
        return false;
    }
    const auto writeRows = [this](int fd) {
        TZvFdOutStream out(fd, true);
        SaveTextToStream(out);
        out.Flush();
        return true;
    };
    TAtomicWriteOptions defaults;
    return WriteFileAtomically(fileName, writeRows, options ? *options : defaults, &FLastError);
}

void TZvMemoStrings::SaveToStream(TZvOutStream& stream) {
    const std::u16string_view end = LineEndOf(IsMixed(FSysTextType) ? sttWindows : FSysTextType);
    std::u16string text;
    for (std::size_t i = 0; i < FCount; ++i) {
        if (!ReadItem(i)->FObject.Enabled())
            continue;
        text.append(ReadItem(i)->FString.View());
        if (i + 1 < FCount && !ReadItem(i + 1)->FObject.Wrapped() && !Memo().FBinaryMode)
            text.append(end);
    }
    TZvMemoStrings copy;
    copy.Memo() = Memo();
    copy.FCodePage = FCodePage;
    copy.FUseBOM = FUseBOM;
    copy.DoAdd(text);
    copy.SaveTextToStream(stream);
    FCurrentStreamPos = stream.Size();
}

} // namespace zv
