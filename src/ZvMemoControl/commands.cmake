# The text commands of the command layer (TZvMemo) and the sort they use; part of the
# editing library, so every control has them.
target_sources(zv_memo_edit PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/JsonFormat.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SuperSort.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoAlignColumns.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoBookmarkCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoCaseCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoClipCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoColumnCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoCommentCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoIndentByFold.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoJsonCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoLineBlock.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoLineCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoMoveCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoReformat.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoSelectCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoSortLines.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoTabCommands.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ZvMemoTextCommands.cpp)
