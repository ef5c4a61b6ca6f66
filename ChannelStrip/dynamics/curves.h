// The static curves: gain terms over level, both in decibels. Pure functions.

#pragma once

#include "dyn_records.h"

namespace channelstrip {

// The line above the knee, the polynomial in it, 0 dB up to its lower edge.
inline float compressor_curve(const Dyn_SCoefsBlock& coefs, float level) {
  if (level > coefs.compKneeHigh) return (level - coefs.compThreshold) * coefs.compSlope;
  if (level > coefs.compKneeLow) {
    return coefs.compKneeA * (level * level) + coefs.compKneeB * level + coefs.compKneeC;
  }
  return 0.0f;
}

// The line below the knee, the polynomial in it up to and with its upper edge, 0 dB above.
inline float expander_curve(const Dyn_SCoefsBlock& coefs, float level) {
  if (level < coefs.expKneeLow) return (level - coefs.expThreshold) * coefs.expSlope;
  if (level <= coefs.expKneeHigh) {
    return coefs.expKneeA * (level * level) + coefs.expKneeB * level + coefs.expKneeC;
  }
  return 0.0f;
}

}  // namespace channelstrip
