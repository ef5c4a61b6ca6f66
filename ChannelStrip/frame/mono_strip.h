// One mono instance by itself, for the length of a call. wide_strip.h, with a lane per channel,
// would leave most lanes idle. Here lanes are bands in the equaliser; in the dynamics and meters,
// stages without state process the four samples of a quad at once, stages with state go sample by
// sample.

#pragma once

#include "../dynamics/group_lanes.h"
#include "../dynamics/key_lanes.h"
#include "../dynamics/readout_lanes.h"
#include "../eq/eq_cascade.h"
#include "../meters/output_meters.h"
#include "context.h"

namespace channelstrip {

class MonoStrip {
 public:
  CHANNELSTRIP_INLINE MonoStrip(const SChannelStrip_Alg_Context* const* strip, int32_t quads)
      : strip_(strip),
        quads_(quads),
        eq_(**strip, quads, kGains + 1),
        key_(strip),
        links_(strip),
        readouts_(strip, links_),
        coefs_(*(*strip)->dynCoefs),
        peaks_(*(*strip)->meterOutputs) {
    load_curve_coefs<Mono>(curves_, strip);
    load_group_coefs<Mono>(groups_, strip);
    load_group_states<Mono>(group_state_, strip, links_);
    rate_ = broadcast<V>((*strip)->dynState[0].dezipRate);
    input_peak_ = broadcast<V>(peaks_[0]);
    output_peak_ = broadcast<V>(peaks_[1]);
  }

  // The stages are pipelined: in one iteration each works on another quad, so that the dependency
  // chain of one from sample to sample overlaps with the arithmetic of the others.
  CHANNELSTRIP_INLINE void process() {
    // How many quads each stage lags behind the input.
    const int32_t key_lag = eq_.delay(0) + 1, gains_lag = key_lag + kGains;
    const int32_t detect_lag = key_lag + kDetect, targets_lag = key_lag + kTargets;
    const int32_t smooth_lag = key_lag + kSmooth;
    const int32_t leave_lag = gains_lag + eq_.delay(1) + 1;
    for (int32_t q = 0; q < quads_ + leave_lag; ++q) {
      if (is_quad(q - leave_lag)) leave(q - leave_lag);
      if (is_quad(q - gains_lag)) find_gains(passing(q - gains_lag).gain);
      if (is_quad(q - smooth_lag)) {
        smooth_terms(groups_, group_state_, rate_, passing(q - smooth_lag).gain);
      }
      if (is_quad(q - targets_lag)) find_targets(curves_, passing(q - targets_lag).gain);
      if (is_quad(q - detect_lag)) detect_levels(q - detect_lag);
      if (is_quad(q - key_lag)) filter_key(q - key_lag);
      equalise(q, q - gains_lag);
    }
  }

  CHANNELSTRIP_INLINE void store() const {
    eq_.store_to(**strip_);
    key_.store(strip_);
    store_group_states<Mono>(strip_, links_, group_state_);
    readouts_.store();
    peaks_[0] = greatest(input_peak_);
    peaks_[1] = greatest(output_peak_);
  }

 private:
  using Mono = Layout<1, 1, 1>;
  using V = Lanes<kQuad>;

  // How many quads these stages lag behind the key filter. The equaliser takes up gains at once.
  static constexpr int kDetect = 1, kTargets = 2, kSmooth = 3, kGains = 4;
  static constexpr int kPassing = 16;  // a power of two above the greatest lag
  static_assert(kPassing > 2 * (EqCascade::kMostDelay + 1) + kGains);

  // A quad on its way through the strip.
  struct Passing {
    V input, audio;
    V detection[kQuad];  // in the first lane alone
    GainQuad<V, 1, Mono::kWidest> gain;
  };

  CHANNELSTRIP_INLINE Passing& passing(int32_t q) {
    return passing_[static_cast<uint32_t>(q) % kPassing];
  }
  CHANNELSTRIP_INLINE bool is_quad(int32_t q) const {
    return static_cast<uint32_t>(q) < static_cast<uint32_t>(quads_);
  }

  // Feeds both passes: one with the input, the other with an earlier quad, its gain applied.
  CHANNELSTRIP_INLINE void equalise(int32_t q, int32_t gained) {
    V before{}, after{};
    if (is_quad(q)) before = passing(q).input = load<V>((*strip_)->inputs[0] + q * kQuad);
    if (is_quad(gained)) {
      const Passing& quad = passing(gained);
      after = quad.audio * (quad.gain.makeup * quad.gain.gain(0));
      if (coefs_.keyListen != 0) {
        after = V{quad.detection[0][0], quad.detection[1][0], quad.detection[2][0],
                  quad.detection[3][0]};
      }
    }
    eq_.take(q, before, after);
  }

  CHANNELSTRIP_INLINE void filter_key(int32_t q) {
    Passing& quad = passing(q);
    quad.audio = eq_.given(0, q);
    V audio[kQuad];
    for (int k = 0; k < kQuad; ++k) audio[k] = broadcast<V>(quad.audio[k]);
    key_.detect(audio, q * kQuad, quad.detection);
  }

  CHANNELSTRIP_INLINE void detect_levels(int32_t q) {
    Passing& quad = passing(q);
    V levels[kQuad];
    for (int k = 0; k < kQuad; ++k) levels[k] = links_.levels(magnitude(quad.detection[k]));
    detect(groups_, group_state_, levels, quad.gain);
  }

  CHANNELSTRIP_INLINE void leave(int32_t q) {
    float* const to = (*strip_)->outputs[0];
    V y = eq_.given(1, q);
    // Metering comes last: in place, the input is by then the processed audio.
    const V x = to == (*strip_)->inputs[0] ? y : passing(q).input;
    if (coefs_.bypass > 0) y = x;
    meter(input_peak_, output_peak_, x, y, broadcast<V>(coefs_.inputMeterGain));
    channelstrip::store(to + q * kQuad, y);
    readouts_.update(passing(q).gain);
  }

  CHANNELSTRIP_INLINE static float greatest(V x) {
    return maximum(maximum(maximum(x[0], x[1]), x[2]), x[3]);
  }

  const SChannelStrip_Alg_Context* const* strip_;
  int32_t quads_;
  Passing passing_[kPassing];
  EqCascade eq_;
  KeyLanes<Mono> key_;
  LinkLanes<Mono> links_;
  CurveCoefs<Covering<kQuad, Mono::kWidest>> curves_;
  GroupCoefs<V> groups_;
  GroupState<V> group_state_;
  V rate_;  // weight per quad of ranges and makeup
  ReadoutLanes<Mono> readouts_;
  const Dyn_SCoefsBlock& coefs_;
  float* peaks_;
  V input_peak_, output_peak_;
};

}  // namespace channelstrip
