// Cue points as chunks of a WAV file.

#pragma once

#include <sndfile.h>

#include <vector>

#include "chunks.h"

namespace channelstrip::host {

// Their places and, if they have any, their names, which libsndfile would leave out.
std::vector<Chunk> cue_chunks(const std::vector<SF_CUE_POINT>& cues);

// Those of a file with these chunks. libsndfile doesn't look for them in RF64.
std::vector<SF_CUE_POINT> cue_points(const std::vector<Chunk>& chunks);

}  // namespace channelstrip::host
