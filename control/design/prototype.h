// The analog filters that bands imitate.
//
// Second-order prototypes and the shelf slope S: Robert Bristow-Johnson, "Cookbook formulae for
// audio equalizer biquad filter coefficients". Butterworth: S. Butterworth, "On the Theory of
// Filter Amplifiers", Experimental Wireless & the Wireless Engineer 7, 1930.

#pragma once

#include <complex>

#include "fixed_vector.h"
#include "section.h"
#include "settings.h"

namespace channelstrip::host {

// c0 + c1 s + c2 s^2
struct Polynomial {
  double c0 = 1, c1 = 0, c2 = 0;
};

// H(s) = numerator / denominator, s in units of the band's frequency. First order has c2 = 0.
struct AnalogSection {
  Polynomial numerator, denominator;
};

using AnalogSections = FixedVector<AnalogSection, kMostSections>;

// One section or the several of a steep pass, the least resonant first. What a type doesn't use is
// not read.
AnalogSections prototype(const BandSettings& band);

// The prototype's H at `frequency`, in Hz.
std::complex<double> analog_response(const BandSettings& band, double frequency);

// How many sections a band takes, at any sample rate: 1, or ceil(slope / 12) for a pass.
int section_count(const BandSettings& band);

// The Q of a single second-order section: the band's, or that of its shelf slope, which is above 0
// and finite for slopes above 0 and below the limit.
double q_of(const BandSettings& band);

// (A^2 + 1) / (A - 1)^2, A being the square root of the linear gain; infinite without a gain.
double shelf_slope_limit(double gain);

// Which settings a band reads besides its type and frequency.
bool uses_q(const BandSettings& band);
bool uses_gain(const BandSettings& band);
bool uses_shelf_slope(const BandSettings& band);  // in place of q
bool uses_slope(const BandSettings& band);

}  // namespace channelstrip::host
