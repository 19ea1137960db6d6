// From a document to its entry in the memory per file, and back.
#include "shell/DocumentMemory.h"

#include "ZvMemoControl/LineMarks.h"
#include "ZvMemoControl/TextAttribute.h"
#include "ZvMemoControl/ZvMemoFolds.h"
#include "shell/MainFormHelper.h"

#include <ctime>

namespace zv {

TFileInfo FileInfoOf(const TDocument& doc) {
    TFileInfo info;
    info.LocalFile = doc.FFilePath;
    info.DateTime = static_cast<std::int64_t>(std::time(nullptr));
    info.Cursor = TCursorInfo{doc.FCaretX,    doc.FCaretY,  doc.FTopLine, doc.FSelStartX,
                              doc.FSelStartY, doc.FSelEndX, doc.FSelEndY};
    info.Enc = doc.Lines().CodePage();
    info.BOM = doc.Lines().UseBOM();
    if (!doc.FHighlighter.empty())
        info.Highlighter = doc.FHighlighter;
    // Read-only by the user's choice: a file's own permissions are read again each time.
    info.ReadOnly = doc.FReadOnly && !IsReadOnlyFile(doc.FFilePath);
    // A deferred tab never read keeps what it was given.
    info.Marks = doc.FRememberedMarks ? doc.FRememberedMarks : MarksOf(doc.Lines());
    info.FoldLines =
        !doc.FRememberedFolds.empty() ? doc.FRememberedFolds : ClosedFoldLines(doc.Lines());
    return info;
}

void RecallFileData(const TFileQue& fileQ, TDocument& doc, bool detect, bool cursor) {
    const auto info = fileQ.GetFileData(doc.FFilePath);
    if (!info)
        return;
    // Only the code page: whether the file starts with a BOM is read from its bytes, so
    // that saving it unchanged gives the same bytes back.
    if (detect && info->Enc)
        doc.FDeferredCodePage = static_cast<std::int32_t>(*info->Enc);
    if (cursor && info->Cursor) {
        const TCursorInfo& c = *info->Cursor;
        doc.FCaretX = c.CurX;
        doc.FCaretY = c.CurY;
        doc.FTopLine = c.TopLine;
        doc.FSelStartX = c.SelStartX;
        doc.FSelStartY = c.SelStartY;
        doc.FSelEndX = c.SelEndX;
        doc.FSelEndY = c.SelEndY;
        doc.FRestoreView = true;
    }
    if (info->Highlighter)
        doc.FHighlighter = *info->Highlighter;
    doc.FRememberedMarks = info->Marks;
    doc.FRememberedFolds = info->FoldLines.value_or(std::vector<std::int32_t>{});
    doc.FReadOnly = doc.FReadOnly || info->ReadOnly.value_or(false);
}

std::optional<TMarksInfo> MarksOf(const TZvMemoStrings& lines) {
    TMarksInfo marks;
    bool any = false;
    for (int row = 0; row < lines.Count(); ++row) {
        const TAttribute& a = lines.GetLineAttribute(row);
        const bool linemark = a.GetValue(abLinemark);
        if (a.Bookmark < 0 && !linemark)
            continue;
        any = true;
        const int line = lines.GetRealLine(row);
        if (a.Bookmark >= 0 && a.Bookmark < kBookmarkCount)
            marks.Bookmarks[static_cast<size_t>(a.Bookmark)] = line;
        else if (linemark)
            marks.Linemarks.push_back(line);
    }
    return any ? std::optional(marks) : std::nullopt;
}

void ApplyMarks(TZvMemoStrings& lines, const TMarksInfo& marks) {
    const auto rowOf = [&lines](int line) {
        const int row = lines.GetWrapIndex(line);
        return row < lines.Count() ? row : -1;
    };
    for (const int line : marks.Linemarks)
        if (const int row = rowOf(line); row >= 0 && !HasLinemark(lines, row))
            ToggleLinemark(lines, row);
    for (int number = 0; number < kBookmarkCount; ++number)
        if (const int line = marks.Bookmarks[static_cast<size_t>(number)]; line >= 0)
            if (const int row = rowOf(line); row >= 0 && GetBookmark(lines, row) != number)
                SetBookmark(lines, row, number);
}

std::vector<std::int32_t> ClosedFoldLines(const TZvMemoStrings& lines) {
    std::vector<std::int32_t> folds;
    for (int row = 0; row < lines.Count(); ++row)
        if (IsFoldHead(lines, row) && IsFoldClosed(lines, row))
            folds.push_back(lines.GetRealLine(row));
    return folds;
}

void CloseFoldsAt(TZvMemoStrings& lines, const std::vector<std::int32_t>& folds) {
    // Inner folds first: closing an outer one hides the heads of those inside it.
    for (auto line = folds.rbegin(); line != folds.rend(); ++line)
        if (const int row = lines.GetWrapIndex(*line);
            row < lines.Count() && IsFoldHead(lines, row) && !IsFoldClosed(lines, row))
            ToggleNode(lines, row, false);
}

} // namespace zv
