#include "strip_stream.h"

#include <algorithm>

#include "../denormals.h"

namespace channelstrip::host {

StripStream::StripStream(AlgEntry_16_Stem* entry_point, const StemFormat& format,
                         const StripCoefficients& coefficients)
    : entry_point_(entry_point),
      instance_(format, coefficients),
      channels_(static_cast<std::size_t>(format.channels)),
      inputs_(channels_),
      outputs_(channels_) {
  for (const Buffer& buffer : inputs_) input_pointers_.push_back(buffer.data());
  for (Buffer& buffer : outputs_) output_pointers_.push_back(buffer.data());
  meters_.input_peak.resize(channels_);
  meters_.output_peak.resize(channels_);
  meters_.least_gain.assign(channels_, 1.0f);
}

void StripStream::process(std::span<const float> frames, std::vector<float>& output) {
  for (std::size_t i = 0; i < frames.size(); i += channels_) {
    for (std::size_t c = 0; c < channels_; ++c) inputs_[c][pending_] = frames[i + c];
    if (++pending_ == kPeriod) run(output);
  }
}

void StripStream::finish(std::vector<float>& output) {
  if (pending_ == 0) return;
  for (Buffer& buffer : inputs_) std::fill(buffer.begin() + pending_, buffer.end(), 0.0f);
  run(output);
}

void StripStream::run(std::vector<float>& output) {
  const SChannelStrip_Alg_Context* context = instance_.prepare(
      input_pointers_.data(), output_pointers_.data(), static_cast<int>(pending_));
  {
    const FlushDenormals flush;
    entry_point_(&context, &context + 1);
  }
  read_meters();
  for (std::size_t i = 0; i < pending_; ++i) {
    for (const Buffer& buffer : outputs_) output.push_back(buffer[i]);
  }
  pending_ = 0;
}

// The library keeps the greatest gain since the last reset. Reset every period, the least of these
// is a reduction that lasted for a whole period.
void StripStream::read_meters() {
  const std::span readouts = instance_.dynamics_readouts();
  const std::span gains = readouts.subspan(CHANNELSTRIP_METER_CHANNEL_GAIN);
  std::ranges::copy(instance_.input_peaks(), meters_.input_peak.begin());
  std::ranges::copy(instance_.output_peaks(), meters_.output_peak.begin());
  std::ranges::transform(gains, meters_.least_gain, meters_.least_gain.begin(),
                         [](float gain, float least) { return std::min(gain, least); });
  meters_.compressor_reduction =
      std::max(meters_.compressor_reduction, readouts[CHANNELSTRIP_METER_COMP_REDUCTION]);
  meters_.expander_reduction =
      std::max(meters_.expander_reduction, readouts[CHANNELSTRIP_METER_EXP_REDUCTION]);
  instance_.reset_dynamics_readouts();
}

}  // namespace channelstrip::host
