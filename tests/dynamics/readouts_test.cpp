// What the dynamics readouts show when all groups agree.

#include "every_group.h"

namespace channelstrip::test::readouts_test {
namespace {

constexpr int kMeterLevel = CHANNELSTRIP_METER_LEVEL;
constexpr int kMeterGain = CHANNELSTRIP_METER_GAIN;
constexpr int kCompReduction = CHANNELSTRIP_METER_COMP_REDUCTION;
constexpr int kExpReduction = CHANNELSTRIP_METER_EXP_REDUCTION;
constexpr int kChannelGain = CHANNELSTRIP_METER_CHANNEL_GAIN;

constexpr float kLoud = 0.3f, kQuiet = 0.001f;
const float kZeroDbGain = DbToGain(0) * DbToGain(0);

class Readouts : public EveryGroup {
 protected:
  // The gain readout that all channels share.
  float channel_gain() const {
    for (int c = 1; c < strip.channels; ++c) {
      EXPECT_EQ(strip.readout(kChannelGain + c), strip.readout(kChannelGain)) << "channel " << c;
    }
    return strip.readout(kChannelGain);
  }

  int readouts() const { return kChannelGain + strip.channels; }

  // The gain is -12 dB for levels above -50 dB and 0 dB below, without delay.
  void compress_loud_samples() {
    strip.dyn.compKneeLow = -50;
    strip.dyn.compKneeC = -12;
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Readouts, every_format(), format_name);

TEST_P(Readouts, GainIsTheProductOfTheFactorsWithoutMakeup) {
  strip.dyn.makeupGain = 4;
  freeze_terms(-3.3f, -7.7f);
  play(kLevel);
  EXPECT_EQ(strip.readout(kMeterGain), DbToGain(-3.3f) * DbToGain(-7.7f));
  EXPECT_EQ(channel_gain(), DbToGain(-3.3f) * DbToGain(-7.7f));
}

TEST_P(Readouts, ReductionsAreOneMinusTheirFactorWithoutMakeup) {
  strip.dyn.makeupGain = 4;
  freeze_terms(-3.3f, -7.7f);
  play(kLevel);
  EXPECT_EQ(strip.readout(kCompReduction), 1 - DbToGain(-3.3f));
  EXPECT_EQ(strip.readout(kExpReduction), 1 - DbToGain(-7.7f));
}

TEST_P(Readouts, CompressorReductionEndsAtItsRange) {
  compress_loud_samples();
  strip.dyn.compRange = -5;
  strip.jump_to_targets();
  play(kLoud);
  EXPECT_EQ(strip.readout(kCompReduction), 1 - DbToGain(-5));
}

TEST_P(Readouts, ZeroDecibelsLeaveResetReductionsAtZero) {
  play(kLevel);
  EXPECT_EQ(strip.readout(kCompReduction), 0.0f);
  EXPECT_EQ(strip.readout(kExpReduction), 0.0f);
}

TEST_P(Readouts, AreNeverLowered) {
  set_readouts(2);
  play(kLevel);
  for (int i = 0; i < readouts(); ++i) EXPECT_EQ(strip.readout(i), 2.0f) << i;
}

TEST_P(Readouts, GreatestGainMayComeWithAnySample) {
  compress_loud_samples();
  for (size_t sample = 0; sample < 16; ++sample) {
    set_readouts(0);
    strip.fill_inputs(kLoud);
    for (auto& channel : strip.in) channel[sample] = kQuiet;
    strip.process();
    EXPECT_EQ(strip.readout(kMeterGain), kZeroDbGain) << sample;
    EXPECT_EQ(strip.readout(kMeterLevel), kQuiet) << sample;
    EXPECT_EQ(channel_gain(), kZeroDbGain) << sample;
  }
}

TEST_P(Readouts, GreatestReductionsMayComeWithAnySample) {
  compress_loud_samples();
  strip.dyn.expKneeHigh = 1000;  // loud levels lie in the expander's knee
  strip.dyn.expKneeLow = -50;
  strip.dyn.expKneeC = -20;
  for (size_t sample = 0; sample < 16; ++sample) {
    set_readouts(0);
    strip.fill_inputs(kQuiet);
    for (auto& channel : strip.in) channel[sample] = kLoud;
    strip.process();
    EXPECT_EQ(strip.readout(kCompReduction), 1 - DbToGain(-12)) << sample;
    EXPECT_EQ(strip.readout(kExpReduction), 1 - DbToGain(-20)) << sample;
  }
}

TEST_P(Readouts, FirstSampleFillsAnEmptyGainAndEqualOnesDoNotReplaceIt) {
  strip.fill_inputs(0.5f);
  for (auto& channel : strip.in) channel[0] = 0.25f;
  strip.process();
  EXPECT_EQ(strip.readout(kMeterGain), kZeroDbGain);
  EXPECT_EQ(strip.readout(kMeterLevel), 0.25f);
}

TEST_P(Readouts, LevelStaysWhenTheGainDoesNotRise) {
  set_readouts(kZeroDbGain);
  play(2);
  EXPECT_EQ(strip.readout(kMeterLevel), kZeroDbGain);
}

// Two factors of 2^-99.7: their product underflows to 0.
TEST_P(Readouts, WhileTheGainIsZeroTheLoudestSampleGivesTheLevel) {
  freeze_terms(-600, -600);
  play(0.25f, {0.5f, 0.75f, 0.5f});
  EXPECT_EQ(strip.readout(kMeterGain), 0.0f);
  EXPECT_EQ(strip.readout(kMeterLevel), 0.75f);
}

// A NaN gain never compares as greater, so only the level decides.
TEST_P(Readouts, LevelEqualToTheOneShownLeavesAnEmptyGain) {
  freeze_terms(kNaN, 0);
  set_readouts(0);
  strip.meters[2 * channels() + kMeterLevel] = kLoud;
  play(kLoud);
  EXPECT_EQ(strip.readout(kMeterGain), 0.0f);
}

TEST_P(Readouts, GainBelowZeroIsNotEmpty) {
  freeze_terms(kNaN, 0);
  set_readouts(-1);
  play(kLoud);
  EXPECT_EQ(strip.readout(kMeterGain), -1.0f);
}

TEST_P(Readouts, LevelIsThatOfTheDetectorInUse) {
  strip.dyn.peakDecay = 0.5f;
  strip.dyn.detectorFilter[0] = 0.25f;
  for (int32_t mode : {0, 1}) {
    set_readouts(0);
    set_state(&Dyn_SState::peakLevel, 1.0f);
    strip.dyn.detectorMode = mode;
    play(0.125f);
    EXPECT_EQ(strip.readout(kMeterLevel), mode == 0 ? 0.5f : 0.03125f);
  }
}

// 800 dB is beyond the range of the conversion, whose result is a NaN.
TEST_P(Readouts, NaNNeverEnters) {
  ASSERT_TRUE(std::isnan(DbToGain(800)));
  set_readouts(0.5f);
  freeze_terms(800, 800);
  play(1);
  for (int i = 0; i < readouts(); ++i) EXPECT_EQ(strip.readout(i), 0.5f) << i;
}

TEST_P(Readouts, NaNThatIsThereStays) {
  set_readouts(kNaN);
  play(1);
  for (int i = 0; i < readouts(); ++i) {
    EXPECT_TRUE(std::isnan(strip.readout(i))) << i;
  }
}

}  // namespace
}  // namespace channelstrip::test::readouts_test
