// The layouts of all formats, which stay where they are.

#pragma once

#include <channelstrip/channelstrip.h>

#include <cstdint>

#include "../design/channel_layout.h"

namespace channelstrip::host {

// Null if there is no such format or order.
const ChannelLayout* layout_of(std::uint32_t format, channelstrip_order order);

}  // namespace channelstrip::host
