# The line-state scanner: one-row scan throughput on a 90 MB C file, keystroke to recoloured
# rows on a million-row document, and how long a pause waits for a running sweep.
zv_benchmark(zv_scanner_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/scanner/ScannerBench.cpp
  DEPS zv_scanner)
target_compile_definitions(zv_scanner_bench PRIVATE ZV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")

# Brace matching across a 200,000-row document, swept and fresh.
zv_benchmark(zv_brace_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/scanner/BraceMatchBench.cpp
  DEPS zv_scanner)
target_compile_definitions(zv_brace_bench PRIVATE ZV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
