#include "control/design/strip_coefficients.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "control/design/band.h"
#include "records.h"

namespace channelstrip::test::strip_coefficients_test {
namespace {

using namespace host;

constexpr double kRate = 48000;

// At a quarter of the rate cos w = 0 and sin w = 1: with a Q of 1/2 the coefficients of both passes
// are simple fractions.
constexpr BandSettings kLowPass{BandType::kLowPass, kRate / 4, 0.5, 0};
constexpr BandSettings kHighPass{BandType::kHighPass, kRate / 4, 0.5, 0};

// The bound is for sines and cosines, which leave 1e-16 where a coefficient is 0.
void expect_section(const float* actual, std::initializer_list<float> expected) {
  for (const float value : expected) EXPECT_NEAR(*actual++, value, 1e-7f);
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

TEST(StripCoefficients, BandsAreTheBestInSinglePrecision) {
  StripSettings settings;
  settings.pre = {{BandType::kLowShelf, 30, 0.7071, 6}};
  const EQ_SCoefs eq = design_strip(settings, 96000, layout_of("Mono")).eq;
  const Section best = design_stored_band(settings.pre[0], 96000).front();
  const double expected[] = {best.b0, best.b1, best.b2, best.a1, best.a2};
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

}  // namespace
}  // namespace channelstrip::test::strip_coefficients_test
