// The power at every float of its range, against its rule in real arithmetic: with floor and powers
// of two where the library masks bits.

#include <ChannelStrip/dynamics/fast_log.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <map>

namespace channelstrip::test::pow2_sweep_test {
namespace {

// The ends of the range of normal results.
constexpr float kLowestDb = -758.5956f;
const float kHighestDb = std::nextafter(770.6368f, 0.0f);

// The float just below 128 rounds up to 128 when it is scaled.
const float kHighestOctave = std::nextafter(std::nextafter(128.0f, 0.0f), 0.0f);

float scaled_octaves(float y) {
  return std::fma(y, 0x1p23f, 127 * 0x1p23f);
}
float scaled_db(float db) {
  return std::fma(db, std::bit_cast<float>(0x49AA152D), 127 * 0x1p23f);
}

// 2^(scaled / 2^23 - 127) from the tables.
float power_by_the_rule(float scaled) {
  const double n = std::floor(static_cast<double>(scaled));
  const double octave = std::floor(n / 0x1p23);
  const double fraction = n - octave * 0x1p23;
  const double high = std::floor(fraction / 0x1p14);
  const double low = std::floor((fraction - high * 0x1p14) / 0x1p5);
  return std::ldexp(gmPowTableH[static_cast<int>(high)] * gmPowTableL[static_cast<int>(low)],
                    static_cast<int>(octave) - 127);
}

// Floats as integers in the same order; -0 is left out.
int64_t rank(float x) {
  const int64_t magnitude = std::bit_cast<uint32_t>(std::abs(x));
  return x < 0 ? -magnitude : magnitude;
}

float of_rank(int64_t rank) {
  return std::copysign(std::bit_cast<float>(static_cast<uint32_t>(std::abs(rank))),
                       rank < 0 ? -1.0f : 1.0f);
}

struct Faults {
  uint64_t wrong = 0;     // not the power that the rule gives
  uint64_t falls = 0;     // below the result of the float before
  uint64_t abnormal = 0;  // not a positive normal number
};

constexpr size_t kAtATime = 1024;
using Floats = std::array<float, kAtATime>;

// What the rule makes of each scaled value. Neighbours mostly share theirs.
void apply_rule(const Floats& scaled, Floats& powers) {
  int others = 0;
  for (const float value : scaled) others += value != scaled[0];
  if (others == 0) return powers.fill(power_by_the_rule(scaled[0]));
  for (size_t i = 0; i < kAtATime; ++i) {
    const bool known = i > 0 && scaled[i] == scaled[i - 1];
    powers[i] = known ? powers[i - 1] : power_by_the_rule(scaled[i]);
  }
}

// Every float from `lowest` to `highest`, one of which is 0, many at a time and each step in a loop
// of its own, so that the compiler vectorises it. The last float fills up what is left of the last
// ones.
template <float Convert(float), float Scale(float)>
Faults count_faults(float lowest, float highest) {
  Faults faults;
  Floats x, scaled, expected, results;
  float previous = 0;
  const bool is_negative = lowest < 0;
  const auto last = std::bit_cast<uint32_t>(is_negative ? -lowest : highest);
  for (uint32_t first = 0; first <= last; first += kAtATime) {
    for (uint32_t i = 0; i < kAtATime; ++i) {
      const uint32_t index = std::min(first + i, last);
      const float magnitude = std::bit_cast<float>(is_negative ? last - index : index);
      x[i] = is_negative ? -magnitude : magnitude;
    }
    for (size_t i = 0; i < kAtATime; ++i) scaled[i] = Scale(x[i]);
    for (size_t i = 0; i < kAtATime; ++i) results[i] = Convert(x[i]);
    apply_rule(scaled, expected);
    uint32_t wrong = 0, falls = results[0] < previous, abnormal = 0;
    for (size_t i = 0; i < kAtATime; ++i) {
      wrong += std::bit_cast<uint32_t>(results[i]) != std::bit_cast<uint32_t>(expected[i]);
    }
    for (size_t i = 0; i < kAtATime; ++i) {
      abnormal += !(results[i] >= FLT_MIN && results[i] <= FLT_MAX);
    }
    for (size_t i = 1; i < kAtATime; ++i) falls += results[i] < results[i - 1];
    previous = results.back();
    faults.wrong += wrong;
    faults.falls += falls;
    faults.abnormal += abnormal;
  }
  return faults;
}

void expect_none(const Faults& faults) {
  EXPECT_EQ(faults.wrong, 0u);
  EXPECT_EQ(faults.falls, 0u);
  EXPECT_EQ(faults.abnormal, 0u);
}

TEST(FastPow2Sweep, FollowsItsRuleAndNeverFallsUpToOne) {
  expect_none(count_faults<FastPow2, scaled_octaves>(-126, 0));
}

TEST(FastPow2Sweep, FollowsItsRuleAndNeverFallsFromOne) {
  expect_none(count_faults<FastPow2, scaled_octaves>(0, kHighestOctave));
}

TEST(DbToGainSweep, FollowsItsRuleAndNeverFallsUpToZeroDecibels) {
  expect_none(count_faults<DbToGain, scaled_db>(kLowestDb, 0));
}

TEST(DbToGainSweep, FollowsItsRuleAndNeverFallsFromZeroDecibels) {
  expect_none(count_faults<DbToGain, scaled_db>(0, kHighestDb));
}

// The last rank from `first` up to `end` that has the same gain as `first`.
int64_t end_of_step(int64_t first, int64_t end) {
  const float gain = DbToGain(of_rank(first));
  int64_t stride = 1;
  while (first + stride <= end && DbToGain(of_rank(first + stride)) == gain) stride *= 2;
  for (int64_t last = first;; stride /= 2) {
    if (stride == 0) return last;
    if (last + stride <= end && DbToGain(of_rank(last + stride)) == gain) last += stride;
  }
}

// Calls check(first, last) for every run of floats that have one gain.
template <typename Check>
void for_every_step(float lowest, float highest, Check check) {
  const int64_t end = rank(highest);
  for (int64_t first = rank(lowest); first <= end;) {
    const int64_t last = end_of_step(first, end);
    check(of_rank(first), of_rank(last));
    first = last + 1;
  }
}

// Along a step the gain is constant while the true one rises, so the error is largest at its ends.
TEST(DbToGainSweep, IsAccurateFromMinus140To40Decibels) {
  double worst = 0;
  const auto error = [](float db) {
    return std::abs(static_cast<double>(DbToGain(db)) / std::pow(10, static_cast<double>(db) / 20) -
                    1);
  };
  for_every_step(-140, 40, [&](float first, float last) {
    worst = std::max({worst, error(first), error(last)});
  });
  EXPECT_LE(worst, 7e-6);
}

// The scaled value is a float near 2^30: below 2^30 its lowest six bits are zero, above it seven.
TEST(DbToGainSweep, IsAStaircaseTwiceAsCoarseFrom2Up) {
  std::map<int, int> steps;  // by octave
  for_every_step(-380, 60, [&](float first, float) { ++steps[std::ilogb(DbToGain(first))]; });
  for (int octave = -63; octave < 1; ++octave) EXPECT_EQ(steps[octave], 1 << 17) << octave;
  for (int octave = 1; octave < 9; ++octave) EXPECT_EQ(steps[octave], 1 << 16) << octave;
}

}  // namespace
}  // namespace channelstrip::test::pow2_sweep_test
