// The port configurations: one for each format, whose index is its id.

#pragma once

#include <cstdint>
#include <vector>

#include "extensions.h"

namespace channelstrip::clap {

inline constexpr std::uint32_t kMainPort = 0, kKeyPort = 1;  // the key only as an input

std::uint32_t channels_of(std::uint32_t format);
const char* port_type_of(std::uint32_t channels);

// In WAV's order.
std::vector<std::uint8_t> speakers_of(std::uint32_t format);
// Whether a format has these speakers, a bit for each; a pair of surrounds may stand at the sides
// or in the back.
bool is_a_format(std::uint64_t speakers);

}  // namespace channelstrip::clap
