#include <ChannelStrip/dynamics/fast_log.h>
#include <gtest/gtest.h>
#include <tests/support/compare.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace channelstrip::test::conversions_test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kSmallestDenormal = std::numeric_limits<float>::denorm_min();
constexpr float kSmallestNormal = std::numeric_limits<float>::min();
constexpr float kLargest = std::numeric_limits<float>::max();

// The gains for saturated integers: sign and exponent are the integer's own, the mantissa comes
// from the ends of the tables.
const uint32_t kHighestGain = 0x7F800000u | (bits(gmPowTableH[511] * gmPowTableL[511]) & 0x7FFFFFu);
const uint32_t kLowestGain = 0x80000000u | (bits(gmPowTableH[0] * gmPowTableL[0]) & 0x7FFFFFu);

TEST(FastLog2, PowersOfTwoGiveTheirExponentExactly) {
  for (int e = -126; e <= 127; ++e) {
    EXPECT_EQ(bits(FastLog2(std::ldexp(1.0f, e))), bits(static_cast<float>(e))) << e;
  }
}

TEST(FastLog2, InfinityGives128) {
  EXPECT_EQ(FastLog2(kInfinity), 128.0f);
}

TEST(FastLog2, SignIsIgnored) {
  EXPECT_EQ(FastLog2(-0.3f), FastLog2(0.3f));
}

// A wrong last table entry, which must be 1, would show here first.
TEST(FastLog2, LastIndexInterpolatesTowardsTheOctave) {
  EXPECT_LT(FastLog2(std::nextafter(2.0f, 0.0f)), 1.0f);
  EXPECT_NEAR(FastLog2(std::nextafter(2.0f, 0.0f)), 1.0f, 1e-6);
}

TEST(FastLog2, DenormalsAreReadAsNormalsWithExponentMinus127) {
  EXPECT_EQ(FastLog2(kSmallestNormal / 2), gmLog2LUT[256] - 127);
}

TEST(LevelToDb, FullScaleIsZero) {
  EXPECT_EQ(bits(LevelToDb(1.0f)), bits(0.0f));
}

TEST(LevelToDb, OctavesAreTheirMultiplier) {
  EXPECT_EQ(bits(LevelToDb(2.0f)), 0x40C0A8C2u);
  EXPECT_EQ(bits(LevelToDb(0.5f)), 0xC0C0A8C2u);
}

TEST(LevelToDb, InfinityIs128Octaves) {
  EXPECT_EQ(LevelToDb(kInfinity), 770.63684f);
}

TEST(LevelToDb, WhatIsNotAboveZeroIsAtTheFloor) {
  for (float level : {0.0f, -0.0f, -1.0f, -kSmallestDenormal, -kInfinity, kNaN, -kNaN}) {
    EXPECT_EQ(LevelToDb(level), -140.0f) << level;
  }
}

TEST(LevelToDb, DenormalsReachBelowTheFloor) {
  const float unit_in_the_last_place = 0x1p-14f;
  EXPECT_NEAR(LevelToDb(kSmallestDenormal), -764.6162f, unit_in_the_last_place);
  EXPECT_NEAR(LevelToDb(std::nextafter(kSmallestNormal, 0.0f)), -758.5956f, unit_in_the_last_place);
}

TEST(FastPow2, WholeOctavesAreHalfAStepAbove) {
  for (int e = -126; e <= 127; ++e) {
    EXPECT_EQ(FastPow2(static_cast<float>(e)), std::ldexp(gmPowTableL[0], e)) << e;
  }
}

TEST(DbToGain, ZeroDecibelsIsHalfAStepAboveOne) {
  EXPECT_EQ(bits(DbToGain(0.0f)), 0x3F80000Bu);
  EXPECT_EQ(bits(DbToGain(-0.0f)), 0x3F80000Bu);
}

TEST(DbToGain, Examples) {
  EXPECT_EQ(DbToGain(-6.0206f), 0.50000066f);
  EXPECT_EQ(DbToGain(6.0206f), 2.0000026f);
  EXPECT_EQ(DbToGain(20.0f), 10.000026f);
  EXPECT_EQ(DbToGain(-140.0f), 1.0000030e-07f);
}

TEST(DbToGain, JustBelowTheRangeIsDenormal) {
  EXPECT_EQ(std::fpclassify(DbToGain(std::nextafter(-758.5956f, -kInfinity))), FP_SUBNORMAL);
  EXPECT_EQ(std::fpclassify(DbToGain(-764.616f)), FP_SUBNORMAL);
  EXPECT_GT(DbToGain(-764.616f), 0.0f);
}

TEST(DbToGain, FarBelowTheRangeIsNegativeOrNaN) {
  for (float db : {-764.617f, -770.0f, -1000.0f, -1500.0f, -2000.0f, -2300.0f}) {
    const float gain = DbToGain(db);
    EXPECT_TRUE(std::isnan(gain) || gain < 0) << db << " dB gave " << gain;
  }
}

TEST(DbToGain, SaturatesAtTheLowestInteger) {
  for (float db : {-2400.0f, -1e10f, -kLargest, -kInfinity}) {
    EXPECT_EQ(bits(DbToGain(db)), kLowestGain) << db;
  }
}

TEST(DbToGain, AboveTheRangeIsNotFinite) {
  for (float db : {770.6368f, 772.0f, 776.657f}) EXPECT_FALSE(std::isfinite(DbToGain(db))) << db;
}

TEST(DbToGain, SaturatesAtTheHighestInteger) {
  for (float db : {776.6575f, 1e10f, kLargest, kInfinity}) {
    EXPECT_EQ(bits(DbToGain(db)), kHighestGain) << db;
  }
  EXPECT_TRUE(std::isnan(std::bit_cast<float>(kHighestGain)));
}

TEST(DbToGain, NaNStaysNaN) {
  EXPECT_TRUE(std::isnan(DbToGain(kNaN)));
  EXPECT_TRUE(std::isnan(DbToGain(-kNaN)));
}

}  // namespace
}  // namespace channelstrip::test::conversions_test
