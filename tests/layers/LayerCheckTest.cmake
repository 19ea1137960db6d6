# cmake -P: the layer checks of ZvTargets.cmake (TARGETS) on a throwaway project in WORK, with
# stand-in imported targets for Qt. MODE Links: a sound tree configures and builds, and each
# faulty link (direct, through a plain library, through a cycle) stops the configure step with
# the chain named. MODE Includes: each include of a higher layer's header stops the build.
# GENERATOR and CXX: those of the calling build.
cmake_minimum_required(VERSION 3.25)

set(project ${WORK}/project)
set(build ${WORK}/build)
file(REMOVE_RECURSE ${WORK})

# The tree: an engine library (common/, with a header no source names), an engine and a
# services library sharing one folder (mixed/, likewise), a ui library (ui/, likewise) and a
# plain library.
file(WRITE ${project}/CMakeLists.txt [=[
cmake_minimum_required(VERSION 3.25)
project(LayerCase CXX)
include(${TARGETS})
foreach(module Core Gui Widgets)
  add_library(Qt6::${module} INTERFACE IMPORTED)
endforeach()
set_property(TARGET Qt6::Widgets PROPERTY INTERFACE_LINK_LIBRARIES Qt6::Gui)
zv_engine_library(eng_base SOURCES src/common/Base.cpp)
zv_engine_library(eng_ini SOURCES src/mixed/Ini.cpp DEPS eng_base)
zv_service_library(svc SOURCES src/mixed/Svc.cpp DEPS eng_ini)
zv_ui_library(ui_win SOURCES src/ui/Win.cpp DEPS svc)
add_library(helper STATIC src/other/Helper.cpp)
if(CASE STREQUAL "EngineThroughServices")
  zv_engine_library(eng_bad SOURCES src/common/Bad.cpp DEPS svc)
elseif(CASE STREQUAL "EngineThroughPlainLibrary")
  target_link_libraries(helper PRIVATE Qt6::Core)
  zv_engine_library(eng_bad SOURCES src/common/Bad.cpp DEPS helper)
elseif(CASE STREQUAL "ServicesThroughPlainLibrary")
  target_link_libraries(helper PUBLIC Qt6::Widgets)
  target_link_libraries(svc PRIVATE helper)
elseif(CASE STREQUAL "ServicesInACycleWithUi")
  target_link_libraries(svc PRIVATE ui_win)
endif()
]=])
set(iniSource
  "#include \"mixed/Ini.h\"\n#include \"common/Base.h\"\nint Ini() { return Base(); }\n")
file(WRITE ${project}/src/common/Base.h "#pragma once\nint Base();\n")
file(WRITE ${project}/src/common/Config.h "#pragma once\n")
file(WRITE ${project}/src/common/Base.cpp
  "#include \"common/Base.h\"\n#include \"common/Config.h\"\nint Base() { return 1; }\n")
file(WRITE ${project}/src/common/Bad.cpp "int Bad() { return 0; }\n")
file(WRITE ${project}/src/mixed/Ini.h "#pragma once\nint Ini();\n")
file(WRITE ${project}/src/mixed/Ini.cpp "${iniSource}")
file(WRITE ${project}/src/mixed/Svc.h "#pragma once\n#include \"mixed/Shared.h\"\nint Svc();\n")
file(WRITE ${project}/src/mixed/Shared.h "#pragma once\n")
file(WRITE ${project}/src/mixed/Svc.cpp
  "#include \"mixed/Svc.h\"\n#include \"Ini.h\"\nint Svc() { return Ini(); }\n")
file(WRITE ${project}/src/ui/Types.h "#pragma once\n")
file(WRITE ${project}/src/ui/Win.h "#pragma once\n#include \"ui/Types.h\"\nint Win();\n")
file(WRITE ${project}/src/ui/Win.cpp
  "#include \"ui/Win.h\"\n#include \"mixed/Svc.h\"\nint Win() { return Svc(); }\n")
file(WRITE ${project}/src/other/Helper.cpp "int Helper() { return 2; }\n")

# Runs cmake with ARGN; EXPECT is PASS, or FAIL with the output naming NEEDLE.
function(expect_cmake expect needle)
  execute_process(COMMAND ${CMAKE_COMMAND} ${ARGN}
    RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE out)
  list(JOIN ARGN " " shown)
  if(expect STREQUAL "PASS" AND NOT code EQUAL 0)
    message(FATAL_ERROR "cmake ${shown} failed:\n${out}")
  elseif(expect STREQUAL "FAIL" AND code EQUAL 0)
    message(FATAL_ERROR "cmake ${shown} passed; the layer check should have stopped it:\n${out}")
  elseif(expect STREQUAL "FAIL" AND NOT out MATCHES "Layer check failed.*${needle}")
    message(FATAL_ERROR "cmake ${shown} failed without naming '${needle}':\n${out}")
  endif()
endfunction()

function(configure_case expect case needle)
  expect_cmake(${expect} "${needle}" -S ${project} -B ${build} -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX} -DTARGETS=${TARGETS} -DCASE=${case})
endfunction()

function(build_tree expect needle)
  expect_cmake(${expect} "${needle}" --build ${build} -j 2)
endfunction()

configure_case(PASS Sound "")
build_tree(PASS "")
if(MODE STREQUAL "Links")
  configure_case(FAIL EngineThroughServices
    "engine target eng_bad reaches svc of the services layer: eng_bad -> svc")
  configure_case(FAIL EngineThroughPlainLibrary
    "engine target eng_bad reaches Qt6::Core: eng_bad -> helper -> Qt6::Core")
  configure_case(FAIL ServicesThroughPlainLibrary
    "services target svc reaches Qt6::Widgets: svc -> helper -> Qt6::Widgets")
  configure_case(FAIL ServicesInACycleWithUi
    "services target svc reaches ui_win of the ui layer: svc -> ui_win")
elseif(MODE STREQUAL "Includes")
  # An engine header and a ui header, neither named by a source.
  file(WRITE ${project}/src/common/Config.h "#pragma once\n#include \"ui/Types.h\"\n")
  build_tree(FAIL "eng_base:[ \n]+common/Config.h includes \"ui/Types.h\" of the ui layer")
  file(WRITE ${project}/src/common/Config.h "#pragma once\n")
  # An engine source including, by its bare name, the services header beside it.
  file(WRITE ${project}/src/mixed/Ini.cpp "${iniSource}#include \"Svc.h\"\n")
  build_tree(FAIL "eng_ini:[ \n]+mixed/Ini.cpp includes \"mixed/Svc.h\" of the services layer")
  file(WRITE ${project}/src/mixed/Ini.cpp "${iniSource}")
  build_tree(PASS "")
else()
  message(FATAL_ERROR "MODE must be Links or Includes, not '${MODE}'")
endif()
