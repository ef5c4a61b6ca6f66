// The static curves: the gain term as a function of the level, both in decibels. Line and knee are
// computed for every level and one is selected, so the cost doesn't depend on the audio.
//
// V is float and Coefs the host's record, or V is lanes and Coefs is CurveCoefs.

#pragma once

#include "../lanes/lanes.h"

namespace channelstrip {

// A line above the knee, a polynomial in it, 0 dB up to and including its lower edge.
template <typename Coefs, typename V>
CHANNELSTRIP_INLINE V compressor_curve(const Coefs& coefs, V level) {
  const V line = (level - coefs.compThreshold) * coefs.compSlope;
  const V knee = coefs.compKneeA * (level * level) + coefs.compKneeB * level + coefs.compKneeC;
  const V up_to_knee = select(level > coefs.compKneeLow, knee, V{});
  return select(level > coefs.compKneeHigh, line, up_to_knee);
}

// A line below the knee, a polynomial in it, both edges included, 0 dB above.
template <typename Coefs, typename V>
CHANNELSTRIP_INLINE V expander_curve(const Coefs& coefs, V level) {
  const V line = (level - coefs.expThreshold) * coefs.expSlope;
  const V knee = coefs.expKneeA * (level * level) + coefs.expKneeB * level + coefs.expKneeC;
  const V from_knee = select(level <= coefs.expKneeHigh, knee, V{});
  return select(level < coefs.expKneeLow, line, from_knee);
}

}  // namespace channelstrip
