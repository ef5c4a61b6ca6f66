#include "signal_analysis.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace channelstrip::host {
namespace {

// The highest value of the sample type, 1 where it isn't an integer.
float highest_value(const AudioFormat& format) {
  const int bits = integer_bits(format);
  return static_cast<float>(bits > 0 ? 1 - std::ldexp(1.0, 1 - bits) : 1.0);
}

}  // namespace

SignalAnalysis::SignalAnalysis(const AudioFormat& format, const ChannelLayout& layout,
                               const std::vector<Part>& parts)
    : full_scale_(highest_value(format)),
      buffers_(layout.labels.size()),
      channels_(layout.labels.size()),
      loudness_(format.sample_rate, layout) {
  for (const Part& part : parts) envelopes_.emplace_back(part.channels);
  while (spectra_.size() < channels_.size()) spectra_.emplace_back(format.sample_rate);
}

void SignalAnalysis::add(std::span<const float> frames) {
  if (frames.empty()) return;
  for (std::size_t c = 0; c < channels_.size(); ++c) {
    std::vector<float>& samples = buffers_[c];
    samples.resize(frames.size() / channels_.size());
    for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = frames[i * channels_.size() + c];
    const float peak = extremes_of(samples).magnitude();
    channels_[c].peak = std::max(channels_[c].peak, peak);
    if (peak >= full_scale_) {
      channels_[c].at_full_scale += std::ranges::count_if(
          samples, [&](float sample) { return std::abs(sample) >= full_scale_; });
    }
    spectra_[c].add(samples);
  }
  for (Envelope& envelope : envelopes_) envelope.add(buffers_);
  loudness_.add(frames);
}

std::vector<BandLevel> SignalAnalysis::levels(const Part& part) const {
  std::vector<double> power = spectra_[part.channels.front()].power();
  for (const std::size_t channel : std::span(part.channels).subspan(1)) {
    std::ranges::transform(power, spectra_[channel].power(), power.begin(), std::plus());
  }
  for (double& bin : power) bin /= static_cast<double>(part.channels.size());
  return band_levels(power, spectra_.front().bin_width());
}

}  // namespace channelstrip::host
