// The equaliser in lanes, one per channel, for the length of a call: loaded once, stored once.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/section.h"
#include "eq_dezip.h"

namespace channelstrip {

// Whether the next glide step changes any bit. If not, no further step of the call will: targets
// and rate are constant for the length of a call.
CHANNELSTRIP_INLINE bool eq_moves(const SChannelStrip_Alg_Context& strip) {
  const EQ_SDezipCoefs& dezip = *strip.eqDezipCoefs;
  const auto rate = broadcast<Lanes<4>>(strip.dynState[0].dezipRate);
  IntsOf<Lanes<4>> changed{};
  Longs changed_smoothed{};
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; i += 4) {
    const auto coef_before = load<Lanes<4>>(dezip.coefs + i);
    const auto smoothed_before = load<Doubles>(dezip.smoothedCoefs + i);
    Lanes<4> coef = coef_before;
    Doubles smoothed = smoothed_before;
    glide(coef, smoothed, load<Lanes<4>>(strip.eqTargetCoefs->targetCoefs + i), rate);
    changed |= (IntsOf<Lanes<4>>)coef ^ (IntsOf<Lanes<4>>)coef_before;
    changed_smoothed |= (Longs)smoothed ^ (Longs)smoothed_before;
  }
  return any_bit(changed) || any_bit(changed_smoothed);
}

// Keeps the coefficients of the last History quads, as the pipeline runs the second pass of a quad
// up to History quads after its first.
template <typename Layout, int History>
class EqLanes {
 public:
  using V = typename Layout::Channel;

  CHANNELSTRIP_INLINE explicit EqLanes(const SChannelStrip_Alg_Context* const* strips) {
    for (int pass = 0; pass < 2; ++pass) {
      first_band_[pass] = strips[0]->eqTargetCoefs->firstBand[pass];
      end_band_[pass] = strips[0]->eqTargetCoefs->endBand[pass];
    }
    for (int s = 0; s < Layout::kStrips; ++s) moves_ |= eq_moves(*strips[s]);
    for (int lane = 0; lane < kCoefLanes; ++lane) {
      const SChannelStrip_Alg_Context& strip = *strips[Layout::strip_of_channel_lane(lane)];
      for (int i = 0; i < kBandCoefs; ++i) {
        coefs_[History - 1][i * kCoefLanes + lane] = strip.eqDezipCoefs->coefs[i];
      }
      if (moves_) load_glide(strip, lane);
    }
    for_each_band([&](int band) {
      const auto state = [&](int lane) -> const EQ_SState& {
        return strips[Layout::strip_of_channel_lane(lane)]->eqState[Layout::channel_of(lane)];
      };
      z1_[band] = fill<V>([&](int lane) { return state(lane).z1[band]; });
      z2_[band] = fill<V>([&](int lane) { return state(lane).z2[band]; });
    });
  }

  // Glides the coefficients by the step that precedes quad q.
  CHANNELSTRIP_INLINE void glide_before(int32_t q) {
    if (!moves_) return;
    const float* const from = coefs_[static_cast<uint32_t>(q + History - 1) % History];
    float* const to = coefs_[static_cast<uint32_t>(q) % History];
    for (int i = 0; i < kCoefs; i += 4) {
      const auto rate = kCoefLanes == 1 ? broadcast<Lanes<4>>(rates_[0])
                                        : load<Lanes<4>>(rates_ + i % kCoefLanes);
      auto coef = load<Lanes<4>>(from + i);
      auto smoothed = load<Doubles>(smoothed_ + i);
      glide(coef, smoothed, load<Lanes<4>>(targets_ + i), rate);
      channelstrip::store(to + i, coef);
      channelstrip::store(smoothed_ + i, smoothed);
    }
  }

  // Runs the pass before (0) or after (1) the dynamics over quad q.
  CHANNELSTRIP_INLINE void run(int pass, int32_t q, V (&samples)[4]) {
    const float* const coefs = coefs_[moves_ ? static_cast<uint32_t>(q) % History : History - 1];
    for (int32_t band = first_band_[pass]; band < end_band_[pass]; ++band) {
      V section[5];
      for (int i = 0; i < 5; ++i) {
        const float* const coef = coefs + (5 * band + i) * kCoefLanes;
        section[i] = kCoefLanes == 1 ? broadcast<V>(*coef) : load<V>(coef);
      }
      run_section<4>(section, z1_[band], z2_[band], samples);
    }
  }

  CHANNELSTRIP_INLINE void store(const SChannelStrip_Alg_Context* const* strips) const {
    for (int s = 0; s < Layout::kStrips && moves_; ++s) {
      const int lane = kCoefLanes == 1 ? 0 : s * Layout::kChannelStride;
      EQ_SDezipCoefs* const to = strips[s]->eqDezipCoefs;
      for (int i = 0; i < kBandCoefs; ++i) to->smoothedCoefs[i] = smoothed_[i * kCoefLanes + lane];
      eq_resynchronise(to);
    }
    for (int lane = 0; lane < kWidth<V>; ++lane) {
      if (!Layout::is_channel(lane)) continue;
      EQ_SState& to =
          strips[Layout::strip_of_channel_lane(lane)]->eqState[Layout::channel_of(lane)];
      for_each_band([&](int band) {
        to.z1[band] = z1_[band][lane];
        to.z2[band] = z2_[band][lane];
      });
    }
  }

 private:
  static constexpr int kBandCoefs = CHANNELSTRIP_EQ_COEFS;
  // All channels of one strip share its coefficients.
  static constexpr int kCoefLanes = Layout::kStrips == 1 ? 1 : kWidth<V>;
  static constexpr int kCoefs = kBandCoefs * kCoefLanes;

  // Visits the bands that a pass runs. The state of all others must stay untouched.
  template <typename Function>
  CHANNELSTRIP_INLINE void for_each_band(Function visit) const {
    for (int pass = 0; pass < 2; ++pass) {
      for (int band = first_band_[pass]; band < end_band_[pass]; ++band) visit(band);
    }
  }

  CHANNELSTRIP_INLINE void load_glide(const SChannelStrip_Alg_Context& strip, int lane) {
    rates_[lane] = strip.dynState[0].dezipRate;
    for (int i = 0; i < kBandCoefs; ++i) {
      targets_[i * kCoefLanes + lane] = strip.eqTargetCoefs->targetCoefs[i];
      smoothed_[i * kCoefLanes + lane] = strip.eqDezipCoefs->smoothedCoefs[i];
    }
  }

  bool moves_ = false;  // if not, the last row of coefs_ serves all quads
  int32_t first_band_[2], end_band_[2];
  V z1_[CHANNELSTRIP_EQ_BANDS], z2_[CHANNELSTRIP_EQ_BANDS];
  alignas(64) float coefs_[History][kCoefs];  // row q % History is quad q's
  alignas(64) float targets_[kCoefs];
  alignas(64) double smoothed_[kCoefs];
  float rates_[kCoefLanes];
};

}  // namespace channelstrip
