# Word wrap and long lines: wrapping and unwrapping a 100 MB file of 2 million lines, and a
# keystroke in the middle of one 10 MB line with its recolouring.
zv_benchmark(zv_wrap_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/wrap/WrapBench.cpp
  DEPS zv_memo_edit zv_scanner)
target_compile_definitions(zv_wrap_bench PRIVATE ZV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
