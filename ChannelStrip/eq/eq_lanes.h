// The equaliser in lanes, one per channel, for the length of a call: loaded once, stored once.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/section.h"
#include "../lanes/transpose.h"
#include "coef_lanes.h"
#include "eq_pairs.h"

namespace channelstrip {

// The pipeline runs the second pass of a quad up to History quads after its first.
template <typename Layout, int History>
class EqLanes {
 public:
  using V = typename Layout::Channel;

  // Whether both passes can run side by side in one register. Strips of five link groups don't:
  // they would take more than 16 KB of stack.
  static constexpr bool kPairs = Layout::kStrips == 1 && Layout::kChannels > 2 &&
                                 Layout::kGroups < 5 && 2 * kWidth<V> <= kLanes;

  CHANNELSTRIP_INLINE explicit EqLanes(const SChannelStrip_Alg_Context* const* strips)
      : coefs_(strips) {
    const EQ_SCoefs& targets = *strips[0]->eqTargetCoefs;
    for (int pass = 0; pass < 2; ++pass) {
      passes_[pass] = {targets.firstBand[pass], targets.endBand[pass]};
    }
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; band += 4) {
      load_memory(z1_, band, [&](int lane) { return state_of(strips, lane).z1; });
      load_memory(z2_, band, [&](int lane) { return state_of(strips, lane).z2; });
    }
  }

  // Glides the coefficients by the step that precedes quad q.
  CHANNELSTRIP_INLINE void glide_before(int32_t q) { coefs_.glide_before(q); }

  // Runs the pass before (0) or after (1) the dynamics over quad q.
  CHANNELSTRIP_INLINE void run(int pass, int32_t q, V (&samples)[4]) {
    if constexpr (kPairs) pairs_.give_back(passes_, z1_, z2_);
    run_bands(passes_[pass], q, samples);
  }

  // Runs the pass before the dynamics over quad q and the pass after it over another one: side by
  // side, or while coefficients move, when each quad has its own, one after the other.
  CHANNELSTRIP_INLINE void run_both(int32_t q, V (&before)[4], int32_t other, V (&after)[4]) {
    static_assert(kPairs);
    if (coefs_.move()) {
      run(0, q, before);
      run(1, other, after);
      return;
    }
    if (pairs_.size() == 0) pairs_.take(passes_, coefs_.of_quad(q), z1_, z2_);
    pairs_.run(before, after);
    run_bands({passes_[0].first + pairs_.size(), passes_[0].end}, q, before);
    run_bands({passes_[1].first + pairs_.size(), passes_[1].end}, other, after);
  }

  CHANNELSTRIP_INLINE void store(const SChannelStrip_Alg_Context* const* strips) const {
    coefs_.store(strips);
    float *z1[kWidth<V>], *z2[kWidth<V>];
    for (int lane = 0; lane < kWidth<V>; ++lane) {
      z1[lane] = Layout::is_channel(lane) ? state_of(strips, lane).z1 : nullptr;
      z2[lane] = Layout::is_channel(lane) ? state_of(strips, lane).z2 : nullptr;
    }
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; band += 4) {
      store_memory(z1_, band, z1);
      store_memory(z2_, band, z2);
    }
  }

 private:
  CHANNELSTRIP_INLINE void run_bands(EqRange bands, int32_t q, V (&samples)[4]) {
    const float* const coefs = coefs_.of_quad(q);
    for (int32_t band = bands.first; band < bands.end; ++band) {
      V section[5];
      coefs_.load_band(section, coefs, band);
      run_section<4>(section, z1_[band], z2_[band], samples);
    }
  }

  CHANNELSTRIP_INLINE static EQ_SState& state_of(const SChannelStrip_Alg_Context* const* strips,
                                                 int lane) {
    return strips[Layout::strip_of_channel_lane(lane)]->eqState[Layout::channel_of(lane)];
  }

  CHANNELSTRIP_INLINE bool runs(int band) const {
    return passes_[0].has(band) || passes_[1].has(band);
  }

  // One delay element of four bands.
  template <typename Of>
  CHANNELSTRIP_INLINE static void load_memory(V* z, int band, Of of) {
    V four[4];
    load_columns(four, [&](int lane) { return of(lane) + band; });
    for (int k = 0; k < 4; ++k) z[band + k] = four[k];
  }

  // A band that no pass runs must stay untouched.
  CHANNELSTRIP_INLINE void store_memory(const V* z, int band, float* const* to) const {
    if (runs(band) && runs(band + 1) && runs(band + 2) && runs(band + 3)) {
      store_columns({z[band], z[band + 1], z[band + 2], z[band + 3]}, to, band);
      return;
    }
    for (int k = band; k < band + 4; ++k) {
      if (!runs(k)) continue;
      for (int lane = 0; lane < kWidth<V>; ++lane) {
        if (to[lane]) to[lane][k] = z[k][lane];
      }
    }
  }

  CoefLanes<Layout, History> coefs_;
  EqRange passes_[2];
  V z1_[CHANNELSTRIP_EQ_BANDS], z2_[CHANNELSTRIP_EQ_BANDS];
  EqPairs<V, kPairs> pairs_;
};

}  // namespace channelstrip
