#include "control/design/eq_coefficients.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "bands.h"
#include "records.h"
#include "refused.h"

namespace channelstrip::test::eq_coefficients_test {
namespace {

using namespace host;

constexpr BandSettings kSteep{.type = BandType::kHighPass, .frequency = 80, .slope = 30};

bool same(const Section& a, const Section& b) {
  return a.b0 == b.b0 && a.b1 == b.b1 && a.b2 == b.b2 && a.a1 == b.a1 && a.a2 == b.a2;
}

TEST(EqCoefficients, SteepBandTakesSeveralSectionsInARow) {
  StripSettings settings;
  settings.pre = {kSteep, {.gain = 3}};
  settings.post = {{.type = BandType::kLowPass, .slope = 24}};
  const DesignedEq eq = design_eq(settings, kRate);
  ASSERT_EQ(eq.pre().size(), 4u);
  ASSERT_EQ(eq.post().size(), 2u);
  const auto steep = design_stored_band(kSteep, kRate);
  EXPECT_TRUE(std::ranges::equal(steep, eq.pre().first(3), same));
  EXPECT_TRUE(same(eq.pre()[3], design_stored_band({.gain = 3}, kRate).front()));
  EXPECT_TRUE(same(eq.sections[6], Section{}));
}

TEST(EqCoefficients, RecordHoldsTheSectionsAndTheirRanges) {
  StripSettings settings;
  settings.pre = {kSteep};
  settings.post = {{.type = BandType::kNotch}};
  const DesignedEq eq = design_eq(settings, kRate);
  const EQ_SCoefs record = eq_record(eq);
  EXPECT_EQ(record.firstBand[0], 0);
  EXPECT_EQ(record.endBand[0], 3);
  EXPECT_EQ(record.firstBand[1], 3);
  EXPECT_EQ(record.endBand[1], 4);
  for (std::size_t k = 0; k < 4; ++k) {
    const float* stored = record.targetCoefs + 5 * k;
    EXPECT_EQ(static_cast<double>(stored[0]), eq.sections[k].b0);
    EXPECT_EQ(static_cast<double>(stored[4]), eq.sections[k].a2);
  }
  for (int k = 4; k < CHANNELSTRIP_EQ_BANDS; ++k) expect_identity(record.targetCoefs + 5 * k);
}

TEST(EqCoefficients, BandsOfEightSectionsFillAStrip) {
  StripSettings settings;
  settings.post = {{.type = BandType::kLowPass, .slope = 96}};
  EXPECT_EQ(design_eq(settings, kRate).post().size(), 8u);
}

TEST(EqCoefficients, RefusalCountsSectionsAndNumbersBands) {
  const auto refused = [](const StripSettings& settings) {
    return words(refusal_of(settings, kRate, layout_of("Mono")));
  };
  StripSettings settings;
  settings.pre = {kSteep, kSteep};
  settings.post = {kSteep};
  EXPECT_EQ(refused(settings), "eq: 3 bands take 9 sections, a strip has 8");
  settings.post = {{.frequency = 30000}};
  EXPECT_EQ(refused(settings),
            "eq band 3: frequency 30000 Hz is not below half the sample rate 48000 Hz");
  settings.post = {{.type = BandType::kLowPass, .slope = 7}};
  EXPECT_EQ(refused(settings), "eq band 3: slope 7 dB/oct is not 6, 12, 18 ... 96 dB/oct");
}

TEST(EqCoefficients, KeyFilterIsOneSection) {
  StripSettings settings;
  EXPECT_TRUE(same(design_key_filter(settings, kRate), Section{}));
  settings.key_filter = {.type = BandType::kHighPass, .frequency = 100, .slope = 6};
  EXPECT_TRUE(same(design_key_filter(settings, kRate),
                   design_stored_band(*settings.key_filter, kRate).front()));
  settings.key_filter->slope = 18;
  EXPECT_EQ(words(refusal_of(settings, kRate, layout_of("Mono"))),
            "key filter: slope 18 dB/oct takes 2 sections, a key filter is one");
  settings.key_filter->slope = 20;
  EXPECT_EQ(words(refusal_of(settings, kRate, layout_of("Mono"))),
            "key filter: slope 20 dB/oct is not 6, 12, 18 ... 96 dB/oct");
}

}  // namespace
}  // namespace channelstrip::test::eq_coefficients_test
