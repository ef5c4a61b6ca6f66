#include "every_group.h"

namespace channelstrip::test::gate_test {
namespace {

constexpr float kFloor = -40;

constexpr float kLoud = kLevel;      // -10.5 dB: opens the gate
constexpr float kBetween = 0.0056f;  // -45.0 dB: between the thresholds
constexpr float kQuiet = 0.001f;     // -60.0 dB: closes the gate

// An open gate gives 0 dB at any level, a closed one kFloor.
class Gate : public EveryGroup {
 protected:
  Gate() {
    strip.dyn.gateOpenThreshold = -40;
    strip.dyn.gateCloseThreshold = -50;
    strip.dyn.expRange = kFloor;
    strip.jump_to_targets();
  }

  int32_t gate_after(int32_t gate, float level) {
    set_state(&Dyn_SState::gateOpen, gate);
    play(level);
    return state(&Dyn_SState::gateOpen);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Gate, every_format(), format_name);

TEST_P(Gate, ClosedStaysClosedBetweenTheThresholds) {
  EXPECT_EQ(gate_after(0, kBetween), 0);
}

TEST_P(Gate, OpenStaysOpenBetweenTheThresholds) {
  EXPECT_EQ(gate_after(1, kBetween), 1);
}

TEST_P(Gate, OpensAtItsOpenThreshold) {
  strip.dyn.gateOpenThreshold = kLevelDb;
  EXPECT_EQ(gate_after(0, kLevel), 1);
}

TEST_P(Gate, OpensOneFloatAboveItsOpenThreshold) {
  strip.dyn.gateOpenThreshold = one_float_below(kLevelDb);
  EXPECT_EQ(gate_after(0, kLevel), 1);
}

TEST_P(Gate, StaysClosedOneFloatBelowItsOpenThreshold) {
  strip.dyn.gateOpenThreshold = one_float_above(kLevelDb);
  EXPECT_EQ(gate_after(0, kLevel), 0);
}

TEST_P(Gate, StaysOpenAtItsCloseThreshold) {
  strip.dyn.gateOpenThreshold = 0;
  strip.dyn.gateCloseThreshold = kLevelDb;
  EXPECT_EQ(gate_after(1, kLevel), 1);
}

TEST_P(Gate, StaysOpenOneFloatAboveItsCloseThreshold) {
  strip.dyn.gateOpenThreshold = 0;
  strip.dyn.gateCloseThreshold = one_float_below(kLevelDb);
  EXPECT_EQ(gate_after(1, kLevel), 1);
}

TEST_P(Gate, ClosesOneFloatBelowItsCloseThreshold) {
  strip.dyn.gateOpenThreshold = 0;
  strip.dyn.gateCloseThreshold = one_float_above(kLevelDb);
  EXPECT_EQ(gate_after(1, kLevel), 0);
}

TEST_P(Gate, SilenceOpensItOnlyFromAThresholdOfMinus140Down) {
  strip.dyn.gateOpenThreshold = one_float_above(-140);
  strip.dyn.gateCloseThreshold = -1000;
  EXPECT_EQ(gate_after(0, 0), 0);
  strip.dyn.gateOpenThreshold = -140;
  EXPECT_EQ(gate_after(0, 0), 1);
}

TEST_P(Gate, AnyPositiveStateIsReadAsOpenAndWrittenAsOne) {
  for (int32_t gate : {2, 1 << 20, INT32_MAX}) EXPECT_EQ(gate_after(gate, kBetween), 1) << gate;
}

TEST_P(Gate, NegativeStateIsReadAsClosedAndWrittenAsZero) {
  for (int32_t gate : {-1, INT32_MIN}) EXPECT_EQ(gate_after(gate, kBetween), 0) << gate;
}

TEST_P(Gate, OpensAndStaysOpenWithinAQuad) {
  set_state(&Dyn_SState::gateOpen, 0);
  play(kQuiet, {kLoud, kBetween});
  EXPECT_EQ(state(&Dyn_SState::gateOpen), 1);
}

TEST_P(Gate, ClosesAndStaysClosedWithinAQuad) {
  play(kLoud, {kQuiet, kBetween});
  EXPECT_EQ(state(&Dyn_SState::gateOpen), 0);
}

TEST_P(Gate, SampleThatOpensItIsLetThrough) {
  set_state(&Dyn_SState::gateOpen, 0);
  set_state(&Dyn_SState::expGain, kFloor);
  play(kQuiet, {kLoud});
  EXPECT_EQ(state(&Dyn_SState::expGain), 0.0f);
}

TEST_P(Gate, SampleThatClosesItIsNotLetThrough) {
  play(kLoud, {kQuiet});
  EXPECT_EQ(state(&Dyn_SState::expGain), kFloor);
}

TEST_P(Gate, OpenLetsTheCurveThrough) {
  strip.dyn.expKneeHigh = 1000;
  strip.dyn.expKneeC = -7;
  play(kBetween);
  EXPECT_EQ(state(&Dyn_SState::expGain), -7.0f);
}

TEST_P(Gate, ClosedTakesTheTermToTheRangeInUse) {
  set_state(&Dyn_SState::gateOpen, 0);
  set_state(&Dyn_SState::dezipRate, 0.0f);
  strip.dyn.expRange = -100;
  play(kBetween);
  EXPECT_EQ(state(&Dyn_SState::expGain), kFloor);
}

}  // namespace
}  // namespace channelstrip::test::gate_test
