// The buffers of a strip, with guards before and behind each.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace channelstrip::test {

class StripBuffers {
 public:
  static constexpr std::size_t kChannels = 8, kMostFrames = 300;
  static constexpr std::size_t kKey = kChannels, kFirstOutput = kChannels + 1;
  static constexpr std::size_t kBuffers = kFirstOutput + kChannels;

  // Input or output `buffer`, which begins at any of the places that a float may have.
  float* at(std::size_t buffer) { return samples_.data() + buffer * kStride + kGuard; }
  std::span<float> all(std::size_t buffer) { return {at(buffer), kMostFrames}; }

  // Remembers all as it is.
  void remember() { before_ = samples_; }

  // Whether nothing has changed since but `frames` samples of the buffers written to.
  bool differ_only_in(std::span<float* const> written, std::size_t frames) const {
    for (std::size_t i = 0; i < samples_.size(); ++i) {
      const float* const place = samples_.data() + i;
      const bool is_written = std::ranges::any_of(
          written, [=](const float* to) { return place >= to && place < to + frames; });
      if (!is_written &&
          std::bit_cast<std::uint32_t>(samples_[i]) != std::bit_cast<std::uint32_t>(before_[i])) {
        return false;
      }
    }
    return true;
  }

 private:
  static constexpr std::size_t kGuard = 19, kStride = kMostFrames + 2 * kGuard;

  std::vector<float> samples_ = std::vector<float>(kBuffers * kStride, 0.125f);
  std::vector<float> before_;
};

inline bool are_finite(const float* samples, std::size_t count) {
  return std::all_of(samples, samples + count, [](float x) { return std::isfinite(x); });
}

}  // namespace channelstrip::test
