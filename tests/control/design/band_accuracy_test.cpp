#include "control/design/band_accuracy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "bands.h"

namespace channelstrip::test::band_accuracy_test {
namespace {

using namespace host;

// The library's recurrence in single precision: every step rounds once.
void run_rounded(const Section& s, std::vector<float>& samples) {
  float b[5];
  store(s, b);
  float z1 = 0, z2 = 0;
  for (float& sample : samples) {
    const float x = sample;
    const float y = std::fma(b[0], x, z1);
    z1 = std::fma(b[3], y, std::fma(b[1], x, z2));
    z2 = std::fma(b[4], y, b[2] * x);
    sample = y;
  }
}

// In dBFS RMS: what the same sections add in single precision to white noise.
double measured_noise(const BandSettings& band, double rate) {
  std::mt19937 generator(1);
  std::normal_distribution<float> white(0, static_cast<float>(db_to_linear(kNoiseInput)));
  std::vector<float> single(static_cast<std::size_t>(4 * rate));
  for (float& sample : single) sample = white(generator);
  std::vector<double> exact(single.begin(), single.end());
  for (const Section& section : design_stored_band(band, rate)) {
    run_rounded(section, single);
    exact = filtered(section, exact);
  }
  double square = 0;
  for (std::size_t i = 0; i < exact.size(); ++i) {
    const double error = static_cast<double>(single[i]) - exact[i];
    square += error * error;
  }
  return linear_to_db(std::sqrt(square / static_cast<double>(exact.size())));
}

TEST(BandAccuracy, NoiseIsThatOfTheRecurrence) {
  for (const double rate : {48000.0, 96000.0}) {
    for (const BandSettings& band :
         {BandSettings{BandType::kHighPass, 20}, BandSettings{BandType::kPeak, 30, 10, 6},
          BandSettings{BandType::kLowShelf, 100, 0.7071, 6}, BandSettings{BandType::kNotch, 50, 30},
          BandSettings{BandType::kPeak, 1000, 1, 6},
          BandSettings{.type = BandType::kHighPass, .frequency = 40, .slope = 96}}) {
      EXPECT_NEAR(band_accuracy(band, rate).noise, measured_noise(band, rate), 3)
          << static_cast<int>(band.type) << ", " << band.frequency << " Hz at " << rate;
    }
  }
}

TEST(BandAccuracy, DeviationIsWhereItSays) {
  for (const BandSettings& band :
       {BandSettings{BandType::kNotch, 33, 30}, BandSettings{BandType::kPeak, 21, 10, 12},
        BandSettings{.type = BandType::kLowPass, .frequency = 25, .slope = 96}}) {
    const BandAccuracy accuracy = band_accuracy(band, 192000);
    EXPECT_GT(accuracy.deviation, 0.3);
    const double f = accuracy.frequency;
    const double exact = decibels(response(design_band(band, 192000), f, 192000));
    const double stored = decibels(response(design_stored_band(band, 192000), f, 192000));
    EXPECT_NEAR(accuracy.deviation, std::abs(std::max(-60.0, stored) - std::max(-60.0, exact)),
                0.02);
  }
}

TEST(BandAccuracy, BandsInTheMiddleOfTheSpectrumAreExact) {
  for_every_band(BandType::kPeak, [](BandSettings band) {
    if (band.frequency < 1000) return;
    const BandAccuracy accuracy = band_accuracy(band, kRate);
    EXPECT_LT(accuracy.deviation, 0.01);
    EXPECT_LT(accuracy.noise, -100);
  });
}

}  // namespace
}  // namespace channelstrip::test::band_accuracy_test
