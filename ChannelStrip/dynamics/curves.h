// The static curves: gain terms over level, both in decibels. Pure functions that compute line and
// knee for every level and select, so that their cost doesn't depend on the audio.

#pragma once

#include "dyn_records.h"

namespace channelstrip {

// The line above the knee, the polynomial in it, 0 dB up to its lower edge.
inline float compressor_curve(const Dyn_SCoefsBlock& coefs, float level) {
  const float line = (level - coefs.compThreshold) * coefs.compSlope;
  const float knee = coefs.compKneeA * (level * level) + coefs.compKneeB * level + coefs.compKneeC;
  const float up_to_knee = level > coefs.compKneeLow ? knee : 0.0f;
  return level > coefs.compKneeHigh ? line : up_to_knee;
}

// The line below the knee, the polynomial in it up to and with its upper edge, 0 dB above.
inline float expander_curve(const Dyn_SCoefsBlock& coefs, float level) {
  const float line = (level - coefs.expThreshold) * coefs.expSlope;
  const float knee = coefs.expKneeA * (level * level) + coefs.expKneeB * level + coefs.expKneeC;
  const float from_knee = level <= coefs.expKneeHigh ? knee : 0.0f;
  return level < coefs.expKneeLow ? line : from_knee;
}

}  // namespace channelstrip
