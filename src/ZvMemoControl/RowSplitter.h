// Splits decoded text into rows of a store as it arrives slice by slice: line ends CR, LF,
// CR LF (and U+2028, U+2029 unless the text came by the ANSI path), quote-aware for
// delimited files, rows above the force-wrap length cut into `Wrapped` rows. Rows view the
// decoded slice's buffer; nothing is copied per row.
#pragma once

#include <cstdint>
#include <string_view>

namespace zv {

class TZvMemoStrings;
class TZvDecoder;
struct TTextChunk;

class TRowSplitter {
public:
    TRowSplitter(TZvMemoStrings& store, bool ansiBreaks, bool quoteAware);
    ~TRowSplitter();
    TRowSplitter(const TRowSplitter&) = delete;
    TRowSplitter& operator=(const TRowSplitter&) = delete;
    // Decodes one slice (`last`: the end of the text) and adds its rows. The first piece of
    // a slice continues the row the previous slice ended with.
    void Feed(TZvDecoder& decoder, std::string_view bytes, bool last);
    // Binary mode: every byte one unit, no line ends, rows of 80.
    void FeedBinary(std::string_view bytes);
    // Adds rows for text that is already UTF-16 (SetTextStr).
    void FeedText(std::u16string_view text, bool last);
    void Finish();
    // The first piece continues the store's last row (reading what a file grew by).
    void ContinueOpenRow(bool on) { FOpenRow = on; }
    // The bytes to come, when not the store's whole file: the decoded text then gets blocks
    // of its own size, not the large ones of a big load.
    void ExpectBytes(std::int64_t bytes) { FExpectedBytes = bytes; }

    std::int64_t CrLfCount() const { return FCrLf; }
    std::int64_t LfCount() const { return FLf; }
    std::int64_t CrCount() const { return FCr; }
    bool HasTabs() const { return FHasTabs; }
    std::int32_t LongestLine() const { return FLongest; }
    // Bits of the line end most recently read (CR 1, LF 2), 0 when none was read.
    std::uint32_t LastBits() const { return FLastBits; }

private:
    char16_t* Reserve(std::uint32_t units);
    void Commit(std::uint32_t units, bool last);
    // Splits units [begin, end) of `chunk`.
    void Split(TTextChunk* chunk, std::uint32_t begin, std::uint32_t end, bool last);
    void EmitPiece(TTextChunk* chunk, std::uint32_t offset, std::uint32_t length);
    void EndLine(std::uint32_t bits, std::uint32_t lineEndLength);

    TZvMemoStrings& FStore;
    TTextChunk* FArena = nullptr; // decoded text lands here; rows view it
    std::uint32_t FArenaUsed = 0;
    bool FAnsiBreaks;
    bool FQuoteAware;
    bool FNoBreaks = false;
    bool FInString = false;
    bool FOpenRow = false;          // the store's last row continues with the next piece
    std::int64_t FExpectedBytes;    // what the feeds add up to, about
    bool FPendingCR = false;        // a CR ended the previous slice; an LF may follow
    std::uint32_t FNextBits = 0xFF; // line-end bits for the next new row; 0xFF: default
    std::uint32_t FLastBits = 0;
    std::int64_t FCrLf = 0, FLf = 0, FCr = 0;
    std::int64_t FLineLength = 0;
    std::int32_t FLongest = 0;
    bool FHasTabs = false;
};

} // namespace zv
