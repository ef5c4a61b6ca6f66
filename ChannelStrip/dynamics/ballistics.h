// How gain terms move over time, in decibels, one sample a call: attack and release, gate, hold.

#pragma once

#include "../lanes/fused.h"
#include "dyn_records.h"

namespace channelstrip {

// One-pole smoothing: x + (target - x) weight, the step fused.
inline float approach(float x, float target, float weight) {
  return channelstrip_fused(target - x, weight, x);
}

// Attack while the term falls or rests, release while it rises. The range limits the smoothed
// term, which is where the next sample starts from.
inline float compressor_term(const Dyn_SCoefsBlock& coefs, float previous, float target,
                             float range) {
  const float weight = target <= previous ? coefs.compAttack : coefs.compRelease;
  const float term = approach(previous, target, weight);
  return term < range ? range : term;
}

// Hysteresis: the threshold depends on the gate's own state.
inline bool gate_stays_open(const Dyn_SCoefsBlock& coefs, bool open, float level) {
  return level >= (open ? coefs.gateCloseThreshold : coefs.gateOpenThreshold);
}

// The target is limited by the range, the smoothed term is not.
inline float expander_target(float curve, bool open, float range) {
  return open && !(curve < range) ? curve : range;
}

struct ExpanderTerm {
  float gain;     // dB
  uint32_t hold;  // samples that remain
};

// The hold as loaded into the count. It passes through single precision, which takes the lowest
// bits of counts above 2^24 and rounds the largest to 2^31, out of int32's range but not uint32's.
inline uint32_t hold_samples(const Dyn_SCoefsBlock& coefs) {
  return static_cast<uint32_t>(static_cast<int64_t>(static_cast<float>(coefs.expHoldSamples)));
}

// A rising sample attacks and loads the hold; a falling or resting one holds while the count lasts,
// then releases.
inline ExpanderTerm expander_term(const Dyn_SCoefsBlock& coefs, ExpanderTerm previous,
                                  float target) {
  if (target > previous.gain) {
    return {approach(previous.gain, target, coefs.expAttack), hold_samples(coefs)};
  }
  if (previous.hold > 0) return {previous.gain, previous.hold - 1};
  return {approach(previous.gain, target, coefs.expRelease), 0};
}

}  // namespace channelstrip
