// A level that rises at once and falls slowly, for a host that reads it now and then.

#pragma once

#include <algorithm>
#include <cmath>

namespace channelstrip::plugins {

// Falls by 20 dB in 1.7 s, as a peak meter of type I does (IEC 60268-10), between two limits.
class HeldLevel {
 public:
  HeldLevel() = default;
  // dB.
  HeldLevel(double floor, double ceiling)
      : floor_(floor),
        least_(std::pow(10, floor / 20)),
        greatest_(std::pow(10, ceiling / 20)),
        linear_(least_),
        decibels_(floor) {}

  // How much it falls in a call.
  struct Fall {
    double decibels, factor;
  };
  static Fall fall_in(double seconds) {
    const double decibels = 20 / 1.7 * seconds;
    return {decibels, std::pow(10, -decibels / 20)};
  }

  // The greatest level of a call, linear. The logarithm is only taken of one that is greater than
  // what is held.
  void see(double level, const Fall& fall) {
    linear_ = std::max(least_, linear_ * fall.factor);
    decibels_ = std::max(floor_, decibels_ - fall.decibels);
    level = std::min(level, greatest_);
    if (!(level > linear_)) return;
    linear_ = level;
    decibels_ = kDecibelsOfTwo * static_cast<double>(std::log2(static_cast<float>(level)));
  }

  float decibels() const { return static_cast<float>(decibels_); }

 private:
  // The logarithm is taken in single precision, good to 2e-5 dB; in double it takes twice the time.
  static constexpr double kDecibelsOfTwo = 6.020599913279624;

  double floor_ = 0, least_ = 1, greatest_ = 1;
  double linear_ = 1, decibels_ = 0;  // the same
};

}  // namespace channelstrip::plugins
