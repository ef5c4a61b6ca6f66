// The equaliser of one instance with few channels, a lane per band, for the length of a call.
//
// In every step each pass takes in its next sample. The pass's first band filters that sample;
// every other band filters what the band before it put out in the previous step. So a band lags
// behind the input by as many samples as bands precede it in its pass, at most 7, and a quad is
// complete up to two quads after it went in. A band that hasn't begun or has ended filters whatever
// it is given; its memory waits aside.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/section.h"
#include "../lanes/transpose.h"
#include "eq_moves.h"

namespace channelstrip {

template <int Channels>
class EqCascade {
 public:
  using Quad = Lanes<4>;

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
    const MaskOf<V> high = band >= 4;
    MaskOf<V> is_first[2];
    Ints last[2], late[2], empty[2];  // the number of the last band, how many steps it lags
    begin_ = Ints{} + kNever;
    for (int pass = 0; pass < 2; ++pass) {
      const int32_t first = targets.firstBand[pass], end = targets.endBand[pass];
      const bool is_empty = first >= end;
      last[pass] = Ints{} + (end - 1);
      late[pass] = Ints{} + (is_empty ? 0 : end - 1 - first);
      delay_[pass] = (late[pass][0] + 3) / 4;
      spread_[pass] = late[pass][0] / 4 + 1;
      empty[pass] = Ints{} - is_empty;
      post_delay_ = delay_[0] + between;
      const Ints begin = band - first + 4 * post_delay_ * pass;
      if (!is_empty) begin_quads_ |= (spread_[pass] < 2 ? 1u : 3u) << (post_delay_ * pass);
      begin_ = select((band >= first) & (band < end), begin, begin_);
      is_first[pass] = (band == first) & (band < end);
    }
    begin_quad_ = (begin_ != kNever) & (begin_ >> 2);  // a band of no pass glides from quad 0 on
    is_first_ = is_first[0] | is_first[1];
    for (int step = 0; step < 4; ++step) {
      enters_quad_[step] = (begin_ & 3) == step;
      const Ints input = kBands + step + (is_first[1] & 4);
      channelstrip::store(fed_[step], select(is_first_, input, (band - 1) & (kBands - 1)));
    }
    channelstrip::store(last_, select(high, last[1], last[0]));
    const Ints from = (band & 3) + 1 + ((select(high, late[1], late[0]) - 1) & 3);
    is_of_newest_ = from >= 4;
    channelstrip::store(from_, (from & 3) + (high & 4) + (is_of_newest_ & kBands));
    is_empty_ = select(high, empty[1], empty[0]);
    for (int c = 0; c < Channels; ++c) {
      Channel& channel = channels_[c];
      channel.waiting_z1 = load<V>(strip.eqState[c].z1);
      channel.waiting_z2 = load<V>(strip.eqState[c].z2);
      channel.z1 = channel.z2 = channel.y = channel.newest = channel.given = V{};
    }
  }

  // How many quads after quad q the pass must have taken before it has put out all of quad q.
  CHANNELSTRIP_INLINE int32_t delay(int pass) const { return delay_[pass]; }

  // Bands of the pass begin in so many quads, from its first one on, and end in as many that follow
  // its last one.
  CHANNELSTRIP_INLINE int32_t spread(int pass) const { return spread_[pass]; }

  // Glides the coefficients that take(q) will use.
  CHANNELSTRIP_INLINE void glide_before(int32_t q) {
    if (moves_) glide(q);
  }

  // Takes quad q of every channel into the pass before the dynamics and quad q - post_delay_ into
  // the pass after it. A quad outside the call may hold anything. AllAtWork: no band begins or
  // ends.
  template <bool AllAtWork>
  CHANNELSTRIP_INLINE void take(int32_t q, const Quad (&before)[Channels],
                                const Quad (&after)[Channels]) {
    const bool changes = !AllAtWork && (begins_in(q) || begins_in(q - quads_));
    for (int c = 0; c < Channels; ++c) {
      const V both = join(before[c], after[c]);
      if (changes) {
        take_steps<true, true>(q, both, channels_[c]);
      } else if (moves_) {
        take_steps<false, true>(q, both, channels_[c]);
      } else {
        take_steps<false, false>(q, both, channels_[c]);
      }
    }
  }

  // The newest quad that a pass has put out whole: behind take(q), quad q - delay(pass) of the pass
  // before the dynamics.
  CHANNELSTRIP_INLINE Quad given(int pass, int channel) const {
    const V both = channels_[channel].given;
    return pass == 0 ? low_half(both) : high_half(both);
  }

  CHANNELSTRIP_INLINE void store_to(const SChannelStrip_Alg_Context& strip) const {
    EQ_SDezipCoefs* const dezip = strip.eqDezipCoefs;
    for (int i = 0; i < 5 * kBands && moves_; ++i) {
      dezip->smoothedCoefs[i] = smoothed_[i % 5][i / 5];
    }
    if (moves_) eq_resynchronise(dezip);
    for (int c = 0; c < Channels; ++c) {
      channelstrip::store(strip.eqState[c].z1, channels_[c].waiting_z1);
      channelstrip::store(strip.eqState[c].z2, channels_[c].waiting_z2);
    }
  }

 private:
  static constexpr int kBands = CHANNELSTRIP_EQ_BANDS;
  using V = Lanes<kBands>;
  using Ints = IntsOf<V>;
  static constexpr int32_t kNever = INT32_MAX;

  CHANNELSTRIP_INLINE bool begins_in(int32_t q) const {
    return static_cast<uint32_t>(q) < 32 && (begin_quads_ >> q & 1) != 0;
  }

  CHANNELSTRIP_INLINE static void swap_where(MaskOf<V> mask, V& a, V& b) {
    const V old = a;
    a = select(mask, b, a);
    b = select(mask, old, b);
  }

  // One channel on its way through the bands.
  struct Channel {
    V z1, z2, y;
    V waiting_z1, waiting_z2;  // what bands begin with, or have ended with
    V newest, given;           // both passes' newest outputs, and their newest whole quads
  };

  // Changes: a band may begin or end.
  template <bool Changes, bool Moves>
  CHANNELSTRIP_INLINE void take_steps(int32_t q, V both, Channel& channel) const {
    V y = channel.y, z1 = channel.z1, z2 = channel.z2, out[4];
    for (int step = 0; step < 4; ++step) {
      if constexpr (Changes) {
        const Ints steps = 4 * q + step - begin_;
        const MaskOf<V> changes = (steps == 0) | (steps == 4 * quads_);
        swap_where(changes, z1, channel.waiting_z1);
        swap_where(changes, z2, channel.waiting_z2);
      }
      y = pick_either(y, both, fed_[step], is_first_);
      run_section<1>(now_[Moves && moves_ ? step : 3], z1, z2, &y);
      out[step] = pick_lanes<V>(y, last_);  // in all lanes of a half the same
    }
    const V newest = shuffle_blocks<0, 1, 4, 5>(shuffle_blocks<0, 4, 1, 5>(out[0], out[1]),
                                                shuffle_blocks<0, 4, 1, 5>(out[2], out[3]));
    const V whole = pick_either(channel.newest, newest, from_, is_of_newest_);
    channel.given = select(is_empty_, both, whole);
    channel.newest = newest;
    channel.y = y;
    channel.z1 = z1;
    channel.z2 = z2;
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
      for (int band = 0; band < kBands; ++band) smoothed_[i][band] = from[5 * band + i];
    }
  }

  // Every band enters its next quad at one of the coming four steps. Glides the coefficients of
  // each band by one step for that quad, and sets those that all bands use at each of the four
  // steps.
  CHANNELSTRIP_INLINE void glide(int32_t q) {
    const MaskOf<V> at_work = (q >= begin_quad_) & (q - quads_ < begin_quad_);
    for (int i = 0; i < 5; ++i) {
      const V before = now_[3][i];
      const V after = select(at_work, glided(before, smoothed_[i], targets_[i], at_work), before);
      now_[0][i] = select(enters_quad_[0], after, before);
      now_[1][i] = select(enters_quad_[1], after, now_[0][i]);
      now_[2][i] = select(enters_quad_[2], after, now_[1][i]);
      now_[3][i] = after;
    }
  }

  // The coefficients behind the next step, which the running values take where `moving` is set.
  template <typename W>
  CHANNELSTRIP_INLINE W glided(W coefs, double* running, W targets, IntsOf<W> moving) const {
    if constexpr (kDoubles < kWidth<W>) {
      return join(
          glided(low_half(coefs), running, low_half(targets), (IntsOf<Quad>)low_half((W)moving)),
          glided(high_half(coefs), running + kDoubles, high_half(targets),
                 (IntsOf<Quad>)high_half((W)moving)));
    } else {
      const auto before = load<DoublesOf<W>>(running);
      auto smoothed = before;
      channelstrip::glide(coefs, smoothed, targets, broadcast<W>(rate_));
      channelstrip::store(running, select(convert<LongsOf<W>>(moving), smoothed, before));
      return coefs;
    }
  }

  int32_t quads_;
  int32_t post_delay_;  // when one pass takes quad q, the other takes quad q - post_delay_
  bool moves_;
  float rate_;
  int32_t delay_[2], spread_[2];
  uint32_t begin_quads_ = 0;             // bit q: some band takes its first sample in quad q
  MaskOf<V> is_first_, enters_quad_[4];  // the latter by step
  // By step, the lane that a band takes: of the bands' outputs, or from kBands on of both quads.
  alignas(64) int32_t fed_[4][kBands];
  // Both passes' outputs stand in the halves of a register, one lane per step. For every lane: its
  // pass's last band, and the lane of the previous or (from kBands on) the newest outputs where
  // that sample of a whole quad is.
  alignas(64) int32_t last_[kBands], from_[kBands];
  MaskOf<V> is_of_newest_, is_empty_;
  IntsOf<V> begin_, begin_quad_;  // step and quad in which a band takes its first sample
  V now_[4][5];                   // coefficients by step; at rest the last serves all steps
  V targets_[5];
  alignas(64) double smoothed_[5][kBands];
  Channel channels_[Channels];
};

}  // namespace channelstrip
