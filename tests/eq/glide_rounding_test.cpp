// The glide to the bit: its roundings, signed zeros, coming to rest, and a running value and
// coefficient that no longer agree because the host or a buffer wrote only one of them.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cmath>

namespace channelstrip::test::glide_rounding_test {
namespace {

class EqGlideRounding : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, EqGlideRounding, every_format(), format_name);

constexpr size_t kCoefs = CHANNELSTRIP_EQ_COEFS;

// A coefficient in use and its running value.
struct Pair {
  float coef;
  double smoothed;

  void glide(float target, float rate) {
    for (int step = 0; step < 4; ++step) {
      const float distance = target - coef;
      const float part = distance * rate;
      smoothed += static_cast<double>(part);
      coef = static_cast<float>(smoothed);
    }
  }
};

// Processes one block, four glide steps, with coefficient 17 at `pair`; returns it after the block.
Pair glided(std::string_view format, Pair pair, float target, float rate) {
  Strip strip(format);
  strip.dezip.coefs[17] = pair.coef;
  strip.dezip.smoothedCoefs[17] = pair.smoothed;
  strip.eq.targetCoefs[17] = target;
  strip.dyn_state[0].dezipRate = rate;
  strip.process();
  return {strip.dezip.coefs[17], strip.dezip.smoothedCoefs[17]};
}

// Noise of very different magnitudes.
float wide_noise(Noise& noise) {
  return std::ldexp(noise(), static_cast<int>(20 * noise()));
}

TEST_P(EqGlideRounding, DistanceIsRoundedToSingle) {
  // The first distance, 1 + 2^-24, rounds to 1.
  const Pair pair = glided(format(), {-0x1p-24f, -0x1p-24}, 1, 0.75f);
  EXPECT_EQ(pair.smoothed, 1 - 0x1p-8 - 0x1p-26);
}

TEST_P(EqGlideRounding, ProductIsRoundedToSingle) {
  // (1 + 2^-23) (1 - 2^-24) rounds down to 1; the second step adds 2^-23 - 2^-47.
  const Pair pair = glided(format(), {0, 0}, 1 + 0x1p-23f, 1 - 0x1p-24f);
  EXPECT_EQ(pair.smoothed, 1 + 0x1p-23 - 0x1p-47);
}

TEST_P(EqGlideRounding, DistanceIsMeasuredFromTheRoundedCoefficient) {
  const Pair pair = glided(format(), {1, 1 + 0x1p-26}, 1, 0.5f);
  EXPECT_EQ(pair.smoothed, 1 + 0x1p-26);
}

TEST_P(EqGlideRounding, EveryStepFollowsTheRule) {
  Noise noise(7);
  for (int trial = 0; trial < 50; ++trial) {
    Strip strip(format());
    const float rate = std::abs(noise());
    strip.dyn_state[0].dezipRate = rate;
    for (size_t i = 0; i < kCoefs; ++i) {
      strip.eq.targetCoefs[i] = wide_noise(noise);
      strip.dezip.coefs[i] = wide_noise(noise);  // not the rounded double: the first step differs
      strip.dezip.smoothedCoefs[i] = static_cast<double>(wide_noise(noise)) * 1.1;
    }
    const EQ_SDezipCoefs before = strip.dezip;
    strip.process();
    for (size_t i = 0; i < kCoefs; ++i) {
      Pair expected = {before.coefs[i], before.smoothedCoefs[i]};
      expected.glide(strip.eq.targetCoefs[i], rate);
      EXPECT_EQ(bits(strip.dezip.smoothedCoefs[i]), bits(expected.smoothed)) << i;
      EXPECT_EQ(bits(strip.dezip.coefs[i]), bits(expected.coef)) << i;
    }
  }
}

TEST_P(EqGlideRounding, CoefficientsAreTheRoundedRunningValuesAfterEveryCall) {
  BusyStrip strip(format());
  for (int call = 0; call < 8; ++call) {
    strip.process();
    for (size_t i = 0; i < kCoefs; ++i) {
      EXPECT_EQ(bits(strip.dezip.coefs[i]), bits(static_cast<float>(strip.dezip.smoothedCoefs[i])));
    }
  }
}

TEST_P(EqGlideRounding, ComesToRestExactlyOnTheTarget) {
  BusyStrip strip(format(), 1024);  // 0.9^256 = 2e-12 of the distance is beyond a float's digits
  strip.process();
  EXPECT_TRUE(same_bits(strip.dezip.coefs, strip.eq.targetCoefs));
}

TEST_P(EqGlideRounding, AtRestNothingMoves) {
  BusyStrip strip(format(), 1024);
  strip.process();
  const EQ_SDezipCoefs at_rest = strip.dezip;
  strip.process();
  EXPECT_TRUE(same_record(strip.dezip, at_rest));
}

TEST_P(EqGlideRounding, ZeroKeepsOrLosesItsSignAsSumsDo) {
  const struct {
    float start, target, rate, end;
  } cases[] = {
      {0.0f, -0.0f, 0.5f, 0.0f},   // distance -0, and 0 + -0 is 0
      {-0.0f, 0.0f, 0.5f, 0.0f},   //
      {-0.0f, -0.0f, 0.5f, 0.0f},  // distance 0, and -0 + 0 is 0
      {1.0f, -0.0f, 1.0f, 0.0f},   //
      {-1.0f, -0.0f, 1.0f, 0.0f},  //
      {0.0f, -1.0f, 0.0f, 0.0f},   // a step of -0
      {-0.0f, 1.0f, 0.0f, 0.0f},   // a step of 0
      {-0.0f, -1.0f, 0.0f, -0.0f}  // a step of -0
  };
  for (const auto& [start, target, rate, end] : cases) {
    const Pair pair = glided(format(), {start, static_cast<double>(start)}, target, rate);
    EXPECT_EQ(bits(pair.coef), bits(end)) << start << " to " << target;
    EXPECT_EQ(bits(pair.smoothed), bits(static_cast<double>(end))) << start << " to " << target;
  }
}

TEST_P(EqGlideRounding, WritingTheCoefficientAloneIsUndone) {
  const Pair pair = glided(format(), {3, 1}, 5, 0);
  EXPECT_EQ(pair.coef, 1);
}

TEST_P(EqGlideRounding, WritingTheCoefficientAloneMisguidesOneStep) {
  // 1 + (1 - 3) / 2 is 0; then 0.5, 0.75, 0.875.
  const Pair pair = glided(format(), {3, 1}, 1, 0.5f);
  EXPECT_EQ(pair.coef, 0.875f);
}

TEST_P(EqGlideRounding, WritingTheRunningValueAloneMovesTheCoefficient) {
  const Pair pair = glided(format(), {3, 1}, 3, 0.5f);
  // No distance at first: 1; then 2, 2.5, 2.75.
  EXPECT_EQ(pair.coef, 2.75f);
}

// The last channel's output lies in coefficients 24 to 39; the last quad is written after the last
// glide step.
void process_into_coefficients(Strip& strip) {
  strip.fill_inputs(9);
  strip.dyn_state[0].dezipRate = 0;
  std::vector<float*> outputs = pointers(strip.out);
  outputs.back() = &strip.dezip.coefs[24];
  process_on(strip, pointers(strip.in), outputs);
}

TEST_P(EqGlideRounding, CoefficientsAreSetAgainAtTheEndOfABlock) {
  Strip strip(format());
  process_into_coefficients(strip);
  EXPECT_TRUE(same_bits(strip.dezip.coefs, strip.eq.targetCoefs));
}

TEST_P(EqGlideRounding, CoefficientsAreSetAgainBeforeTheMetersRun) {
  Strip strip(format());
  process_into_coefficients(strip);
  EXPECT_EQ(strip.output_peak(strip.channels - 1), 1);
}

}  // namespace
}  // namespace channelstrip::test::glide_rounding_test
