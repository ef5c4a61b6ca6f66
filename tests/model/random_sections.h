// Random second-order sections, b0, b1, b2, a1, a2 with a1 and a2 added.

#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "random.h"

namespace channelstrip::test {

using SectionCoefs = std::array<float, 5>;

// A section whose result doesn't depend on the order of its sums: besides b0 it has at most one
// coefficient, so each sum has at most one nonzero term. `shape` is that coefficient's index; 0:
// none.
inline SectionCoefs order_free_section(Random& random, int shape) {
  SectionCoefs c{random.real(-1.5F, 1.5F)};
  if (shape > 0) c[static_cast<std::size_t>(shape)] = random.real(-0.95F, 0.95F);
  return c;
}

enum class Filter { kPeak, kLowShelf, kLowPass };

// The audio equaliser cookbook's formulas. `frequency` is in periods per sample.
inline SectionCoefs cookbook_section(Filter filter, double frequency, double q, double gain_db) {
  const double w = 2.0 * std::numbers::pi * frequency;
  const double cosine = std::cos(w);
  const double alpha = std::sin(w) / (2.0 * q);
  const double a = std::pow(10.0, gain_db / 40.0);
  double b[3] = {}, d[3] = {};
  switch (filter) {
    case Filter::kPeak:
      b[0] = 1.0 + alpha * a, b[1] = -2.0 * cosine, b[2] = 1.0 - alpha * a;
      d[0] = 1.0 + alpha / a, d[1] = -2.0 * cosine, d[2] = 1.0 - alpha / a;
      break;
    case Filter::kLowShelf: {
      const double root = 2.0 * std::sqrt(a) * alpha;
      b[0] = a * (a + 1.0 - (a - 1.0) * cosine + root);
      b[1] = 2.0 * a * (a - 1.0 - (a + 1.0) * cosine);
      b[2] = a * (a + 1.0 - (a - 1.0) * cosine - root);
      d[0] = a + 1.0 + (a - 1.0) * cosine + root;
      d[1] = -2.0 * (a - 1.0 + (a + 1.0) * cosine);
      d[2] = a + 1.0 + (a - 1.0) * cosine - root;
      break;
    }
    case Filter::kLowPass:
      b[0] = b[2] = 0.5 * (1.0 - cosine), b[1] = 1.0 - cosine;
      d[0] = 1.0 + alpha, d[1] = -2.0 * cosine, d[2] = 1.0 - alpha;
      break;
  }
  return {static_cast<float>(b[0] / d[0]), static_cast<float>(b[1] / d[0]),
          static_cast<float>(b[2] / d[0]), static_cast<float>(-d[1] / d[0]),
          static_cast<float>(-d[2] / d[0])};
}

// 20 Hz to 18 kHz, Q 0.3 to 6, up to 12 dB either way.
inline SectionCoefs general_section(Random& random) {
  const auto filter = random.pick({Filter::kPeak, Filter::kLowShelf, Filter::kLowPass});
  const double rate = random.pick({44100.0, 48000.0, 88200.0, 96000.0, 192000.0});
  const float octaves = random.real(0.0F, std::log2(18000.0F / 20.0F));
  const float q = random.real(0.3F, 6.0F);
  const float gain = random.real(-12.0F, 12.0F);
  return cookbook_section(filter, 20.0 / rate * std::exp2(static_cast<double>(octaves)),
                          static_cast<double>(q), static_cast<double>(gain));
}

// A low-pass that never undershoots a rectified level: its impulse response is nowhere negative.
inline SectionCoefs smoothing_section(Random& random) {
  return cookbook_section(Filter::kLowPass, static_cast<double>(random.real(0.0005F, 0.02F)), 0.5,
                          0.0);
}

}  // namespace channelstrip::test
