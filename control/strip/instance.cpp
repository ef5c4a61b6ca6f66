#include "instance.h"

#include <algorithm>

#include "../design/dynamics_coefficients.h"
#include "link_change.h"

namespace channelstrip::host {

Instance::Instance(const StemFormat& format, const StripCoefficients& coefficients)
    : channels_(static_cast<std::size_t>(format.channels)),
      coefficients_(coefficients),
      eq_state_(channels_),
      dyn_state_(channels_),
      meters_(3 * channels_ + CHANNELSTRIP_METER_CHANNEL_GAIN),
      meter_pointer_(meters_.data()) {
  std::ranges::copy(coefficients_.eq.targetCoefs, eq_dezip_.coefs);
  std::ranges::copy(coefficients_.eq.targetCoefs, eq_dezip_.smoothedCoefs);
  for (Dyn_SState& state : dyn_state_) {
    state.curMakeupGain = coefficients_.dynamics.makeupGain;
    state.curCompRange = coefficients_.dynamics.compRange;
    state.curExpRange = coefficients_.dynamics.expRange;
    state.gateOpen = 1;
  }
  dyn_state_.front().dezipRate = coefficients_.dezip_rate;

  context_ = {.inputs = nullptr,
              .outputs = nullptr,
              .keyInputIndex = &key_input_index_,
              .sampleCount = &sample_count_,
              .dynCoefs = &coefficients_.dynamics,
              .dynState = dyn_state_.data(),
              .eqTargetCoefs = &coefficients_.eq,
              .eqDezipCoefs = &eq_dezip_,
              .eqState = eq_state_.data(),
              .meterOutputs = &meter_pointer_};
}

void Instance::set_coefficients(const StripCoefficients& coefficients) {
  hand_over_gains(dyn_state_, links_of(coefficients_.dynamics), links_of(coefficients.dynamics));
  coefficients_ = coefficients;
  dyn_state_.front().dezipRate = coefficients.dezip_rate;
}

const SChannelStrip_Alg_Context* Instance::prepare(const float* const* inputs,
                                                   float* const* outputs, int samples, bool keyed) {
  context_.inputs = inputs;
  context_.outputs = outputs;
  key_input_index_ = keyed ? static_cast<std::int32_t>(channels_) : 0;
  sample_count_ = samples;
  return &context_;
}

MeterReading Instance::meters() const {
  const std::span all(meters_);
  const std::span readouts = all.subspan(2 * channels_);
  return {.input_peak = all.first(channels_),
          .output_peak = all.subspan(channels_, channels_),
          .level = readouts[CHANNELSTRIP_METER_LEVEL],
          .gain = readouts[CHANNELSTRIP_METER_GAIN],
          .compressor_reduction = readouts[CHANNELSTRIP_METER_COMP_REDUCTION],
          .expander_reduction = readouts[CHANNELSTRIP_METER_EXP_REDUCTION],
          .channel_gain = readouts.subspan(CHANNELSTRIP_METER_CHANNEL_GAIN)};
}

void Instance::reset_meters() {
  std::ranges::fill(meters_, 0.0f);
}

}  // namespace channelstrip::host
