// Tests of the model itself: its tables and conversions against worked values.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "conversions.h"

namespace channelstrip::model::model_conversions_test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

uint32_t bits(float x) {
  return std::bit_cast<uint32_t>(x);
}

TEST(ModelTables, HaveTheirEndsAndTheTwoExceptions) {
  EXPECT_EQ(kTables.log2[0], 0.0F);
  EXPECT_EQ(kTables.log2[512], 1.0F);
  EXPECT_EQ(bits(kTables.log2[37]), 0x3DCE280FU);
  EXPECT_EQ(bits(kTables.log2[39]), 0x3DD8E690U);
  EXPECT_EQ(kTables.pow2_high[0], 1.0F);
  EXPECT_EQ(kTables.pow2_high[1], 1.0013547F);
  EXPECT_EQ(kTables.pow2_high[2], 1.0027113F);
  EXPECT_EQ(kTables.pow2_high[511], 1.9972942F);
  EXPECT_EQ(bits(kTables.pow2_low[0]), 0x3F80000BU);
  EXPECT_EQ(bits(kTables.pow2_low[511]), 0x3F802C59U);
}

TEST(ModelConversions, ConstantsHaveTheirBits) {
  EXPECT_EQ(bits(kOctavesPerDecade), 0x40549A78U);
  EXPECT_EQ(bits(kDecibelsPerOctave), 0x40C0A8C2U);
  EXPECT_EQ(bits(1393317.625F), 0x49AA152DU);
}

TEST(ModelConversions, LogarithmOfAPowerOfTwoIsItsExponent) {
  EXPECT_EQ(fast_log2(1.0F), 0.0F);
  EXPECT_EQ(fast_log2(0.25F), -2.0F);
  EXPECT_EQ(fast_log2(1024.0F), 10.0F);
}

TEST(ModelConversions, LevelsHaveTheirDecibels) {
  EXPECT_EQ(level_to_db(1.0F), 0.0F);
  EXPECT_EQ(level_to_db(0.5F), -6.0206003F);
  EXPECT_EQ(level_to_db(2.0F), 6.0206003F);
  EXPECT_EQ(level_to_db(kInfinity), 770.63684F);
  for (float level : {0.0F, -0.0F, -1.0F, kNaN}) EXPECT_EQ(level_to_db(level), -140.0F);
}

TEST(ModelConversions, DenormalLevelIsReadOneOctaveBelowTheSmallestNormal) {
  const float smallest = std::numeric_limits<float>::denorm_min();
  EXPECT_NEAR(level_to_db(smallest), -764.6162F, 1e-4F);
  EXPECT_NEAR(level_to_db(std::nextafter(0x1p-126F, 0.0F)), -758.5956F, 1e-4F);
  EXPECT_EQ(level_to_db(0x1p-126F), -126.0F * kDecibelsPerOctave);
}

TEST(ModelConversions, GainsHaveTheirValues) {
  EXPECT_EQ(bits(db_to_gain(0.0F)), 0x3F80000BU);
  EXPECT_EQ(db_to_gain(-6.0206F), 0.50000066F);
  EXPECT_EQ(db_to_gain(6.0206F), 2.0000026F);
  EXPECT_EQ(db_to_gain(20.0F), 10.000026F);
  EXPECT_EQ(db_to_gain(-140.0F), 1.0000030e-07F);
  EXPECT_EQ(fast_pow2(3.0F), 8.0F * db_to_gain(0.0F));
}

TEST(ModelConversions, PowerSaturatesToANaNAboveAndChangesSignBelow) {
  EXPECT_TRUE(std::isnan(db_to_gain(777.0F)));
  EXPECT_TRUE(std::isnan(db_to_gain(kNaN)));
  EXPECT_TRUE(std::isnormal(db_to_gain(770.6F)));
  EXPECT_TRUE(std::isnormal(db_to_gain(-758.59F)));
  EXPECT_FALSE(std::isnormal(db_to_gain(-758.61F)));
  EXPECT_TRUE(std::signbit(db_to_gain(-764.7F)));
}

TEST(ModelConversions, FloatStaysNearDouble) {
  // 7e-6 for the steps of the power; 3e-6 octaves and a rounding near -140 dB for the level.
  for (int i = -14000; i <= 4000; ++i) {
    const float db = static_cast<float>(i) / 100.0F;
    const double gain = db_to_gain(static_cast<double>(db));
    ASSERT_NEAR(static_cast<double>(db_to_gain(db)) / gain, 1.0, 7e-6) << db;
    const float level = static_cast<float>(gain);
    ASSERT_NEAR(static_cast<double>(level_to_db(level)), level_to_db(static_cast<double>(level)),
                3e-6 * 6.03 + 1.6e-5)
        << level;
  }
}

}  // namespace
}  // namespace channelstrip::model::model_conversions_test
