# Installs the library, its public headers, a CMake package and a pkg-config file. Package and
# pkg-config file find the installed tree relative to themselves, so the tree may be moved.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ChannelStrip)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/ChannelStrip)

channelstrip_install_library(ChannelStrip ChannelStripTargets ChannelStrip_library)
install(FILES frame/context.h frame/entry_points.h frame/processor.h frame/processor_level.h
  DESTINATION ${header_dir}/frame)
install(FILES eq/eq_records.h DESTINATION ${header_dir}/eq)
install(FILES dynamics/dyn_records.h dynamics/fast_log.h dynamics/fast_log_tables.h
  DESTINATION ${header_dir}/dynamics)
install(FILES lanes/fused.h DESTINATION ${header_dir}/lanes)

install(EXPORT ChannelStripTargets NAMESPACE ChannelStrip:: DESTINATION ${package_dir})
install(FILES ${PROJECT_SOURCE_DIR}/cmake/ChannelStripConfig.cmake DESTINATION ${package_dir})
write_basic_package_version_file(ChannelStripConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ChannelStripConfigVersion.cmake
  DESTINATION ${package_dir})

channelstrip_install_pkg_config_file(channelstrip)
