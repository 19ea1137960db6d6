# Syntax loading and keyword lookups.
zv_benchmark(zv_syntax_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/syntax/SyntaxBench.cpp DEPS zv_syntax)
target_compile_definitions(zv_syntax_bench PRIVATE ZV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
