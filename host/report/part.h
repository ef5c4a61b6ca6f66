// Channels that a report shows together.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "control/design/link_map.h"

namespace channelstrip::host {

struct Part {
  std::string name;  // "L R C"
  std::vector<std::size_t> channels;
};

// In order of their lowest channels.
std::vector<Part> link_groups(const LinkMap& links, const ChannelLayout& layout);

// The parts that have a picture of their own: each channel if there are one or two, otherwise each
// link group.
std::vector<Part> pictured_parts(const LinkMap& links, const ChannelLayout& layout);

}  // namespace channelstrip::host
