// The strip as plain loops: the quickest form found that needs no vector types. Stages that
// remember something from sample to sample run over a block of one channel or link group, with
// their memory in registers; the others are loops that a compiler can vectorise.
//
// Buffers and records don't overlap, but for outputs that replace their own inputs, and no band
// runs in both passes.

#pragma once

#include <ChannelStrip/frame/context.h>

#include "plain_equaliser.h"
#include "plain_group.h"

namespace channelstrip::bench {

template <int Channels, int Groups>
class PlainLoops {
 public:
  explicit PlainLoops(const SChannelStrip_Alg_Context& strip) : strip_(strip), eq_(strip) {
    const int32_t key = *strip.keyInputIndex;
    if (key != 0 && coefs_.keyEnable == 1) key_ = strip.inputs[key];
    for (int& leader : leader_) leader = -1;
    for (int c = Channels - 1; c >= 0; --c) leader_[coefs_.linkGroup[c]] = c;
    for_each_group([&](int g) { groups_[g].load(strip, leader_[g], meters_ + 2 * Channels); });
  }

  void process() {
    for (int64_t at = 0; at < *strip_.sampleCount; at += kBlock) {
      eq_.glide();
      for_each_group([&](int g) {
        for (float& level : levels_[g]) level = 0;
      });
      for (int c = 0; c < Channels; ++c) enter(c, at);
      if constexpr (Channels > 1) for_each_group([&](int g) { detect(g); });
      for_each_group([&](int g) { groups_[g].find_gains(levels_[g], gains_[g]); });
      for (int c = 0; c < Channels; ++c) leave(c, at);
    }
    for_each_group([&](int g) { groups_[g].store(); });
    float* const gains = meters_ + 2 * Channels + CHANNELSTRIP_METER_CHANNEL_GAIN;
    for (int c = 0; c < Channels; ++c) gains[c] = gains[leader_[coefs_.linkGroup[c]]];
  }

 private:
  // Visits the groups in use, in the order of their lowest channels.
  template <typename Visit>
  CHANNELSTRIP_INLINE void for_each_group(Visit visit) {
    for (int c = 0; c < Channels; ++c) {
      const int g = coefs_.linkGroup[c];
      if (leader_[g] == c) visit(g);
    }
  }

  // The pass before the dynamics, the key filter behind it and, of a single channel, the detector.
  void enter(int c, int64_t at) {
    const float* const from = strip_.inputs[c] + at;
    const float* const key = key_ != nullptr ? key_ + at : nullptr;
    Dyn_SState& state = strip_.dynState[c];
    float z1 = state.keyZ1, z2 = state.keyZ2;
    Block& levels = levels_[coefs_.linkGroup[c]];
    PlainGroup& group = groups_[coefs_.linkGroup[c]];
    PlainDetector detector = group.detector();
    const auto source = [&](int i) CHANNELSTRIP_INLINE_LAMBDA { return from[i]; };
    const auto sink = [&](int i, float y) CHANNELSTRIP_INLINE_LAMBDA {
      float detection = key != nullptr ? key[i] : y;
      run_section<1>(coefs_.keyFilter, z1, z2, &detection);
      audio_[c][i] = coefs_.keyListen != 0 ? detection : y;
      levels[i] = maximum(levels[i], magnitude(detection));
      if constexpr (Channels == 1) levels[i] = detector.detect(levels[i]);
    };
    eq_.run(0, c, source, sink);
    if constexpr (Channels == 1) group.set(detector);
    state.keyZ1 = z1;
    state.keyZ2 = z2;
  }

  void detect(int g) {
    PlainDetector detector = groups_[g].detector();
    for (float& level : levels_[g]) level = detector.detect(level);
    groups_[g].set(detector);
  }

  // The pass after the dynamics, meters and bypass. In place, the input that is metered is the
  // processed audio.
  void leave(int c, int64_t at) {
    const float* const from = strip_.inputs[c] + at;
    float* const to = strip_.outputs[c] + at;
    const bool bypass = coefs_.bypass > 0 && from != to, listen = coefs_.keyListen != 0;
    const Block &gains = gains_[coefs_.linkGroup[c]], &audio = audio_[c];
    Block x, y;
    const auto source = [&](int i) CHANNELSTRIP_INLINE_LAMBDA {
      return listen ? audio[i] : audio[i] * gains[i];
    };
    eq_.run(1, c, source, [&](int i, float sample) { y[i] = sample; });
    if (!bypass) for_each_sample([&](int i) { to[i] = y[i]; });
    for_each_sample([&](int i) { x[i] = from[i]; });
    if (bypass) for_each_sample([&](int i) { to[i] = y[i] = x[i]; });
    for_each_sample([&](int i) { x[i] = magnitude(x[i] * coefs_.inputMeterGain); });
    for_each_sample([&](int i) { y[i] = magnitude(y[i]); });
    meters_[c] = maximum(meters_[c], greatest(x));
    meters_[Channels + c] = maximum(meters_[Channels + c], greatest(y));
  }

  const SChannelStrip_Alg_Context& strip_;
  const Dyn_SCoefsBlock& coefs_ = *strip_.dynCoefs;
  float* const meters_ = *strip_.meterOutputs;
  const float* key_ = nullptr;
  int leader_[Groups];  // the lowest channel of each group, or -1
  PlainGroup groups_[Groups];
  PlainEqualiser eq_;
  Block audio_[Channels], levels_[Groups], gains_[Groups];
};

}  // namespace channelstrip::bench
