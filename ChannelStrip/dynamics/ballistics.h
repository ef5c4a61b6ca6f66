// How gain terms move over time, in decibels, one sample per call: attack and release, gate, hold.
//
// V is float and Coefs the host's record, or V is lanes and Coefs is GroupCoefs.

#pragma once

#include "../lanes/lanes.h"
#include "dyn_records.h"

namespace channelstrip {

// One-pole smoothing: x + (target - x) weight, the step fused.
template <typename V>
CHANNELSTRIP_INLINE V approach(V x, V target, V weight) {
  return fused(target - x, weight, x);
}

// One step of a term: it rises with one weight, falls or rests with another.
template <typename V>
CHANNELSTRIP_INLINE V step_towards(V term, V target, MaskOf<V> rises, V rise, V fall) {
  return approach(term, target, select(rises, rise, fall));
}

// Attack while the term falls or rests, release while it rises. The range limits the smoothed
// term, which is where the next sample starts from.
template <typename Coefs, typename V>
CHANNELSTRIP_INLINE V compressor_term(const Coefs& coefs, V previous, V target, V range) {
  const MaskOf<V> rises = target > previous;
  const V term = step_towards(previous, target, rises, coefs.compRelease, coefs.compAttack);
  return maximum(term, range);
}

// Hysteresis: the threshold depends on the gate's own state.
template <typename Coefs, typename V>
CHANNELSTRIP_INLINE MaskOf<V> gate_stays_open(const Coefs& coefs, MaskOf<V> open, V level) {
  return select(open, level >= coefs.gateCloseThreshold, level >= coefs.gateOpenThreshold);
}

// The target is limited by the range, the smoothed term is not.
template <typename V>
CHANNELSTRIP_INLINE V expander_target(V curve, MaskOf<V> open, V range) {
  return select(open, maximum(curve, range), range);
}

// What the hold counter is loaded with, in samples. The host's count is rounded to single
// precision: counts above 2^24 lose their lowest bits, and the largest become 2^31, which fits a
// uint32 only.
inline uint32_t hold_samples(const Dyn_SCoefsBlock& coefs) {
  return static_cast<uint32_t>(static_cast<int64_t>(static_cast<float>(coefs.expHoldSamples)));
}

// A rising term takes its step, and loads the hold counter. Any other stays where it is until the
// counter has run down to 0.
template <typename V>
CHANNELSTRIP_INLINE void hold_term(V& term, WordsOf<V>& hold, V step, MaskOf<V> rises,
                                   WordsOf<V> samples) {
  const MaskOf<V> released = hold == 0;
  term = select(rises | released, step, term);
  hold = select(rises, samples, select(released, hold, hold - 1));
}

// Attack while the term rises, then hold, then release.
template <typename Coefs, typename V>
CHANNELSTRIP_INLINE void expander_term(const Coefs& coefs, V& term, WordsOf<V>& hold, V target) {
  const MaskOf<V> rises = target > term;
  const V step = step_towards(term, target, rises, coefs.expAttack, coefs.expRelease);
  hold_term(term, hold, step, rises, hold_samples(coefs));
}

}  // namespace channelstrip
