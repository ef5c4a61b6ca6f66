// Compressor and expander targets: gain term over level, both in dB.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

namespace channelstrip::model {

template <typename Real>
struct Curve {
  Real slope, threshold;        // the line: (level - threshold) slope
  Real knee_a, knee_b, knee_c;  // the knee: a level^2 + b level + c
  Real knee_low, knee_high;     // dB
};

template <typename Real>
Curve<Real> compressor_curve(const Dyn_SCoefsBlock& c) {
  return {Real(c.compSlope), Real(c.compThreshold), Real(c.compKneeA),   Real(c.compKneeB),
          Real(c.compKneeC), Real(c.compKneeLow),   Real(c.compKneeHigh)};
}

template <typename Real>
Curve<Real> expander_curve(const Dyn_SCoefsBlock& c) {
  return {Real(c.expSlope), Real(c.expThreshold), Real(c.expKneeA),   Real(c.expKneeB),
          Real(c.expKneeC), Real(c.expKneeLow),   Real(c.expKneeHigh)};
}

template <typename Real>
Real line(const Curve<Real>& curve, Real level) {
  return (level - curve.threshold) * curve.slope;
}

// Nothing is fused here.
template <typename Real>
Real knee(const Curve<Real>& curve, Real level) {
  return curve.knee_a * (level * level) + curve.knee_b * level + curve.knee_c;
}

template <typename Real>
Real compressor_target(const Curve<Real>& curve, Real level) {
  if (level > curve.knee_high) return line(curve, level);
  if (level > curve.knee_low) return knee(curve, level);
  return Real(0);
}

// Both edges belong to the knee.
template <typename Real>
Real expander_target(const Curve<Real>& curve, Real level) {
  if (level < curve.knee_low) return line(curve, level);
  if (level <= curve.knee_high) return knee(curve, level);
  return Real(0);
}

}  // namespace channelstrip::model
