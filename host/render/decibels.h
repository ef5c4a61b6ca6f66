// Meter values as summaries show them.

#pragma once

#include <algorithm>

#include "../design/dynamics.h"

namespace channelstrip::host {

inline double decibels(float linear) {
  return linear_to_db(static_cast<double>(linear));
}

// A gain of 1 reduces by 0, not -0, dB.
inline double reduction(float gain) {
  return std::max(0.0, -decibels(gain));
}

}  // namespace channelstrip::host
