#include "every_group.h"
#include "roundings.h"

namespace channelstrip::test::compressor_test {
namespace {

constexpr float kKnee = -3;  // dB; the knee polynomial has only this constant term

// The compressor's gain term shows the target of a level: weights are 1 and terms start at 0 dB.
class CompressorCurve : public EveryGroup {
 protected:
  CompressorCurve() {
    strip.dyn.compSlope = -0.5f;
    strip.dyn.compThreshold = -30;
    strip.dyn.compKneeC = kKnee;
  }

  float line(float level_db) const {
    return Line{strip.dyn.compThreshold, strip.dyn.compSlope}.plain(level_db);
  }

  float target_at(float level) {
    set_state(&Dyn_SState::compGain, 0.0f);
    play(level);
    return state(&Dyn_SState::compGain);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, CompressorCurve, every_format(), format_name);

TEST_P(CompressorCurve, LevelAtTheUpperKneeEdgeIsInTheKnee) {
  strip.dyn.compKneeLow = -1000;
  strip.dyn.compKneeHigh = kLevelDb;
  EXPECT_EQ(target_at(kLevel), kKnee);
}

TEST_P(CompressorCurve, LevelOneFloatBelowTheUpperKneeEdgeIsInTheKnee) {
  strip.dyn.compKneeLow = -1000;
  strip.dyn.compKneeHigh = one_float_above(kLevelDb);
  EXPECT_EQ(target_at(kLevel), kKnee);
}

TEST_P(CompressorCurve, LevelOneFloatAboveTheUpperKneeEdgeIsOnTheLine) {
  strip.dyn.compKneeLow = -1000;
  strip.dyn.compKneeHigh = one_float_below(kLevelDb);
  EXPECT_EQ(target_at(kLevel), line(kLevelDb));
}

TEST_P(CompressorCurve, LevelAtTheLowerKneeEdgeIsFlat) {
  strip.dyn.compKneeLow = kLevelDb;
  EXPECT_EQ(target_at(kLevel), 0.0f);
}

TEST_P(CompressorCurve, LevelOneFloatBelowTheLowerKneeEdgeIsFlat) {
  strip.dyn.compKneeLow = one_float_above(kLevelDb);
  EXPECT_EQ(target_at(kLevel), 0.0f);
}

TEST_P(CompressorCurve, LevelOneFloatAboveTheLowerKneeEdgeIsInTheKnee) {
  strip.dyn.compKneeLow = one_float_below(kLevelDb);
  EXPECT_EQ(target_at(kLevel), kKnee);
}

TEST_P(CompressorCurve, HardKneeIsFlatUpToAndAtItsEdge) {
  strip.dyn.compThreshold = strip.dyn.compKneeHigh = strip.dyn.compKneeLow = kLevelDb;
  EXPECT_EQ(target_at(kLevel), 0.0f);
  EXPECT_EQ(target_at(2 * kLevel), line(LevelToDb(2 * kLevel)));
}

TEST_P(CompressorCurve, UpperEdgeIsTestedBeforeTheLower) {
  strip.dyn.compKneeLow = 1000;
  strip.dyn.compKneeHigh = -1000;
  EXPECT_EQ(target_at(kLevel), line(kLevelDb));
}

TEST_P(CompressorCurve, SilenceIsFlatDownToALowerKneeEdgeOfMinus140) {
  strip.dyn.compKneeLow = -140;
  EXPECT_EQ(target_at(0), 0.0f);
}

TEST_P(CompressorCurve, SilenceIsInAKneeThatBeginsBelowMinus140) {
  strip.dyn.compKneeLow = one_float_below(-140);
  EXPECT_EQ(target_at(0), kKnee);
}

TEST_P(CompressorCurve, LineRoundsTheDifferenceThenTheProduct) {
  const Line line{-29.3f, -0.7f};
  for (float other : line.otherwise(FastLog2(kLevel), LevelToDb(2))) {
    ASSERT_NE(other, line.plain(kLevelDb));
  }
  strip.dyn.compKneeHigh = strip.dyn.compKneeLow = -1000;
  strip.dyn.compThreshold = line.threshold;
  strip.dyn.compSlope = line.slope;
  EXPECT_EQ(target_at(kLevel), line.plain(kLevelDb));
}

TEST_P(CompressorCurve, PolynomialRoundsEveryTermAndSum) {
  const Polynomial knee{-0.022f, 0.28f, -2};
  for (float other : knee.otherwise(kLevelDb)) ASSERT_NE(other, knee.plain(kLevelDb));
  strip.dyn.compKneeLow = -1000;
  strip.dyn.compKneeA = knee.a;
  strip.dyn.compKneeB = knee.b;
  strip.dyn.compKneeC = knee.c;
  EXPECT_EQ(target_at(kLevel), knee.plain(kLevelDb));
}

constexpr float kLoud = kLevel;
constexpr float kReduction = -12;

// The target is -12 dB for a loud signal, 0 dB in silence.
class CompressorBallistics : public EveryGroup {
 protected:
  CompressorBallistics() {
    strip.dyn.compKneeLow = -100;
    strip.dyn.compKneeC = kReduction;
  }

  float term() const { return state(&Dyn_SState::compGain); }
  void start_at(float term) { set_state(&Dyn_SState::compGain, term); }

  void set_range(float range) {
    strip.dyn.compRange = range;
    strip.jump_to_targets();
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, CompressorBallistics, every_format(), format_name);

TEST_P(CompressorBallistics, FallsWithTheAttackWeight) {
  strip.dyn.compAttack = 0.25f;
  play(0, {kLoud});
  EXPECT_EQ(term(), -3.0f);
}

TEST_P(CompressorBallistics, RisesWithTheReleaseWeight) {
  strip.dyn.compRelease = 0.25f;
  start_at(kReduction);
  play(kLoud, {0});
  EXPECT_EQ(term(), -9.0f);
}

// An infinite weight turns even a distance of 0 into NaN, so the result shows which weight is used.
TEST_P(CompressorBallistics, RestsWithTheAttackWeight) {
  strip.dyn.compRelease = kInfinity;
  start_at(kReduction);
  play(kLoud);
  EXPECT_EQ(term(), kReduction);
}

TEST_P(CompressorBallistics, AttackStepIsFused) {
  strip.dyn.compAttack = 0.1f;
  const float fused = after_steps(16, fused_step, -2.9f, kReduction, 0.1f);
  ASSERT_NE(fused, after_steps(16, unfused_step, -2.9f, kReduction, 0.1f));
  start_at(-2.9f);
  play(kLoud);
  EXPECT_EQ(term(), fused);
}

TEST_P(CompressorBallistics, ReleaseStepIsFused) {
  strip.dyn.compRelease = 0.1f;
  const float fused = after_steps(16, fused_step, -13.7f, 0, 0.1f);
  ASSERT_NE(fused, after_steps(16, unfused_step, -13.7f, 0, 0.1f));
  start_at(-13.7f);
  play(0);
  EXPECT_EQ(term(), fused);
}

TEST_P(CompressorBallistics, FarTargetLeavesTheTermAtItsRange) {
  set_range(-5);
  play(kLoud);
  EXPECT_EQ(term(), -5.0f);
}

// Half-way to -12 is -6, limited to -5. If only the target were limited, the term would be -2.5.
TEST_P(CompressorBallistics, RangeLimitsTheSmoothedTerm) {
  set_range(-5);
  strip.dyn.compAttack = 0.5f;
  play(0, {kLoud});
  EXPECT_EQ(term(), -5.0f);
}

TEST_P(CompressorBallistics, NextSampleStartsFromTheLimitedTerm) {
  set_range(-5);
  strip.dyn.compAttack = strip.dyn.compRelease = 0.5f;
  play(0, {kLoud, 0});
  EXPECT_EQ(term(), -2.5f);
}

TEST_P(CompressorBallistics, TermBelowTheRangeIsRaisedToItAtOnce) {
  set_range(-5);
  strip.dyn.compRelease = 0;
  start_at(-50);
  play(0);
  EXPECT_EQ(term(), -5.0f);
}

TEST_P(CompressorBallistics, RangeLeavesATermThatIsNotANumber) {
  set_range(-5);
  start_at(kNaN);
  play(kLoud);
  EXPECT_TRUE(std::isnan(term()));
}

TEST_P(CompressorBallistics, RangeInUseIsTheGlidingOne) {
  set_range(-5);
  set_state(&Dyn_SState::dezipRate, 0.0f);
  strip.dyn.compRange = -100;
  play(kLoud);
  EXPECT_EQ(term(), -5.0f);
}

}  // namespace
}  // namespace channelstrip::test::compressor_test
