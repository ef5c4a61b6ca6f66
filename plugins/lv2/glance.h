// What a small picture shows of a plugin: its controls and reductions, as the audio thread last saw
// them. It writes, others read, and neither waits; a reader may see one value newer than another.

#pragma once

#include <array>
#include <atomic>
#include <cmath>
#include <cstddef>

#include "ports.h"

namespace channelstrip::lv2 {

class Glance {
 public:
  // The parameters and, in the last place, `enabled`.
  static constexpr std::size_t kControls = kPortParameterCount + 1;

  // [audio]
  void set(std::size_t control, float value) {
    controls_[control].store(value, std::memory_order_relaxed);
    has_news_ = true;
  }
  // dB, 0 and above.
  void set_reductions(float compressor, float expander) {
    const auto set_one = [this](std::atomic<float>& held, float value) {
      const float shown = std::round(5 * value) / 5;
      if (held.load(std::memory_order_relaxed) == shown) return;
      held.store(shown, std::memory_order_relaxed);
      has_news_ = true;
    };
    set_one(compressor_, compressor);
    set_one(expander_, expander);
  }
  // Since it was last asked.
  bool has_news() {
    const bool had = has_news_;
    has_news_ = false;
    return had;
  }

  // [any]
  float control(std::size_t control) const {
    return controls_[control].load(std::memory_order_relaxed);
  }
  float compressor() const { return compressor_.load(std::memory_order_relaxed); }
  float expander() const { return expander_.load(std::memory_order_relaxed); }

 private:
  std::array<std::atomic<float>, kControls> controls_ = {};
  std::atomic<float> compressor_{0}, expander_{0};
  bool has_news_ = true;  // the audio thread's
};

}  // namespace channelstrip::lv2
