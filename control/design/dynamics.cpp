#include "dynamics.h"

#include <algorithm>
#include <cmath>

namespace channelstrip::host {
namespace {

// `side` is 1 when the line lies above the knee, -1 when below.
Curve curve(double slope, double threshold, double knee, int side) {
  Curve result{.slope = slope,
               .threshold = threshold,
               .knee_low = threshold - knee / 2,
               .knee_high = threshold + knee / 2};
  if (knee > 0) {
    // a (L - edge)^2, multiplied out: value and slope are 0 at the edge away from the line.
    const double edge = side > 0 ? result.knee_low : result.knee_high;
    result.a = side * slope / (2 * knee);
    result.b = -2 * result.a * edge;
    result.c = result.a * edge * edge;
  }
  return result;
}

double line(const Curve& curve, double level) {
  return (level - curve.threshold) * curve.slope;
}

double knee(const Curve& curve, double level) {
  return (curve.a * level + curve.b) * level + curve.c;
}

double to_samples(double milliseconds, double sample_rate) {
  return milliseconds / 1000 * sample_rate;
}

}  // namespace

Curve compressor_curve(const CompressorSettings& settings) {
  return curve(1 / settings.ratio - 1, settings.threshold, settings.knee, 1);
}

Curve expander_curve(const ExpanderSettings& settings) {
  return curve(settings.ratio - 1, settings.threshold, settings.knee, -1);
}

double compressor_gain(const CompressorSettings& settings, double level) {
  const Curve curve = compressor_curve(settings);
  double gain = 0;
  if (level > curve.knee_high) {
    gain = line(curve, level);
  } else if (level > curve.knee_low) {
    gain = knee(curve, level);
  }
  return std::max(gain, settings.range);
}

double expander_gain(const ExpanderSettings& settings, double level) {
  const Curve curve = expander_curve(settings);
  double gain = 0;
  if (level < curve.knee_low) {
    gain = line(curve, level);
  } else if (level <= curve.knee_high) {
    gain = knee(curve, level);
  }
  return std::max(gain, settings.range);
}

StaticGain static_gain(const StripSettings& settings, double level, bool gate_open) {
  StaticGain gain;
  if (settings.compressor) gain.compressor = compressor_gain(*settings.compressor, level);
  if (const auto& expander = settings.expander) {
    gain.expander = gate_open ? expander_gain(*expander, level) : expander->range;
  }
  return gain;
}

double auto_makeup(const CompressorSettings& settings) {
  return -compressor_gain(settings, 0) / 2;
}

double one_pole_weight(double milliseconds, double sample_rate, int samples) {
  if (milliseconds == 0) return 1;
  return -std::expm1(-samples / to_samples(milliseconds, sample_rate));
}

double decay_factor(double milliseconds, double sample_rate) {
  if (milliseconds == 0) return 0;
  return std::exp(-1 / to_samples(milliseconds, sample_rate));
}

double db_to_linear(double db) {
  return std::pow(10, db / 20);
}

double linear_to_db(double linear) {
  return 20 * std::log10(linear);
}

}  // namespace channelstrip::host
