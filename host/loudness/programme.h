// A whole programme's loudness and true peak, as they would be with any gain.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "control/design/channel_layout.h"
#include "ebur128_meter.h"
#include "true_peak.h"

namespace channelstrip::host {

struct Programme {
  std::vector<double> power;  // weighted mean square of every 0.1 s, 1 at -0.691 LUFS
  double true_peak = 0;       // of any channel, linear
};

// Integrated loudness in LUFS with a gain in dB (ITU-R BS.1770-4, annex 1): the mean of the blocks
// of 0.4 s, of which one begins every 0.1 s, above -70 LUFS and above 10 LU below the mean of
// these. The gain moves blocks over the first gate, so loudness isn't simply gain plus loudness
// without it. None where all blocks lie below the gate or there is none.
std::optional<double> integrated_loudness(const Programme& programme, double gain);

// Measures with libebur128's filters and weights. Keeps 8 bytes for every 0.1 s.
class ProgrammeMeter {
 public:
  // Throws std::invalid_argument for a sample rate outside 16 to 2822400 Hz.
  ProgrammeMeter(double sample_rate, const ChannelLayout& layout);

  // A whole number of interleaved frames.
  void add(std::span<const float> frames);

  Programme programme() const { return {power_, true_peak_.peak()}; }

 private:
  Ebur128 meter_;
  std::size_t missing_;  // frames up to the next step
  std::vector<double> power_;
  TruePeakMeter true_peak_;
};

}  // namespace channelstrip::host
