// The conversions in lanes against the scalar ones, at every float.

#include <ChannelStrip/dynamics/conversions.h>
#include <gtest/gtest.h>
#include <tests/support/compare.h>

#include <cmath>
#include <cstdint>

namespace channelstrip::conversions_sweep_test {
namespace {

using test::bits;

// Compares all floats whose bits are from `begin` up to, but not including, `end`; both are
// multiples of 1024. So many at a time, so that the compiler vectorises the comparison too.
template <int Width, typename InLanes, typename Alone>
uint64_t count_differences(uint32_t begin, uint32_t end, InLanes in_lanes, Alone alone) {
  constexpr uint32_t kAtATime = 1024;
  float x[kAtATime], together[kAtATime], apart[kAtATime];
  uint64_t differences = 0;
  for (uint32_t first = begin; first != end; first += kAtATime) {
    for (uint32_t i = 0; i < kAtATime; ++i) x[i] = std::bit_cast<float>(first + i);
    for (uint32_t i = 0; i < kAtATime; i += Width) {
      store(together + i, in_lanes(Used<Width>{}, load<Lanes<Width>>(x + i)));
    }
    for (uint32_t i = 0; i < kAtATime; ++i) apart[i] = alone(x[i]);
    uint32_t different = 0;
    for (uint32_t i = 0; i < kAtATime; ++i) different += bits(together[i]) != bits(apart[i]);
    differences += different;
  }
  return differences;
}

constexpr auto kLevelToDb = [](auto used, auto level) { return level_to_db(used, level); };
constexpr auto kDbToGain = [](auto used, auto db) { return db_to_gain(used, db); };

TEST(EightLevelsToDb, AreThoseOfEachAloneAtEveryFloatThatIsNotNegative) {
  EXPECT_EQ(count_differences<8>(0, 0x80000000, kLevelToDb, LevelToDb), 0u);
}

TEST(FourLevelsToDb, AreThoseOfEachAloneInSeveralOctaves) {
  for (const float octave : {0x1p-126f, 0x1p-10f, 0x1p-1f, 1.0f, 0x1p30f}) {
    EXPECT_EQ(count_differences<4>(bits(octave), bits(2 * octave), kLevelToDb, LevelToDb), 0u)
        << octave;
  }
}

// Nearer to 0 the gain is that of 0 dB; beyond kMostDb, of either sign, the conversion saturates.
constexpr float kLeastDb = 0x1p-18f, kMostDb = 0x1p12f;

TEST(EightDbToGains, AreThoseOfEachAloneAtEveryFloatThatMatters) {
  ASSERT_EQ(bits(DbToGain(kLeastDb)), bits(DbToGain(0)));
  ASSERT_EQ(bits(DbToGain(kMostDb)), bits(DbToGain(INFINITY)));
  ASSERT_EQ(bits(DbToGain(-kMostDb)), bits(DbToGain(-INFINITY)));
  for (const float sign : {1.0f, -1.0f}) {
    EXPECT_EQ(
        count_differences<8>(bits(sign * kLeastDb), bits(sign * kMostDb), kDbToGain, DbToGain), 0u)
        << sign;
  }
}

TEST(FourDbToGains, AreThoseOfEachAloneInSeveralOctaves) {
  for (const float octave : {1.0f, -4.0f, 64.0f, -512.0f, 512.0f}) {
    EXPECT_EQ(count_differences<4>(bits(octave), bits(2 * octave), kDbToGain, DbToGain), 0u)
        << octave;
  }
}

}  // namespace
}  // namespace channelstrip::conversions_sweep_test
