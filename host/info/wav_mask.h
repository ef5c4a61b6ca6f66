// WAV's channel masks, Microsoft's dwChannelMask: a bit per speaker, and the channels in the order
// of the bits.

#pragma once

#include <cstdint>
#include <vector>

#include "control/design/channel_layout.h"

namespace channelstrip::host {

// The masks of a file with this layout; none if its channels aren't in the order of the bits. Two
// if the surround pair may be the speakers beside the listener or those behind.
std::vector<std::uint32_t> wav_masks(const ChannelLayout& layout);

// The speakers of a mask, lowest bit first.
std::vector<Speaker> speakers_of_mask(std::uint32_t mask);

}  // namespace channelstrip::host
