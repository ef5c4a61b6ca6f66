#include "plugins/held_level.h"

#include <gtest/gtest.h>

#include <limits>

namespace channelstrip::plugin_test::held_level_test {
namespace {

using plugins::HeldLevel;

TEST(HeldLevel, RisesAtOnceAndFallsBy20DecibelsIn1700Milliseconds) {
  HeldLevel level(-120, 24);
  const auto step = HeldLevel::fall_in(0.001);
  level.see(0.5, step);
  EXPECT_NEAR(level.decibels(), -6.02, 0.01);
  for (int ms = 0; ms < 1700; ++ms) level.see(0, step);
  EXPECT_NEAR(level.decibels(), -26.02, 0.01);
  level.see(0.25, step);
  EXPECT_NEAR(level.decibels(), -12.04, 0.01);
}

TEST(HeldLevel, StaysBetweenItsLimits) {
  HeldLevel level(-120, 24);
  const auto second = HeldLevel::fall_in(1);
  EXPECT_EQ(level.decibels(), -120);
  for (int i = 0; i < 100; ++i) level.see(0, second);
  EXPECT_EQ(level.decibels(), -120);
  level.see(std::numeric_limits<double>::infinity(), second);
  EXPECT_NEAR(level.decibels(), 24, 1e-5);
  level.see(std::numeric_limits<double>::quiet_NaN(), second);
  EXPECT_LT(level.decibels(), 24);
}

}  // namespace
}  // namespace channelstrip::plugin_test::held_level_test
