// Tags that libsndfile doesn't read.

#pragma once

#include <map>
#include <string>
#include <vector>

namespace channelstrip::host {

// The names of the tags of a FLAC, Ogg or MP3 file that are not in `read`, by SF_STR_TITLE ...,
// "REPLAYGAIN_TRACK_GAIN" or "picture", in alphabetical order. Those that name the encoder belong
// to the coding and aren't counted. `descriptor` must be seekable; its position stays as it is.
std::vector<std::string> lost_tags(int descriptor, const std::map<int, std::string>& read);

}  // namespace channelstrip::host
