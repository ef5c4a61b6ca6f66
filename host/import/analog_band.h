// Q, slope and midpoint of a band from what other programs give instead. All of them are those of
// the analog prototype, as no sample rate is known here.

#pragma once

#include "control/design/settings.h"

namespace channelstrip::host {

// Q of an analog band pass whose edges, 3 dB below its peak, lie `octaves` apart. Throws
// std::invalid_argument unless `octaves` is above 0.
double q_of_bandwidth(double octaves);

// S of an analog shelf of `gain` dB that has this Q.
double slope_of_q(double q, double gain);

// The midpoint, in Hz, of an analog shelf of `gain` dB and slope S whose plateau, as an asymptote,
// ends at `corner` Hz. From the corner to the midpoint the gain changes by |gain| / 2, at S times
// 12 dB per octave (40 per decade).
double shelf_midpoint(BandType shelf, double corner, double gain, double slope);

}  // namespace channelstrip::host
