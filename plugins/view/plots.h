// From values to places in a plot and back, for drawing and for the pointer.

#pragma once

#include <algorithm>
#include <cmath>

#include "geometry.h"
#include "model.h"

namespace channelstrip::view {

// Of a plot's height: a line at silence is out of sight.
inline constexpr double kBelow = -0.02;

// Gains in dB over frequency, and beside them spectra in dB of full scale.
struct EqPlot {
  Rect area;
  double range = 12;  // dB, at the top; its negative at the bottom

  static constexpr double kSpectrumLow = -96, kSpectrumHigh = 0;

  static double position_of(double frequency) {
    return std::log(frequency / kLowestFrequency) / std::log(kHighestFrequency / kLowestFrequency);
  }
  double x(double frequency) const { return area.x + area.width * position_of(frequency); }
  double frequency(double x) const {
    const double position = std::clamp((x - area.x) / area.width, 0.0, 1.0);
    return kLowestFrequency * std::pow(kHighestFrequency / kLowestFrequency, position);
  }
  double y(double gain) const { return area.y + area.height * (range - gain) / (2 * range); }
  double gain(double y) const { return range - (y - area.y) / area.height * 2 * range; }
  double spectrum_y(double level) const {
    const double position = (level - kSpectrumLow) / (kSpectrumHigh - kSpectrumLow);
    return area.bottom() - area.height * std::clamp(position, kBelow, 1.0);
  }
};

// Output level over input level, both in dB.
struct LevelPlot {
  Rect area;
  double low = -72, high = 6;

  double x(double level) const { return area.x + area.width * (level - low) / (high - low); }
  double y(double level) const {
    return area.bottom() - area.height * (level - low) / (high - low);
  }
  double level(double x) const { return low + (x - area.x) / area.width * (high - low); }
};

// Levels and reductions in dB over the last seconds.
struct HistoryPlot {
  Rect area;
  static constexpr double kLow = -60;

  double x(double seconds_ago) const {
    return area.right() - area.width * seconds_ago / kHistorySeconds;
  }
  double y(double level) const {
    return area.y + area.height * std::clamp(level / kLow, 0.0, 1 - kBelow);
  }
};

// How far up a meter a level in dB is, 0 to 1: the scale of IEC 60268-18, annex A, where the upper
// half holds the upper 20 dB.
inline double meter_position(double level) {
  const double percent = level < -70   ? 0
                         : level < -60 ? (level + 70) * 0.25
                         : level < -50 ? (level + 60) * 0.5 + 2.5
                         : level < -40 ? (level + 50) * 0.75 + 7.5
                         : level < -30 ? (level + 40) * 1.5 + 15
                         : level < -20 ? (level + 30) * 2.0 + 30
                                       : (level + 20) * 2.5 + 50;
  return std::clamp(percent / 100, 0.0, 1.0);
}

}  // namespace channelstrip::view
