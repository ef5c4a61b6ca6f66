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

  static constexpr bool kPairs = kInPairs<Layout>;

  CHANNELSTRIP_INLINE explicit EqLanes(const SChannelStrip_Alg_Context* const* strips)
      : passes_{range(*strips[0]->eqTargetCoefs, 0), range(*strips[0]->eqTargetCoefs, 1)},
        pairs_(passes_),
        coefs_(strips) {
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; band += 4) {
      load_memory(z1_, band, [&](int lane) { return state_of(strips, lane).z1; });
      load_memory(z2_, band, [&](int lane) { return state_of(strips, lane).z2; });
    }
  }

  // Glides the coefficients by the step that precedes quad q.
  CHANNELSTRIP_INLINE void glide_before(int32_t q) {
    coefs_.glide_before(q);
    if constexpr (kPairs) {
      if (!has_pair_coefs_ && !coefs_.move()) set_pair_coefs(q);
    }
  }

  // Runs the pass before (0) or after (1) the dynamics over quad q.
  CHANNELSTRIP_INLINE void run(int pass, int32_t q, V (&samples)[4]) {
    const EqRange bands = passes_[pass];
    const float* const coefs = coefs_.of_quad(q);
    if constexpr (kPairs) {
      run_bands<2>({bands.first, bands.first + pairs_.size()}, pass - 2 * bands.first, coefs,
                   samples);
      run_alone(bands, coefs, samples);
    } else {
      run_bands<1>(bands, 0, coefs, samples);
    }
  }

  // Runs the pass before the dynamics over quad q and the pass after it over another one, side by
  // side. While coefficients move, each quad has its own.
  CHANNELSTRIP_INLINE void run_both(int32_t q, V (&before)[4], int32_t other, V (&after)[4]) {
    static_assert(kPairs);
    using Pairs = EqPairs<V, kPairs>;
    using Both = typename Pairs::Both;
    const EqRange passes[] = {passes_[0], passes_[1]};
    const float *const coefs = coefs_.of_quad(q), *const coefs_after = coefs_.of_quad(other);
    if (coefs_.move()) {
      const auto coef = [&](int32_t i) { return Pairs::coef(passes, coefs, coefs_after, i); };
      pairs_.run(coef, z1_, z2_, before, after);
    } else {
      const float* const resting = coefs_.room_at_rest();
      const auto coef = [=](int32_t i) { return load<Both>(resting + i * kWidth<Both>); };
      pairs_.run(coef, z1_, z2_, before, after);
    }
    run_alone(passes[0], coefs, before);
    run_alone(passes[1], coefs_after, after);
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
  // Bands whose memory stands Stride places apart: that of band b at Stride b + shift.
  template <int Stride>
  CHANNELSTRIP_INLINE void run_bands(EqRange bands, int32_t shift, const float* coefs,
                                     V (&samples)[4]) {
    for (int32_t band = bands.first; band < bands.end; ++band) {
      const int32_t place = Stride * band + shift;
      V section[5];
      coefs_.load_band(section, coefs, band);
      run_section<4>(section, z1_[place], z2_[place], samples);
    }
  }

  // The bands of a pass that have no partner.
  CHANNELSTRIP_INLINE void run_alone(EqRange bands, const float* coefs, V (&samples)[4]) {
    const int32_t paired = pairs_.size();
    run_bands<1>({bands.first + paired, bands.end}, paired - bands.first, coefs, samples);
  }

  // While coefficients rest, those of the pairs stand ready side by side.
  CHANNELSTRIP_INLINE void set_pair_coefs(int32_t q) {
    using Pairs = EqPairs<V, kPairs>;
    static_assert(Pairs::kCoefs <= CoefLanes<Layout, History>::kRoomAtRest);
    const float* const bands = coefs_.of_quad(q);
    float* const to = coefs_.room_at_rest();
    for (int32_t i = 0; i < 5 * pairs_.size(); ++i) {
      channelstrip::store(to + i * kWidth<typename Pairs::Both>,
                          Pairs::coef(passes_, bands, bands, i));
    }
    has_pair_coefs_ = true;
  }

  CHANNELSTRIP_INLINE static EqRange range(const EQ_SCoefs& coefs, int pass) {
    return {coefs.firstBand[pass], coefs.endBand[pass]};
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
  CHANNELSTRIP_INLINE void load_memory(V* z, int band, Of of) const {
    V four[4];
    load_columns(four, [&](int lane) { return of(lane) + band; });
    for (int k = 0; k < 4; ++k) z[pairs_.place(band + k)] = four[k];
  }

  // A band that no pass runs must stay untouched.
  CHANNELSTRIP_INLINE void store_memory(const V* z, int band, float* const* to) const {
    V four[4];
    for (int k = 0; k < 4; ++k) four[k] = z[pairs_.place(band + k)];
    if (runs(band) && runs(band + 1) && runs(band + 2) && runs(band + 3)) {
      store_columns(four, to, band);
      return;
    }
    for (int k = 0; k < 4; ++k) {
      if (!runs(band + k)) continue;
      for (int lane = 0; lane < kWidth<V>; ++lane) {
        if (to[lane]) to[lane][band + k] = four[k][lane];
      }
    }
  }

  static constexpr int kMemoryAlignment = (kPairs ? 2 : 1) * sizeof(V);  // of a pair

  EqRange passes_[2];
  EqPairs<V, kPairs> pairs_;
  bool has_pair_coefs_ = false;
  CoefLanes<Layout, History> coefs_;
  alignas(kMemoryAlignment) V z1_[CHANNELSTRIP_EQ_BANDS];
  alignas(kMemoryAlignment) V z2_[CHANNELSTRIP_EQ_BANDS];
};

}  // namespace channelstrip
