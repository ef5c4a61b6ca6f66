// The audio that everyone processes: noise, loud for a while, then soft.

#pragma once

#include <tests/support/busy_strip.h>

#include <cmath>
#include <vector>

namespace channelstrip::bench {

inline constexpr double kSampleRate = 48000;

// One turn. Each half is 171 ms, long enough for every gate to open and close.
inline constexpr int kFrames = 16384;

// Uniform noise at -9 dBFS peak, 45 dB lower in the second half; each channel different.
inline std::vector<std::vector<float>> programme(int channels) {
  std::vector<std::vector<float>> result(static_cast<std::size_t>(channels));
  const float soft = std::pow(10.0f, -45.0f / 20);
  for (std::size_t c = 0; c < result.size(); ++c) {
    test::Noise noise(static_cast<unsigned>(c));
    for (int i = 0; i < kFrames; ++i) {
      result[c].push_back(0.35f * (i < kFrames / 2 ? 1 : soft) * noise());
    }
  }
  return result;
}

}  // namespace channelstrip::bench
