// The equaliser in lanes, one per channel, for the length of a call: loaded once, stored once.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/section.h"
#include "../lanes/transpose.h"
#include "eq_moves.h"
#include "eq_pairs.h"

namespace channelstrip {

// Keeps the coefficients of the last History quads, as the pipeline runs the second pass of a quad
// up to History quads after its first.
template <typename Layout, int History>
class EqLanes {
 public:
  using V = typename Layout::Channel;

  // Whether both passes can run side by side in one register.
  static constexpr bool kPairs =
      Layout::kStrips == 1 && Layout::kChannels > 2 && 2 * kWidth<V> <= Layout::kWidest;

  // Strips whose coefficients move may not stand in sixteen lanes: that would take 10 KB of stack.
  static constexpr bool kMayMove = kWidth<V> < 16;

  CHANNELSTRIP_INLINE explicit EqLanes(const SChannelStrip_Alg_Context* const* strips) {
    const EQ_SCoefs& targets = *strips[0]->eqTargetCoefs;
    for (int pass = 0; pass < 2; ++pass) {
      passes_[pass] = {targets.firstBand[pass], targets.endBand[pass]};
    }
    load_coefs(coefs_[kRows - 1], [&](int lane) { return dezip_of(strips, lane)->coefs; });
    if constexpr (kMayMove) {
      GlideChange<Lanes<4>> change;
      for (int s = 0; s < Layout::kStrips; ++s) add_next_step(change, *strips[s]);
      moves_ = moved_ = change.any();
      if (moves_) load_glide(strips);
    }
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; band += 4) {
      load_memory(z1_, band, [&](int lane) { return state_of(strips, lane).z1; });
      load_memory(z2_, band, [&](int lane) { return state_of(strips, lane).z2; });
    }
  }

  // Glides the coefficients by the step that precedes quad q.
  CHANNELSTRIP_INLINE void glide_before(int32_t q) {
    if (!kMayMove || !moves_) return;
    if (q % kWatched != kWatched - 1) {
      step<false>(q);
    } else if (!step<true>(q)) {
      last_step_ = q + kRows - 1;
    }
    if (q == last_step_) moves_ = false;
  }

  // Runs the pass before (0) or after (1) the dynamics over quad q.
  CHANNELSTRIP_INLINE void run(int pass, int32_t q, V (&samples)[4]) {
    if constexpr (kPairs) pairs_.give_back(passes_, z1_, z2_);
    run_bands(passes_[pass], q, samples);
  }

  // Runs the pass before the dynamics over quad q and the pass after it over another one: side by
  // side, or while coefficients move, when each quad has its own, one after the other.
  CHANNELSTRIP_INLINE void run_both(int32_t q, V (&before)[4], int32_t other, V (&after)[4]) {
    static_assert(kPairs);
    if (moves_) {
      run(0, q, before);
      run(1, other, after);
      return;
    }
    if (pairs_.size() == 0) pairs_.take(passes_, coefs_[kRows - 1], z1_, z2_);
    pairs_.run(before, after);
    run_bands({passes_[0].first + pairs_.size(), passes_[0].end}, q, before);
    run_bands({passes_[1].first + pairs_.size(), passes_[1].end}, other, after);
  }

  CHANNELSTRIP_INLINE void store(const SChannelStrip_Alg_Context* const* strips) const {
    if (kMayMove && moved_) store_glide(strips);
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
  static constexpr int kBandCoefs = CHANNELSTRIP_EQ_COEFS;
  // All channels of one strip share its coefficients.
  static constexpr int kCoefLanes = Layout::kStrips == 1 ? 1 : kWidth<V>;
  static constexpr int kCoefs = kBandCoefs * kCoefLanes;
  static constexpr int kRows = 1 + (kMayMove ? History - 1 : 0);
  static constexpr int kMoving = kMayMove ? kCoefs : 1;

  CHANNELSTRIP_INLINE void run_bands(EqRange bands, int32_t q, V (&samples)[4]) {
    const float* const coefs = coefs_[static_cast<uint32_t>(moves_ ? q : kRows - 1) % kRows];
    for (int32_t band = bands.first; band < bands.end; ++band) {
      V section[5];
      for (int i = 0; i < 5; ++i) {
        const float* const coef = coefs + (5 * band + i) * kCoefLanes;
        section[i] = kCoefLanes == 1 ? broadcast<V>(*coef) : load<V>(coef);
      }
      run_section<4>(section, z1_[band], z2_[band], samples);
    }
  }

  // Every so many quads, a step finds out whether the glide has come to rest.
  static constexpr int kWatched = 32;

  // Returns whether the step changed anything, if that is watched.
  template <bool Watched>
  CHANNELSTRIP_INLINE bool step(int32_t q) {
    using Part = Lanes<4>;
    const float* const from = coefs_[static_cast<uint32_t>(q + kRows - 1) % kRows];
    float* const to = coefs_[static_cast<uint32_t>(q) % kRows];
    GlideChange<Part> change;
    for (int i = 0; i < kCoefs; i += 4) {
      const auto rate =
          kCoefLanes == 1 ? broadcast<Part>(rates_[0]) : load<Part>(rates_ + i % kCoefLanes);
      const auto coef = load<Part>(from + i);
      const auto smoothed = load<DoublesOf<Part>>(smoothed_ + i);
      Part new_coef = coef;
      DoublesOf<Part> new_smoothed = smoothed;
      glide(new_coef, new_smoothed, load<Part>(targets_ + i), rate);
      channelstrip::store(to + i, new_coef);
      channelstrip::store(smoothed_ + i, new_smoothed);
      if constexpr (Watched) change.add(coef, new_coef, smoothed, new_smoothed);
    }
    return !Watched || change.any();
  }

  CHANNELSTRIP_INLINE static EQ_SDezipCoefs* dezip_of(
      const SChannelStrip_Alg_Context* const* strips, int lane) {
    return strips[Layout::strip_of_channel_lane(lane)]->eqDezipCoefs;
  }
  CHANNELSTRIP_INLINE static EQ_SState& state_of(const SChannelStrip_Alg_Context* const* strips,
                                                 int lane) {
    return strips[Layout::strip_of_channel_lane(lane)]->eqState[Layout::channel_of(lane)];
  }

  CHANNELSTRIP_INLINE bool runs(int band) const {
    return passes_[0].has(band) || passes_[1].has(band);
  }

  // One number per coefficient and lane, from an array per lane.
  template <typename From>
  CHANNELSTRIP_INLINE static void load_coefs(float* to, From from) {
    for (int i = 0; i < kBandCoefs; i += 4) {
      if constexpr (kCoefLanes == 1) {
        channelstrip::store(to + i, load<Lanes<4>>(from(0) + i));
      } else {
        V columns[4];
        load_columns(columns, [&](int lane) { return from(lane) + i; });
        for (int k = 0; k < 4; ++k) channelstrip::store(to + (i + k) * kCoefLanes, columns[k]);
      }
    }
  }

  CHANNELSTRIP_INLINE void load_glide(const SChannelStrip_Alg_Context* const* strips) {
    const auto strip = [&](int lane) -> const SChannelStrip_Alg_Context& {
      return *strips[Layout::strip_of_channel_lane(lane)];
    };
    load_coefs(targets_, [&](int lane) { return strip(lane).eqTargetCoefs->targetCoefs; });
    for (int lane = 0; lane < kCoefLanes; ++lane) {
      rates_[lane] = strip(lane).dynState[0].dezipRate;
      for (int i = 0; i < kBandCoefs; ++i) {
        smoothed_[i * kCoefLanes + lane] = strip(lane).eqDezipCoefs->smoothedCoefs[i];
      }
    }
  }

  CHANNELSTRIP_INLINE void store_glide(const SChannelStrip_Alg_Context* const* strips) const {
    for (int s = 0; s < Layout::kStrips; ++s) {
      const int lane = kCoefLanes == 1 ? 0 : s * Layout::kChannelStride;
      EQ_SDezipCoefs* const to = strips[s]->eqDezipCoefs;
      for (int i = 0; i < kBandCoefs; ++i) to->smoothedCoefs[i] = smoothed_[i * kCoefLanes + lane];
      eq_resynchronise(to);
    }
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

  bool moves_ = false;             // if not, the last row of coefs_ serves all quads
  bool moved_ = false;             // in this call
  int32_t last_step_ = INT32_MAX;  // after which every row holds the coefficients at rest
  EqRange passes_[2];
  V z1_[CHANNELSTRIP_EQ_BANDS], z2_[CHANNELSTRIP_EQ_BANDS];
  alignas(64) float coefs_[kRows][kCoefs];  // row q % kRows is quad q's
  alignas(64) float targets_[kMoving];
  alignas(64) double smoothed_[kMoving];
  float rates_[kCoefLanes];
  EqPairs<V, kPairs> pairs_;
};

}  // namespace channelstrip
