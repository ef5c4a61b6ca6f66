#include "plugins/view/spectrum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace channelstrip::view_spectrum_test {
namespace {

constexpr double kRate = 48000;

double frequency_of(std::size_t point) {
  const double position = static_cast<double>(point) / (view::kSpectrumPoints - 1);
  return view::kLowestFrequency *
         std::pow(view::kHighestFrequency / view::kLowestFrequency, position);
}

std::vector<float> sine(std::size_t frames, double frequency, double amplitude) {
  std::vector<float> samples(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    samples[i] = static_cast<float>(
        amplitude *
        std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / kRate + 0.3));
  }
  return samples;
}

view::Spectrum levels_of(view::SpectrumAnalyser& analyser, const std::vector<float>& samples) {
  analyser.clear();
  analyser.add(samples);
  return analyser.levels();
}

// Between bins, too; at low frequencies the band is as wide as the window's lobe.
TEST(Spectrum, ShowsASineAtItsLevel) {
  view::SpectrumAnalyser analyser(kRate);
  for (const double frequency : {25.0, 61.7, 440.0, 1003.3, 9000.0, 18000.0}) {
    const auto levels = levels_of(analyser, sine(analyser.frames(), frequency, 0.1));
    const auto top = std::ranges::max_element(levels);
    EXPECT_NEAR(*top, -20, 0.5) << frequency;
    const double found = frequency_of(static_cast<std::size_t>(top - levels.begin()));
    // Within half a sixth of an octave or the lobe's half width.
    const double bin = kRate / static_cast<double>(analyser.frames());
    EXPECT_NEAR(found, frequency, std::max(0.062 * frequency, 2 * bin)) << frequency;
  }
}

TEST(Spectrum, FallsOffBesideASine) {
  view::SpectrumAnalyser analyser(kRate);
  const auto levels = levels_of(analyser, sine(analyser.frames(), 1000, 1));
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const double octaves = std::abs(std::log2(frequency_of(i) / 1000));
    if (octaves > 0.5) {
      EXPECT_LT(levels[i], -80) << frequency_of(i);
    }
  }
}

// White noise of variance v has the power v w in a band of w times half the rate; a sine of that
// power has the level 10 lg(2 v w).
TEST(Spectrum, ShowsNoiseByThePowerInEachSixthOfAnOctave) {
  view::SpectrumAnalyser analyser(kRate);
  std::minstd_rand random(3);
  std::uniform_real_distribution<float> uniform(-1, 1);
  std::vector<double> sums(view::kSpectrumPoints);
  constexpr int kTimes = 64;
  for (int n = 0; n < kTimes; ++n) {
    std::vector<float> samples(analyser.frames());
    for (float& x : samples) x = uniform(random);
    const auto levels = levels_of(analyser, samples);
    for (std::size_t i = 0; i < levels.size(); ++i) {
      sums[i] += std::pow(10, static_cast<double>(levels[i]) / 10) / kTimes;
    }
  }
  for (std::size_t i = 0; i < sums.size(); ++i) {
    const double f = frequency_of(i);
    if (f < 500 || f > 20000) continue;
    const double share = f * (std::exp2(1.0 / 12) - std::exp2(-1.0 / 12)) / (kRate / 2);
    EXPECT_NEAR(10 * std::log10(sums[i]), 10 * std::log10(2.0 / 3 * share), 1) << f;
  }
}

TEST(Spectrum, TakesTheLouderChannel) {
  view::SpectrumAnalyser analyser(kRate);
  analyser.clear();
  analyser.add(sine(analyser.frames(), 200, 0.1));
  analyser.add(sine(analyser.frames(), 5000, 1));
  const auto both = analyser.levels();
  const auto at = [&](double frequency) {
    std::size_t nearest = 0;
    while (frequency_of(nearest) < frequency) ++nearest;
    return both[nearest];
  };
  EXPECT_NEAR(at(200), -20, 0.5);
  EXPECT_NEAR(at(5000), 0, 0.5);
}

TEST(Spectrum, OfWhatIsNotANumberIsThatOfSilence) {
  view::SpectrumAnalyser analyser(kRate);
  const std::vector<float> samples(analyser.frames(), std::nanf(""));
  for (const float level : levels_of(analyser, samples)) EXPECT_EQ(level, view::kSilence);
}

TEST(Spectrum, IsThereAtEverySampleRate) {
  for (const double rate : {1000.0, 8000.0, 44100.0, 192000.0, 1000000.0}) {
    view::SpectrumAnalyser analyser(rate);
    EXPECT_GE(static_cast<double>(analyser.frames()), std::min(rate / 6, 65536.0));
    for (const float level : levels_of(analyser, std::vector<float>(analyser.frames(), 0.5f))) {
      EXPECT_TRUE(std::isfinite(level)) << rate;
    }
  }
}

TEST(Spectrum, RisesAtOnceAndFallsSlowly) {
  view::Spectrum shown, loud, silent;
  shown.fill(-60);
  loud.fill(0);
  silent.fill(-200);
  view::follow(shown, loud, 0.05);
  EXPECT_NEAR(shown[0], -60 / std::numbers::e, 0.01);
  shown.fill(0);
  view::follow(shown, silent, 0.5);
  EXPECT_FLOAT_EQ(shown[0], -12);
}

}  // namespace
}  // namespace channelstrip::view_spectrum_test
