// The loudness fields of a broadcast WAV file.

#pragma once

#include <vector>

#include "chunks.h"

namespace channelstrip::host {

// Sets the loudness fields of "bext" to "not given", because they describe the samples before
// processing; returns whether any was given. The fields are integrated loudness, loudness range,
// true peak, and the momentary and short-term maximum, in the chunk from its version 2 on (EBU Tech
// 3285, 2011).
bool forget_loudness(std::vector<Chunk>& chunks);

}  // namespace channelstrip::host
