// The golden programme: fixed settings, audio and wirings, made by integer arithmetic, of which the
// results are hashed. Needs neither a C library nor the control side, so that it runs wherever the
// library does; denormals must not be flushed.

#pragma once

#include <ChannelStrip/frame/entry_points.h>
#include <stdint.h>

#include "scenes.h"

namespace channelstrip::golden {

struct Hashes {
  uint64_t audio, state, meters;
};

// Runs a scene in ranges of one, two, three and seventeen instances. Not for two threads at once.
Hashes run(int format, int scene, AlgEntry_16_Stem* entry);

// Sixteen digits and a null.
void write_hash(char* to, uint64_t hash);

}  // namespace channelstrip::golden
