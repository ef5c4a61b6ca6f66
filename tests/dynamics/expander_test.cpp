#include "every_group.h"
#include "roundings.h"

namespace channelstrip::test::expander_test {
namespace {

constexpr float kKnee = -3;  // dB; the knee polynomial has only this constant term

// The expander's gain term shows the target of a level: the gate is open, there is no hold, weights
// are 1 and terms start at 0 dB.
class ExpanderCurve : public EveryGroup {
 protected:
  ExpanderCurve() {
    strip.dyn.expSlope = 2;
    strip.dyn.expThreshold = -5;
    strip.dyn.expKneeC = kKnee;
    strip.dyn.expKneeHigh = 1000;
  }

  float line(float level_db) const {
    return Line{strip.dyn.expThreshold, strip.dyn.expSlope}.plain(level_db);
  }

  float target_at(float level) {
    play(level);
    return state(&Dyn_SState::expGain);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, ExpanderCurve, every_format(), format_name);

TEST_P(ExpanderCurve, LevelAtTheUpperKneeEdgeIsInTheKnee) {
  strip.dyn.expKneeHigh = kLevelDb;
  EXPECT_EQ(target_at(kLevel), kKnee);
}

TEST_P(ExpanderCurve, LevelOneFloatBelowTheUpperKneeEdgeIsInTheKnee) {
  strip.dyn.expKneeHigh = one_float_above(kLevelDb);
  EXPECT_EQ(target_at(kLevel), kKnee);
}

TEST_P(ExpanderCurve, LevelOneFloatAboveTheUpperKneeEdgeIsFlat) {
  strip.dyn.expKneeHigh = one_float_below(kLevelDb);
  EXPECT_EQ(target_at(kLevel), 0.0f);
}

TEST_P(ExpanderCurve, LevelAtTheLowerKneeEdgeIsInTheKnee) {
  strip.dyn.expKneeLow = kLevelDb;
  EXPECT_EQ(target_at(kLevel), kKnee);
}

TEST_P(ExpanderCurve, LevelOneFloatBelowTheLowerKneeEdgeIsOnTheLine) {
  strip.dyn.expKneeLow = one_float_above(kLevelDb);
  EXPECT_EQ(target_at(kLevel), line(kLevelDb));
}

TEST_P(ExpanderCurve, LevelOneFloatAboveTheLowerKneeEdgeIsInTheKnee) {
  strip.dyn.expKneeLow = one_float_below(kLevelDb);
  EXPECT_EQ(target_at(kLevel), kKnee);
}

TEST_P(ExpanderCurve, LowerEdgeIsTestedBeforeTheUpper) {
  strip.dyn.expKneeLow = 1000;
  strip.dyn.expKneeHigh = -1000;
  EXPECT_EQ(target_at(kLevel), line(kLevelDb));
}

TEST_P(ExpanderCurve, TargetIsNotBelowTheRangeInUse) {
  strip.dyn.expRange = -2;
  strip.jump_to_targets();
  strip.dyn.expRange = -100;
  set_state(&Dyn_SState::dezipRate, 0.0f);
  EXPECT_EQ(target_at(kLevel), -2.0f);
}

TEST_P(ExpanderCurve, RangeLeavesATargetThatIsNotANumber) {
  strip.dyn.expKneeC = kNaN;
  EXPECT_TRUE(std::isnan(target_at(kLevel)));
}

TEST_P(ExpanderCurve, LineRoundsTheDifferenceThenTheProduct) {
  const Line line{3.6f, 1.3f};
  for (float other : line.otherwise(FastLog2(kLevel), LevelToDb(2))) {
    ASSERT_NE(other, line.plain(kLevelDb));
  }
  strip.dyn.expKneeLow = 1000;
  strip.dyn.expThreshold = line.threshold;
  strip.dyn.expSlope = line.slope;
  EXPECT_EQ(target_at(kLevel), line.plain(kLevelDb));
}

TEST_P(ExpanderCurve, PolynomialRoundsEveryTermAndSum) {
  const Polynomial knee{-0.022f, 0.28f, -2};
  for (float other : knee.otherwise(kLevelDb)) ASSERT_NE(other, knee.plain(kLevelDb));
  strip.dyn.expKneeA = knee.a;
  strip.dyn.expKneeB = knee.b;
  strip.dyn.expKneeC = knee.c;
  EXPECT_EQ(target_at(kLevel), knee.plain(kLevelDb));
}

constexpr float kFloor = -40;
constexpr float kLoud = kLevel;

// The target is 0 dB for a loud signal, kFloor in silence. No hold.
class ExpanderBallistics : public EveryGroup {
 protected:
  ExpanderBallistics() {
    strip.dyn.expKneeLow = strip.dyn.expKneeHigh = -100;
    strip.dyn.expSlope = 10;
    strip.dyn.expThreshold = -100;
    strip.dyn.expRange = kFloor;
    strip.jump_to_targets();
  }

  float term() const { return state(&Dyn_SState::expGain); }
  void start_at(float term) { set_state(&Dyn_SState::expGain, term); }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, ExpanderBallistics, every_format(), format_name);

TEST_P(ExpanderBallistics, RisesWithTheAttackWeight) {
  strip.dyn.expAttack = 0.25f;
  start_at(kFloor);
  play(0, {kLoud});
  EXPECT_EQ(term(), -30.0f);
}

TEST_P(ExpanderBallistics, FallsWithTheReleaseWeight) {
  strip.dyn.expRelease = 0.25f;
  play(kLoud, {0});
  EXPECT_EQ(term(), -10.0f);
}

// An infinite weight turns even a distance of 0 into NaN, so the result shows which weight is used.
TEST_P(ExpanderBallistics, RestsWithTheReleaseWeight) {
  strip.dyn.expAttack = kInfinity;
  start_at(kFloor);
  play(0);
  EXPECT_EQ(term(), kFloor);
}

TEST_P(ExpanderBallistics, AttackStepIsFused) {
  strip.dyn.expAttack = 0.1f;
  const float fused = after_steps(16, fused_step, -13.7f, 0, 0.1f);
  ASSERT_NE(fused, after_steps(16, unfused_step, -13.7f, 0, 0.1f));
  start_at(-13.7f);
  play(kLoud);
  EXPECT_EQ(term(), fused);
}

TEST_P(ExpanderBallistics, ReleaseStepIsFused) {
  strip.dyn.expRelease = 0.1f;
  const float fused = after_steps(16, fused_step, -1.7f, kFloor, 0.1f);
  ASSERT_NE(fused, after_steps(16, unfused_step, -1.7f, kFloor, 0.1f));
  start_at(-1.7f);
  play(0);
  EXPECT_EQ(term(), fused);
}

TEST_P(ExpanderBallistics, TermMayStandBelowTheFloor) {
  strip.dyn.expAttack = 0;
  start_at(-80);
  play(0);
  EXPECT_EQ(term(), -80.0f);
}

TEST_P(ExpanderBallistics, TermMayPassTheFloor) {
  strip.dyn.expRelease = 1.5f;
  play(kLoud, {0});
  EXPECT_EQ(term(), -60.0f);
}

}  // namespace
}  // namespace channelstrip::test::expander_test
