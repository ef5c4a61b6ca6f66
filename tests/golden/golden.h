// The golden programme: fixed settings, audio and wirings, made by integer arithmetic, of which the
// results are hashed. Needs neither a C library nor the control side, so that it runs wherever the
// library does; denormals must not be flushed.

#pragma once

#include <ChannelStrip/frame/entry_points.h>
#include <stdint.h>

#include "scenes.h"

namespace channelstrip::golden {

// Runs a scene in ranges of one, two, three and seventeen instances and writes what hashes.txt
// holds of it: format, scene, the hashes of audio, state and meters, a null. Not for two threads at
// once.
constexpr int kLongestLine = 100;
void write_line(char (&line)[kLongestLine], int format, int scene, AlgEntry_16_Stem* entry);

}  // namespace channelstrip::golden
