// Level to decibels and decibels to gain.
//
// In float: the table conversions to the bit, written as arithmetic on significand and exponent,
// and their tables, computed when the program starts. In double: the functions that they estimate,
// so that their error can be measured.

#pragma once

#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace channelstrip::model {

struct Tables {
  std::array<float, 513> log2;       // log2(1 + i/512)
  std::array<float, 512> pow2_high;  // 2^(i/512)
  std::array<float, 512> pow2_low;   // 2^((i + 1/2)/2^18)
};

// The float nearest to 1/log10(2).
inline constexpr float kOctavesPerDecade = 0x1.a934fp+1F;

inline Tables make_tables() {
  Tables tables{};
  for (std::size_t i = 0; i < 513; ++i) {
    // Two roundings: of the decimal logarithm, and of the product.
    tables.log2[i] = static_cast<float>(std::log10(1.0 + static_cast<double>(i) / 512.0));
    tables.log2[i] *= kOctavesPerDecade;
  }
  // The two entries that stand one unit in the last place above the rule.
  tables.log2[37] = std::nextafter(tables.log2[37], 1.0F);
  tables.log2[39] = std::nextafter(tables.log2[39], 1.0F);

  for (std::size_t i = 0; i < 512; ++i) {
    const double step = static_cast<double>(i);
    tables.pow2_high[i] = static_cast<float>(std::exp2(step / 512.0));
    tables.pow2_low[i] = static_cast<float>(std::exp2((step + 0.5) / 262144.0));
  }
  return tables;
}

inline const Tables kTables = make_tables();

// One unit in the last place above the float nearest to 20 log10(2).
inline constexpr float kDecibelsPerOctave = 0x1.815184p+2F;
inline constexpr float kFloorDecibels = -140.0F;

// `x` must not be a NaN; its sign is ignored.
inline float fast_log2(float x) {
  const float magnitude = std::fabs(x);
  if (std::isinf(magnitude)) return 128.0F;

  // A denormal's significand has no leading one, but is read as if it had.
  int exponent = -126;
  const float significand = magnitude < FLT_MIN ? 1.0F + std::ldexp(magnitude, 126)
                                                : 2.0F * std::frexp(magnitude, &exponent);
  --exponent;  // for a significand from 1 to 2; frexp's is half of that

  const float position = (significand - 1.0F) * 512.0F;  // exact
  const float whole = std::floor(position);
  const auto index = static_cast<std::size_t>(whole);
  const float here = kTables.log2[index];
  const float next = kTables.log2[index + 1];
  return std::fma(next - here, position - whole, here + static_cast<float>(exponent));
}

inline float level_to_db(float level) {
  return level > 0.0F ? fast_log2(level) * kDecibelsPerOctave : kFloorDecibels;
}

inline double level_to_db(double level) {
  return level > 0.0 ? 20.0 * std::log10(level) : static_cast<double>(kFloorDecibels);
}

// Rounds towards zero and saturates at both limits. A NaN gives the upper limit.
inline int32_t saturating_int(float v) {
  if (v < -0x1p31F) return std::numeric_limits<int32_t>::min();
  if (v < 0x1p31F) return static_cast<int32_t>(v);
  return std::numeric_limits<int32_t>::max();
}

// v is (y + 127) 2^23 for the power 2^y.
inline float fast_pow2_scaled(float v) {
  const auto n = static_cast<uint32_t>(saturating_int(v));
  const uint32_t sign_and_exponent = n / (1U << 23);
  const uint32_t fraction = n % (1U << 23);
  const float power =
      kTables.pow2_high[fraction / 16384] * kTables.pow2_low[fraction / 32 % 512];  // 1 to 2
  const auto mantissa = static_cast<uint32_t>((power - 1.0F) * 0x1p23F);            // exact
  return std::bit_cast<float>(sign_and_exponent * (1U << 23) + mantissa);
}

inline float fast_pow2(float y) {
  return fast_pow2_scaled(std::fma(y, 0x1p23F, 0x1.fcp29F));
}

inline float db_to_gain(float db) {
  return fast_pow2_scaled(std::fma(db, 1393317.625F, 1065353216.0F));
}

inline double db_to_gain(double db) {
  return std::pow(10.0, db / 20.0);
}

}  // namespace channelstrip::model
