// Tests of the model itself: its rules against values worked out by hand.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "ballistics.h"
#include "conversions.h"
#include "curves.h"
#include "equaliser.h"
#include "gain_computer.h"
#include "meters.h"
#include "section.h"
#include "strip_state.h"

namespace channelstrip::model::model_test {
namespace {

class ModelSection : public testing::TestWithParam<SumOrder> {
 protected:
  // Runs the impulse 1, 0, 0, 0.
  std::vector<float> impulse(const float (&coefs)[5]) {
    std::vector<float> response;
    for (float x : {1.0F, 0.0F, 0.0F, 0.0F}) {
      response.push_back(run_section(Section<float>(coefs), x, z1_, z2_, GetParam()));
    }
    return response;
  }

  float z1_ = 0.0F, z2_ = 0.0F;
};

TEST_P(ModelSection, AddsTheStoredFeedback) {
  EXPECT_EQ(impulse({1.0F, 0.0F, 0.0F, 0.5F, 0.0F}),
            (std::vector<float>{1.0F, 0.5F, 0.25F, 0.125F}));
  EXPECT_EQ(z1_, 0.0625F);
  EXPECT_EQ(z2_, 0.0F);
}

TEST_P(ModelSection, DelaysByOneAndByTwo) {
  EXPECT_EQ(impulse({0.5F, 0.5F, 0.0F, 0.0F, 0.0F}), (std::vector<float>{0.5F, 0.5F, 0.0F, 0.0F}));
  EXPECT_EQ(impulse({0.0F, 0.0F, 2.0F, 0.0F, 0.0F}), (std::vector<float>{0.0F, 0.0F, 2.0F, 0.0F}));
  EXPECT_EQ(impulse({1.0F, 0.0F, 0.0F, 0.0F, 0.25F}),
            (std::vector<float>{1.0F, 0.0F, 0.25F, 0.0F}));
}

INSTANTIATE_TEST_SUITE_P(Orders, ModelSection,
                         testing::Values(SumOrder::kInputFirst, SumOrder::kFeedbackFirst,
                                         SumOrder::kProductsFirst));

TEST(ModelGlide, HalvesTheDistanceAndComesToRestOnTheTarget) {
  EqCoefs<float> coefs{};
  EQ_SCoefs targets{};
  targets.targetCoefs[39] = 1.0F;
  for (float expected : {0.5F, 0.75F, 0.875F, 0.9375F}) {
    glide_coefs(coefs, targets, 0.5F);
    EXPECT_EQ(coefs.used[39], expected);
    EXPECT_EQ(coefs.smoothed[39], static_cast<double>(expected));
  }
  for (int i = 0; i < 60; ++i) glide_coefs(coefs, targets, 0.5F);
  EXPECT_EQ(coefs.used[39], 1.0F);
}

TEST(ModelEqualiser, RunsTheBandsOfItsRangeInPlace) {
  EqCoefs<float> coefs{};
  for (int band = 0; band < 8; ++band) coefs.used[5 * band] = static_cast<float>(band);
  EqMemory<float> memory{};
  float audio[6] = {9.0F, 1.0F, 0.0F, -1.0F, 2.0F, 9.0F};
  equalise(coefs, memory, audio, audio, 1, 2, 5, SumOrder::kInputFirst);  // 2 x 3 x 4
  EXPECT_EQ(std::vector<float>(audio, audio + 6),
            (std::vector<float>{9.0F, 24.0F, 0.0F, -24.0F, 48.0F, 9.0F}));
  equalise(coefs, memory, audio, audio, 1, 5, 5, SumOrder::kInputFirst);
  EXPECT_EQ(audio[1], 24.0F);
}

// Slope 1 from -20 dB. The knee, -30 to -10 dB, is level^2, which no line could be mistaken for.
constexpr Curve<float> kCurve{1.0F, -20.0F, 1.0F, 0.0F, 0.0F, -30.0F, -10.0F};

TEST(ModelCurves, CompressorKneeIsOpenBelowAndClosedAbove) {
  EXPECT_EQ(compressor_target(kCurve, -30.0F), 0.0F);
  EXPECT_EQ(compressor_target(kCurve, -29.0F), 841.0F);
  EXPECT_EQ(compressor_target(kCurve, -10.0F), 100.0F);
  EXPECT_EQ(compressor_target(kCurve, -9.0F), 11.0F);
}

TEST(ModelCurves, ExpanderKneeIsClosedAtBothEdges) {
  EXPECT_EQ(expander_target(kCurve, -31.0F), -11.0F);
  EXPECT_EQ(expander_target(kCurve, -30.0F), 900.0F);
  EXPECT_EQ(expander_target(kCurve, -10.0F), 100.0F);
  EXPECT_EQ(expander_target(kCurve, -9.0F), 0.0F);
}

TEST(ModelBallistics, PeakDetectorComparesBeforeTheDecay) {
  EXPECT_EQ(peak_after(0.9F, 1.0F, 0.5F), 0.5F);
  EXPECT_EQ(peak_after(1.1F, 1.0F, 0.5F), 1.1F);
  EXPECT_EQ(peak_after(1.0F, 1.0F, 0.5F), 0.5F);
}

TEST(ModelBallistics, CompressorAttacksDownReleasesUpAndStopsAtItsRange) {
  EXPECT_EQ(compressor_term(-8.0F, -4.0F, 0.5F, 0.25F, -20.0F), -6.0F);
  EXPECT_EQ(compressor_term(-8.0F, -4.0F, 0.5F, 0.25F, -5.0F), -5.0F);
  EXPECT_EQ(compressor_term(0.0F, -4.0F, 0.5F, 0.25F, -20.0F), -3.0F);
}

TEST(ModelBallistics, GateKeepsItsStateBetweenTheThresholds) {
  EXPECT_FALSE(gate_is_open(false, -45.0F, -40.0F, -50.0F));
  EXPECT_TRUE(gate_is_open(true, -45.0F, -40.0F, -50.0F));
  EXPECT_TRUE(gate_is_open(false, -40.0F, -40.0F, -50.0F));
  EXPECT_TRUE(gate_is_open(true, -50.0F, -40.0F, -50.0F));
  EXPECT_FALSE(gate_is_open(true, -50.1F, -40.0F, -50.0F));
}

TEST(ModelBallistics, ExpanderHoldsThreeSamplesThenReleases) {
  uint32_t count = 0;
  float term = expander_term(0.0F, -10.0F, 1.0F, 0.5F, 3, count);
  EXPECT_EQ(term, 0.0F);
  for (float expected : {0.0F, 0.0F, 0.0F, -5.0F, -7.5F}) {
    term = expander_term(-10.0F, term, 1.0F, 0.5F, 3, count);
    EXPECT_EQ(term, expected);
  }
  EXPECT_EQ(count, 0U);
}

TEST(ModelBallistics, HoldCountPassesThroughAFloat) {
  EXPECT_EQ(hold_samples(3), 3U);
  EXPECT_EQ(hold_samples((1 << 24) + 1), 1U << 24);
  EXPECT_EQ(hold_samples(std::numeric_limits<int32_t>::max()), 1U << 31);
}

// A coefficient record that leaves every level alone: curves flat, gate open, weights 1.
Dyn_SCoefsBlock flat_dynamics() {
  Dyn_SCoefsBlock c{};
  c.makeupGain = 1.0F;
  c.compRange = -100.0F;
  c.expRange = -100.0F;
  c.compAttack = c.compRelease = c.expAttack = c.expRelease = 1.0F;
  c.compKneeHigh = c.compKneeLow = 1000.0F;
  c.expKneeHigh = c.expKneeLow = -1000.0F;
  c.gateOpenThreshold = c.gateCloseThreshold = -1000.0F;
  c.keyFilter[0] = c.detectorFilter[0] = 1.0F;
  return c;
}

TEST(ModelGainComputer, FlatCurvesGiveTheTwoHalfStepsAndRecordTheirFirstLevel) {
  DynMemory<float> memory{};
  float levels[kQuad] = {0.5F, 0.25F, 1.0F, 0.0F};
  float meters[5] = {};
  process_gain(levels, memory, flat_dynamics(), 1.0F, 4, meters, SumOrder::kInputFirst);
  const float unity = db_to_gain(0.0F);
  for (float gain : levels) EXPECT_EQ(gain, unity * unity);
  EXPECT_EQ(std::vector<float>(meters, meters + 5),
            (std::vector<float>{0.5F, unity * unity, 0.0F, 0.0F, unity * unity}));
}

TEST(ModelGainComputer, SilenceIsBelowTheGateAndFallsToTheFloor) {
  Dyn_SCoefsBlock c = flat_dynamics();
  c.gateOpenThreshold = c.gateCloseThreshold = -139.0F;
  DynMemory<float> memory{};
  memory.gate_open = 1;
  float levels[kQuad] = {};
  float meters[5] = {};
  process_gain(levels, memory, c, 1.0F, 4, meters, SumOrder::kInputFirst);
  EXPECT_EQ(memory.exp_gain, -100.0F);
  EXPECT_EQ(memory.gate_open, 0);
  EXPECT_EQ(meters[CHANNELSTRIP_METER_EXP_REDUCTION], 1.0F - db_to_gain(-100.0F));
}

TEST(ModelGainComputer, SmoothedDetectorIsUsedAboveModeZeroAndRunsAlways) {
  Dyn_SCoefsBlock c = flat_dynamics();
  c.detectorFilter[0] = 0.5F;
  c.detectorFilter[3] = 0.5F;
  for (int mode : {0, 1}) {
    c.detectorMode = mode;
    DynMemory<float> memory{};
    float levels[kQuad] = {1.0F, 0.0F, 0.0F, 0.0F};
    float meters[5] = {};
    process_gain(levels, memory, c, 1.0F, 4, meters, SumOrder::kInputFirst);
    EXPECT_EQ(meters[CHANNELSTRIP_METER_LEVEL], mode == 0 ? 1.0F : 0.5F);
    EXPECT_EQ(memory.smooth_level, 0.0625F);
    EXPECT_EQ(memory.det_z1, 0.03125F);
  }
}

TEST(ModelMeters, ScaleTheInputAndCopyInBypass) {
  Dyn_SCoefsBlock c{};
  c.inputMeterGain = -2.0F;
  std::vector<float> in(kBlock, 0.25F), out(kBlock, -0.75F);
  in[3] = -0.5F;
  in[4] = std::numeric_limits<float>::quiet_NaN();
  const float* inputs = in.data();
  float* outputs = out.data();
  float input_peak = 0.0F, output_peak = 0.0F;
  process_meters(c, &inputs, &outputs, &input_peak, &output_peak, 0, 1);
  EXPECT_EQ(input_peak, 1.0F);
  EXPECT_EQ(output_peak, 0.75F);

  c.bypass = 1;
  output_peak = 0.0F;
  process_meters(c, &inputs, &outputs, &input_peak, &output_peak, 0, 1);
  EXPECT_EQ(output_peak, 0.5F);
  EXPECT_EQ(out[3], -0.5F);
}

}  // namespace
}  // namespace channelstrip::model::model_test
