// Triples a, b, c that a fused a b + c is hard for, without end and the same on every machine.

#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>

namespace channelstrip::test {

struct Triple {
  float a, b, c;
};

class FusedTriples {
 public:
  enum Kind {
    kAnything,      // any bits
    kNeighbours,    // product and addend of like size
    kShort,         // few significant bits, among which sums are often ties
    kAddendTies,    // the product is about half a unit in the addend's last place
    kProductTies,   // the product is half way between floats, or next to it, the addend tiny
    kDenormals,     // results around the least normal float
    kDenormalTies,  // the same, half way between denormal floats or next to it
    kCancellation,  // the addend takes most of the product away
    kSpecial,       // zeros, infinities, NaN and the ends of the ranges
    kKinds
  };

  explicit FusedTriples(uint64_t seed) : state_(seed) {}

  Triple next(Kind kind) {
    switch (kind) {
      case kNeighbours:
        return {number(-30, 30), number(-30, 30), number(-90, 90)};
      case kShort:
        return {few_bits(-12, 12), few_bits(-12, 12), few_bits(-40, 40)};
      case kAddendTies: {
        const Triple product = near_one();
        const int exponent = integer(-60, 60), shift = integer(-2, 2);
        return {std::ldexp(product.a, shift + 3),
                signed_as(std::ldexp(product.b, exponent - shift)),
                std::ldexp(near_one().a, exponent + 27 + integer(-2, 2) * (integer(0, 3) == 0))};
      }
      case kProductTies: {
        const Triple product = product_tie();
        return {product.a, product.b, signed_as(std::ldexp(few_bits(0, 1), integer(-90, -20)))};
      }
      case kDenormals:
        return {number(-75, -60), number(-75, -60), number(-149, -120)};
      case kDenormalTies: {
        // Units of 2^-149: an odd multiple of a half as product or as part of it.
        const Triple product = integer(0, 1) ? near_one() : product_tie();
        const int down = integer(-80, -70);
        const float b = std::ldexp(product.b, integer(-151, -146) - down);
        return {std::ldexp(product.a, down), signed_as(b), denormal()};
      }
      case kCancellation: {
        const float a = number(-30, 30), b = integer(0, 3) ? number(-30, 30) : number(-110, -90);
        const uint32_t rounded = std::bit_cast<uint32_t>(-(a * b));
        return {a, b, std::bit_cast<float>(rounded + static_cast<uint32_t>(integer(-2, 2)))};
      }
      case kSpecial:
        return {special(), special(), special()};
      default:
        return {word(), word(), word()};
    }
  }

 private:
  uint64_t random() {
    state_ += 0x9E3779B97F4A7C15u;
    uint64_t z = (state_ ^ state_ >> 30) * 0xBF58476D1CE4E5B9u;
    z = (z ^ z >> 27) * 0x94D049BB133111EBu;
    return z ^ z >> 31;
  }
  int integer(int low, int high) {
    const auto count = static_cast<uint64_t>(high - low + 1);
    return low + static_cast<int>((random() >> 32) * count >> 32);
  }
  float word() { return std::bit_cast<float>(static_cast<uint32_t>(random() >> 32)); }
  float signed_as(float x) { return random() >> 63 ? -x : x; }

  // Sign and mantissa are any, the exponent in the range; below -126 it is denormal.
  float number(int low, int high) {
    const auto mantissa = static_cast<float>((random() >> 41) | 0x800000);
    return signed_as(std::ldexp(mantissa, integer(low, high) - 23));
  }
  // A mantissa that is a short run of bits, or two bits far apart, or lacks a few of its last.
  float few_bits(int low, int high) {
    const int last = integer(0, 23), first = integer(0, last);
    uint32_t mantissa = 0x800000u | 1u << first | 1u << last;
    if (integer(0, 1)) mantissa |= (1u << last) - (1u << first);
    if (integer(0, 1)) mantissa &= 0xFFFFFFu << integer(0, 23);
    return signed_as(std::ldexp(static_cast<float>(mantissa), integer(low, high) - 23));
  }
  float denormal() {
    return signed_as(std::bit_cast<float>(static_cast<uint32_t>(random() >> integer(40, 63))));
  }
  // Factors whose product is 1, or 1 up to 2^-22 or a few 2^-46 away from it; c is 0.
  Triple near_one() {
    const auto power = [](int exponent) { return std::ldexp(1.0f, exponent); };
    const int k = integer(1, 23), m = integer(1, 11);
    switch (integer(0, 4)) {
      case 0:
        return {1 + power(-k), 1 - power(-k), 0};
      case 1:
        return {1 + power(-m), 1 - power(-m) + power(-2 * m), 0};
      case 2:
        return {1 - power(-m), 1 + power(-m) + power(-2 * m), 0};
      case 3:
        return {1 + power(-23) * static_cast<float>(integer(-8, 8)), 1, 0};
      default:
        return {1, 1, 0};
    }
  }
  // Factors of 12 and 13 bits whose product has 25, the last of them set; or its neighbours.
  Triple product_tie() {
    const auto a = static_cast<float>(integer(0x801, 0xFFF) | 1);
    const auto b = static_cast<float>(integer(0x1001, 0x1FFF) | 1);
    const float next = integer(0, 3) ? 0.0f : std::ldexp(1.0f, -integer(5, 11));
    return {std::ldexp(a, -11), std::ldexp(b + next, -12), 0};
  }
  float special() {
    constexpr uint32_t kWords[] = {0x00000000, 0x00000001, 0x00000002, 0x00400000, 0x007FFFFF,
                                   0x00800000, 0x00800001, 0x20000000, 0x33800000, 0x34000000,
                                   0x3F7FFFFF, 0x3F800000, 0x3F800001, 0x4B000000, 0x5F7FFFFF,
                                   0x7F7FFFFF, 0x7F800000, 0x7FC00000};
    return signed_as(
        std::bit_cast<float>(kWords[integer(0, static_cast<int>(std::size(kWords)) - 1)]));
  }

  uint64_t state_;
};

}  // namespace channelstrip::test
