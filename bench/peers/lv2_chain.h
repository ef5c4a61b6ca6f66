// LV2 plugins in a row.

#pragma once

#include <vector>

#include "lv2_plugin.h"
#include "processor.h"

namespace channelstrip::bench {

struct ChainLink {
  Stage stage;
  PluginSettings plugin;
};

class Lv2Chain : public Processor {
 public:
  // Throws std::runtime_error as Lv2Plugin does.
  Lv2Chain(LilvWorld* world, const std::vector<ChainLink>& links, double sample_rate, int channels,
           int samples_per_call);

  void process(const float* const* inputs) override;
  const std::vector<Stage>& stages() const override { return stages_; }
  std::string name_of(std::size_t stage) const override { return plugins_[stage].name(); }
  const float* output(std::size_t stage, int channel) const override {
    return plugins_[stage].output(channel);
  }
  double latency() const override;

 private:
  int channels_;
  std::vector<Stage> stages_;
  std::vector<Lv2Plugin> plugins_;
};

}  // namespace channelstrip::bench
