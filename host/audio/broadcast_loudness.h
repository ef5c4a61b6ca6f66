// The loudness that a broadcast WAV states of itself.

#pragma once

#include <vector>

#include "chunks.h"

namespace channelstrip::host {

// Marks it as not given, since it is that of other samples; returns whether it was given.
// Integrated loudness, loudness range, true peak, momentary and short-term maximum stand in "bext"
// from its version 2 on (EBU Tech 3285, 2011).
bool forget_loudness(std::vector<Chunk>& chunks);

}  // namespace channelstrip::host
