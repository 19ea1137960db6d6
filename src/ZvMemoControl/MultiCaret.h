// Data of editing at several places at once: one caret of a caret list, a view's whole caret
// state (kept by undo), the position shift that follows a run of edits in document order, and
// the undo record that makes such a run one step.
#pragma once

#include "ZvMemoControl/ZvMemoEditText.h"
#include "ZvMemoControl/ZvMemoUndo.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// One caret of the multi-caret list, with its own selection (row positions).
struct TMultiCursorPos {
    std::int32_t aCurY = 0, aCurX = 0;
    std::int32_t aOldCurXPos = 0; // pixel position kept for up and down
    std::int32_t aSelStartX = 0, aSelStartY = 0, aSelEndX = 0, aSelEndY = 0;
    bool aSelectMode = false; // has a selection

    TZvPos Caret() const { return {aCurX, aCurY}; }
    // The selection's ends in document order (the caret twice without one).
    TZvPos First() const;
    TZvPos Last() const;
};

// Sync edit: the block it works in (0-based columns, the end exclusive) and the word last
// found at the caret.
struct TSyncData {
    bool SelAtCaret = false; // the word was selected: whole-word rules are off
    std::u16string WordAtCaret, oldWordAtCaret;
    std::int32_t WordStartCurY = 0, WordStartCurX = 0; // 1-based column
    std::int32_t xStart = 0, yStart = 0, xEnd = 0, yEnd = 0;
};

// Everything a view needs to show its carets again after undo or redo.
struct TCaretState {
    TZvPos Caret, SelStart, SelEnd;
    bool ColumnMode = false;
    bool MultiEditMode = false;
    std::vector<TMultiCursorPos> Carets;
    TSyncData Sync; // the sync-edit block moves with the edits
};

// Maps positions taken before a run of edits to the text after the edits done so far. Each
// edit must end at or before every position mapped afterwards (edits go in document order);
// the text after an edit's end keeps its shape, so a later position moves with that end.
class TPosShift {
public:
    TZvPos Map(TZvPos p) const;
    // An edit replaced [.., to) (positions in the text before it) and its text ends at `end`.
    // With a log set, the edit is only noted there.
    void Apply(TZvPos to, TZvPos end);
    std::vector<std::pair<TZvPos, TZvPos>>* Log = nullptr;

private:
    std::int32_t FRow = -1;     // original row of the last edit's end; -1 before any edit
    std::int32_t FColShift = 0; // column shift on FRow
    std::int32_t FNewRow = 0;   // where FRow lies now
    std::int32_t FRowShift = 0; // row shift below FRow
};

// A run of edits at several carets as one undo step; the edits are its Items. Undo and redo
// put the carets back as they were before and after.
class TMultiEditUndo : public TScriptStartUndo {
public:
    TCaretState FBefore, FAfter;

protected:
    void PerformUndo(TZvCustomMemo& memo) override;
    void PerformRedo(TZvCustomMemo& memo) override;
};

} // namespace zv
