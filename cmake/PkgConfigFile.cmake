# Installs NAME.pc, made of cmake/NAME.pc.in. It finds the tree relative to itself.
function(channelstrip_install_pkg_config_file name)
  file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/+$" "" prefix_from_pc "${prefix_from_pc}")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
