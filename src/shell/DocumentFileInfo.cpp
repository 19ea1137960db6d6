// From a document to its entry in the memory per file, and back.
#include "shell/DocumentMemory.h"

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
    doc.FReadOnly = doc.FReadOnly || info->ReadOnly.value_or(false);
}

} // namespace zv
