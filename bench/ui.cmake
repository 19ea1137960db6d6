# The window with many documents: a command line of 500 files, and a deferred tab's first show.
if(TARGET zv_ui)
  zv_benchmark(zv_window_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/ui/WindowBench.cpp
    DEPS zv_ui)
  target_include_directories(zv_window_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests
    ${CMAKE_CURRENT_LIST_DIR})
  add_dependencies(zv_window_bench zvtool)
endif()
# Starting with the last session of 200 documents: the window shows with deferred tabs.
if(TARGET zv_ui)
  zv_benchmark(zv_session_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/ui/SessionBench.cpp
    DEPS zv_ui)
  target_include_directories(zv_session_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests)
endif()
# Keeping unsaved text while typing into a 10 MB document: the writer's share of a CPU.
if(TARGET zv_ui)
  zv_benchmark(zv_crash_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/ui/CrashKeeperBench.cpp
    DEPS zv_ui)
  target_include_directories(zv_crash_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests)
endif()
# The update pass over every action per idle round, and the menu search's filter per key.
if(TARGET zv_ui)
  zv_benchmark(zv_actions_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/ui/ActionsBench.cpp
    DEPS zv_ui)
  target_include_directories(zv_actions_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests
    ${CMAKE_CURRENT_LIST_DIR})
endif()
