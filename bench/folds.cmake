# Folding on a million-row C file: the fold pass, its hand-over to the rows, fold all and
# unfold all.
zv_benchmark(zv_folds_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/folds/FoldBench.cpp
  DEPS zv_scanner)
target_compile_definitions(zv_folds_bench PRIVATE ZV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
