# Search and replace in a document: find all of a literal and of a regular expression in
# 100 MB beside grep and pcre2grep on the same file, replace all of a million hits and its
# undo, and the quick-find keystroke on a million rows.
zv_benchmark(zv_search_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/search/SearchBench.cpp
  DEPS zv_search)
