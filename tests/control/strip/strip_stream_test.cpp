#include "control/strip/strip_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "../streamed.h"
#include "tests/host/support/refusal.h"

namespace channelstrip::test::strip_stream_test {
namespace {

using namespace host;

TEST(StripStream, OutputAndMetersDoNotDependOnTheCutting) {
  const std::vector<float> input = bursts(10007, 6);
  const Stream busy{.format = "5.1", .input = input, .settings = busy_settings()};
  const Streamed whole = play(busy);
  ASSERT_GT(whole.meters.compressor_reduction, 0.1f);
  ASSERT_GT(whole.meters.expander_reduction, 0.1f);
  for (const std::size_t frames : {1u, 7u, 16u, 63u, 64u, 255u, 256u, 257u, 1000u}) {
    const Streamed cut = play(busy, frames);
    EXPECT_EQ(cut.bits, whole.bits) << frames;
    EXPECT_EQ(cut.meters, whole.meters) << frames;
  }
}

TEST(StripStream, RefusesToBeginWithWhatNoStripCanHave) {
  const auto refused = [](double mix, double changed, std::uint64_t frame) {
    Stream stream{.format = "Mono", .input = {}};
    stream.settings.mix = mix;
    stream.changes = {{frame, {}}};
    stream.changes[0].second.mix = changed;
    return refusal<std::invalid_argument>([&] { play(stream); });
  };
  EXPECT_EQ(refused(101, 50, StripStream::kPeriod), "mix 101 % is not 0 to 100 %");
  EXPECT_EQ(refused(101, 50, 0), "");
  EXPECT_EQ(refused(50, -1, 0), "mix -1 % is not 0 to 100 %");
}

TEST(StripStream, ObservingChangesNothing) {
  const std::vector<float> input = bursts(10007, 2);
  Stream busy{.format = "Stereo", .input = input, .settings = busy_settings()};
  const Streamed alone = play(busy);
  std::size_t periods = 0;
  busy.observer = [&periods](const MeterReading&) { ++periods; };
  const Streamed observed = play(busy);
  EXPECT_EQ(observed.bits, alone.bits);
  EXPECT_EQ(observed.meters, alone.meters);
  EXPECT_EQ(periods, 10007 / StripStream::kPeriod + 1);
}

TEST(StripStream, EveryChannelCountKeepsItsChannelsApart) {
  for (const StemFormat& format : stem_formats()) {
    const auto channels = static_cast<std::size_t>(format.channels);
    std::vector<float> input(channels * 1000);
    for (std::size_t i = 0; i < input.size(); ++i) {
      input[i] = static_cast<float>(i % channels + 1) / 16;
    }
    const Streamed result = play({.format = format.name.data(), .input = input});
    ASSERT_EQ(result.samples.size(), input.size());
    // The neutral strip's two 0 dB terms are factors of 1 + 1.3e-6.
    for (std::size_t i = 0; i < input.size(); ++i) {
      ASSERT_NEAR(result.samples[i], input[i], 2.7e-6f * input[i]) << format.name;
    }
  }
}

TEST(StripStream, AsManyFramesComeOutAsWentIn) {
  for (const std::size_t frames : {0u, 1u, 15u, 16u, 17u, 63u, 64u, 65u, 255u, 256u, 257u, 1000u}) {
    const std::vector<float> input = bursts(frames, 2);
    EXPECT_EQ(play({.format = "Stereo", .input = input}).samples.size(), 2 * frames);
  }
}

TEST(StripStream, NothingPlayedMeansNothingMetered) {
  const StripMeters meters = play({.format = "Stereo", .input = {}}).meters;
  EXPECT_EQ(meters.input_peak, (std::vector{0.0f, 0.0f}));
  EXPECT_EQ(meters.output_peak, (std::vector{0.0f, 0.0f}));
  EXPECT_EQ(meters.least_gain, (std::vector{1.0f, 1.0f}));
}

TEST(StripStream, EndsAsIfSilenceFollowedUpToAWholeBlock) {
  std::vector<float> input = bursts(StripStream::kWindow + 1, 2);
  const Stream busy{.format = "Stereo", .input = input, .settings = busy_settings()};
  const StripMeters cut_off = play(busy).meters;
  input.resize(2 * (StripStream::kWindow + 16));
  EXPECT_EQ(cut_off,
            play({.format = "Stereo", .input = input, .settings = busy_settings()}).meters);
}

}  // namespace
}  // namespace channelstrip::test::strip_stream_test
