// Undo records: TUndo and the classes for typing, deleting, pasting, replacing a selection,
// dragging and grouping. A record knows how to undo and redo itself against its control.
// Positions in a record are unwrapped (logical line, column in the line), so a record stays
// valid when wrap is switched or the window width changes.
#pragma once

#include "ZvMemoControl/ZvMemoEditText.h"

#include <memory>
#include <string>
#include <vector>

namespace zv {

class TZvCustomMemo;

// Kinds of record, for the list's group and drag logic (no RTTI needed to tell them).
enum class TUndoKind : std::uint8_t {
    Plain,
    InsertChar,
    OverwriteChar,
    DeleteChar,
    DeleteBuf,
    Paste,
    Replace,
    MacroStart,
    MacroEnd,
    ScriptStart,
    ScriptEnd
};

// One undoable change: at unwrapped position FAt the text FRemoved was replaced by
// FInserted. Undo puts FRemoved back over FInserted; redo does the reverse; both go through
// the control's replay path, with every input aid off, so they reproduce exact bytes.
class TUndo {
public:
    TUndo(TUndoKind kind, std::string action) : FKind(kind), FAction(std::move(action)) {}
    virtual ~TUndo() = default;
    TUndo(const TUndo&) = delete;
    TUndo& operator=(const TUndo&) = delete;

    // Takes `other` (a newer record) into this one when they form one run; true if taken,
    // and then the caller drops `other`. The base never merges.
    virtual bool Append(TUndo& other);
    // The shared frame: position the caret, perform, restore the caret before (undo) or
    // after (redo). Throws std::runtime_error when the text no longer fits the record.
    void Undo(TZvCustomMemo& memo);
    void Redo(TZvCustomMemo& memo);
    // Rebuilds FActionText from the record's texts: the first 16 characters, "..." when
    // longer, each line end shown as "[CRLF]".
    void BuildActionText();

    TUndoKind Kind() const { return FKind; }
    bool IsGroupMark() const;

    // Fills the change part of the record: where (unwrapped and as a row position), what
    // went, what came.
    void SetChange(TZvPos at, TZvPos atRow, TEditText removed, TEditText inserted);

    TUndoKind FKind;
    std::string FAction;        // three-digit code: key into the language section "UndoActions"
    std::u16string FActionText; // text for the history list
    // Caret before (…0) and after the edit, unwrapped.
    std::int32_t FUndoCurX0 = 0, FUndoCurY0 = 0, FUndoCurX = 0, FUndoCurY = 0;
    // Selection before the edit, unwrapped; -1 when there was none.
    std::int32_t FUndoSelStartX = -1, FUndoSelStartY = -1, FUndoSelEndX = -1, FUndoSelEndY = -1;
    bool FColumn = false;    // column selection was on
    bool FSavePoint = false; // the text was saved right after this record: never merge into it
    bool FDragDrop = false;  // half of a drag move; the list undoes/redoes the other half too
    bool FIsBackspace = false;
    // Invariants: FAt lies in the text as it is after the edit; FInserted starts there.
    // FAtRow is FAt as a row position while the rows are cut as they were at the edit.
    TZvPos FAt;
    TZvPos FAtRow;
    TEditText FRemoved;
    TEditText FInserted;
    // Group content (script runs): performed as one step, newest last.
    std::vector<std::unique_ptr<TUndo>> Items;

protected:
    virtual void PerformUndo(TZvCustomMemo& memo);
    virtual void PerformRedo(TZvCustomMemo& memo);
    // The rows that `text` covers from the record's position now: by row position while the
    // rows are cut as at the edit (so replay restores the cuts too), else by line position.
    void RowRange(const TZvCustomMemo& memo, const TEditText& text, TZvPos& from, TZvPos& to) const;
};

// A record that restores the selection as it was before the edit.
class TSelUndo : public TUndo {
public:
    using TUndo::TUndo;
    // Stores the selection ends, unwrapped.
    void SetSelection(TZvCustomMemo& memo, TZvPos start, TZvPos end);
    bool FUndoBackspace = false;
    bool FUndoDelChar = false;
};

// Typed text (and Enter): a run of typing is one record however long.
class TInsertCharUndo : public TUndo {
public:
    TInsertCharUndo() : TUndo(TUndoKind::InsertChar, "008") {}
    bool Append(TUndo& other) override;
};

// Characters typed over in overtype mode; never merges.
class TOverwriteCharUndo : public TUndo {
public:
    TOverwriteCharUndo() : TUndo(TUndoKind::OverwriteChar, "014") {}
};

// Backspace or Delete; a run in one direction is one record.
class TDeleteCharUndo : public TUndo {
public:
    explicit TDeleteCharUndo(bool backspace) : TUndo(TUndoKind::DeleteChar, "005") {
        FIsBackspace = backspace;
    }
    bool Append(TUndo& other) override;
};

// A deleted selection (also the delete half of a drag move).
class TDeleteBufUndo : public TSelUndo {
public:
    TDeleteBufUndo() : TSelUndo(TUndoKind::DeleteBuf, "023") {}
};

// Pasted or inserted text, a typed tab, the insert half of a drag move.
class TPasteUndo : public TUndo {
public:
    TPasteUndo() : TUndo(TUndoKind::Paste, "015") {}
    bool FInsertAtBOL = false; // a whole line was pasted above the caret's row
};

// A selection replaced by typed or pasted text.
class TReplaceUndo : public TSelUndo {
public:
    TReplaceUndo() : TSelUndo(TUndoKind::Replace, "028") {}
    bool FInsertAtBOL = false;
    bool FOverwriteReplace = false;
};

// A whole line deleted, with its line end.
class TDeleteLineUndo : public TSelUndo {
public:
    TDeleteLineUndo() : TSelUndo(TUndoKind::Plain, "006") {}
};

// A new line inserted.
class TInsertLineUndo : public TUndo {
public:
    TInsertLineUndo() : TUndo(TUndoKind::Plain, "009") {}
};

// A line (or the selected lines) duplicated below itself.
class TDuplicateLinesExUndo : public TUndo {
public:
    TDuplicateLinesExUndo() : TUndo(TUndoKind::Plain, "007") {}
};

// Group marks: the records between an end and its start are one undo step.
class TMacroStartUndo : public TUndo {
public:
    TMacroStartUndo() : TUndo(TUndoKind::MacroStart, "032") {}
};
class TMacroEndUndo : public TUndo {
public:
    TMacroEndUndo() : TUndo(TUndoKind::MacroEnd, "033") {}
};
// A script's edits go into the start record's Items and count as one entry.
class TScriptStartUndo : public TUndo {
public:
    TScriptStartUndo() : TUndo(TUndoKind::ScriptStart, "035") {}

protected:
    void PerformUndo(TZvCustomMemo& memo) override;
    void PerformRedo(TZvCustomMemo& memo) override;
};
class TScriptEndUndo : public TUndo {
public:
    TScriptEndUndo() : TUndo(TUndoKind::ScriptEnd, "036") {}
};

} // namespace zv
