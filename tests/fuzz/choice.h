// Which element or number a step chooses.

#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

#include "step.h"

namespace channelstrip::test {

// Signed zeros, the ends of the float range, exact levels in dB, the floor of levels, and the
// limits of the conversion from dB to gain.
inline constexpr float kSpecialNumbers[] = {
    0.0F,       -0.0F,    1e-45F,     1e-40F,      1.1754944e-38F, 0.25F,     0.5F,
    1.0F,       -1.0F,    2.0F,       -6.0206003F, 6.0206003F,     -12.0412F, -140.0F,
    -150.0F,    -300.0F,  -599.0F,    -758.5956F,  -764.6162F,     -1000.0F,  770.6368F,
    776.65735F, 16777216, 3.4028e38F, -3.4028e38F, 0.99999994F};

inline constexpr int32_t kSpecialIntegers[] = {0,
                                               1,
                                               -1,
                                               2,
                                               (1 << 24) + 1,
                                               std::numeric_limits<int32_t>::max(),
                                               std::numeric_limits<int32_t>::min()};

template <typename Sequence>
auto& chosen(Sequence& from, std::size_t index) {
  return *(std::begin(from) + static_cast<std::ptrdiff_t>(index % std::size(from)));
}

// A special number, a float near `present`, a number with few significant bits, or any bits at all.
inline float number(const Step& step, float present) {
  const auto low = static_cast<int16_t>(step.value % 65536);
  const auto high = step.value / 65536;
  switch (step.how % 4) {
    case 0:
      return kSpecialNumbers[step.value % std::size(kSpecialNumbers)];
    case 1: {
      constexpr float kInfinity = std::numeric_limits<float>::infinity();
      const float end = low < 0 ? -kInfinity : kInfinity;
      for (unsigned i = 0; i <= high % 4; ++i) present = std::nextafter(present, end);
      return present;
    }
    case 2:
      return std::ldexp(static_cast<float>(low), -static_cast<int>(high % 32));
    default:
      return std::bit_cast<float>(step.value);
  }
}

inline int32_t integer(const Step& step) {
  return step.how % 2 == 0 ? kSpecialIntegers[step.value % std::size(kSpecialIntegers)]
                           : static_cast<int32_t>(step.value);
}

}  // namespace channelstrip::test
