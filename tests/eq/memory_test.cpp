// Filter memory: every channel and band has its own, and an idle band keeps it.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cmath>

namespace channelstrip::test::memory_test {
namespace {

class EqMemory : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, EqMemory, every_format(), format_name);

constexpr size_t kBands = CHANNELSTRIP_EQ_BANDS;

TEST_P(EqMemory, ReservedWordsAreUntouched) {
  BusyStrip strip(format());
  for (EQ_SState& state : strip.eq_state) state.reserved = std::bit_cast<float>(0x7FA12345u);
  strip.process();
  for (const EQ_SState& state : strip.eq_state) EXPECT_EQ(bits(state.reserved), 0x7FA12345u);
}

TEST_P(EqMemory, ReservedWordsAreNotRead) {
  BusyStrip strip(format()), reference(format());
  for (EQ_SState& state : strip.eq_state) state.reserved = NAN;
  strip.process();
  reference.process();
  EXPECT_TRUE(same_bits(strip.out, reference.out));
}

TEST_P(EqMemory, OfBandsOutsideBothPassesIsUntouched) {
  BusyStrip strip(format());
  strip.eq.firstBand[0] = 1, strip.eq.endBand[0] = 3;
  strip.eq.firstBand[1] = 5, strip.eq.endBand[1] = 6;
  for (size_t c = 0; c < channels(); ++c) {
    for (size_t band = 0; band < kBands; ++band) {
      strip.eq_state[c].z1[band] = strip.eq_state[c].z2[band] = static_cast<float>(c + band + 1);
    }
  }
  const auto before = strip.eq_state;
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    for (const size_t band : {0u, 3u, 4u, 6u, 7u}) {
      EXPECT_EQ(strip.eq_state[c].z1[band], before[c].z1[band]) << band;
      EXPECT_EQ(strip.eq_state[c].z2[band], before[c].z2[band]) << band;
    }
    for (const size_t band : {1u, 2u, 5u}) {
      EXPECT_NE(strip.eq_state[c].z1[band], before[c].z1[band]) << band;
    }
  }
}

TEST_P(EqMemory, OfABandThatReturnsIsResumed) {
  Strip strip(format());
  strip.pass_exactly();
  strip.set_band(6, {0, 1, 0, 0, 0});
  strip.jump_to_targets();
  const auto process_with = [&strip](int first, int end, float input) {
    strip.eq.firstBand[1] = first;
    strip.eq.endBand[1] = end;
    strip.fill_inputs(input);
    strip.process();
  };
  process_with(6, 7, 3);
  process_with(0, 0, 5);
  process_with(6, 7, 7);
  for (const auto& channel : strip.out) EXPECT_EQ(channel[0], 3);
}

// A delay of one sample in both passes: the second pass starts with the memory that the first pass
// left after the same quad.
TEST_P(EqMemory, OfABandInBothPassesIsAdvancedTwicePerQuad) {
  Strip strip(format());
  strip.pass_exactly();
  strip.set_band(2, {0, 1, 0, 0, 0});
  strip.jump_to_targets();
  strip.eq.firstBand[0] = strip.eq.firstBand[1] = 2;
  strip.eq.endBand[0] = strip.eq.endBand[1] = 3;
  for (auto& channel : strip.in) {
    for (size_t i = 0; i < 16; ++i) channel[i] = static_cast<float>(i + 1);
  }
  strip.process();
  for (const auto& channel : strip.out) {
    EXPECT_EQ(channel, std::vector<float>({4, 0, 1, 2, 8, 3, 5, 6, 12, 7, 9, 10, 16, 11, 13, 14}));
  }
  for (const EQ_SState& state : strip.eq_state) EXPECT_EQ(state.z1[2], 15);
}

TEST_P(EqMemory, IsEachChannelsOwn) {
  Strip strip(format());
  strip.pass_exactly();
  strip.set_band(0, {0, 0, 1, 0, 0});
  strip.jump_to_targets();
  strip.eq.endBand[0] = 1;
  for (size_t c = 0; c < channels(); ++c) {
    strip.eq_state[c].z1[0] = static_cast<float>(10 + c);
    std::fill(strip.in[c].begin(), strip.in[c].end(), static_cast<float>(1 + c));
  }
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_EQ(strip.out[c][0], static_cast<float>(10 + c));
    EXPECT_EQ(strip.out[c][2], static_cast<float>(1 + c));
    EXPECT_EQ(strip.eq_state[c].z1[0], static_cast<float>(1 + c));
  }
}

TEST_P(EqMemory, EqualInputsAndMemoriesGiveEqualOutputs) {
  BusyStrip strip(format());
  for (auto& channel : strip.in) channel = strip.in[0];
  std::ranges::fill(strip.dyn.linkGroup, 0);
  strip.process();
  for (const auto& channel : strip.out) EXPECT_TRUE(same_bits(channel, strip.out[0]));
}

TEST_P(EqMemory, AnInfiniteSampleStaysOnItsChannel) {
  for (size_t sick = 0; sick < channels(); ++sick) {
    BusyStrip strip(format()), healthy(format());
    for (BusyStrip* const each : {&strip, &healthy}) {
      each->dyn = Strip(format()).dyn;  // linked dynamics would carry it over
    }
    strip.in[sick][5] = INFINITY;
    strip.process();
    healthy.process();
    for (size_t c = 0; c < channels(); ++c) {
      EXPECT_EQ(same_bits(strip.out[c], healthy.out[c]), c != sick) << c;
      EXPECT_EQ(same_record(strip.eq_state[c], healthy.eq_state[c]), c != sick) << c;
    }
  }
}

TEST_P(EqMemory, ThatIsNotANumberStaysUntilTheHostClearsIt) {
  BusyStrip strip(format());
  strip.dyn = Strip(format()).dyn;
  strip.in[0][5] = NAN;
  strip.process();
  strip.in[0][5] = 0;
  strip.process();
  EXPECT_TRUE(std::isnan(strip.out[0][31]));
  std::ranges::fill(strip.eq_state, EQ_SState{});
  strip.process();
  EXPECT_FALSE(std::isnan(strip.out[0][31]));
}

}  // namespace
}  // namespace channelstrip::test::memory_test
