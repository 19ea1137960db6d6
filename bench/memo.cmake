# Line store and codec: loading and saving a 100 MB file, iconv on the same file, 10 million
# rows, and the convert-versus-iconv script.
zv_benchmark(zv_memo_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/memo/LoadSaveBench.cpp
  DEPS zv_memo_store)
# Following a log: one round of appended lines into a small and a large followed document.
zv_benchmark(zv_append_tail_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/memo/AppendTailBench.cpp
  DEPS zv_memo_store)
# Sorting a million lines against GNU sort on the same lines, and the undo of that sort.
zv_benchmark(zv_sort_lines_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/memo/SortLinesBench.cpp
  DEPS zv_memo_edit)
# Position lookups (offsets, rows, real lines) and a keystroke on 10 million wrapped rows.
zv_benchmark(zv_position_index_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/memo/PositionIndexBench.cpp
  DEPS zv_memo_store)
