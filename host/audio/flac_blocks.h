// What libsndfile doesn't read of a FLAC file's metadata.

#pragma once

#include <string>
#include <vector>

namespace channelstrip::host {

// The kinds of blocks, "picture", "cue sheet" and "application block", and the names of comments,
// "REPLAYGAIN_TRACK_GAIN", each once. `descriptor` must be seekable; its position stays as it is.
std::vector<std::string> unknown_flac_metadata(int descriptor);

}  // namespace channelstrip::host
