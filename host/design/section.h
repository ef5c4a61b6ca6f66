// Second-order sections from frequency, gain and Q.
//
// Formulas: Robert Bristow-Johnson, "Cookbook formulae for audio equalizer biquad filter
// coefficients" (the bilinear transform of analog prototypes).

#pragma once

#include <complex>

#include "settings.h"

namespace channelstrip::host {

// Normalised (a0 = 1); a1 and a2 carry the sign with which they are added:
//   H(z) = (b0 + b1 z^-1 + b2 z^-2) / (1 - a1 z^-1 - a2 z^-2)
struct Section {
  double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
};

// Throws std::invalid_argument, naming the setting, unless the frequency lies inside (0, rate/2),
// Q is above 0, the gain within its range and all are finite. Passes ignore the gain.
Section design_band(const BandSettings& band, double sample_rate);

// A section of five floats close to `section`. Low frequencies hang on the sums b0 + b1 + b2 and
// 1 - a1 - a2, which are small differences of large coefficients: a2 and b2 are rounded last, so
// as to make up for what the others did to the sums.
Section in_single_precision(const Section& section);

// Whether both poles lie inside the unit circle.
bool is_stable(const Section& section);

// The band as the library gets it, in single precision. Throws likewise, and also for a band that
// no stable section of floats can hold: a frequency below about 2.8e-5 of the sample rate.
Section design_stored_band(const BandSettings& band, double sample_rate);

// H at `frequency`, both in Hz.
std::complex<double> response(const Section& section, double frequency, double sample_rate);

}  // namespace channelstrip::host
