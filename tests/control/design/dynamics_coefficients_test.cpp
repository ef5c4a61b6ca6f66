#include "control/design/dynamics_coefficients.h"

#include <gtest/gtest.h>

#include <limits>

#include "control/design/strip_coefficients.h"
#include "records.h"

namespace channelstrip::test::dynamics_coefficients_test {
namespace {

using namespace host;

Dyn_SCoefsBlock dynamics_of(const StripSettings& settings, double sample_rate = 48000) {
  return design_strip(settings, sample_rate, layout_of("Mono")).dynamics;
}

TEST(DynamicsCoefficients, CompressorIsThatOfItsSettings) {
  StripSettings settings;
  // Makeup 6.0206 dB is a factor of 2; times are 480 and 4800 samples.
  settings.compressor = {.threshold = -20,
                         .ratio = 4,
                         .knee = 8,
                         .attack = 10,
                         .release = 100,
                         .range = -40,
                         .makeup = 6.020599913279624};
  const auto dynamics = dynamics_of(settings);
  EXPECT_EQ(dynamics.compSlope, -0.75f);
  EXPECT_EQ(dynamics.compKneeA, -0.046875f);  // -0.75 / (2 x 8)
  EXPECT_EQ(dynamics.compKneeB, -2.25f);      // -2 a x -24
  EXPECT_EQ(dynamics.compKneeC, -27.f);       // a x 24^2
  EXPECT_EQ(dynamics.compThreshold, -20.f);
  EXPECT_EQ(dynamics.compKneeHigh, -16.f);
  EXPECT_EQ(dynamics.compKneeLow, -24.f);
  EXPECT_EQ(dynamics.compRange, -40.f);
  EXPECT_FLOAT_EQ(dynamics.makeupGain, 2.f);
  EXPECT_FLOAT_EQ(dynamics.compAttack, 0.0020811647f);    // 1 - e^(-1/480)
  EXPECT_FLOAT_EQ(dynamics.compRelease, 0.00020831163f);  // 1 - e^(-1/4800)
}

TEST(DynamicsCoefficients, ExpanderAndGateAreThoseOfTheirSettings) {
  StripSettings settings;
  settings.expander = {.threshold = -50,
                       .ratio = 3,
                       .knee = 4,
                       .attack = 1,
                       .release = 150,
                       .hold = 20,
                       .range = -60,
                       .hysteresis = 6};
  const auto dynamics = dynamics_of(settings);
  EXPECT_EQ(dynamics.expSlope, 2.f);
  EXPECT_EQ(dynamics.expKneeA, -0.25f);  // -2 / (2 x 4)
  EXPECT_EQ(dynamics.expKneeB, -24.f);   // -2 a x -48
  EXPECT_EQ(dynamics.expKneeC, -576.f);  // a x 48^2
  EXPECT_EQ(dynamics.expThreshold, -50.f);
  EXPECT_EQ(dynamics.gateOpenThreshold, -50.f);
  EXPECT_EQ(dynamics.gateCloseThreshold, -56.f);
  EXPECT_EQ(dynamics.expKneeHigh, -48.f);
  EXPECT_EQ(dynamics.expKneeLow, -52.f);
  EXPECT_EQ(dynamics.expRange, -60.f);
  EXPECT_FLOAT_EQ(dynamics.expAttack, 0.020617819f);     // 1 - e^(-1/48)
  EXPECT_FLOAT_EQ(dynamics.expRelease, 0.00013887925f);  // 1 - e^(-1/7200)
  EXPECT_EQ(dynamics.expHoldSamples, 960);
}

TEST(DynamicsCoefficients, HoldIsRoundedToTheNearestSample) {
  StripSettings settings;
  settings.expander.emplace();
  settings.expander->hold = 0.5;
  EXPECT_EQ(dynamics_of(settings, 44100).expHoldSamples, 22);  // 22.05
  settings.expander->hold = 0.15;
  EXPECT_EQ(dynamics_of(settings, 44100).expHoldSamples, 7);  // 6.615
}

TEST(DynamicsCoefficients, SmoothDetectorAveragesAndKeepsADecay) {
  StripSettings settings;
  settings.detector = {DetectorMode::kSmooth, 10};
  const auto dynamics = dynamics_of(settings);
  EXPECT_GT(dynamics.detectorMode, 0);
  EXPECT_FLOAT_EQ(dynamics.peakDecay, 0.99791884f);  // e^(-1/480)
  EXPECT_EQ(dynamics.detectorFilter[3], dynamics.peakDecay);
  EXPECT_EQ(dynamics.detectorFilter[0], 1 - dynamics.detectorFilter[3]);
  EXPECT_EQ(dynamics.detectorFilter[1], 0.f);
  EXPECT_EQ(dynamics.detectorFilter[2], 0.f);
  EXPECT_EQ(dynamics.detectorFilter[4], 0.f);
}

TEST(DynamicsCoefficients, AverageDetectorHasTwoPolesAndKeepsADecay) {
  StripSettings settings;
  settings.detector = {DetectorMode::kAverage, 10};
  const auto dynamics = dynamics_of(settings);
  EXPECT_GT(dynamics.detectorMode, 0);
  EXPECT_FLOAT_EQ(dynamics.peakDecay, 0.99791884f);  // e^(-1/480)
  // Equal poles p with p^480 (1 + 480 (1 - p)) = 1/e: p = 0.99554...
  EXPECT_NEAR(dynamics.detectorFilter[3], 2 * 0.99554, 2e-5);
  EXPECT_NEAR(dynamics.detectorFilter[4], -0.99554 * 0.99554, 2e-5);
  EXPECT_EQ(dynamics.detectorFilter[0],
            1 - dynamics.detectorFilter[3] - dynamics.detectorFilter[4]);
  EXPECT_EQ(dynamics.detectorFilter[1], 0.f);
  EXPECT_EQ(dynamics.detectorFilter[2], 0.f);
}

TEST(DynamicsCoefficients, AutoMakeupAddsToTheMakeup) {
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .makeup = 2.5, .auto_makeup = true};
  EXPECT_FLOAT_EQ(dynamics_of(settings).makeupGain,
                  3.1622777f);  // 10 dB
  settings.compressor->auto_makeup = false;
  EXPECT_FLOAT_EQ(dynamics_of(settings).makeupGain,
                  1.3335214f);  // 2.5 dB
}

TEST(DynamicsCoefficients, ModesAreThoseOfTheSettings) {
  StripSettings settings;
  settings.key_enable = settings.key_listen = settings.bypass = true;
  settings.input_meter_gain = -20;
  const auto dynamics = dynamics_of(settings);
  EXPECT_EQ(dynamics.keyEnable, 1);
  EXPECT_EQ(dynamics.keyListen, 1);
  EXPECT_EQ(dynamics.bypass, 1);
  EXPECT_FLOAT_EQ(dynamics.inputMeterGain, 0.1f);
}

TEST(DynamicsCoefficients, PeakDetectorDecaysAndItsFilterPasses) {
  StripSettings settings;
  settings.detector = {DetectorMode::kPeak, 10};
  const auto dynamics = dynamics_of(settings);
  EXPECT_EQ(dynamics.detectorMode, 0);
  EXPECT_FLOAT_EQ(dynamics.peakDecay, 0.99791884f);
  expect_identity(dynamics.detectorFilter);
}

TEST(DynamicsCoefficients, InfiniteRatioLimits) {
  StripSettings settings;
  settings.compressor.emplace();
  settings.compressor->ratio = std::numeric_limits<double>::infinity();
  EXPECT_EQ(dynamics_of(settings).compSlope, -1.f);
}

TEST(DynamicsCoefficients, WithoutHysteresisTheGateIsOpenAtEveryLevel) {
  StripSettings settings;
  settings.expander.emplace();
  const auto dynamics = dynamics_of(settings);
  EXPECT_LT(dynamics.gateOpenThreshold, -764.62f);
  EXPECT_LT(dynamics.gateCloseThreshold, -764.62f);
}

}  // namespace
}  // namespace channelstrip::test::dynamics_coefficients_test
