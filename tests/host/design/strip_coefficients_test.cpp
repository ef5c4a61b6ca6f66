#include "host/design/strip_coefficients.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

#include "host/design/band.h"
#include "records.h"

namespace channelstrip::test {
namespace {

using namespace host;

constexpr double kRate = 48000;

// At a quarter of the rate cos w = 0 and sin w = 1: with Q 1/2 both passes become plain fractions.
constexpr BandSettings kLowPass{BandType::kLowPass, kRate / 4, 0.5, 0};
constexpr BandSettings kHighPass{BandType::kHighPass, kRate / 4, 0.5, 0};

// Sines and cosines leave 1e-16 where a coefficient is 0.
void expect_section(const float* actual, std::initializer_list<float> expected) {
  for (const float value : expected) EXPECT_NEAR(*actual++, value, 1e-7f);
}

TEST(StripCoefficients, CompressorIsThatOfItsSettings) {
  StripSettings settings;
  // Makeup 6.0206 dB is a factor of 2; times are 480 and 4800 samples.
  settings.compressor = {.threshold = -20,
                         .ratio = 4,
                         .knee = 8,
                         .attack = 10,
                         .release = 100,
                         .range = -40,
                         .makeup = 6.020599913279624};
  const auto dynamics = design_strip(settings, kRate, layout_of("Mono")).dynamics;
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

TEST(StripCoefficients, ExpanderAndGateAreThoseOfTheirSettings) {
  StripSettings settings;
  settings.expander = {.threshold = -50,
                       .ratio = 3,
                       .knee = 4,
                       .attack = 1,
                       .release = 150,
                       .hold = 20,
                       .range = -60,
                       .hysteresis = 6};
  const auto dynamics = design_strip(settings, kRate, layout_of("Mono")).dynamics;
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

TEST(StripCoefficients, HoldIsRoundedToTheNearestSample) {
  StripSettings settings;
  settings.expander.emplace();
  settings.expander->hold = 0.5;
  EXPECT_EQ(design_strip(settings, 44100, layout_of("Mono")).dynamics.expHoldSamples, 22);  // 22.05
  settings.expander->hold = 0.15;
  EXPECT_EQ(design_strip(settings, 44100, layout_of("Mono")).dynamics.expHoldSamples, 7);  // 6.615
}

TEST(StripCoefficients, SmoothDetectorAveragesAndKeepsADecay) {
  StripSettings settings;
  settings.detector = {DetectorMode::kSmooth, 10};
  const auto dynamics = design_strip(settings, kRate, layout_of("Mono")).dynamics;
  EXPECT_GT(dynamics.detectorMode, 0);
  EXPECT_FLOAT_EQ(dynamics.peakDecay, 0.99791884f);  // e^(-1/480)
  EXPECT_EQ(dynamics.detectorFilter[3], dynamics.peakDecay);
  EXPECT_EQ(dynamics.detectorFilter[0], 1 - dynamics.detectorFilter[3]);
  EXPECT_EQ(dynamics.detectorFilter[1], 0.f);
  EXPECT_EQ(dynamics.detectorFilter[2], 0.f);
  EXPECT_EQ(dynamics.detectorFilter[4], 0.f);
}

TEST(StripCoefficients, RmsDetectorHasTwoPolesAndKeepsADecay) {
  StripSettings settings;
  settings.detector = {DetectorMode::kRms, 10};
  const auto dynamics = design_strip(settings, kRate, layout_of("Mono")).dynamics;
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

TEST(StripCoefficients, AutoMakeupAddsToTheMakeup) {
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .makeup = 2.5, .auto_makeup = true};
  EXPECT_FLOAT_EQ(design_strip(settings, kRate, layout_of("Mono")).dynamics.makeupGain,
                  3.1622777f);  // 10 dB
  settings.compressor->auto_makeup = false;
  EXPECT_FLOAT_EQ(design_strip(settings, kRate, layout_of("Mono")).dynamics.makeupGain,
                  1.3335214f);  // 2.5 dB
}

TEST(StripCoefficients, ModesAreThoseOfTheSettings) {
  StripSettings settings;
  settings.key_enable = settings.key_listen = settings.bypass = true;
  settings.input_meter_gain = -20;
  const auto dynamics = design_strip(settings, kRate, layout_of("Mono")).dynamics;
  EXPECT_EQ(dynamics.keyEnable, 1);
  EXPECT_EQ(dynamics.keyListen, 1);
  EXPECT_EQ(dynamics.bypass, 1);
  EXPECT_FLOAT_EQ(dynamics.inputMeterGain, 0.1f);
}

TEST(StripCoefficients, PeakDetectorDecaysAndItsFilterPasses) {
  StripSettings settings;
  settings.detector = {DetectorMode::kPeak, 10};
  const auto dynamics = design_strip(settings, kRate, layout_of("Mono")).dynamics;
  EXPECT_EQ(dynamics.detectorMode, 0);
  EXPECT_FLOAT_EQ(dynamics.peakDecay, 0.99791884f);
  expect_identity(dynamics.detectorFilter);
}

TEST(StripCoefficients, BandsBeforeTheDynamicsComeFirstInTheArray) {
  StripSettings settings;
  settings.pre = {kLowPass};
  settings.post = {kHighPass, kLowPass};
  const EQ_SCoefs eq = design_strip(settings, kRate, layout_of("Mono")).eq;
  expect_section(eq.targetCoefs, {0.25f, 0.5f, 0.25f, 0, 0});
  expect_section(eq.targetCoefs + 5, {0.25f, -0.5f, 0.25f, 0, 0});
  expect_section(eq.targetCoefs + 10, {0.25f, 0.5f, 0.25f, 0, 0});
  for (int band = 3; band < 8; ++band) expect_identity(eq.targetCoefs + 5 * band);
  EXPECT_EQ(eq.firstBand[0], 0);
  EXPECT_EQ(eq.endBand[0], 1);
  EXPECT_EQ(eq.firstBand[1], 1);
  EXPECT_EQ(eq.endBand[1], 3);
}

TEST(StripCoefficients, EightBandsFillTheArray) {
  StripSettings settings;
  settings.pre.assign(3, kLowPass);
  settings.post.assign(5, kHighPass);
  const EQ_SCoefs eq = design_strip(settings, kRate, layout_of("Mono")).eq;
  expect_section(eq.targetCoefs + 35, {0.25f, -0.5f, 0.25f, 0, 0});
  EXPECT_EQ(eq.endBand[1], 8);
}

TEST(StripCoefficients, BandsAreRoundedWithTheirSums) {
  StripSettings settings;
  settings.pre = {{BandType::kLowShelf, 30, 0.7071, 6}};
  const EQ_SCoefs eq = design_strip(settings, 96000, layout_of("Mono")).eq;
  const Section rounded = in_single_precision(design_band(settings.pre[0], 96000).front());
  const double expected[] = {rounded.b0, rounded.b1, rounded.b2, rounded.a1, rounded.a2};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(static_cast<double>(eq.targetCoefs[i]), expected[i]);
}

TEST(StripCoefficients, KeyFilterIsABand) {
  StripSettings settings;
  // A = 2, alpha = 1/2: b = (2, 0, 0) and a = (1.25, 0, 0.75).
  settings.key_filter = {BandType::kPeak, kRate / 4, 1, 12.041199826559248};
  const auto dynamics = design_strip(settings, kRate, layout_of("Mono")).dynamics;
  expect_section(dynamics.keyFilter, {1.6f, 0, 0, 0, -0.6f});
}

TEST(StripCoefficients, GlideCoversItsShareInStepsOfFourSamples) {
  StripSettings settings;
  settings.glide = 5;  // 240 samples
  EXPECT_FLOAT_EQ(design_strip(settings, kRate, layout_of("Mono")).dezip_rate, 0.016528546f);
  settings.glide = 0;
  EXPECT_EQ(design_strip(settings, kRate, layout_of("Mono")).dezip_rate, 1.f);
}

TEST(StripCoefficients, LinksAreTheFormatsEntryOrTheDefault) {
  StripSettings settings;
  settings.link = {{"lcr", "L | R C"}, {"5.1", "L R C | LFE | Ls Rs"}};
  expect_links(design_strip(settings, kRate, layout_of("LCR")).dynamics, {0, 1, 1, 0, 0, 0, 0, 0});
  expect_links(design_strip(settings, kRate, layout_of("5.1")).dynamics, {0, 0, 0, 1, 2, 2, 0, 0});
  expect_links(design_strip(settings, kRate, layout_of("6.0")).dynamics, {0, 0, 1, 2, 3, 3, 0, 0});
}

TEST(StripCoefficients, LinkStyleHoldsWhereTheFormatHasNoMapOfItsOwn) {
  StripSettings settings;
  settings.link_style = LinkStyle::kMusic;
  settings.link = {{"LCR", "L R | C"}};
  expect_links(design_strip(settings, kRate, layout_of("LCR")).dynamics, {0, 0, 1, 0, 0, 0, 0, 0});
  expect_links(design_strip(settings, kRate, layout_of("5.1")).dynamics, {0, 0, 0, 1, 0, 0, 0, 0});
}

TEST(StripCoefficients, InfiniteRatioLimits) {
  StripSettings settings;
  settings.compressor.emplace();
  settings.compressor->ratio = std::numeric_limits<double>::infinity();
  EXPECT_EQ(design_strip(settings, kRate, layout_of("Mono")).dynamics.compSlope, -1.f);
}

TEST(StripCoefficients, WithoutHysteresisTheGateIsOpenAtEveryLevel) {
  StripSettings settings;
  settings.expander.emplace();
  const auto dynamics = design_strip(settings, kRate, layout_of("Mono")).dynamics;
  EXPECT_LT(dynamics.gateOpenThreshold, -764.62f);
  EXPECT_LT(dynamics.gateCloseThreshold, -764.62f);
}

}  // namespace
}  // namespace channelstrip::test
