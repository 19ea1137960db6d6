// The clipboard variants of the command layer: copy or cut appending to the clipboard's
// text, copy and paste behind the selection, paste leaving the pasted text selected, and the
// plain insert of a text at the caret.
#include "ZvMemoControl/ZvMemo.h"

namespace zv {

bool TZvMemo::acnCopyAndAppend() {
    std::u16string before;
    bool wholeLine = false;
    if (!Clipboard().GetText(before, wholeLine))
        before.clear();
    SplitClipboardText(before);
    if (!CopyToClipboard())
        return false;
    std::u16string added;
    if (!Clipboard().GetText(added, wholeLine))
        return false;
    return Clipboard().SetText(before + added, false);
}

bool TZvMemo::acnCutAndAppend() {
    if (FReadOnly || !CanEdit() || !HasSelection() || !acnCopyAndAppend())
        return false;
    return DeleteSelection();
}

bool TZvMemo::acnCopyAndPaste() {
    if (FReadOnly || !CanEdit() || !HasSelection() || !CopyToClipboard())
        return false;
    TZvPos start, end;
    OrderedSelection(start, end);
    const std::u16string text = GetSelection();
    SetTextCursor(end.X, end.Y);
    return InsertText(text);
}

bool TZvMemo::acnPasteAndSelect() {
    std::u16string text;
    bool wholeLine = false;
    if (!Clipboard().GetText(text, wholeLine))
        return false;
    SplitClipboardText(text);
    return acnInsertText(text, true);
}

bool TZvMemo::acnInsertText(std::u16string_view text, bool select) {
    if (text.empty())
        return false;
    TZvPos start, end;
    OrderedSelection(start, end);
    if (!HasSelection())
        start = Caret();
    const bool keepCaret = FPasteDoNotMoveCursor;
    FPasteDoNotMoveCursor = false;
    const bool done = InsertText(text, true);
    FPasteDoNotMoveCursor = keepCaret;
    if (!done)
        return false;
    if (select)
        SetSelection(start, Caret());
    else if (keepCaret)
        SetTextCursor(start.X, start.Y);
    return true;
}

} // namespace zv
