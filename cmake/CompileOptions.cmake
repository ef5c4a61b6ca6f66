# What every target of the project is compiled with. No product and sum is fused that the source
# doesn't fuse: results are promised to the bit.
add_library(channelstrip_options INTERFACE)
target_compile_options(channelstrip_options INTERFACE
  -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wdouble-promotion)
if(CHANNELSTRIP_ARCH)
  target_compile_options(channelstrip_options INTERFACE -march=${CHANNELSTRIP_ARCH})
endif()

# Sanitizers for everything that is built; a report ends the program. The library is then an
# ordinary one, which imports what they add.
set(CHANNELSTRIP_SANITIZE "" CACHE STRING
  "Sanitizers: address,undefined or memory (clang alone) or thread; empty: none")
set_property(CACHE CHANNELSTRIP_SANITIZE PROPERTY STRINGS "" "address,undefined" memory thread)
if(CHANNELSTRIP_SANITIZE)
  set(sanitize -fsanitize=${CHANNELSTRIP_SANITIZE})
  if(CHANNELSTRIP_SANITIZE MATCHES undefined)
    string(APPEND sanitize ",float-cast-overflow") # not part of it
  endif()
  if(CHANNELSTRIP_SANITIZE STREQUAL memory)
    list(APPEND sanitize -fsanitize-memory-track-origins)
  endif()
  target_compile_options(channelstrip_options INTERFACE
    ${sanitize} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(channelstrip_options INTERFACE ${sanitize})
endif()
