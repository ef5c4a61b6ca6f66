// What other programs say of a band in place of Q and midpoint, for its analog prototype: no sample
// rate is known here.

#pragma once

#include "../design/settings.h"

namespace channelstrip::host {

// Q of an analog band pass whose edges, 3 dB below its peak, lie `octaves` apart. Throws
// std::invalid_argument unless these are above 0.
double q_of_bandwidth(double octaves);

// S of an analog shelf of `gain` dB that has this Q.
double slope_of_q(double q, double gain);

// The midpoint of an analog shelf of `gain` dB and slope S whose plateau's asymptote ends at
// `corner` Hz: |gain| / 2 lies between them, at S times 12 dB per octave (40 per decade).
double shelf_midpoint(BandType shelf, double corner, double gain, double slope);

}  // namespace channelstrip::host
