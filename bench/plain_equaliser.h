// The equaliser as plain loops: up to four bands of a channel at a time, sample by sample, with
// their memory in registers.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_dezip.h>
#include <ChannelStrip/frame/context.h>
#include <ChannelStrip/lanes/section.h>

#include "plain_block.h"

namespace channelstrip::bench {

class PlainEqualiser {
 public:
  explicit PlainEqualiser(const SChannelStrip_Alg_Context& strip)
      : dezip_(*strip.eqDezipCoefs),
        targets_(*strip.eqTargetCoefs),
        state_(strip.eqState),
        rate_(strip.dynState[0].dezipRate) {
    EQ_SDezipCoefs next = dezip_;
    eq_dezip_step(&next, &targets_, rate_);
    moves_ = __builtin_memcmp(&next, &dezip_, sizeof next) != 0;
  }

  // Finds the coefficients of the four quads of a block.
  void glide() {
    if (!moves_) return;
    for (auto& quad : coefs_) {
      for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
        channelstrip::glide(dezip_.coefs[i], dezip_.smoothedCoefs[i], targets_.targetCoefs[i],
                            rate_);
        quad[i] = dezip_.coefs[i];
      }
    }
  }

  // Filters a block of a channel in ascending order: source(i) gives sample i, sink(i, y) takes it.
  template <typename Source, typename Sink>
  CHANNELSTRIP_INLINE void run(int pass, int channel, Source source, Sink sink) {
    EQ_SState& state = state_[channel];
    const int first = targets_.firstBand[pass], end = targets_.endBand[pass];
    if (end - first <= 4) return run_last(state, first, end, source, sink);
    Block block;
    run_bands<4>(state, first, source, [&](int i, float y) { block[i] = y; });
    run_last(
        state, first + 4, end, [&](int i) { return block[i]; }, sink);
  }

 private:
  template <typename Source, typename Sink>
  CHANNELSTRIP_INLINE void run_last(EQ_SState& state, int band, int end, Source source, Sink sink) {
    switch (end - band) {
      case 4:
        return run_bands<4>(state, band, source, sink);
      case 3:
        return run_bands<3>(state, band, source, sink);
      case 2:
        return run_bands<2>(state, band, source, sink);
      case 1:
        return run_bands<1>(state, band, source, sink);
      default:
        for (int i = 0; i < kBlock; ++i) sink(i, source(i));
    }
  }

  template <int Count, typename Source, typename Sink>
  CHANNELSTRIP_INLINE void run_bands(EQ_SState& state, int first, Source source, Sink sink) {
    float z1[Count], z2[Count];
    for (int b = 0; b < Count; ++b) z1[b] = state.z1[first + b];
    for (int b = 0; b < Count; ++b) z2[b] = state.z2[first + b];
    for (int quad = 0; quad < kBlock / kQuad; ++quad) {
      const float* const coefs = (moves_ ? coefs_[quad] : dezip_.coefs) + 5 * first;
      for (int i = quad * kQuad; i < (quad + 1) * kQuad; ++i) {
        float sample = source(i);
#pragma GCC unroll 4
        for (int b = 0; b < Count; ++b) run_section<1>(coefs + 5 * b, z1[b], z2[b], &sample);
        sink(i, sample);
      }
    }
    for (int b = 0; b < Count; ++b) state.z1[first + b] = z1[b];
    for (int b = 0; b < Count; ++b) state.z2[first + b] = z2[b];
  }

  EQ_SDezipCoefs& dezip_;
  const EQ_SCoefs& targets_;
  EQ_SState* const state_;
  const float rate_;
  bool moves_;  // whether a glide step changes any bit
  float coefs_[kBlock / kQuad][CHANNELSTRIP_EQ_COEFS];
};

}  // namespace channelstrip::bench
