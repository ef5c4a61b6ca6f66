// What single precision leaves of a preset's bands.

#pragma once

#include <vector>

#include "../design/band_accuracy.h"
#include "preset.h"

namespace channelstrip::host {

// More than this is worth a remark.
inline constexpr double kRemarkableDeviation = 0.3;  // dB
inline constexpr double kRemarkableNoise = -90;      // dBFS

struct JudgedBand {
  Preset::Band band;
  BandAccuracy accuracy;

  bool is_off() const { return accuracy.deviation > kRemarkableDeviation; }
  // A key filter is heard only where its signal is listened to.
  bool is_noisy() const { return accuracy.noise > kRemarkableNoise && !band.key_filter; }
};

// Every band of the settings and of the changes once, in order. Throws std::runtime_error
// "FILE:LINE:COLUMN: key: ..." for a band that is impossible at the sample rate.
std::vector<JudgedBand> judge_bands(const Preset& preset, double sample_rate);

// Adds a remark for each band that is off, or adds noise, by more than the above.
void remark_on_precision(Preset& preset, double sample_rate);

}  // namespace channelstrip::host
