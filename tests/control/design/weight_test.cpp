#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "control/design/dynamics.h"

namespace channelstrip::test::weight_test {
namespace {

using namespace host;

constexpr double kOneOverE = 1 / std::numbers::e;

TEST(OnePoleWeight, CoversAllButOneOverEOfTheDistanceInItsTime) {
  double value = 0;
  const double weight = one_pole_weight(10, 48000);
  for (int n = 0; n < 480; ++n) value += weight * (1 - value);
  EXPECT_NEAR(value, 1 - kOneOverE, 1e-12);
}

TEST(OnePoleWeight, StepsOfFourSamplesTakeTheSameTime) {
  double value = 0;
  const double weight = one_pole_weight(10, 48000, 4);
  for (int n = 0; n < 480; n += 4) value += weight * (1 - value);
  EXPECT_NEAR(value, 1 - kOneOverE, 1e-12);
}

TEST(OnePoleWeight, JumpsWhenTheTimeIsZero) {
  EXPECT_EQ(one_pole_weight(0, 48000), 1);
}

// 1 - e^-x = x - x^2/2 + x^3/6 - ...; a difference from 1 would lose nine digits here.
TEST(OnePoleWeight, IsExactForLongTimes) {
  const double x = 1 / (10 * 192000.0);
  EXPECT_DOUBLE_EQ(one_pole_weight(10000, 192000), x - x * x / 2 + x * x * x / 6);
}

TEST(DecayFactor, LeavesOneOverEAfterItsTime) {
  EXPECT_NEAR(std::pow(decay_factor(20, 48000), 960), kOneOverE, 1e-12);
}

TEST(DecayFactor, ForgetsAtOnceWhenTheTimeIsZero) {
  EXPECT_EQ(decay_factor(0, 48000), 0);
}

TEST(Decibels, AreThoseOfAmplitude) {
  EXPECT_DOUBLE_EQ(db_to_linear(20), 10);
  EXPECT_DOUBLE_EQ(db_to_linear(-60), 0.001);
  EXPECT_EQ(db_to_linear(0), 1);
  EXPECT_DOUBLE_EQ(linear_to_db(0.1), -20);
  EXPECT_EQ(linear_to_db(0), -std::numeric_limits<double>::infinity());
}

}  // namespace
}  // namespace channelstrip::test::weight_test
