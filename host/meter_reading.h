// A strip's meter array, by name.

#pragma once

#include <span>

namespace channelstrip::host {

// Linear values, extremes since the meters' last reset.
struct MeterReading {
  std::span<const float> input_peak;    // per channel
  std::span<const float> output_peak;   // per channel
  float level = 0;                      // detector level where the gain was greatest
  float gain = 0;                       // greatest, of any link group, makeup excepted
  float compressor_reduction = 0;       // 1 - least factor
  float expander_reduction = 0;         // 1 - least factor
  std::span<const float> channel_gain;  // per channel: the greatest of its link group
};

}  // namespace channelstrip::host
