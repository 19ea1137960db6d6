# The line store and the text file codec (engine: ICU, no Qt).
zv_engine_library(zv_memo_store
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/CodePages.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Converter.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FileType.cpp
    ${CMAKE_CURRENT_LIST_DIR}/OpenTextFile.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RowIndex.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RowSplitter.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RowText.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Streams.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextAttribute.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStrings.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStringsConvert.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStringsFit.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStringsLoad.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStringsSave.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStringsText.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStringsTail.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStringsWrap.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoFolds.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ShownRows.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvUniUtils.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvWideStrings.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WrapRows.cpp
  DEPS ICU::uc ICU::i18n zv_common)
