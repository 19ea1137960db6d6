// TZvMemoStrings: the line store. A flat array of display rows, each a copy-on-write UTF-16
// text handle plus the row's TAttribute; wrapped continuations are rows with `Wrapped` set.
// It also reads and writes text files (the codec lives in ZvMemoStringsLoad/Save.cpp).
#pragma once

#include "ZvMemoControl/MemoState.h"
#include "ZvMemoControl/RowIndex.h"
#include "ZvMemoControl/RowText.h"
#include "ZvMemoControl/TextAttribute.h"
#include "ZvMemoControl/ZvWideStrings.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct TAtomicWriteOptions;

class TZvInStream;
class TZvOutStream;
class TZvDecoder;

// A document's line-end kind. The mixed kinds name the kind that prevails.
enum TSysTextType : std::uint8_t {
    sttWindows,
    sttUnix,
    sttMac,
    sttMixedWindows,
    sttMixedUnix,
    sttMixedMac
};

class TZvMemoStrings;
// Asks the application to choose among detected code pages; `candidates` hold
// "name|percent#confidence". May change `codePage`.
using TDetectCPEvent =
    std::function<void(TZvMemoStrings& sender, std::uint32_t& codePage,
                       const std::vector<std::string>& candidates, const std::string& fileName)>;
// Load progress; position -1 with total 0 closes the display.
using TProgressEvent = std::function<void(std::int64_t position, std::int64_t total)>;
// Searches one row for a regular expression from 1-based `from`; returns the 1-based column
// or 0, and the matched text in `match`.
using TRegExMemoFindEvent = std::function<int(std::u16string_view row, std::u16string_view what,
                                              int from, std::u16string& match)>;

class TZvMemoStrings final : public TZvWideStringList {
public:
    TZvMemoStrings();
    ~TZvMemoStrings() override;
    TZvMemoStrings(const TZvMemoStrings&) = delete;
    TZvMemoStrings& operator=(const TZvMemoStrings&) = delete;

    // The document's settings the store reads (and every view of it).
    TZvMemoState& Memo() { return FOwnState; }
    const TZvMemoState& Memo() const { return FOwnState; }

    // ---- Rows. Row numbers are 0-based; out-of-range reads answer empty, 0 or false.
    int Count() const override { return static_cast<int>(FCount); }
    // The row the array's free slots stand before: edits near it move the fewest rows.
    int GapRow() const { return static_cast<int>(FGapStart); }
    std::u16string_view Get(int row) const override;
    std::u16string GetLineString(int row) const { return std::u16string(Get(row)); }
    int GetLineLength(int row) const { return static_cast<int>(Get(row).size()); }
    // The unit at 1-based column `col`, or 0.
    char16_t GetCharAt(int row, int col) const;
    // Copies the row into `buffer`, growing it to length + 100 when short; returns the length.
    int GetBuffer(int row, std::u16string& buffer) const;
    // The row's text handle, shared (no copy of the characters).
    TRowText GetRowText(int row) const;

    // Appends (tab-expanded unless tabs are preserved) under FLock; returns the new row.
    int Add(std::u16string_view s) override;
    int AddLine(std::u16string_view s, const TAttribute& attribute);
    int DoAdd(std::u16string_view s);
    void Insert(int row, std::u16string_view s) override;
    void InsertSilent(int row, std::u16string_view s) { DoInsert(row, s); }
    void DoInsert(int row, std::u16string_view s);
    void Delete(int row) override;
    void DeleteSilent(int row, bool withWrapped);
    void DoDelete(int row);
    void DeleteLinesSilent(int row, int count);
    // Opens a gap of `count` fresh empty rows before `row` in one move.
    void PrepareLines(int row, int count);
    void DeleteLineFromReal(int line);
    void InsertLineFromReal(int line, std::u16string_view s);
    void Clear() override;
    void ClearQuick();
    void ClearLine(int row);
    void ClearSSA();
    void SwapLines(int a, int b);
    void Exchange(int a, int b) override { SwapLines(a, b); }
    void Move(int from, int to);
    void QuickSortA(int first, int last,
                    const std::function<int(std::u16string_view, std::u16string_view)>& compare);
    void CopyLineTo(int from, int to);
    void SetLineString(int row, std::u16string_view s);
    // Replaces a row's text by `text`, sharing its buffer (no copy of the characters).
    void SetRowText(int row, const TRowText& text);
    void SetLineBuffer(int row, const char16_t* buffer, int length) {
        SetLineString(row, std::u16string_view(buffer, length > 0 ? length : 0));
    }
    // 1-based column edits; InsertAt appends past the end; both return the new length.
    int InsertAt(int row, std::u16string_view s, int col);
    int DeleteAt(int row, int col, int count);
    void OverWriteAt(int row, std::u16string_view s, int col);
    void SetAt(int row, std::u16string_view s) { SetLineString(row, s); }
    bool IsLineBlank(int row) const;
    bool CompareLines(int a, int b) const;
    bool IsAnsiBetween(int row, int from, int to) const;
    std::u16string RemoveTrailingBlanks(int row, bool keepTabs);
    std::u16string GetStringAt(int row, int col, int count, bool trim) const;
    // One CRC-32 per row over its UTF-16 bytes (after removing white space, then upper-casing,
    // as asked).
    void FillHashList(std::vector<std::uint32_t>& list, bool ignoreCase, bool ignoreSpaces) const;
    int GetSpellList(int row, std::vector<TSpellRec>& list) const;
    bool IsTextComplex(int row) const;
    static bool IsTextComplex(std::u16string_view s);
    int RealCount() const;

    // ---- The list as a whole.
    // Copies rows (sharing their text), attributes, code page, BOM and line-end kind.
    void Assign(const TZvMemoStrings& source);
    void AssignSilent(const TZvMemoStrings& source);
    // Sorts by QuickSortA under FLock.
    void CustomSort(
        const std::function<int(std::u16string_view, std::u16string_view)>& compare) override;

    // ---- Encoding commands: rows re-read in another code page (Lossy ones become "?").
    // Encodes each row in the document's code page and decodes the bytes in `codePage`.
    void ConvertAnsiLinesToAnsi(std::uint32_t codePage);
    void LineConvertAnsiToAnsi(int row, std::uint32_t codePage);
    // Keeps of each row what `codePage` can hold.
    void ConvertStringLinesToAnsi(std::uint32_t codePage);
    // Each row as the bytes of `codePage`, one unit per byte (the raw 8-bit view), and back.
    void ConvertStringLinesToAscii(std::uint32_t codePage);
    void ConvertAsciiLinesToString();
    // Called after each row an encoding command changed.
    std::function<void(int row)> OnLineChanged;

    // A row as it is painted: spaces as U+00B7, tabs expanded, control characters as their
    // pictures (unless the raw view's font shows them), U+00B6 where a line ends.
    std::u16string GetVisual(int row, bool showEnd, bool showSpaces, bool expandTabs,
                             bool showControls, bool fontShowsControls = false) const;

    // ---- Attributes.
    TAttribute CreateAttribute() const;
    // The row's attribute; out of range, a default one that belongs to no row (do not keep).
    const TAttribute& GetLineAttribute(int row) const;
    // Writable attribute of a row in range, else nullptr. Not for `Hidden` (SetHiddenLine).
    TAttribute* LineAttribute(int row);
    TAttribute GetLineAttributeObject(int row) const { return GetLineAttribute(row); }
    void SetLineAttribute(int row, const TAttribute& attribute);
    void RestoreAttributes(int row, const TAttribute& attribute) {
        SetLineAttribute(row, attribute);
    }

    // ---- Wrapped rows.
    int AddWrapped(std::u16string_view s);
    int AddWrappedFirst(std::u16string_view s, const TAttribute& attribute);
    void InsertWrapped(int row, std::u16string_view s);
    void InsertWrappedFirst(int row, std::u16string_view s);
    void PutWrapped(int row, std::u16string_view s);
    void PutWrappedFirst(int row, std::u16string_view s);
    bool IsLineWrapped(int row) const { return GetLineAttribute(row).Wrapped(); }
    bool GetHiddenLine(int row) const { return GetLineAttribute(row).Hidden(); }
    void SetHiddenLine(int row, bool value);
    int VisibleCount() const { return FVisibleCount; }

    // ---- Coordinates. Real lines: row 0 begins line 0 whatever its flags; every later row
    // with `Wrapped` clear and `Enabled` true begins the next line. Offsets count a row's
    // units and 2 for each line end (none in binary mode; none before a `Wrapped` row).
    // The conversions between rows, real lines and offsets are O(log n) lookups in the
    // position index. Call them on the thread that changes the rows.
    //
    // The real line of `row` (clipped to the store); a filler row (`Enabled` false) has the
    // number of the line that follows it. The row itself in binary mode, in hex view and
    // while no wrap is on; 0 for a negative row.
    int GetRealLine(int row) const;
    // The row where real line `line` begins; past the last line, Count() plus the lines
    // beyond it. `line` itself in binary mode, in hex view and while no wrap is on.
    int GetWrapIndex(int line) const;
    int GetWrappedMainLineNumber(int row) const;
    int GetWrappedLineCount(int row) const;
    std::u16string GetUnwrappedLine(int row, int& count) const;
    void GetUnwrappedPos(int& x, int& y) const;
    void GetWrappedPos(int& x, int& y) const;
    void GetWrappedPos(int& x, int& a, int& y) const;
    void GetUnwrappedLinePos(int& y) const;
    std::u16string GetMainLineIndentString(int row) const;
    // The offset of 0-based column `x` (clipped to the row) of row `y` (clipped to the store).
    std::int64_t GetCharPosFromXY(int x, int y) const;
    // The (column, row) of offset `pos`, counted from the start of row `y` when `fromStart`
    // (y clipped to the store), else from the start of the text. An offset inside a line end
    // gives the end of the row before it; at a join of wrapped rows, the end of the upper
    // row; a negative one, column `pos` of the first row; past the end, the last row and its
    // length minus 1 (at least 0).
    void GetXYFromCharPos(std::int64_t pos, int& x, int& y, bool fromStart = false) const;

    // ---- Whole text.
    std::u16string GetText(int startRow, int endRow, int startCol, int endCol, bool columnMode,
                           bool addLineEnds, bool formFeed) const;
    std::u16string GetText() const;              // CR LF after every line
    std::u16string GetTextWithLinefeeds() const; // each line end as the file had it
    std::u16string GetTabExpanded(int row) const;
    int GetVisualLength(int row) const;
    int GetVisualIndent(int row, int tabSize, bool blankAsNone) const;

    // ---- Search primitives: 1-based column, 0 when not found or out of range.
    int WPosAt(int row, std::u16string_view what, int from, bool caseless) const;
    int WRPosAt(int row, std::u16string_view what, int from) const;
    int WNCPosAt(int row, std::u16string_view what, int from) const;
    int WNCRPosAt(int row, std::u16string_view what, int from) const;
    int WTextPosAt(int row, std::u16string_view what, int from, int count, bool caseless) const;
    // -1 with no callback, an empty row or no match; `match` is always cleared first.
    int WRegexPosAt(int row, std::u16string_view what, int from, std::u16string& match) const;

    // ---- Background-thread readers: each takes FLock only for the copy.
    std::u16string GetLineStringFromThread(int row) const;
    TAttribute GetLineAttributeFromThread(int row) const;
    std::u16string GetUnwrappedLineFromThread(int row, int& count) const;
    std::recursive_mutex& Lock() const { return FLock; }

    // ---- Codec.
    // Reads the file (code page, BOM, line ends as Part of the document). `clearUndo` is for
    // the control. A missing file leaves the store as it was and returns false; so does a
    // file the codec refuses (too large, no converter), with LastError() saying why.
    bool LoadFromFile(const std::string& fileName, bool clearUndo = true);
    bool LoadFromStream(TZvInStream& stream);
    bool LoadFromBytes(std::string_view bytes);
    // Writes atomically (temporary file beside the target, fsync, mode, owner and extended
    // attributes kept, rename; a file with other hard links in place), symlinks followed
    // unless `options` says otherwise. On failure the file on disk is untouched, LastError()
    // says why, and false is returned.
    bool SaveToFile(const std::string& fileName, TAtomicWriteOptions* options = nullptr);
    // True when the code page of the next save can hold every character of the text (always
    // for the Unicode forms and the byte views); a dry run of the encoder, nothing written.
    bool FitsCodePage();
    void SaveTextToStream(TZvOutStream& stream);
    std::string SaveToBytes();
    // The whole text with one kind of line end, BOM first, in one piece.
    void SaveToStream(TZvOutStream& stream);
    const std::string& LastError() const { return FLastError; }

    // Splitting text into rows.
    void SetTextStr(std::u16string_view s);
    void SetTextStrSilent(std::u16string_view s);
    void SetText(std::u16string_view s);
    // Reads what the file grew by since the last load, save or append and adds it as rows,
    // as a load of the whole file would have cut them. A character or a CR LF that the
    // read cuts in two is whole after the next read: an unfinished character waits for it,
    // and an LF right after a CR read earlier joins that line end. False when nothing was
    // added (no growth, an unreadable file, or bytes the code page refuses); a file that
    // shrank is for the caller to read again whole.
    bool AppendTail();

    std::uint32_t CodePage() const { return FCodePage; }
    void SetCodePage(std::uint32_t codePage) { FCodePage = codePage; }
    bool UseBOM() const { return FUseBOM; }
    void SetUseBOM(bool on) { FUseBOM = on; }
    TSysTextType SysTextType() const { return FSysTextType; }
    // Line ends the last load met: CR LF, LF alone, CR alone.
    struct TLineEndCounts {
        std::int64_t CrLf = 0, Lf = 0, Cr = 0;
    };
    TLineEndCounts LineEndCounts() const { return FLineEndCounts; }
    // Rewrites the line-end bits of all rows for `kind` (mixed kinds clear them).
    void SetSysTextType(TSysTextType kind);
    // The kind given to rows before a load decides it (the "new file" line-end setting).
    void SetDefaultSysTextType(TSysTextType kind) { FSysTextType = kind; }
    const std::string& FileName() const { return FFileName; }
    // Together, they name the rows' present state: no other store has this StoreId (so a
    // replaced store never looks unchanged), and Revision grows with each change of a row
    // (it may also grow without one). Read on the thread that changes the rows.
    std::uint64_t StoreId() const { return FStoreId; }
    std::uint64_t Revision() const { return FRevision; }
    std::int64_t CurrentStreamPos() const { return FCurrentStreamPos; }
    bool IllegalControlCodes() const { return FIllegalControlCodes; }
    void SetIllegalControlCodes(bool on) { FIllegalControlCodes = on; }
    // True when the last save wrote "?" for characters the code page cannot hold.
    bool Lossy() const { return FLossy; }
    // Bytes the last load could not decode: each is kept in the text as an escape (U+DC80 to
    // U+DCFF) and saved back as that byte; an odd last byte of UTF-16 counts as one.
    std::int64_t InvalidBytesKept() const { return FInvalidBytes; }
    // The odd last byte of a UTF-16 file (-1: none), written back after the text while the
    // document stays in UTF-16.
    int TrailingByte() const { return FTrailingByte; }
    bool MonitorLogFile() const { return FMonitorLogFile; }
    void SetMonitorLogFile(bool on) { FMonitorLogFile = on; }

    // Load-time row cutting: adds `s` at the end, cut into `Wrapped` rows above
    // FForcewrapLength (binary mode: 80), which sets FForceWrap.
    void AddQuickLine(TRowText&& s);

    TDetectCPEvent OnDetectCP;
    TProgressEvent OnProgress;
    TRegExMemoFindEvent OnRegExFind;
    // When set, the loader/saver sets these flags to choose the path (one at most).
    bool FSaveBigUnicode = false, FSaveUTF = false, FSaveCodePage = false;
    std::int32_t LockCount = 0;

private:
    struct TRowItem {
        TRowText FString;
        TAttribute FObject;
    };
    friend class TRowSplitter;

    // The slot of a row: rows at or behind the gap stand behind the free slots.
    std::size_t Slot(std::size_t row) const {
        return row < FGapStart ? row : row + (FCapacity - FCount);
    }
    // Every change of a row passes through here, OpenGap, CloseGap, AppendItem or Move:
    // a row handed out here is taken to change and joins the rows the position index reads
    // again (rows handed out far apart make one long stretch, read in whole at the next
    // lookup). Read-only paths use ReadItem.
    TRowItem* Item(std::size_t row) {
        ++FRevision;
        if (row < FPendingFirst) {
            if (FPendingFirst == kNothingPending)
                FPendingEnd = FPendingIndexEnd = row;
            FPendingFirst = row;
        }
        if (row >= FPendingEnd) {
            FPendingIndexEnd += row + 1 - FPendingEnd;
            FPendingEnd = row + 1;
        }
        return FList + Slot(row);
    }
    const TRowItem* Item(std::size_t row) const { return FList + Slot(row); }
    const TRowItem* ReadItem(std::size_t row) const { return FList + Slot(row); }
    bool InRange(int row) const { return row >= 0 && static_cast<std::size_t>(row) < FCount; }
    void Grow(std::size_t needed);
    void ReleaseList();
    void ConvertRows(const std::function<std::u16string(std::u16string_view)>& convert);
    void SetCapacity(std::size_t capacity);
    // Moves the free slots to stand before `row` (a raw block move of the rows in between).
    void MoveGap(std::size_t row);
    // Inserts `n` default-constructed items before `row`.
    void OpenGap(std::size_t row, std::size_t n);
    // Destroys and removes the `n` items from `row` on.
    void CloseGap(std::size_t row, std::size_t n);
    TRowItem& AppendItem();
    // Brings the position index up to date: the pending rows are read into it.
    void RefreshIndex() const;
    // Before rows [row, row + removed) give way to `added` new rows: the pending rows take
    // them in.
    void PendRowsReplaced(std::size_t row, std::size_t removed, std::size_t added);
    // Makes an open end of the pending stretch (kToTheEnd) explicit.
    void SettlePendingEnd() const;
    TAttribute NewAttribute() const;
    std::u16string Expanded(std::u16string_view s) const;
    void RecountVisible();
    bool IsDisplayWrapped() const;
    void ApplyLineEndVerdict(std::int64_t crlf, std::int64_t lf, std::int64_t cr);
    // False (FLastError set) when the text would need more memory than the machine has.
    bool FitsInMemory(std::int64_t read, std::int64_t total);
    std::int64_t ProjectedLoadBytes(std::int64_t read, std::int64_t total) const;
    // The row array grows by doubling: while it moves, old and new blocks both exist.
    static constexpr double kRowGrowthSlack = 1.5;
    bool LoadSlices(TZvInStream& stream, std::uint32_t codePage, bool ansiBreaks);
    std::uint32_t ChooseEncoding(std::string_view head, std::size_t& bom, bool& ansiBreaks);
    std::uint32_t RowLimit() const;
    void LoadBinary(TZvInStream& stream);
    void AppendPieces(const TRowText& s, std::uint32_t from, std::uint32_t limit, TRowItem& first);
    // Appends `piece` to the last row; beyond the row limit the rest becomes `Wrapped` rows.
    void ContinueLastRow(const TRowText& piece);
    std::uint32_t ChooseCodePage(std::string_view sample);
    std::uint32_t LineEndBitsFor(TSysTextType kind) const;
    // AppendTail: joins an LF that starts `bytes` to a CR that ended the text; returns the
    // bytes that remain.
    std::string_view JoinSplitCrLf(std::string_view bytes, std::uint32_t codePage);
    void WriteRows(TZvOutStream& stream, std::uint32_t codePage);

    // A gap buffer of FCapacity slots: rows [0, FGapStart) fill the front slots, then come
    // the FCapacity - FCount free slots, then rows [FGapStart, FCount). Inserting or deleting
    // rows moves only the rows between the gap and the edit, so a run of edits at one place
    // costs no move of the rows behind it, however many there are.
    TRowItem* FList = nullptr;
    std::size_t FCount = 0;
    const std::uint64_t FStoreId = NextStoreId();
    std::uint64_t FRevision = 0; // bumped by each way of changing a row
    static std::uint64_t NextStoreId();
    std::size_t FCapacity = 0;
    std::size_t FGapStart = 0;  // Invariant: FGapStart <= FCount <= FCapacity.
    std::size_t FListBytes = 0; // non-zero: FList is a memory mapping of that size
    int FVisibleCount = 0;
    mutable std::recursive_mutex FLock;

    TZvMemoState FOwnState;

    std::uint32_t FCodePage;
    bool FUseBOM = false;
    TSysTextType FSysTextType = sttWindows;
    std::string FFileName;
    std::string FLastError;
    std::int64_t FCurrentStreamPos = 0;
    TLineEndCounts FLineEndCounts;
    std::int64_t FSize = 0;
    bool FAddToLastLine = false;
    bool FAddToStringList = false;
    bool FInString = false;
    bool FMonitorLogFile = false;
    bool FIllegalControlCodes = false;
    bool FLossy = false;
    std::int64_t FInvalidBytes = 0;
    int FTrailingByte = -1; // Invariant: -1 or 0..255
    // The position index: per row its units plus the line end before it, and whether it
    // begins a real line (with FIndexBinary for the binary mode). It lags behind the rows
    // in one pending stretch: rows [FPendingFirst, FPendingEnd) may differ from index rows
    // [FPendingFirst, FPendingIndexEnd) in number and weight; every row before the stretch
    // is the index row of its number, every row behind it the index row
    // FPendingIndexEnd - FPendingEnd further on. FPendingFirst == kNothingPending: the
    // index equals the rows. FPendingEnd == kToTheEnd: the stretch runs to the last row and
    // the last index row, whatever their number. Edits thus cost the index nothing until a
    // lookup reads the stretch in (RefreshIndex).
    mutable TRowIndex FIndex;
    mutable std::size_t FPendingFirst = kNothingPending, FPendingEnd = 0, FPendingIndexEnd = 0;
    // Rows appended below this number join an open stretch at no cost (0: none do).
    mutable std::size_t FAppendsPendUntil = 0;
    mutable bool FIndexBinary = false;
    static constexpr std::size_t kNothingPending = static_cast<std::size_t>(-1);
    static constexpr std::size_t kToTheEnd = static_cast<std::size_t>(-1);
    // A pending stretch longer than this is read in before the next change of the rows.
    static constexpr std::size_t kPendingReach = 1024;
    // A change further than this from the pending stretch has the stretch read in first:
    // joining them would weigh every row between (edits at carets spread over the text).
    static constexpr std::size_t kPendingGap = 32;
};

} // namespace zv
