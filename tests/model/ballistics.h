// Steps in time: one-pole glides, attack and release, gate, hold, peak detector.

#pragma once

#include <cmath>
#include <cstdint>

namespace channelstrip::model {

template <typename Real>
Real towards(Real target, Real from, Real weight) {
  return std::fma(target - from, weight, from);
}

// The range limits the smoothed term, and the next sample starts from the limited one.
template <typename Real>
Real compressor_term(Real target, Real previous, Real attack, Real release, Real range) {
  const Real term = towards(target, previous, target <= previous ? attack : release);
  return term < range ? range : term;
}

// Hysteresis: an open gate stays open down to the close threshold.
template <typename Real>
bool gate_is_open(bool was_open, Real level, Real open_threshold, Real close_threshold) {
  return level >= (was_open ? close_threshold : open_threshold);
}

// The count is rounded to a float first; a negative one then wraps to a large unsigned count.
inline uint32_t hold_samples(int32_t count) {
  return static_cast<uint32_t>(static_cast<int64_t>(static_cast<float>(count)));
}

// A rising target loads the hold counter. Otherwise the term stays while the counter runs down to
// zero, and then releases.
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

// The level is compared with the peak before its decay: a level between the decayed and the
// previous peak is ignored.
template <typename Real>
Real peak_after(Real level, Real previous, Real decay) {
  return level > previous ? level : previous * decay;
}

}  // namespace channelstrip::model
