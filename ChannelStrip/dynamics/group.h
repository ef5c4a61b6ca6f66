// The gain computer's coefficients and state: of one link group, or of one group per lane.
//
// They are made of sections of the host's records, with a V in the place of every word, so that
// words are loaded and stored by their position.

#pragma once

#include "../lanes/lanes.h"
#include "ballistics.h"
#include "dyn_records.h"

namespace channelstrip {

// Sections of Dyn_SCoefsBlock, each with the place of its first word.
template <typename V>
struct CompressorCurve {
  static constexpr int kFirst = 0;
  V compSlope, compKneeA, compKneeB, compKneeC, compThreshold, compKneeHigh, compKneeLow;
};
template <typename V>
struct CompressorMotion {
  static constexpr int kFirst = 7;
  V compRange, makeupGain, compAttack, compRelease;
};
template <typename V>
struct ExpanderCurve {
  static constexpr int kFirst = 12;
  V expSlope, expKneeA, expKneeB, expKneeC, expThreshold;
};
template <typename V>
struct GateThresholds {
  static constexpr int kFirst = 17;
  V gateOpenThreshold, gateCloseThreshold;
};
template <typename V>
struct ExpanderKnee {
  static constexpr int kFirst = 19;
  V expKneeHigh, expKneeLow;
};
template <typename V>
struct ExpanderMotion {
  static constexpr int kFirst = 21;
  V expRange, expAttack, expRelease, expHoldSamples, peakDecay;
};
template <typename V>
struct Detector {
  static constexpr int kFirst = 31;
  V detectorFilter[5];
};

static_assert(__builtin_offsetof(Dyn_SCoefsBlock, compRange) ==
              4 * CompressorMotion<float>::kFirst);
static_assert(__builtin_offsetof(Dyn_SCoefsBlock, expSlope) == 4 * ExpanderCurve<float>::kFirst);
static_assert(__builtin_offsetof(Dyn_SCoefsBlock, gateOpenThreshold) ==
              4 * GateThresholds<float>::kFirst);
static_assert(__builtin_offsetof(Dyn_SCoefsBlock, expKneeHigh) == 4 * ExpanderKnee<float>::kFirst);
static_assert(__builtin_offsetof(Dyn_SCoefsBlock, expRange) == 4 * ExpanderMotion<float>::kFirst);
static_assert(__builtin_offsetof(Dyn_SCoefsBlock, detectorFilter) == 4 * Detector<float>::kFirst);

// What the static curves use.
template <typename V>
struct CurveCoefs : CompressorCurve<V>, ExpanderCurve<V>, ExpanderKnee<V> {};

// What detection and ballistics use.
template <typename V>
struct GroupCoefs : CompressorMotion<V>, GateThresholds<V>, ExpanderMotion<V>, Detector<V> {
  WordsOf<V> hold;     // samples
  MaskOf<V> smoothed;  // detectorMode above 0
};

// What GroupCoefs holds in another form than the host's record.
template <typename V>
CHANNELSTRIP_INLINE WordsOf<V> hold_samples(const GroupCoefs<V>& coefs) {
  return coefs.hold;
}
template <typename V>
CHANNELSTRIP_INLINE MaskOf<V> detects_smoothed(const GroupCoefs<V>& coefs) {
  return coefs.smoothed;
}
CHANNELSTRIP_INLINE bool detects_smoothed(const Dyn_SCoefsBlock& coefs) {
  return coefs.detectorMode > 0;
}

// The words of Dyn_SState before gateOpen, but for the key filter's.
template <typename V>
struct GroupNumbers {
  V compGain, expGain;
  V of_channel[2];
  V detZ1, detZ2, peakLevel, smoothLevel;
  V curMakeupGain, curCompRange, curExpRange;
};
static_assert(sizeof(GroupNumbers<float>) == __builtin_offsetof(Dyn_SState, gateOpen));
static_assert(__builtin_offsetof(GroupNumbers<float>, detZ1) ==
              __builtin_offsetof(Dyn_SState, detZ1));

// What the gain computer loads and stores.
template <typename V>
struct GroupState : GroupNumbers<V> {
  MaskOf<V> open;
  WordsOf<V> hold;
};

// One number after the other: unoptimised, a copy of them all becomes a call of the C library.
inline void copy_numbers(void* to, const void* from, uint64_t bytes) {
  for (uint64_t i = 0; i < bytes / sizeof(float); ++i) {
    static_cast<float*>(to)[i] = static_cast<const float*>(from)[i];
  }
}

inline GroupState<float> group_state(const Dyn_SState& from) {
  GroupState<float> state;
  copy_numbers(&state, &from, sizeof(GroupNumbers<float>));
  state.open = from.gateOpen > 0;
  state.hold = static_cast<uint32_t>(from.holdCount);
  return state;
}

inline void store_group_state(Dyn_SState& to, const GroupState<float>& from) {
  constexpr auto kKeyZ1 = __builtin_offsetof(Dyn_SState, keyZ1),
                 kDetZ1 = __builtin_offsetof(Dyn_SState, detZ1);
  copy_numbers(&to, &from, kKeyZ1);
  copy_numbers(&to.detZ1, &from.detZ1, sizeof(GroupNumbers<float>) - kDetZ1);
  to.gateOpen = from.open ? 1 : 0;
  to.holdCount = static_cast<int32_t>(from.hold);
}

}  // namespace channelstrip
