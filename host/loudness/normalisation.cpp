#include "normalisation.h"

#include <algorithm>
#include <cmath>

#include "control/design/dynamics.h"

namespace channelstrip::host {
namespace {

constexpr double kStepsPerDecibel = 100;
constexpr double kNear = 0.05;  // LU, as near as a summary tells
constexpr int kTurns = 10;

// The gain whose loudness is the target's. The gate makes loudness rise by a little more or less
// than the gain, so it takes a few turns, and where a block jumps over the gate there may be none.
double gain_to(const Programme& programme, double loudness, double target) {
  double gain = 0, best = 0;
  double distance = std::abs(target - loudness);
  for (int turn = 0; turn < kTurns && distance > 0.001; ++turn) {
    gain += target - loudness;
    const auto reached = integrated_loudness(programme, gain);
    if (!reached) return gain;
    loudness = *reached;
    if (std::abs(target - loudness) >= distance) continue;
    distance = std::abs(target - loudness);
    best = gain;
  }
  return best;
}

}  // namespace

Normalisation normalise(const Programme& programme, const LoudnessTarget& target) {
  const double peak = linear_to_db(programme.true_peak);
  const auto loudness = integrated_loudness(programme, 0);
  Normalisation result{.target = target, .true_peak = peak};
  if (!loudness || !std::isfinite(peak)) return result;
  const double wanted =
      std::round(gain_to(programme, *loudness, target.loudness) * kStepsPerDecibel);
  const double highest = std::floor((target.true_peak - peak) * kStepsPerDecibel);
  result.gain = std::min(wanted, highest) / kStepsPerDecibel;
  // As good as -70 LUFS, everything lies below the gate.
  result.loudness = integrated_loudness(programme, result.gain).value_or(*loudness + result.gain);
  result.true_peak = peak + result.gain;
  result.held = highest < wanted && std::abs(*result.loudness - target.loudness) >= kNear;
  return result;
}

}  // namespace channelstrip::host
