#include "instance.h"

#include <algorithm>

namespace channelstrip::host {

Instance::Instance(const StemFormat& format, const StripCoefficients& coefficients)
    : channels_(static_cast<std::size_t>(format.channels)),
      eq_state_(channels_),
      dyn_state_(channels_),
      meters_(3 * channels_ + CHANNELSTRIP_METER_CHANNEL_GAIN),
      meter_pointer_(meters_.data()) {
  set_coefficients(coefficients);

  std::ranges::copy(coefficients_.eq.targetCoefs, eq_dezip_.coefs);
  std::ranges::copy(coefficients_.eq.targetCoefs, eq_dezip_.smoothedCoefs);
  for (Dyn_SState& state : dyn_state_) {
    state.curMakeupGain = coefficients_.dynamics.makeupGain;
    state.curCompRange = coefficients_.dynamics.compRange;
    state.curExpRange = coefficients_.dynamics.expRange;
    state.gateOpen = 1;
  }

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
  coefficients_ = coefficients;
  dyn_state_.front().dezipRate = coefficients.dezip_rate;
}

const SChannelStrip_Alg_Context* Instance::prepare(const float* const* inputs,
                                                   float* const* outputs, int samples) {
  context_.inputs = inputs;
  context_.outputs = outputs;
  sample_count_ = samples;
  return &context_;
}

std::span<const float> Instance::input_peaks() const {
  return std::span(meters_).first(channels_);
}

std::span<const float> Instance::output_peaks() const {
  return std::span(meters_).subspan(channels_, channels_);
}

std::span<const float> Instance::dynamics_readouts() const {
  return std::span(meters_).subspan(2 * channels_);
}

void Instance::reset_dynamics_readouts() {
  std::ranges::fill(std::span(meters_).subspan(2 * channels_), 0.0f);
}

}  // namespace channelstrip::host
