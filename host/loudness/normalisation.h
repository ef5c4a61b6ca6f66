// The gain that takes a programme to a loudness.

#pragma once

#include <optional>

#include "programme.h"

namespace channelstrip::host {

struct LoudnessTarget {
  double loudness;        // LUFS, integrated
  double true_peak = -1;  // dBTP, the ceiling, which comes first
};

struct Normalisation {
  LoudnessTarget target;
  double gain = 0;                      // dB, a multiple of 0.01
  std::optional<double> loudness = {};  // LUFS, reached; none: the programme has none
  double true_peak = 0;                 // dBTP, reached; of silence -infinity
  bool held = false;                    // the ceiling keeps it from the target
};

// The nearest gain to the target with which the true peak stays at or below the ceiling. None, 0
// dB, for a programme without a loudness or with a peak that isn't finite.
Normalisation normalise(const Programme& programme, const LoudnessTarget& target);

}  // namespace channelstrip::host
