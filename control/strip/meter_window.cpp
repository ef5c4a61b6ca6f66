#include "meter_window.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace channelstrip::host {

void MeterWindow::see_outputs(const float* const* outputs, std::size_t samples,
                              const Engine& engine) {
  for (std::size_t c = 0; c < channels_; ++c) {
    float greatest = 0;
    if (is_direct_) {
      greatest = engine.output_peak(c);
    } else {
      PeakLanes lanes;
      lanes.see(outputs[c], samples);
      greatest = lanes.peak();
      meters_.output_peak[c] = std::max(meters_.output_peak[c], greatest);
    }
    if (greatest <= 1) continue;
    meters_.overs[c] += static_cast<std::uint64_t>(std::count_if(
        outputs[c], outputs[c] + samples, [](float sample) { return std::abs(sample) > 1; }));
  }
}

void MeterWindow::read(Engine& engine) {
  if (unread_ == 0) return;
  const EngineMeters seen = engine.read_meters();
  const float gain = engine.input_meter_gain();
  meters_.samples += std::exchange(unread_, 0);
  for (std::size_t c = 0; c < channels_; ++c) {
    const float input =
        is_in_place_ ? gain * std::exchange(input_[c], {}).peak() : seen.input_peak[c];
    meters_.input_peak[c] = std::max(meters_.input_peak[c], input);
    if (is_direct_) {
      meters_.output_peak[c] = std::max(meters_.output_peak[c], seen.output_peak[c]);
    }
    meters_.greatest_gain[c] = std::max(meters_.greatest_gain[c], seen.channel_gain[c]);
    window_gain_[c] = std::max(window_gain_[c], seen.channel_gain[c]);
    const Dyn_SState& state = engine.group_state(c);
    meters_.compressor_gain[c] = state.compGain;
    meters_.expander_gain[c] = state.expGain;
    meters_.detector_level[c] = engine.follows_peaks() ? state.peakLevel : state.smoothLevel;
  }
  if (seen.gain > meters_.gain) {
    meters_.gain = seen.gain;
    meters_.level = seen.level;
  }
  meters_.compressor_reduction = std::max(meters_.compressor_reduction, seen.compressor_reduction);
  meters_.expander_reduction = std::max(meters_.expander_reduction, seen.expander_reduction);
}

void MeterWindow::end(Engine& engine) {
  if (samples_ == 0) return;
  read(engine);
  for (std::size_t c = 0; c < channels_; ++c) {
    meters_.least_gain[c] = std::min(meters_.least_gain[c], window_gain_[c]);
  }
  window_gain_ = {};
  samples_ = 0;
  has_news_ = true;
}

void MeterWindow::clear() {
  has_news_ = false;
  meters_ = {.compressor_gain = meters_.compressor_gain,
             .expander_gain = meters_.expander_gain,
             .detector_level = meters_.detector_level};
}

}  // namespace channelstrip::host
