// The strip as plain loops, for measuring the library against: one channel after the other, one
// sample after the other, compiled as the library is. In every format they are faster than those of
// the tests' model.

#pragma once

#include <ChannelStrip/frame/entry_points.h>

namespace channelstrip::bench {

// What the entry point of a stem format with that many channels and link groups does, or null.
AlgEntry_16_Stem* plain_strip(int channels, int groups);

}  // namespace channelstrip::bench
