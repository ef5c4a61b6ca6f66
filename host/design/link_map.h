// Which channels the dynamics link. A link group detects one level, the greatest of its channels,
// and gives all of them one gain.

#pragma once

#include <array>
#include <string>
#include <string_view>

#include "channel_layout.h"
#include "settings.h"

namespace channelstrip::host {

// The group of each channel, 0 .. G-1 in order of first appearance; entries from N on are 0.
using LinkMap = std::array<int, 8>;

// The map of a style, which is the same whatever the order of the channels. kNone takes a group per
// channel: only mono has as many, the other formats keep their pairs linked.
//
// The layouts of default_layout and choose_layout hold every style. Throws std::invalid_argument
// for a layout whose format has too few groups.
LinkMap link_map(const ChannelLayout& layout, LinkStyle style);

// Parses "L R C | LFE | Ls Rs": blanks separate labels, bars groups. Throws std::invalid_argument
// unless every channel of the layout stands in exactly one group and there are at most G groups.
LinkMap parse_link_map(std::string_view text, const ChannelLayout& layout);

// The text that parse_link_map takes, groups and channels in order of the layout.
std::string text_of(const LinkMap& map, const ChannelLayout& layout);

}  // namespace channelstrip::host
