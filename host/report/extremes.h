// The lowest and the highest of some samples.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace channelstrip::host {

struct Extremes {
  float low = 0, high = 0;

  void merge(const Extremes& other) {
    low = std::min(low, other.low);
    high = std::max(high, other.high);
  }

  float magnitude() const { return std::max(-low, high); }
};

// Of one sample or more. Lanes of eight, so that the compiler compares whole registers.
inline Extremes extremes_of(std::span<const float> samples) {
  constexpr std::size_t kLanes = 8;
  std::array<float, kLanes> low, high;
  low.fill(samples.front());
  high = low;
  for (; samples.size() >= kLanes; samples = samples.subspan(kLanes)) {
    for (std::size_t i = 0; i < kLanes; ++i) low[i] = std::min(low[i], samples[i]);
    for (std::size_t i = 0; i < kLanes; ++i) high[i] = std::max(high[i], samples[i]);
  }
  Extremes all{low[0], high[0]};
  for (std::size_t i = 1; i < kLanes; ++i) all.merge({low[i], high[i]});
  for (const float sample : samples) all.merge({sample, sample});
  return all;
}

}  // namespace channelstrip::host
