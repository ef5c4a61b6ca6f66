// The bands of the two passes: which of them run, in which order, before or after the dynamics.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cmath>
#include <limits>

namespace channelstrip::test::cascade_test {
namespace {

class EqCascade : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, EqCascade, every_format(), format_name);

constexpr int kBands = CHANNELSTRIP_EQ_BANDS;

void set_passes(Strip& strip, int pre_first, int pre_end, int post_first, int post_end) {
  strip.eq.firstBand[0] = pre_first;
  strip.eq.endBand[0] = pre_end;
  strip.eq.firstBand[1] = post_first;
  strip.eq.endBand[1] = post_end;
}

void expect_constant_outputs(const Strip& strip, float value) {
  for (const auto& channel : strip.out) {
    EXPECT_EQ(channel, std::vector<float>(channel.size(), value));
  }
}

// Band k multiplies by 2^kExponents[k]. No two ranges of bands have the same sum of exponents.
constexpr int kExponents[kBands] = {1, 4, 7, 13, 2, 8, 6, 3};

void set_gains(Strip& strip) {
  strip.pass_exactly();
  for (int band = 0; band < kBands; ++band) {
    strip.set_band(band, {std::ldexp(1.0f, kExponents[band]), 0, 0, 0, 0});
  }
  strip.jump_to_targets();
}

TEST_P(EqCascade, EveryRangeOfEitherPassRunsItsBandsAlone) {
  for (const size_t pass : {0u, 1u}) {
    for (int first = 0; first <= kBands; ++first) {
      for (int end = first; end <= kBands; ++end) {
        Strip strip(format());
        set_gains(strip);
        strip.fill_inputs(1);
        strip.eq.firstBand[pass] = first;
        strip.eq.endBand[pass] = end;
        strip.process();
        int sum = 0;
        for (int band = first; band < end; ++band) sum += kExponents[band];
        expect_constant_outputs(strip, std::ldexp(1.0f, sum));
      }
    }
  }
}

// Every band doubles the first sample and adds its own memory.
TEST_P(EqCascade, BandsRunInAscendingOrder) {
  Strip strip(format());
  strip.pass_exactly();
  for (int band = 0; band < kBands; ++band) strip.set_band(band, {2, 0, 0, 0, 0});
  strip.jump_to_targets();
  for (EQ_SState& state : strip.eq_state) {
    for (size_t band = 0; band < kBands; ++band) state.z1[band] = static_cast<float>(band + 1);
  }
  set_passes(strip, 0, kBands, 0, 0);
  strip.process();
  float expected = 0;
  for (size_t band = 0; band < kBands; ++band)
    expected = 2 * expected + static_cast<float>(band + 1);
  for (const auto& channel : strip.out) EXPECT_EQ(channel[0], expected);
}

// Band k adds 2^k to the first sample; the dynamics halve what was added before them.
TEST_P(EqCascade, SplitsAroundTheDynamicsAnywhere) {
  for (int split = 0; split <= kBands; ++split) {
    Strip strip(format());
    strip.pass_exactly();
    strip.dyn.makeupGain /= 2;
    strip.jump_to_targets();
    for (EQ_SState& state : strip.eq_state) {
      for (int band = 0; band < kBands; ++band) state.z1[band] = std::ldexp(1.0f, band);
    }
    set_passes(strip, 0, split, split, kBands);
    strip.process();
    const float before = std::ldexp(1.0f, split) - 1;
    for (const auto& channel : strip.out) {
      EXPECT_EQ(channel[0], before / 2 + (std::ldexp(1.0f, kBands) - 1 - before)) << split;
    }
  }
}

TEST_P(EqCascade, DynamicsDetectBehindTheFirstPassAndAheadOfTheSecond) {
  Strip strip(format());
  strip.set_band(2, {2, 0, 0, 0, 0});
  strip.set_band(3, {16, 0, 0, 0, 0});
  strip.jump_to_targets();
  strip.fill_inputs(0.25f);
  set_passes(strip, 2, 3, 3, 4);
  strip.process();
  EXPECT_EQ(strip.readout(CHANNELSTRIP_METER_LEVEL), 0.5f);
}

TEST_P(EqCascade, EmptyPassesCopyToTheBit) {
  const float infinity = std::numeric_limits<float>::infinity();
  const std::vector<float> samples = {
      0.0f,      -0.0f, 1.0f, -0.1f,         0x1p-149f, -0x1p-149f, 0x1p127f, -0x1p127f,
      0x1p-126f, 0.3f,  0.7f, 0x1.fffffep0f, infinity,  -infinity,  12345.0f, -1e-10f};
  for (const auto& [first, end] : {std::pair{0, 0}, {8, 8}, {5, 5}, {5, 3}, {8, 0}}) {
    BusyStrip strip(format(), 16);
    strip.dyn = Strip(format()).dyn;
    strip.pass_exactly();
    for (auto& channel : strip.in) channel = samples;
    set_passes(strip, first, end, first, end);
    strip.process();
    for (const auto& channel : strip.out) EXPECT_TRUE(same_bits(channel, samples)) << first;
  }
}

TEST_P(EqCascade, EmptyPassesLeaveTheDynamicsAlone) {
  BusyStrip empty(format()), identities(format());
  set_passes(empty, 0, 0, 0, 0);
  for (int band = 0; band < kBands; ++band) identities.set_band(band, {1, 0, 0, 0, 0});
  empty.process();
  identities.process();
  EXPECT_TRUE(same_bits(empty.out, identities.out));
  EXPECT_TRUE(same_bits(empty.dyn_state, identities.dyn_state));
}

TEST_P(EqCascade, EmptyPassesLeaveAllMemoryUntouched) {
  for (const auto& [first, end] : {std::pair{0, 0}, {8, 8}, {5, 3}}) {
    BusyStrip strip(format());
    for (size_t c = 0; c < channels(); ++c) {
      std::ranges::fill(strip.eq_state[c].z1, -0.0f);
      std::ranges::fill(strip.eq_state[c].z2, NAN);
    }
    const auto before = strip.eq_state;
    set_passes(strip, first, end, first, end);
    strip.process();
    EXPECT_TRUE(same_bits(strip.eq_state, before)) << first;
  }
}

}  // namespace
}  // namespace channelstrip::test::cascade_test
