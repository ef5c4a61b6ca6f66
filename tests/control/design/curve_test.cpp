#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "control/design/dynamics.h"
#include "refused.h"

namespace channelstrip::test::curve_test {
namespace {

using namespace host;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double line(const Curve& curve, double level) {
  return (level - curve.threshold) * curve.slope;
}
double knee(const Curve& c, double level) {
  return (c.a * level + c.b) * level + c.c;
}
double knee_slope(const Curve& c, double level) {
  return 2 * c.a * level + c.b;
}

// The polynomial's terms reach about 1e4 and cancel in double precision.
constexpr double kRounding = 1e-10;

TEST(CompressorCurve, SlopeFollowsFromTheRatio) {
  EXPECT_EQ(compressor_curve({.ratio = 4}).slope, -0.75);
  EXPECT_EQ(compressor_curve({.ratio = 1}).slope, 0);
}

TEST(CompressorCurve, InfiniteRatioHoldsTheThreshold) {
  const Curve curve = compressor_curve({.threshold = -12, .ratio = kInfinity});
  EXPECT_EQ(curve.slope, -1);
  EXPECT_EQ(0 + line(curve, 0), -12);
}

TEST(CompressorCurve, KneeIsCentredOnTheThreshold) {
  const Curve curve = compressor_curve({.threshold = -20, .knee = 6});
  EXPECT_EQ(curve.threshold, -20);
  EXPECT_EQ(curve.knee_low, -23);
  EXPECT_EQ(curve.knee_high, -17);
}

TEST(CompressorCurve, KneeMeetsZeroBelowAndTheLineAboveInValueAndSlope) {
  for (const double threshold : {-60.0, -20.0, 3.0}) {
    for (const double ratio : {1.5, 4.0, kInfinity}) {
      for (const double width : {0.1, 6.0, 40.0}) {
        const Curve curve = compressor_curve({threshold, ratio, width});
        EXPECT_NEAR(knee(curve, curve.knee_low), 0, kRounding);
        EXPECT_NEAR(knee_slope(curve, curve.knee_low), 0, kRounding);
        EXPECT_NEAR(knee(curve, curve.knee_high), line(curve, curve.knee_high), kRounding);
        EXPECT_NEAR(knee_slope(curve, curve.knee_high), curve.slope, kRounding);
        EXPECT_NEAR(knee(curve, threshold), curve.slope * width / 8, kRounding);
      }
    }
  }
}

TEST(ExpanderCurve, SlopeFollowsFromTheRatio) {
  EXPECT_EQ(expander_curve({.ratio = 3}).slope, 2);
  EXPECT_EQ(expander_curve({.ratio = 1}).slope, 0);
}

TEST(ExpanderCurve, KneeMeetsTheLineBelowAndZeroAboveInValueAndSlope) {
  for (const double threshold : {-80.0, -40.0, 0.0}) {
    for (const double ratio : {1.5, 4.0, 20.0}) {
      for (const double width : {0.1, 6.0, 40.0}) {
        const Curve curve = expander_curve({threshold, ratio, width});
        EXPECT_NEAR(knee(curve, curve.knee_low), line(curve, curve.knee_low), 20 * kRounding);
        EXPECT_NEAR(knee_slope(curve, curve.knee_low), curve.slope, 20 * kRounding);
        EXPECT_NEAR(knee(curve, curve.knee_high), 0, 20 * kRounding);
        EXPECT_NEAR(knee_slope(curve, curve.knee_high), 0, 20 * kRounding);
        EXPECT_NEAR(knee(curve, threshold), -curve.slope * width / 8, 20 * kRounding);
      }
    }
  }
}

TEST(Knee, HardKneeHasNoWidthAndNoPolynomial) {
  const CompressorSettings compressor{.threshold = -20, .ratio = 4, .knee = 0};
  const ExpanderSettings expander{.threshold = -20, .ratio = 4, .knee = 0};
  for (const Curve& curve : {compressor_curve(compressor), expander_curve(expander)}) {
    EXPECT_EQ(curve.knee_low, -20);
    EXPECT_EQ(curve.knee_high, -20);
    EXPECT_EQ(curve.a, 0);
    EXPECT_EQ(curve.b, 0);
    EXPECT_EQ(curve.c, 0);
  }
}

// The largest error over the knee of the polynomial in floats.
double error_in_floats(const Curve& curve) {
  const auto a = static_cast<float>(curve.a);
  const auto b = static_cast<float>(curve.b);
  const auto c = static_cast<float>(curve.c);
  double greatest = 0;
  for (int step = 0; step <= 1000; ++step) {
    const double position = step / 1000.0;
    const auto level =
        static_cast<float>(curve.knee_low + (curve.knee_high - curve.knee_low) * position);
    const double exact = knee(curve, static_cast<double>(level));
    for (const float term :
         {(a * level + b) * level + c, std::fma(std::fma(a, level, b), level, c)}) {
      greatest = std::max(greatest, std::abs(static_cast<double>(term) - exact));
    }
  }
  return greatest;
}

// Let M = |a| L^2 and u be the relative rounding error. Rounding a, b and c moves the sum by at
// most u M, 2 u M and u M; rounding a L, a L + b and its product with L by u M each. The last sum
// is small.
TEST(Knee, SinglePrecisionStaysWithinSevenRoundingsOfItsTerms) {
  for (const double threshold : {-100.0, -50.0, -20.0, -3.0}) {
    for (const double width : {0.1, 0.5, 6.0, 20.0}) {
      for (const Curve& curve :
           {compressor_curve({threshold, 4, width}), expander_curve({threshold, 3, width})}) {
        const double level = std::max(std::abs(curve.knee_low), std::abs(curve.knee_high));
        const double term = std::abs(curve.a) * level * level;
        const double last_sum = std::abs(curve.slope) * width;
        EXPECT_LE(error_in_floats(curve), 0x1p-24 * (7 * term + last_sum))
            << threshold << " dB, knee " << width << " dB";
      }
    }
  }
}

TEST(Knee, NarrowestKneeIsNoWorseThanAHardOneDownTo77Decibels) {
  for (const double threshold : {-76.9, -60.0, -20.0}) {
    const Curve curve = compressor_curve({threshold, kInfinity, 0.1});
    EXPECT_LT(error_in_floats(curve), std::abs(curve.slope) * 0.1 / 8) << threshold << " dB";
  }
}

TEST(CompressorGain, FollowsItsCurveDownToTheRange) {
  const CompressorSettings settings{.threshold = -20, .ratio = 4, .knee = 8, .range = -12};
  EXPECT_EQ(compressor_gain(settings, -100), 0);
  EXPECT_EQ(compressor_gain(settings, -24), 0);
  EXPECT_DOUBLE_EQ(compressor_gain(settings, -20), -0.75);  // slope times knee / 8
  EXPECT_DOUBLE_EQ(compressor_gain(settings, -16), -3);
  EXPECT_EQ(compressor_gain(settings, -8), -9);
  EXPECT_EQ(compressor_gain(settings, 0), -12);
}

TEST(ExpanderGain, FollowsItsCurveDownToTheRange) {
  const ExpanderSettings settings{.threshold = -40, .ratio = 3, .knee = 8, .range = -25};
  EXPECT_EQ(expander_gain(settings, 0), 0);
  EXPECT_DOUBLE_EQ(expander_gain(settings, -36), 0);
  EXPECT_DOUBLE_EQ(expander_gain(settings, -40), -2);
  EXPECT_DOUBLE_EQ(expander_gain(settings, -44), -8);
  EXPECT_EQ(expander_gain(settings, -50), -20);
  EXPECT_EQ(expander_gain(settings, -100), -25);
}

TEST(AutoMakeup, IsHalfOfWhatFullScaleLoses) {
  EXPECT_EQ(auto_makeup({.threshold = -20, .ratio = 4}), 7.5);
  EXPECT_EQ(auto_makeup({.threshold = -20, .ratio = kInfinity}), 10);
  EXPECT_EQ(auto_makeup({.threshold = -20, .ratio = 1}), 0);
  EXPECT_EQ(auto_makeup({.threshold = 20, .ratio = 4}), 0);
  EXPECT_EQ(auto_makeup({.threshold = 0, .ratio = 2, .knee = 8}), 0.25);
}

TEST(AutoMakeup, RespectsTheRange) {
  EXPECT_EQ(auto_makeup({.threshold = -20, .ratio = 4, .range = -6}), 3);
  EXPECT_EQ(auto_makeup({.threshold = -20, .ratio = 4, .range = 0}), 0);
}

TEST(AutoMakeup, TakesNoAccountOfTheUsersMakeup) {
  EXPECT_EQ(auto_makeup({.threshold = -20, .ratio = 4, .makeup = 5}), 7.5);
}

TEST(CompressorCurve, RefusesWhatIsNoCurve) {
  const auto refused = [](const CompressorSettings& settings) {
    return words(refusal_of(settings));
  };
  EXPECT_EQ(
      refused({.ratio = 0.5}),
      "ratio 0.5 is not 1 or more: a compressor never makes louder what is above its threshold");
  EXPECT_EQ(
      refused({.ratio = std::nan("")}),
      "ratio nan is not 1 or more: a compressor never makes louder what is above its threshold");
  EXPECT_EQ(refused({.knee = 0.05}), "knee 0.05 dB is not 0 or 0.1 to 200 dB");
  EXPECT_EQ(refused({.knee = -1}), "knee -1 dB is not 0 or 0.1 to 200 dB");
  EXPECT_EQ(refused({.threshold = kInfinity}), "threshold inf dB is not -200 to 200 dB");
}

TEST(ExpanderCurve, RefusesWhatIsNoCurve) {
  const auto refused = [](double threshold, double ratio, double width) {
    return words(refusal_of(ExpanderSettings{threshold, ratio, width}));
  };
  EXPECT_EQ(refused(-50, 0.9, 6), "ratio 0.9 is not 1 to 100");
  EXPECT_EQ(refused(-50, kInfinity, 6), "ratio inf is not 1 to 100");
  EXPECT_EQ(refused(-50, 2, 0.09), "knee 0.09 dB is not 0 or 0.1 to 200 dB");
  EXPECT_EQ(refused(-201, 2, 6), "threshold -201 dB is not -200 to 200 dB");
}

}  // namespace
}  // namespace channelstrip::test::curve_test
