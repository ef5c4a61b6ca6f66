#include "control/design/matched.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "bands.h"

namespace channelstrip::test::matched_test {
namespace {

using namespace host;

struct Deviation {
  double largest = 0;  // dB from the analog magnitude, up to 0.9 of half the sample rate
  double top = 0;      // at 0.9 of half the rate
};

// Only where the analog band passes more than -40 dB.
Deviation deviation(const BandSettings& band, double rate) {
  Deviation result;
  const auto sections = design_band(band, rate);
  for (int k = 1; k <= 90; ++k) {
    const double frequency = 0.45 * rate * k / 90;
    const double analog = decibels(analog_response(band, frequency));
    if (analog < -40) continue;
    const double off = std::abs(decibels(response(sections, frequency, rate)) - analog);
    result.largest = std::max(result.largest, off);
    if (k == 90) result.top = off;
  }
  return result;
}

// The largest deviations over a grid of rates, frequencies, Qs and gains.
Deviation worst(BandSettings band, BandDesign design) {
  Deviation result;
  band.design = design;
  for (const double rate : {44100.0, 48000.0, 96000.0}) {
    for (const double frequency : {50.0, 1000.0, 5000.0, 12000.0, 18000.0}) {
      for (const double q : {0.4, 0.7071, 1.0, 2.0}) {
        for (const double gain : {-12.0, -3.0, 6.0, 12.0}) {
          band.frequency = frequency;
          band.q = q;
          band.gain = gain;
          const Deviation here = deviation(band, rate);
          result.largest = std::max(result.largest, here.largest);
          result.top = std::max(result.top, here.top);
        }
      }
    }
  }
  return result;
}

// The deviations that remain after matching at a few frequencies; the bilinear transform's are far
// larger.
TEST(Matched, FollowsTheAnalogMagnitudeWhereTheCookbookCramps) {
  struct Case {
    const char* name;
    BandSettings band;
    double bound;     // dB, of the matched design at any frequency
    double top;       // dB, at 0.9 of half the rate
    double cookbook;  // dB, the least error of the cookbook design
  };
  const Case cases[] = {
      {"peak", {.type = BandType::kPeak}, 1.0, 1.0, 8},
      {"low shelf", {.type = BandType::kLowShelf}, 1.5, 1.0, 6},
      {"high shelf", {.type = BandType::kHighShelf}, 1.5, 1.0, 6},
      {"low pass", {.type = BandType::kLowPass}, 1.7, 1.7, 25},
      {"high pass", {.type = BandType::kHighPass}, 2.2, 1.1, 4},
      {"band-pass", {.type = BandType::kBandPass}, 1.7, 1.5, 13},
      {"notch", {.type = BandType::kNotch}, 2.5, 1.2, 15},
      {"all-pass", {.type = BandType::kAllPass}, 1e-6, 1e-6, 0},
      {"tilt", {.type = BandType::kTilt}, 0.5, 0.4, 3},
      {"low pass 6", {.type = BandType::kLowPass, .slope = 6}, 1.5, 1.5, 12},
      {"high pass 6", {.type = BandType::kHighPass, .slope = 6}, 0.8, 0.4, 1.5},
      {"low pass 18", {.type = BandType::kLowPass, .slope = 18}, 3.1, 3.1, 20},
      {"low pass 24", {.type = BandType::kLowPass, .slope = 24}, 3.3, 3.3, 20},
      {"high pass 24", {.type = BandType::kHighPass, .slope = 24}, 0.7, 0.2, 0.7}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Deviation matched = worst(c.band, BandDesign::kMatched);
    EXPECT_LT(matched.largest, c.bound);
    EXPECT_LT(matched.top, c.top);
    EXPECT_GE(worst(c.band, BandDesign::kCookbook).top, c.cookbook);
  }
}

TEST(Matched, IsNearlyAnalogFarBelowTheSampleRate) {
  for (const BandType type : kEveryType) {
    for (const double q : {0.5, 0.7071, 2.0}) {
      const BandSettings band{type, 100, q, 6, BandDesign::kMatched};
      for (const double frequency : {10.0, 70.0, 100.0, 150.0, 400.0}) {
        if (type == BandType::kNotch && frequency == band.frequency) continue;
        const auto digital = response(design_band(band, kRate), frequency, kRate);
        EXPECT_NEAR(decibels(digital / analog_response(band, frequency)), 0, 1e-3)
            << static_cast<int>(type) << " " << frequency << " Hz, q " << q;
      }
    }
  }
}

TEST(Matched, ShelvesNotchAndTiltHaveTheAnalogMagnitudeAtHalfTheRate) {
  for (const BandType type :
       {BandType::kLowShelf, BandType::kHighShelf, BandType::kNotch, BandType::kTilt}) {
    for_every_band(type, BandDesign::kMatched, [](const BandSettings& band) {
      EXPECT_NEAR(db_at(band, kRate / 2), decibels(analog_response(band, kRate / 2)), kRounding);
    });
  }
}

double half_gain_frequency(const BandSettings& band, double below, double above) {
  for (int k = 0; k < 60; ++k) {
    const double middle = (below + above) / 2;
    const bool same_side =
        (db_at(band, middle) > band.gain / 2) == (db_at(band, below) > band.gain / 2);
    (same_side ? below : above) = middle;
  }
  return below;
}

// At 12 kHz with a Q of 2, where the cookbook's peak is a fifth too narrow.
TEST(Matched, PeakKeepsItsBandwidth) {
  for (const double gain : {-12.0, 12.0}) {
    const BandSettings band{BandType::kPeak, 12000, 2, gain, BandDesign::kMatched};
    BandSettings cookbook = band;
    cookbook.design = BandDesign::kCookbook;
    const auto width = [](const BandSettings& b) {
      return half_gain_frequency(b, b.frequency, 23000) - half_gain_frequency(b, 500, b.frequency);
    };
    EXPECT_NEAR(width(band), 6000, 0.01 * 6000);
    EXPECT_LT(width(cookbook), 0.85 * 6000);
  }
}

// The group delay of an analog all-pass at its frequency is 4 Q / w.
TEST(Matched, AllPassHasTheAnalogGroupDelayAtItsFrequency) {
  for_every_band(BandType::kAllPass, BandDesign::kMatched, [](const BandSettings& band) {
    const auto sections = design_band(band, kRate);
    const double step = band.frequency * 1e-4;
    const double turn = -std::arg(response(sections, band.frequency + step, kRate) /
                                  response(sections, band.frequency - step, kRate));
    const double delay = turn / (2 * std::numbers::pi * 2 * step);
    const double analog = 4 * band.q / (2 * std::numbers::pi * band.frequency);
    EXPECT_NEAR(delay / analog, 1, 1e-4);
  });
}

TEST(Matched, ZerosLieNowhereOutsideTheUnitCircle) {
  for (const BandType type : kEveryType) {
    if (type == BandType::kAllPass) continue;
    for_every_band(type, BandDesign::kMatched, [](const BandSettings& band) {
      for (const std::complex<double> zero : zeros(design_band(band, kRate).front())) {
        EXPECT_LE(std::abs(zero), 1 + 1e-7);  // double zeros at z = 1 are good to a root of 1e-16
      }
    });
  }
}

}  // namespace
}  // namespace channelstrip::test::matched_test
