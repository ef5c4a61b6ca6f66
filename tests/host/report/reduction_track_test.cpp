#include "host/report/reduction_track.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "control/design/dynamics.h"
#include "control/library/library.h"
#include "control/strip/strip_stream.h"
#include "tests/control/design/records.h"

namespace channelstrip::test::reduction_track_test {
namespace {

using namespace host;

double db(float linear) {
  return linear_to_db(static_cast<double>(linear));
}

TEST(ReductionTrack, ColumnHoldsItsDeepestReduction) {
  ReductionTrack track(2);
  for (const float gain : {1.0f, 0.5f, 0.75f, 1.0f, 0.25f, 1.0f}) track.add(gain);
  ASSERT_EQ(track.periods_per_column(), 2u);
  ASSERT_EQ(track.columns().size(), 3u);
  EXPECT_EQ(track.columns()[0].least, 0.5f);
  EXPECT_EQ(track.columns()[1].least, 0.75f);
  EXPECT_EQ(track.columns()[2].least, 0.25f);
}

TEST(ReductionTrack, DeepestAndAverageAreInDecibels) {
  ReductionTrack track;
  for (const float gain : {1.0f, 0.5f, 0.25f, 1.0f}) track.add(gain);
  EXPECT_NEAR(track.deepest(), 12.0412, 1e-4);
  EXPECT_NEAR(track.average(), (6.0206 + 12.0412) / 4, 1e-4);
}

TEST(ReductionTrack, NothingReducedIsZeroAndNotMinusZero) {
  ReductionTrack track;
  EXPECT_EQ(track.average(), 0);
  track.add(1);
  EXPECT_FALSE(std::signbit(track.deepest()));
  EXPECT_FALSE(std::signbit(track.average()));
}

// With a constant level from the first sample on, a compressor without a knee covers 1 -
// e^(-t/attack) of the distance to its curve, so the greatest gain of a period is that at its
// start.
TEST(ReductionTrack, FollowsTheAttackOfAConstantLevel) {
  const Library library(CHANNELSTRIP_LIBRARY);
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .knee = 0, .attack = 20};
  settings.detector.time = 10000;
  StripStream strip(library, layout_of("Mono"), 48000, settings);
  ReductionTrack track(1000);
  strip.observe([&](const MeterReading& period) { track.add(period.channel_gain[0]); });
  std::vector<float> output;
  strip.process(std::vector<float>(500 * StripStream::kPeriod, 0.5f), output);

  const double settled = 0.75 * (linear_to_db(0.5) + 20);
  // Each step of the attack covers 1/960 of the remaining distance and is rounded by up to 2^-21
  // dB: errors accumulate to 4.6e-4 dB. 3e-6 octaves in the level, 7e-6 in the gain, and the
  // detector's decay from one sample to the next are together below 1e-4 dB.
  const double bound = 5.6e-4;
  ASSERT_EQ(track.periods_per_column(), 1u);
  ASSERT_EQ(track.columns().size(), 500u);
  for (std::size_t i = 0; i < 500; ++i) {
    const double samples = static_cast<double>(i * StripStream::kPeriod) + 1;
    const double expected = settled * -std::expm1(-samples / (0.020 * 48000));
    EXPECT_NEAR(-db(track.columns()[i].least), expected, bound) << i;
  }
  EXPECT_NEAR(track.deepest(), settled, bound);
}

}  // namespace
}  // namespace channelstrip::test::reduction_track_test
