// Writing rows back: BOM, the encoding through one converter for the whole text, and each
// line end as the row bits or the document's kind say. Wrapped rows are joined again.
#include "ZvMemoControl/ZvMemoStrings.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/Streams.h"
#include "common/AtomicFile.h"

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

// Collects UTF-16 text and hands it, in large batches, to the byte form of the target.
class TBatchWriter {
public:
    TBatchWriter(TZvOutStream& out, std::uint32_t codePage, bool lowBytes)
        : FOut(out), FCodePage(codePage), FLowBytes(lowBytes) {
        if (!lowBytes && codePage != cpUTF16LE && codePage != cpUTF16BE)
            FEncoder = std::make_unique<TZvEncoder>(codePage);
        FText.reserve(kBatchUnits + 4096);
    }
    void Add(std::u16string_view s) {
        FText.append(s);
        if (FText.size() >= kBatchUnits)
            Flush(false);
    }
    void Flush(bool end) {
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
    bool Lossy() const { return FEncoder && FEncoder->Lossy(); }

private:
    TZvOutStream& FOut;
    std::uint32_t FCodePage;
    bool FLowBytes;
    std::unique_ptr<TZvEncoder> FEncoder;
    std::u16string FText;
    std::string FBytes;
};

} // namespace

void TZvMemoStrings::WriteRows(TZvOutStream& stream, std::uint32_t codePage) {
    const TZvMemoState& memo = Memo();
    const bool lowBytes = memo.FBinaryMode || memo.FIsASCII;
    TBatchWriter writer(stream, codePage, lowBytes);
    const bool mixed = IsMixed(FSysTextType);
    const std::u16string_view fixedEnd = LineEndOf(FSysTextType);
    for (std::size_t i = 0; i < FCount; ++i) {
        if (!Item(i)->FObject.Enabled())
            continue;
        writer.Add(Item(i)->FString.View());
        if (memo.FBinaryMode || i + 1 >= FCount || Item(i + 1)->FObject.Wrapped())
            continue;
        writer.Add(mixed ? LineEndBefore(Item(i + 1)->FObject) : fixedEnd);
    }
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
    FCurrentStreamPos = stream.Size();
}

std::string TZvMemoStrings::SaveToBytes() {
    TZvStringOutStream out;
    SaveTextToStream(out);
    return std::move(out.Bytes());
}

bool TZvMemoStrings::SaveToFile(const std::string& fileName) {
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
        TZvFdOutStream out(fd);
        SaveTextToStream(out);
        out.Flush();
        return true;
    };
    return WriteFileAtomically(fileName, writeRows, &FLastError);
}

void TZvMemoStrings::SaveToStream(TZvOutStream& stream) {
    const std::u16string_view end = LineEndOf(IsMixed(FSysTextType) ? sttWindows : FSysTextType);
    std::u16string text;
    for (std::size_t i = 0; i < FCount; ++i) {
        if (!Item(i)->FObject.Enabled())
            continue;
        text.append(Item(i)->FString.View());
        if (i + 1 < FCount && !Item(i + 1)->FObject.Wrapped() && !Memo().FBinaryMode)
            text.append(end);
    }
    TZvMemoStrings copy;
    copy.SetMemo(FMemo);
    copy.FCodePage = FCodePage;
    copy.FUseBOM = FUseBOM;
    copy.DoAdd(text);
    copy.SaveTextToStream(stream);
    FCurrentStreamPos = stream.Size();
}

} // namespace zv
