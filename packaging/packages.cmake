# The Debian packages that cpack makes of this build, and what is in each. script/packages configures,
# builds and calls cpack; packaging/finish does what cpack can't.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME channelstrip)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENTS_ALL
  ChannelStrip_library ChannelStrip_control ChannelStrip_development ChannelStrip_program
  ChannelStrip_plugins)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE channelstrip)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The ChannelStrip authors <authors@channelstrip.invalid>")
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE "${CHANNELSTRIP_DEBIAN_ARCHITECTURE}")
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/finish.cmake)

set(version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")

# NAME SECTION DESCRIPTION COMPONENT...
function(channelstrip_add_package name section description)
  foreach(component IN LISTS ARGN)
    string(TOUPPER ${component} component)
    set(CPACK_COMPONENT_${component}_GROUP ${name} PARENT_SCOPE)
  endforeach()
  string(TOUPPER ${name} group)
  set(CPACK_DEBIAN_${group}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${group}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_COMPONENT_${group}_DESCRIPTION "${description}" PARENT_SCOPE)
endfunction()

channelstrip_add_package(libchannelstrip0 libs
[[realtime channel strip for audio engines - libraries
ChannelStrip is an equaliser of eight bands whose coefficients glide, a
compressor, an expander with a gate, a side-chain and peak meters, for one
stream of 1 to 8 channels.

This package has the processing library, which an engine loads and which
neither allocates, locks nor calls the system, and the control library:
strips with parameters in Hertz, decibels and milliseconds, without latency.]]
  ChannelStrip_library ChannelStrip_control)

channelstrip_add_package(libchannelstrip-dev libdevel
[[realtime channel strip for audio engines - development files
ChannelStrip is an equaliser of eight bands whose coefficients glide, a
compressor, an expander with a gate, a side-chain and peak meters, for one
stream of 1 to 8 channels.

This package has what programs are built with: headers for C and C++ of the
processing library and of the control library, and how pkg-config and CMake
find them.]]
  ChannelStrip_development)
set(CPACK_DEBIAN_LIBCHANNELSTRIP-DEV_PACKAGE_DEPENDS "libchannelstrip0 (= ${version})")

channelstrip_add_package(channelstrip sound
[[equaliser, dynamics and loudness for audio files
The program channelstrip sends audio files of 1 to 8 channels through an
equaliser of eight bands, a compressor and an expander with a gate. It keeps
sample type, tags and channel masks, takes files to a loudness, draws what
settings do, and writes reports and meters.

This package has the program, sixteen presets from podcast voice to 7.1 film,
manual pages and completion for bash, zsh and fish.]]
  ChannelStrip_program)
# The program loads the library by its name; nothing in its file tells so.
set(CPACK_DEBIAN_CHANNELSTRIP_PACKAGE_DEPENDS "libchannelstrip0 (= ${version})")

channelstrip_add_package(channelstrip-plugins sound
[[equaliser and dynamics as LV2 and CLAP plugins, mono to 7.1
The channel strip in audio workstations and other hosts: an equaliser of
eight bands, a compressor, an expander with a gate, a side-chain, meters and
sixteen presets, in eleven formats from mono to 7.1. It adds no latency and
plays, bit for bit, what the program channelstrip renders.

This package has the LV2 bundle, the CLAP plugin and the LV2 bundle as
GStreamer reads it.]]
  ChannelStrip_plugins)
set(CPACK_DEBIAN_CHANNELSTRIP-PLUGINS_PACKAGE_PROVIDES lv2-plugin)
set(CPACK_DEBIAN_CHANNELSTRIP-PLUGINS_PACKAGE_RECOMMENDS fonts-inter) # the window's; else DejaVu

foreach(package LIBCHANNELSTRIP0 CHANNELSTRIP CHANNELSTRIP-PLUGINS)
  set(CPACK_DEBIAN_${package}_PACKAGE_SHLIBDEPS ON)
endforeach()

include(CPack)
