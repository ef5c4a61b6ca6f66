#include "lv2_chain.h"

namespace channelstrip::bench {

Lv2Chain::Lv2Chain(LilvWorld* world, const std::vector<ChainLink>& links, double sample_rate,
                   int channels, int samples_per_call)
    : channels_(channels) {
  for (const ChainLink& link : links) {
    stages_.push_back(link.stage);
    plugins_.emplace_back(world, link.plugin, sample_rate, channels, samples_per_call);
  }
  for (std::size_t i = 1; i < plugins_.size(); ++i) {
    for (int c = 0; c < channels; ++c) plugins_[i].connect_input(c, plugins_[i - 1].output(c));
  }
}

void Lv2Chain::process(const float* const* inputs) {
  for (int c = 0; c < channels_; ++c) plugins_.front().connect_input(c, inputs[c]);
  for (Lv2Plugin& plugin : plugins_) plugin.run();
}

double Lv2Chain::latency() const {
  double samples = 0;
  for (const Lv2Plugin& plugin : plugins_) samples += plugin.latency();
  return samples;
}

}  // namespace channelstrip::bench
