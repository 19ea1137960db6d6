# Editing at several places: a keystroke at 1,000 carets of a large document.
zv_benchmark(zv_carets_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/memo_edit/MultiCaretBench.cpp
  DEPS zv_memo_edit)
