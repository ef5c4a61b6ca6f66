// What all stem formats have in common, and where two of them must agree.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cmath>

namespace channelstrip::test::formats_test {
namespace {

class Formats : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Formats, every_format(), format_name);

void fill_with_noise(Strip& strip) {
  Noise noise(3);
  for (auto& channel : strip.in) std::generate(channel.begin(), channel.end(), noise);
}

TEST_P(Formats, NeutralStripPassesAudioWithinTheConversionsStep) {
  Strip strip(format(), 64);
  fill_with_noise(strip);
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    for (size_t i = 0; i < 64; ++i) {
      // The two 0 dB terms are factors of 1.0000013.
      EXPECT_NEAR(strip.out[c][i], strip.in[c][i], 2.7e-6f * std::abs(strip.in[c][i]));
    }
  }
}

TEST_P(Formats, UnityGainPassesAudioBitForBit) {
  Strip strip(format(), 64);
  strip.pass_exactly();
  fill_with_noise(strip);
  strip.process();
  strip.in.resize(channels());
  EXPECT_TRUE(same_bits(strip.out, strip.in));
}

TEST_P(Formats, OutputsAndRecordsBehindTheLastChannelAreUntouched) {
  BusyStrip strip(format()), untouched(format());
  for (BusyStrip* const each : {&strip, &untouched}) {
    each->out.emplace_back(32, 77.0f);
    each->eq_state.push_back({{1}, {2}, 3});
    each->dyn_state.push_back(each->dyn_state[0]);
    each->meters.push_back(-1);
  }
  strip.process();
  EXPECT_TRUE(same_bits(strip.out.back(), untouched.out.back()));
  EXPECT_TRUE(same_record(strip.eq_state.back(), untouched.eq_state.back()));
  EXPECT_TRUE(same_record(strip.dyn_state.back(), untouched.dyn_state.back()));
  EXPECT_EQ(strip.meters.back(), -1);
}

TEST_P(Formats, EveryChannelIsProcessed) {
  BusyStrip strip(format()), untouched(format());
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_FALSE(same_bits(strip.out[c], untouched.out[c])) << c;
    EXPECT_FALSE(same_record(strip.eq_state[c], untouched.eq_state[c])) << c;
    EXPECT_NE(strip.dyn_state[c].keyZ1, 0) << c;
    EXPECT_GT(strip.input_peak(static_cast<int>(c)), 0) << c;
    EXPECT_GT(strip.output_peak(static_cast<int>(c)), 0) << c;
    EXPECT_GT(strip.readout(static_cast<int>(4 + c)), 0) << c;
  }
}

// Group g has the level 2^-g. A limiter at -40 dB takes it to 0.01, so the gain shows the level.
TEST_P(Formats, HoldTheirNumberOfLinkGroups) {
  Strip strip(format());
  strip.dyn.compThreshold = strip.dyn.compKneeLow = strip.dyn.compKneeHigh = -40;
  strip.dyn.compSlope = -1;
  strip.dyn.peakDecay = 1;
  for (size_t c = 0; c < channels(); ++c) {
    const size_t group = c % groups();
    strip.dyn.linkGroup[c] = static_cast<int32_t>(group);
    const float level = c < groups() ? std::ldexp(1.0f, -static_cast<int>(group)) : 0.001f;
    std::fill(strip.in[c].begin(), strip.in[c].end(), level);
  }
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    const float gain = std::ldexp(0.01f, static_cast<int>(c % groups()));
    EXPECT_NEAR(strip.readout(static_cast<int>(4 + c)) / gain, 1, 1e-4) << c;
  }
}

TEST(FormatPairs, FiveOneAndSixZeroAreTheSame) {
  BusyStrip five_one("5.1", 64), six_zero("6.0", 64);
  five_one.process();
  six_zero.process();
  EXPECT_EQ(differences(five_one, six_zero), "");
}

void expect_identical_equalisers(std::string_view one_format, std::string_view other_format) {
  BusyStrip one(one_format, 64), other(other_format, 64);
  for (BusyStrip* const each : {&one, &other}) {
    std::fill(std::begin(each->dyn.linkGroup), std::end(each->dyn.linkGroup), 0);
    each->process();
  }
  EXPECT_EQ(differences(one, other), "");
}

TEST(FormatPairs, QuadAndLcrsEqualiseTheSame) {
  expect_identical_equalisers("Quad", "LCRS");
}
TEST(FormatPairs, SixOneAndSevenZeroEqualiseTheSame) {
  expect_identical_equalisers("6.1", "7.0");
}

}  // namespace
}  // namespace channelstrip::test::formats_test
