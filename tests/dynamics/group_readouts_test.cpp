// All groups share slots 0 to 3 of the readouts; each channel has a slot for its group's gain.

#include "every_group.h"

namespace channelstrip::test::group_readouts_test {
namespace {

constexpr int kChannelGain = CHANNELSTRIP_METER_CHANNEL_GAIN;

// Gain terms are frozen. The group whose leader is channel g has the level (g + 1)/8.
class GroupReadouts : public EveryGroup {
 protected:
  GroupReadouts() {
    freeze_terms(0, 0);
    for (size_t c = 0; c < channels(); ++c) strip.in[c].assign(16, level(leader(c)));
  }

  static float level(size_t group) { return static_cast<float>(group + 1) / 8; }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, GroupReadouts, every_format(), format_name);

TEST_P(GroupReadouts, GainAndLevelAreThoseOfTheGreatestGain) {
  for (size_t greatest = 0; greatest < groups(); ++greatest) {
    set_readouts(0);
    set_state(&Dyn_SState::compGain, -6.0f);
    strip.dyn_state[greatest].compGain = -1;
    strip.process();
    EXPECT_EQ(strip.readout(CHANNELSTRIP_METER_GAIN), DbToGain(-1) * DbToGain(0));
    EXPECT_EQ(strip.readout(CHANNELSTRIP_METER_LEVEL), level(greatest));
  }
}

TEST_P(GroupReadouts, LevelIsThatOfTheLowestLeaderWhenGainsAreEqual) {
  strip.process();
  EXPECT_EQ(strip.readout(CHANNELSTRIP_METER_LEVEL), level(0));
}

TEST_P(GroupReadouts, ReductionsAreTheGreatestOfAll) {
  for (size_t greatest = 0; greatest < groups(); ++greatest) {
    set_readouts(0);
    set_state(&Dyn_SState::compGain, -1.0f);
    set_state(&Dyn_SState::expGain, -2.0f);
    strip.dyn_state[greatest].compGain = -6;
    strip.dyn_state[(greatest + 1) % groups()].expGain = -9;
    strip.process();
    EXPECT_EQ(strip.readout(CHANNELSTRIP_METER_COMP_REDUCTION), 1 - DbToGain(-6));
    EXPECT_EQ(strip.readout(CHANNELSTRIP_METER_EXP_REDUCTION), 1 - DbToGain(-9));
  }
}

TEST_P(GroupReadouts, EveryChannelShowsTheGainOfItsGroup) {
  for (size_t c = 0; c < groups(); ++c) strip.dyn_state[c].compGain = -8 * level(c);
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_EQ(strip.readout(kChannelGain + static_cast<int>(c)),
              DbToGain(-8 * level(leader(c))) * DbToGain(0));
  }
}

class FollowersReadouts : public GroupReadouts {};
INSTANTIATE_TEST_SUITE_P(FormatsWithFollowers, FollowersReadouts, formats_with_followers(),
                         format_name);

TEST_P(FollowersReadouts, CopyTheirLeadersEvenWhenTheyStoodHigher) {
  std::fill(strip.meters.end() - static_cast<ptrdiff_t>(channels() - groups()), strip.meters.end(),
            100.0f);
  strip.process();
  for (int c = strip.format.groups; c < strip.channels; ++c) {
    EXPECT_EQ(strip.readout(kChannelGain + c), DbToGain(0) * DbToGain(0));
  }
}

}  // namespace
}  // namespace channelstrip::test::group_readouts_test
