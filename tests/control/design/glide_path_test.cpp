// A band's response while its coefficients glide along a straight line from one setting to another.

#include <gtest/gtest.h>

#include <algorithm>

#include "bands.h"

namespace channelstrip::test::glide_path_test {
namespace {

using namespace host;

double greatest(const Section& section) {
  double most = -1000;
  for (double f = 20; f < kRate / 2; f *= 1.05) {
    most = std::max(most, decibels(response(section, f, kRate)));
  }
  return most;
}

Section between(const Section& from, const Section& to, double part) {
  const auto mix = [part](double x, double y) { return x + part * (y - x); };
  return {mix(from.b0, to.b0), mix(from.b1, to.b1), mix(from.b2, to.b2), mix(from.a1, to.a1),
          mix(from.a2, to.a2)};
}

// By how many dB the response on the way exceeds the greatest response at either end.
double swell(BandSettings band, double octaves) {
  const Section from = design_band(band, kRate).front();
  band.frequency *= std::exp2(octaves);
  const Section to = design_band(band, kRate).front();
  double most = -1000;
  for (int i = 1; i < 16; ++i) most = std::max(most, greatest(between(from, to, i / 16.0)));
  return most - std::max(greatest(from), greatest(to));
}

TEST(GlidePath, OverAnOctaveSwellsByHalfADecibelAtMost) {
  for (const BandDesign design : kBothDesigns) {
    for (const BandType type : kEveryType) {
      for (const double frequency : {40.0, 200.0, 1000.0, 5000.0}) {
        for (const double gain : {-12.0, 12.0}) {
          const BandSettings band{type, frequency, 1, gain, design};
          EXPECT_LE(swell(band, 1), 0.5) << static_cast<int>(type) << ' ' << frequency;
        }
      }
    }
  }
}

// The figures that the documents give for a Butterworth pass.
TEST(GlidePath, OverSeveralOctavesSwells) {
  const BandSettings pass{.type = BandType::kHighPass, .frequency = 60, .q = std::sqrt(0.5)};
  EXPECT_NEAR(swell(pass, 2), 0.6, 0.1);
  EXPECT_NEAR(swell(pass, 3), 2, 0.1);
}

}  // namespace
}  // namespace channelstrip::test::glide_path_test
