# The settings file reader and writer under arbitrary input.
zv_fuzz(ini_fuzz SOURCES ${CMAKE_CURRENT_LIST_DIR}/ini_fuzz.cpp DEPS zv_ini RUNS 20000)
