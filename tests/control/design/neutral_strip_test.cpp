#include <gtest/gtest.h>

#include "control/design/strip_coefficients.h"
#include "records.h"

namespace channelstrip::test::neutral_strip_test {
namespace {

using namespace host;

constexpr double kRate = 48000;

// All levels lie between -764.62 and 770.64 dB.
TEST(NeutralStrip, LeavesBothTermsAtZeroDecibels) {
  const auto dynamics = design_strip({}, kRate, layout_of("7.1")).dynamics;
  EXPECT_GT(dynamics.compKneeLow, 770.64f);
  EXPECT_GE(dynamics.compKneeHigh, dynamics.compKneeLow);
  EXPECT_EQ(dynamics.compSlope, 0.f);
  EXPECT_LT(dynamics.compRange, 0.f);
  EXPECT_EQ(dynamics.compAttack, 1.f);
  EXPECT_EQ(dynamics.compRelease, 1.f);
  EXPECT_EQ(dynamics.makeupGain, 1.f);

  EXPECT_LT(dynamics.expKneeHigh, -764.62f);
  EXPECT_LE(dynamics.expKneeLow, dynamics.expKneeHigh);
  EXPECT_EQ(dynamics.expSlope, 0.f);
  EXPECT_LT(dynamics.gateOpenThreshold, -764.62f);
  EXPECT_LT(dynamics.gateCloseThreshold, -764.62f);
  EXPECT_LT(dynamics.expRange, 0.f);
  EXPECT_EQ(dynamics.expAttack, 1.f);
  EXPECT_EQ(dynamics.expRelease, 1.f);
  EXPECT_EQ(dynamics.expHoldSamples, 0);
  for (const float coefficient :
       {dynamics.compKneeA, dynamics.compKneeB, dynamics.compKneeC, dynamics.expKneeA,
        dynamics.expKneeB, dynamics.expKneeC, dynamics.compThreshold, dynamics.expThreshold}) {
    EXPECT_EQ(coefficient, 0.f);
  }
}

TEST(NeutralStrip, PassesAudioAndDetectionSignals) {
  const StripCoefficients strip = design_strip({}, kRate, layout_of("7.1"));
  for (int band = 0; band < 8; ++band) expect_identity(strip.eq.targetCoefs + 5 * band);
  for (const int pass : {0, 1}) EXPECT_EQ(strip.eq.firstBand[pass], strip.eq.endBand[pass]);
  expect_identity(strip.dynamics.keyFilter);
  expect_identity(strip.dynamics.detectorFilter);
}

TEST(NeutralStrip, LeavesTheModesOff) {
  const auto dynamics = design_strip({}, kRate, layout_of("7.1")).dynamics;
  EXPECT_EQ(dynamics.keyEnable, 0);
  EXPECT_EQ(dynamics.keyListen, 0);
  EXPECT_EQ(dynamics.bypass, 0);
  EXPECT_EQ(dynamics.inputMeterGain, 1.f);
  EXPECT_EQ(dynamics.reserved12, 0);
  expect_links(dynamics, {0, 0, 1, 2, 3, 3, 4, 4});
}

}  // namespace
}  // namespace channelstrip::test::neutral_strip_test
