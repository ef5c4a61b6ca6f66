// Signals whose measures are known.

#pragma once

#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace channelstrip::test {

// The same sine in each of `channels` interleaved channels.
inline std::vector<float> sine(double amplitude, double frequency, double sample_rate,
                               std::size_t frames, std::size_t channels = 1) {
  std::vector<float> samples;
  for (std::size_t i = 0; i < frames; ++i) {
    const double phase = 2 * std::numbers::pi * frequency * static_cast<double>(i) / sample_rate;
    samples.insert(samples.end(), channels, static_cast<float>(amplitude * std::sin(phase)));
  }
  return samples;
}

}  // namespace channelstrip::test
