#include "control/design/meter_ballistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "control/design/dynamics.h"
#include "tests/host/support/refusal.h"

namespace channelstrip::test::meter_ballistics_test {
namespace {

using namespace host;

constexpr double kSilence = -std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// For sums of decays and of times in double precision.
constexpr double kRounding = 1e-9;

TEST(PeakMeter, RisesAtOnce) {
  PeakMeter meter;
  meter.read(-60, 1);
  meter.read(-3, 1);
  EXPECT_EQ(meter.level(), -3);
}

TEST(PeakMeter, HoldsForItsHoldToTheMillisecondAndThenFallsAtItsSlope) {
  PeakMeter meter({.hold = 500, .decay = 20, .floor = -90});
  meter.read(-6, 1);
  for (int ms = 1; ms <= 500; ++ms) {
    meter.read(kSilence, 1);
    ASSERT_EQ(meter.level(), -6) << ms;
  }
  for (int ms = 1; ms <= 1000; ++ms) {
    meter.read(kSilence, 1);
    ASSERT_NEAR(meter.level(), -6 - 0.020 * ms, kRounding) << ms;
  }
}

TEST(PeakMeter, HoldMayEndWithinAPeriod) {
  PeakMeter meter({.hold = 100, .decay = 10, .floor = -90});
  meter.read(0, 40);
  for (int period = 1; period <= 4; ++period) meter.read(kSilence, 40);
  EXPECT_NEAR(meter.level(), -0.6, kRounding);
}

TEST(PeakMeter, FallsTwentyDecibelsInOnePointSevenSecondsUnlessToldOtherwise) {
  PeakMeter digital, programme(kProgramme);
  digital.read(0, 1);
  programme.read(0, 1);
  digital.read(kSilence, 1700);
  programme.read(kSilence, 2800);
  EXPECT_NEAR(digital.level(), -20, kRounding);
  EXPECT_NEAR(programme.level(), -24, kRounding);
}

TEST(PeakMeter, LowerPeakThatStandsLongerTakesOver) {
  PeakMeter meter({.hold = 100, .decay = 10, .floor = -90});
  meter.read(0, 1);
  meter.read(kSilence, 89);
  meter.read(-0.5, 1);
  meter.read(kSilence, 59);  // 149 ms after the first peak
  EXPECT_NEAR(meter.level(), -0.49, kRounding);
  meter.read(kSilence, 41);
  EXPECT_EQ(meter.level(), -0.5);
  meter.read(kSilence, 10);
  EXPECT_NEAR(meter.level(), -0.6, kRounding);
}

TEST(PeakMeter, NeverShowsLessThanItsFloor) {
  PeakMeter meter({.hold = 0, .decay = 10, .floor = -70});
  EXPECT_EQ(meter.level(), -70);
  meter.read(-100, 1);
  EXPECT_EQ(meter.level(), -70);
  meter.read(-69, 1);
  meter.read(kSilence, 1e6);
  EXPECT_EQ(meter.level(), -70);
  meter.read(kNan, 1);
  EXPECT_EQ(meter.level(), -70);
}

TEST(PeakMeter, ShowsReductionsWithAFloorOfZero) {
  PeakMeter meter({.hold = 0, .decay = 10, .floor = 0});
  meter.read(6, 1);
  meter.read(0, 100);
  EXPECT_NEAR(meter.level(), 5, kRounding);
  meter.read(0, 600);
  EXPECT_EQ(meter.level(), 0);
}

TEST(PeakMeter, InfinityFallsToo) {
  PeakMeter meter;
  meter.read(std::numeric_limits<double>::infinity(), 1);
  EXPECT_GT(meter.level(), 770);
  meter.read(kSilence, 1e6);
  EXPECT_EQ(meter.level(), -90);
}

// The meter's readings for `levels`, one per millisecond, if only the greatest level of every
// `period` milliseconds is read.
std::vector<double> shown(const std::vector<double>& levels, std::size_t period,
                          const Ballistics& ballistics) {
  PeakMeter meter(ballistics);
  std::vector<double> result;
  for (std::size_t n = 0; n < levels.size(); n += period) {
    const auto begin = levels.begin() + static_cast<std::ptrdiff_t>(n);
    meter.read(*std::max_element(begin, begin + static_cast<std::ptrdiff_t>(period)),
               static_cast<double>(period));
    result.push_back(meter.level());
  }
  return result;
}

TEST(PeakMeter, CuttingRaisesItByTheDecayOfAPeriodAtMost) {
  constexpr std::size_t kLength = 12000;
  std::mt19937 random(1);
  std::vector<double> levels(kLength, kSilence);
  for (double& level : levels) {
    if (random() % 50 == 0) level = -static_cast<double>(random() % 600) / 10;
  }
  for (const double hold : {0.0, 7.5, 300.0}) {
    const Ballistics ballistics{.hold = hold, .decay = 40, .floor = -90};
    const std::vector<double> exact = shown(levels, 1, ballistics);
    for (const std::size_t period : {2u, 10u, 48u, 500u}) {
      const std::vector<double> cut = shown(levels, period, ballistics);
      const double most = ballistics.decay / 1000 * static_cast<double>(period);
      for (std::size_t i = 0; i < cut.size(); ++i) {
        const double uncut = exact[(i + 1) * period - 1];
        ASSERT_GE(cut[i], uncut - kRounding) << period << " ms, hold " << hold;
        ASSERT_LE(cut[i], uncut + most + kRounding) << period << " ms, hold " << hold;
      }
    }
  }
}

TEST(PeakMeter, RefusesBallisticsThatAreNone) {
  const auto refused = [](const Ballistics& ballistics) {
    return refusal<std::invalid_argument>([&] { PeakMeter{ballistics}; });
  };
  EXPECT_EQ(refused({.hold = -1}), "hold -1 ms is not 0 or more and finite");
  EXPECT_EQ(refused({.hold = kNan}), "hold nan ms is not 0 or more and finite");
  EXPECT_EQ(refused({.decay = 0}), "decay 0 dB/s is not above 0 and finite");
  EXPECT_EQ(refused({.floor = kSilence}), "floor -inf dB is not finite");
}

TEST(Reduction, IsTheGainsDistanceFromNone) {
  EXPECT_DOUBLE_EQ(reduction_of_gain(0.1), 20);
  EXPECT_EQ(reduction_of_gain(1), 0);
  EXPECT_EQ(reduction_of_gain(0), 0);
  EXPECT_DOUBLE_EQ(reduction_of_readout(0.75), 20 * std::log10(4));
  EXPECT_EQ(reduction_of_readout(0), 0);
}

TEST(Reduction, OfAReadoutIsFiniteAndKnownToTheRoundingOfAFloat) {
  EXPECT_NEAR(reduction_of_readout(1), 144.49, 0.005);
  const double readout = static_cast<double>(1.0f - 1e-5f);
  EXPECT_NEAR(reduction_of_readout(readout), 100, 0.03);
}

TEST(OverCounter, CountsPeriodsAndRunsAtFullScaleAndAbove) {
  OverCounter overs;
  for (const double peak : {0.5, 1.0, 1.5, 0.999, kNan, 2.0, 0.0}) overs.read(peak);
  EXPECT_EQ(overs.periods(), 3);
  EXPECT_EQ(overs.runs(), 2);
}

TEST(OverCounter, CountsNothingBelowFullScale) {
  OverCounter overs;
  overs.read(static_cast<double>(std::nextafter(1.0f, 0.0f)));
  EXPECT_EQ(overs.periods(), 0);
  EXPECT_EQ(overs.runs(), 0);
}

}  // namespace
}  // namespace channelstrip::test::meter_ballistics_test
