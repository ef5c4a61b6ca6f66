// A stream whose link map has more groups than one strip can hold, so that it takes several.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "../streamed.h"
#include "tests/host/support/audio.h"

namespace channelstrip::test::split_strip_test {
namespace {

using namespace host;

StripSettings unlinked() {
  StripSettings settings = busy_settings();
  settings.link_style = LinkStyle::kNone;
  return settings;
}

TEST(UnlinkedStrip, GivesEveryChannelWhatAMonoStripWould) {
  for (const StemFormat& format : stem_formats()) {
    const auto width = static_cast<std::size_t>(format.channels);
    std::vector<float> input = bursts(3001, width);
    for (std::size_t i = 0; i < input.size(); ++i) input[i] /= static_cast<float>(i % width + 1);
    const Streamed all =
        play({.format = format.name.data(), .input = input, .settings = unlinked()});
    for (std::size_t c = 0; c < width; ++c) {
      SCOPED_TRACE(std::string(format.name) + " channel " + std::to_string(c));
      const std::vector<float> mono = channel(input, width, c);
      const Streamed alone = play({.format = "Mono", .input = mono, .settings = busy_settings()});
      EXPECT_EQ(channel(all.samples, width, c), alone.samples);
      EXPECT_EQ(all.meters.input_peak[c], alone.meters.input_peak[0]);
      EXPECT_EQ(all.meters.output_peak[c], alone.meters.output_peak[0]);
      EXPECT_EQ(all.meters.least_gain[c], alone.meters.least_gain[0]);
    }
  }
}

// More groups than 5.1 holds. Two of them have two channels, which in one of them are not adjacent.
TEST(SplitStrip, GivesEveryGroupWhatItsOwnStripWould) {
  const std::size_t pair[] = {0, 4};
  const std::vector<float> input = bursts(3001, 6);
  StripSettings settings = busy_settings();
  settings.link = {{"5.1", "L Ls | R | C | LFE | Rs"}};
  const Streamed all = play({.format = "5.1", .input = input, .settings = settings});
  const std::vector<float> stereo = channels_of(input, 6, pair);
  const Streamed alone = play({.format = "Stereo", .input = stereo, .settings = busy_settings()});
  EXPECT_EQ(channels_of(all.samples, 6, pair), alone.samples);
  EXPECT_EQ(all.meters.least_gain[0], alone.meters.least_gain[0]);
  EXPECT_EQ(all.meters.least_gain[4], alone.meters.least_gain[1]);
}

TEST(SplitStrip, HearsTheKeyInEveryGroup) {
  const std::vector<float> input = bursts(3001, 2), key = bursts(3001, 1);
  const Streamed all =
      play({.format = "Stereo", .input = input, .settings = unlinked(), .key = key});
  for (std::size_t c = 0; c < 2; ++c) {
    const std::vector<float> mono = channel(input, 2, c);
    const Stream alone{.format = "Mono", .input = mono, .settings = busy_settings(), .key = key};
    EXPECT_EQ(channel(all.samples, 2, c), play(alone).samples);
  }
}

TEST(SplitStrip, ChangesAllItsStrips) {
  const std::vector<float> input = bursts(3001, 2);
  StripSettings later = unlinked();
  later.compressor->threshold = -40;
  const Streamed all = play(
      {.format = "Stereo", .input = input, .settings = unlinked(), .changes = {{1000, later}}});
  for (std::size_t c = 0; c < 2; ++c) {
    const std::vector<float> mono = channel(input, 2, c);
    const Stream alone{
        .format = "Mono", .input = mono, .settings = busy_settings(), .changes = {{1000, later}}};
    EXPECT_EQ(channel(all.samples, 2, c), play(alone).samples);
  }
}

// Loud on the right only: that sets the reduction of the whole, but not the gain.
TEST(SplitStrip, MetersTheExtremesOfItsStrips) {
  std::vector<float> input(2 * 640);
  const std::vector<float> loud = tone(-1, 640), quiet = tone(-60, 640);
  for (std::size_t i = 0; i < 640; ++i) {
    input[2 * i] = quiet[i];
    input[2 * i + 1] = loud[i];
  }
  StripSettings settings = unlinked();
  settings.expander.reset();
  float gain = 0, level = 1, reduction = 0, left = 0, right = 1;
  const Stream stream{.format = "Stereo",
                      .input = input,
                      .settings = settings,
                      .observer = [&](const MeterReading& reading) {
                        gain = reading.gain;
                        level = reading.level;
                        reduction = reading.compressor_reduction;
                        left = reading.channel_gain[0];
                        right = reading.channel_gain[1];
                      }};
  play(stream);
  EXPECT_LT(right, 0.5f);
  EXPECT_GT(left, 0.999f);
  EXPECT_EQ(gain, left);
  EXPECT_LT(level, 0.01f);
  EXPECT_GT(reduction, 0.5f);
}

// A stream that is split and joined on the way, and the same that isn't. The two halves are alike,
// so that linking them changes nothing.
struct Joined {
  Streamed changing, joined;
};
Joined split_on_the_way(double glide) {
  const std::vector<float> mono = bursts(6007, 1);
  std::vector<float> input;
  for (const float x : mono) input.insert(input.end(), {x, x});
  StripSettings linked = busy_settings(), split = unlinked();
  linked.link_style = LinkStyle::kAll;
  linked.glide = split.glide = glide;
  const Stream joined{.format = "Stereo", .input = input, .settings = linked};
  Stream changing = joined;
  changing.changes = {{1000, split}, {3000, linked}};
  return {play(changing), play(joined)};
}

// A map that takes several strips and one that takes a single one may follow each other: the
// channels keep their filters' memory and gains.
TEST(SplitStrip, MayBeSplitAndJoinedOnTheWay) {
  const auto [changing, joined] = split_on_the_way(0);
  EXPECT_EQ(changing.bits, joined.bits);
  EXPECT_EQ(changing.meters, joined.meters);
}

// Of y (1 - s) + y s the complement, the products and the sum are rounded, by up to 2^-24 each: the
// sum by 3 * 2^-24 of y.
TEST(SplitStrip, IsCrossFadedFromAndToOne) {
  const auto [changing, joined] = split_on_the_way(20);
  ASSERT_EQ(changing.samples.size(), joined.samples.size());
  for (std::size_t i = 0; i < joined.samples.size(); ++i) {
    ASSERT_NEAR(changing.samples[i], joined.samples[i], 0x1p-22f * std::abs(joined.samples[i]));
  }
  EXPECT_NE(changing.bits, joined.bits);
}

}  // namespace
}  // namespace channelstrip::test::split_strip_test
