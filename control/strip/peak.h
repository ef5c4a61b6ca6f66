// The greatest magnitude of samples.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace channelstrip::host {

// Collects it in eight lanes, each for every eighth sample. Magnitudes are kept as bits, which
// order them as floats do; those of NaN lie above those of infinity.
class PeakLanes {
 public:
  // Not initialised otherwise, as arrays of these are filled on the way.
  static PeakLanes none() {
    PeakLanes lanes;
    lanes.lanes_ = Lanes{};
    return lanes;
  }

  // `count` must be a multiple of 16.
  void see(const float* samples, std::size_t count) {
    Lanes even = lanes_, odd = {};
    const auto see_some = [&](std::size_t some) {  // a constant, for loops that are unrolled
      for (std::size_t i = 0; i < some; i += 16) {
        even = greater(even, magnitudes(samples + i));
        odd = greater(odd, magnitudes(samples + i + 8));
      }
      samples += some;
    };
    for (; count >= 64; count -= 64) see_some(64);
    for (; count > 0; count -= 16) see_some(16);
    lanes_ = greater(even, odd);
  }
  void see(const PeakLanes& other) { lanes_ = greater(lanes_, other.lanes_); }

  // Whether one is greater than `limit`, which is above 0, or isn't a number.
  bool exceed(float limit) const {
    const Lanes above = lanes_ > std::bit_cast<std::int32_t>(limit);
    std::array<std::uint64_t, 4> halves;
    std::memcpy(&halves, &above, sizeof halves);
    return (halves[0] | halves[1] | halves[2] | halves[3]) != 0;
  }

  float peak() const {
    std::int32_t greatest = 0;
    for (std::size_t i = 0; i < 8; ++i) greatest = std::max(greatest, lanes_[i]);
    return std::bit_cast<float>(greatest);
  }

 private:
  typedef std::int32_t Lanes __attribute__((vector_size(32)));
  static Lanes magnitudes(const float* samples) {
    Lanes bits;
    std::memcpy(&bits, samples, sizeof bits);
    return bits & 0x7fffffff;
  }
  static Lanes greater(Lanes a, Lanes b) { return a > b ? a : b; }

  Lanes lanes_;
};

}  // namespace channelstrip::host
