// The conversions of the built library, seen through its entry points, equal those of the public
// header to the bit.

#include <array>

#include "every_group.h"

namespace channelstrip::test::library_conversions_test {
namespace {

// The inputs are silent and the peak doesn't decay, so the detector keeps whatever level it is
// given. The compressor term is that level in dB.
class LibraryLevelToDb : public EveryGroup {
 protected:
  LibraryLevelToDb() {
    strip.dyn.detectorMode = 0;
    strip.dyn.peakDecay = 1;
    strip.dyn.compKneeHigh = strip.dyn.compKneeLow = -1000;
    strip.dyn.compSlope = 1;
    strip.dyn.compRange = -1000;
    strip.jump_to_targets();
  }

  // Each group converts its own level.
  void expect_header_results(const std::array<float, 5>& levels) {
    set_state(&Dyn_SState::compGain, 0.0f);
    for (size_t c = 0; c < groups(); ++c) strip.dyn_state[c].peakLevel = levels[c];
    strip.process();
    for (size_t c = 0; c < groups(); ++c) {
      ASSERT_EQ(bits(strip.dyn_state[c].compGain), bits(LevelToDb(levels[c]))) << levels[c];
    }
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, LibraryLevelToDb, every_format(), format_name);

TEST_P(LibraryLevelToDb, AgreesAtEveryTableIndex) {
  for (uint32_t index = 0; index < 512; ++index) {
    for (uint32_t fraction : {0u, 1u, 0x1555u, 0x3FFFu}) {
      const auto level = [&](uint32_t exponent) {
        return std::bit_cast<float>(exponent << 23 | index << 14 | fraction);
      };
      expect_header_results({level(126), level(127), level(104), level(132), level(120)});
    }
  }
}

TEST_P(LibraryLevelToDb, AgreesAtEveryPowerOfTwo) {
  for (int e = -149; e <= 127 - 4; ++e) {
    const float level = std::ldexp(1.0f, e);
    expect_header_results({level, 2 * level, 4 * level, 8 * level, 16 * level});
  }
}

TEST_P(LibraryLevelToDb, PutsZeroAndNaNAtTheFloor) {
  expect_header_results({0.0f, -0.0f, kNaN, -kNaN, 0.0f});
  EXPECT_EQ(state(&Dyn_SState::compGain), -140.0f);
}

TEST_P(LibraryLevelToDb, ConvertsInfinity) {
  expect_header_results({kInfinity, kInfinity, kInfinity, kInfinity, kInfinity});
  EXPECT_EQ(state(&Dyn_SState::compGain), 770.63684f);
}

// A closed gate takes the expander term straight to its range, which can be any number of dB here.
class LibraryDbToGain : public EveryGroup {
 protected:
  LibraryDbToGain() {
    strip.dyn.gateOpenThreshold = 1000;
    set_state(&Dyn_SState::gateOpen, 0);
    strip.fill_inputs(1);
  }

  void process(float db) {
    strip.dyn.expRange = db;
    strip.jump_to_targets();
    set_state(&Dyn_SState::expGain, 0.0f);
    strip.process();
  }

  // The gain includes the compressor's factor for 0 dB, which isn't exactly 1.
  void expect_header_result(float db) {
    process(db);
    ASSERT_EQ(bits(output(0)), bits(DbToGain(0) * DbToGain(db))) << db;
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, LibraryDbToGain, every_format(), format_name);

// Two octaves, in steps that use every entry of both tables.
TEST_P(LibraryDbToGain, AgreesAcrossTheTables) {
  for (int i = -4099; i <= 4099; ++i) expect_header_result(6.0206f * static_cast<float>(i) / 4099);
}

TEST_P(LibraryDbToGain, AgreesInEveryOctave) {
  for (int octave = -125; octave < 127; ++octave) {
    expect_header_result(6.0206f * static_cast<float>(octave));
  }
}

TEST_P(LibraryDbToGain, AgreesBelowTheNormalRange) {
  for (float db : {-758.6f, -764.6f, -2400.0f, -1e10f}) expect_header_result(db);
}

TEST_P(LibraryDbToGain, IsNotFiniteAboveTheNormalRange) {
  for (float db : {770.6368f, 776.6575f, 1e10f}) {
    process(db);
    for (auto& channel : strip.out) EXPECT_FALSE(std::isfinite(channel[0])) << db;
  }
}

TEST_P(LibraryDbToGain, KeepsNaN) {
  process(kNaN);
  for (auto& channel : strip.out) EXPECT_TRUE(std::isnan(channel[0]));
}

}  // namespace
}  // namespace channelstrip::test::library_conversions_test
