// What the outputs of a call share with what it reads.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "engine.h"

namespace channelstrip::host {

enum class Sharing : std::uint8_t {
  kNothing,
  kInputs,  // an output is its own channel's input, and none is anything else
  kCrossed  // an output is the key or another channel's input
};

// Finds it out anew only for other buffers than the last: most hosts have the same in every call,
// and comparing all with all would take longer than looking at the samples.
class BufferSharing {
 public:
  explicit BufferSharing(std::size_t channels) : channels_(channels) {}

  Sharing of(const float* const* inputs, const float* key, float* const* outputs) {
    bool is_known = key == key_;
    for (std::size_t c = 0; c < channels_; ++c) {
      is_known &= inputs[c] == buffers_[c].input && outputs[c] == buffers_[c].output;
    }
    if (is_known) return sharing_;
    key_ = key;
    for (std::size_t c = 0; c < channels_; ++c) buffers_[c] = {inputs[c], outputs[c]};
    return sharing_ = found();
  }

 private:
  Sharing found() const {
    Sharing sharing = Sharing::kNothing;
    for (std::size_t c = 0; c < channels_; ++c) {
      if (buffers_[c].output == key_) return Sharing::kCrossed;
      for (std::size_t i = 0; i < channels_; ++i) {
        if (buffers_[c].output != buffers_[i].input) continue;
        if (i != c) return Sharing::kCrossed;
        sharing = Sharing::kInputs;
      }
    }
    return sharing;
  }

  struct Buffers {
    const float* input;
    const float* output;
  };

  std::size_t channels_;
  Sharing sharing_ = Sharing::kCrossed;
  const float* key_ = nullptr;
  std::array<Buffers, kMostChannels> buffers_ = {};
};

}  // namespace channelstrip::host
