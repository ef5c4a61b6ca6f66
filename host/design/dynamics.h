// Curves, weights and times of the dynamics from user settings.
//
// Curves and ballistics: D. Giannoulis, M. Massberg, J. D. Reiss, "Digital Dynamic Range Compressor
// Design - A Tutorial and Analysis", J. Audio Eng. Soc. 60(6), 2012.

#pragma once

#include "section.h"
#include "settings.h"

namespace channelstrip::host {

// A gain term over level, both in dB: a line of `slope` through 0 dB at `threshold` on one side of
// the knee, 0 dB on the other, and a L^2 + b L + c between the edges, which meets both in value and
// in slope.
struct Curve {
  double slope = 0, threshold = 0;
  double knee_low = 0, knee_high = 0;
  double a = 0, b = 0, c = 0;
};

// Both throw std::invalid_argument, naming the setting, for a threshold, ratio or knee outside its
// range; the other settings are not read.
Curve compressor_curve(const CompressorSettings& settings);
Curve expander_curve(const ExpanderSettings& settings);

// Weight of a one-pole step taken every `samples` samples that covers 63.2 % (1 - 1/e) of the
// distance in `milliseconds`; 1 for a time of 0.
double one_pole_weight(double milliseconds, double sample_rate, int samples = 1);

// Factor per sample by which a level falls to 36.8 % (1/e) in `milliseconds`; 0 for a time of 0.
double decay_factor(double milliseconds, double sample_rate);

// A one-pole average that covers 63.2 % of a step in `milliseconds`, as a section. Its feedback is
// a float and its gain at 0 Hz exactly 1 with that float. Throws std::invalid_argument from about
// 2^25 samples on, where no float below 1 is near enough.
Section averaging_section(double milliseconds, double sample_rate);

double db_to_linear(double db);
double linear_to_db(double linear);  // -infinity for 0

}  // namespace channelstrip::host
