// Formulas as promised and with other roundings. A test chooses values at which the promised result
// differs from all others.

#pragma once

#include <cmath>
#include <vector>

namespace channelstrip::test {

struct Polynomial {
  float a, b, c;

  float plain(float x) const { return a * (x * x) + b * x + c; }

  std::vector<float> otherwise(float x) const {
    return {std::fma(a, x * x, b * x) + c, std::fma(b, x, a * (x * x)) + c,
            std::fma(a, x * x, b * x + c), std::fma(a, x * x, std::fma(b, x, c)),
            a * (x * x) + (b * x + c),     a * x * x + b * x + c,
            (a * x + b) * x + c,           std::fma(std::fma(a, x, b), x, c)};
  }
};

struct Line {
  float threshold, slope;

  float plain(float x) const { return (x - threshold) * slope; }

  // x is the product of octaves and decibels per octave, which could be fused as well.
  std::vector<float> otherwise(float octaves, float db_per_octave) const {
    const float x = octaves * db_per_octave;
    return {std::fma(octaves, db_per_octave, -threshold) * slope,
            std::fma(x, slope, -(threshold * slope)), x * slope - threshold * slope};
  }
};

inline float fused_step(float x, float target, float weight) {
  return std::fma(target - x, weight, x);
}
inline float unfused_step(float x, float target, float weight) {
  return x + (target - x) * weight;
}

// x after `count` steps.
inline float after_steps(int count, float (*step)(float, float, float), float x, float target,
                         float weight) {
  for (int i = 0; i < count; ++i) x = step(x, target, weight);
  return x;
}

}  // namespace channelstrip::test
