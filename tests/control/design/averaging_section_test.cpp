#include "control/design/averaging_section.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "bands.h"
#include "control/design/dynamics.h"
#include "played_strip.h"
#include "refused.h"

namespace channelstrip::test::averaging_section_test {
namespace {

using namespace host;

double milliseconds(double samples) {
  return samples / kRate * 1000;
}

TEST(AveragingSection, HasUnitGainAtZeroHertzWithItsFloatFeedback) {
  for (const double time : {0.0, 0.01, 1.0, 20.0, 10000.0}) {
    for (const double rate : {44100.0, 192000.0}) {
      const Section section = averaging_section(time, rate);
      const auto feedback = static_cast<float>(section.a1);
      const auto gain = static_cast<float>(section.b0);
      EXPECT_EQ(section.a1, static_cast<double>(feedback));
      EXPECT_EQ(section.b0, 1 - section.a1);
      if (feedback >= 0.5f) {  // from here on, 1 - feedback is exactly a float
        EXPECT_EQ(section.b0, static_cast<double>(gain)) << time << " ms";
      }
      EXPECT_EQ(section.b1, 0);
      EXPECT_EQ(section.b2, 0);
      EXPECT_EQ(section.a2, 0);
    }
  }
}

TEST(AveragingSection, CoversAllButOneOverEOfAStepInItsTime) {
  const Section section = averaging_section(20, kRate);
  // Rounding p to a float moves it by 2^-25 at most, which moves p^960 by 960 / p times as much.
  EXPECT_NEAR(filtered(section, std::vector(960, 1.0)).back(), 1 - kOneOverE,
              kOneOverE * 961 * 0x1p-25);
}

TEST(AveragingSection, PassesWhenTheTimeIsZero) {
  for (const Section& section : {averaging_section(0, kRate), two_pole_section(0, kRate)}) {
    EXPECT_EQ(section.b0, 1);
    EXPECT_EQ(section.a1, 0);
    EXPECT_EQ(section.a2, 0);
  }
}

constexpr double kManyTimes[] = {0.3, 1, 7, 480, 775, 776, 960, 4800, 14400, 100000, 131073};

TEST(AveragingPoles, LeaveOneOverEOfAStepAfterTheirTime) {
  for (const double samples : kManyTimes) {
    const PolePair poles = averaging_poles(samples);
    EXPECT_NEAR(remainder_of_step(poles, samples), kOneOverE, 1e-9) << samples;
    EXPECT_LE(poles.slow, poles.fast);
  }
}

// Compares the formula with two one-pole filters in series.
TEST(AveragingPoles, RemainderIsThatOfTwoOnePolesInARow) {
  for (const PolePair& poles :
       {PolePair{0.01, 0.01}, PolePair{0.01, 0.3}, PolePair{0.002, 0.0020001}, PolePair{0.02, 1}}) {
    double first = 0, second = 0;
    for (int m = 1; m <= 400; ++m) {
      first += poles.slow * (1 - first);
      second += poles.fast * (first - second);
      ASSERT_NEAR(1 - second, remainder_of_step(poles, m), 1e-10) << poles.fast << ", " << m;
    }
  }
}

TEST(AveragingPoles, AreEqualAsLongAsSinglePrecisionAllows) {
  EXPECT_EQ(averaging_poles(775).fast, averaging_poles(775).slow);
  const PolePair apart = averaging_poles(776);
  EXPECT_GT(apart.fast, apart.slow);
  EXPECT_DOUBLE_EQ(apart.fast * apart.slow, 0x1p-17);
  EXPECT_LT(averaging_poles(131070).fast, 1);
  EXPECT_EQ(averaging_poles(131072).fast, 1);
}

TEST(TwoPoleSection, HoldsFloatsWhoseGainAtZeroHertzIsOne) {
  for (const double samples : kManyTimes) {
    const Section section = two_pole_section(milliseconds(samples), kRate);
    EXPECT_EQ(section.b0, 1 - section.a1 - section.a2) << samples;
    EXPECT_EQ(section.b1, 0);
    EXPECT_EQ(section.b2, 0);
    EXPECT_TRUE(is_stable(section)) << samples;
    for (const double value : {section.b0, section.a1, section.a2}) {
      EXPECT_EQ(value, static_cast<double>(static_cast<float>(value))) << samples;
    }
  }
}

// b0 is 2^-17 or more and rounded by up to 2^-25, so it and the time may be off by a 256th. At the
// time, x = 2.146 time constants of each pole, the step response moves by at most x^2 e^-x = 0.54
// times that. Rounding the sum of the poles matters less.
TEST(TwoPoleSection, CoversAllButOneOverEOfAStepInItsTime) {
  for (const std::size_t samples : {1u, 7u, 480u, 775u, 960u, 4800u, 14400u, 131000u}) {
    const Section section = two_pole_section(milliseconds(static_cast<double>(samples)), kRate);
    EXPECT_NEAR(filtered(section, std::vector(samples, 1.0)).back(), 1 - kOneOverE, 0.6 / 256)
        << samples;
  }
}

TEST(TwoPoleSection, NeverOvershoots) {
  for (const double samples : {3.0, 50.0, 480.0, 775.0, 2400.0, 14400.0}) {
    const Section section = two_pole_section(milliseconds(samples), kRate);
    double before = 0;
    for (const double y : filtered(section, std::vector(200000, 1.0))) {
      ASSERT_GE(y, before - 1e-9) << samples;
      before = y;
    }
    EXPECT_NEAR(before, 1, 1e-4) << samples;
  }
}

TEST(TwoPoleSection, IsTooLongWhereNoFloatIsNearEnough) {
  const DetectorSettings longest{DetectorMode::kAverage, 10000};
  EXPECT_EQ(words(refusal_of(longest, 1e6)), "");
  EXPECT_EQ(words(refusal_of(longest, 1e7)),
            "time 10000 ms is not short enough for single precision at 10000000 Hz");
  EXPECT_EQ(two_pole_section(10000, 1e7).b0, 0);
  EXPECT_EQ(averaging_section(10000, 1e7).b0, 0);
}

// Two seconds, in the first of which the average settles. The ripple of a 50 ms average on a 1 kHz
// wave is far below the bound.
TEST(TwoPoleSection, ReadsASineAndNoiseByKnownAmountsBelowTheirRms) {
  const Section section = two_pole_section(50, kRate);
  std::mt19937 random(1);
  std::normal_distribution<double> gaussian;
  std::vector<double> sine, noise;
  for (int n = 0; n < 96000; ++n) {
    sine.push_back(std::abs(std::sin(2 * std::numbers::pi * 997 * n / kRate)));
    noise.push_back(std::abs(gaussian(random)));
  }
  EXPECT_NEAR(linear_to_db(filtered(section, sine).back() * std::numbers::sqrt2), -0.912, 0.01);

  double sum = 0;
  const std::vector<double> averages = filtered(section, noise);
  for (std::size_t n = 48000; n < 96000; ++n) sum += averages[n];
  // The mean of 48000 magnitudes with a standard deviation of 0.60 has one of 0.0028, or 0.03 dB;
  // the bound is three times that.
  EXPECT_NEAR(linear_to_db(sum / 48000), -1.961, 0.09);
}

// Three roundings of 2^-24 per sample, which the section amplifies by up to 2^17.
TEST(AverageDetector, ReadsARestingLevelWithinAFifthOfADecibel) {
  for (const double time : {1.0, 10.0, 16.0, 30.0, 100.0, 300.0}) {
    for (const float level : {1.9f, 1.0f, 0.3f}) {
      StripSettings settings;
      settings.detector = {DetectorMode::kAverage, time};
      PlayedStrip strip(settings);
      strip.play(level, 48000 * 6);
      EXPECT_NEAR(strip.state().smoothLevel, level, level * 3 / 128) << time << " ms";
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::averaging_section_test
