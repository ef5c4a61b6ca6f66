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

constexpr int kSignificands = 1 << 23;
constexpr float kDbPerOctave = std::bit_cast<float>(0x40C0A8C2);

// So many neighbours at a time, each step in a loop of its own, so that the compiler vectorises it.
constexpr int kAtATime = 1024;
using Floats = std::array<float, kAtATime>;
using Doubles = std::array<double, kAtATime>;

float float_of(uint32_t x) {
  return std::bit_cast<float>(x);
}

Floats floats_from(uint32_t first) {
  Floats x;
  for (uint32_t k = 0; k < kAtATime; ++k) x[k] = float_of(first + k);
  return x;
}

template <float Convert(float)>
Floats converted(const Floats& x) {
  Floats results;
  for (size_t k = 0; k < kAtATime; ++k) results[k] = Convert(x[k]);
  return results;
}

uint32_t count_differences(const Floats& a, const Floats& b) {
  uint32_t count = 0;
  for (size_t k = 0; k < kAtATime; ++k) count += bits(a[k]) != bits(b[k]);
  return count;
}

// Significands 1.m for m from `first`, a multiple of kAtATime, their interval of the table, and
// their positions in that interval. All exact.
struct Significands {
  explicit Significands(int first) {
    const auto i = static_cast<int>(std::floor(first * 0x1p-23 * 512));
    low = gmLog2LUT[i];
    rise = gmLog2LUT[i + 1] - gmLog2LUT[i];
    for (int k = 0; k < kAtATime; ++k) {
      const double value = 1 + (first + k) * 0x1p-23;
      values[static_cast<size_t>(k)] = static_cast<float>(value);
      fractions[static_cast<size_t>(k)] = static_cast<float>((value - 1) * 512 - i);
    }
  }

  Floats times(float power) const {
    Floats x;
    for (size_t k = 0; k < kAtATime; ++k) x[k] = values[k] * power;
    return x;
  }

  // What the rule gives for them, times 2^exponent.
  Floats log2(int exponent) const {
    Floats results;
    const float base = low + static_cast<float>(exponent);
    for (size_t k = 0; k < kAtATime; ++k) results[k] = std::fma(rise, fractions[k], base);
    return results;
  }
  Floats decibels(int exponent) const {
    Floats results = log2(exponent);
    for (float& result : results) result *= kDbPerOctave;
    return results;
  }

  Floats values, fractions;
  float low, rise;
};

// Calls check(significands, exponent, x) for every normal x > 0.
template <typename Check>
void for_all_normals(Check check) {
  for (int first = 0; first < kSignificands; first += kAtATime) {
    const Significands significands(first);
    for (int exponent = -126; exponent <= 127; ++exponent) {
      check(significands, exponent, significands.times(std::ldexp(1.0f, exponent)));
    }
  }
}

// The same for every denormal, and 0. They are read as normals of exponent -127.
template <typename Check>
void for_all_denormals(Check check) {
  for (int first = 0; first < kSignificands; first += kAtATime) {
    Floats x;
    for (int k = 0; k < kAtATime; ++k) {
      x[static_cast<size_t>(k)] = static_cast<float>(first + k) * 0x1p-149f;
    }
    check(Significands(first), -127, x);
  }
}

TEST(FastLog2Sweep, FollowsItsRuleOnEveryNormal) {
  uint64_t wrong = 0;
  for_all_normals([&](const Significands& significands, int exponent, const Floats& x) {
    wrong += count_differences(converted<FastLog2>(x), significands.log2(exponent));
  });
  EXPECT_EQ(wrong, 0u);
}

TEST(FastLog2Sweep, ReadsEveryDenormalAsANormalOfExponentMinus127) {
  uint64_t wrong = 0;
  for_all_denormals([&](const Significands& significands, int exponent, const Floats& x) {
    wrong += count_differences(converted<FastLog2>(x), significands.log2(exponent));
  });
  EXPECT_EQ(wrong, 0u);
}

// Raises each of the worst errors to that of its float, whose true logarithm is given.
void raise_errors(const Floats& results, int exponent, const Doubles& log2_significands,
                  Doubles& worst) {
  for (size_t k = 0; k < kAtATime; ++k) {
    const double error =
        std::abs(static_cast<double>(results[k]) - (exponent + log2_significands[k]));
    worst[k] = worst[k] > error ? worst[k] : error;
  }
}

// The largest errors against the true logarithm.
struct Log2Errors {
  double near_one = 0;  // for x from 2^-32 to 2^32: levels within 192 dB of full scale
  double anywhere = 0;
};

Log2Errors measure_log2_errors() {
  Doubles log2_significands, near_one = {}, far = {};
  for_all_normals([&](const Significands& significands, int exponent, const Floats& x) {
    if (exponent == -126) {
      std::ranges::transform(significands.values, log2_significands.begin(),
                             [](float value) { return std::log2(static_cast<double>(value)); });
    }
    raise_errors(converted<FastLog2>(x), exponent, log2_significands,
                 exponent >= -32 && exponent < 32 ? near_one : far);
  });
  const double near = *std::ranges::max_element(near_one);
  return {.near_one = near, .anywhere = std::max(near, *std::ranges::max_element(far))};
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
  for (uint32_t first = bits(0x1p-126f); first < bits(INFINITY); first += kAtATime) {
    const Floats results = converted<FastLog2>(floats_from(first));
    if (results[0] < previous) {
      falls_within += first % (1 << 14) != 0;
      falls_by_more += results[0] < std::nextafter(previous, -INFINITY);
    }
    uint32_t falls = 0;
    for (size_t k = 1; k < kAtATime; ++k) falls += results[k] < results[k - 1];
    falls_within += falls;
    previous = results.back();
  }
  EXPECT_EQ(falls_within, 0u);
  EXPECT_EQ(falls_by_more, 0u);
}

TEST(LevelToDbSweep, IsTheScaledLogarithmOfEveryNormal) {
  uint64_t wrong = 0;
  for_all_normals([&](const Significands& significands, int exponent, const Floats& x) {
    wrong += count_differences(converted<LevelToDb>(x), significands.decibels(exponent));
  });
  EXPECT_EQ(wrong, 0u);
}

TEST(LevelToDbSweep, IsTheScaledLogarithmOfEveryDenormal) {
  uint64_t wrong = 0;
  for_all_denormals([&](const Significands& significands, int exponent, const Floats& x) {
    Floats expected = significands.decibels(exponent);
    if (x[0] == 0) expected[0] = -140;
    wrong += count_differences(converted<LevelToDb>(x), expected);
  });
  EXPECT_EQ(wrong, 0u);
}

TEST(LevelToDbSweep, PutsEveryNegativeAtTheFloor) {
  Floats floor;
  floor.fill(-140);
  uint64_t wrong = LevelToDb(-INFINITY) != -140;
  for (uint32_t first = bits(-0.0f); first < bits(-INFINITY); first += kAtATime) {
    wrong += count_differences(converted<LevelToDb>(floats_from(first)), floor);
  }
  EXPECT_EQ(wrong, 0u);
}

}  // namespace
}  // namespace channelstrip::test::log2_sweep_test
