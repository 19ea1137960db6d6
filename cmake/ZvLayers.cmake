# The layer rules, checked once every target is declared (a call deferred to the end of the
# top-level CMakeLists.txt):
# - links, at configure time: walking the whole link closure of a layered target (its
#   LINK_LIBRARIES and INTERFACE_LINK_LIBRARIES, then those of every target reached), it may
#   reach no target of a higher layer and no Qt target its layer lacks;
# - includes, at build time: no file of a layered target may #include "folder/File.h" of a
#   higher layer. A header belongs to the target that builds the source of the same name;
#   any other header to its folder, whose layer is the highest among the targets there.
include_guard(GLOBAL)

# Lowest first: a target may use its own layer and those listed before it.
set(ZV_LAYERS engine services ui)
# The Qt targets (after alias resolution) each layer must not reach.
set(ZV_FORBIDDEN_QT_engine "^Qt6?::")
set(ZV_FORBIDDEN_QT_services "^Qt6?::(Gui|Widgets)$")
set(ZV_FORBIDDEN_QT_ui "")
set(ZV_INCLUDE_CHECK_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/ZvIncludeCheck.cmake)

# zv_layer(TARGET LAYER): puts a library or program into one of ZV_LAYERS, so the checks
# cover it. Its sources must lie below ${PROJECT_SOURCE_DIR}/src to have their includes checked.
function(zv_layer target layer)
  if(NOT layer IN_LIST ZV_LAYERS)
    message(FATAL_ERROR "zv_layer(${target}): unknown layer '${layer}' (not in ${ZV_LAYERS})")
  endif()
  set_target_properties(${target} PROPERTIES ZV_LAYER ${layer})
  set_property(GLOBAL APPEND PROPERTY ZV_LAYERED_TARGETS ${target})
endfunction()

# The targets `target` links directly: generator expressions other than $<LINK_ONLY:name>
# are skipped, aliases resolved, names that are not targets (flags, files) dropped.
function(_zv_linked_targets target out)
  set(items "")
  foreach(property LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
    get_target_property(value ${target} ${property})
    if(value)
      list(APPEND items ${value})
    endif()
  endforeach()
  set(result "")
  foreach(item IN LISTS items)
    if(item MATCHES "^[$]<LINK_ONLY:([^$<>]+)>$")
      set(item "${CMAKE_MATCH_1}")
    endif()
    if(item MATCHES "[$]<|^::@" OR NOT TARGET "${item}")
      continue()
    endif()
    get_target_property(aliased ${item} ALIASED_TARGET)
    if(aliased)
      set(item ${aliased})
    endif()
    list(APPEND result ${item})
  endforeach()
  list(REMOVE_DUPLICATES result)
  set(${out} "${result}" PARENT_SCOPE)
endfunction()

# Appends to the list named `faultsVar` each forbidden target the link closure of `target`
# reaches, with the chain of links that reaches it; what lies beyond a forbidden target is not
# reported again. Cycles are walked once.
function(_zv_check_links target faultsVar)
  get_target_property(layer ${target} ZV_LAYER)
  list(FIND ZV_LAYERS ${layer} rank)
  set(forbiddenQt "${ZV_FORBIDDEN_QT_${layer}}")
  set(found "${${faultsVar}}")
  set(seen ${target})
  set(forbidden "")
  set(chains ${target}) # chains[i]: how seen[i] is reached, "a -> b -> c"
  set(next 0)
  list(LENGTH seen count)
  while(next LESS count)
    list(GET seen ${next} current)
    list(GET chains ${next} chain)
    math(EXPR next "${next} + 1")
    if(current IN_LIST forbidden)
      continue()
    endif()
    _zv_linked_targets(${current} linked)
    foreach(item IN LISTS linked)
      if(item IN_LIST seen)
        continue()
      endif()
      set(itemChain "${chain} -> ${item}")
      list(APPEND seen ${item})
      list(APPEND chains "${itemChain}")
      get_target_property(itemLayer ${item} ZV_LAYER)
      list(FIND ZV_LAYERS "${itemLayer}" itemRank)
      if(itemRank GREATER rank)
        list(APPEND found
          "${layer} target ${target} reaches ${item} of the ${itemLayer} layer: ${itemChain}")
        list(APPEND forbidden ${item})
      elseif(forbiddenQt AND item MATCHES "${forbiddenQt}")
        list(APPEND found "${layer} target ${target} reaches ${item}: ${itemChain}")
        list(APPEND forbidden ${item})
      endif()
    endforeach()
    list(LENGTH seen count)
  endwhile()
  set(${faultsVar} "${found}" PARENT_SCOPE)
endfunction()

# Writes `content` to `file` only when it differs, so the checks that read it do not rerun
# after every configure.
function(_zv_write_if_changed file content)
  file(WRITE ${file}.new "${content}")
  file(COPY_FILE ${file}.new ${file} ONLY_IF_DIFFERENT)
  file(REMOVE ${file}.new)
endfunction()

# The files of a layered target below `root`, as paths relative to it: its sources and the
# headers of the same name beside them.
function(_zv_owned_files target root out)
  get_target_property(sources ${target} SOURCES)
  get_target_property(sourceDir ${target} SOURCE_DIR)
  set(result "")
  foreach(source IN LISTS sources)
    get_filename_component(source "${source}" ABSOLUTE BASE_DIR ${sourceDir})
    cmake_path(IS_PREFIX root "${source}" NORMALIZE below)
    if(NOT below OR NOT source MATCHES "[.](cpp|h)$")
      continue()
    endif()
    file(RELATIVE_PATH relative ${root} ${source})
    list(APPEND result ${relative})
    string(REGEX REPLACE "[.]cpp$" ".h" header "${relative}")
    if(EXISTS ${root}/${header})
      list(APPEND result ${header})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES result)
  set(${out} "${result}" PARENT_SCOPE)
endfunction()

# Lays out the include check: a map of header and folder layers for all targets, and a build
# step per layered target that scans its files (and its folder's headers that no source names,
# for the target of the folder's layer) before the target builds.
function(_zv_plan_include_checks targets)
  set(root ${PROJECT_SOURCE_DIR}/src)
  set(dir ${CMAKE_BINARY_DIR}/zv_layers)
  set(map "set(ZV_LAYERS ${ZV_LAYERS})\n")
  set(folders "")
  foreach(target IN LISTS targets)
    get_target_property(layer ${target} ZV_LAYER)
    list(FIND ZV_LAYERS ${layer} rank)
    _zv_owned_files(${target} ${root} files_${target})
    foreach(file IN LISTS files_${target})
      string(APPEND map "set(\"ZV_LAYER_OF_${file}\" ${rank})\n")
      get_filename_component(folder ${file} DIRECTORY)
      list(APPEND folders ${folder})
      if(NOT DEFINED folderRank_${folder} OR rank GREATER folderRank_${folder})
        set(folderRank_${folder} ${rank})
        set(folderTarget_${folder} ${target})
      endif()
    endforeach()
  endforeach()
  list(REMOVE_DUPLICATES folders)
  foreach(folder IN LISTS folders)
    string(APPEND map "set(\"ZV_LAYER_OF_${folder}/\" ${folderRank_${folder}})\n")
    file(GLOB headers RELATIVE ${root} ${root}/${folder}/*.h)
    foreach(header IN LISTS headers)
      set(owned FALSE)
      foreach(target IN LISTS targets)
        if(header IN_LIST files_${target})
          set(owned TRUE)
        endif()
      endforeach()
      if(NOT owned)
        list(APPEND files_${folderTarget_${folder}} ${header})
      endif()
    endforeach()
  endforeach()
  _zv_write_if_changed(${dir}/map.cmake "${map}")
  foreach(target IN LISTS targets)
    get_target_property(layer ${target} ZV_LAYER)
    list(TRANSFORM files_${target} PREPEND ${root}/ OUTPUT_VARIABLE paths)
    _zv_write_if_changed(${dir}/${target}.cmake
      "set(ZV_TARGET ${target})\nset(ZV_LAYER ${layer})\nset(ZV_FILES \"${paths}\")\n")
    add_custom_command(OUTPUT ${dir}/${target}.checked
      COMMAND ${CMAKE_COMMAND} -DROOT=${root} -DMAP=${dir}/map.cmake
              -DPLAN=${dir}/${target}.cmake -P ${ZV_INCLUDE_CHECK_SCRIPT}
      COMMAND ${CMAKE_COMMAND} -E touch ${dir}/${target}.checked
      DEPENDS ${paths} ${dir}/map.cmake ${dir}/${target}.cmake ${ZV_INCLUDE_CHECK_SCRIPT}
      COMMENT "Checking the includes of ${target} against the layers" VERBATIM)
    add_custom_target(${target}_layer_check DEPENDS ${dir}/${target}.checked)
    add_dependencies(${target} ${target}_layer_check)
  endforeach()
endfunction()

# Runs both checks over every target given to zv_layer; a link fault stops the configure step.
function(zv_check_layers)
  get_property(targets GLOBAL PROPERTY ZV_LAYERED_TARGETS)
  set(faults "")
  foreach(target IN LISTS targets)
    _zv_check_links(${target} faults)
  endforeach()
  if(faults)
    list(JOIN faults "\n  " text)
    message(FATAL_ERROR "Layer check failed:\n  ${text}")
  endif()
  _zv_plan_include_checks("${targets}")
endfunction()

cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL zv_check_layers)
