# The compiler options of every target. Results are promised to the bit, so the compiler may fuse no
# multiply and add that the source doesn't fuse.
add_library(channelstrip_options INTERFACE)
target_compile_options(channelstrip_options INTERFACE
  -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wdouble-promotion)
# The warning is about how calls pass vectors, which depends on AVX. Every function that takes one is
# inlined, in the library and in control/strip/peak.h.
target_compile_options(channelstrip_options INTERFACE -Wno-psabi)
if(channelstrip_march)
  target_compile_options(channelstrip_options INTERFACE -march=${channelstrip_march})
endif()

# Targets without a fused multiply-add, such as x86-64 and x86-64-v2, compute it in doubles.
option(CHANNELSTRIP_EXACT_FUSED
  "Same bits without a fused multiply-add; OFF is several times as fast there, in other last bits" ON)
if(NOT CHANNELSTRIP_EXACT_FUSED)
  target_compile_definitions(channelstrip_options INTERFACE CHANNELSTRIP_UNFUSED)
endif()

# Sanitizers, for everything that is built; the first report ends the program. The library then
# imports the sanitizers' symbols, as an ordinary library does.
set(CHANNELSTRIP_SANITIZE "" CACHE STRING
  "Sanitizers: address,undefined or memory (clang alone) or thread; empty: none")
set_property(CACHE CHANNELSTRIP_SANITIZE PROPERTY STRINGS "" "address,undefined" memory thread)
if(CHANNELSTRIP_SANITIZE)
  set(sanitize -fsanitize=${CHANNELSTRIP_SANITIZE})
  if(CHANNELSTRIP_SANITIZE MATCHES undefined)
    string(APPEND sanitize ",float-cast-overflow") # undefined doesn't include it
  endif()
  if(CHANNELSTRIP_SANITIZE STREQUAL memory)
    list(APPEND sanitize -fsanitize-memory-track-origins)
  endif()
  target_compile_options(channelstrip_options INTERFACE
    ${sanitize} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(channelstrip_options INTERFACE ${sanitize})
endif()
