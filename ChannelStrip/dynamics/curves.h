// The static curves: gain terms over level, both in decibels. Pure functions that compute line and
// knee for every level and select, so that their cost doesn't depend on the audio.
//
// V is float, with the host's record for coefficients, or lanes, with GroupCoefs.

#pragma once

#include "../lanes/lanes.h"

namespace channelstrip {

// The line above the knee, the polynomial in it, 0 dB up to its lower edge.
template <typename Coefs, typename V>
CHANNELSTRIP_INLINE V compressor_curve(const Coefs& coefs, V level) {
  const V line = (level - coefs.compThreshold) * coefs.compSlope;
  const V knee = coefs.compKneeA * (level * level) + coefs.compKneeB * level + coefs.compKneeC;
  const V up_to_knee = select(level > coefs.compKneeLow, knee, V{});
  return select(level > coefs.compKneeHigh, line, up_to_knee);
}

// The line below the knee, the polynomial in it up to and with its upper edge, 0 dB above.
template <typename Coefs, typename V>
CHANNELSTRIP_INLINE V expander_curve(const Coefs& coefs, V level) {
  const V line = (level - coefs.expThreshold) * coefs.expSlope;
  const V knee = coefs.expKneeA * (level * level) + coefs.expKneeB * level + coefs.expKneeC;
  const V from_knee = select(level <= coefs.expKneeHigh, knee, V{});
  return select(level < coefs.expKneeLow, line, from_knee);
}

}  // namespace channelstrip
