#include "host/meters/meter_interval.h"

#include <gtest/gtest.h>

#include <vector>

#include "host/meters/meters.h"

namespace channelstrip::test::meter_interval_test {
namespace {

using namespace host;

struct Period {
  std::vector<float> input_peak = {0}, output_peak = {0};
  float level = 0, gain = 1, compressor = 0, expander = 0;
  std::vector<float> channel_gain = {1};

  MeterReading reading() const {
    return {input_peak, output_peak, level, gain, compressor, expander, channel_gain};
  }
};

MeterInterval combined(const std::vector<Period>& periods) {
  IntervalMeter meter;
  for (const Period& period : periods) meter.add(period.reading());
  EXPECT_EQ(meter.periods(), periods.size());
  return meter.interval();
}

TEST(IntervalMeter, PeaksAreTheHighestOfEachChannel) {
  const MeterInterval all = combined({{.input_peak = {0.5f, 0.1f}, .output_peak = {0.2f, 0.9f}},
                                      {.input_peak = {0.4f, 0.3f}, .output_peak = {0.6f, 0.8f}}});
  EXPECT_EQ(all.input_peak, (std::vector{0.5f, 0.3f}));
  EXPECT_EQ(all.output_peak, (std::vector{0.6f, 0.9f}));
}

TEST(IntervalMeter, ReductionsAreTheDeepest) {
  const MeterInterval all = combined({{.compressor = 0.5f, .expander = 0}, {.expander = 0.25f}});
  EXPECT_EQ(all.compressor_reduction, 0.5f);
  EXPECT_EQ(all.expander_reduction, 0.25f);
}

TEST(IntervalMeter, GainIsTheLeastThatLastedAPeriod) {
  const MeterInterval all =
      combined({{.channel_gain = {1, 0.5f}}, {.channel_gain = {0.75f, 0.625f}}});
  EXPECT_EQ(all.channel_gain, (std::vector{0.75f, 0.5f}));
}

TEST(IntervalMeter, LevelBelongsToTheGain) {
  const MeterInterval all = combined(
      {{.level = 0.9f, .gain = 0.5f}, {.level = 0.8f, .gain = 0.25f}, {.level = 1, .gain = 1}});
  EXPECT_EQ(all.gain, 0.25f);
  EXPECT_EQ(all.level, 0.8f);
}

TEST(IntervalMeter, LoudestPeriodGivesTheLevelWhereGainsAreEqual) {
  EXPECT_EQ(combined({{.level = 0.1f}, {.level = 0.7f}, {.level = 0.3f}}).level, 0.7f);
}

TEST(IntervalMeter, ForgetsAtAReset) {
  IntervalMeter meter;
  meter.add(Period{.input_peak = {1}, .compressor = 0.5f, .channel_gain = {0.1f}}.reading());
  meter.reset();
  EXPECT_EQ(meter.periods(), 0u);
  meter.add(Period{.input_peak = {0.5f}}.reading());
  EXPECT_EQ(meter.interval().input_peak.front(), 0.5f);
  EXPECT_EQ(meter.interval().compressor_reduction, 0);
  EXPECT_EQ(meter.interval().channel_gain.front(), 1);
}

TEST(Meters, RowIsTheNearestWholeNumberOfPeriods) {
  EXPECT_EQ(periods_per_row(100, 48000), 75u);
  EXPECT_EQ(periods_per_row(100, 44100), 69u);
  EXPECT_EQ(periods_per_row(1, 8000), 1u);
  EXPECT_EQ(periods_per_row(60000, 192000), 180000u);
}

}  // namespace
}  // namespace channelstrip::test::meter_interval_test
