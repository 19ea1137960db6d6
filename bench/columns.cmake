# Column block commands and commands at every caret on a large document.
zv_benchmark(zv_column_commands_bench
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/memo_edit/ColumnCommandBench.cpp DEPS zv_memo_edit)
