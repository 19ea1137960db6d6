# Search and replace in a document: plain and regular-expression hits with their filters,
# replacement texts, replace all as one undo step, and the highlight lists built on them
# (engine: ICU, and PCRE2 through zv_styles' regex wrapper, no Qt).
zv_engine_library(zv_search
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/HighlightLists.cpp
    ${CMAKE_CURRENT_LIST_DIR}/RegexPattern.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SearchOptions.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SearchReplace.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextSearch.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TextSearchRegex.cpp
  DEPS zv_memo_edit zv_styles ICU::uc)
