# The editing core and the undo engine (engine: ICU, no Qt).
zv_engine_library(zv_memo_edit
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoBlockEdit.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoCaret.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoFoldCommands.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoChange.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoWrap.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoClipboard.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoColumnSelect.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoDelete.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoEditText.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoInsert.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoLines.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoMultiCaret.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoMultiEdit.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoSyncEdit.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoRows.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoSavedText.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoUndo.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoUndoList.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoUndoState.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoWords.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextChange.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LineMarks.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DocumentSave.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvTextDocument.cpp
  DEPS zv_memo_store zv_platform ICU::uc ICU::i18n)
