// One second-order section in transposed direct form II:
//
//   y = b0 x + z1;   z1 := b1 x + a1 y + z2;   z2 := b2 x + a2 y
//
// a1 and a2 carry the sign with which they are added. Every filter of the strip is one of these.

#pragma once

#include "fused.h"
#include "quad.h"

namespace channelstrip {

// Runs a quad through the section in place. `coefs` is b0, b1, b2, a1, a2.
inline void section_quad(const float* coefs, float* state_z1, float* state_z2,
                         float (&quad)[kQuad]) {
  const float b0 = coefs[0], b1 = coefs[1], b2 = coefs[2], a1 = coefs[3], a2 = coefs[4];
  float z1 = *state_z1, z2 = *state_z2;
  for (float& sample : quad) {
    const float x = sample;
    const float y = channelstrip_fused(b0, x, z1);
    z1 = channelstrip_fused(a1, y, channelstrip_fused(b1, x, z2));
    z2 = channelstrip_fused(a2, y, b2 * x);
    sample = y;
  }
  *state_z1 = z1;
  *state_z2 = z2;
}

}  // namespace channelstrip
