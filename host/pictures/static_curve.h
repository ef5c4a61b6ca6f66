// What the dynamics do to a steady level.

#pragma once

#include "../design/settings.h"

namespace channelstrip::host {

// Gain terms in dB, makeup excepted.
struct StaticGain {
  double compressor = 0, expander = 0;
};

// For a detector level in dB that has lasted. A gate has two states between its thresholds; an
// expander without hysteresis is always open. Throws std::invalid_argument as the curves do.
StaticGain static_gain(const StripSettings& settings, double level, bool gate_open);

}  // namespace channelstrip::host
