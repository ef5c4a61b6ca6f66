// What single precision leaves of a band: how far the library's filter is off, and its noise.

#pragma once

#include "settings.h"

namespace channelstrip::host {

struct BandAccuracy {
  double deviation;  // dB, the greatest difference of the magnitudes, 0 or above
  double frequency;  // Hz, where it is
  double noise;      // dBFS, RMS, beside white noise at kNoiseInput in
};

inline constexpr double kNoiseInput = -20;  // dBFS, RMS

// Of the band as the library gets it, against the filter in double precision. What lies 60 dB below
// the band's maximum counts as silence.
//
// The noise is an estimate. Each of the five roundings of a sample (the output, two for each
// memory) is taken as white, relative to the rounded value; 1 / (1 - a1 z^-1 - a2 z^-2) and the
// sections after it colour it. Measured noise is within 6 dB of it. L. B. Jackson, "On the
// Interaction of Roundoff Noise and Dynamic Range in Digital Filters", Bell System Technical
// Journal 49, 1970.
BandAccuracy band_accuracy(const BandSettings& band, double sample_rate);

}  // namespace channelstrip::host
