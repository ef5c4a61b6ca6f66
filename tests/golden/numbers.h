// Numbers for the golden programme: integers drawn from a seed, scaled by powers of two. Nothing is
// rounded on the way, so that every compiler and processor makes the same ones.

#pragma once

#include <stdint.h>

namespace channelstrip::golden {

class Numbers {
 public:
  explicit Numbers(uint64_t seed) : state_(seed) {}

  // From low to high, both included.
  int32_t integer(int32_t low, int32_t high) {
    const auto count = static_cast<uint64_t>(int64_t{high} - low + 1);
    return static_cast<int32_t>(low + static_cast<int64_t>((random() >> 32) * count >> 32));
  }
  bool one_in(int32_t n) { return integer(1, n) == 1; }

  // A multiple of 1/65536 from low to high, both within 255.
  float real(int32_t low, int32_t high) {
    return static_cast<float>(integer(low * 65536, high * 65536)) * 0x1p-16f;
  }
  // Above 0 and at most 1, as often small as large.
  float weight() {
    const int32_t numerator = integer(1, 4096);
    return shifted(numerator, -12 - integer(0, 6));
  }
  // Full scale, or up to 2^-down of it.
  float sample(int32_t down) {
    const int32_t numerator = integer(-(1 << 23), 1 << 23);
    return shifted(numerator, -23 - integer(0, down));
  }
  // Of either sign, denormal or a few steps above.
  float tiny() { return of_bits(static_cast<uint32_t>(random() >> 32) & 0x80FFFFFFu); }

  static float not_a_number() { return of_bits(0x7FC00000u); }
  static float infinity() { return of_bits(0x7F800000u); }

 private:
  uint64_t random() {
    state_ += 0x9E3779B97F4A7C15u;
    uint64_t z = (state_ ^ state_ >> 30) * 0xBF58476D1CE4E5B9u;
    z = (z ^ z >> 27) * 0x94D049BB133111EBu;
    return z ^ z >> 31;
  }
  static float of_bits(uint32_t bits) {
    float x;
    __builtin_memcpy(&x, &bits, sizeof x);
    return x;
  }
  static float shifted(int32_t x, int32_t exponent) {
    return static_cast<float>(x) * of_bits(static_cast<uint32_t>(127 + exponent) << 23);
  }

  uint64_t state_;
};

}  // namespace channelstrip::golden
