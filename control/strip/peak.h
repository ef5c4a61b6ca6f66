// How great samples are.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace channelstrip::host {

// How calls would pass eight lanes depends on AVX, and callers are compiled with and without it. So
// every function of them is inlined.
typedef std::int32_t SampleBits __attribute__((vector_size(32)));

[[gnu::always_inline]] inline SampleBits bits_of(const float* samples) {
  SampleBits bits;
  std::memcpy(&bits, samples, sizeof bits);
  return bits;
}

// Joins the bits of `count` samples, a multiple of 16, to `even`.
template <class Join>
[[gnu::always_inline]] inline SampleBits joined(const float* samples, std::size_t count,
                                                SampleBits even, Join join) {
  SampleBits odd = {};
  for (const float* const end = samples + count; samples != end; samples += 16) {
    even = join(even, bits_of(samples));
    odd = join(odd, bits_of(samples + 8));
  }
  return join(even, odd);
}

// Whether there is a bit in any of the lanes.
[[gnu::always_inline]] inline bool is_any(SampleBits lanes) {
  std::array<std::uint64_t, 4> halves;
  std::memcpy(&halves, &lanes, sizeof halves);
  return (halves[0] | halves[1] | halves[2] | halves[3]) != 0;
}

// Finds out at half the work of a peak whether samples are small: below 2 the exponent's highest
// bit is 0.
class LoudLanes {
 public:
  // `count` must be a multiple of 16.
  void see(const float* samples, std::size_t count) {
    bits_ = joined(
        samples, count, bits_,
        [](SampleBits a, SampleBits b) __attribute__((always_inline)) { return a | b; });
  }
  // Whether one was 2 or more, or wasn't a number.
  bool are_any() const { return is_any(bits_ & 0x40000000); }

 private:
  SampleBits bits_ = {};
};

// Collects the greatest magnitude in eight lanes, each for every eighth sample. Magnitudes are kept
// as bits, which order them as floats do; those of NaN lie above those of infinity.
class PeakLanes {
 public:
  // `count` must be a multiple of 16.
  void see(const float* samples, std::size_t count) {
    lanes_ = joined(
        samples, count, lanes_, [](SampleBits a, SampleBits b) __attribute__((always_inline)) {
          return greater(a, b & 0x7fffffff);
        });
  }
  void see(const PeakLanes& other) { lanes_ = greater(lanes_, other.lanes_); }

  // Whether one is greater than `limit`, which is above 0, or isn't a number.
  bool exceed(float limit) const { return is_any(lanes_ > std::bit_cast<std::int32_t>(limit)); }

  float peak() const {
    std::int32_t greatest = 0;
    for (std::size_t i = 0; i < 8; ++i) greatest = std::max(greatest, lanes_[i]);
    return std::bit_cast<float>(greatest);
  }

 private:
  [[gnu::always_inline]] static SampleBits greater(SampleBits a, SampleBits b) {
    return a > b ? a : b;
  }

  SampleBits lanes_ = {};
};

}  // namespace channelstrip::host
