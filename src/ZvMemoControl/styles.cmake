# Style tables of one syntax and the per-row scanner state (engine: ICU, PCRE2 and pugixml, no Qt).
zv_engine_library(zv_styles
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/CaseFold.cpp
    ${CMAKE_CURRENT_LIST_DIR}/KeywordTable.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LineStyle.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MemoStyleHost.cpp
    ${CMAKE_CURRENT_LIST_DIR}/StyleCompanion.cpp
    ${CMAKE_CURRENT_LIST_DIR}/StyleCssHelp.cpp
    ${CMAKE_CURRENT_LIST_DIR}/StyleRegex.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvMemoStyles.cpp
  DEPS zv_ini PkgConfig::PCRE2 ICU::uc pugixml::pugixml)
