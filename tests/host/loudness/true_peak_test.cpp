#include "host/loudness/true_peak.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "../design/records.h"
#include "../support/audio.h"
#include "host/loudness/loudness.h"

namespace channelstrip::test::true_peak_test {
namespace {

using namespace host;

float peak_of(std::span<const float> frames, double sample_rate, std::size_t channels,
              std::size_t frames_per_call) {
  TruePeakMeter meter(sample_rate, channels);
  const std::size_t step = frames_per_call * channels;
  for (std::size_t i = 0; i < frames.size(); i += step) {
    meter.add(frames.subspan(i, std::min(step, frames.size() - i)));
  }
  return meter.peak();
}

TEST(TruePeak, IsLibebur128s) {
  for (const double rate : {8000.0, 44100.0, 95999.0, 96000.0, 191999.0, 192000.0, 384000.0}) {
    for (const std::size_t frames : {1u, 40u, 500u, 10007u}) {
      for (const std::vector<float>& stream :
           {noise(2 * frames, 0.7f), sine(0.5, rate / 4.01, rate, frames, 2)}) {
        LoudnessMeter judge(rate, layout_of("Stereo"));
        judge.add(stream);
        const double expected = std::ranges::max(judge.loudness().true_peak);
        // Twelve or 24 products in single precision.
        EXPECT_NEAR(peak_of(stream, rate, 2, frames), expected, 24 * 0x1p-24) << rate;
      }
    }
  }
}

// A sine at a quarter of the rate, 45 degrees off its crests, behind higher samples.
TEST(TruePeak, MayLieWhereSamplesAreLower) {
  std::vector<float> stream(2000, 0.55f);
  for (int i = 0; i < 1000; ++i) {
    for (const float x : {0.5f, 0.5f, -0.5f, -0.5f}) stream.push_back(x);
  }
  LoudnessMeter judge(48000, layout_of("Mono"));
  judge.add(stream);
  const double expected = judge.loudness().true_peak.front();
  ASSERT_GT(expected, 0.65);
  EXPECT_NEAR(peak_of(stream, 48000, 1, 6000), expected, 24 * 0x1p-24);
}

TEST(TruePeak, DoesNotDependOnTheCutting) {
  const std::vector<float> stream = noise(3 * 5000, 0.7f);
  const float whole = peak_of(stream, 48000, 3, 5000);
  for (const std::size_t frames : {1u, 7u, 255u, 256u, 257u}) {
    EXPECT_EQ(peak_of(stream, 48000, 3, frames), whole) << frames;
  }
}

TEST(TruePeak, LeavesOutWhatIsNotANumber) {
  std::vector<float> stream = noise(1000, 0.5f);
  stream[500] = std::numeric_limits<float>::quiet_NaN();
  const float peak = peak_of(stream, 48000, 1, 1000);
  EXPECT_GT(peak, 0.4f);
  EXPECT_LT(peak, 1.0f);
}

}  // namespace
}  // namespace channelstrip::test::true_peak_test
