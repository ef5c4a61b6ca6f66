#include "host/design/section.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "host/design/dynamics.h"
#include "refusal.h"

namespace channelstrip::test {
namespace {

using namespace host;

constexpr double kRate = 48000;
constexpr double kFrequencies[] = {20, 1000, 12000, 20000};
constexpr double kQs[] = {0.3, 0.7071, 4};
constexpr double kGains[] = {-18, -3, 6, 24};
constexpr BandType kTypes[] = {BandType::kPeak, BandType::kLowShelf, BandType::kHighShelf,
                               BandType::kLowPass, BandType::kHighPass};

// 1 - a1 - a2 is 7e-6 or more here, so doubles leave it 1e-10 of relative error and the response
// less than 1e-8 dB.
constexpr double kRounding = 1e-8;  // dB

double db_at(const Section& section, double frequency) {
  return linear_to_db(std::abs(response(section, frequency, kRate)));
}

double db_at(const BandSettings& band, double frequency) {
  return db_at(design_band(band, kRate), frequency);
}

template <typename Check>
void for_every_band(BandType type, Check check) {
  for (const double frequency : kFrequencies) {
    for (const double q : kQs) {
      for (const double gain : kGains) {
        SCOPED_TRACE(testing::Message() << frequency << " Hz, q " << q << ", " << gain << " dB");
        check(BandSettings{type, frequency, q, gain});
      }
    }
  }
}

TEST(BandDesign, PeakHasItsGainAtItsFrequency) {
  for_every_band(BandType::kPeak, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, band.frequency), band.gain, kRounding);
  });
}

TEST(BandDesign, ShelfHasHalfItsGainAtItsCornerWhateverItsQ) {
  for (const BandType type : {BandType::kLowShelf, BandType::kHighShelf}) {
    for_every_band(type, [](const BandSettings& band) {
      EXPECT_NEAR(db_at(band, band.frequency), band.gain / 2, kRounding);
    });
  }
}

TEST(BandDesign, PassHasItsQAtItsCutOff) {
  for (const BandType type : {BandType::kLowPass, BandType::kHighPass}) {
    for_every_band(type, [](const BandSettings& band) {
      EXPECT_NEAR(db_at(band, band.frequency), 20 * std::log10(band.q), kRounding);
    });
  }
}

TEST(BandDesign, PeakLeavesBothEndsOfTheSpectrum) {
  for_every_band(BandType::kPeak, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, 0), 0, kRounding);
    EXPECT_NEAR(db_at(band, kRate / 2), 0, kRounding);
  });
}

TEST(BandDesign, ShelfHasItsGainAtItsEndAndNoneAtTheOther) {
  for_every_band(BandType::kLowShelf, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, 0), band.gain, kRounding);
    EXPECT_NEAR(db_at(band, kRate / 2), 0, kRounding);
  });
  for_every_band(BandType::kHighShelf, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, 0), 0, kRounding);
    EXPECT_NEAR(db_at(band, kRate / 2), band.gain, kRounding);
  });
}

TEST(BandDesign, PassKeepsOneEndAndStopsTheOther) {
  for_every_band(BandType::kLowPass, [](const BandSettings& band) {
    EXPECT_NEAR(db_at(band, 0), 0, kRounding);
    EXPECT_LT(db_at(band, kRate / 2), -250);
  });
  for_every_band(BandType::kHighPass, [](const BandSettings& band) {
    EXPECT_LT(db_at(band, 0), -200);
    EXPECT_NEAR(db_at(band, kRate / 2), 0, kRounding);
  });
}

TEST(BandDesign, OppositePeaksCancel) {
  for_every_band(BandType::kPeak, [](const BandSettings& band) {
    BandSettings opposite = band;
    opposite.gain = -band.gain;
    for (const double frequency : {5.0, 20.0, 400.0, 12000.0, 23000.0}) {
      const auto product = response(design_band(band, kRate), frequency, kRate) *
                           response(design_band(opposite, kRate), frequency, kRate);
      EXPECT_LT(std::abs(product - 1.0), 1e-9) << frequency << " Hz";
    }
  });
}

TEST(BandDesign, WithoutGainAPeakOrShelfPasses) {
  for (const BandType type : {BandType::kPeak, BandType::kLowShelf, BandType::kHighShelf}) {
    for (const double frequency : {50.0, 1000.0, 9000.0}) {
      EXPECT_NEAR(db_at(BandSettings{type, 1000, 2, 0}, frequency), 0, kRounding);
    }
  }
}

TEST(BandDesign, PassesIgnoreTheGain) {
  for (const BandType type : {BandType::kLowPass, BandType::kHighPass}) {
    EXPECT_EQ(db_at(BandSettings{type, 1000, 1, 12}, 700),
              db_at(BandSettings{type, 1000, 1, 0}, 700));
  }
}

// The poles are the roots of z^2 - a1 z - a2.
double pole_radius(const Section& section) {
  const auto root = std::sqrt(std::complex<double>(section.a1 * section.a1 + 4 * section.a2));
  return std::max(std::abs(section.a1 + root), std::abs(section.a1 - root)) / 2;
}

TEST(BandDesign, PolesLieInsideTheUnitCircle) {
  for (const BandType type : kTypes) {
    for_every_band(type, [](const BandSettings& band) {
      const Section section = design_band(band, kRate);
      EXPECT_LT(pole_radius(section), 1);
      EXPECT_TRUE(is_stable(section));
    });
  }
}

TEST(Section, IsUnstableWithAPoleOnTheUnitCircleOrOutside) {
  EXPECT_TRUE(is_stable({.a1 = 0.999}));
  EXPECT_FALSE(is_stable({.a1 = 1}));
  EXPECT_FALSE(is_stable({.a1 = -1}));
  EXPECT_TRUE(is_stable({.a1 = 1.5, .a2 = -0.999}));
  EXPECT_FALSE(is_stable({.a1 = 1.5, .a2 = -1}));
  EXPECT_FALSE(is_stable({.a1 = 1.5, .a2 = -0.5}));
  EXPECT_FALSE(is_stable({.a1 = -1.5, .a2 = -0.5}));
}

// The recurrence that the records are made for: y = b0 x + z1; z1 := b1 x + a1 y + z2; z2 := b2 x +
// a2 y.
std::vector<double> impulse_response(const Section& section, int samples) {
  std::vector<double> output;
  double z1 = 0, z2 = 0;
  for (int n = 0; n < samples; ++n) {
    const double x = n == 0 ? 1 : 0;
    const double y = section.b0 * x + z1;
    z1 = section.b1 * x + section.a1 * y + z2;
    z2 = section.b2 * x + section.a2 * y;
    output.push_back(y);
  }
  return output;
}

TEST(Section, ResponseIsTheSpectrumOfTheRecurrencesImpulseResponse) {
  for (const BandType type : kTypes) {
    const Section section = design_band({type, 3000, 1.5, 9}, kRate);
    // Poles of radius 0.95 at most: 1000 samples leave 1e-22.
    ASSERT_LT(pole_radius(section), 0.95);
    const std::vector<double> impulse = impulse_response(section, 1000);
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

TEST(BandDesign, RefusesWhatIsNoBand) {
  const auto refused = [](double frequency, double q, double gain, double rate) {
    return refusal([&] { design_band({BandType::kPeak, frequency, q, gain}, rate); });
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

}  // namespace
}  // namespace channelstrip::test
