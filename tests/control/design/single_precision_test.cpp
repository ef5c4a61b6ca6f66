#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

#include "bands.h"
#include "control/design/averaging_section.h"
#include "control/design/band.h"
#include "control/design/single_precision.h"

namespace channelstrip::test::single_precision_test {
namespace {

using namespace host;

// Half the distance from a float's magnitude to the next one: the most that rounding to it has
// moved a value.
double half_step(double value) {
  const auto magnitude = static_cast<float>(std::abs(value));
  const float next = std::nextafter(magnitude, std::numeric_limits<float>::infinity());
  return static_cast<double>(next - magnitude) / 2;
}

double numerator_at_0_hz(const Section& s) {
  return s.b0 + s.b1 + s.b2;
}
double denominator_at_0_hz(const Section& s) {
  return 1 - s.a1 - s.a2;
}

template <typename Check>
void for_low_bands(BandType type, Check check) {
  for (const double frequency : {20.0, 33.0, 80.0, 250.0, 1000.0}) {
    for (const double q : {0.5, 0.7071, 3.0}) {
      for (const double gain : {-12.0, -1.5, 3.0, 12.0}) {
        SCOPED_TRACE(testing::Message() << frequency << " Hz, q " << q << ", " << gain << " dB");
        check(design_band({type, frequency, q, gain}, 96000).front());
      }
    }
  }
}

TEST(SinglePrecision, EveryCoefficientIsAFloatNextToItsOwn) {
  for_low_bands(BandType::kLowShelf, [](const Section& exact) {
    const Section rounded = rounded_section(exact);
    const double gain = numerator_at_0_hz(exact) / denominator_at_0_hz(exact);
    const double a1_step = half_step(rounded.a1);
    const double a2_step = half_step(rounded.a2);
    const double b_steps = half_step(rounded.b0) + half_step(rounded.b1) + half_step(rounded.b2);
    EXPECT_LE(std::abs(rounded.a1 - exact.a1), a1_step);
    EXPECT_LE(std::abs(rounded.b0 - exact.b0), half_step(rounded.b0));
    EXPECT_LE(std::abs(rounded.b1 - exact.b1), half_step(rounded.b1));
    // The coefficient rounded last in each sum compensates for the others: a2 for a1, b2 for b0, b1
    // and the denominator.
    EXPECT_LE(std::abs(rounded.a2 - exact.a2), a1_step + a2_step);
    EXPECT_LE(std::abs(rounded.b2 - exact.b2), b_steps + gain * a2_step);
    for (const double value : {rounded.b0, rounded.b1, rounded.b2, rounded.a1, rounded.a2}) {
      EXPECT_EQ(value, static_cast<double>(static_cast<float>(value)));
    }
  });
}

// At 0 Hz the denominator is only w^2 of the band. If coefficients were rounded independently, a1
// alone would move it by twice the bound.
TEST(SinglePrecision, OnlyTheLastRoundingMovesTheDenominatorAtZeroHertz) {
  for (const BandType type : {BandType::kPeak, BandType::kLowShelf, BandType::kHighPass}) {
    for_low_bands(type, [](const Section& exact) {
      const Section rounded = rounded_section(exact);
      EXPECT_LE(std::abs(denominator_at_0_hz(rounded) - denominator_at_0_hz(exact)),
                half_step(rounded.a2));
    });
  }
}

TEST(SinglePrecision, OnlyTheLastRoundingMovesAShelfsGainAtZeroHertz) {
  for_low_bands(BandType::kLowShelf, [](const Section& exact) {
    const Section rounded = rounded_section(exact);
    const double gain = numerator_at_0_hz(exact) / denominator_at_0_hz(exact);
    EXPECT_LE(std::abs(numerator_at_0_hz(rounded) - gain * denominator_at_0_hz(rounded)),
              half_step(rounded.b2) * (1 + 1e-6));
  });
}

// b1 = -a1, and b2 has as fine a step as 1 - a2 - b0, so numerator and denominator stay equal.
TEST(SinglePrecision, LowPeakLeavesZeroHertzExactlyAsItIs) {
  for_low_bands(BandType::kPeak, [](const Section& exact) {
    const Section rounded = rounded_section(exact);
    EXPECT_EQ(numerator_at_0_hz(rounded), denominator_at_0_hz(rounded));
  });
}

TEST(SinglePrecision, HighPassStopsZeroHertzExactly) {
  for_low_bands(BandType::kHighPass, [](const Section& exact) {
    EXPECT_EQ(numerator_at_0_hz(rounded_section(exact)), 0);
  });
}

// |1 - z^-1| and |1 - z^-2| at `frequency`.
double one_step(double frequency, double rate) {
  return 2 * std::sin(std::numbers::pi * frequency / rate);
}
double two_steps(double frequency, double rate) {
  return 2 * std::sin(2 * std::numbers::pi * frequency / rate);
}

// At 0 Hz only the rounding of the last coefficient has an effect. The errors of the others grow
// from zero with |1 - z^-1| or |1 - z^-2|.
TEST(SinglePrecision, LowFrequenciesAreAsGoodAsTheLastRounding) {
  constexpr double kSampleRate = 96000;
  for (const BandDesign design : kBothDesigns) {
    for (const BandType type : kEveryType) {
      for (const int slope : {6, 12, 30}) {
        const BandSettings band{type, 40, 1.5, 9, design, std::nullopt, slope};
        for (const Section& exact : design_band(band, kSampleRate)) {
          const Section rounded = rounded_section(exact);
          const double gain = std::abs(numerator_at_0_hz(exact) / denominator_at_0_hz(exact));
          for (const double f : {0.0, 5.0, 20.0, 37.0, 60.0, 300.0}) {
            const double one = one_step(f, kSampleRate);
            const double two = two_steps(f, kSampleRate);
            // An all-pass's b0 is -a2, which compensates for a1 and may be off by a1's steps.
            const double b0_step = std::max(half_step(rounded.b0), half_step(rounded.a1));
            const double numerator = b0_step * two + half_step(rounded.b1) * one +
                                     half_step(rounded.b2) + gain * half_step(rounded.a2);
            const double denominator = half_step(rounded.a1) * one + half_step(rounded.a2);
            const auto wanted = response(exact, f, kSampleRate);
            const auto z1 = std::polar(1.0, -2 * std::numbers::pi * f / kSampleRate);
            const double size = std::abs(1.0 - rounded.a1 * z1 - rounded.a2 * z1 * z1);
            EXPECT_LE(std::abs(response(rounded, f, kSampleRate) - wanted),
                      (numerator + std::abs(wanted) * denominator) / size + 1e-9)
                << static_cast<int>(type) << " " << static_cast<int>(design) << " " << f << " Hz";
          }
        }
      }
    }
  }
}

// a2 compensates for the rounding of a1, so the pole of a first-order section is far more precise
// than a float.
TEST(SinglePrecision, FirstOrderSectionsKeepTheirCorner) {
  for (const BandDesign design : kBothDesigns) {
    for (const BandType type : {BandType::kLowPass, BandType::kHighPass}) {
      const BandSettings band{.type = type, .frequency = 10, .design = design, .slope = 6};
      const auto stored = design_stored_band(band, 192000);
      EXPECT_NEAR(decibels(response(stored, 10, 192000)), -3.010299956639812, 1e-5);
    }
  }
}

TEST(SinglePrecision, AllPassStaysOne) {
  for_every_band(BandType::kAllPass, [](const BandSettings& band) {
    const Section s = rounded_section(design_band(band, kRate).front());
    EXPECT_EQ(s.b0, -s.a2);
    EXPECT_EQ(s.b1, -s.a1);
    EXPECT_EQ(s.b2, 1);
  });
}

// A least-squares fit of its numerator is not finite.
TEST(SinglePrecision, SearchTakesFiniteNumeratorsOnly) {
  const BandSettings band{BandType::kPeak, 11590.614500671252, 10338.150452662467, 200};
  for (const BandType type : kEveryType) {
    for (const BandDesign design : kBothDesigns) {
      BandSettings extreme = band;
      extreme.type = type;
      extreme.design = design;
      EXPECT_TRUE(is_stable(design_stored_band(extreme, 96000).front()));
    }
  }
}

TEST(SinglePrecision, FloatsStayAsTheyAre) {
  for (const Section& section :
       {Section{}, averaging_section(20, 48000),
        Section{.b0 = 0.25, .b1 = -0.5, .b2 = 1.5, .a1 = 1.25, .a2 = -0.75}}) {
    const Section rounded = rounded_section(section);
    EXPECT_EQ(rounded.b0, section.b0);
    EXPECT_EQ(rounded.b1, section.b1);
    EXPECT_EQ(rounded.b2, section.b2);
    EXPECT_EQ(rounded.a1, section.a1);
    EXPECT_EQ(rounded.a2, section.a2);
  }
}

}  // namespace
}  // namespace channelstrip::test::single_precision_test
