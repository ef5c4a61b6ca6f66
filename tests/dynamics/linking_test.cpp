// Link groups: one level and one gain for all channels of a group, none shared between groups.

#include "every_group.h"

namespace channelstrip::test::linking_test {
namespace {

constexpr float kLoud = 0.5f, kQuiet = 0.001f;
const float kZeroDbGain = DbToGain(0) * DbToGain(0);
const float kLoweredGain = DbToGain(-12) * DbToGain(0);

// The gain is -12 dB for levels above -50 dB and 0 dB below, without delay.
class Linking : public EveryGroup {
 protected:
  Linking() {
    strip.dyn.compKneeLow = -50;
    strip.dyn.compKneeC = -12;
    strip.fill_inputs(kQuiet);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Linking, every_format(), format_name);

TEST_P(Linking, LoudestChannelLowersItsWholeGroupInTheSameSample) {
  for (size_t loud = 0; loud < channels(); ++loud) {
    strip.in[loud][6] = kLoud;
    strip.process();
    for (size_t c = 0; c < channels(); ++c) {
      const float gain = leader(c) == leader(loud) ? kLoweredGain : kZeroDbGain;
      EXPECT_EQ(strip.out[c][5], kQuiet * kZeroDbGain);
      EXPECT_EQ(strip.out[c][6], strip.in[c][6] * gain);
      EXPECT_EQ(strip.out[c][7], kQuiet * kZeroDbGain);
    }
    strip.in[loud][6] = kQuiet;
  }
}

// The linked level is neither a sum nor a signed maximum.
TEST_P(Linking, GroupsLevelIsTheGreatestMagnitude) {
  for (size_t greatest = 0; greatest < channels(); ++greatest) {
    for (auto& channel : strip.in) channel[15] = 0.5f;
    strip.in[greatest][15] = -0.75f;
    strip.process();
    for (size_t c = 0; c < groups(); ++c) {
      EXPECT_EQ(strip.dyn_state[c].smoothLevel, c == leader(greatest) ? 0.75f : 0.5f) << greatest;
    }
  }
}

TEST_P(Linking, NaNInOneChannelLeavesTheLevelToTheOthers) {
  std::fill_n(strip.dyn.linkGroup, channels(), 0);
  for (size_t broken = 0; broken < channels(); ++broken) {
    set_state(&Dyn_SState::keyZ1, 0.0f);  // the last NaN is still in there
    set_state(&Dyn_SState::keyZ2, 0.0f);
    for (auto& channel : strip.in) channel[15] = kLoud;
    strip.in[broken][15] = kNaN;
    strip.process();
    EXPECT_EQ(strip.dyn_state[0].smoothLevel, channels() == 1 ? 0.0f : kLoud) << broken;
  }
}

TEST_P(Linking, AllChannelsMayBeInAnyOneGroup) {
  for (size_t group = 0; group < groups(); ++group) {
    std::fill_n(strip.dyn.linkGroup, channels(), static_cast<int32_t>(group));
    strip.in[channels() - 1][15] = kLoud;
    strip.process();
    for (size_t c = 0; c < channels(); ++c) {
      EXPECT_EQ(strip.out[c][15], strip.in[c][15] * kLoweredGain);
    }
  }
}

TEST_P(Linking, EntriesBeyondTheChannelsAreNotRead) {
  std::fill(strip.dyn.linkGroup + channels(), std::end(strip.dyn.linkGroup), INT32_MAX);
  play(kLoud);
  EXPECT_EQ(output(15), kLoud * kLoweredGain);
}

class LinkMap : public Linking {};
INSTANTIATE_TEST_SUITE_P(FormatsOfSeveralGroups, LinkMap, formats_of_several_groups(), format_name);

TEST_P(LinkMap, NumbersOfTheGroupsDoNotMatter) {
  for (size_t c = 0; c < channels(); ++c) strip.in[c][3 * c % 16] = kLoud;
  strip.process();
  const auto out = strip.out;
  const auto meters = strip.meters;
  const auto last_group = static_cast<int32_t>(groups() - 1);
  for (size_t c = 0; c < channels(); ++c) {
    strip.dyn.linkGroup[c] = last_group - strip.dyn.linkGroup[c];
  }
  std::fill(strip.meters.begin(), strip.meters.end(), 0.0f);
  strip.process();
  EXPECT_EQ(strip.out, out);
  EXPECT_EQ(strip.meters, meters);
}

class ChangingLinkMap : public EveryGroup {
 protected:
  ChangingLinkMap() {
    freeze_terms(-3, 0);
    strip.dyn_state[1].compGain = -20;
  }
  void link_all() { std::fill_n(strip.dyn.linkGroup, channels(), 0); }
};
INSTANTIATE_TEST_SUITE_P(FormatsOfSeveralGroups, ChangingLinkMap, formats_of_several_groups(),
                         format_name);

TEST_P(ChangingLinkMap, ChannelThatComesToLeadGoesOnFromItsOwnRecord) {
  link_all();
  play(1);
  EXPECT_EQ(output(15), DbToGain(-3) * DbToGain(0));
  strip.dyn.linkGroup[1] = 1;
  play(1);
  EXPECT_EQ(strip.out[1][15], DbToGain(-20) * DbToGain(0));
  EXPECT_EQ(strip.out[2][15], DbToGain(-3) * DbToGain(0));
}

TEST_P(ChangingLinkMap, ChannelThatComesToFollowTakesItsLeadersGain) {
  play(1);
  EXPECT_EQ(strip.out[1][15], DbToGain(-20) * DbToGain(0));
  link_all();
  play(1);
  EXPECT_EQ(output(15), DbToGain(-3) * DbToGain(0));
  EXPECT_EQ(strip.dyn_state[1].compGain, -20.0f);
}

TEST(LinkExamples, StereoShowsOneGainOnBothChannels) {
  Strip strip("Stereo");
  strip.dyn.compRelease = 0;
  strip.dyn_state[0].compGain = -6;
  strip.dyn_state[1].compGain = -20;
  strip.process();
  EXPECT_EQ(strip.readout(4), DbToGain(-6) * DbToGain(0));
  EXPECT_EQ(strip.readout(5), strip.readout(4));
}

TEST(LinkExamples, FiveOneInFourGroupsIsLedByItsChannels0And2And3And5) {
  Strip strip("5.1");
  const int32_t map[] = {0, 0, 1, 2, 2, 3};
  const size_t leaders[] = {0, 0, 2, 3, 3, 5};
  std::copy(std::begin(map), std::end(map), strip.dyn.linkGroup);
  strip.dyn.compRelease = 0;
  for (size_t c = 0; c < 6; ++c) strip.dyn_state[c].compGain = -1.0f - static_cast<float>(c);
  strip.fill_inputs(1);
  strip.process();
  for (size_t c = 0; c < 6; ++c) {
    const float gain = DbToGain(strip.dyn_state[leaders[c]].compGain) * DbToGain(0);
    EXPECT_EQ(strip.out[c][0], gain) << c;
    EXPECT_EQ(strip.readout(4 + static_cast<int>(c)), gain) << c;
  }
}

}  // namespace
}  // namespace channelstrip::test::linking_test
