// What an audio file says beside its samples.

#pragma once

#include <sndfile.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "chunks.h"

namespace channelstrip::host {

// Between containers of one family (WAV and RF64, say) every chunk is copied verbatim, but for a
// zero that RF64 may need behind it, so that nothing is lost: bext with its coding history, cart,
// iXML, cue points and their labels, loops, tags. Nothing is added or recomputed either. Into any
// other container go tags, cue points and loops as far as libsndfile, which names itself behind the
// "software" tag, or cue_chunks() can write them there.
struct Metadata {
  ChunkFamily family = ChunkFamily::kNone;
  std::vector<Chunk> chunks = {};  // in file order, without those that describe the samples' coding
  // What can't be copied: ids of chunks that are too large or cut short, blocks of FLAC.
  std::vector<std::string> refused = {};
  std::map<int, std::string> tags = {};  // by SF_STR_TITLE ...
  std::vector<SF_CUE_POINT> cues = {};
  std::optional<SF_INSTRUMENT> instrument = {};  // MIDI notes, gain and loops of a sampler
};

// `container` is SF_FORMAT_WAV ...
Metadata read_metadata(SNDFILE* file, int container);

// To be called before the first sample is written. Chunks are the caller's to write when the
// families agree.
void write_metadata(SNDFILE* file, int container, const Metadata& metadata);

// What a file read back holds no more, each in a word or two: "title", "cue points", "bext".
std::vector<std::string> lost_metadata(const Metadata& input, const Metadata& output);

}  // namespace channelstrip::host
