// One second-order section in transposed direct form II:
//
//   y = b0 x + z1;   z1 := b1 x + a1 y + z2;   z2 := b2 x + a2 y
//
// a1 and a2 carry the sign with which they are added. Every filter of the strip is one of these.

#pragma once

#include "lanes.h"

namespace channelstrip {

// Runs Count samples, one after the other, through the section in place. V is float or lanes that
// each run a section of their own; `coefs` is b0, b1, b2, a1, a2.
template <int Count, typename V>
CHANNELSTRIP_INLINE void run_section(const V* coefs, V& memory1, V& memory2, V* samples) {
  const V b0 = coefs[0], b1 = coefs[1], b2 = coefs[2], a1 = coefs[3], a2 = coefs[4];
  V z1 = memory1, z2 = memory2;
  for (int k = 0; k < Count; ++k) {
    const V x = samples[k];
    const V y = fused(b0, x, z1);
    z1 = fused(a1, y, fused(b1, x, z2));
    z2 = fused(a2, y, b2 * x);
    samples[k] = y;
  }
  memory1 = z1;
  memory2 = z2;
}

}  // namespace channelstrip
