// The conversions in lanes against the scalar ones, for any number of lanes in use.

#include <ChannelStrip/dynamics/conversions.h>
#include <gtest/gtest.h>
#include <tests/support/compare.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace channelstrip::conversions_test {
namespace {

using test::bits;
using Floats = std::vector<float>;

constexpr auto kLevelToDb = [](auto used, auto level) { return level_to_db(used, level); };
constexpr auto kDbToGain = [](auto used, auto db) { return db_to_gain(used, db); };

template <int Width, int Count, typename InLanes, typename Alone>
uint64_t count_differences(std::span<const float> numbers, InLanes in_lanes, Alone alone) {
  uint64_t differences = 0;
  for (; numbers.size() >= Width; numbers = numbers.subspan(Count)) {
    float y[Width];
    store(y, in_lanes(Used<Count>{}, load<Lanes<Width>>(numbers.data())));
    for (size_t i = 0; i < Count; ++i) differences += bits(y[i]) != bits(alone(numbers[i]));
  }
  return differences;
}

template <int Width, int Count = Width, typename InLanes, typename Alone>
void expect_equal(const Floats& numbers, InLanes in_lanes, Alone alone) {
  EXPECT_EQ((count_differences<Width, Count>(numbers, in_lanes, alone)), 0u)
      << Count << " of " << Width;
  if constexpr (Count > 1) expect_equal<Width, Count - 1>(numbers, in_lanes, alone);
}

// Appends the numbers, their neighbouring floats, and the negatives of all.
void append(Floats& numbers, std::initializer_list<float> more) {
  for (const float x : more) {
    for (float y : {x, std::nextafter(x, -INFINITY), std::nextafter(x, INFINITY)}) {
      numbers.insert(numbers.end(), {y, -y});
    }
  }
}

// Special numbers, repeated from ever later starts, so that each of them comes to every lane.
Floats specials() {
  constexpr float kDenormal = std::numeric_limits<float>::denorm_min();
  Floats numbers;
  append(numbers, {0.0f, kDenormal, 0x1p-126f, 1.0f, 2.0f, INFINITY, NAN});
  const Floats once = numbers;
  for (int i = 0; i < 15; ++i) numbers.insert(numbers.end(), once.begin() + i, once.end());
  return numbers;
}

// Bit patterns in steps of a prime, so that neighbours differ in all bits.
Floats floats_of_all_sizes() {
  Floats numbers;
  for (uint64_t u = 0; u < 1u << 30; u += 5003) {
    for (const uint64_t part : {0u, 1u, 2u, 3u}) {
      numbers.push_back(std::bit_cast<float>(static_cast<uint32_t>(u + (part << 30))));
    }
  }
  return numbers;
}

Floats every_table_entry_at_every_exponent() {
  Floats numbers;
  for (uint32_t index = 0; index < 512; ++index) {
    for (uint32_t exponent = 0; exponent < 256; ++exponent) {
      for (const uint32_t fraction : {0u, 0x1555u, 0x3FFFu}) {
        numbers.push_back(std::bit_cast<float>(exponent << 23 | index << 14 | fraction));
      }
    }
  }
  return numbers;
}

// Appends the decibels at which the conversion's integer becomes n, and their neighbours.
void append_step(Floats& numbers, int64_t n) {
  constexpr double kScale = 0x1.542a5ap+20, kZero = 0x1.fcp+29;
  append(numbers, {static_cast<float>((static_cast<double>(n) - kZero) / kScale)});
}

// Every step of the conversion in the octave above 0 dB, the first step of every other octave, and
// both ends of the integer range.
Floats every_step() {
  Floats numbers;
  for (int64_t n = int64_t{127} << 23; n <= int64_t{128} << 23; n += 32) append_step(numbers, n);
  for (int64_t octave = -256; octave <= 256; ++octave) append_step(numbers, octave << 23);
  return numbers;
}

TEST(LevelsToDbInLanes, AreThoseOfEachAlone) {
  for (const Floats& numbers :
       {specials(), floats_of_all_sizes(), every_table_entry_at_every_exponent()}) {
    expect_equal<4>(numbers, kLevelToDb, LevelToDb);
    expect_equal<8>(numbers, kLevelToDb, LevelToDb);
    if constexpr (kLanes == 16) expect_equal<16>(numbers, kLevelToDb, LevelToDb);
  }
}

TEST(DbToGainsInLanes, AreThoseOfEachAlone) {
  for (const Floats& numbers : {specials(), floats_of_all_sizes(), every_step()}) {
    expect_equal<4>(numbers, kDbToGain, DbToGain);
    expect_equal<8>(numbers, kDbToGain, DbToGain);
    if constexpr (kLanes == 16) expect_equal<16>(numbers, kDbToGain, DbToGain);
  }
}

TEST(DbToGainsInLanes, TakeTheLowTableFromAParabola) {
  for (int32_t n = 0; n < 512; ++n) {
    using Ints = IntsOf<Lanes<4>>;
    const Ints found = low_fraction(Ints{n, 0, 511, n});
    const auto fraction = [](int i) {
      return static_cast<int32_t>(bits(gmPowTableL[i])) & 0x7FFFFF;
    };
    const int32_t expected[] = {fraction(n), fraction(0), fraction(511), fraction(n)};
    for (int lane = 0; lane < 4; ++lane) ASSERT_EQ(found[lane], expected[lane]) << n;
  }
}

}  // namespace
}  // namespace channelstrip::conversions_test
