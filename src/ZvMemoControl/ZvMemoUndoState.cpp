// The control's side of undo: undo and redo steps, replay with input aids off, groups, the
// save point and the modified state.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

bool TZvCustomMemo::CanUndo() const {
    return !FIsClosing && !FReadOnly && FDoc->UndoList().CanUndo();
}

bool TZvCustomMemo::CanRedo() const {
    return !FIsClosing && !FReadOnly && FDoc->UndoList().CanRedo();
}

bool TZvCustomMemo::Undo() {
    if (!CanUndo())
        return false;
    UndoList().Undo(*this);
    return true;
}

bool TZvCustomMemo::Redo() {
    if (!CanRedo())
        return false;
    UndoList().Redo(*this);
    return true;
}

void TZvCustomMemo::ClearUndoList() {
    FDoc->ClearUndo();
}

TZvCustomMemo::TInputAids TZvCustomMemo::BeginReplay(bool undo) {
    const TInputAids saved{FAutoIndent,
                           FSmartBackspace,
                           FOverwrite,
                           FTabAsSpaces,
                           FAutoCloseBraces,
                           FAutoCloseBracesText,
                           FSmartTab,
                           FSmartPaste,
                           FOverwritePasteMode,
                           FEncloseSelectionWithParenthesis,
                           FEncloseSelectionWithQuotes,
                           FSyncEditMode,
                           FFolding};
    FAutoIndent = FSmartBackspace = FOverwrite = FTabAsSpaces = false;
    FAutoCloseBraces = FAutoCloseBracesText = FSmartTab = FSmartPaste = false;
    FOverwritePasteMode = FEncloseSelectionWithParenthesis = FEncloseSelectionWithQuotes = false;
    FSyncEditMode = FFolding = false;
    FDoc->FChangeHistoryUndo = undo;
    FDoc->FChangeHistoryRedo = !undo;
    return saved;
}

void TZvCustomMemo::EndReplay(const TInputAids& saved) {
    FAutoIndent = saved.AutoIndent;
    FSmartBackspace = saved.SmartBackspace;
    FOverwrite = saved.Overwrite;
    FTabAsSpaces = saved.TabAsSpaces;
    FAutoCloseBraces = saved.AutoCloseBraces;
    FAutoCloseBracesText = saved.AutoCloseBracesText;
    FSmartTab = saved.SmartTab;
    FSmartPaste = saved.SmartPaste;
    FOverwritePasteMode = saved.OverwritePasteMode;
    FEncloseSelectionWithParenthesis = saved.EncloseWithParenthesis;
    FEncloseSelectionWithQuotes = saved.EncloseWithQuotes;
    FSyncEditMode = saved.SyncEditMode;
    FFolding = saved.Folding;
    FDoc->FChangeHistoryUndo = FDoc->FChangeHistoryRedo = false;
}

void TZvCustomMemo::BeginUndoGroup() {
    if (FGroupDepth++ == 0)
        UndoList().Add(std::make_unique<TMacroStartUndo>());
}

void TZvCustomMemo::EndUndoGroup() {
    if (FGroupDepth == 0)
        return;
    if (--FGroupDepth > 0)
        return;
    // An empty group leaves no mark behind.
    TZvUndoList& undo = UndoList();
    TUndo* newest = undo.Get(0);
    if (undo.FPos == 0 && newest && newest->FKind == TUndoKind::MacroStart)
        undo.RemoveNewest();
    else
        undo.Add(std::make_unique<TMacroEndUndo>());
}

void TZvCustomMemo::Saved() {
    FModifiedAndSaved = true;
    FDoc->Saved();
    if (FOnInvalidate && FLetRefresh)
        FOnInvalidate(0, -1); // the change marks turn to saved ones
}

bool TZvCustomMemo::Modified() const {
    return FDoc->Modified();
}

void TZvCustomMemo::SetModified(bool value) {
    FDoc->SetModified(value);
}

void TZvCustomMemo::ModifiedChanged(bool modified) {
    if (FOnModifiedChange)
        FOnModifiedChange(modified);
}

void TZvCustomMemo::UndoChanged() {
    if (FOnUndoChange)
        FOnUndoChange(CanUndo(), CanRedo());
}

// ---- TZvMemo ----------------------------------------------------------------------------

void TZvMemo::acnDelete() {
    DeleteChar();
}

void TZvMemo::acnToggleOverwrite() {
    FOverwrite = !FOverwrite;
    if (FOnOverwriteToggle)
        FOnOverwriteToggle(FOverwrite);
}

} // namespace zv
