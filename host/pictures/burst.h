// How a strip's gain moves when the level jumps: measured, with the library itself.

#pragma once

#include <vector>

#include "control/design/settings.h"
#include "control/library/library.h"

namespace channelstrip::host {

// dB, from the jump on, one per sample. The term of a compressor or expander that isn't set is 0.
struct GainCourse {
  std::vector<double> compressor, expander, total;  // makeup is in the total alone
};

struct Burst {
  double quiet, loud;  // dBFS, below and above the levels at which the gain changes
  GainCourse rise, fall;
};

// A steady signal jumps from quiet to loud, stays until the gain has settled and jumps back.
// Filters play no part. Needs a compressor or an expander. Throws std::invalid_argument, naming the
// setting.
Burst measure_burst(const StripSettings& settings, double sample_rate, const Library& library);

}  // namespace channelstrip::host
