// Makeup and the two ranges glide towards their targets by one step before every quad.

#include "every_group.h"
#include "roundings.h"

namespace channelstrip::test::glide_test {
namespace {

constexpr float kRate = 0.3f;
constexpr int kQuads = 4;

class Glide : public EveryGroup {
 protected:
  Glide() { set_state(&Dyn_SState::dezipRate, kRate); }

  // One block makes four steps. The values are chosen so that unfused steps give another result.
  void expect_fused_steps(float Dyn_SState::*current, float Dyn_SCoefsBlock::*target_field,
                          float start, float target) {
    const float expected = after_steps(kQuads, fused_step, start, target, kRate);
    ASSERT_NE(expected, after_steps(kQuads, unfused_step, start, target, kRate));
    set_state(current, start);
    strip.dyn.*target_field = target;
    play(kLevel);
    EXPECT_EQ(state(current), expected);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Glide, every_format(), format_name);

TEST_P(Glide, MakeupTakesAFusedStepPerQuad) {
  expect_fused_steps(&Dyn_SState::curMakeupGain, &Dyn_SCoefsBlock::makeupGain, 1.2f, 2.3f);
}

TEST_P(Glide, CompressorRangeTakesAFusedStepPerQuad) {
  expect_fused_steps(&Dyn_SState::curCompRange, &Dyn_SCoefsBlock::compRange, -21.7f, -3.1f);
}

TEST_P(Glide, ExpanderRangeTakesAFusedStepPerQuad) {
  expect_fused_steps(&Dyn_SState::curExpRange, &Dyn_SCoefsBlock::expRange, -6.1f, -61.9f);
}

TEST_P(Glide, EachQuadHasOneMakeupAfterItsStep) {
  strip.dyn.makeupGain = 3;
  play(1);
  float makeup = 1;
  for (size_t k = 0; k < 16; ++k) {
    if (k % 4 == 0) makeup = fused_step(makeup, 3, kRate);
    EXPECT_EQ(output(k), makeup * (DbToGain(0) * DbToGain(0))) << k;
  }
}

TEST_P(Glide, EachQuadHasOneCompressorRangeAfterItsStep) {
  strip.dyn.compKneeHigh = strip.dyn.compKneeLow = -1000;
  strip.dyn.compSlope = 100;  // the target is far below the range
  strip.dyn.compRange = -50;
  set_state(&Dyn_SState::curCompRange, 0.0f);
  play(kLevel);
  float range = 0;
  for (size_t k = 0; k < 16; ++k) {
    if (k % 4 == 0) range = fused_step(range, -50, kRate);
    EXPECT_EQ(output(k), kLevel * (DbToGain(range) * DbToGain(0))) << k;
  }
}

TEST_P(Glide, EachQuadHasOneExpanderRangeAfterItsStep) {
  strip.dyn.gateOpenThreshold = 1000;
  set_state(&Dyn_SState::gateOpen, 0);
  strip.dyn.expRange = -50;
  set_state(&Dyn_SState::curExpRange, 0.0f);
  play(kLevel);
  float range = 0, term = 0;
  for (size_t k = 0; k < 16; ++k) {
    if (k % 4 == 0) range = fused_step(range, -50, kRate);
    term = fused_step(term, range, 1);
    EXPECT_EQ(output(k), kLevel * (DbToGain(0) * DbToGain(term))) << k;
  }
}

TEST_P(Glide, RecordZerosRateServesEveryGroup) {
  set_state(&Dyn_SState::dezipRate, kNaN);
  strip.dyn_state[0].dezipRate = 0.5f;
  strip.dyn.makeupGain = 17;
  strip.dyn.compRange = -584;
  strip.dyn.expRange = -616;
  play(kLevel);
  EXPECT_EQ(state(&Dyn_SState::curMakeupGain), 16.0f);
  EXPECT_EQ(state(&Dyn_SState::curCompRange), -585.0f);
  EXPECT_EQ(state(&Dyn_SState::curExpRange), -615.0f);
}

TEST_P(Glide, RateOfZeroKeepsEverything) {
  set_state(&Dyn_SState::dezipRate, 0.0f);
  strip.dyn.makeupGain = 17;
  strip.dyn.compRange = strip.dyn.expRange = -10;
  play(kLevel);
  EXPECT_EQ(state(&Dyn_SState::curMakeupGain), 1.0f);
  EXPECT_EQ(state(&Dyn_SState::curCompRange), -600.0f);
  EXPECT_EQ(state(&Dyn_SState::curExpRange), -600.0f);
}

}  // namespace
}  // namespace channelstrip::test::glide_test
