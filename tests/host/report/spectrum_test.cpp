#include "host/report/spectrum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "../support/audio.h"

namespace channelstrip::test::spectrum_test {
namespace {

using namespace host;

WelchSpectrum spectrum_of(const std::vector<float>& samples, double sample_rate) {
  WelchSpectrum spectrum(sample_rate);
  spectrum.add(samples);
  return spectrum;
}

std::vector<BandLevel> levels_of(const std::vector<float>& samples, double sample_rate) {
  const WelchSpectrum spectrum = spectrum_of(samples, sample_rate);
  return band_levels(spectrum.power(), spectrum.bin_width());
}

double sum(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

BandLevel highest(const std::vector<BandLevel>& levels) {
  return *std::ranges::max_element(levels, {}, &BandLevel::level);
}

// A sine fills three bins, the outer two with a sixth of its power each. The narrowest bands are
// three bins wide and half a bin apart, so a quarter of a bin may lie outside: 0.19 dB. From 100 Hz
// on a band holds all of the sine except the window's skirts.
TEST(Spectrum, SineAtFullScaleReadsZeroDecibelsAtItsFrequency) {
  for (const double rate : {44100.0, 48000.0, 96000.0}) {
    for (const double frequency : {25.0, 61.7, 1000.0, 9876.5, 15000.0}) {
      const BandLevel peak = highest(levels_of(sine(1, frequency, rate, 100000), rate));
      EXPECT_NEAR(peak.level, 0, frequency < 100 ? 0.19 : 0.01) << rate << " " << frequency;
      // It may be anywhere in the band that holds the sine: 1/12 octave, or 1.5 bins below 40 Hz.
      const double half_band = std::max(frequency * (std::exp2(1.0 / 12) - 1), 1.5 * 1.5);
      EXPECT_NEAR(peak.frequency, frequency, half_band) << rate << " " << frequency;
    }
  }
}

TEST(Spectrum, SineReadsItsLevel) {
  const double amplitude = std::pow(10, -23.0 / 20);
  EXPECT_NEAR(highest(levels_of(sine(amplitude, 997, 48000, 200000), 48000)).level, -23, 0.01);
}

TEST(Spectrum, SineIsSixtyDecibelsDownAnOctaveAway) {
  for (const auto& [frequency, level] : levels_of(sine(1, 1000, 48000, 200000), 48000)) {
    if (frequency > 500 && frequency < 2000) continue;
    EXPECT_LT(level, -60) << frequency;
  }
}

// A band of n bins averages about 2 n independent squares over some 20 segments. At 1 kHz it has 78
// bins, for a standard deviation of 0.11 dB, and less above. The bound is four of these.
TEST(Spectrum, WhiteNoiseIsFlatInItsDensity) {
  const std::vector<float> samples = noise(400000, 0.5f);
  // Uniform noise within +-a has a mean square of a^2 / 3, spread over 24 kHz.
  const double density = 10 * std::log10(2 * 0.25 / 3 / 24000);
  for (const auto& [frequency, level] : levels_of(samples, 48000)) {
    if (frequency < 1000) continue;
    const double width = frequency * (std::exp2(1.0 / 12) - std::exp2(-1.0 / 12));
    EXPECT_NEAR(level - 10 * std::log10(width), density, 0.45) << frequency;
  }
}

TEST(Spectrum, PowerSumsToTheMeanSquare) {
  // Exact up to rounding for a sine of a whole number of periods per segment.
  EXPECT_NEAR(sum(spectrum_of(sine(1, 1500, 48000, 65536), 48000).power()), 0.5, 1e-6);
}

TEST(Spectrum, SignalShorterThanASegmentReadsItsLevel) {
  EXPECT_NEAR(sum(spectrum_of(sine(1, 1000, 48000, 4800), 48000).power()), 0.5, 1e-6);
  EXPECT_NEAR(highest(levels_of(sine(1, 5000, 48000, 9600), 48000)).level, 0, 0.01);
}

TEST(Spectrum, SilenceLiesOnTheFloor) {
  for (const std::size_t frames : {0u, 1u, 100u, 100000u}) {
    for (const BandLevel& band : levels_of(std::vector<float>(frames), 48000)) {
      EXPECT_EQ(band.level, -150);
    }
  }
}

TEST(Spectrum, BandsRunFromTwentyHertzToWhereTheRateCutsThemOff) {
  const std::vector<BandLevel> levels = levels_of({}, 48000);
  EXPECT_EQ(levels.front().frequency, 20);
  // 24 kHz lie 10.229 octaves above, less half a band: 243 steps of 1/24.
  EXPECT_NEAR(levels.back().frequency, 20 * std::exp2(243 / 24.0), 1e-6);
  EXPECT_EQ(levels.size(), 244u);
}

TEST(Spectrum, StrangeRatesHaveBandsOrNone) {
  EXPECT_TRUE(levels_of(noise(100, 0.5f), 1).empty());
  EXPECT_FALSE(levels_of(noise(100, 0.5f), 8000).empty());
  EXPECT_FALSE(levels_of(noise(100, 0.5f), 10e6).empty());
}

}  // namespace
}  // namespace channelstrip::test::spectrum_test
