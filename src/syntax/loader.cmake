# The syntax definition loader: ".syx" reader, multi-syntax files, extension to syntax.
zv_engine_library(zv_syntax
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/SyxText.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SyxReader.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SyxOptions.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SyxBlocks.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SyxConvert.cpp
    ${CMAKE_CURRENT_LIST_DIR}/BuiltinSyntaxes.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MultiSyntax.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SyntaxFolders.cpp
    ${CMAKE_CURRENT_LIST_DIR}/FirstLine.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SyntaxSelect.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SyntaxSetCheck.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TypeColors.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ZvSyntax.cpp
  DEPS zv_styles zv_common)

# The authoring check of a syntax folder; the build runs it on the shipped set.
add_executable(zv_syxcheck ${CMAKE_CURRENT_LIST_DIR}/SyxCheckMain.cpp)
target_link_libraries(zv_syxcheck PRIVATE zv_syntax)
set_target_properties(zv_syxcheck PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tools)
