#include "host/loudness/loudness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <vector>

#include "../support/audio.h"
#include "../support/refusal.h"
#include "tests/control/design/records.h"

namespace channelstrip::test::loudness_test {
namespace {

using namespace host;

constexpr double kTolerance = 0.1;  // LU, EBU Tech 3341

const double kReference = std::pow(10, -23.0 / 20);

Loudness loudness_of(const std::vector<float>& frames, const char* format,
                     double sample_rate = 48000) {
  LoudnessMeter meter(sample_rate, layout_of(format));
  meter.add(frames);
  return meter.loudness();
}

// The loudness of a sine in only one channel of a format.
double alone(const char* format, const char* label) {
  const ChannelLayout layout = layout_of(format);
  const std::vector<float> mono = sine(kReference, 1000, 48000, 96000);
  std::vector<float> frames;
  for (const float sample : mono) {
    for (const std::string& each : layout.labels) frames.push_back(each == label ? sample : 0);
  }
  return loudness_of(frames, format).integrated.value_or(-100);
}

// EBU Tech 3341, test case 1.
TEST(Loudness, ReferenceToneReadsItsLevel) {
  const Loudness measured = loudness_of(sine(kReference, 1000, 48000, 20 * 48000, 2), "Stereo");
  EXPECT_NEAR(measured.integrated.value_or(0), -23, kTolerance);
  EXPECT_NEAR(measured.momentary.value_or(0), -23, kTolerance);
  EXPECT_NEAR(measured.short_term.value_or(0), -23, kTolerance);
  EXPECT_NEAR(measured.range.value_or(9), 0, kTolerance);
}

TEST(Loudness, MonoReadsThreeDecibelsLess) {
  const Loudness measured = loudness_of(sine(kReference, 1000, 48000, 5 * 48000), "Mono");
  EXPECT_NEAR(measured.integrated.value_or(0), -23 - 10 * std::log10(2), kTolerance);
}

// EBU Tech 3342, test case 1: 20 s at -20 dBFS, then 20 s at -30.
TEST(Loudness, RangeIsTheStepBetweenTwoTones) {
  std::vector<float> frames = sine(0.1, 1000, 48000, 20 * 48000, 2);
  const std::vector<float> quiet = sine(std::pow(10, -1.5), 1000, 48000, 20 * 48000, 2);
  frames.insert(frames.end(), quiet.begin(), quiet.end());
  EXPECT_NEAR(loudness_of(frames, "Stereo").range.value_or(0), 10, 1);
}

TEST(Loudness, SurroundsWeighMoreAndTheLfeNothing) {
  const double front = alone("5.1", "L");
  const double surround = 10 * std::log10(1.41);
  EXPECT_NEAR(alone("5.1", "C"), front, 1e-6);
  EXPECT_NEAR(alone("5.1", "Ls"), front + surround, 1e-6);
  EXPECT_EQ(alone("5.1", "LFE"), -100);
  EXPECT_NEAR(alone("7.1", "Rs"), front + surround, 1e-6);
  EXPECT_NEAR(alone("7.1", "Lb"), front, 1e-6);
  EXPECT_NEAR(alone("Quad", "Rs"), front + surround, 1e-6);
  EXPECT_NEAR(alone("LCRS", "S"), front, 1e-6);
}

// A sine at a quarter of the sample rate, sampled 45 degrees off its crests: the samples reach
// 0.707 of the crests.
TEST(Loudness, TruePeakLiesBetweenTheSamples) {
  std::vector<float> frames;
  for (int i = 0; i < 12000; ++i) {
    for (const float sample : {0.5f, 0.5f, -0.5f, -0.5f}) frames.push_back(sample);
  }
  const double expected = 0.5 * std::sqrt(2);
  // BS.1770's filter of 12 taps per phase is within 0.4 dB of the crest from below, 0.2 dB above.
  const double peak = loudness_of(frames, "Mono").true_peak.front();
  EXPECT_GT(peak, expected * std::pow(10, -0.4 / 20));
  EXPECT_LT(peak, expected * std::pow(10, 0.2 / 20));
}

TEST(Loudness, TruePeakIsThatOfItsChannelEvenTheLfes) {
  std::vector<float> frames(6 * 48000);
  for (std::size_t i = 3; i < frames.size(); i += 6) frames[i] = 0.25f;
  const std::vector<double> peaks = loudness_of(frames, "5.1").true_peak;
  ASSERT_EQ(peaks.size(), 6u);
  EXPECT_EQ(peaks[0], 0);
  EXPECT_GE(peaks[3], 0.25);
}

TEST(Loudness, TooShortOrTooQuietHasNone) {
  const Loudness shortest = loudness_of(sine(0.5, 1000, 48000, 4800 * 4 - 1), "Mono");
  EXPECT_FALSE(shortest.integrated || shortest.momentary || shortest.short_term || shortest.range);
  const Loudness short_one = loudness_of(sine(0.5, 1000, 48000, 4800 * 4), "Mono");
  EXPECT_TRUE(short_one.integrated && short_one.momentary);
  EXPECT_FALSE(short_one.short_term || short_one.range);
  const Loudness silent = loudness_of(std::vector<float>(5 * 48000), "Mono");
  EXPECT_FALSE(silent.integrated || silent.momentary || silent.short_term || silent.range);
}

TEST(Loudness, DoesNotDependOnTheCutting) {
  const std::vector<float> frames = sine(0.3, 440, 44100, 50000, 2);
  const Loudness whole = loudness_of(frames, "Stereo", 44100);
  LoudnessMeter meter(44100, layout_of("Stereo"));
  for (std::size_t i = 0; i < frames.size(); i += 2 * 777) {
    meter.add(std::span(frames).subspan(i, std::min<std::size_t>(2 * 777, frames.size() - i)));
  }
  EXPECT_EQ(meter.loudness().integrated, whole.integrated);
  EXPECT_EQ(meter.loudness().momentary, whole.momentary);
  EXPECT_EQ(meter.loudness().true_peak, whole.true_peak);
}

TEST(Loudness, RefusesARateThatCannotBeMeasured) {
  EXPECT_EQ(refusal<std::invalid_argument>([] { LoudnessMeter(8, layout_of("Mono")); }),
            "no loudness can be measured at 8 Hz");
}

}  // namespace
}  // namespace channelstrip::test::loudness_test
