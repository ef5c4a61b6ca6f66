# Installs the control side's library, its headers, its part of the CMake package and a pkg-config
# file. It finds the processing library beside itself.
set_target_properties(channelstrip-control PROPERTIES
  EXPORT_NAME control
  INSTALL_RPATH $ORIGIN)
channelstrip_install_library(channelstrip-control ChannelStripControlTargets ChannelStrip_control)
install(DIRECTORY ../include/channelstrip DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT ChannelStripControlTargets NAMESPACE ChannelStrip::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ChannelStrip)
channelstrip_install_pkg_config_file(channelstrip-control)
