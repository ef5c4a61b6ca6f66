// The glide of the coefficients: how far a step goes, when it is made, and of which bands.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cmath>
#include <limits>

namespace channelstrip::test::glide_test {
namespace {

class EqGlide : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, EqGlide, every_format(), format_name);

// Coefficient 0, which is band 0's b0, glides from 0 to 1. 16 samples of 1 pass band 0 and nothing
// else, so the outputs show the coefficient quad by quad.
class GlidingStrip : public Strip {
 public:
  GlidingStrip(std::string_view format_name, float rate) : Strip(format_name) {
    pass_exactly();
    fill_inputs(1);
    dezip.coefs[0] = 0;
    dezip.smoothedCoefs[0] = 0;
    eq.endBand[0] = 1;
    dyn_state[0].dezipRate = rate;
  }
};

TEST_P(EqGlide, RateOfZeroFreezes) {
  BusyStrip strip(format()), untouched(format());
  strip.dyn_state[0].dezipRate = 0;
  strip.process();
  EXPECT_TRUE(same_record(strip.dezip, untouched.dezip));
}

TEST_P(EqGlide, HalfRateHalvesTheDistanceBeforeEveryQuad) {
  GlidingStrip strip(format(), 0.5f);
  strip.process();
  for (const auto& channel : strip.out) {
    EXPECT_EQ(channel, std::vector<float>({0.5f, 0.5f, 0.5f, 0.5f,          //
                                           0.75f, 0.75f, 0.75f, 0.75f,      //
                                           0.875f, 0.875f, 0.875f, 0.875f,  //
                                           0.9375f, 0.9375f, 0.9375f, 0.9375f}));
  }
}

TEST_P(EqGlide, RateOfOneReachesTheTargetBeforeTheFirstQuad) {
  GlidingStrip strip(format(), 1);
  strip.process();
  for (const auto& channel : strip.out) EXPECT_EQ(channel, std::vector<float>(16, 1.0f));
}

TEST_P(EqGlide, DistanceShrinksByOneMinusRatePerQuad) {
  GlidingStrip strip(format(), 0.25f);
  double distance = 1;
  for (int block = 1; block <= 3; ++block) {
    strip.process();
    distance *= 0.75 * 0.75 * 0.75 * 0.75;  // exact, as is every step: 24 bits hold 3^12
    EXPECT_EQ(strip.dezip.smoothedCoefs[0], 1 - distance) << block;
  }
}

TEST_P(EqGlide, MovesEveryCoefficientOfEveryBand) {
  Strip strip(format());
  for (size_t i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    strip.eq.targetCoefs[i] = strip.dezip.coefs[i] + static_cast<float>(16 + i);
  }
  strip.dyn_state[0].dezipRate = 0.5f;
  strip.process();
  for (size_t i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    EXPECT_EQ(strip.dezip.coefs[i], strip.eq.targetCoefs[i] - static_cast<float>(16 + i) / 16) << i;
  }
}

TEST_P(EqGlide, GoesOnWhileBothPassesAreEmpty) {
  GlidingStrip strip(format(), 0.5f);
  strip.eq.endBand[0] = 0;
  strip.process();
  EXPECT_EQ(strip.dezip.coefs[0], 0.9375f);
}

TEST_P(EqGlide, BandEnabledLaterStartsFromItsGlidedValues) {
  GlidingStrip strip(format(), 0.5f);
  strip.eq.endBand[0] = 0;
  strip.process();
  strip.eq.endBand[0] = 1;
  strip.dyn_state[0].dezipRate = 0;
  strip.process();
  for (const auto& channel : strip.out) EXPECT_EQ(channel, std::vector<float>(16, 0.9375f));
}

TEST_P(EqGlide, NewTargetsAreFollowedFromTheNextCallOn) {
  GlidingStrip strip(format(), 0.5f);
  strip.process();
  strip.eq.targetCoefs[0] = 0;
  strip.process();
  EXPECT_EQ(strip.dezip.coefs[0], 0.9375f / 16);
}

TEST_P(EqGlide, NewRateIsFollowedFromTheNextCallOn) {
  GlidingStrip strip(format(), 0);
  strip.process();
  strip.dyn_state[0].dezipRate = 0.5f;
  strip.process();
  EXPECT_EQ(strip.dezip.coefs[0], 0.9375f);
}

TEST_P(EqGlide, RateOfRecordZeroAloneCounts) {
  BusyStrip strip(format()), reference(format());
  for (size_t c = 1; c < channels(); ++c) strip.dyn_state[c].dezipRate = NAN;
  strip.process();
  reference.process();
  EXPECT_TRUE(same_record(strip.dezip, reference.dezip));
}

// Meter 0 lies in the rate's field, and the first block raises it to 0.5; the second must not use
// that.
TEST(EqGlideRate, IsReadOncePerCall) {
  Strip strip("Mono", 32);
  strip.fill_inputs(0.5f);
  strip.eq.targetCoefs[1] = 1;
  strip.dyn_state[0].dezipRate = 0.25f;
  strip.dyn_state.resize(2);  // room for the other meters
  SChannelStrip_Alg_Context context = *strip.context();
  float* const meters = &strip.dyn_state[0].dezipRate;
  context.meterOutputs = &meters;
  const SChannelStrip_Alg_Context* const contexts[] = {&context};
  entry_point(strip.format)(contexts, contexts + 1);
  EXPECT_EQ(strip.dyn_state[0].dezipRate, 0.5f);
  EXPECT_EQ(strip.dezip.smoothedCoefs[1], 1 - std::pow(0.75, 8));
}

TEST_P(EqGlide, RatesOutsideTheirRangeAreTakenAsTheyAre) {
  GlidingStrip overshooting(format(), 2), receding(format(), -1);
  overshooting.process();
  receding.process();
  EXPECT_EQ(overshooting.dezip.coefs[0], 0);  // 2, 0, 2, 0
  EXPECT_EQ(receding.dezip.coefs[0], -15);    // -1, -3, -7, -15
}

TEST_P(EqGlide, TargetThatIsNotANumberStaysUntilTheHostRewritesTheRunningValue) {
  GlidingStrip strip(format(), 0.5f);
  strip.eq.targetCoefs[0] = NAN;
  strip.process();
  strip.eq.targetCoefs[0] = 1;
  strip.process();
  EXPECT_TRUE(std::isnan(strip.dezip.smoothedCoefs[0]));
  EXPECT_TRUE(std::isnan(strip.dezip.coefs[0]));
  strip.jump_to_targets();
  strip.process();
  EXPECT_EQ(strip.dezip.coefs[0], 1);
}

TEST_P(EqGlide, CoefficientsDontInfluenceEachOther) {
  GlidingStrip strip(format(), 0.5f), reference(format(), 0.5f);
  strip.eq.targetCoefs[1] = NAN;
  strip.eq.targetCoefs[39] = std::numeric_limits<float>::infinity();
  strip.process();
  reference.process();
  for (size_t i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    if (i == 1 || i == 39) continue;
    EXPECT_EQ(bits(strip.dezip.smoothedCoefs[i]), bits(reference.dezip.smoothedCoefs[i])) << i;
  }
}

}  // namespace
}  // namespace channelstrip::test::glide_test
