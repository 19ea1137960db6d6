// What the program remembers per file between runs ("Data/FileInfo.xml"): caret, top row,
// selection, encoding, syntax, read-only state and line marks, newest first, at most
// FMaxIndex entries.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zv {

class TCustomIniFile;

// Caret, first shown row and selection of a document's view (0-based rows and columns).
struct TCursorInfo {
    std::int32_t CurX = 0, CurY = 0, TopLine = 0;
    std::int32_t SelStartX = 0, SelStartY = 0, SelEndX = 0, SelEndY = 0;
    bool operator==(const TCursorInfo&) const = default;
};

// Bookmarks and plain line marks, by real (logical) line so that a wrap width of the next
// opening does not move them. Bookmarks[n] is the line of bookmark n, -1 when unset.
struct TMarksInfo {
    std::array<std::int32_t, 10> Bookmarks{-1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    std::vector<std::int32_t> Linemarks; // ascending
    bool operator==(const TMarksInfo&) const = default;
};

// One file's entry. A group that is not set is neither written nor restored.
struct TFileInfo {
    std::string LocalFile;     // absolute path
    std::int64_t DateTime = 0; // when it was remembered, seconds since 1970 (UTC)
    std::optional<TCursorInfo> Cursor;
    std::optional<std::uint32_t> Enc; // code page
    std::optional<bool> BOM;
    std::optional<std::string> Highlighter; // syntax type name
    std::optional<bool> ReadOnly;
    std::optional<TMarksInfo> Marks; // "BookmarkLines", "LinemarkLines"
    // Real lines heading a closed fold, ascending ("FoldLines").
    std::optional<std::vector<std::int32_t>> FoldLines;
    bool operator==(const TFileInfo&) const = default;
};

// Which groups are stored and restored, and how many entries are kept
// (section "FileInfo" of the settings).
struct TFileQueOptions {
    bool StoreCursor = true;
    bool StoreEncoding = true;
    bool StoreHighlighter = true;
    bool StoreReadOnly = true;
    bool StoreBookmarks = true;
    bool StoreFoldState = true;
    std::int32_t MaxIndex = 500; // below 1 counts as 1
    bool operator==(const TFileQueOptions&) const = default;
};
TFileQueOptions ReadFileQueOptions(const TCustomIniFile& settings);

// What LoadList found.
enum class TFileQueLoad {
    NoFile,  // nothing remembered yet
    Loaded,  // entries read
    Damaged, // unreadable: kept aside under FDamagedCopy, the memory starts empty
};

class TFileQue {
public:
    TFileQue(std::filesystem::path file, TFileQueOptions options);

    // Reads the file. A file that is not well-formed XML with a "Files" root is renamed
    // to "<name>.damaged-<UTC time>" (never overwriting an earlier copy) and the memory
    // starts empty; nothing else is ever deleted. When the rename fails the file stays in
    // place (DamagedCopy is its own name) and SaveFile refuses to write over it.
    TFileQueLoad LoadList();
    const std::filesystem::path& DamagedCopy() const { return FDamagedCopy; }
    // Writes all entries atomically, newest first; false (the old file kept) on failure.
    bool SaveFile(std::string* error = nullptr) const;

    // Puts `info` at the head, replacing an entry of the same path, with only the groups
    // the Store flags allow; the oldest entries beyond MaxIndex go. A path that is not
    // absolute, or that XML cannot carry back unchanged (control characters, bytes that are
    // no UTF-8), is ignored (false); such a syntax name is left out.
    bool AddFiledata(TFileInfo info);
    // The entry of `path` with only the groups the Store flags allow, or null.
    std::optional<TFileInfo> GetFileData(const std::string& path) const;
    // Remembered code page and BOM of `path` (when encodings are stored).
    bool GetEncoding(const std::string& path, std::uint32_t& codePage, bool& bom) const;

    const std::vector<TFileInfo>& Entries() const { return FInfoList; }
    const TFileQueOptions& Options() const { return FOptions; }
    void SetOptions(const TFileQueOptions& options);

private:
    const TFileInfo* Find(const std::string& path) const;
    TFileInfo Filtered(TFileInfo info) const;
    void Prune();

    std::filesystem::path FFileName;
    TFileQueOptions FOptions;
    std::vector<TFileInfo> FInfoList; // newest first
    std::filesystem::path FDamagedCopy;
    bool FWriteRefused = false; // a damaged file could not be kept aside
};

// Serialises entries to the file's bytes, and back. ParseFileInfo returns false for text
// that is not a well-formed "Files" document; an entry without a path is skipped, and a
// key that does not parse leaves its group unset.
std::string FileInfoToXml(const std::vector<TFileInfo>& entries);
bool ParseFileInfo(std::string_view bytes, std::vector<TFileInfo>& entries);

} // namespace zv
