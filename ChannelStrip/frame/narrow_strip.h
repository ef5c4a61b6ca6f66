// One mono or stereo instance by itself, for the length of a call. wide_strip.h, with a lane per
// channel, would leave most lanes idle. Here lanes are bands in the equaliser; in the dynamics and
// meters, stages without state process the four samples of a quad at once, stages with state go
// sample by sample, with whatever runs side by side in the lanes.

#pragma once

#include "../dynamics/group_lanes.h"
#include "../dynamics/narrow_detector.h"
#include "../dynamics/paired_terms.h"
#include "../dynamics/readout_lanes.h"
#include "../eq/eq_cascade.h"
#include "../meters/output_meters.h"
#include "context.h"

namespace channelstrip {

template <int Channels>
class NarrowStrip {
 public:
  CHANNELSTRIP_INLINE NarrowStrip(const SChannelStrip_Alg_Context* const* strip, int32_t quads)
      : strip_(**strip),
        quads_(quads),
        eq_(**strip, quads, kGains + 1),
        detector_(**strip),
        links_(strip),
        readouts_(strip, links_),
        coefs_(*(*strip)->dynCoefs) {
    load_curve_coefs<Alone>(curves_, strip);
    load_group_coefs<Alone>(groups_, strip);
    load_group_states<Alone>(group_state_, strip, links_);
    terms_.load(groups_, group_state_);
    rate_ = broadcast<V>((*strip)->dynState[0].dezipRate);
    for (int c = 0; c < Channels; ++c) {
      inputs_[c] = strip_.inputs[c];
      outputs_[c] = strip_.outputs[c];
      input_peaks_[c] = broadcast<V>((*strip_.meterOutputs)[c]);
      output_peaks_[c] = broadcast<V>((*strip_.meterOutputs)[Channels + c]);
    }
  }

  CHANNELSTRIP_INLINE void process() {
    // Bands may end after the last quad has left. With eight bands in all the lag is at most eight
    // quads, and only calls of eight or more come here.
    const int32_t lag = key_lag() + kGains + eq_.spread(1);
    turns<false>(0, lag);
    turns<true>(lag, quads_);
    turns<false>(quads_, quads_ + lag);
  }

  CHANNELSTRIP_INLINE void store() {
    const SChannelStrip_Alg_Context* const strips[] = {&strip_};
    eq_.store_to(strip_);
    terms_.store(group_state_);
    store_group_states<Alone>(strips, links_, group_state_);
    detector_.store(strip_.dynState);
    readouts_.store();
    for (int c = 0; c < Channels; ++c) {
      (*strip_.meterOutputs)[c] = greatest(input_peaks_[c]);
      (*strip_.meterOutputs)[Channels + c] = greatest(output_peaks_[c]);
    }
  }

 private:
  using Alone = Layout<Channels, 1, 1>;
  using V = Lanes<kQuad>;

  // How many quads these stages lag behind the key filter. The equaliser takes up gains at once.
  static constexpr int kTargets = 2, kSmooth = 3, kGains = 4;
  static constexpr int kPassing = 8;  // a power of two above leave_lag

  // How many quads the key filter lags behind the input, and the output behind the key filter.
  CHANNELSTRIP_INLINE int32_t key_lag() const { return eq_.delay(0) + 1; }
  CHANNELSTRIP_INLINE int32_t leave_lag() const { return kGains + eq_.delay(1); }

  // A quad on its way through the dynamics. The size is a power of two, which makes it quick to
  // find one by its number.
  struct alignas(128) Passing {
    V audio[Channels], detection[Channels];
    GainQuad<V, 1> gain;
  };

  CHANNELSTRIP_INLINE Passing& passing(int32_t q) {
    return passing_[static_cast<uint32_t>(q) % kPassing];
  }

  // The stages are pipelined: in one turn each works on another quad, so that the dependency chain
  // of one from sample to sample overlaps with the arithmetic of the others. Full: every stage has
  // a quad of the call; otherwise the call may not have begun or have ended for it.
  template <bool Full>
  void turns(int32_t begin, int32_t end) {
    const int32_t quads = quads_, key_lag = this->key_lag(), leave_lag = this->leave_lag();
    for (int32_t q = begin - key_lag; q < end - key_lag; ++q) {
      const auto in_call = [=](int32_t number) {
        return Full || static_cast<uint32_t>(number) < static_cast<uint32_t>(quads);
      };
      if (in_call(q - kGains)) find_gains(passing(q - kGains).gain);
      if (in_call(q - kSmooth)) {
        terms_.smooth(groups_, group_state_, rate_, passing(q - kSmooth).gain);
      }
      eq_.glide_before(q + key_lag);
      if (in_call(q - kTargets)) find_targets(curves_, passing(q - kTargets).gain);
      if (in_call(q) || in_call(q - 1)) detect<Full>(q);
      V before[Channels], after[Channels];
      for (int c = 0; c < Channels; ++c) {
        before[c] = in_call(q + key_lag) ? input(c, q + key_lag) : V{};
        after[c] = in_call(q - kGains) ? gained(c, passing(q - kGains)) : V{};
      }
      eq_.template take<Full>(q + key_lag, before, after);
      if (in_call(q - leave_lag)) leave(q - leave_lag);
    }
  }

  CHANNELSTRIP_INLINE V input(int channel, int32_t q) const {
    return load<V>(inputs_[channel] + q * kQuad);
  }

  // Filters the keys of quad q and detects the levels of the quad before it.
  template <bool Full>
  CHANNELSTRIP_INLINE void detect(int32_t q) {
    Passing& quad = passing(q);
    Passing& previous = passing(q - 1);
    V detection[Channels], detected;
    for (int c = 0; c < Channels; ++c) {
      quad.audio[c] = eq_.given(0, c);
      detection[c] = previous.detection[c];
    }
    detector_.template detect<Full>(quad.audio, q, quads_, detection, detected);
    for (int c = 0; c < Channels; ++c) quad.detection[c] = detection[c];
    previous.gain.detected.set_row(0, detected);
  }

  CHANNELSTRIP_INLINE V gained(int channel, const Passing& quad) const {
    if (coefs_.keyListen != 0) return quad.detection[channel];
    return quad.audio[channel] * (quad.gain.makeup * quad.gain.gain(0));
  }

  CHANNELSTRIP_INLINE void leave(int32_t q) {
    for (int c = 0; c < Channels; ++c) {
      V y = eq_.given(1, c);
      // Metering comes last: in place, the input is by then the processed audio.
      const V x = outputs_[c] == inputs_[c] ? y : input(c, q);
      if (coefs_.bypass > 0) y = x;
      meter(input_peaks_[c], output_peaks_[c], x, y, broadcast<V>(coefs_.inputMeterGain));
      channelstrip::store(outputs_[c] + q * kQuad, y);
    }
    readouts_.update(passing(q).gain);
  }

  CHANNELSTRIP_INLINE static float greatest(V x) {
    return maximum(maximum(maximum(x[0], x[1]), x[2]), x[3]);
  }

  const SChannelStrip_Alg_Context& strip_;
  const float* inputs_[Channels];
  float* outputs_[Channels];
  int32_t quads_;
  Passing passing_[kPassing];
  EqCascade<Channels> eq_;
  NarrowDetector<Channels> detector_;
  LinkLanes<Alone> links_;
  CurveCoefs<Covering<kQuad>> curves_;
  GroupCoefs<V> groups_;
  GroupState<V> group_state_;
  PairedTerms terms_;
  V rate_;  // weight per quad of ranges and makeup
  ReadoutLanes<Alone> readouts_;
  const Dyn_SCoefsBlock& coefs_;
  V input_peaks_[Channels], output_peaks_[Channels];
};

}  // namespace channelstrip
