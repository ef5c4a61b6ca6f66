# Manual pages, made from the program's --help. They take help2man and a program that runs on this
# machine, without sanitizers.
find_program(HELP2MAN help2man)
if(NOT HELP2MAN OR CMAKE_CROSSCOMPILING OR CHANNELSTRIP_SANITIZE)
  message(STATUS "No manual pages: they take help2man and a program that runs here, unsanitized")
  return()
endif()

set(man_dir ${PROJECT_BINARY_DIR}/man/man1)
add_custom_command(OUTPUT ${man_dir}/channelstrip.1
  COMMAND ${PROJECT_SOURCE_DIR}/script/man $<TARGET_FILE:channelstrip> ${man_dir}
  DEPENDS channelstrip ${PROJECT_SOURCE_DIR}/script/man
  COMMENT "Writing manual pages")
add_custom_target(man ALL DEPENDS ${man_dir}/channelstrip.1)
install(DIRECTORY ${man_dir} DESTINATION ${CMAKE_INSTALL_MANDIR} OPTIONAL)
