# The syntax definition readers under arbitrary input.
zv_fuzz(syntax_fuzz SOURCES ${CMAKE_CURRENT_LIST_DIR}/syntax_fuzz.cpp DEPS zv_syntax RUNS 20000)
