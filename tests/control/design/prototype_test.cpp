#include "control/design/prototype.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "bands.h"
#include "refused.h"

namespace channelstrip::test::prototype_test {
namespace {

using namespace host;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kBound = 1e-9;  // dB; a few roundings make 1e-14

double analog_db(const BandSettings& band, double frequency) {
  return decibels(analog_response(band, frequency));
}

// The Qs of the second-order sections, in ascending order.
std::vector<double> qs(int slope) {
  std::vector<double> found;
  for (const AnalogSection& section : prototype({.type = BandType::kLowPass, .slope = slope})) {
    if (section.denominator.c2 != 0) found.push_back(1 / section.denominator.c1);
  }
  return found;
}

TEST(Prototype, ButterworthSectionsHaveThePublishedQs) {
  const std::pair<int, std::vector<double>> published[] = {
      {3, {1}},
      {4, {0.5412, 1.3066}},
      {5, {0.6180, 1.6180}},
      {6, {0.5176, 0.7071, 1.9319}},
      {7, {0.5550, 0.8019, 2.2470}},
      {8, {0.5098, 0.6013, 0.9000, 2.5629}},
      {10, {0.5062, 0.5612, 0.7071, 1.1013, 3.1962}}};
  for (const auto& [order, expected] : published) {
    const std::vector<double> found = qs(6 * order);
    ASSERT_EQ(found.size(), expected.size()) << order;
    for (std::size_t k = 0; k < found.size(); ++k)
      EXPECT_NEAR(found[k], expected[k], 6e-5) << order;
  }
}

TEST(Prototype, ButterworthMagnitudeIsMaximallyFlat) {
  for (int order = 1; order <= 16; ++order) {
    for (const double x : {0.1, 0.5, 0.9, 1.0, 1.2, 3.0}) {
      const double power = 10 * std::log10(1 + std::pow(x, 2 * order));
      BandSettings pass{.type = BandType::kLowPass, .frequency = 1000, .slope = 6 * order};
      pass.q = std::numbers::sqrt2 / 2;  // used at 12 dB/oct only
      EXPECT_NEAR(analog_db(pass, 1000 * x), -power, kBound) << order << " " << x;
      pass.type = BandType::kHighPass;
      EXPECT_NEAR(analog_db(pass, 1000 / x), -power, kBound) << order << " " << x;
    }
  }
}

TEST(Prototype, TakesASectionForTwoOrders) {
  for (int order = 1; order <= 16; ++order) {
    const BandSettings pass{.type = BandType::kHighPass, .slope = 6 * order};
    EXPECT_EQ(section_count(pass), (order + 1) / 2);
    EXPECT_EQ(prototype(pass).size(), static_cast<std::size_t>(section_count(pass)));
  }
  EXPECT_EQ(section_count({.type = BandType::kNotch, .slope = 96}), 1);
}

// A peak band has half its gain in dB where x - 1/x = +-1/Q, x being the relative frequency.
TEST(Prototype, PeaksHalfGainPointsAreItsFrequencyOverQApart) {
  for (const double q : {0.3, 1.0, 8.0}) {
    for (const double gain : {-18.0, 3.0, 24.0}) {
      const BandSettings peak{BandType::kPeak, 1000, q, gain};
      const double centre = std::sqrt(1 + 1 / (4 * q * q));
      EXPECT_NEAR(analog_db(peak, 1000 * (centre - 1 / (2 * q))), gain / 2, kBound);
      EXPECT_NEAR(analog_db(peak, 1000 * (centre + 1 / (2 * q))), gain / 2, kBound);
      EXPECT_NEAR(analog_db(peak, 1000), gain, kBound);
    }
  }
}

TEST(Prototype, BandPassAndNotchLoseThreeDecibelsAtTheirEdges) {
  for (const double q : {0.3, 1.0, 8.0}) {
    const double edge = 1000 * (std::sqrt(1 + 1 / (4 * q * q)) + 1 / (2 * q));
    EXPECT_NEAR(analog_db({BandType::kBandPass, 1000, q}, 1000), 0, kBound);
    EXPECT_NEAR(analog_db({BandType::kBandPass, 1000, q}, edge), -10 * std::log10(2), kBound);
    EXPECT_EQ(analog_response({BandType::kNotch, 1000, q}, 1000), 0.0);
    EXPECT_NEAR(analog_db({BandType::kNotch, 1000, q}, edge), -10 * std::log10(2), kBound);
  }
}

TEST(Prototype, TiltTurnsAboutItsFrequency) {
  for (const double gain : {-12.0, 6.0}) {
    const BandSettings tilt{BandType::kTilt, 700, 1, gain};
    EXPECT_NEAR(analog_db(tilt, 0), -gain / 2, kBound);
    EXPECT_NEAR(analog_db(tilt, 700), 0, kBound);
    EXPECT_NEAR(analog_db(tilt, 7e12), gain / 2, kBound);
    for (const double x : {1.5, 4.0, 30.0}) {
      EXPECT_NEAR(analog_db(tilt, 700 * x), -analog_db(tilt, 700 / x), kBound);
    }
  }
}

// The slope at the corner is proportional to S: with 12 dB, S = 1/2 has half the slope of S = 1.
TEST(Prototype, ShelfSlopeSetsTheSlopeAtTheCorner) {
  const auto slope = [](BandType type, double s) {
    const BandSettings shelf{.type = type, .frequency = 1000, .gain = 12, .shelf_slope = s};
    return analog_db(shelf, 1000.1) - analog_db(shelf, 999.9);
  };
  for (const BandType type : {BandType::kLowShelf, BandType::kHighShelf}) {
    EXPECT_NEAR(slope(type, 0.5) / slope(type, 1), 0.5, 1e-6);
    EXPECT_NEAR(slope(type, 0.25) / slope(type, 1), 0.25, 1e-6);
  }
}

TEST(Prototype, ShelfSlopeOfOneIsAQOfRootHalf) {
  for (const double gain : {-20.0, 0.0, 6.0}) {
    const auto by_slope = prototype({.type = BandType::kLowShelf, .gain = gain, .shelf_slope = 1});
    const auto by_q =
        prototype({.type = BandType::kLowShelf, .q = std::numbers::sqrt2 / 2, .gain = gain});
    EXPECT_NEAR(by_slope[0].denominator.c1, by_q[0].denominator.c1, 1e-15);
  }
}

std::string refused(const BandSettings& band) {
  return words(refusal_of(band, kRate));
}

TEST(Prototype, RefusesASlopeThatIsNoPasss) {
  const auto with = [](int slope) { return refused({.type = BandType::kLowPass, .slope = slope}); };
  EXPECT_EQ(with(0), "slope 0 dB/oct is not 6, 12, 18 ... 96 dB/oct");
  EXPECT_EQ(with(20), "slope 20 dB/oct is not 6, 12, 18 ... 96 dB/oct");
  EXPECT_EQ(with(102), "slope 102 dB/oct is not 6, 12, 18 ... 96 dB/oct");
  EXPECT_EQ(with(96), "");
  EXPECT_EQ(refused({.type = BandType::kHighPass, .slope = 13}),
            "slope 13 dB/oct is not 6, 12, 18 ... 96 dB/oct");
}

// (A^2 + 1) / (A - 1)^2 is 5 for A = 2.
TEST(Prototype, RefusesAShelfSlopeWithoutARealQ) {
  const auto with = [](double s, double gain) {
    return refused({.type = BandType::kHighShelf, .gain = gain, .shelf_slope = s});
  };
  constexpr double kTwice = 12.041199826559248;  // dB: A = 2
  EXPECT_EQ(with(0, kTwice),
            "shelf_slope 0 is not above 0 and below 5 at a gain of 12.041199826559248 dB");
  EXPECT_EQ(with(-1, 6), "shelf_slope -1 is not above 0 and below 17.6 at a gain of 6 dB");
  EXPECT_EQ(with(5.1, -12), "shelf_slope 5.1 is not above 0 and below 5.029 at a gain of -12 dB");
  EXPECT_EQ(with(4.999, kTwice), "");
  EXPECT_EQ(with(kNan, 0), "shelf_slope nan is not above 0 and finite");
  EXPECT_EQ(with(1000, 0), "");
}

TEST(Prototype, DoesNotReadWhatItsTypeDoesNotUse) {
  EXPECT_EQ(refused({.type = BandType::kNotch, .gain = kNan, .shelf_slope = -1, .slope = 7}), "");
  EXPECT_EQ(refused({.type = BandType::kTilt, .q = 0}), "");
  EXPECT_EQ(refused({.type = BandType::kLowPass, .q = 0, .slope = 24}), "");
  EXPECT_EQ(refused({.type = BandType::kLowShelf, .q = 0, .shelf_slope = 1}), "");
  EXPECT_EQ(refused({.type = BandType::kLowPass, .q = 0}), "q 0 is not above 0 and finite");
  EXPECT_EQ(refused({.type = BandType::kTilt, .gain = kNan}), "gain nan dB is not -200 to 200 dB");
}

TEST(Prototype, RefusesABandsFrequencyThatIsNotAboveZero) {
  EXPECT_EQ(refused({.frequency = 0}), "frequency 0 Hz is not above 0 Hz");
}

}  // namespace
}  // namespace channelstrip::test::prototype_test
