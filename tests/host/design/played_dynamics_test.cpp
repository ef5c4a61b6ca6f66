// What the library makes of the design's coefficients.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/design/dynamics.h"
#include "played_strip.h"

namespace channelstrip::test {
namespace {

using namespace host;

constexpr double kRate = PlayedStrip::kRate;
constexpr double kOneOverE = 1 / std::numbers::e;

// Decibels of a resting level in and its gain out: 3e-6 and 7e-6 octaves, and the term's floats.
constexpr double kConversions = 2e-4;

// How far a term may rest from its target, moved by the weight of a time: half its last digit by
// the weight.
double short_of(double gain, double milliseconds) {
  return 0x1p-24 * std::abs(gain) / one_pole_weight(milliseconds, kRate);
}

// Passes the level as it is.
constexpr DetectorSettings kImmediate{DetectorMode::kSmooth, 0};

float linear(double db) {
  return static_cast<float>(db_to_linear(db));
}
double db(float linear) {
  return linear_to_db(static_cast<double>(linear));
}

// The gain in dB of a level that has rested for a second.
double settled_gain(PlayedStrip& strip, double level) {
  return db(strip.play(linear(level), 48000).back()) - level;
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

// From rest at 0 dB towards -12 dB: after the attack 1/e of the way is left, and likewise back.
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

// The gain stays for the hold and has then 1/e of
// its way left after the release.
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
  strip.play(0.01f, 48000);  // 20 dB below
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

  // The poles' roundings move the time by 480 x 2^-25 and 1/256 at most.
  for (const auto& [mode, bound] :
       {std::pair{DetectorMode::kSmooth, 1e-4}, std::pair{DetectorMode::kRms, 0.6 / 256}}) {
    settings.detector = {mode, 10};
    PlayedStrip average(settings);
    average.play(1.0f, 480);
    EXPECT_NEAR(average.state().smoothLevel, 1 - kOneOverE, bound);
  }
}

TEST(PlayedDetector, RmsReadsASine) {
  StripSettings settings;
  settings.detector = {DetectorMode::kRms, 20};
  PlayedStrip strip(settings);
  std::vector<float> sine(96000);
  for (std::size_t n = 0; n < sine.size(); ++n) {
    sine[n] =
        static_cast<float>(std::sin(2 * std::numbers::pi * 997 * static_cast<double>(n) / kRate));
  }
  strip.play(sine);
  // 0.91 dB below the RMS value, as far as single precision reads.
  EXPECT_NEAR(db(strip.state().smoothLevel), linear_to_db(1 / std::numbers::sqrt2) - 0.912, 0.2);
}

// Of the way from 0 to 12 dB of makeup; a glide step stands for its four samples.
TEST(PlayedGlide, CoversItsShareInItsTime) {
  StripSettings settings;
  settings.compressor.emplace();
  settings.glide = 20;
  PlayedStrip strip(settings);
  strip.play(0.001f, 16);
  settings.compressor->makeup = 12;
  strip.set(settings);
  const double gain = static_cast<double>(strip.play(0.001f, 960).back()) / 0.001;
  const double to = db_to_linear(12);
  EXPECT_NEAR(gain, to + (1 - to) * kOneOverE, 1e-4);
}

TEST(PlayedGlide, TakesTheEqualiserAlong) {
  StripSettings settings;
  settings.pre = {{.frequency = 3000, .gain = 0}};
  settings.glide = 20;
  PlayedStrip strip(settings);
  const double from = strip.context().eqDezipCoefs->smoothedCoefs[0];
  settings.pre[0].gain = 12;
  strip.set(settings);
  const auto to = static_cast<double>(strip.context().eqTargetCoefs->targetCoefs[0]);
  ASSERT_GT(to, from + 0.1);
  strip.play(0.0f, 960);
  EXPECT_NEAR(strip.context().eqDezipCoefs->smoothedCoefs[0], to + (from - to) * kOneOverE, 1e-5);
}

TEST(PlayedMakeup, AutoAddsToTheUsersOwn) {
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .makeup = 2, .auto_makeup = true};
  PlayedStrip strip(settings);
  EXPECT_NEAR(settled_gain(strip, -60), 2 + 7.5, kConversions);
}

TEST(PlayedModes, BypassLeavesTheAudioAlone) {
  StripSettings settings;
  settings.compressor = {.threshold = -40, .ratio = 10};
  settings.pre = {{.gain = 12}};
  settings.bypass = true;
  PlayedStrip strip(settings);
  const std::vector<float> output = strip.play(0.5f, 4800);
  EXPECT_EQ(std::ranges::count(output, 0.5f), 4800);
  EXPECT_LT(strip.state().compGain, -10);
}

TEST(PlayedModes, KeyOpensTheDynamicsWhereItIsEnabledAndThere) {
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .knee = 0, .attack = 0};
  settings.detector = kImmediate;
  settings.key_enable = true;
  const std::vector<float> audio(4800, linear(-40)), key(4800, linear(-8));
  EXPECT_NEAR(db(PlayedStrip(settings).play(audio, key).back()), -49, kConversions);
  EXPECT_NEAR(db(PlayedStrip(settings).play(audio).back()), -40, kConversions);
  settings.key_enable = false;
  EXPECT_NEAR(db(PlayedStrip(settings).play(audio, key).back()), -40, kConversions);
}

TEST(PlayedModes, ListeningGivesTheFilteredKey) {
  StripSettings settings;
  settings.key_filter = {.type = BandType::kLowShelf, .frequency = 1000, .gain = 6};
  settings.key_enable = settings.key_listen = true;
  const std::vector<float> audio(48000, 0.5f), key(48000, 0.1f);
  EXPECT_NEAR(db(PlayedStrip(settings).play(audio, key).back()), -20 + 6, kConversions);
}

TEST(PlayedModes, InputMeterGainMovesTheInputMeterAlone) {
  StripSettings settings;
  PlayedStrip plain(settings);
  settings.input_meter_gain = 6;
  PlayedStrip scaled(settings);
  EXPECT_EQ(scaled.play(0.25f, 16), plain.play(0.25f, 16));
  EXPECT_NEAR(db(scaled.meters().input_peak[0]), db(plain.meters().input_peak[0]) + 6, 1e-5);
  EXPECT_EQ(scaled.meters().output_peak[0], plain.meters().output_peak[0]);
}

}  // namespace
}  // namespace channelstrip::test
