#include "host/report/comparison.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace channelstrip::test::comparison_test {
namespace {

using namespace host;

Comparison compared(int sample_type, const std::vector<float>& expected,
                    const std::vector<float>& actual) {
  Comparison comparison(
      {.sample_rate = 48000, .channels = 1, .sample_type = sample_type, .channel_map = {}});
  comparison.add(expected, actual);
  return comparison;
}

Verdict off_by(double difference, int sample_type) {
  return compared(sample_type, {0.5f}, {static_cast<float>(0.5 + difference)}).verdict();
}

TEST(Comparison, SameSamplesAreIdentical) {
  for (const int type : {SF_FORMAT_FLOAT, SF_FORMAT_PCM_16, SF_FORMAT_VORBIS}) {
    const Comparison comparison = compared(type, {0.5f, -0.25f}, {0.5f, -0.25f});
    EXPECT_EQ(comparison.verdict(), Verdict::kIdentical);
    EXPECT_EQ(comparison.greatest(), 0);
  }
}

TEST(Comparison, IntegersMayBeRoundedOrDithered) {
  EXPECT_EQ(off_by(0.5 * 0x1p-15, SF_FORMAT_PCM_16), Verdict::kRounded);
  EXPECT_EQ(off_by(-1.5 * 0x1p-15, SF_FORMAT_PCM_16), Verdict::kDithered);
  EXPECT_EQ(off_by(1.6 * 0x1p-15, SF_FORMAT_PCM_16), Verdict::kDifferent);
  EXPECT_EQ(off_by(0x1p-15, SF_FORMAT_PCM_24), Verdict::kDifferent);
}

TEST(Comparison, FloatingPointMayNot) {
  EXPECT_EQ(off_by(0x1p-24, SF_FORMAT_FLOAT), Verdict::kDifferent);
  EXPECT_EQ(off_by(0x1p-20, SF_FORMAT_DOUBLE), Verdict::kDifferent);
}

TEST(Comparison, LossyTypesCannotBeTold) {
  EXPECT_EQ(off_by(0.1, SF_FORMAT_VORBIS), Verdict::kCoded);
  EXPECT_EQ(off_by(0.1, SF_FORMAT_ULAW), Verdict::kCoded);
}

TEST(Comparison, IntegersAreExpectedToBeClampedAboveFullScale) {
  const auto highest = static_cast<float>(1 - 0x1p-15);
  EXPECT_EQ(compared(SF_FORMAT_PCM_16, {1.5f, -3}, {highest, -1}).verdict(), Verdict::kIdentical);
  EXPECT_EQ(compared(SF_FORMAT_FLOAT, {1.5f}, {1}).verdict(), Verdict::kDifferent);
}

TEST(Comparison, KeepsTheGreatestDifference) {
  Comparison comparison = compared(SF_FORMAT_FLOAT, {0, 0.5f, 0}, {0, 0.25f, 0.125f});
  EXPECT_EQ(comparison.greatest(), 0.25);
  comparison.add(std::vector{0.0f}, std::vector{-1.0f});
  EXPECT_EQ(comparison.greatest(), 1);
}

}  // namespace
}  // namespace channelstrip::test::comparison_test
