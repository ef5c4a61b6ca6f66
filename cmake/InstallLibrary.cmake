# What the installations of both libraries share.

# Installs a library into COMPONENT. What is installed after it goes there too; but with packages,
# what programs are built with, the link without a version to begin with, has a component of its own.
macro(channelstrip_install_library target export component)
  set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME ${component})
  if(CHANNELSTRIP_PACKAGES)
    set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME ChannelStrip_development)
  endif()
  install(TARGETS ${target} EXPORT ${export}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT ${component} NAMELINK_COMPONENT ${CMAKE_INSTALL_DEFAULT_COMPONENT_NAME})
endmacro()

# Installs NAME.pc, made of cmake/NAME.pc.in. It finds the tree relative to itself.
function(channelstrip_install_pkg_config_file name)
  file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/+$" "" prefix_from_pc "${prefix_from_pc}")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
