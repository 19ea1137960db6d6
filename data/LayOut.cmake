# Copies the shipped data into the portable tree; run at every build (copying is cheap and
# keeps the tree in step with edits). Empty folders of the tree are made too.
foreach(dir Data Language Syntax "Syntax/User defined" Temp Backup)
  file(MAKE_DIRECTORY "${DST}/${dir}")
endforeach()
foreach(dir Data Language Syntax)
  if(EXISTS "${SRC}/${dir}")
    file(COPY "${SRC}/${dir}/" DESTINATION "${DST}/${dir}" PATTERN ".gitkeep" EXCLUDE)
  endif()
endforeach()
file(GLOB top_files "${SRC}/*.ini")
foreach(f IN LISTS top_files)
  file(COPY "${f}" DESTINATION "${DST}/bin")
endforeach()
# The default settings are kept as UTF-8 text in the source; beside the program they take
# the settings' own form, UTF-16LE with BOM and CR LF (iconv does the encoding).
if(EXISTS "${SRC}/_Zevrit.ini")
  file(READ "${SRC}/_Zevrit.ini" settings_text)
  string(REPLACE "\r\n" "\n" settings_text "${settings_text}")
  string(REPLACE "\n" "\r\n" settings_text "${settings_text}")
  string(ASCII 239 187 191 utf8_bom)
  file(WRITE "${DST}/bin/_Zevrit.ini.utf8" "${utf8_bom}${settings_text}")
  execute_process(COMMAND iconv -f UTF-8 -t UTF-16LE "${DST}/bin/_Zevrit.ini.utf8"
                  OUTPUT_FILE "${DST}/bin/_Zevrit.ini" RESULT_VARIABLE iconv_result)
  file(REMOVE "${DST}/bin/_Zevrit.ini.utf8")
  if(NOT iconv_result EQUAL 0)
    message(FATAL_ERROR "iconv could not encode the default settings: ${iconv_result}")
  endif()
endif()
