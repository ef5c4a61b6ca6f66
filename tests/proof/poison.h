// Numbers that no host should send.

#pragma once

#include <tests/model/random.h>

#include <cmath>
#include <limits>
#include <ranges>

namespace channelstrip::test {

inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
inline constexpr float kInfinity = std::numeric_limits<float>::infinity();
inline constexpr float kDenormal = 1e-40F;
inline constexpr float kHuge = 3e38F;

// A random one of either sign.
inline float random_poison(Random& random) {
  const float value = random.pick(
      {kNaN, kInfinity, 0.0F, kDenormal, std::numeric_limits<float>::denorm_min(), kHuge});
  return std::copysign(value, random.pick({-1.0F, 1.0F}));
}

template <std::ranges::contiguous_range Range>
auto& one_of(Random& random, Range&& range) {
  const int last = static_cast<int>(std::ranges::size(range)) - 1;
  return std::ranges::data(range)[random.integer(0, last)];
}

}  // namespace channelstrip::test
