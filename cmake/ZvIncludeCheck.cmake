# Build step of the layer check (cmake -P): fails when a file of one layered target includes
# a header of a higher layer. ROOT: the folder includes are relative to; MAP: the layer of
# each known header and folder (see ZvLayers.cmake); PLAN: the target, its layer and files.
include(${MAP})
include(${PLAN})
list(FIND ZV_LAYERS ${ZV_LAYER} rank)

# The layer index of an include path ("folder/File.h"): its own entry, else its folder's;
# -1 for headers outside the layered folders (system and third-party ones).
function(layer_of include out)
  get_filename_component(folder "${include}" DIRECTORY)
  if(NOT include MATCHES "^[A-Za-z0-9_/.+-]+$")
    set(${out} -1 PARENT_SCOPE)
  elseif(DEFINED "ZV_LAYER_OF_${include}")
    set(${out} "${ZV_LAYER_OF_${include}}" PARENT_SCOPE)
  elseif(folder AND DEFINED "ZV_LAYER_OF_${folder}/")
    set(${out} "${ZV_LAYER_OF_${folder}/}" PARENT_SCOPE)
  else()
    set(${out} -1 PARENT_SCOPE)
  endif()
endfunction()

set(faults "")
foreach(file IN LISTS ZV_FILES)
  file(RELATIVE_PATH name ${ROOT} ${file})
  get_filename_component(beside ${name} DIRECTORY)
  file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([^\"]*)\".*" "\\1" include "${line}")
    if(NOT include MATCHES "/" AND EXISTS ${ROOT}/${beside}/${include})
      set(include "${beside}/${include}") # a header beside the file, named without folder
    endif()
    layer_of("${include}" includedRank)
    if(includedRank GREATER rank)
      list(GET ZV_LAYERS ${includedRank} includedLayer)
      list(APPEND faults "${name} includes \"${include}\" of the ${includedLayer} layer")
    endif()
  endforeach()
endforeach()

if(faults)
  list(JOIN faults "\n  " text)
  message(FATAL_ERROR "Layer check failed: ${ZV_LAYER} target ${ZV_TARGET}:\n  ${text}")
endif()
