# Settings files: key lookups, loading and saving a settings file.
zv_benchmark(zv_ini_bench SOURCES IniBench.cpp DEPS zv_ini)
