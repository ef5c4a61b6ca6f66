// An audio file's metadata: what it holds besides its samples.

#pragma once

#include <sndfile.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "chunks.h"

namespace channelstrip::host {

// Between containers of one family (WAV and RF64, say) every chunk is copied verbatim, so that
// nothing is lost: bext with its coding history, cart, iXML, cue points and their labels, loops,
// tags. Nothing is added or recomputed, except for the zero that evened() appends for RF64. Any
// other container gets tags, cue points and loops, as far as libsndfile or cue_chunks() can write
// them there; libsndfile appends its own name to the "software" tag.
struct Metadata {
  ChunkFamily family = ChunkFamily::kNone;
  std::vector<Chunk> chunks = {};  // in file order, without those that describe the samples' coding
  // What can't be copied: ids of chunks that are too large or cut short, blocks of FLAC, tags.
  std::vector<std::string> refused = {};
  std::map<int, std::string> tags = {};  // by SF_STR_TITLE ...
  std::vector<SF_CUE_POINT> cues = {};
  std::optional<SF_INSTRUMENT> instrument = {};  // MIDI notes, gain and loops of a sampler
};

// `container` is SF_FORMAT_WAV ...
Metadata read_metadata(SNDFILE* file, int container);

// Writes the metadata through libsndfile, to be called before the first sample is written. Does
// nothing if the families agree: the caller then writes the chunks.
void write_metadata(SNDFILE* file, int container, const Metadata& metadata);

// What `output`, a file read back, lacks of `input`, each item in a word or two: "title", "cue
// points", "bext".
std::vector<std::string> lost_metadata(const Metadata& input, const Metadata& output);

}  // namespace channelstrip::host
