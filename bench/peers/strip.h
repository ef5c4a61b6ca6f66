// ChannelStrip's full strip, beside which the peers run.

#pragma once

#include <control/library/library.h>
#include <control/preset/preset.h>
#include <control/strip/instance.h>

#include <vector>

#include "processor.h"

namespace channelstrip::bench {

class StripProcessor : public Processor {
 public:
  StripProcessor(const host::Library& library, const host::Preset& preset,
                 const host::StemFormat& format, double sample_rate, int samples_per_call);

  void process(const float* const* inputs) override;
  const std::vector<Stage>& stages() const override { return stages_; }
  std::string name_of(std::size_t) const override { return "ChannelStrip"; }
  const float* output(std::size_t, int channel) const override {
    return outputs_[static_cast<std::size_t>(channel)].data();
  }
  double latency() const override { return 0; }

 private:
  const std::vector<Stage> stages_{Stage::kStrip};
  AlgEntry_16_Stem* entry_point_;
  host::Instance instance_;
  int samples_per_call_;
  std::vector<std::vector<float>> outputs_;
  std::vector<float*> output_pointers_;
};

}  // namespace channelstrip::bench
