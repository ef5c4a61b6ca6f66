# cpack runs this when it has made packages, before it says where they are.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/finish ${package} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
