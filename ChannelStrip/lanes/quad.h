// The two units of time. Stages are called with a quad, four consecutive samples of a channel;
// sample counts are rounded up to whole blocks, after which the meters run.

#pragma once

namespace channelstrip {

constexpr int kQuad = 4;
constexpr int kBlock = 4 * kQuad;

// A quad is read whole before any of it is written, so that an output may be any channel's input.
inline void load_quad(float (&quad)[kQuad], const float* samples) {
  for (int k = 0; k < kQuad; ++k) quad[k] = samples[k];
}

inline void store_quad(float* samples, const float (&quad)[kQuad]) {
  for (int k = 0; k < kQuad; ++k) samples[k] = quad[k];
}

}  // namespace channelstrip
