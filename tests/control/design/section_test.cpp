#include "control/design/section.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

#include "bands.h"
#include "refused.h"

namespace channelstrip::test::section_test {
namespace {

using namespace host;

TEST(Section, IsUnstableWithAPoleOnTheUnitCircleOrOutside) {
  EXPECT_TRUE(is_stable({.a1 = 0.999}));
  EXPECT_FALSE(is_stable({.a1 = 1}));
  EXPECT_FALSE(is_stable({.a1 = -1}));
  EXPECT_TRUE(is_stable({.a1 = 1.5, .a2 = -0.999}));
  EXPECT_FALSE(is_stable({.a1 = 1.5, .a2 = -1}));
  EXPECT_FALSE(is_stable({.a1 = 1.5, .a2 = -0.5}));
  EXPECT_FALSE(is_stable({.a1 = -1.5, .a2 = -0.5}));
}

TEST(Section, RefusalTellsWhereTheOutermostPoleStands) {
  const std::string before =
      "frequency 1000 Hz, q 0.7071 and gain 0 dB leave no stable filter in single precision at "
      "48000 "
      "Hz: ";
  const auto refused = [&](const Section& section) {
    const std::string all = words_of({.why = UnstableBand{{}, kRate, section}});
    EXPECT_TRUE(all.starts_with(before)) << all;
    return all.substr(before.size());
  };
  EXPECT_EQ(refused({.a1 = -1.25}), "a pole stands at radius 1.25");
  EXPECT_EQ(refused({.a1 = 2.5, .a2 = -1}), "a pole stands at radius 2");  // 2 and 1/2
  EXPECT_EQ(refused({.a2 = -2.25}), "a pole stands at radius 1.5");        // 1.5 i and -1.5 i
  EXPECT_EQ(refused({.b0 = std::numeric_limits<double>::infinity()}),
            "coefficients are not finite");
  EXPECT_EQ(refused({.a2 = std::numeric_limits<double>::quiet_NaN()}),
            "coefficients are not finite");
}

TEST(Section, PolesAreTheRootsOfTheDenominator) {
  const auto real = poles({.a1 = 0.7, .a2 = -0.1});  // z^2 - 0.7 z + 0.1
  EXPECT_NEAR(real[0].real(), 0.5, 1e-15);
  EXPECT_NEAR(real[1].real(), 0.2, 1e-15);
  const auto pair = poles({.a1 = 0.6, .a2 = -0.25});
  EXPECT_LT(std::abs(pair[0] - std::complex(0.3, 0.4)), 1e-15);
  EXPECT_LT(std::abs(pair[1] - std::complex(0.3, -0.4)), 1e-15);
  const auto one = poles({.a1 = -0.5});
  EXPECT_EQ(one[0], -0.5);
  EXPECT_EQ(one[1], 0.0);
}

// The roots are about 0.5 and 1e-9: computing the small one as a difference would lose its digits.
TEST(Section, SmallPoleBesideALargeOneKeepsItsDigits) {
  const auto both = poles({.a1 = 0.5 + 1e-9, .a2 = -0.5e-9});
  EXPECT_NEAR(both[1].real(), 1e-9, 1e-24);
}

TEST(Section, ZerosAreTheRootsOfTheNumerator) {
  const auto notch = zeros({.b0 = 2, .b1 = 0, .b2 = 2});
  EXPECT_EQ(notch[0], std::complex(0.0, 1.0));
  EXPECT_EQ(notch[1], std::complex(0.0, -1.0));
  const auto infinite = zeros({.b0 = 0, .b1 = 1, .b2 = 0.25});
  EXPECT_TRUE(std::isinf(infinite[0].real()));
  EXPECT_EQ(infinite[1], -0.25);
}

TEST(Section, SectionsInARowMultiply) {
  const std::vector<Section> both{{.b0 = 0.5, .a1 = 0.5}, {.b0 = 1, .b1 = 1}};
  for (const double frequency : {0.0, 3000.0, 24000.0}) {
    EXPECT_LT(std::abs(response(both, frequency, kRate) -
                       response(both[0], frequency, kRate) * response(both[1], frequency, kRate)),
              1e-15);
  }
  EXPECT_EQ(response(std::vector<Section>{}, 1000, kRate), 1.0);
}

TEST(Section, ResponseIsTheSpectrumOfTheRecurrencesImpulseResponse) {
  for (const BandType type : kEveryType) {
    const Section section = design_band({type, 3000, 1.5, 9}, kRate).front();
    // With poles of radius 0.95 at most, 1e-22 of the response is left after 1000 samples.
    for (const std::complex<double> pole : poles(section)) ASSERT_LT(std::abs(pole), 0.95);
    std::vector<double> impulse(1000);
    impulse[0] = 1;
    impulse = filtered(section, impulse);
    for (const double frequency : {0.0, 100.0, 3000.0, 10000.0, 24000.0}) {
      std::complex<double> sum = 0;
      for (std::size_t n = 0; n < impulse.size(); ++n) {
        sum += impulse[n] *
               std::polar(1.0, -2 * std::numbers::pi * frequency / kRate * static_cast<double>(n));
      }
      EXPECT_LT(std::abs(sum - response(section, frequency, kRate)), 1e-10) << frequency << " Hz";
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::section_test
