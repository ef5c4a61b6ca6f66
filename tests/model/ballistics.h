// What moves in time: one-pole glides, attack and release, hold, gate, peak detector.

#pragma once

#include <cmath>
#include <cstdint>

namespace channelstrip::model {

template <typename Real>
Real towards(Real target, Real from, Real weight) {
  return std::fma(target - from, weight, from);
}

// The limit acts on the smoothed term, which is where the next sample starts.
template <typename Real>
Real compressor_term(Real target, Real previous, Real attack, Real release, Real range) {
  const Real term = towards(target, previous, target <= previous ? attack : release);
  return term < range ? range : term;
}

// Hysteresis: an open gate asks for the lower of two thresholds.
template <typename Real>
bool gate_is_open(bool was_open, Real level, Real open_threshold, Real close_threshold) {
  return level >= (was_open ? close_threshold : open_threshold);
}

// The count passes through a float and is unsigned from there on.
inline uint32_t hold_samples(int32_t count) {
  return static_cast<uint32_t>(static_cast<int64_t>(static_cast<float>(count)));
}

// A rising sample loads the counter; the others hold while it isn't zero, then release.
template <typename Real>
Real expander_term(Real target, Real previous, Real attack, Real release, uint32_t hold,
                   uint32_t& count) {
  if (target > previous) {
    count = hold;
    return towards(target, previous, attack);
  }
  if (count == 0) return towards(target, previous, release);
  --count;
  return previous;
}

// Compared before the decay: a level between the decayed and the previous peak is passed over.
template <typename Real>
Real peak_after(Real level, Real previous, Real decay) {
  return level > previous ? level : previous * decay;
}

}  // namespace channelstrip::model
