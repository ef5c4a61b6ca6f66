#include "strip_set.h"

#include <algorithm>
#include <utility>

#include "denormals.h"

namespace channelstrip::host {
namespace {

void scatter(std::span<const float> values, std::span<const std::size_t> places,
             std::vector<float>& all) {
  for (std::size_t i = 0; i < places.size(); ++i) all[places[i]] = values[i];
}

}  // namespace

StripSet::StripSet(const Library& library, const StemFormat& format,
                   const StripCoefficients& coefficients, std::span<const LinkMap> maps)
    : input_peak_(static_cast<std::size_t>(format.channels)),
      output_peak_(input_peak_),
      channel_gain_(input_peak_),
      reading_{
          .input_peak = input_peak_, .output_peak = output_peak_, .channel_gain = channel_gain_} {
  for (SplitStrip& split : split_strip(format, maps)) {
    AlgEntry_16_Stem* const entry_point = library.entry_point(*split.format);
    auto instance = std::make_unique<Instance>(*split.format, coefficients_of(split, coefficients));
    const std::size_t channels = split.channels.size();
    strips_.push_back({.split = std::move(split),
                       .entry_point = entry_point,
                       .instance = std::move(instance),
                       .inputs = std::vector<const float*>(channels + 1),
                       .outputs = std::vector<float*>(channels)});
  }
  contexts_.resize(strips_.size());
}

void StripSet::set_coefficients(const StripCoefficients& coefficients) {
  for (Strip& strip : strips_) {
    strip.instance->set_coefficients(coefficients_of(strip.split, coefficients));
  }
}

void StripSet::process(const float* const* inputs, float* const* outputs, int samples, bool keyed) {
  for (std::size_t i = 0; i < strips_.size(); ++i) {
    Strip& strip = strips_[i];
    const std::vector<std::size_t>& channels = strip.split.channels;
    for (std::size_t c = 0; c < channels.size(); ++c) {
      strip.inputs[c] = inputs[channels[c]];
      strip.outputs[c] = outputs[channels[c]];
    }
    if (keyed) strip.inputs.back() = inputs[input_peak_.size()];
    contexts_[i] =
        strip.instance->prepare(strip.inputs.data(), strip.outputs.data(), samples, keyed);
  }
  const FlushDenormals flush;
  for (std::size_t begin = 0, end = 0; begin < strips_.size(); begin = end) {
    AlgEntry_16_Stem* const entry_point = strips_[begin].entry_point;
    while (end < strips_.size() && strips_[end].entry_point == entry_point) ++end;
    entry_point(contexts_.data() + begin, contexts_.data() + end);
  }
}

const MeterReading& StripSet::read_meters() {
  reading_.gain = reading_.compressor_reduction = reading_.expander_reduction = 0;
  for (const Strip& strip : strips_) {
    const MeterReading part = strip.instance->meters();
    scatter(part.input_peak, strip.split.channels, input_peak_);
    scatter(part.output_peak, strip.split.channels, output_peak_);
    scatter(part.channel_gain, strip.split.channels, channel_gain_);
    if (&strip == strips_.data() || part.gain > reading_.gain) {
      reading_.gain = part.gain;
      reading_.level = part.level;
    }
    reading_.compressor_reduction =
        std::max(reading_.compressor_reduction, part.compressor_reduction);
    reading_.expander_reduction = std::max(reading_.expander_reduction, part.expander_reduction);
  }
  return reading_;
}

void StripSet::reset_meters() {
  for (Strip& strip : strips_) strip.instance->reset_meters();
}

}  // namespace channelstrip::host
