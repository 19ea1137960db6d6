# Helpers that declare targets by layer, so the layering is checked by the build (the checks
# themselves: ZvLayers.cmake).
include(GoogleTest)
include(${CMAKE_CURRENT_LIST_DIR}/ZvLayers.cmake)

# zv_layer_library(NAME LAYER SOURCES... [DEPS ...]): a static library of one layer.
function(zv_layer_library name layer)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_DEPS})
  zv_layer(${name} ${layer})
endfunction()

# Engine: the standard library and the non-Qt dependencies only.
function(zv_engine_library name)
  zv_layer_library(${name} engine ${ARGN})
endfunction()

# Services: QtCore/QtNetwork, no widgets.
function(zv_service_library name)
  zv_layer_library(${name} services ${ARGN})
  target_link_libraries(${name} PUBLIC Qt6::Core)
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
endfunction()

# UI: the widget layer.
function(zv_ui_library name)
  zv_layer_library(${name} ui ${ARGN})
  target_link_libraries(${name} PUBLIC Qt6::Widgets)
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
endfunction()

# zv_gtest(NAME SOURCES... DEPS ... [LABELS ...]): one GoogleTest program registered with CTest.
function(zv_gtest name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPS} GTest::gtest GTest::gmock GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_compile_definitions(${name} PRIVATE
    ZV_TEST_TREE="${ZV_TREE}" ZV_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    ZV_TOOL_PATH="${ZV_TREE}/bin/zvtool" ZV_APP_PATH="${ZV_TREE}/bin/zevrit")
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  # Labels (and the leak checker's suppressions) are set by a file CTest reads after the
  # discovered tests: passed through the discovery, a list would be split into separate
  # (wrong) properties.
  set(properties "")
  if(ARG_LABELS)
    string(APPEND properties
      "  set_tests_properties(\${${name}_TESTS} PROPERTIES LABELS \"${ARG_LABELS}\")\n")
  endif()
  if(ZV_SANITIZE STREQUAL "address")
    string(APPEND properties
      "  set_tests_properties(\${${name}_TESTS} PROPERTIES ENVIRONMENT "
      "\"QT_QPA_PLATFORM=offscreen;"
      "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp\")\n")
  endif()
  if(properties)
    set(properties_file ${CMAKE_CURRENT_BINARY_DIR}/${name}_properties.cmake)
    file(WRITE ${properties_file} "if(${name}_TESTS)\n${properties}endif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${properties_file})
  endif()
endfunction()

# zv_benchmark(NAME SOURCES... DEPS ...): a Google Benchmark program in build/bench/.
function(zv_benchmark name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPS} benchmark::benchmark)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
  target_compile_definitions(${name} PRIVATE ZV_TOOL_PATH="${ZV_TREE}/bin/zvtool")
  add_dependencies(zv_benchmarks ${name})
endfunction()

# zv_program(NAME SOURCES... DEPS ...): a program of the portable tree (build/Zevrit/bin).
function(zv_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${ZV_TREE}/bin)
  add_dependencies(${name} zv_data)
endfunction()
