// The logarithm at every float, against its rule in real arithmetic: with floor and powers of two
// where the library masks bits.

#include <ChannelStrip/dynamics/fast_log.h>
#include <gtest/gtest.h>
#include <tests/support/compare.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace channelstrip::test::log2_sweep_test {
namespace {

constexpr int kMantissas = 1 << 23;
constexpr float kDbPerOctave = std::bit_cast<float>(0x40C0A8C2);

float float_of(uint32_t x) {
  return std::bit_cast<float>(x);
}

// A significand 1.m, its interval of the table, and its position in that interval. All exact.
struct Mantissa {
  explicit Mantissa(int m) : value(1 + static_cast<float>(m) * 0x1p-23f) {
    const double position = (static_cast<double>(value) - 1) * 512;
    const auto i = static_cast<int>(std::floor(position));
    fraction = static_cast<float>(position - i);
    low = gmLog2LUT[i];
    rise = gmLog2LUT[i + 1] - gmLog2LUT[i];
  }

  float log2_times_two_to(int exponent) const {
    return std::fma(rise, fraction, low + static_cast<float>(exponent));
  }

  float value, fraction, low, rise;
};

// Calls check(mantissa, exponent, x) for every normal x > 0.
template <typename Check>
void for_every_normal(Check check) {
  std::array<float, 254> octaves;
  for (int i = 0; i < 254; ++i) octaves[static_cast<size_t>(i)] = std::ldexp(1.0f, i - 126);
  for (int m = 0; m < kMantissas; ++m) {
    const Mantissa mantissa(m);
    for (int i = 0; i < 254; ++i) {
      check(mantissa, i - 126, mantissa.value * octaves[static_cast<size_t>(i)]);
    }
  }
}

TEST(FastLog2Sweep, FollowsItsRuleOnEveryNormal) {
  uint64_t wrong = 0;
  for_every_normal([&](const Mantissa& mantissa, int exponent, float x) {
    wrong += bits(FastLog2(x)) != bits(mantissa.log2_times_two_to(exponent));
  });
  EXPECT_EQ(wrong, 0u);
}

TEST(FastLog2Sweep, ReadsEveryDenormalAsANormalOfExponentMinus127) {
  uint64_t wrong = 0;
  for (int m = 1; m < kMantissas; ++m) {
    const float denormal = std::ldexp(static_cast<float>(m), -149);
    wrong += bits(FastLog2(denormal)) != bits(Mantissa(m).log2_times_two_to(-127));
  }
  EXPECT_EQ(wrong, 0u);
}

// The largest errors against the true logarithm.
struct Log2Errors {
  double near_one = 0;  // for x from 2^-32 to 2^32: levels within 192 dB of full scale
  double anywhere = 0;
};

Log2Errors measure_log2_errors() {
  Log2Errors errors;
  for (int m = 0; m < kMantissas; ++m) {
    const float mantissa = Mantissa(m).value;
    const double log2_mantissa = std::log2(static_cast<double>(mantissa));
    for (int e = -126; e <= 127; ++e) {
      const float x = float_of(bits(mantissa) + (static_cast<uint32_t>(e) << 23));
      const double error = std::abs(static_cast<double>(FastLog2(x)) - (e + log2_mantissa));
      errors.anywhere = std::max(errors.anywhere, error);
      if (e >= -32 && e < 32) errors.near_one = std::max(errors.near_one, error);
    }
  }
  return errors;
}

// Interpolation misses the curve by (1/512)^2 / (8 ln 2) = 6.9e-7 at most, table entries are off by
// 1.2e-7. Entry plus exponent and the final sum are each rounded by up to half a unit in the last
// place, together 1.9e-6 for results up to 32 and 7.7e-6 for those up to 128.
TEST(FastLog2Sweep, IsAccurate) {
  const Log2Errors errors = measure_log2_errors();
  EXPECT_LE(errors.near_one, 3e-6);
  EXPECT_LE(errors.anywhere, 8.5e-6);
}

// At the boundary of two intervals of the table, the rounding of entry plus exponent can make the
// result fall.
TEST(FastLog2Sweep, FallsOnlyBetweenIntervalsAndByOneUnitInTheLastPlace) {
  uint64_t falls_within = 0, falls_by_more = 0;
  float previous = -127;
  for (uint32_t u = bits(0x1p-126f); u < bits(INFINITY); ++u) {
    const float result = FastLog2(float_of(u));
    if (result < previous) {
      falls_within += u % (1 << 14) != 0;
      falls_by_more += result < std::nextafter(previous, -INFINITY);
    }
    previous = result;
  }
  EXPECT_EQ(falls_within, 0u);
  EXPECT_EQ(falls_by_more, 0u);
}

TEST(LevelToDbSweep, IsTheScaledLogarithmOfEveryNormal) {
  uint64_t wrong = 0;
  for_every_normal([&](const Mantissa& mantissa, int exponent, float x) {
    wrong += bits(LevelToDb(x)) != bits(mantissa.log2_times_two_to(exponent) * kDbPerOctave);
  });
  EXPECT_EQ(wrong, 0u);
}

TEST(LevelToDbSweep, IsTheScaledLogarithmOfEveryDenormal) {
  uint64_t wrong = 0;
  for (int m = 1; m < kMantissas; ++m) {
    const float denormal = std::ldexp(static_cast<float>(m), -149);
    wrong += bits(LevelToDb(denormal)) != bits(Mantissa(m).log2_times_two_to(-127) * kDbPerOctave);
  }
  EXPECT_EQ(wrong, 0u);
}

TEST(LevelToDbSweep, PutsEveryNegativeAtTheFloor) {
  uint64_t wrong = 0;
  for (uint32_t u = 0x80000000; u <= bits(-INFINITY); ++u) wrong += LevelToDb(float_of(u)) != -140;
  EXPECT_EQ(wrong, 0u);
}

}  // namespace
}  // namespace channelstrip::test::log2_sweep_test
