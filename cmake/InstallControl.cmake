# Installs the control side's library, its headers, its part of the CMake package and a pkg-config
# file. It finds the processing library beside itself.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME ChannelStrip_control)
set_target_properties(channelstrip-control PROPERTIES
  EXPORT_NAME control
  INSTALL_RPATH $ORIGIN)
install(TARGETS channelstrip-control EXPORT ChannelStripControlTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ../include/channelstrip DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT ChannelStripControlTargets NAMESPACE ChannelStrip::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ChannelStrip)
channelstrip_install_pkg_config_file(channelstrip-control)
