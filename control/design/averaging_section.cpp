#include "averaging_section.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "dynamics.h"

namespace channelstrip::host {
namespace {

constexpr double kLeastGain = 0x1p-17;

PolePair pair_of(double slow) {
  return {.slow = slow, .fast = std::min(1.0, std::max(slow, kLeastGain / slow))};
}

double round_to_multiple(double value, double step) {
  return std::round(value / step) * step;
}

}  // namespace

Section averaging_section(double milliseconds, double sample_rate) {
  const auto decay = static_cast<float>(decay_factor(milliseconds, sample_rate));
  const auto feedback = static_cast<double>(decay);
  return {.b0 = 1 - feedback, .a1 = feedback};
}

// Written with expm1 and log1p instead of the difference of two powers, which would cancel when the
// poles are close to each other.
double remainder_of_step(const PolePair& poles, double samples) {
  const auto [slow, fast] = poles;
  const double apart = fast - slow;
  if (apart == 0) return std::exp(samples * std::log1p(-slow)) * (1 + samples * slow);
  const double power = (samples + 1) * std::log1p(-slow);
  const double ratio = (samples + 1) * std::log1p(-apart / (1 - slow));
  return std::exp(power) * (1 - slow * std::expm1(ratio) / apart);
}

// By bisection: the faster the slow pole, the less remains.
PolePair averaging_poles(double samples) {
  double low = 0, high = 1;
  for (double slow = 0.5; low < slow && slow < high; slow = (low + high) / 2) {
    const bool too_slow = remainder_of_step(pair_of(slow), samples) > 1 / std::numbers::e;
    (too_slow ? low : high) = slow;
  }
  return pair_of(low);
}

// a1 is a multiple of 2^-23 and a2 of 2^-24, so that their sums are exact and b0 = 1 - a1 - a2 is a
// multiple of 2^-24 up to 1, which a float holds.
Section two_pole_section(double milliseconds, double sample_rate) {
  if (milliseconds == 0) return {};
  const auto [slow, fast] = averaging_poles(milliseconds / 1000 * sample_rate);
  Section section;
  section.a1 = round_to_multiple(2 - slow - fast, 0x1p-23);
  section.a2 = round_to_multiple(1 - section.a1 - slow * fast, 0x1p-24);
  section.b0 = 1 - section.a1 - section.a2;
  return section;
}

Section detector_section(const DetectorSettings& settings, double sample_rate) {
  switch (settings.mode) {
    case DetectorMode::kPeak:
      break;
    case DetectorMode::kSmooth:
      return averaging_section(settings.time, sample_rate);
    case DetectorMode::kAverage:
      return two_pole_section(settings.time, sample_rate);
  }
  return {};
}

}  // namespace channelstrip::host
