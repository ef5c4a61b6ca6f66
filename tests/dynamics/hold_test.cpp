#include "every_group.h"

namespace channelstrip::test::hold_test {
namespace {

constexpr float kFloor = -40;
constexpr float kLoud = kLevel;

// The target is 0 dB for a loud signal, kFloor in silence. The attack is immediate; the release
// halves the distance with every sample.
class Hold : public EveryGroup {
 protected:
  Hold() {
    strip.dyn.gateOpenThreshold = strip.dyn.gateCloseThreshold = -100;
    strip.dyn.expRange = kFloor;
    strip.dyn.expRelease = 0.5f;
    strip.jump_to_targets();
    rest();
  }

  // The gate is closed, the term at kFloor, no hold left.
  void rest() {
    set_state(&Dyn_SState::gateOpen, 0);
    set_state(&Dyn_SState::expGain, kFloor);
    set_state(&Dyn_SState::holdCount, 0);
  }

  // From rest, one rising sample, then `falling` falling ones.
  void rise_and_fall(size_t falling) {
    rest();
    strip.fill_inputs(0);
    for (auto& channel : strip.in) channel[15 - falling] = kLoud;
    strip.process();
  }

  float term() const { return state(&Dyn_SState::expGain); }
  int32_t count() const { return state(&Dyn_SState::holdCount); }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Hold, every_format(), format_name);

TEST_P(Hold, LastsExactlyItsSamples) {
  for (int32_t hold = 0; hold <= 13; ++hold) {
    strip.dyn.expHoldSamples = hold;
    const auto samples = static_cast<size_t>(hold);
    rise_and_fall(samples);
    EXPECT_EQ(term(), 0.0f) << hold;
    rise_and_fall(samples + 1);
    EXPECT_EQ(term(), kFloor / 2) << hold;
  }
}

TEST_P(Hold, RunsOnFromCallToCall) {
  strip.dyn.expHoldSamples = 40;
  rise_and_fall(0);
  play(0);
  play(0);
  EXPECT_EQ(term(), 0.0f);
  EXPECT_EQ(count(), 8);
}

TEST_P(Hold, CountsDownWhileTheTermIsHeld) {
  strip.dyn.expHoldSamples = 100;
  rise_and_fall(5);
  EXPECT_EQ(count(), 95);
}

TEST_P(Hold, CountStopsAtZero) {
  strip.dyn.expHoldSamples = 3;
  rise_and_fall(9);
  EXPECT_EQ(count(), 0);
}

TEST_P(Hold, EveryRisingSampleLoadsItAnew) {
  strip.dyn.expHoldSamples = 100;
  strip.dyn.expAttack = 0.5f;
  play(kLoud);
  EXPECT_LT(term(), 0.0f);
  EXPECT_EQ(count(), 100);
}

TEST_P(Hold, RestingSampleCountsDown) {
  strip.dyn.expHoldSamples = 100;
  play(0, {kLoud, kLoud, kLoud});
  EXPECT_EQ(count(), 98);
}

TEST_P(Hold, RisingSampleEndsItAtOnce) {
  strip.dyn.expHoldSamples = 100;
  set_state(&Dyn_SState::holdCount, 1000);
  play(0, {kLoud});
  EXPECT_EQ(term(), 0.0f);
  EXPECT_EQ(count(), 100);
}

TEST_P(Hold, CountOfTheStateIsUsedAsItStands) {
  strip.dyn.expHoldSamples = 0;
  set_state(&Dyn_SState::expGain, 0.0f);
  set_state(&Dyn_SState::holdCount, 15);
  play(0);
  EXPECT_EQ(term(), kFloor / 2);
}

TEST_P(Hold, PassesThroughSinglePrecision) {
  for (int32_t hold : {(1 << 24) - 1, 1 << 24, (1 << 24) + 2}) {
    strip.dyn.expHoldSamples = hold;
    rise_and_fall(0);
    EXPECT_EQ(count(), hold);
  }
  strip.dyn.expHoldSamples = 16777217;
  rise_and_fall(0);
  EXPECT_EQ(count(), 16777216);
  strip.dyn.expHoldSamples = 16777219;
  rise_and_fall(0);
  EXPECT_EQ(count(), 16777220);
}

TEST_P(Hold, GreatestBecomesTwoToThe31AsAnUnsignedCount) {
  strip.dyn.expHoldSamples = INT32_MAX;
  rise_and_fall(0);
  EXPECT_EQ(static_cast<uint32_t>(count()), 0x80000000u);
  play(0);
  EXPECT_EQ(term(), 0.0f);
  EXPECT_EQ(static_cast<uint32_t>(count()), 0x80000000u - 16);
}

TEST_P(Hold, NegativeCountOfTheStateIsALargeUnsignedOne) {
  set_state(&Dyn_SState::expGain, 0.0f);
  set_state(&Dyn_SState::holdCount, -1);
  play(0);
  EXPECT_EQ(term(), 0.0f);
  EXPECT_EQ(count(), -17);
}

}  // namespace
}  // namespace channelstrip::test::hold_test
