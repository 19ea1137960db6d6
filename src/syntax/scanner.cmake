# The line-state scanner, its background thread, the colouring walk and HTML export (engine).
zv_engine_library(zv_scanner
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/ScanContext.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RowScanner.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LiteralRules.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LineStates.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LineScanner.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CutRowScan.cpp
    ${CMAKE_CURRENT_LIST_DIR}/BackgroundSchedule.cpp
    ${CMAKE_CURRENT_LIST_DIR}/BackgroundThread.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ColourWalk.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RowFacts.cpp
    ${CMAKE_CURRENT_LIST_DIR}/BraceMatch.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ColorAt.cpp
    ${CMAKE_CURRENT_LIST_DIR}/HtmlExport.cpp
    ${CMAKE_CURRENT_LIST_DIR}/DocumentScan.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FoldPass.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FoldKeeper.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FoldHandOver.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CodeStructure.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CodeLists.cpp
  DEPS zv_styles zv_syntax zv_memo_store zv_memo_edit)
