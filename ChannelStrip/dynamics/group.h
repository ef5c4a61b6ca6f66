// The gain computer's coefficients and state: of one link group, or of one group per lane.

#pragma once

#include "../lanes/lanes.h"
#include "ballistics.h"
#include "dyn_records.h"

namespace channelstrip {

// The fields of Dyn_SCoefsBlock that the static curves use.
template <typename V>
struct CurveCoefs {
  V compSlope, compKneeA, compKneeB, compKneeC, compThreshold, compKneeHigh, compKneeLow;
  V expSlope, expKneeA, expKneeB, expKneeC, expThreshold, expKneeHigh, expKneeLow;
};

// The fields of Dyn_SCoefsBlock that detection and ballistics use.
template <typename V>
struct GroupCoefs {
  V compRange, makeupGain, compAttack, compRelease;
  V gateOpenThreshold, gateCloseThreshold, expRange, expAttack, expRelease;
  V peakDecay, detectorFilter[5];
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

// The fields of Dyn_SState that the gain computer loads and stores.
template <typename V>
struct GroupState {
  V compGain, expGain, detZ1, detZ2, peakLevel, smoothLevel, curMakeupGain, curCompRange;
  V curExpRange;
  MaskOf<V> open;
  WordsOf<V> hold;
};

inline GroupState<float> group_state(const Dyn_SState& from) {
  return {from.compGain,
          from.expGain,
          from.detZ1,
          from.detZ2,
          from.peakLevel,
          0.0f,  // smoothLevel is only written
          from.curMakeupGain,
          from.curCompRange,
          from.curExpRange,
          from.gateOpen > 0,
          static_cast<uint32_t>(from.holdCount)};
}

inline void store_group_state(Dyn_SState& to, const GroupState<float>& from) {
  to.compGain = from.compGain;
  to.expGain = from.expGain;
  to.detZ1 = from.detZ1;
  to.detZ2 = from.detZ2;
  to.peakLevel = from.peakLevel;
  to.smoothLevel = from.smoothLevel;
  to.curMakeupGain = from.curMakeupGain;
  to.curCompRange = from.curCompRange;
  to.curExpRange = from.curExpRange;
  to.gateOpen = from.open ? 1 : 0;
  to.holdCount = static_cast<int32_t>(from.hold);
}

}  // namespace channelstrip
