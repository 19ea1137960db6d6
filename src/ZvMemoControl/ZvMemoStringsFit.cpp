// Whether a save would lose characters: the encoder runs over the rows into a sink that
// keeps nothing, so the question is answered by the very code that writes the file.
#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Streams.h"
#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {
namespace {

class TDiscardOutStream : public TZvOutStream {
public:
    void Write(const char*, std::size_t count) override {
        FSize += static_cast<std::int64_t>(count);
    }
    std::int64_t Size() const override { return FSize; }

private:
    std::int64_t FSize = 0;
};

} // namespace

bool TZvMemoStrings::FitsCodePage() {
    const std::uint32_t cp = FCodePage == cpAutoDetect ? cpUTF8 : FCodePage;
    if (cp == cpUTF8 || cp == cpUTF16LE || cp == cpUTF16BE || Memo().FBinaryMode ||
        !IsCodePageSupported(cp))
        return true; // a missing converter is the save's own error to report
    const bool lossy = FLossy;
    TDiscardOutStream sink;
    WriteRows(sink, cp);
    const bool fits = !FLossy;
    FLossy = lossy;
    return fits;
}

} // namespace zv
