// Renders audio by a shipped preset and measures levels in dBFS.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

#include "control/design/dynamics.h"
#include "programme.h"
#include "tests/host/support/audio.h"
#include "tests/host/support/through_strip.h"

namespace channelstrip::test {

using programme::Samples;

inline host::StripSettings settings_of(const std::string& preset) {
  return host::read_preset(CHANNELSTRIP_SOURCE_DIR "/presets/" + preset + ".toml").settings;
}

inline TestAudio audio(Samples samples, int channels = 1) {
  return {.channels = channels, .floats = std::move(samples)};
}

inline Samples through(const std::string& preset, const Samples& input, int channels = 1) {
  return through_strip(settings_of(preset), audio(input, channels)).audio;
}

inline double peak_level(const Samples& samples) {
  double peak = 0;
  for (const float x : samples) peak = std::max(peak, static_cast<double>(std::abs(x)));
  return host::linear_to_db(peak);
}

// RMS level from a time on, both in seconds.
inline double level(const Samples& samples, double from, double length) {
  const std::size_t first = programme::frames(from), count = programme::frames(length);
  double sum = 0;
  for (std::size_t i = first; i < first + count; ++i) {
    sum += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
  }
  return host::linear_to_db(std::sqrt(sum / static_cast<double>(count)));
}

}  // namespace channelstrip::test
