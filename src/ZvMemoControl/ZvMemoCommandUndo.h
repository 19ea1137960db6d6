// Undo records of the text commands. Each command is one change of the control, so each
// record undoes and redoes by the shared replay of its removed and inserted text; the
// classes differ in the action code the history list shows (language section "UndoActions").
#pragma once

#include "ZvMemoControl/ZvMemoUndo.h"

namespace zv {

// A text command's record; `code` is its three-digit action code.
class TCommandUndo : public TSelUndo {
public:
    explicit TCommandUndo(const char* code) : TSelUndo(TUndoKind::Plain, code) {}
};

#define ZV_COMMAND_UNDO(name, code)                                                                \
    class name : public TCommandUndo {                                                             \
    public:                                                                                        \
        name() : TCommandUndo(code) {}                                                             \
    };

ZV_COMMAND_UNDO(TBlockCommentUndo, "001")
ZV_COMMAND_UNDO(TBlockUnCommentUndo, "003")
ZV_COMMAND_UNDO(TDuplicateLinesUndo, "007")
ZV_COMMAND_UNDO(TReplaceAllUndo, "016")
ZV_COMMAND_UNDO(TAlignColumnsUndo, "017")
ZV_COMMAND_UNDO(TDeleteBlankLinesUndo, "022")
ZV_COMMAND_UNDO(TJoinLinesUndo, "024")
ZV_COMMAND_UNDO(TMoveLinesDownUndo, "025")
ZV_COMMAND_UNDO(TMoveLinesUpUndo, "026")
ZV_COMMAND_UNDO(TRemoveTrailingUndo, "027")
ZV_COMMAND_UNDO(TSplitLinesUndo, "029")
ZV_COMMAND_UNDO(TCompressLinesUndo, "030")
ZV_COMMAND_UNDO(TDeleteTrailingBlankLinesUndo, "030")
ZV_COMMAND_UNDO(TDeleteLinesUndo, "031")
ZV_COMMAND_UNDO(TDelBookmarkedLinesUndo, "021")
ZV_COMMAND_UNDO(TSortUndo, "034")
ZV_COMMAND_UNDO(TIndentByFoldUndo, "037")

#undef ZV_COMMAND_UNDO

} // namespace zv
