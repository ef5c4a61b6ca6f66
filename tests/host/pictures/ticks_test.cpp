#include "host/pictures/ticks.h"

#include <gtest/gtest.h>

#include <string>

namespace channelstrip::test::ticks_test {
namespace {

using namespace host;

std::string named(const Axis& axis, int most) {
  std::string all;
  for (const Tick& tick : ticks(axis, most)) all += (all.empty() ? "" : " ") + tick.text;
  return all;
}

TEST(Ticks, FrequenciesAreEngineersNumbers) {
  EXPECT_EQ(named({"", 20, 23520, Scale::kLogarithmic}, 12), "20 50 100 200 500 1k 2k 5k 10k 20k");
  EXPECT_EQ(named({"", 20, 23520, Scale::kLogarithmic}, 5), "100 1k 10k");
  EXPECT_EQ(named({"", 1e-3, 1e6, Scale::kLogarithmic}, 5), "0.001 0.1 10 1k 100k");
}

TEST(Ticks, DecibelsStepByWhatEngineersCountIn) {
  EXPECT_EQ(named({"", -24, 12, Scale::kDecibels}, 8), "\u221224 \u221218 \u221212 \u22126 0 6 12");
  EXPECT_EQ(named({"", -72, 24, Scale::kDecibels}, 5), "\u221272 \u221248 \u221224 0 24");
  EXPECT_EQ(named({"", 0, 1, Scale::kDecibels}, 6), "0 0.2 0.4 0.6 0.8 1");
  EXPECT_EQ(named({"", -600, 0, Scale::kDecibels}, 4), "\u2212600 \u2212400 \u2212200 0");
}

TEST(Ticks, DegreesStepByPartsOfATurn) {
  EXPECT_EQ(named({"", -180, 180, Scale::kDegrees}, 5), "\u2212180 \u221290 0 90 180");
}

TEST(Ticks, TimesAreAClockFromAMinuteOn) {
  EXPECT_EQ(named({"", 0, 90, Scale::kTime}, 7), "0:00 0:15 0:30 0:45 1:00 1:15 1:30");
  EXPECT_EQ(named({"", 0, 3700, Scale::kTime}, 5), "0:00 15:00 30:00 45:00 1:00:00");
  EXPECT_EQ(named({"", 0, 1, Scale::kTime}, 5), "0 0.2 0.4 0.6 0.8 1");
}

TEST(Ticks, StayWithinTheAxis) {
  EXPECT_EQ(named({"", 0.1, 0.9}, 5), "0.2 0.4 0.6 0.8");
  EXPECT_EQ(named({"", -0.5, 0.3}, 10),
            "\u22120.5 \u22120.4 \u22120.3 \u22120.2 \u22120.1 0 0.1 0.2 0.3");
}

TEST(EngineersNumber, HasNoMoreDigitsThanItNeeds) {
  EXPECT_EQ(engineers_number(0), "0");
  EXPECT_EQ(engineers_number(-0.0001), "0");
  EXPECT_EQ(engineers_number(1500), "1.5k");
  EXPECT_EQ(engineers_number(-12.5), "\u221212.5");
  EXPECT_EQ(engineers_number(22050), "22.05k");
}

}  // namespace
}  // namespace channelstrip::test::ticks_test
