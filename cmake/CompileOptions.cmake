# What every target of the project is compiled with. No product and sum is fused that the source
# doesn't fuse: results are promised to the bit.
add_library(channelstrip_options INTERFACE)
target_compile_options(channelstrip_options INTERFACE
  -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wdouble-promotion)
if(CHANNELSTRIP_ARCH)
  target_compile_options(channelstrip_options INTERFACE -march=${CHANNELSTRIP_ARCH})
endif()
