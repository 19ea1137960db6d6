# The text codec under arbitrary bytes: loads never crash; UTF-8 and UTF-16 round-trip.
zv_fuzz(codec_fuzz SOURCES ${CMAKE_CURRENT_LIST_DIR}/codec_fuzz.cpp DEPS zv_memo_store RUNS 100000)
