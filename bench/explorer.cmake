# The code explorer on a million-row C++ document: the caret moving through it with the panel
# kept in step, and the structure build the panel runs in slices.
if(TARGET zv_ui)
  zv_benchmark(zv_code_explorer_bench
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/explorer/CodeExplorerBench.cpp
    DEPS zv_ui Qt6::Test)
endif()
