#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "bands.h"
#include "control/design/bilinear.h"

namespace channelstrip::test::cookbook_test {
namespace {

using namespace host;

void expect_section(const BandSettings& band, const Section& expected) {
  const auto sections = design_band(band, kRate);
  ASSERT_EQ(sections.size(), 1u);
  const Section& s = sections.front();
  // A few roundings, and the gains' 1e-13 dB.
  constexpr double kBound = 1e-13;
  EXPECT_NEAR(s.b0, expected.b0, kBound);
  EXPECT_NEAR(s.b1, expected.b1, kBound);
  EXPECT_NEAR(s.b2, expected.b2, kBound);
  EXPECT_NEAR(s.a1, expected.a1, kBound);
  EXPECT_NEAR(s.a2, expected.a2, kBound);
}

// At a sixth of the rate cos w = 1/2 and sin w = sqrt(3)/2, so with Q = sqrt(3)/2 the cookbook's
// alpha is 1/2, and its coefficients can be worked out by hand.
const double kQ = std::sqrt(3) / 2;
constexpr double kSixth = kRate / 6;
constexpr double kTwice = 12.041199826559248;      // dB: A = 2
constexpr double kFourTimes = 24.082399653118496;  // A = 4

TEST(Cookbook, PassesAreTheWorkedOnes) {
  // b = (1/4, 1/2, 1/4) and (3/4, -3/2, 3/4), a = (3/2, -1, 1/2)
  expect_section({BandType::kLowPass, kSixth, kQ}, {1. / 6, 1. / 3, 1. / 6, 2. / 3, -1. / 3});
  expect_section({BandType::kHighPass, kSixth, kQ}, {0.5, -1, 0.5, 2. / 3, -1. / 3});
  // b = (1/2, 0, -1/2), (1, -1, 1) and (1/2, -1, 3/2)
  expect_section({BandType::kBandPass, kSixth, kQ}, {1. / 3, 0, -1. / 3, 2. / 3, -1. / 3});
  expect_section({BandType::kNotch, kSixth, kQ}, {2. / 3, -2. / 3, 2. / 3, 2. / 3, -1. / 3});
  expect_section({BandType::kAllPass, kSixth, kQ}, {1. / 3, -2. / 3, 1, 2. / 3, -1. / 3});
}

TEST(Cookbook, PeakIsTheWorkedOne) {
  // b = (2, -1, 0), a = (5/4, -1, 3/4)
  expect_section({BandType::kPeak, kSixth, kQ, kTwice}, {1.6, -0.8, 0, 0.8, -0.6});
}

TEST(Cookbook, ShelvesAreTheWorkedOnes) {
  // 2 sqrt(A) alpha = 2: b = (22, 4, 6), a = (8.5, -11, 4.5)
  expect_section({BandType::kLowShelf, kSixth, kQ, kFourTimes},
                 {22 / 8.5, 4 / 8.5, 6 / 8.5, 11 / 8.5, -4.5 / 8.5});
  // b = (34, -44, 18), a = (5.5, 1, 1.5)
  expect_section({BandType::kHighShelf, kSixth, kQ, kFourTimes},
                 {34 / 5.5, -44 / 5.5, 18 / 5.5, -1 / 5.5, -1.5 / 5.5});
}

// At a quarter of the rate s = (1 - z^-1) / (1 + z^-1).
TEST(Cookbook, FirstOrderSectionsAreTheWorkedOnes) {
  expect_section({.type = BandType::kLowPass, .frequency = kRate / 4, .slope = 6}, {0.5, 0.5});
  expect_section({.type = BandType::kHighPass, .frequency = kRate / 4, .slope = 6}, {0.5, -0.5});
  // (2 s + 1) / (s + 2)
  expect_section({BandType::kTilt, kRate / 4, 1, kTwice}, {1, -1. / 3, 0, -1. / 3, 0});
}

TEST(Cookbook, PeakLeavesBothEndsOfTheSpectrum) {
  for_every_band(BandType::kPeak, BandDesign::kCookbook, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, 0), 0, kRounding);
    EXPECT_NEAR(db_at(band, kRate / 2), 0, kRounding);
  });
}

TEST(Cookbook, ShelfHasItsGainAtItsEndAndNoneAtTheOther) {
  for_every_band(BandType::kLowShelf, BandDesign::kCookbook, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, 0), band.gain, kRounding);
    EXPECT_NEAR(db_at(band, kRate / 2), 0, kRounding);
  });
  for_every_band(BandType::kHighShelf, BandDesign::kCookbook, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, 0), 0, kRounding);
    EXPECT_NEAR(db_at(band, kRate / 2), band.gain, kRounding);
  });
}

TEST(Cookbook, PassKeepsOneEndAndStopsTheOther) {
  for_every_band(BandType::kLowPass, BandDesign::kCookbook, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, 0), 0, kRounding);
    EXPECT_LT(db_at(band, kRate / 2), -250);
  });
  for_every_band(BandType::kHighPass, BandDesign::kCookbook, [](const BandSettings& band) {
    EXPECT_LT(db_at(band, 0), -200);
    EXPECT_NEAR(db_at(band, kRate / 2), 0, kRounding);
  });
}

// The bilinear transform warps the frequency axis and keeps everything else, the phase included.
TEST(Cookbook, ResponseIsTheAnalogOneAtTheBentFrequency) {
  for (const BandType type : kEveryType) {
    for_every_band(type, BandDesign::kCookbook, [](const BandSettings& band) {
      const auto bent = [](double f) { return std::tan(std::numbers::pi * f / kRate); };
      for (const double frequency : {15.0, 900.0, 7000.0, 21000.0}) {
        const auto analog =
            analog_response(band, band.frequency * bent(frequency) / bent(band.frequency));
        const auto digital = response(design_band(band, kRate), frequency, kRate);
        EXPECT_LT(std::abs(digital - analog), 1e-9 * std::max(1.0, std::abs(analog)));
      }
    });
  }
}

}  // namespace
}  // namespace channelstrip::test::cookbook_test
