#include "host/import/filter_line.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>

#include "control/design/band.h"
#include "host/import/analog_band.h"
#include "host/import/number_text.h"

namespace channelstrip::test::filter_line_test {
namespace {

using namespace host;

std::string refusal(std::string_view definition) {
  try {
    parse_filter(definition);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "";
}

struct Line {
  std::string_view definition;
  BandSettings band;
};

constexpr BandType kShelves[] = {BandType::kLowShelf, BandType::kHighShelf};

TEST(FilterLine, BecomesABand) {
  const Line lines[] = {
      {"PK       Fc    63.2 Hz  Gain  -5.0 dB  Q  4.00",
       {.type = BandType::kPeak, .frequency = 63.2, .q = 4, .gain = -5}},
      {"PK Fc 1000 Hz Gain -3 dB Q 1.41",
       {.type = BandType::kPeak, .frequency = 1000, .q = 1.41, .gain = -3}},
      {"pk\tfc 1000Hz gain +3dB q 1",
       {.type = BandType::kPeak, .frequency = 1000, .q = 1, .gain = 3}},
      {"PEQ Fc 80 Hz Gain 1e0 dB Q .5",
       {.type = BandType::kPeak, .frequency = 80, .q = 0.5, .gain = 1}},
      {"Modal Fc 35.2 Hz Gain -9.0 dB Q 8.50 T60 target 300 ms",
       {.type = BandType::kPeak, .frequency = 35.2, .q = 8.5, .gain = -9}},
      {"PK Fc 100 Hz Gain 2 dB BW Oct 1",
       {.type = BandType::kPeak, .frequency = 100, .q = 1.41421, .gain = 2}},
      {"LP Fc 80 Hz", {.type = BandType::kLowPass, .frequency = 80, .q = 0.707107}},
      {"HP Fc 80 Hz", {.type = BandType::kHighPass, .frequency = 80, .q = 0.707107}},
      {"LPQ Fc 80 Hz Q 0.5", {.type = BandType::kLowPass, .frequency = 80, .q = 0.5}},
      {"HPQ Fc 80 Hz Q 0.5", {.type = BandType::kHighPass, .frequency = 80, .q = 0.5}},
      {"LP1 Fc 80 Hz", {.type = BandType::kLowPass, .frequency = 80, .q = 0.707107, .slope = 6}},
      {"HP1 Fc 80 Hz", {.type = BandType::kHighPass, .frequency = 80, .q = 0.707107, .slope = 6}},
      {"BP Fc 80 Hz", {.type = BandType::kBandPass, .frequency = 80, .q = 0.707107}},
      {"NO Fc 50 Hz", {.type = BandType::kNotch, .frequency = 50, .q = 30}},
      {"NO Fc 50 Hz Q 4", {.type = BandType::kNotch, .frequency = 50, .q = 4}},
      {"AP Fc 100 Hz Q 0.707", {.type = BandType::kAllPass, .frequency = 100, .q = 0.707}},
      {"LSC 12 dB Fc 300 Hz Gain 5.0 dB",
       {.type = BandType::kLowShelf, .frequency = 300, .gain = 5, .shelf_slope = 1}},
      {"HSC 6dB Fc 300 Hz Gain 5.0 dB",
       {.type = BandType::kHighShelf, .frequency = 300, .gain = 5, .shelf_slope = 0.5}},
      {"LSC Fc 300 Hz Gain 5.0 dB",
       {.type = BandType::kLowShelf, .frequency = 300, .gain = 5, .shelf_slope = 0.9}},
      {"LSQ Fc 300 Hz Gain 5.0 dB Q 0.6",
       {.type = BandType::kLowShelf, .frequency = 300, .q = 0.6, .gain = 5}},
      {"HSC Fc 300 Hz Gain 5.0 dB Q 0.6",
       {.type = BandType::kHighShelf, .frequency = 300, .q = 0.6, .gain = 5}},
      // A Q of 1 / sqrt 2 is a shelf slope of S = 1, whatever the gain.
      {"LS Fc 100 Hz Gain -20 dB Q 0.707107",
       {.type = BandType::kLowShelf, .frequency = 177.828, .q = 0.707107, .gain = -20}},
      {"PK Fc 100 Hz Gain 2 dB Q 3 BW Oct 1",
       {.type = BandType::kPeak, .frequency = 100, .q = 3, .gain = 2}},
      {"PK Fc 100 Hz Gain 2 dB BW Oct 1 Q 3",
       {.type = BandType::kPeak, .frequency = 100, .q = 3, .gain = 2}},
      // 20 dB at S = 1: a factor of 10^(1/4) from the corner to the midpoint.
      {"LS 12dB Fc 100 Hz Gain -20 dB",
       {.type = BandType::kLowShelf, .frequency = 177.828, .gain = -20, .shelf_slope = 1}},
      {"HS 12 dB Fc 1000 Hz Gain 20 dB",
       {.type = BandType::kHighShelf, .frequency = 562.341, .gain = 20, .shelf_slope = 1}},
      {"HS 6dB Fc 1000 Hz Gain 20 dB",
       {.type = BandType::kHighShelf, .frequency = 316.228, .gain = 20, .shelf_slope = 0.5}},
      {"LS Fc 100 Hz Gain 18 dB",
       {.type = BandType::kLowShelf, .frequency = 177.828, .gain = 18, .shelf_slope = 0.9}},
  };
  for (const auto& [definition, expected] : lines) {
    SCOPED_TRACE(definition);
    const BandSettings band = parse_filter(definition);
    EXPECT_EQ(band.type, expected.type);
    EXPECT_EQ(band.frequency, expected.frequency);
    EXPECT_EQ(band.q, expected.q);
    EXPECT_EQ(band.gain, expected.gain);
    EXPECT_EQ(band.shelf_slope, expected.shelf_slope);
    EXPECT_EQ(band.slope, expected.slope);
  }
}

TEST(FilterLine, NumbersMayHaveCommas) {
  const auto frequency = [](std::string_view definition) {
    return parse_filter(definition).frequency;
  };
  EXPECT_EQ(parse_filter("PK Fc 63,2 Hz Gain -5,25 dB Q 1,414").frequency, 63.2);
  EXPECT_EQ(parse_filter("PK Fc 63,2 Hz Gain -5,25 dB Q 1,414").gain, -5.25);
  EXPECT_EQ(parse_filter("PK Fc 63,2 Hz Gain -5,25 dB Q 1,414").q, 1.414);
  // A separator before three digits is one of thousands, unless the line says otherwise.
  EXPECT_EQ(frequency("LP Fc 1,250 Hz"), 1250);
  EXPECT_EQ(frequency("LP Fc 1.250 Hz"), 1.25);
  EXPECT_EQ(frequency("PK Fc 1,250 Hz Gain -5.0 dB Q 2.00"), 1250);
  EXPECT_EQ(frequency("PK Fc 1.250 Hz Gain -5,0 dB Q 2,00"), 1250);
  EXPECT_EQ(frequency("PK Fc 1,250 Hz Gain -5,0 dB Q 2,00"), 1.25);
  EXPECT_EQ(frequency("LP Fc 1,250.5 Hz"), 1250.5);
  EXPECT_EQ(frequency("LP Fc 1.250,5 Hz"), 1250.5);
}

TEST(FilterLine, BandwidthIsBetweenTheEdgesThreeDecibelsBelow) {
  for (const double octaves : {0.1, 0.5, 1.0, 3.0}) {
    const double q = q_of_bandwidth(octaves);
    // The analog band pass's magnitude at the upper edge: 1 / sqrt(1 + Q^2 (x - 1/x)^2).
    const double x = std::exp2(octaves / 2);
    EXPECT_NEAR(1 / std::sqrt(1 + q * q * (x - 1 / x) * (x - 1 / x)), std::sqrt(0.5), 1e-12);
  }
}

// A shelf given by Q is the same filter as one given by the slope of that Q.
TEST(FilterLine, SlopeOfAShelfsQIsTheSameShelf) {
  for (const double gain : {-12.0, 0.0, 6.0}) {
    for (const double q : {0.3, 0.6, std::sqrt(0.5)}) {
      const BandSettings by_q{.type = BandType::kLowShelf, .q = q, .gain = gain};
      BandSettings by_slope = by_q;
      by_slope.shelf_slope = slope_of_q(q, gain);
      const Section a = design_band(by_q, 48000).front(), b = design_band(by_slope, 48000).front();
      for (const double frequency : {100.0, 1000.0, 3000.0}) {
        EXPECT_NEAR(std::abs(response(a, frequency, 48000)),
                    std::abs(response(b, frequency, 48000)), 1e-9);
      }
    }
  }
}

// The asymptotes of a shelf's curve meet at the corner. There the curve differs from the plateau by
// the rounding of the corner only, which is well below half of the gain.
TEST(FilterLine, CornerOfAShelfLiesTowardsItsPlateau) {
  for (const BandType shelf : kShelves) {
    for (const double gain : {-18.0, 18.0}) {
      const bool low = shelf == BandType::kLowShelf;
      const double midpoint = shelf_midpoint(shelf, 1000, gain, 1);
      EXPECT_EQ(low ? midpoint > 1000 : midpoint < 1000, true);
      const Section section =
          design_band({.type = shelf, .frequency = midpoint, .gain = gain}, 192000).front();
      const double plateau = low ? 1 : 90000;
      const auto decibels = [&](double frequency) {
        return 20 * std::log10(std::abs(response(section, frequency, 192000)));
      };
      EXPECT_NEAR(decibels(midpoint), gain / 2, 1e-9);
      EXPECT_LT(std::abs(decibels(plateau) - decibels(1000)), 3.5);
      EXPECT_GT(std::abs(decibels(plateau) - decibels(1000)), 1);
    }
  }
}

TEST(FilterLine, RefusesWhatIsNoBand) {
  EXPECT_EQ(refusal(""), "no filter type");
  EXPECT_EQ(refusal("IIR Order 2 Coefficients 1 0 0 1 0 0"), "a strip has no filter IIR");
  EXPECT_EQ(refusal("PK"), "the frequency is missing");
  EXPECT_EQ(refusal("PK Fc"), "the frequency is missing");
  EXPECT_EQ(refusal("PK Fc `f` Hz Gain 1 dB Q 1"), "the frequency \"`F`\" is no number");
  EXPECT_EQ(refusal("PK Fc inf Hz Gain 1 dB Q 1"), "the frequency \"INF\" is no number");
  EXPECT_EQ(refusal("PK Fc 1e999 Hz Gain 1 dB Q 1"), "the frequency \"1E999\" is no number");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Q 2"), "the gain is missing");
  EXPECT_EQ(refusal("LS Fc 1000 Hz Q 2"), "the gain is missing");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain x dB Q 2"), "the gain \"X\" is no number");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain 1 dB"), "neither Q nor bandwidth");
  EXPECT_EQ(refusal("AP Fc 1000 Hz"), "neither Q nor bandwidth");
  EXPECT_EQ(refusal("LSQ Fc 1000 Hz Gain 1 dB"), "neither Q nor bandwidth");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain 1 dB Q"), "the Q is missing");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain 1 dB BW Oct 0"), "the bandwidth is not above 0");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain 1 dB BW Hz 30"), "\"BW\" is not understood");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain 1 dB Q 2 T60 300"), "\"T60\" is not understood");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain 1 dB Q 2 left"), "\"LEFT\" is not understood");
  EXPECT_EQ(refusal("LP 24 dB Fc 1000 Hz"), "a slope besides Q or of no shelf");
  EXPECT_EQ(refusal("LSC 12 dB Fc 1000 Hz Gain 1 dB Q 1"), "a slope besides Q or of no shelf");
  EXPECT_EQ(refusal("LS Fc 1000 Hz Gain 1 dB BW Oct 1"), "a shelf has no bandwidth");
  EXPECT_EQ(refusal("LP1 Fc 1000 Hz Q 1"), "a pass of 6 dB per octave has no Q");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain 1 dB Q 1 Q 2"), "the Q stands twice");
  EXPECT_EQ(refusal("PK Fc 1000 Hz Gain 1 dB Gain 2 dB Q 1"), "the gain stands twice");
  EXPECT_EQ(refusal("LSC 0 dB Fc 1000 Hz Gain 1 dB"), "the slope is not above 0");
}

TEST(FilterLine, PreampIsANumberOfDecibels) {
  EXPECT_EQ(parse_decibels("-6.5 dB"), -6.5);
  EXPECT_EQ(parse_decibels("-6,5dB"), -6.5);
  EXPECT_EQ(parse_decibels("3"), 3);
  EXPECT_EQ(parse_decibels("\u22126.5 dB"), -6.5);
  for (const char* wrong : {"", "-6 Hz", "-6 dB 1"}) {
    EXPECT_THROW(parse_decibels(wrong), std::invalid_argument) << wrong;
  }
}

}  // namespace
}  // namespace channelstrip::test::filter_line_test
