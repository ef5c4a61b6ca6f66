#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "../streamed.h"

namespace channelstrip::test::strip_meters_test {
namespace {

using namespace host;

TEST(StripMeters, PeaksAreThoseOfTheirChannel) {
  std::vector<float> input = noise(3 * 1000, 0.5f);
  input[3 * 500 + 1] = -0.75f;
  const Streamed result = play({.format = "LCR", .input = input});
  for (std::size_t c = 0; c < 3; ++c) {
    float in = 0, out = 0;
    for (std::size_t i = c; i < input.size(); i += 3) {
      in = std::max(in, std::abs(input[i]));
      out = std::max(out, std::abs(result.samples[i]));
    }
    EXPECT_EQ(result.meters.input_peak[c], in);
    EXPECT_EQ(result.meters.output_peak[c], out);
  }
  EXPECT_EQ(result.meters.input_peak[1], 0.75f);
}

double db(float linear) {
  return linear_to_db(static_cast<double>(linear));
}

TEST(StripMeters, ToneAboveTheThresholdIsReducedByTheRatio) {
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .knee = 0, .attack = 10, .makeup = 3};
  settings.detector.time = 1000;
  const std::vector<float> input = tone(-8, 48000);
  const Streamed result = play({.format = "Mono", .input = input, .settings = settings});

  // 12 dB above the threshold at 4:1 are 9 dB of reduction. After 100 attack times the attack is
  // over. Between two crests, 0.5 ms apart, the detector falls by 8.7 dB * 0.5 / 1000, of which 3/4
  // reach the gain.
  const double ripple = 0.0033;
  // 3e-6 octaves in the level, 7e-6 in the gain: together below 1e-4 dB.
  const double conversions = 1e-4;
  const double bound = ripple + conversions;
  EXPECT_NEAR(db(result.meters.least_gain[0]), -9, bound);
  EXPECT_NEAR(db(1 - result.meters.compressor_reduction), -9, bound);
  EXPECT_EQ(result.meters.expander_reduction, 0);
  EXPECT_NEAR(db(result.meters.input_peak[0]), -8, 1e-5);

  const std::span last_period = std::span(result.samples).last(48);
  EXPECT_NEAR(db(std::ranges::max(last_period)), -8 - 9 + 3, bound);
}

TEST(StripMeters, ReductionIsThatOfItsLinkGroup) {
  std::vector<float> loud_left(2 * 48000), loud_centre(3 * 48000);
  const std::vector<float> mono = tone(-8, 48000);
  for (std::size_t i = 0; i < mono.size(); ++i) loud_left[2 * i] = loud_centre[3 * i + 2] = mono[i];
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4};

  const std::vector<float> linked =
      play({.format = "Stereo", .input = loud_left, .settings = settings}).meters.least_gain;
  EXPECT_EQ(linked[0], linked[1]);
  EXPECT_LT(linked[0], 0.5f);
  const std::vector<float> apart =
      play({.format = "LCR", .input = loud_centre, .settings = settings}).meters.least_gain;
  EXPECT_EQ(apart[0], 1.0f);
  EXPECT_EQ(apart[1], 1.0f);
  EXPECT_LT(apart[2], 0.5f);
}

// The gain is reduced from the burst's first sample until the detector has fallen by 20 dB, 2.3 ms
// or 111 samples after its last one, which is less than a window.
StripMeters burst_of(std::size_t begin, std::size_t frames) {
  std::vector<float> input(4 * StripStream::kWindow, 0.001f);
  std::fill_n(input.begin() + static_cast<std::ptrdiff_t>(begin), frames, 1.0f);
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .attack = 0, .release = 0};
  settings.detector.time = 1;
  return play({.format = "Mono", .input = input, .settings = settings}).meters;
}

TEST(StripMeters, LeastGainIsAReductionThatLastedForAWindow) {
  constexpr std::size_t kWindow = StripStream::kWindow;
  EXPECT_LT(burst_of(kWindow, kWindow).least_gain[0], 0.2f);
  EXPECT_LT(burst_of(kWindow / 2, 2 * kWindow - 1).least_gain[0], 0.2f);
  const StripMeters shorter = burst_of(kWindow + 1, kWindow - 1);
  EXPECT_NEAR(shorter.least_gain[0], 1, 1e-5);
  EXPECT_GT(shorter.compressor_reduction, 0.8f);
}

}  // namespace
}  // namespace channelstrip::test::strip_meters_test
