// The equaliser of one mono instance, a lane per band, for the length of a call.
//
// Every step takes the next sample into each pass: its first band works on that one, every other
// band on what the band before it gave the step before. A band is thus as many samples late as
// bands precede it in its pass, and a quad comes out kDelay quads after it went in.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/quad.h"
#include "../lanes/section.h"
#include "eq_lanes.h"

namespace channelstrip {

// The pass after the dynamics takes quad q - PostDelay when the one before takes quad q.
template <int PostDelay>
class EqCascade {
 public:
  static constexpr int kDelay = 2;

  CHANNELSTRIP_INLINE EqCascade(const SChannelStrip_Alg_Context& strip, int32_t quads)
      : samples_(4 * quads) {
    const EQ_SCoefs& targets = *strip.eqTargetCoefs;
    const EQ_SDezipCoefs& dezip = *strip.eqDezipCoefs;
    rate_ = strip.dynState[0].dezipRate;
    for (int band = 0; band < kBands; ++band) {
      for (int i = 0; i < 5; ++i) {
        targets_[i * kBands + band] = targets.targetCoefs[5 * band + i];
        smoothed_[i * kBands + band] = dezip.smoothedCoefs[5 * band + i];
        coefs_[kHistory - 1][i * kBands + band] = dezip.coefs[5 * band + i];
      }
    }
    moves_ = glide(kHistory - 1, 0);
    for (int i = 0; i < 5; ++i) {
      now_[0][i] = now_[3][i] = load<V>(coefs_[kHistory - 1] + i * kBands);
    }

    int32_t begin[kBands], delay[kBands];
    for (int band = 0; band < kBands; ++band) begin[band] = delay[band] = kNever;
    for (int pass = 0; pass < 2; ++pass) {
      const int first = targets.firstBand[pass], end = targets.endBand[pass];
      for (int band = first; band < end; ++band) {
        begin[band] = 4 * PostDelay * pass + band - first;
        delay[band] = PostDelay * pass + (band - first) / 4;
      }
      is_first_[pass] = fill_mask<V>([&](int lane) { return first < end && lane == first; });
      late_[pass] = first < end ? end - 1 - first : 0;
      last_[pass] = first < end ? end - 1 : kBands + pass;
    }
    begin_ = load<IntsOf<V>>(begin);
    for (int i = 0; i < kRows; ++i) {
      constexpr int32_t kDelays[kRows] = {0, 1, PostDelay, PostDelay + 1};
      in_row_[i] = fill_mask<V>([&](int lane) { return delay[lane] == kDelays[i]; });
    }
    for (int step = 0; step < 4; ++step) {
      enters_quad_[step] = fill_mask<V>([&](int lane) { return begin[lane] % 4 == step; });
    }
    const auto runs = [&](int band) { return begin[band] != kNever; };
    z1_ = fill<V>([&](int band) { return runs(band) ? strip.eqState[0].z1[band] : 0.0f; });
    z2_ = fill<V>([&](int band) { return runs(band) ? strip.eqState[0].z2[band] : 0.0f; });
    y_ = V{};
  }

  // Takes quad q into the pass before and quad q - PostDelay into the pass after the dynamics; what
  // lies outside the call may be anything.
  CHANNELSTRIP_INLINE void take(int32_t q, Lanes<4> before, Lanes<4> after) {
    if (moves_) {
      if (q > 0 && 4 * q < samples_) glide((q - 1) % kHistory, q % kHistory);
      find_coefs(q);
    }
    const bool all_at_work = 4 * q >= 4 * PostDelay + kBands && 4 * q + 4 <= samples_;
    V y = y_, z1 = z1_, z2 = z2_;
    for (int step = 0; step < 4; ++step) {
      const V x = select(is_first_[1], broadcast<V>(after[step]), shifted(y));
      y = select(is_first_[0], broadcast<V>(before[step]), x);
      V new_z1 = z1, new_z2 = z2;
      run_section<1>(now_[moves_ ? step : 0], new_z1, new_z2, &y);
      give(4 * q + step, y, before[step], after[step]);
      if (!all_at_work) {
        const IntsOf<V> at = IntsOf<V>{} + (4 * q + step) - begin_;
        const auto at_work = (at >= 0) & (at < samples_);
        new_z1 = select(at_work, new_z1, z1);
        new_z2 = select(at_work, new_z2, z2);
      }
      z1 = new_z1;
      z2 = new_z2;
    }
    y_ = y;
    z1_ = z1;
    z2_ = z2;
  }

  // Quad q out of a pass, more than kDelay quads after it went in.
  CHANNELSTRIP_INLINE Lanes<4> given(int pass, int32_t q) const {
    const int32_t step = 4 * (q + PostDelay * pass) + late_[pass];
    return load<Lanes<4>>(given_[pass] + step % kSteps);
  }

  CHANNELSTRIP_INLINE void store_to(const SChannelStrip_Alg_Context& strip) const {
    const EQ_SCoefs& targets = *strip.eqTargetCoefs;
    EQ_SDezipCoefs* const dezip = strip.eqDezipCoefs;
    for (int i = 0; i < 5 * kBands && moves_; ++i) {
      dezip->smoothedCoefs[i] = smoothed_[i % 5 * kBands + i / 5];
    }
    if (moves_) eq_resynchronise(dezip);
    for (int pass = 0; pass < 2; ++pass) {
      for (int band = targets.firstBand[pass]; band < targets.endBand[pass]; ++band) {
        strip.eqState[0].z1[band] = z1_[band];
        strip.eqState[0].z2[band] = z2_[band];
      }
    }
  }

 private:
  static constexpr int kBands = CHANNELSTRIP_EQ_BANDS;
  using V = Lanes<kBands>;
  static constexpr int kHistory = 16;  // quads; above PostDelay + 1
  static constexpr int kSteps = 16;
  static constexpr int kRows = 4;
  static constexpr int32_t kNever = INT32_MAX;
  static_assert(PostDelay + 1 < kHistory);

  CHANNELSTRIP_INLINE bool glide(int from, int to) {
    return glide_all<5 * kBands, 1>(coefs_[from], smoothed_, targets_, &rate_, coefs_[to],
                                    smoothed_);
  }

  // The coefficients for each of the coming four steps, each band's of the quad that it works on.
  CHANNELSTRIP_INLINE void find_coefs(int32_t q) {
    constexpr int32_t kDelays[kRows] = {0, 1, PostDelay, PostDelay + 1};
    for (int i = 0; i < 5; ++i) {
      V entered = now_[3][i];
      for (int row = 0; row < kRows; ++row) {
        const int32_t last = samples_ / 4 - 1, quad = q - kDelays[row];
        const float* const coefs = coefs_[(quad < 0 ? 0 : quad > last ? last : quad) % kHistory];
        entered = select(in_row_[row], load<V>(coefs + i * kBands), entered);
      }
      V now = now_[3][i];
      for (int step = 0; step < 4; ++step) {
        now = now_[step][i] = select(enters_quad_[step], entered, now);
      }
    }
  }

  // Keeps what came out of both passes' last bands, or went in if there are none. Twice, so that
  // four samples stand side by side wherever they begin.
  CHANNELSTRIP_INLINE void give(int32_t step, V y, float before, float after) {
    float all[kBands + 2];
    channelstrip::store(all, y);
    all[kBands] = before;
    all[kBands + 1] = after;
    __asm__("" : "+m"(all));
    for (int pass = 0; pass < 2; ++pass) {
      float* const to = given_[pass] + step % kSteps;
      to[0] = to[kSteps] = all[last_[pass]];
    }
  }

  CHANNELSTRIP_INLINE static V shifted(V y) {
    return __builtin_shufflevector(y, y, 0, 0, 1, 2, 3, 4, 5, 6);
  }

  int32_t samples_;
  bool moves_;
  float rate_;
  int late_[2], last_[2];
  MaskOf<V> is_first_[2], in_row_[kRows], enters_quad_[4];
  IntsOf<V> begin_;  // the step that takes a band's first sample
  V now_[4][5];      // of each of four steps; at rest the first is all steps'
  V z1_, z2_, y_;
  float given_[2][2 * kSteps];
  // A row per quad: all bands' b0, then b1, b2, a1, a2.
  alignas(64) float coefs_[kHistory][5 * kBands];
  alignas(64) float targets_[5 * kBands];
  alignas(64) double smoothed_[5 * kBands];
};

}  // namespace channelstrip
