#include "strip.h"

namespace channelstrip::bench {

StripProcessor::StripProcessor(const host::Library& library, const host::Preset& preset,
                               const host::StemFormat& format, double sample_rate,
                               int samples_per_call)
    : entry_point_(library.entry_point(format)),
      instance_(format,
                host::design_strip(preset.settings, sample_rate, host::default_layout(format))),
      samples_per_call_(samples_per_call),
      outputs_(static_cast<std::size_t>(format.channels),
               std::vector<float>(static_cast<std::size_t>(samples_per_call))) {
  for (auto& output : outputs_) output_pointers_.push_back(output.data());
}

void StripProcessor::process(const float* const* inputs) {
  const SChannelStrip_Alg_Context* const contexts[] = {
      instance_.prepare(inputs, output_pointers_.data(), samples_per_call_)};
  entry_point_(contexts, contexts + 1);
}

}  // namespace channelstrip::bench
