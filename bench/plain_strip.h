// The strip as plain loops, for measuring the library against: one channel after the other, one
// sample after the other, compiled with the library's flags.

#pragma once

#include <ChannelStrip/frame/entry_points.h>

namespace channelstrip::bench {

struct PlainStrip {
  int channels, groups;
  AlgEntry_16_Stem* model;      // the tests' model
  AlgEntry_16_Stem* in_memory;  // the library's own route for instances that may not go in lanes
};

// Of a stem format with that many channels and link groups.
const PlainStrip& plain_strip(int channels, int groups);

}  // namespace channelstrip::bench
