#include <ChannelStrip/dynamics/fast_log.h>
#include <gtest/gtest.h>
#include <tests/support/compare.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>

namespace channelstrip::test::tables_test {
namespace {

// Rounded from 64 significant bits, which are never half-way between two floats for these entries.
float nearest_log10(int i) {
  return static_cast<float>(std::log10(1.0L + i / 512.0L));
}
float nearest_log2(int i) {
  return static_cast<float>(std::log2(1.0L + i / 512.0L));
}

float log2_by_the_rule(int i) {
  return nearest_log10(i) * std::bit_cast<float>(0x40549A78);
}

bool is_patched(int i) {
  return i == 37 || i == 39;
}

TEST(Tables, Hold1537Floats) {
  EXPECT_EQ(std::size(gmLog2LUT), 513u);
  EXPECT_EQ(std::size(gmPowTableH), 512u);
  EXPECT_EQ(std::size(gmPowTableL), 512u);
}

TEST(Tables, LogarithmsRunFromExactlyZeroToExactlyOne) {
  EXPECT_EQ(bits(gmLog2LUT[0]), bits(0.0f));
  EXPECT_EQ(bits(gmLog2LUT[512]), bits(1.0f));
}

TEST(Tables, LogarithmsFollowTheirRule) {
  for (int i = 0; i <= 512; ++i) {
    if (is_patched(i)) continue;
    EXPECT_EQ(bits(gmLog2LUT[i]), bits(log2_by_the_rule(i))) << i;
  }
}

TEST(Tables, TwoLogarithmsStandOneUnitAboveTheRule) {
  EXPECT_EQ(bits(gmLog2LUT[37]), 0x3DCE280Fu);
  EXPECT_EQ(bits(gmLog2LUT[39]), 0x3DD8E690u);
  EXPECT_EQ(bits(gmLog2LUT[37]), bits(log2_by_the_rule(37)) + 1);
  EXPECT_EQ(bits(gmLog2LUT[39]), bits(log2_by_the_rule(39)) + 1);
}

TEST(Tables, LogarithmsAreWithinTwoUnitsOfTheNearest) {
  for (int i = 0; i <= 512; ++i) {
    const auto distance = static_cast<int32_t>(bits(gmLog2LUT[i]) - bits(nearest_log2(i)));
    EXPECT_LE(std::abs(distance), 2) << i;
  }
}

TEST(Tables, HighPowersAreNearestToTheirValue) {
  for (int i = 0; i < 512; ++i) {
    EXPECT_EQ(bits(gmPowTableH[i]), bits(static_cast<float>(std::exp2(i / 512.0)))) << i;
  }
}

TEST(Tables, HighPowersBeginAtExactlyOneAndEndBelowTwo) {
  EXPECT_EQ(bits(gmPowTableH[0]), bits(1.0f));
  EXPECT_EQ(gmPowTableH[1], 1.0013547f);
  EXPECT_EQ(gmPowTableH[2], 1.0027113f);
  EXPECT_EQ(gmPowTableH[511], 1.9972942f);
}

TEST(Tables, LowPowersAreNearestToTheirValue) {
  for (int i = 0; i < 512; ++i) {
    EXPECT_EQ(bits(gmPowTableL[i]), bits(static_cast<float>(std::exp2((i + 0.5) / 262144)))) << i;
  }
}

TEST(Tables, LowPowersAreHalfAStepAbove) {
  EXPECT_EQ(bits(gmPowTableL[0]), 0x3F80000Bu);
  EXPECT_EQ(bits(gmPowTableL[511]), 0x3F802C59u);
}

// Each product lies in [1, 2), so its exponent field is that of 1 and only its mantissa counts.
TEST(Tables, EveryProductOfPowersIsInOneOctave) {
  for (float high : gmPowTableH) {
    for (float low : gmPowTableL) {
      ASSERT_GE(high * low, 1.0f);
      ASSERT_LT(high * low, 2.0f);
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::tables_test
