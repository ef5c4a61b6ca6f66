# Manual pages, made from the program's --help. They take help2man and a program that runs on this
# machine, maybe in an emulator, without sanitizers.
find_program(HELP2MAN help2man)
set(emulator ${CMAKE_CROSSCOMPILING_EMULATOR})
if(NOT HELP2MAN OR CHANNELSTRIP_SANITIZE OR (CMAKE_CROSSCOMPILING AND NOT emulator))
  message(STATUS "No manual pages: they take help2man and a program that runs here, unsanitized")
  return()
endif()

set(program $<TARGET_FILE:channelstrip>)
if(CMAKE_CROSSCOMPILING)
  set(program ${PROJECT_BINARY_DIR}/man/channelstrip)
  file(GENERATE OUTPUT ${program} CONTENT
    "#!/bin/sh\nexec ${emulator} '$<TARGET_FILE:channelstrip>' \"$@\"\n"
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endif()

set(man_dir ${PROJECT_BINARY_DIR}/man/man1)
add_custom_command(OUTPUT ${man_dir}/channelstrip.1
  COMMAND ${PROJECT_SOURCE_DIR}/script/man ${program} ${man_dir}
  DEPENDS channelstrip ${PROJECT_SOURCE_DIR}/script/man
  COMMENT "Writing manual pages")
add_custom_target(man ALL DEPENDS ${man_dir}/channelstrip.1)
install(DIRECTORY ${man_dir} DESTINATION ${CMAKE_INSTALL_MANDIR} OPTIONAL)
