# The shipped syntax set is kept in UTF-8, which is also its on-disk form, so it is copied
# as it is; this check loads every shipped definition file and fails the build on a problem.
file(GLOB ZV_SYNTAX_FILES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/Syntax/*)
set(ZV_SYNTAX_STAMP ${CMAKE_CURRENT_BINARY_DIR}/syntax-check.stamp)
add_custom_command(OUTPUT ${ZV_SYNTAX_STAMP}
  COMMAND zv_syxcheck ${CMAKE_CURRENT_SOURCE_DIR}/Syntax
  COMMAND ${CMAKE_COMMAND} -E touch ${ZV_SYNTAX_STAMP}
  DEPENDS zv_syxcheck ${ZV_SYNTAX_FILES}
  COMMENT "Checking the shipped syntax definition files")
add_custom_target(zv_syntax_check ALL DEPENDS ${ZV_SYNTAX_STAMP})
add_dependencies(zv_data zv_syntax_check)

# The templates a new syntax definition and a new language file are made from.
add_custom_command(TARGET zv_data POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E make_directory ${ZV_TREE}/Templates/Syntax
  COMMAND ${CMAKE_COMMAND} -E copy_if_different
          ${CMAKE_CURRENT_SOURCE_DIR}/Templates/Syntax/empty.syx ${ZV_TREE}/Templates/Syntax/
  COMMAND ${CMAKE_COMMAND} -E make_directory ${ZV_TREE}/Templates/Language
  COMMAND ${CMAKE_COMMAND} -E copy_if_different
          ${CMAKE_CURRENT_SOURCE_DIR}/Templates/Language/empty.ini ${ZV_TREE}/Templates/Language/
  VERBATIM)
