// What a strip's meters show.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "engine.h"

namespace channelstrip::host {

// What happened since the last reading. Peaks, levels and gains are linear, a gain is 1 at 0 dB and
// has no makeup in it.
struct LiveMeters {
  std::uint64_t samples = 0;                            // of whole blocks
  std::array<float, kMostChannels> input_peak = {};     // behind the input gain
  std::array<float, kMostChannels> output_peak = {};    // behind everything
  std::array<float, kMostChannels> greatest_gain = {};  // of the channel's link group
  // Least of the windows' greatest gains: the gain stayed at or below it for a whole window. 1
  // before the first window has ended.
  std::array<float, kMostChannels> least_gain = {1, 1, 1, 1, 1, 1, 1, 1};
  float gain = 0;                                       // greatest of any group
  float level = 0;                                      // the detector's level where it was
  float compressor_reduction = 0;                       // 1 - least factor, of any group
  float expander_reduction = 0;                         // 1 - least factor, of any group
  std::array<std::uint64_t, kMostChannels> overs = {};  // output samples beyond full scale
  std::uint64_t not_finite = 0;                         // input samples taken as silence

  // As the last whole block left them, of the channel's link group.
  std::array<float, kMostChannels> compressor_gain = {};  // dB
  std::array<float, kMostChannels> expander_gain = {};    // dB
  std::array<float, kMostChannels> detector_level = {};

  // Appends what happened afterwards.
  void append(const LiveMeters& later) {
    samples += later.samples;
    for (std::size_t c = 0; c < kMostChannels; ++c) {
      input_peak[c] = std::max(input_peak[c], later.input_peak[c]);
      output_peak[c] = std::max(output_peak[c], later.output_peak[c]);
      greatest_gain[c] = std::max(greatest_gain[c], later.greatest_gain[c]);
      least_gain[c] = std::min(least_gain[c], later.least_gain[c]);
      overs[c] += later.overs[c];
    }
    if (later.gain > gain) {
      gain = later.gain;
      level = later.level;
    }
    compressor_reduction = std::max(compressor_reduction, later.compressor_reduction);
    expander_reduction = std::max(expander_reduction, later.expander_reduction);
    not_finite += later.not_finite;
    compressor_gain = later.compressor_gain;
    expander_gain = later.expander_gain;
    detector_level = later.detector_level;
  }
};

}  // namespace channelstrip::host
