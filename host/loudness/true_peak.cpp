#include "true_peak.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace channelstrip::host {
namespace {

constexpr int kTaps = 49;
constexpr double kRounding = 1 + 0x1p-22;  // above that of a value in single precision

// Frames whose values between stay in the first cache.
constexpr std::size_t kFramesAtOnce = 256;

int oversampling(double sample_rate) {
  return sample_rate < 96000 ? 4 : sample_rate < 192000 ? 2 : 1;
}

double coefficient(int tap, int factor) {
  const double angle = (tap - (kTaps - 1) / 2.0) * std::numbers::pi / factor;
  const double window = 0.5 * (1 - std::cos(2 * std::numbers::pi * tap / (kTaps - 1)));
  return std::sin(angle) / angle * window;
}

// One output for every sample that has Taps - 1 others before it, summed from the newest to the
// oldest of them. The number of taps as a constant lets the compiler compute many outputs at once.
template <std::size_t Taps>
void filter(const std::vector<double>& coefficients, const std::vector<double>& samples,
            std::vector<float>& outputs) {
  outputs.resize(samples.size() - (Taps - 1));
  float* __restrict const output = outputs.data();
  const double* const input = samples.data();
  const double* const weights = coefficients.data();
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    double sum = 0;
    for (std::size_t tap = 0; tap < Taps; ++tap) sum += input[i + Taps - 1 - tap] * weights[tap];
    output[i] = static_cast<float>(sum);
  }
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

double highest_magnitude(std::span<const double> samples) {
  double highest = 0;
  for (const double sample : samples) highest = std::max(highest, std::abs(sample));
  return highest;
}

}  // namespace

// The phase of tap 0 gives the samples themselves.
TruePeakMeter::TruePeakMeter(double sample_rate, std::size_t channels) : channels_(channels) {
  const int factor = oversampling(sample_rate);
  for (int phase = 1; phase < factor; ++phase) {
    std::vector<double>& coefficients = phases_.emplace_back();
    double sum = 0;
    for (int tap = phase; tap < kTaps; tap += factor) {
      coefficients.push_back(coefficient(tap, factor));
      sum += std::abs(coefficients.back());
    }
    most_gain_ = std::max(most_gain_, kRounding * sum);
  }
  if (phases_.empty()) return;
  for (Channel& channel : channels_) channel.samples.resize(phases_.front().size() - 1);
}

void TruePeakMeter::add(std::span<const float> frames) {
  while (!frames.empty()) {
    const auto piece = frames.first(std::min(frames.size(), kFramesAtOnce * channels_.size()));
    for (std::size_t c = 0; c < channels_.size(); ++c) add_piece(piece, c);
    frames = frames.subspan(piece.size());
  }
}

void TruePeakMeter::add_piece(std::span<const float> frames, std::size_t channel) {
  auto& [samples, peak] = channels_[channel];
  piece_.resize(frames.size() / channels_.size());
  for (std::size_t i = 0; i < piece_.size(); ++i) {
    piece_[i] = frames[i * channels_.size() + channel];
  }
  const float highest = highest_magnitude(std::span<const float>(piece_));
  peak = std::max(peak, highest);
  const double before = highest_magnitude(std::span<const double>(samples));
  samples.insert(samples.end(), piece_.begin(), piece_.end());
  if (std::max(before, static_cast<double>(highest)) * most_gain_ > static_cast<double>(peak)) {
    for (const auto& phase : phases_) {
      phase.size() == 12 ? filter<12>(phase, samples, between_)
                         : filter<24>(phase, samples, between_);
      peak = std::max(peak, highest_magnitude(std::span<const float>(between_)));
    }
  }
  samples.erase(samples.begin(), samples.begin() + std::ssize(piece_));
}

double TruePeakMeter::peak() const {
  return static_cast<double>(std::ranges::max(channels_, {}, &Channel::peak).peak);
}

}  // namespace channelstrip::host
