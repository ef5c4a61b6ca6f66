// What becomes of the gains when the links of a running strip change.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

#include <span>

#include "../design/link_map.h"

namespace channelstrip::host {

// A link group's gain, detector, gate and glides live in the record of its lowest channel, and a
// record that has never led a group is at 0 dB. So the lowest channel of each new group takes over
// the record of the group that it was in; where channels come from several groups, that of the
// group with the least gain, as the loudest is what a group follows. The key filter's memory and
// the glide rate belong to the channel and stay. `states` holds a record per channel.
void hand_over_gains(std::span<Dyn_SState> states, const LinkMap& from, const LinkMap& to);

}  // namespace channelstrip::host
