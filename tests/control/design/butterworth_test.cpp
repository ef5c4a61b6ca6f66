#include <gtest/gtest.h>

#include <cmath>

#include "bands.h"

namespace channelstrip::test::butterworth_test {
namespace {

using namespace host;

template <typename Check>
void for_every_order(Check check) {
  for (const BandDesign design : kBothDesigns) {
    for (const BandType type : {BandType::kLowPass, BandType::kHighPass}) {
      for (int order = 1; order <= 16; ++order) {
        SCOPED_TRACE(testing::Message()
                     << "order " << order << ", design " << static_cast<int>(design) << ", type "
                     << static_cast<int>(type));
        check(BandSettings{.type = type,
                           .frequency = 2000,
                           .q = std::sqrt(0.5),
                           .design = design,
                           .slope = 6 * order});
      }
    }
  }
}

TEST(Butterworth, LosesHalfThePowerAtItsCutOff) {
  for_every_order([](BandSettings band) {
    for (const double frequency : {30.0, 2000.0, 19000.0}) {
      band.frequency = frequency;
      EXPECT_NEAR(db_at(band, frequency), -3.010299956639812, 10 * kRounding);
    }
  });
}

// Down to -150 dB; below that, steps are rounding errors.
TEST(Butterworth, FallsAllTheWayFromThePassBand) {
  for_every_order([](const BandSettings& band) {
    const bool low = band.type == BandType::kLowPass;
    double before = db_at(band, low ? 500 : 22000);
    for (double f = low ? 500 : 22000; f > 200 && f < 22500; f *= low ? 1.05 : 1 / 1.05) {
      const double now = db_at(band, f);
      EXPECT_LE(now, before + kRounding) << f;
      if (now < -150) return;
      before = now;
    }
  });
}

// Over an octave from four times the cut-off (for a high pass, downwards from a quarter of it).
// There the analog magnitude is within (1/4)^2n of its asymptote, and both designs are close to the
// analog filter, at 1/24 of the rate.
TEST(Butterworth, FallsByItsSlopePerOctave) {
  for_every_order([](BandSettings band) {
    const bool low = band.type == BandType::kLowPass;
    band.frequency = low ? 50 : 1600;
    const double octave =
        low ? db_at(band, 400) - db_at(band, 200) : db_at(band, 200) - db_at(band, 400);
    EXPECT_NEAR(octave, -band.slope, 0.4);
    // The analog octave, up to (w / 2)^2 / 3 from the bilinear transform's frequency warping.
    const double analog = low ? decibels(analog_response(band, 400) / analog_response(band, 200))
                              : decibels(analog_response(band, 200) / analog_response(band, 400));
    EXPECT_NEAR(octave, analog, 0.001 * band.slope);
  });
}

TEST(Butterworth, PassesItsEndOfTheSpectrum) {
  for_every_order([](const BandSettings& band) {
    const bool low = band.type == BandType::kLowPass;
    EXPECT_NEAR(db_at(band, low ? 0 : 20000), 0, low ? kRounding : 0.15);
    EXPECT_LT(db_at(band, low ? 20000 : 0), -15);
  });
}

TEST(Butterworth, TakesASectionForTwoOrders) {
  for_every_order([](const BandSettings& band) {
    const auto sections = design_band(band, kRate);
    EXPECT_EQ(sections.size(), static_cast<std::size_t>(band.slope / 6 + 1) / 2);
    const bool odd = band.slope / 6 % 2 == 1;
    EXPECT_EQ(sections.front().a2 == 0 && sections.front().b2 == 0, odd);
  });
}

}  // namespace
}  // namespace channelstrip::test::butterworth_test
