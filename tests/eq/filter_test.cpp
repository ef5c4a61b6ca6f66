// One band. The dynamics gain is exactly 1 and the numbers have few bits, so every result is exact.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <array>

namespace channelstrip::test::filter_test {
namespace {

class EqFilter : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, EqFilter, every_format(), format_name);

using Quad = std::array<float, 4>;

constexpr size_t kBand = 3;

// Every channel goes through band 3 alone; its input is an impulse.
class OneBand : public Strip {
 public:
  OneBand(std::string_view format_name, std::array<float, 5> coefs) : Strip(format_name) {
    pass_exactly();
    set_band(kBand, coefs);
    jump_to_targets();
    eq.firstBand[0] = kBand;
    eq.endBand[0] = kBand + 1;
    for (auto& channel : in) channel[0] = 1;
  }
};

// The first four samples of the impulse response, the same on every channel.
void expect_response(std::string_view format, std::array<float, 5> coefs, Quad expected) {
  OneBand strip(format, coefs);
  strip.process();
  for (const auto& channel : strip.out) {
    Quad start;
    std::copy_n(channel.begin(), 4, start.begin());
    EXPECT_EQ(start, expected);
  }
}

TEST_P(EqFilter, B0PassesTheSample) {
  expect_response(format(), {0.5f, 0, 0, 0, 0}, {0.5f});
}

TEST_P(EqFilter, B1PassesTheSampleBefore) {
  expect_response(format(), {0.5f, 0.5f, 0, 0, 0}, {0.5f, 0.5f, 0, 0});
}

TEST_P(EqFilter, B2PassesTheSampleTwoBefore) {
  expect_response(format(), {0, 0, 1, 0, 0}, {0, 0, 1, 0});
}

TEST_P(EqFilter, A1IsAddedToTheNextSample) {
  expect_response(format(), {1, 0, 0, 0.5f, 0}, {1, 0.5f, 0.25f, 0.125f});
}

TEST_P(EqFilter, A2IsAddedToTheSampleAfterTheNext) {
  expect_response(format(), {1, 0, 0, 0, 0.5f}, {1, 0, 0.5f, 0});
}

TEST_P(EqFilter, AllFiveActTogether) {
  // h1 = 2 + h0/2, h2 = 3 + h1/2 - h0/4, h3 = h2/2 - h1/4
  expect_response(format(), {1, 2, 3, 0.5f, -0.25f}, {1, 2.5f, 4, 1.375f});
}

TEST_P(EqFilter, FeedbackLeavesItsMemoryForTheNextQuad) {
  OneBand strip(format(), {1, 0, 0, 0.5f, 0});
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_EQ(strip.out[c][4], 0.0625f);
    EXPECT_EQ(strip.out[c][15], 0x1p-15f);
    EXPECT_EQ(strip.eq_state[c].z1[kBand], 0x1p-16f);
    EXPECT_EQ(strip.eq_state[c].z2[kBand], 0);
  }
}

TEST_P(EqFilter, MemoryHoldsWhatIsDueNextAndAfterThat) {
  OneBand strip(format(), {0, 2, 3, 0, 0});
  for (auto& channel : strip.in) channel[15] = 1;
  strip.process();
  for (const EQ_SState& state : strip.eq_state) {
    EXPECT_EQ(state.z1[kBand], 2);
    EXPECT_EQ(state.z2[kBand], 3);
  }
}

TEST_P(EqFilter, MemoryOfTheLastCallIsAddedToTheFirstSamples) {
  OneBand strip(format(), {1, 0, 0, 0, 0});
  for (EQ_SState& state : strip.eq_state) {
    state.z1[kBand] = 2;
    state.z2[kBand] = 4;
  }
  strip.process();
  for (const auto& channel : strip.out) {
    EXPECT_EQ(channel[0], 3);
    EXPECT_EQ(channel[1], 4);
    EXPECT_EQ(channel[2], 0);
  }
}

TEST_P(EqFilter, IdentityPassesTheSignalAndKeepsItsMemoryAtZero) {
  OneBand strip(format(), {1, 0, 0, 0, 0});
  Noise noise(2);
  for (auto& channel : strip.in) std::generate(channel.begin(), channel.end(), noise);
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_EQ(strip.out[c], strip.in[c]);
    EXPECT_EQ(strip.eq_state[c].z1[kBand], 0);
    EXPECT_EQ(strip.eq_state[c].z2[kBand], 0);
  }
}

TEST_P(EqFilter, DelayReachesAcrossQuadsBlocksAndCalls) {
  OneBand strip(format(), {0, 0, 1, 0, 0});
  constexpr size_t kSamples = 32;
  Noise noise(2);
  strip.sample_count = kSamples;
  for (auto& channel : strip.in) {
    channel.resize(2 * kSamples);
    std::generate(channel.begin(), channel.end(), noise);
  }
  for (auto& channel : strip.out) channel.resize(2 * kSamples);
  process_on(strip, pointers(strip.in), pointers(strip.out));
  process_on(strip, pointers(strip.in, kSamples), pointers(strip.out, kSamples));
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_TRUE(same_bits(std::span(strip.out[c]).subspan(2),
                          std::span(strip.in[c]).first(2 * kSamples - 2)));
  }
}

TEST_P(EqFilter, DenormalsAreNotFlushed) {
  OneBand strip(format(), {1, 0, 0, 0, 0});
  strip.fill_inputs(0x1p-149f);
  strip.process();
  for (const auto& channel : strip.out) EXPECT_EQ(channel, std::vector<float>(16, 0x1p-149f));
}

TEST_P(EqFilter, NothingIsClipped) {
  OneBand strip(format(), {2, 0, 0, 0, 0});
  strip.fill_inputs(0x1p100f);
  strip.process();
  for (const auto& channel : strip.out) EXPECT_EQ(channel, std::vector<float>(16, 0x1p101f));
}

}  // namespace
}  // namespace channelstrip::test::filter_test
