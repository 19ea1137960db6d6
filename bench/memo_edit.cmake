# Editing core and undo: keystrokes anywhere in 10 million rows, undo of a million-row
# replace, and the editor widget's keystroke-to-painted time on a million rows.
zv_benchmark(zv_memo_edit_bench SOURCES ${CMAKE_CURRENT_LIST_DIR}/memo_edit/EditBench.cpp
  DEPS zv_memo_edit)
if(TARGET zv_ui)
  zv_benchmark(zv_editor_widget_bench
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/memo_edit/EditorWidgetBench.cpp
    DEPS zv_ui Qt6::Test)
endif()
