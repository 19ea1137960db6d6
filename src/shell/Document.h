// One open document: its file, how it was opened, and its text (shared by its views).
#pragma once

#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvTextDocument.h"
#include "shell/FileQue.h"

#include <cstdint>
#include <memory>
#include <string>

namespace zv {

// What a file on disk was when the document last read or wrote it: a save compares it with
// the file right before writing, so that a change made by another program is never
// overwritten unseen.
struct TFileStamp {
    bool Exists = false;
    std::int64_t Size = 0;
    std::int64_t MTimeNs = 0;
    std::uint64_t Inode = 0;
    bool operator==(const TFileStamp&) const = default;
};

class TDocument;

// The stamp of `path` now (symbolic links followed); Exists false when there is no file.
TFileStamp StampOf(const std::string& path);
// Notes how `doc`'s path stands now: whether it is a symbolic link, whether the file has
// other hard links, and its stamp.
void TakeFileState(TDocument& doc);

// How a document is to be opened; a one-shot request set just before LoadFile.
enum TOpenAs { oaNone, oaASCII, oaAnsi, oaUTF8, oaUnicode, oaUnicodeBE, oaBinary, oaHex };

class TDocument {
public:
    TDocument() : Text(std::make_shared<TZvTextDocument>()) {}

    TZvMemoStrings& Lines() { return Text->Lines(); }
    const TZvMemoStrings& Lines() const { return Text->Lines(); }
    // The text differs from what was last read or written (or was marked so).
    bool Modified() const { return Text->Modified(); }
    void SetModified(bool value) { Text->SetModified(value); }

    std::string FFilePath; // absolute path, or the bare name of a new document
    bool FReadOnly = false;
    bool FIsNew = false;     // created for a name that was not on disk
    bool FMonitored = false; // opened to be followed as a log
    bool FBlank = false;     // the blank start document, not yet typed into
    // Opened in a batch: the tab exists, the file is read when the tab first shows, in
    // FDeferredCodePage. Invariant: while set, Lines is empty and unmodified.
    bool FDeferred = false;
    std::int32_t FDeferredCodePage = 50001;
    TFileStamp FStamp; // the file as last read or written
    // The file's last bytes (at most 64) before the end of what was read: a followed log
    // truncated and grown again between two looks no longer has them there.
    std::string FTailProbe;
    // The path was a symbolic link when opened or chosen: saves write through it. A link
    // put there later is replaced by the file instead of followed.
    bool FThroughLink = false;
    bool FHardLinked = false; // the file has other hard links: saves rewrite it in place
    std::int32_t FCaretX = 0, FCaretY = 0; // the caret of its view, kept for a restore
    // The rest of its view, noted when the view closes and remembered per file: the first
    // row shown and the selection (start == end: none).
    std::int32_t FTopLine = 0;
    std::int32_t FSelStartX = 0, FSelStartY = 0, FSelEndX = 0, FSelEndY = 0;
    bool FRestoreView = false; // the view takes caret, selection and top row from here
    // Marks remembered from a former opening, put on the rows by the next read of the file.
    std::optional<TMarksInfo> FRememberedMarks;
    // Folds closed at a former opening (real lines), closed once the first fold pass is in.
    std::vector<std::int32_t> FRememberedFolds;
    std::string FHighlighter; // syntax type in force; empty: chosen by the extension
    bool FAddToMRU = false;   // goes to the recent files (not when reopened by the program)
    TOpenAs FOpenAs = oaNone;
    // The tab group (0..5) whose tab shows the document; its other views may stand anywhere.
    int FTabGroup = 0;
    // Invariant: never null. Rows, undo, saved state and scanner; its views listen to it.
    std::shared_ptr<TZvTextDocument> Text;
};

} // namespace zv
