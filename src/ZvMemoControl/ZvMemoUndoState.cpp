// The control's side of undo: undo and redo steps, replay with input aids off, groups, the
// save point and the modified state.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

bool TZvCustomMemo::CanUndo() const {
    return !FIsClosing && !FReadOnly && FUndoList->CanUndo();
}

bool TZvCustomMemo::CanRedo() const {
    return !FIsClosing && !FReadOnly && FUndoList->CanRedo();
}

bool TZvCustomMemo::Undo() {
    if (!CanUndo())
        return false;
    FUndoList->Undo();
    UpdateModified();
    return true;
}

bool TZvCustomMemo::Redo() {
    if (!CanRedo())
        return false;
    FUndoList->Redo();
    UpdateModified();
    return true;
}

void TZvCustomMemo::ClearUndoList() {
    // The list's own distance from the save point must not claim the saved text back.
    const bool modified = Modified();
    FUndoList->Clear();
    if (modified)
        FUndoList->FSavePosIndex = TZvUndoList::kUnreachable;
    UpdateModified();
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
    FChangeHistoryUndo = undo;
    FChangeHistoryRedo = !undo;
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
    FChangeHistoryUndo = FChangeHistoryRedo = false;
}

void TZvCustomMemo::BeginUndoGroup() {
    if (FGroupDepth++ == 0)
        FUndoList->Add(std::make_unique<TMacroStartUndo>());
}

void TZvCustomMemo::EndUndoGroup() {
    if (FGroupDepth == 0)
        return;
    if (--FGroupDepth > 0)
        return;
    // An empty group leaves no mark behind.
    TUndo* newest = FUndoList->Get(0);
    if (FUndoList->FPos == 0 && newest && newest->FKind == TUndoKind::MacroStart)
        FUndoList->RemoveNewest();
    else
        FUndoList->Add(std::make_unique<TMacroEndUndo>());
}

void TZvCustomMemo::Saved() {
    for (int row = 0; row < FLines->Count(); ++row) {
        TAttribute* a = FLines->LineAttribute(row);
        if (!a->GetValue(abChanged))
            continue;
        a->SetValue(abChangeSaved, true);
        a->ChangeLastSavedAt = static_cast<std::int8_t>(std::clamp(a->ChangeHistory(), -127, 127));
    }
    FModifiedAndSaved = true;
    FUndoList->MarkSaved();
    FSavedText.Reset(*FLines);
    UpdateModified();
    if (FOnInvalidate && FLetRefresh)
        FOnInvalidate(0, -1);
}

bool TZvCustomMemo::Modified() const {
    // After a change too wide to follow row by row, the undo position answers: back at the
    // save point the text is the saved one; elsewhere it may differ.
    return FSavedText.Overflowed() ? FUndoList->IsModified() : FSavedText.Differs();
}

void TZvCustomMemo::SetModified(bool value) {
    if (value) {
        FUndoList->FSavePosIndex = TZvUndoList::kUnreachable;
        FSavedText.Force();
    } else {
        FUndoList->MarkSaved();
        FSavedText.Reset(*FLines);
    }
    UpdateModified();
}

void TZvCustomMemo::UpdateModified() {
    // Between the steps of an undo or redo the list's position is not yet the text's.
    if (FSavedText.Overflowed() && !FUndoList->FIsPerforming && !FUndoList->IsModified())
        FSavedText.Reset(*FLines); // exact again from here on
    FModified = Modified();
    if (FModified != FLastModified) {
        FLastModified = FModified;
        if (FOnModifiedChange)
            FOnModifiedChange(FModified);
    }
}

void TZvCustomMemo::UndoChanged() {
    if (FOnUndoChange)
        FOnUndoChange(CanUndo(), CanRedo());
    UpdateModified();
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
