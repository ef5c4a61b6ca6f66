// The peak meters and the bypass in lanes, one per channel, for the length of a call.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/quad.h"
#include "../lanes/records.h"
#include "output_meters.h"

namespace channelstrip {

template <typename Layout>
class MeterLanes {
 public:
  using V = typename Layout::Channel;

  CHANNELSTRIP_INLINE explicit MeterLanes(const SChannelStrip_Alg_Context* const* strips) {
    const auto strip = [&](int lane) -> const SChannelStrip_Alg_Context& {
      return *strips[Layout::strip_of_channel_lane(lane)];
    };
    V switches[4], peaks[4];
    load_switches<Layout>(switches, strips);
    input_gain_ = switches[2];
    bypassed_ = (IntsOf<V>)switches[3] > 0;
    in_place_ = fill_mask<V>([&](int lane) {
      const int channel = Layout::channel_of(lane);
      return strip(lane).outputs[channel] == strip(lane).inputs[channel];
    });
    const auto load_peaks = [&](int first) {
      load_columns(peaks, [&](int lane) {
        return peaks_of(strip(lane)) + first + Layout::channel_of(lane);
      });
      return peaks[0];
    };
    input_peak_ = load_peaks(0);
    output_peak_ = load_peaks(Layout::kChannels);
  }

  // Metering comes last: in place, the input is by then the processed audio.
  CHANNELSTRIP_INLINE void meter(const V (&input)[kQuad], V (&output)[kQuad]) {
    for (int k = 0; k < kQuad; ++k) {
      const V x = select(in_place_, output[k], input[k]);
      output[k] = select(bypassed_, x, output[k]);
      channelstrip::meter(input_peak_, output_peak_, x, output[k], input_gain_);
    }
  }

  CHANNELSTRIP_INLINE void store(const SChannelStrip_Alg_Context* const* strips) const {
    for (int lane = 0; lane < kWidth<V>; ++lane) {
      if (!Layout::is_channel(lane)) continue;
      float* const to = peaks_of(*strips[Layout::strip_of_channel_lane(lane)]);
      to[Layout::channel_of(lane)] = input_peak_[lane];
      to[Layout::kChannels + Layout::channel_of(lane)] = output_peak_[lane];
    }
  }

 private:
  CHANNELSTRIP_INLINE static float* peaks_of(const SChannelStrip_Alg_Context& strip) {
    return *strip.meterOutputs;
  }

  V input_gain_, input_peak_, output_peak_;
  MaskOf<V> bypassed_, in_place_;
};

}  // namespace channelstrip
