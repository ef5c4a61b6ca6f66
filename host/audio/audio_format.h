// What an audio file holds.

#pragma once

#include <sndfile.h>

#include <string>
#include <vector>

#include "control/design/channel_layout.h"

namespace channelstrip::host {

struct AudioFormat {
  int sample_rate = 0;  // Hz
  int channels = 0;
  int container = 0;             // SF_FORMAT_WAV ...
  int sample_type = 0;           // SF_FORMAT_PCM_16 ...
  std::vector<int> channel_map;  // SF_CHANNEL_MAP_LEFT ... per channel; empty: the file names none
};

// Bits of integer samples, 0 for every other sample type.
int integer_bits(const AudioFormat& format);

// As engineers write it: "24-bit", "32-bit float".
std::string sample_type_name(const AudioFormat& format);

std::vector<Speaker> speakers(const AudioFormat& format);

}  // namespace channelstrip::host
