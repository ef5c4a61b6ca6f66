#include "control/design/band.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "bands.h"
#include "refused.h"

namespace channelstrip::test::band_test {
namespace {

using namespace host;

TEST(Band, PeakHasItsGainAtItsFrequency) {
  for_every_band(BandType::kPeak, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, band.frequency), band.gain, kRounding);
  });
}

TEST(Band, PeakIsHighestOrLowestAtItsFrequency) {
  for_every_band(BandType::kPeak, [](const BandSettings& band) {
    for (const double aside : {0.99, 1.01}) {
      EXPECT_LT(std::abs(db_at(band, band.frequency * aside)), std::abs(band.gain));
    }
  });
}

// For corners up to a quarter of the rate; above, the matched design fits the response at that
// quarter instead.
TEST(Band, ShelfHasHalfItsGainAtItsCornerWhateverItsQ) {
  for (const BandType type : {BandType::kLowShelf, BandType::kHighShelf}) {
    for_every_band(type, [](const BandSettings& band) {
      if (band.design == BandDesign::kMatched && band.frequency > kRate / 4) return;
      EXPECT_NEAR(db_at(band, band.frequency), band.gain / 2, kRounding);
    });
  }
}

TEST(Band, PassHasItsQAtItsCutOff) {
  for (const BandType type : {BandType::kLowPass, BandType::kHighPass}) {
    for_every_band(type, [](const BandSettings& band) {
      EXPECT_NEAR(db_at(band, band.frequency), 20 * std::log10(band.q), kRounding);
    });
  }
}

TEST(Band, LeavesZeroHertzAsItShould) {
  const auto expect_at_zero = [](BandType type, double factor) {
    for_every_band(type, [&](const BandSettings& band) {
      EXPECT_NEAR(db_at(band, 0), factor * band.gain, kRounding);
    });
  };
  for (const BandType type : {BandType::kPeak, BandType::kHighShelf, BandType::kLowPass,
                              BandType::kNotch, BandType::kAllPass}) {
    expect_at_zero(type, 0);
  }
  expect_at_zero(BandType::kLowShelf, 1);
  expect_at_zero(BandType::kTilt, -0.5);
  for (const BandType type : {BandType::kHighPass, BandType::kBandPass}) {
    for_every_band(type, [](const BandSettings& band) { EXPECT_LT(db_at(band, 0), -180); });
  }
}

TEST(Band, BandPassIsAtZeroDecibelsAtItsFrequencyAndBelowBesideIt) {
  for_every_band(BandType::kBandPass, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, band.frequency), 0, kRounding);
    for (const double aside : {0.8, 0.99, 1.01, 1.19}) {
      EXPECT_LT(db_at(band, band.frequency * aside), 0);
    }
  });
}

// The bounds follow from the precision of doubles: 1e-10 of the denominator at 20 Hz.
TEST(Band, NotchTakesAllOfItsFrequency) {
  for_every_band(BandType::kNotch, [](const BandSettings& band) {
    EXPECT_LT(db_at(band, band.frequency), -160);
    for (const std::complex<double> zero : zeros(design_band(band, kRate).front())) {
      EXPECT_NEAR(std::abs(zero), 1, 1e-15);
      EXPECT_NEAR(std::abs(std::arg(zero)), 2 * std::numbers::pi * band.frequency / kRate, 1e-11);
    }
  });
}

TEST(Band, AllPassPassesAllAndTurnsByHalfACircleAtItsFrequency) {
  for_every_band(BandType::kAllPass, [](const BandSettings& band) {
    for (const double frequency : {0.0, 20.0, 3000.0, 12000.0, 23999.0}) {
      EXPECT_NEAR(db_at(band, frequency), 0, 1e-6);
    }
    const auto section = design_band(band, kRate);
    EXPECT_LT(std::abs(response(section, band.frequency, kRate) + 1.0), 1e-8);
    // The phase is between 0 and -180 degrees below the frequency, between -180 and -360 above it.
    EXPECT_LT(response(section, band.frequency * 0.9, kRate).imag(), 0);
    EXPECT_GT(response(section, band.frequency * 1.1, kRate).imag(), 0);
  });
}

TEST(Band, TiltLeavesItsPivot) {
  for_every_band(BandType::kTilt, [](const BandSettings& band) {
    if (band.design == BandDesign::kMatched && band.frequency > kRate / 4) return;
    EXPECT_NEAR(db_at(band, band.frequency), 0, kRounding);
  });
}

TEST(Band, OppositeGainsCancel) {
  for (const BandType type :
       {BandType::kPeak, BandType::kLowShelf, BandType::kHighShelf, BandType::kTilt}) {
    for_every_band(type, [](const BandSettings& band) {
      BandSettings opposite = band;
      opposite.gain = -band.gain;
      for (const double frequency : {5.0, 20.0, 400.0, 12000.0, 23000.0}) {
        const auto product = response(design_band(band, kRate), frequency, kRate) *
                             response(design_band(opposite, kRate), frequency, kRate);
        EXPECT_LT(std::abs(product - 1.0), 1e-9) << frequency << " Hz";
      }
    });
  }
}

TEST(Band, WithoutGainAPeakShelfOrTiltPasses) {
  for (const BandDesign design : kBothDesigns) {
    for (const BandType type :
         {BandType::kPeak, BandType::kLowShelf, BandType::kHighShelf, BandType::kTilt}) {
      for (const double frequency : {50.0, 1000.0, 9000.0}) {
        EXPECT_NEAR(db_at({type, 1000, 2, 0, design}, frequency), 0, kRounding);
      }
    }
  }
}

TEST(Band, OthersIgnoreTheGain) {
  for (const BandType type : {BandType::kLowPass, BandType::kHighPass, BandType::kBandPass,
                              BandType::kNotch, BandType::kAllPass}) {
    EXPECT_EQ(db_at({type, 1000, 1, 12}, 700), db_at({type, 1000, 1, 0}, 700));
  }
}

TEST(Band, RefusesWhatIsNoBand) {
  const auto refused = [](double frequency, double q, double gain, double rate) {
    return words(refusal_of(BandSettings{BandType::kPeak, frequency, q, gain}, rate));
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refused(30000, 1, 0, 48000),
            "frequency 30000 Hz is not below half the sample rate 48000 Hz");
  EXPECT_EQ(refused(24000, 1, 0, 48000),
            "frequency 24000 Hz is not below half the sample rate 48000 Hz");
  EXPECT_EQ(refused(0, 1, 0, 48000), "frequency 0 Hz is not above 0 Hz");
  EXPECT_EQ(refused(kNan, 1, 0, 48000), "frequency nan Hz is not above 0 Hz");
  EXPECT_EQ(refused(100, 0, 0, 48000), "q 0 is not above 0 and finite");
  EXPECT_EQ(refused(100, kInfinity, 0, 48000), "q inf is not above 0 and finite");
  EXPECT_EQ(refused(100, 1, kNan, 48000), "gain nan dB is not -200 to 200 dB");
  EXPECT_EQ(refused(100, 1, 200.5, 48000), "gain 200.5 dB is not -200 to 200 dB");
  EXPECT_EQ(refused(100, 1, 0, kInfinity), "sample rate inf Hz is not finite");
}

TEST(Band, RefusalInSinglePrecisionNamesWhatTheBandIsMadeOf) {
  const auto refused = [](const BandSettings& band) { return words(refusal_of(band, 192000)); };
  EXPECT_EQ(refused({.type = BandType::kLowPass, .frequency = 0.1, .slope = 24}),
            "frequency 0.1 Hz and slope 24 dB/oct leave no stable filter in single precision at "
            "192000 Hz: a pole stands at radius 1");
  EXPECT_EQ(refused({.type = BandType::kLowShelf, .frequency = 0.1, .gain = 6, .shelf_slope = 1}),
            "frequency 0.1 Hz, shelf_slope 1 and gain 6 dB leave no stable filter in single "
            "precision at 192000 Hz: a pole stands at radius 1");
}

}  // namespace
}  // namespace channelstrip::test::band_test
