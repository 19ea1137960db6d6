// The undo list: adding with merging and groups, the limit, undo and redo steps, and the
// distance from the saved state.
#include "ZvMemoControl/ZvMemoUndoList.h"

#include "ZvMemoControl/ZvMemo.h"

#include <stdexcept>

namespace zv {

int TZvUndoList::Add(std::unique_ptr<TUndo> record) {
    if (!record || FIsPerforming)
        return -1;
    if (!FItems.empty() && FPos == 0 && FItems.front()->Append(*record))
        return 0;
    while (FPos > 0) {
        FItems.pop_front();
        --FPos;
    }
    record->BuildActionText();
    if (record->FKind == TUndoKind::ScriptEnd) {
        FScriptUndo = false;
        return 0;
    }
    if (FScriptUndo && !FItems.empty() && FItems.front()->FKind == TUndoKind::ScriptStart) {
        FItems.front()->Items.push_back(std::move(record));
        Changed();
        return 0;
    }
    if (record->FKind == TUndoKind::ScriptStart)
        FScriptUndo = true;
    FItems.push_front(std::move(record));
    FSavePosIndex = FSavePosIndex > kBehindSave ? FSavePosIndex + 1 : kUnreachable;
    ++FSavePos;
    while (FLimit > 0 && Count() > FLimit)
        DropOldest();
    Changed();
    return 0;
}

void TZvUndoList::DropOldest() {
    FItems.pop_back();
    // The saved state lay at or below the dropped record: it can't be reached again.
    if (FSavePosIndex > 0 && FSavePosIndex > Count() - FPos)
        FSavePosIndex = kUnreachable;
}

void TZvUndoList::SetLimit(std::int32_t limit) {
    FLimit = limit;
    while (FLimit > 0 && Count() > FLimit && FPos < Count())
        DropOldest();
    Changed();
}

TUndo* TZvUndoList::Get(int index) const {
    return index >= 0 && index < Count() ? FItems[static_cast<std::size_t>(index)].get() : nullptr;
}

void TZvUndoList::Clear() {
    FItems.clear();
    FPos = 0;
    FSavePos = 0;
    FSavePosIndex = 0;
    FScriptUndo = false;
    Changed();
}

void TZvUndoList::RemoveNewest() {
    if (FPos != 0 || FItems.empty())
        return;
    FItems.pop_front();
    --FSavePos;
    if (FSavePosIndex > 0)
        --FSavePosIndex;
    Changed();
}

void TZvUndoList::MarkSaved() {
    FSavePosIndex = 0;
    FSavePos = FPos;
    if (FPos < Count())
        FItems[static_cast<std::size_t>(FPos)]->FSavePoint = true;
}

void TZvUndoList::Changed() {
    if (OnChange)
        OnChange();
}

void TZvUndoList::Fail(const std::exception&, bool wasModified) {
    FIsPerforming = false;
    // The text may differ from the saved one now, and no record can tell by how much.
    const bool modified = wasModified || FDoneInStep > 0;
    Clear();
    if (modified)
        FSavePosIndex = kUnreachable;
    if (FView)
        FView->ReportUndoError(
            "We have encountered an undo error. The undo buffer has been cleared.");
}

// One record back, without the group logic.
void TZvUndoList::UndoOne() {
    TUndo& record = *FItems[static_cast<std::size_t>(FPos)];
    if (!record.IsGroupMark())
        record.Undo(*FView);
    ++FDoneInStep;
    ++FPos;
    FSavePosIndex = FSavePosIndex != 0 ? FSavePosIndex - 1 : kBehindSave;
}

void TZvUndoList::RedoOne() {
    --FPos;
    FSavePosIndex = FSavePosIndex == kBehindSave ? 0 : FSavePosIndex + 1;
    TUndo& record = *FItems[static_cast<std::size_t>(FPos)];
    if (!record.IsGroupMark())
        record.Redo(*FView);
    ++FDoneInStep;
}

void TZvUndoList::Undo(TZvCustomMemo& view) {
    if (!CanUndo() || FIsPerforming)
        return;
    FView = &view;
    const bool wasModified = IsModified();
    FDoneInStep = 0;
    FIsPerforming = true;
    try {
        const TUndo& first = *FItems[static_cast<std::size_t>(FPos)];
        const TUndoKind kind = first.FKind;
        const bool dragHalf = kind == TUndoKind::Paste && first.FDragDrop;
        UndoOne();
        if (kind == TUndoKind::MacroEnd) {
            while (CanUndo()) {
                const bool start =
                    FItems[static_cast<std::size_t>(FPos)]->FKind == TUndoKind::MacroStart;
                UndoOne();
                if (start)
                    break;
            }
        }
        if (dragHalf && CanUndo() && FItems[static_cast<std::size_t>(FPos)]->FDragDrop)
            UndoOne();
    } catch (const std::exception& e) {
        Fail(e, wasModified);
        return;
    }
    FIsPerforming = false;
    Changed();
}

void TZvUndoList::Redo(TZvCustomMemo& view) {
    if (!CanRedo() || FIsPerforming)
        return;
    FView = &view;
    const bool wasModified = IsModified();
    FDoneInStep = 0;
    FIsPerforming = true;
    try {
        RedoOne();
        const TUndo& first = *FItems[static_cast<std::size_t>(FPos)];
        if (first.FKind == TUndoKind::MacroStart) {
            while (CanRedo()) {
                RedoOne();
                if (FItems[static_cast<std::size_t>(FPos)]->FKind == TUndoKind::MacroEnd)
                    break;
            }
        }
        if (first.FKind == TUndoKind::DeleteBuf && first.FDragDrop && CanRedo() &&
            FItems[static_cast<std::size_t>(FPos - 1)]->FDragDrop)
            RedoOne();
    } catch (const std::exception& e) {
        Fail(e, wasModified);
        return;
    }
    FIsPerforming = false;
    Changed();
}

} // namespace zv
