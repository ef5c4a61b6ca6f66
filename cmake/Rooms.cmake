# Adds a room's sources to a target. A unity build compiles a room as one source.
function(channelstrip_add_room target)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME room)
  target_sources(${target} PRIVATE ${ARGN})
  set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${room})
endfunction()
