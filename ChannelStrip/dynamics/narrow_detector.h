// Detection of one strip with few channels and one link group, for the length of a call: a lane for
// every channel's key filter and one for the detector, a quad behind them, so that all filters
// together take the steps of one.

#pragma once

#include "../lanes/transpose.h"
#include "gain_computer.h"

namespace channelstrip {

template <int Channels>
class NarrowDetector {
 public:
  using V = Lanes<kQuad>;

  CHANNELSTRIP_INLINE explicit NarrowDetector(const SChannelStrip_Alg_Context& strip)
      : key_(key_of(strip)) {
    const Dyn_SCoefsBlock& coefs = *strip.dynCoefs;
    const Dyn_SState* const states = strip.dynState;
    for (int i = 0; i < 5; ++i) {
      filters_[i] = lanes(coefs.detectorFilter[i], [&](int) { return coefs.keyFilter[i]; });
    }
    z1_ = lanes(states->detZ1, [&](int channel) { return states[channel].keyZ1; });
    z2_ = lanes(states->detZ2, [&](int channel) { return states[channel].keyZ2; });
    peak_ = broadcast<V>(states->peakLevel);
    smooth_ = broadcast<V>(states->smoothLevel);
    peak_decay_ = broadcast<V>(coefs.peakDecay);
    const int32_t smoothed = detects_smoothed(coefs) ? -1 : 0;
    gives_filtered_ = lanes(smoothed, [](int) { return -1; });
  }

  // `detection`: in, the channels' detection signals for the quad before; out, for quad q of
  // `audio` or the key. `detected`: the levels of the quad before. AllAtWork: both quads are of the
  // call, which has `quads`.
  template <bool AllAtWork>
  CHANNELSTRIP_INLINE void detect(const V (&audio)[Channels], int32_t q, int32_t quads,
                                  V (&detection)[Channels], V& detected) {
    V levels{};
    for (const V& signal : detection) levels = maximum(levels, magnitude(signal));
    V steps[kQuad];
    for (int lane = 0; lane < kQuad; ++lane) {
      const int channel = lane % (Channels + 1);
      steps[lane] = channel == Channels ? levels : audio[channel];
    }
    if (key_ != nullptr && (AllAtWork || q < quads)) {
      const V key = load<V>(key_ + q * kQuad);
      for (int channel = 0; channel < Channels; ++channel) steps[channel] = key;
    }
    transpose(steps);
    V z1 = z1_, z2 = z2_, peak = peak_, smooth = smooth_;
    for (V& x : steps) {
      peak = peak_detector(peak, x, peak_decay_);
      smooth = x;
      run_section<1>(filters_, z1, z2, &smooth);
      x = select(gives_filtered_, smooth, peak);
    }
    transpose(steps);
    for (int channel = 0; channel < Channels; ++channel) detection[channel] = steps[channel];
    detected = steps[Channels];
    if constexpr (!AllAtWork) {
      const int32_t before_end = q < quads ? -1 : 0;
      const MaskOf<V> at_work = lanes(q > 0 ? -1 : 0, [=](int) { return before_end; });
      z1 = select(at_work, z1, z1_);
      z2 = select(at_work, z2, z2_);
      peak = select(at_work, peak, peak_);
      smooth = select(at_work, smooth, smooth_);
    }
    z1_ = z1;
    z2_ = z2;
    peak_ = peak;
    smooth_ = smooth;
  }

  CHANNELSTRIP_INLINE void store(Dyn_SState* states) const {
    for (int channel = 0; channel < Channels; ++channel) {
      states[channel].keyZ1 = z1_[channel];
      states[channel].keyZ2 = z2_[channel];
    }
    states->detZ1 = z1_[Channels];
    states->detZ2 = z2_[Channels];
    states->peakLevel = peak_[Channels];
    states->smoothLevel = smooth_[Channels];
  }

 private:
  static_assert(Channels < kQuad);

  // The channels' lanes, and one for the detector. What other lanes hold is of no account.
  template <typename T, typename OfChannel>
  CHANNELSTRIP_INLINE static auto lanes(T detector, OfChannel of_channel) {
    typedef T Filled __attribute__((vector_size(sizeof(V))));
    return fill<Filled>([&](int lane) { return lane < Channels ? of_channel(lane) : detector; });
  }

  CHANNELSTRIP_INLINE static const float* key_of(const SChannelStrip_Alg_Context& strip) {
    const int32_t index = *strip.keyInputIndex;
    return index != 0 && strip.dynCoefs->keyEnable == 1 ? strip.inputs[index] : nullptr;
  }

  const float* key_;  // or null, where the audio itself is detected
  V filters_[5], z1_, z2_, peak_, smooth_, peak_decay_;
  MaskOf<V> gives_filtered_;  // in the detector's lane only if its mode says so
};

}  // namespace channelstrip
