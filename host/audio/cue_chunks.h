// Cue points as chunks of a WAV file.

#pragma once

#include <sndfile.h>

#include <vector>

#include "chunks.h"

namespace channelstrip::host {

// A chunk "cue " with the offsets and, if any cue has a name, a list of the names, which libsndfile
// wouldn't write.
std::vector<Chunk> cue_chunks(const std::vector<SF_CUE_POINT>& cues);

// The cue points in a file's chunks. libsndfile doesn't read them from RF64.
std::vector<SF_CUE_POINT> cue_points(const std::vector<Chunk>& chunks);

}  // namespace channelstrip::host
