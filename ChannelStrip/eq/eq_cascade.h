// The equaliser of one mono instance, a lane per band, for the length of a call.
//
// In every step each pass takes in its next sample. The pass's first band filters that sample;
// every other band filters what the band before it put out in the previous step. So a band lags
// behind the input by as many samples as bands precede it in its pass, at most 7, and a quad is
// complete up to two quads after it went in.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/section.h"
#include "../lanes/transpose.h"
#include "eq_moves.h"

namespace channelstrip {

class EqCascade {
 public:
  static constexpr int kMostDelay = 2;

  // When the pass before the dynamics has put out a quad, `between` more quads go in before the
  // pass after it takes that quad.
  CHANNELSTRIP_INLINE EqCascade(const SChannelStrip_Alg_Context& strip, int32_t quads,
                                int32_t between)
      : quads_(quads), moves_(eq_moves(strip)), rate_(strip.dynState[0].dezipRate) {
    const EQ_SCoefs& targets = *strip.eqTargetCoefs;
    load_coefs(now_[3], strip.eqDezipCoefs->coefs);
    if (moves_) {
      load_coefs(targets_, targets.targetCoefs);
      load_smoothed(strip.eqDezipCoefs->smoothedCoefs);
    }
    const Ints band{0, 1, 2, 3, 4, 5, 6, 7};
    MaskOf<V> is_first[2];
    begin_ = Ints{} + kNever;
    for (int pass = 0; pass < 2; ++pass) {
      const int32_t first = targets.firstBand[pass], end = targets.endBand[pass];
      is_empty_[pass] = first >= end;
      last_[pass] = static_cast<uint32_t>(end - 1);
      late_[pass] = is_empty_[pass] ? 0 : static_cast<uint32_t>(end - 1 - first);
      post_delay_ = delay(0) + between;
      const Ints begin = band - first + 4 * post_delay_ * pass;
      begin_ = select((band >= first) & (band < end), begin, begin_);
      is_first[pass] = (band == first) & (band < end);
    }
    const MaskOf<V> runs = begin_ != kNever;
    begin_quad_ = runs & (begin_ >> 2);
    is_first_ = is_first[0] | is_first[1];
    for (int step = 0; step < 4; ++step) {
      enters_quad_[step] = (begin_ & 3) == step;
      const Ints input = kBands + step + (is_first[1] & 4);
      channelstrip::store(fed_[step], select(is_first_, input, (band - 1) & (kBands - 1)));
    }
    z1_ = (V)((Ints)load<V>(strip.eqState[0].z1) & runs);
    z2_ = (V)((Ints)load<V>(strip.eqState[0].z2) & runs);
    y_ = V{};
  }

  // How many quads after quad q the pass must have taken before it has put out all of quad q.
  CHANNELSTRIP_INLINE int32_t delay(int pass) const {
    return static_cast<int32_t>(late_[pass] + 3) / 4;
  }

  // Takes quad q into the pass before the dynamics and quad q - post_delay_ into the pass after
  // it. A quad outside the call may hold anything.
  CHANNELSTRIP_INLINE void take(int32_t q, Lanes<4> before, Lanes<4> after) {
    if (moves_) glide(q);
    const auto number = static_cast<uint32_t>(q);
    const V both = taken_[number % kTaken] = join(before, after);
    V* const given = given_ + 4 * number % kSteps;
    const bool all_at_work = q >= post_delay_ + kMostDelay && q < quads_;
    V y = y_, z1 = z1_, z2 = z2_;
    for (int step = 0; step < 4; ++step) {
      y = pick_either(y, both, fed_[step], is_first_);
      V new_z1 = z1, new_z2 = z2;
      run_section<1>(now_[moves_ ? step : 3], new_z1, new_z2, &y);
      if (!all_at_work) {
        const MaskOf<V> at_work = in_call(4 * q + step - begin_, 4 * quads_);
        new_z1 = select(at_work, new_z1, z1);
        new_z2 = select(at_work, new_z2, z2);
      }
      z1 = new_z1;
      z2 = new_z2;
      given[step] = given[kSteps + step] = y;
    }
    y_ = y;
    z1_ = z1;
    z2_ = z2;
  }

  // Quad q as a pass put it out; may be asked for once quad q + delay(pass) has gone in.
  CHANNELSTRIP_INLINE Lanes<4> given(int pass, int32_t q) const {
    const auto taken = static_cast<uint32_t>(q + post_delay_ * pass);
    if (is_empty_[pass]) {
      const V both = taken_[taken % kTaken];
      return pass == 0 ? low_half(both) : high_half(both);
    }
    const V* const y = given_ + (4 * taken + late_[pass]) % kSteps;
    const uint32_t band = last_[pass];
    return Lanes<4>{y[0][band], y[1][band], y[2][band], y[3][band]};
  }

  CHANNELSTRIP_INLINE void store_to(const SChannelStrip_Alg_Context& strip) const {
    const EQ_SCoefs& targets = *strip.eqTargetCoefs;
    EQ_SDezipCoefs* const dezip = strip.eqDezipCoefs;
    for (int i = 0; i < 5 * kBands && moves_; ++i) {
      dezip->smoothedCoefs[i] = smoothed_[i % 5][i / 20][i / 5 % 4];
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
  using Ints = IntsOf<V>;
  // Quads kept, from the newest to the next to be given.
  static constexpr int kTaken = kMostDelay + 2;
  static constexpr int kSteps = 4 * kTaken;
  static constexpr int32_t kNever = INT32_MAX;

  CHANNELSTRIP_INLINE static MaskOf<V> in_call(IntsOf<V> at, int32_t count) {
    return (at >= 0) & (at < count);
  }

  // The five coefficients of every band.
  CHANNELSTRIP_INLINE static void load_coefs(V (&coefs)[5], const float* from) {
    V last[4];
    load_columns(last, [=](int band) { return from + 5 * band + 1; });
    coefs[4] = last[3];
    for (int i = 1; i < 4; ++i) coefs[i] = last[i - 1];
    coefs[0] = fill<V>([=](int band) { return from[5 * band]; });
  }
  CHANNELSTRIP_INLINE void load_smoothed(const double* from) {
    for (int i = 0; i < 5; ++i) {
      for (int half = 0; half < 2; ++half) {
        smoothed_[i][half] =
            fill<Doubles>([=](int lane) { return from[5 * (4 * half + lane) + i]; });
      }
    }
  }

  // Every band enters its next quad at one of the coming four steps. Glides the coefficients of
  // each band by one step for that quad, and sets those that all bands use at each of the four
  // steps.
  CHANNELSTRIP_INLINE void glide(int32_t q) {
    const MaskOf<V> at_work = in_call(q - begin_quad_, quads_);
    for (int i = 0; i < 5; ++i) {
      const V before = now_[3][i];
      Lanes<4> coefs[2] = {low_half(before), high_half(before)};
      const Lanes<4> targets[2] = {low_half(targets_[i]), high_half(targets_[i])};
      const Lanes<4> moving[2] = {low_half((V)at_work), high_half((V)at_work)};
      for (int half = 0; half < 2; ++half) {
        Doubles smoothed = smoothed_[i][half];
        channelstrip::glide(coefs[half], smoothed, targets[half], broadcast<Lanes<4>>(rate_));
        const auto mask = convert<Longs>((IntsOf<Lanes<4>>)moving[half]);
        smoothed_[i][half] = select(mask, smoothed, smoothed_[i][half]);
      }
      const V after = select(at_work, join(coefs[0], coefs[1]), before);
      now_[0][i] = select(enters_quad_[0], after, before);
      now_[1][i] = select(enters_quad_[1], after, now_[0][i]);
      now_[2][i] = select(enters_quad_[2], after, now_[1][i]);
      now_[3][i] = after;
    }
  }

  int32_t quads_;
  int32_t post_delay_;  // when one pass takes quad q, the other takes quad q - post_delay_
  bool moves_;
  float rate_;
  bool is_empty_[2];
  uint32_t late_[2], last_[2];  // of each pass: how many steps the last band lags, and its number
  MaskOf<V> is_first_, enters_quad_[4];  // the latter by step
  // By step, the lane that a band takes: of the bands' outputs, or from kBands on of both quads.
  alignas(64) int32_t fed_[4][kBands];
  IntsOf<V> begin_, begin_quad_;  // step and quad in which a band takes its first sample
  V now_[4][5];                   // coefficients by step; at rest the last serves all steps
  V targets_[5];
  Doubles smoothed_[5][2];
  V z1_, z2_, y_;
  V taken_[kTaken];
  V given_[2 * kSteps];  // a ring stored twice, so that any four consecutive steps are contiguous
};

}  // namespace channelstrip
