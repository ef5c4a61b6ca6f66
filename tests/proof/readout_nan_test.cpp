// Which meters can become NaN, and which can't.

#include <gtest/gtest.h>
#include <tests/support/every_format.h>
#include <tests/support/strip.h>

#include <cmath>

#include "poison.h"
#include "scenes.h"

namespace channelstrip::test::readout_nan_test {
namespace {

class ReadoutNan : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, ReadoutNan, every_format(), format_name);

// A gain term that is NaN stays NaN, and so does the gain.
void make_gain_nan(Strip& strip) {
  for (Dyn_SState& state : strip.dyn_state) state.compGain = kNaN;
}

float gain_readout(const Strip& strip) {
  return strip.readout(CHANNELSTRIP_METER_GAIN);
}
float level_readout(const Strip& strip) {
  return strip.readout(CHANNELSTRIP_METER_LEVEL);
}

void set_readout(Strip& strip, int index, float value) {
  const int meter = 2 * strip.channels + index;
  strip.meters[static_cast<std::size_t>(meter)] = value;
}

// A gain readout of 0 counts as empty: it takes the gain of the first sample that is louder than
// the level readout, even a NaN.
TEST_P(ReadoutNan, EntersAnEmptyGainReadoutWithASampleAboveTheLevelReadout) {
  for (const float empty : {0.0f, -0.0f}) {
    Strip strip(format());
    make_gain_nan(strip);
    strip.fill_inputs(0.5f);
    set_readout(strip, CHANNELSTRIP_METER_GAIN, empty);
    set_readout(strip, CHANNELSTRIP_METER_LEVEL, 0.25f);
    strip.process();
    EXPECT_TRUE(std::isnan(gain_readout(strip)));
    EXPECT_EQ(level_readout(strip), 0.5f);
  }
}

TEST_P(ReadoutNan, StaysOutOfAnEmptyGainReadoutBelowTheLevelReadout) {
  Strip strip(format());
  make_gain_nan(strip);
  strip.fill_inputs(0.5f);
  set_readout(strip, CHANNELSTRIP_METER_LEVEL, 0.5f);
  strip.process();
  EXPECT_EQ(gain_readout(strip), 0);
  EXPECT_EQ(level_readout(strip), 0.5f);
}

TEST_P(ReadoutNan, StaysOutOfAGainReadoutThatIsNotEmpty) {
  for (const float held : {0x1p-149f, 1e-30f, -1.0f}) {
    Strip strip(format());
    make_gain_nan(strip);
    strip.fill_inputs(0.5f);
    set_readout(strip, CHANNELSTRIP_METER_GAIN, held);
    strip.process();
    EXPECT_EQ(gain_readout(strip), held);
    EXPECT_EQ(level_readout(strip), 0);
  }
}

// A NaN stays once it is there: no gain compares as greater.
TEST_P(ReadoutNan, StaysInTheGainReadoutUntilTheHostResetsIt) {
  Strip strip(format());
  strip.fill_inputs(0.5f);
  set_readout(strip, CHANNELSTRIP_METER_GAIN, kNaN);
  strip.process();
  EXPECT_TRUE(std::isnan(gain_readout(strip)));
  set_readout(strip, CHANNELSTRIP_METER_GAIN, 0);
  strip.process();
  EXPECT_GT(gain_readout(strip), 1);
}

// The level readout is no maximum: it is the level at the greatest gain, which may be a NaN.
TEST_P(ReadoutNan, OfTheDetectorEntersTheLevelReadoutWithARisingGain) {
  Strip strip(format());
  strip.dyn.detectorMode = 1;
  for (Dyn_SState& state : strip.dyn_state) state.detZ1 = kNaN;
  strip.fill_inputs(0.5f);
  set_readout(strip, CHANNELSTRIP_METER_LEVEL, 0.25f);
  strip.process();
  EXPECT_TRUE(std::isnan(level_readout(strip)));
  EXPECT_GT(gain_readout(strip), 1);
}

// 0 times infinity in the detector filter; the NaN then reads as silence, and the gain rises.
TEST_P(ReadoutNan, OfAnInfiniteSampleReachesTheLevelReadoutInSmoothedMode) {
  Strip strip(format());
  strip.dyn.detectorMode = 1;
  strip.dyn.compSlope = -1;
  strip.dyn.compThreshold = strip.dyn.compKneeLow = strip.dyn.compKneeHigh = -20;
  strip.in[0][3] = kInfinity;
  std::fill_n(strip.in[0].begin(), 3, 1.0f);
  strip.process();
  EXPECT_TRUE(std::isnan(level_readout(strip)));
  EXPECT_GT(gain_readout(strip), 1);
}

// A channel's gain readout is copied from its group's first channel, even a NaN that the host left.
TEST_P(ReadoutNan, OfTheHostInAGroupsFirstGainIsMirrored) {
  Strip strip(format());
  strip.fill_inputs(0.5f);
  set_readout(strip, CHANNELSTRIP_METER_CHANNEL_GAIN, kNaN);
  strip.process();
  for (int c = 0; c < strip.channels; ++c) {
    EXPECT_TRUE(std::isnan(strip.readout(CHANNELSTRIP_METER_CHANNEL_GAIN + c))) << c;
  }
}

// Peaks, reductions and the channels' gains never become NaN, whatever numbers are where.
TEST_P(ReadoutNan, EntersNoOtherMeter) {
  const std::size_t readouts = 2 * channels();
  Random random(1);
  for (int trial = 0; trial < 100; ++trial) {
    Scene scene = independent_scene(random, GetParam(), Kind::kOrderFree);
    for (int i = 0; i < 30; ++i) one_of(random, std::span(scene.arena)) = random_poison(random);
    for (Instance& it : scene.instances) {
      for (float& meter : it.meters) meter = random.real(0.0F, 1.0F);
      one_of(random, it.eq_targets.targetCoefs) = random_poison(random);
      Dyn_SState& state = one_of(random, std::span(it.dyn_state).first(channels()));
      float* const floats[] = {&state.compGain,    &state.expGain,      &state.keyZ1,
                               &state.detZ1,       &state.peakLevel,    &state.curCompRange,
                               &state.curExpRange, &state.curMakeupGain};
      *one_of(random, floats) = random_poison(random);
      it.meters[readouts + CHANNELSTRIP_METER_GAIN] = random.pick({0.0F, 0.5F});
    }
    const Scene result = by_library(GetParam(), scene);
    for (std::size_t i = 0; i < scene.instances.size(); ++i) {
      const Instance& it = result.instances[i];
      for (std::size_t m = 0; m < readouts + CHANNELSTRIP_METER_CHANNEL_GAIN + channels(); ++m) {
        if (m == readouts + CHANNELSTRIP_METER_LEVEL) continue;
        if (m == readouts + CHANNELSTRIP_METER_GAIN && scene.instances[i].meters[m] == 0) continue;
        ASSERT_FALSE(std::isnan(it.meters[m])) << "meter " << m << ", trial " << trial;
      }
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::readout_nan_test
