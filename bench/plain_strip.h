// The strip without lanes, for measuring the library against; compiled with the library's flags.

#pragma once

#include <ChannelStrip/frame/entry_points.h>

namespace channelstrip::bench {

struct PlainStrip {
  int channels, groups;
  AlgEntry_16_Stem* loops;      // the quickest form found
  AlgEntry_16_Stem* model;      // the tests' model
  AlgEntry_16_Stem* in_memory;  // the library's own route for instances that may not go in lanes
};

// PlainStrip::loops of a stem format.
template <int Channels, int Groups>
void process_by_loops(const SChannelStrip_Alg_Context* const* begin, const void* end);

// Of a stem format with that many channels and link groups.
const PlainStrip& plain_strip(int channels, int groups);

}  // namespace channelstrip::bench
