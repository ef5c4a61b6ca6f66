// The designed curves, times and detectors, as the library processes them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "control/design/dynamics.h"
#include "played_strip.h"

namespace channelstrip::test::played_dynamics_test {
namespace {

using namespace host;

// How far from its target a gain term may come to rest: it stops when a step, the distance times
// the weight of the time, is below half of the term's last bit.
double short_of(double gain, double milliseconds) {
  return 0x1p-24 * std::abs(gain) / one_pole_weight(milliseconds, PlayedStrip::kRate);
}

TEST(PlayedCompressor, SettlesAtTheValueOfItsCurve) {
  for (const double ratio : {1.0, 2.0, 4.0, std::numeric_limits<double>::infinity()}) {
    for (const double knee : {0.0, 10.0}) {
      StripSettings settings;
      settings.compressor = {
          .threshold = -30, .ratio = ratio, .knee = knee, .attack = 5, .release = 20, .range = -15};
      settings.detector = kImmediate;
      PlayedStrip strip(settings);
      for (const double level : {-50.0, -34.0, -30.0, -27.0, -20.0, -6.0, 0.0, -40.0}) {
        const double gain = compressor_gain(*settings.compressor, level);
        EXPECT_NEAR(settled_gain(strip, level), gain, kConversions + short_of(gain, 20))
            << level << " dB, ratio " << ratio << ", knee " << knee;
      }
    }
  }
}

TEST(PlayedExpander, SettlesAtTheValueOfItsCurve) {
  for (const double knee : {0.0, 10.0}) {
    StripSettings settings;
    settings.expander = {.threshold = -40, .ratio = 3, .knee = knee, .release = 20, .range = -35};
    settings.detector = kImmediate;
    PlayedStrip strip(settings);
    for (const double level : {-10.0, -36.0, -40.0, -43.0, -50.0, -70.0, -20.0}) {
      const double gain = expander_gain(*settings.expander, level);
      EXPECT_NEAR(settled_gain(strip, level), gain, kConversions + short_of(gain, 20))
          << level << " dB, knee " << knee;
    }
  }
}

TEST(PlayedGate, ShutsBelowItsHysteresisAndOpensAtItsThreshold) {
  StripSettings settings;
  settings.expander = {.threshold = -40,
                       .ratio = 1,
                       .attack = 1,
                       .release = 10,
                       .hold = 0,
                       .range = -30,
                       .hysteresis = 6};
  settings.detector = kImmediate;
  PlayedStrip strip(settings);
  const auto expect_gain = [&](double level, double gain) {
    EXPECT_NEAR(settled_gain(strip, level), gain, kConversions + short_of(gain, 10)) << level;
  };
  expect_gain(-45.99, 0);    // still open
  expect_gain(-46.01, -30);  // shut
  expect_gain(-40.01, -30);  // still shut
  expect_gain(-39.99, 0);    // open
}

// From rest at 0 dB towards -12 dB: 1/e of the way is left after the attack time, and likewise on
// the way back after the release time.
TEST(PlayedCompressor, AttackAndReleaseCoverTheirShareInTheirTime) {
  StripSettings settings;
  settings.compressor = {.threshold = -24, .ratio = 2, .knee = 0, .attack = 10, .release = 100};
  settings.detector = kImmediate;
  PlayedStrip strip(settings);
  strip.play(1.0f, 480);
  EXPECT_NEAR(strip.state().compGain, -12 * (1 - kOneOverE), kConversions);
  strip.play(1.0f, 48000);
  strip.play(0.01f, 4800);
  EXPECT_NEAR(strip.state().compGain, -12 * kOneOverE, kConversions);
}

// The gain stays for the hold time; after the release time 1/e of its way is left.
TEST(PlayedExpander, HoldsThenReleasesAndRisesInItsAttack) {
  StripSettings settings;
  settings.expander = {.threshold = -20,
                       .ratio = 2,
                       .knee = 0,
                       .attack = 10,
                       .release = 100,
                       .hold = 20,
                       .range = -60};
  settings.detector = kImmediate;
  PlayedStrip strip(settings);
  const double bound = kConversions + short_of(-40, 100);
  strip.play(0.01f, 48000);  // 20 dB below the threshold
  EXPECT_NEAR(strip.state().expGain, -20, bound);
  strip.play(0.5f, 480);
  const auto risen = static_cast<double>(strip.state().expGain);
  EXPECT_NEAR(risen, -20 * kOneOverE, bound);
  strip.play(0.001f, 960);
  EXPECT_EQ(static_cast<double>(strip.state().expGain), risen);
  strip.play(0.001f, 4800);
  EXPECT_NEAR(strip.state().expGain, -40 + (risen + 40) * kOneOverE, bound);
}

TEST(PlayedDetector, PeakFallsTo37PercentAndSmoothRisesTo63PercentInItsTime) {
  StripSettings settings;
  settings.detector = {DetectorMode::kPeak, 10};
  PlayedStrip peak(settings);
  std::vector<float> click(496);
  click[15] = 1;
  peak.play(click);
  EXPECT_NEAR(peak.state().peakLevel, kOneOverE, 1e-4);

  // Rounding the poles moves the time by at most 480 x 2^-25 (one pole) or 1/256 (two).
  for (const auto& [mode, bound] :
       {std::pair{DetectorMode::kSmooth, 1e-4}, std::pair{DetectorMode::kAverage, 0.6 / 256}}) {
    settings.detector = {mode, 10};
    PlayedStrip average(settings);
    average.play(1.0f, 480);
    EXPECT_NEAR(average.state().smoothLevel, 1 - kOneOverE, bound);
  }
}

TEST(PlayedDetector, OfNoTimeIsTheLevelItself) {
  StripSettings settings;
  for (const auto mode : {DetectorMode::kPeak, DetectorMode::kSmooth, DetectorMode::kAverage}) {
    settings.detector = {mode, 0};
    settings.compressor = {.threshold = -20, .ratio = 4, .knee = 0, .attack = 0, .release = 0};
    PlayedStrip strip(settings);
    // A flat top, and a fall: everywhere the gain of the sample's own level, which is -15 dB at
    // full scale and 6.02 * 3/4 dB more at half of it.
    std::vector<float> input(64, 1.0f);
    std::fill(input.begin() + 32, input.end(), 0.5f);
    const std::vector<float> output = strip.play(input);
    for (std::size_t n = 1; n < output.size(); ++n) {
      EXPECT_NEAR(db(output[n] / input[n]), n < 32 ? -15 : -15 + 4.515, 0.01) << n;
    }
  }
}

TEST(PlayedDetector, AverageReadsASine) {
  StripSettings settings;
  settings.detector = {DetectorMode::kAverage, 20};
  PlayedStrip strip(settings);
  std::vector<float> sine(96000);
  for (std::size_t n = 0; n < sine.size(); ++n) {
    sine[n] = static_cast<float>(
        std::sin(2 * std::numbers::pi * 997 * static_cast<double>(n) / PlayedStrip::kRate));
  }
  strip.play(sine);
  // The reading is 0.91 dB below the RMS value; the bound is for single precision.
  EXPECT_NEAR(db(strip.state().smoothLevel), linear_to_db(1 / std::numbers::sqrt2) - 0.912, 0.2);
}

}  // namespace
}  // namespace channelstrip::test::played_dynamics_test
