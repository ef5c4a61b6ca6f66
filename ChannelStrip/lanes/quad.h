// The two units of time: stages are called with quads of four consecutive samples of a channel,
// calls process blocks of four quads.

#pragma once

namespace channelstrip {

constexpr int kQuad = 4;
constexpr int kBlock = 4 * kQuad;

// Read whole before anything is written, so that an output may be any channel's input.
inline void load_quad(float (&quad)[kQuad], const float* samples) {
  for (int k = 0; k < kQuad; ++k) quad[k] = samples[k];
}

inline void store_quad(float* samples, const float (&quad)[kQuad]) {
  for (int k = 0; k < kQuad; ++k) samples[k] = quad[k];
}

}  // namespace channelstrip
