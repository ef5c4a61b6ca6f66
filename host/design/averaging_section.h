// Sections that average the rectified level of a link group: how a detector that follows loudness
// rather than peaks reads.
//
// They average magnitudes, not squares. Next to the RMS value a sine reads 2 sqrt(2) / pi, 0.91 dB
// less, Gaussian noise sqrt(2 / pi), 1.96 dB less.

#pragma once

#include "section.h"

namespace channelstrip::host {

// Both cover 63.2 % (1 - 1/e) of a step in `milliseconds` and pass for a time of 0. Their
// coefficients are floats and their gain at 0 Hz is exactly 1 with these. Both throw
// std::invalid_argument from about 2^25 samples on, where no float below 1 is near enough.

// One pole.
Section averaging_section(double milliseconds, double sample_rate);

// Two real poles, so that a step begins gently and less of the signal's own waves remains: as
// RMS-like as the detector gets. The poles are equal, which is critical damping, up to 775 samples,
// 16 ms at 48 kHz. Over longer times the faster one keeps what single precision needs, see
// PolePair, until a single pole remains from 1.3e5 samples on.
Section rms_section(double milliseconds, double sample_rate);

// Two poles by their distances from 1, slow <= fast. Of a step
//   ((1 - slow)^(m+1) fast - (1 - fast)^(m+1) slow) / (fast - slow)
// remains after m samples, (1 - slow)^m (1 + m slow) for equal ones.
//
// slow fast is the section's b0 and at least 2^-17 while fast is below 1. The library rounds three
// times a sample, by 2^-24 of the level at most, of which the feedback makes 1 / b0 times as much:
// at 2^-17 a resting level reads 3/128, 0.2 dB, wrong at most.
struct PolePair {
  double slow, fast;
};

// The pair that leaves 1/e of a step after `samples`, above 0.
PolePair averaging_poles(double samples);

double remainder_of_step(const PolePair& poles, double samples);

}  // namespace channelstrip::host
