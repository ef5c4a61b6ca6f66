// Bands in single precision: the sections that the search for the best floats finds.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>
#include <vector>

#include "bands.h"
#include "control/design/band.h"
#include "control/design/single_precision.h"

namespace channelstrip::test::fitted_band_test {
namespace {

using namespace host;

Sections rounded_band(const BandSettings& band, double rate) {
  Sections sections = design_band(band, rate);
  for (Section& section : sections) section = rounded_section(section);
  return sections;
}

// The greatest difference in dB between what is wanted and what `sections` do, down to 60 dB below
// 0 dB, at steps of a fiftieth of an octave and of a hundredth of a resonance.
double deviation(const BandSettings& band, const Sections& sections, double rate) {
  const Sections exact = design_band(band, rate);
  double greatest = 0;
  const auto compare = [&](double frequency) {
    if (!(frequency > 0 && frequency < rate / 2)) return;
    const auto level = [&](const Sections& some) {
      return std::max(-60.0, decibels(response(some, frequency, rate)));
    };
    greatest = std::max(greatest, std::abs(level(sections) - level(exact)));
  };
  for (int i = -300; i <= 500; ++i) compare(band.frequency * std::exp2(i / 50.0));
  for (int i = -200; i <= 200; ++i) compare(band.frequency * (1 + i / (100 * band.q)));
  return greatest;
}

TEST(FittedBand, IsAtMostAsFarOffAsRounding) {
  for (const BandDesign design : kBothDesigns) {
    for (const BandType type : kEveryType) {
      for (const double frequency : {20.0, 31.0, 52.0, 117.0}) {
        for (const auto& [q, gain, slope] :
             {std::tuple{0.7071, 12.0, 12}, {10.0, 12.0, 30}, {10.0, -9.0, 96}}) {
          if (q > 1 && (type == BandType::kLowShelf || type == BandType::kHighShelf)) continue;
          const BandSettings band{type, frequency, q, gain, design, std::nullopt, slope};
          for (const double rate : {48000.0, 192000.0}) {
            const double rounded = deviation(band, rounded_band(band, rate), rate);
            const double fitted = deviation(band, design_stored_band(band, rate), rate);
            // The search compares at fewer frequencies.
            EXPECT_LE(fitted, 1.25 * rounded + 0.01)
                << static_cast<int>(type) << ", design " << static_cast<int>(design) << ", "
                << frequency << " Hz, Q " << q << ", " << slope << " dB/oct, at " << rate;
          }
        }
      }
    }
  }
}

TEST(FittedBand, NotchIsSilentAtItsFrequency) {
  for (const double rate : {44100.0, 48000.0, 96000.0, 192000.0}) {
    for (const double frequency : {50.0, 60.0, 100.0}) {
      const auto sections = design_stored_band({BandType::kNotch, frequency, 30}, rate);
      EXPECT_LT(decibels(response(sections, frequency, rate)), -60) << frequency << ", " << rate;
    }
  }
}

TEST(FittedBand, NarrowPeakKeepsItsGain) {
  const BandSettings band{BandType::kPeak, 30, 10, 6};
  EXPECT_GT(deviation(band, rounded_band(band, 192000), 192000), 0.4);
  EXPECT_LT(deviation(band, design_stored_band(band, 192000), 192000), 0.3);
}

TEST(FittedBand, SectionsMakeUpForEachOther) {
  const BandSettings band{.type = BandType::kLowPass, .frequency = 40, .slope = 96};
  EXPECT_GT(deviation(band, rounded_band(band, 192000), 192000), 0.9);
  EXPECT_LT(deviation(band, design_stored_band(band, 192000), 192000), 0.3);
}

TEST(FittedBand, KeepsZerosOnTheUnitCircle) {
  for (const double frequency : {20.0, 43.0, 95.0}) {
    const auto section = [frequency](BandType type) {
      return design_stored_band({type, frequency, 5}, 192000).front();
    };
    const Section high_pass = section(BandType::kHighPass);
    EXPECT_EQ(high_pass.b1, -2 * high_pass.b0);
    EXPECT_EQ(high_pass.b2, high_pass.b0);
    const Section low_pass = section(BandType::kLowPass);
    EXPECT_EQ(low_pass.b1, 2 * low_pass.b0);
    EXPECT_EQ(low_pass.b2, low_pass.b0);
    const Section band_pass = section(BandType::kBandPass);
    EXPECT_EQ(band_pass.b1, 0);
    EXPECT_EQ(band_pass.b2, -band_pass.b0);
    const Section notch = section(BandType::kNotch);
    EXPECT_NEAR(notch.b2, notch.b0, 0x1p-24);
  }
}

TEST(FittedBand, IsTheRoundedOneWhereThatIsGoodEnough) {
  const BandSettings band{BandType::kPeak, 1000, 1, 6};
  const Section fitted = design_stored_band(band, 48000).front();
  const Section rounded = rounded_band(band, 48000).front();
  EXPECT_EQ(fitted.b0, rounded.b0);
  EXPECT_EQ(fitted.a1, rounded.a1);
  EXPECT_EQ(fitted.a2, rounded.a2);
}

}  // namespace
}  // namespace channelstrip::test::fitted_band_test
