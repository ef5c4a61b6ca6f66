#include "true_peak.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace channelstrip::host {
namespace {

constexpr std::size_t kPiece = 256;             // frames
constexpr int kWidth = 48;                      // of the window, in steps of the interpolation
constexpr float kRounding = 1 + 24 * 0x1p-23f;  // above that of a filter's sum

std::size_t factor_at(double sample_rate) {
  return sample_rate < 96000 ? 4 : sample_rate < 192000 ? 2 : 1;
}

float tap(int step, std::size_t factor) {
  const int centred = step - kWidth / 2;
  const double x = std::numbers::pi * centred / static_cast<double>(factor);
  const double window = 0.5 * (1 - std::cos(2 * std::numbers::pi * step / kWidth));
  return static_cast<float>(std::sin(x) / x * window);
}

// Of many samples side by side, so that compilers need no order of the comparisons.
float highest_magnitude(std::span<const float> samples) {
  std::array<float, 16> lanes = {};
  std::size_t i = 0;
  for (; i + lanes.size() <= samples.size(); i += lanes.size()) {
    for (std::size_t k = 0; k < lanes.size(); ++k) {
      lanes[k] = std::max(lanes[k], std::abs(samples[i + k]));
    }
  }
  for (; i < samples.size(); ++i) lanes[0] = std::max(lanes[0], std::abs(samples[i]));
  return std::ranges::max(lanes);
}

}  // namespace

TruePeakMeter::TruePeakMeter(double sample_rate, std::size_t channels)
    : channels_(channels), reach_(kWidth / factor_at(sample_rate)) {
  const std::size_t factor = factor_at(sample_rate);
  // Phase 0 is the samples themselves.
  for (std::size_t phase = 1; phase < factor; ++phase) {
    std::vector<float>& taps = phases_.emplace_back();
    float sum = 0;
    for (std::size_t step = phase; step < kWidth; step += factor) {
      taps.push_back(tap(static_cast<int>(step), factor));
      sum += std::abs(taps.back());
    }
    most_gain_ = std::max(most_gain_, kRounding * sum);
  }
  history_.assign(channels, std::vector<float>(reach_ - 1));
  samples_.resize(reach_ - 1 + kPiece);
  values_.resize(kPiece);
}

void TruePeakMeter::add(std::span<const float> frames) {
  while (!frames.empty()) {
    const std::span<const float> piece = frames.first(std::min(frames.size(), kPiece * channels_));
    for (std::size_t c = 0; c < channels_; ++c) add_piece(piece, c);
    frames = frames.subspan(piece.size());
  }
}

void TruePeakMeter::add_piece(std::span<const float> frames, std::size_t channel) {
  const std::size_t count = frames.size() / channels_;
  std::vector<float>& history = history_[channel];
  float* const fresh = std::ranges::copy(history, samples_.data()).out;
  for (std::size_t i = 0; i < count; ++i) fresh[i] = frames[i * channels_ + channel];
  const auto samples = std::span(samples_).first(history.size() + count);
  const float highest = highest_magnitude(samples);
  peak_ = std::max(peak_, highest);
  std::ranges::copy(samples.last(history.size()), history.begin());
  if (highest * most_gain_ <= peak_) return;
  // Taken backwards, each filter is one of the others or itself.
  const auto values = std::span(values_).first(count);
  for (const std::vector<float>& taps : phases_) {
    std::ranges::fill(values, 0.0f);
    for (std::size_t t = 0; t < taps.size(); ++t) {
      for (std::size_t i = 0; i < count; ++i) values[i] += taps[t] * samples[i + t];
    }
    peak_ = std::max(peak_, highest_magnitude(values));
  }
}

}  // namespace channelstrip::host
