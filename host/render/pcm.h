// Floating-point samples as integers.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace channelstrip::host {

// The nearest integer sample of `bits` bits, in the top bits of 32. What is above full scale is
// clamped and counted in `clipped`; 1.0 itself, one step above the highest integer, is clamped
// without being counted. Not a number gives 0.
inline std::int32_t to_pcm(float sample, int bits, long long& clipped) {
  const double full_scale = std::ldexp(1.0, bits - 1);
  const double value = std::nearbyint(static_cast<double>(sample) * full_scale);
  if (std::isnan(value)) return 0;
  if (std::abs(value) > full_scale) ++clipped;
  const double clamped = std::clamp(value, -full_scale, full_scale - 1);
  return static_cast<std::int32_t>(clamped * std::ldexp(1.0, 32 - bits));
}

}  // namespace channelstrip::host
