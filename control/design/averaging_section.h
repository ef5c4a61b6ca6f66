// Sections that average the rectified level of a link group, for a detector that follows loudness
// rather than peaks.
//
// They average magnitudes, not squares: a sine reads 2 / pi of its peak, 3.92 dB less, which is
// 0.91 dB less than RMS, Gaussian noise 1.96 dB less than RMS, and short peaks between silence far
// less.

#pragma once

#include "section.h"
#include "settings.h"

namespace channelstrip::host {

// Both cover 63.2 % (1 - 1/e) of a step in `milliseconds` and pass the level unchanged for a time
// of 0. Their coefficients fit in floats, with which the gain at 0 Hz is exactly 1. From about 2^25
// samples on no float below 1 is close enough to it: b0 is 0, and the section never moves.

// One pole.
Section averaging_section(double milliseconds, double sample_rate);

// Two real poles: the response to a step begins gently and less ripple of the signal remains. Up to
// 775 samples, 16 ms at 48 kHz, the poles are equal, which is critical damping. For longer times
// the faster pole keeps the distance from 1 that single precision needs, see PolePair, and
// from 1.3e5 samples on a single pole remains.
Section two_pole_section(double milliseconds, double sample_rate);

// The one that the detector's mode takes; a peak has none, and passes.
Section detector_section(const DetectorSettings& settings, double sample_rate);

// Two poles, given as their distances from 1, slow <= fast. After m samples
//   ((1 - slow)^(m+1) fast - (1 - fast)^(m+1) slow) / (fast - slow)
// of a step remains, or (1 - slow)^m (1 + m slow) if the poles are equal.
//
// The product slow * fast is the section's b0; it is at least 2^-17 while fast is below 1. The
// library rounds three times per sample, each time by at most 2^-24 of the level, and the feedback
// multiplies this by 1 / b0: at 2^-17 a constant level is off by at most 3/128, 0.2 dB.
struct PolePair {
  double slow, fast;
};

// The pair that leaves 1/e of a step after `samples`, above 0.
PolePair averaging_poles(double samples);

double remainder_of_step(const PolePair& poles, double samples);

}  // namespace channelstrip::host
