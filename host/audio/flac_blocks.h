// Blocks of a FLAC file that libsndfile doesn't read.

#pragma once

#include <string>
#include <vector>

namespace channelstrip::host {

// Their kinds, "picture", "cue sheet" and "application block", each once. `descriptor` must be
// seekable; its position stays as it is.
std::vector<std::string> lost_flac_blocks(int descriptor);

}  // namespace channelstrip::host
