// The editor options of the main settings, applied to one editor control.
#include "shell/MemoOptions.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

void ApplyMemoMiscOptions(TZvCustomMemo& memo, const TMemoMiscOptions& o) {
    memo.DocState().FDefaultEncoding = o.DefaultEncoding;
    memo.DocState().FDetectUTF8 = o.DetectUTF8;
    memo.DocState().FDetectAll = o.DetectAll;

    memo.FAutoIndent = o.AutoIndent;
    memo.FAutoCloseBraces = o.AutoCloseBraces;
    memo.FAutoCloseBracesText = o.AutoCloseBracesText;
    memo.FTabAsSpaces = o.TabAsSpaces;
    memo.DocState().FPreserveTab = o.PreserveTab;
    memo.DocState().FTabSize = std::max(o.TabSize, int32_t{1});
    memo.FSmartTab = o.SmartTab;
    memo.FSmartBackspace = o.SmartBackspace;
    memo.FSmartPaste = o.SmartPaste;
    memo.FOverwritePasteMode = o.OverwritePasteMode;
    memo.FPasteDoNotMoveCursor = o.PasteDoNotMoveCursor;
    memo.FCopyLineToClipboard = o.CopyLineToClipboard;
    memo.FAllowDragText = o.AllowDragText;
    memo.FSelectionMoveCaret = o.SelectionMoveCaret;
    memo.FTripleClickToSelectLine = o.TripleClickToSelectLine;
    memo.FHomeKeyToLineStart = o.HomeKeyToLineStart;
    memo.FEncloseSelectionWithParenthesis = o.EncloseSelectionWithParenthesis;
    memo.FEncloseSelectionWithQuotes = o.EncloseSelectionWithQuotes;
    memo.FNotepadCursor = o.NotepadCursor;
    memo.UndoList().SetLimit(o.UndoRedoSize);
}

void ApplyNewDocumentOptions(TZvCustomMemo& memo, const TMemoMiscOptions& o) {
    ApplyNewDocumentOptions(memo.Lines(), o);
}

void ApplyNewDocumentOptions(TZvMemoStrings& lines, const TMemoMiscOptions& o) {
    // 0 or less is no code page: the system's stands in, as for a missing key.
    lines.SetCodePage(o.DefaultEncoding > 0 ? static_cast<std::uint32_t>(o.DefaultEncoding)
                                            : SystemCodePage());
    lines.SetUseBOM(o.DefaultEncodingBOM);
    lines.SetDefaultSysTextType(o.TypeUnix ? sttUnix : o.TypeMac ? sttMac : sttWindows);
}

void SetMemoMiscOptions(TZvCustomMemo& memo, const TCustomIniFile& settings) {
    ApplyMemoMiscOptions(memo,
                         ReadMemoMiscOptions(settings, static_cast<int32_t>(SystemCodePage())));
}

} // namespace zv
