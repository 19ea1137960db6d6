// Following a growing file: the store reads only what the file grew by and adds it as rows,
// whole characters and whole line ends only.
#include "ZvMemoControl/ZvMemoStrings.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/RowSplitter.h"
#include "ZvMemoControl/Streams.h"

namespace zv {
namespace {

// Bytes at the end of `bytes` that begin a UTF-8 sequence the writer has not finished.
std::size_t UnfinishedUtf8(std::string_view bytes) {
    const std::size_t n = bytes.size();
    for (std::size_t back = 1; back <= std::min<std::size_t>(4, n); ++back) {
        const auto c = static_cast<unsigned char>(bytes[n - back]);
        if ((c & 0xC0) == 0x80)
            continue; // a continuation byte: the lead is further back
        const std::size_t length = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        return length > back ? back : 0;
    }
    return 0;
}

// Bytes at the end of UTF-16 `bytes` that are half a unit or a lone high surrogate.
std::size_t UnfinishedUtf16(std::string_view bytes, bool bigEndian) {
    const std::size_t odd = bytes.size() % 2;
    if (bytes.size() - odd < 2)
        return odd;
    const std::size_t last = bytes.size() - odd - 2;
    const auto high = static_cast<unsigned char>(bytes[last + (bigEndian ? 0 : 1)]);
    return odd + ((high & 0xFC) == 0xD8 ? 2 : 0);
}

// How many bytes at the end of `bytes` to leave for the next read.
std::size_t Unfinished(std::string_view bytes, std::uint32_t codePage) {
    if (codePage == cpUTF8)
        return UnfinishedUtf8(bytes);
    if (codePage == cpUTF16LE || codePage == cpUTF16BE)
        return UnfinishedUtf16(bytes, codePage == cpUTF16BE);
    return 0;
}

// The bytes of an LF in `codePage`.
std::string_view LineFeed(std::uint32_t codePage) {
    using namespace std::string_view_literals;
    if (codePage == cpUTF16LE)
        return "\n\0"sv;
    if (codePage == cpUTF16BE)
        return "\0\n"sv;
    return "\n"sv;
}

} // namespace

std::string_view TZvMemoStrings::JoinSplitCrLf(std::string_view bytes, std::uint32_t codePage) {
    const std::string_view lf = LineFeed(codePage);
    if (FCount < 2 || !bytes.starts_with(lf) || !Get(static_cast<int>(FCount) - 1).empty())
        return bytes;
    // The empty last row stands after the CR that ended the earlier read: CR LF it is.
    const TAttribute& before = static_cast<const TZvMemoStrings&>(*this).Item(FCount - 1)->FObject;
    if (!before.GetValue2(ab2LinefeedCR) || before.GetValue2(ab2LinefeedLF))
        return bytes;
    Item(FCount - 1)->FObject.SetValue2(ab2LinefeedLF, true);
    return bytes.substr(lf.size());
}

bool TZvMemoStrings::AppendTail() {
    TZvFileInStream in(FFileName);
    if (!in.Ok()) {
        FLastError = in.Error();
        return false;
    }
    const std::int64_t size = in.Size();
    if (size <= FCurrentStreamPos)
        return false;
    std::string bytes(static_cast<std::size_t>(size - FCurrentStreamPos), '\0');
    in.Seek(FCurrentStreamPos);
    bytes.resize(in.Read(bytes.data(), bytes.size()));
    const std::uint32_t codePage = FCodePage == cpAutoDetect ? cpUTF8 : FCodePage;
    bytes.resize(bytes.size() - Unfinished(bytes, codePage));
    if (bytes.empty())
        return false;
    try {
        std::lock_guard lock(FLock);
        const std::string_view rest = JoinSplitCrLf(bytes, codePage);
        TZvDecoder decoder(codePage);
        TRowSplitter splitter(*this, false, false);
        splitter.ContinueOpenRow(FCount > 0);
        splitter.ExpectBytes(static_cast<std::int64_t>(rest.size()));
        splitter.Feed(decoder, rest, true);
        splitter.Finish();
    } catch (const TCodePageError& e) {
        FLastError = e.what();
        return false;
    }
    FCurrentStreamPos += static_cast<std::int64_t>(bytes.size());
    Changed();
    return true;
}

} // namespace zv
