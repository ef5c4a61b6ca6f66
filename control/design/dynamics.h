// Curves, weights and times of the dynamics from user settings.
//
// Curves and ballistics: D. Giannoulis, M. Massberg, J. D. Reiss, "Digital Dynamic Range Compressor
// Design - A Tutorial and Analysis", J. Audio Eng. Soc. 60(6), 2012.

#pragma once

#include "settings.h"

namespace channelstrip::host {

// A gain term over level, both in dB. On one side of the knee it is a line of `slope` through 0 dB
// at `threshold`, on the other 0 dB. Between the knee's edges it is a L^2 + b L + c, which meets
// both in value and in slope.
struct Curve {
  double slope = 0, threshold = 0;
  double knee_low = 0, knee_high = 0;
  double a = 0, b = 0, c = 0;
};

// dB. Below this width single precision makes a soft knee less accurate than a hard one. The terms
// a L^2, b L and c cancel; with slope s and width k, the first and the last are about M = |s| L^2 /
// (2 k) and b L is twice that. Rounding the coefficients changes the sum by up to 4 u M, and
// computing (a L + b) L + c, fused or not, by up to 3 u M more, where u = 2^-24. A hard knee
// differs from the soft one by at most |s| k / 8. The two errors are equal at k = |L| sqrt(28 u):
// 0.1 dB at -77 dB.
inline constexpr double kNarrowestKnee = 0.1;

// Of threshold, ratio and knee; the other settings are not read.
Curve compressor_curve(const CompressorSettings& settings);
Curve expander_curve(const ExpanderSettings& settings);

// The gain in dB that the smoothed term settles at for a level in dB: the curve, limited by the
// range. The expander's gate is open.
double compressor_gain(const CompressorSettings& settings, double level);
double expander_gain(const ExpanderSettings& settings, double level);

// Gain terms in dB, makeup excepted.
struct StaticGain {
  double compressor = 0, expander = 0;
};

// The terms that a constant detector level in dB settles at. A gate has two states between its
// thresholds; an expander without hysteresis is always open.
StaticGain static_gain(const StripSettings& settings, double level, bool gate_open);

// Makeup in dB, 0 or more: half of what the compressor takes from a level at full scale. All of it
// would make everything below full scale louder and push the peaks that the attack lets through
// beyond it; with half, loud sound stays softer and soft sound becomes louder by the same amount.
double auto_makeup(const CompressorSettings& settings);

// Weight of a one-pole step taken every `samples` samples that covers 63.2 % (1 - 1/e) of the
// distance in `milliseconds`; 1 for a time of 0. A float x that moves by a weight w stops up to
// 2^-24 |x| / w short of its target: 0.6 dB short of -20 dB with 10 s at 48 kHz.
double one_pole_weight(double milliseconds, double sample_rate, int samples = 1);

// Factor per sample by which a level falls to 36.8 % (1/e) in `milliseconds`; 0 for a time of 0.
double decay_factor(double milliseconds, double sample_rate);

double db_to_linear(double db);
double linear_to_db(double linear);  // -infinity for 0

}  // namespace channelstrip::host
