// TZvUndoList: one document's undo history, newest record at index 0. It merges typing runs,
// keeps groups together, holds at most FLimit records, and knows how far the text is from
// the last saved state, which is what the modified flag reports.
#pragma once

#include "ZvMemoControl/ZvMemoUndo.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace zv {

class TZvCustomMemo;

class TZvUndoList {
public:
    // Records' distance from the save point that can never come back to 0.
    static constexpr std::int32_t kBehindSave = -1000;   // first undo past the save point
    static constexpr std::int32_t kUnreachable = -10000; // save point lost

    TZvUndoList() = default;
    TZvUndoList(const TZvUndoList&) = delete;
    TZvUndoList& operator=(const TZvUndoList&) = delete;

    // Stores a record: 0 when stored or merged, -1 when refused (a record is replaying).
    // A new record after undos drops the undone ones.
    int Add(std::unique_ptr<TUndo> record);
    // Undoes or redoes one step (a group is one step; a drag move is one step) in `view`,
    // whose caret and selection follow the records. Does nothing at the list's end. A record
    // that fails clears the list and the view reports message "172"; the document then
    // counts as modified until it is saved.
    void Undo(TZvCustomMemo& view);
    void Redo(TZvCustomMemo& view);
    void Clear();
    // Takes back the newest record as if it had never been added (an empty group's start).
    // Only when nothing is undone.
    void RemoveNewest();
    TUndo* Get(int index) const;
    int Count() const { return static_cast<int>(FItems.size()); }
    bool CanUndo() const { return FPos < Count(); }
    bool CanRedo() const { return FPos > 0; }
    // The current state is the saved one.
    void MarkSaved();
    // The state the text had at the last save is not the current one.
    bool IsModified() const { return FSavePosIndex != 0; }
    // 0 or less: no limit. Dropping records may make the save point unreachable.
    void SetLimit(std::int32_t limit);

    // Told after every change of the list.
    std::function<void()> OnChange;

    std::int32_t FPos = 0;     // records undone so far: next undo is FItems[FPos]
    std::int32_t FLimit = 100; // setting "UndoRedoSize" of section "EditorMisc"
    // FSavePos: bumped by every Add; the saved state is where it equals FPos at save time.
    std::int32_t FSavePos = 0;
    // Distance in records from the saved state: positive ahead of it, kBehindSave and below
    // behind it (undone past it), kUnreachable when it can't come back.
    std::int32_t FSavePosIndex = 0;
    bool FIsPerforming = false;
    bool FScriptUndo = false;

private:
    void UndoOne();
    void RedoOne();
    void DropOldest();
    void Changed();
    // Clears the list after a record failed; the document stays modified when it was, or
    // when part of the step already ran.
    void Fail(const std::exception& e, bool wasModified);

    TZvCustomMemo* FView = nullptr; // the view the running Undo or Redo acts in
    std::deque<std::unique_ptr<TUndo>> FItems;
    int FDoneInStep = 0; // records performed by the running Undo or Redo
};

} // namespace zv
