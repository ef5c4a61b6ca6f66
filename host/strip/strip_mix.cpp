#include "strip_mix.h"

#include <algorithm>
#include <cmath>

namespace channelstrip::host {
namespace {

// A glide this near its target ends: 120 dB below full scale nobody hears the last step.
constexpr double kNear = 1e-6;

std::size_t whole_blocks(std::size_t frames) {
  return (frames + 15) / 16 * 16;
}

float mixed(float dry, float wet, float mix) {
  const float both = (1 - mix) * dry + mix * wet;
  return mix == 0 ? dry : mix == 1 ? wet : both;
}

}  // namespace

void Glide::next(std::span<float> values) {
  std::size_t i = 0;
  for (; i < values.size() && value_ != target_; ++i) {
    value_ += weight_ * (target_ - value_);
    if (std::abs(target_ - value_) < kNear) value_ = target_;
    values[i] = static_cast<float>(value_);
  }
  std::ranges::fill(values.subspan(i), static_cast<float>(value_));
}

StripMix::StripMix(const MixCoefficients& coefficients, std::size_t inputs, std::size_t channels,
                   std::size_t frames)
    : gain_in_(coefficients.gain_in),
      gain_out_(coefficients.gain_out),
      mix_(coefficients.mix),
      bypass_(coefficients.bypass),
      channels_(channels),
      frames_(whole_blocks(frames)),
      trimmed_(channels * frames_),
      gains_(frames_),
      mixes_(frames_),
      strip_inputs_(inputs),
      output_peak_(channels) {}

void StripMix::set(const MixCoefficients& coefficients) {
  gain_in_.set(coefficients.gain_in, coefficients.weight);
  gain_out_.set(coefficients.gain_out, coefficients.weight);
  mix_.set(coefficients.mix, coefficients.weight);
  bypass_ = coefficients.bypass;
}

std::span<const float* const> StripMix::enter(std::span<const float* const> inputs,
                                              std::size_t frames) {
  const auto gains = std::span(gains_).first(whole_blocks(frames));
  gain_in_.next(gains);
  std::ranges::copy(inputs, strip_inputs_.begin());
  for (std::size_t c = 0; c < channels_; ++c) {
    float* const x = trimmed_.data() + c * frames_;
    for (std::size_t i = 0; i < gains.size(); ++i) x[i] = gains[i] * inputs[c][i];
    strip_inputs_[c] = x;
  }
  return strip_inputs_;
}

void StripMix::leave(std::span<const float* const> inputs, std::span<float* const> outputs,
                     std::size_t frames) {
  const auto gains = std::span(gains_).first(whole_blocks(frames));
  const auto mixes = std::span(mixes_).first(gains.size());
  gain_out_.next(gains);
  mix_.next(mixes);
  for (std::size_t c = 0; c < channels_; ++c) {
    const float* const x = strip_inputs_[c];
    float* const y = outputs[c];
    float peak = output_peak_[c];
    for (std::size_t i = 0; i < gains.size(); ++i) {
      y[i] = bypass_ ? inputs[c][i] : gains[i] * mixed(x[i], y[i], mixes[i]);
      peak = std::max(peak, std::abs(y[i]));
    }
    output_peak_[c] = peak;
  }
}

void StripMix::reset_meters() {
  std::ranges::fill(output_peak_, 0.0f);
}

}  // namespace channelstrip::host
