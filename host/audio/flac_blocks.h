// What a FLAC file holds that libsndfile doesn't know.

#pragma once

#include <string>
#include <vector>

namespace channelstrip::host {

// "picture", "cue sheet", "application block", each once. `descriptor` is of a file that can be
// sought, whose position stays.
std::vector<std::string> unknown_flac_blocks(int descriptor);

}  // namespace channelstrip::host
