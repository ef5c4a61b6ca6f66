// What the plain loops do with a block of one channel or link group.

#pragma once

#include <ChannelStrip/dynamics/fast_log.h>
#include <ChannelStrip/lanes/lanes.h>
#include <ChannelStrip/lanes/quad.h>

namespace channelstrip::bench {

using Block = float[kBlock];

// Lambdas with this work on registers of the function they are in.
#define CHANNELSTRIP_INLINE_LAMBDA __attribute__((always_inline))

// For work that remembers nothing from sample to sample. GCC would unroll sixteen rounds before it
// looks for what to vectorise.
template <typename Work>
CHANNELSTRIP_INLINE void for_each_sample(Work work) {
#pragma GCC unroll 1
  for (int i = 0; i < kBlock; ++i) work(i);
}

// The greatest number of a block; the order of the comparisons suits vectors.
inline float greatest(const Block& block) {
  float most[kBlock / 2];
  for (int i = 0; i < 8; ++i) most[i] = maximum(block[i], block[i + 8]);
  for (int i = 0; i < 4; ++i) most[i] = maximum(most[i], most[i + 4]);
  return maximum(maximum(most[0], most[2]), maximum(most[1], most[3]));
}

// LevelToDb, with the lookups apart from the arithmetic.
inline void levels_to_db(const Block& levels, Block& decibels) {
  Block entry, next;
  for_each_sample([&](int i) {
    const uint32_t at = (channelstrip_bits_of(levels[i]) >> 14) & 511;
    entry[i] = gmLog2LUT[at];
    next[i] = gmLog2LUT[at + 1];
  });
  for_each_sample([&](int i) {
    const uint32_t bits = channelstrip_bits_of(levels[i]);
    const float fraction = static_cast<float>(static_cast<int32_t>(bits & 0x3FFF)) * 0x1p-14f;
    const auto exponent = static_cast<float>(static_cast<int32_t>((bits >> 23) & 255) - 127);
    decibels[i] = fused(next[i] - entry[i], fraction, entry[i] + exponent) * 0x1.815184p+2f;
  });
  for_each_sample([&](int i) { decibels[i] = select(levels[i] > 0.0f, decibels[i], -140.0f); });
}

}  // namespace channelstrip::bench
