// Copies of an instance's buffers in double precision; the outputs are rounded back to float.

#pragma once

#include <ChannelStrip/frame/context.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <vector>

#include "strip_state.h"

namespace channelstrip::model {

// Buffers at one address share one copy; buffers that overlap only in part have separate ones.
class DoubleBuffers {
 public:
  DoubleBuffers(const SChannelStrip_Alg_Context& context, int channels)
      : samples_(static_cast<std::size_t>((*context.sampleCount + 15) / 16 * 16)),
        host_outputs_(context.outputs, context.outputs + channels) {
    for (std::size_t c = 0; c < host_outputs_.size(); ++c) {
      inputs_[c] = copy_of(context.inputs[c]);
      outputs_[c] = copy_of(context.outputs[c]);
    }
    if (*context.keyInputIndex != 0) key_ = copy_of(context.inputs[*context.keyInputIndex]);
  }

  const double* const* inputs() const { return inputs_.data(); }
  double* const* outputs() const { return outputs_.data(); }
  const double* key() const { return key_; }

  void write_outputs() const {
    for (std::size_t c = 0; c < host_outputs_.size(); ++c) {
      std::transform(outputs_[c], outputs_[c] + samples_, host_outputs_[c],
                     [](double sample) { return static_cast<float>(sample); });
    }
  }

 private:
  double* copy_of(const float* buffer) {
    std::vector<double>& copy = copies_[buffer];
    if (copy.empty()) copy.assign(buffer, buffer + samples_);
    return copy.data();
  }

  std::size_t samples_;
  std::vector<float*> host_outputs_;
  std::map<const float*, std::vector<double>> copies_;
  std::array<const double*, kMaxChannels> inputs_{};
  std::array<double*, kMaxChannels> outputs_{};
  const double* key_ = nullptr;
};

}  // namespace channelstrip::model
