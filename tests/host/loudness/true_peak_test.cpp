#include "host/loudness/true_peak.h"

#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "../support/audio.h"

namespace channelstrip::test::true_peak_test {
namespace {

using namespace host;
using Peaks = std::vector<double>;  // per channel

Peaks libebur128s(const std::vector<float>& frames, unsigned long sample_rate, unsigned channels) {
  ebur128_state* meter = ebur128_init(channels, sample_rate, EBUR128_MODE_TRUE_PEAK);
  ebur128_add_frames_float(meter, frames.data(), frames.size() / channels);
  Peaks peaks(channels);
  for (unsigned c = 0; c < channels; ++c) ebur128_true_peak(meter, c, &peaks[c]);
  ebur128_destroy(&meter);
  return peaks;
}

Peaks measured(std::span<const float> frames, double sample_rate, std::size_t channels,
               std::size_t frames_per_call) {
  TruePeakMeter meter(sample_rate, channels);
  const std::size_t step = frames_per_call * channels;
  for (std::size_t i = 0; i < frames.size(); i += step) {
    meter.add(frames.subspan(i, std::min(step, frames.size() - i)));
  }
  Peaks peaks;
  for (std::size_t c = 0; c < channels; ++c) peaks.push_back(meter.peak(c));
  EXPECT_EQ(meter.peak(), std::ranges::max(peaks));
  return peaks;
}

// The rates on either side of those from which it oversamples less, and the lengths on either side
// of a register's and of a piece's.
TEST(TruePeak, IsLibebur128sToTheBit) {
  for (const unsigned rate : {8000u, 44100u, 95999u, 96000u, 191999u, 192000u}) {
    for (const std::size_t frames : {1u, 7u, 13u, 25u, 160u, 257u, 5000u}) {
      for (const std::vector<float>& stream :
           {noise(2 * frames, 1.0f), sine(0.5, rate / 4.01, rate, frames, 2)}) {
        EXPECT_EQ(measured(stream, rate, 2, frames), libebur128s(stream, rate, 2))
            << rate << " " << frames;
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
  const Peaks peaks = measured(stream, 48000, 1, 6000);
  EXPECT_GT(peaks.front(), 0.65);
  EXPECT_EQ(peaks, libebur128s(stream, 48000, 1));
}

TEST(TruePeak, DoesNotDependOnTheCutting) {
  const std::vector<float> stream = noise(3 * 5000, 0.7f);
  for (const double rate : {48000.0, 96000.0, 192000.0}) {
    const Peaks whole = measured(stream, rate, 3, 5000);
    for (const std::size_t frames : {1u, 13u, 255u, 256u, 257u}) {
      EXPECT_EQ(measured(stream, rate, 3, frames), whole) << rate << " " << frames;
    }
  }
}

TEST(TruePeak, LeavesOutWhatIsNotANumber) {
  std::vector<float> stream = noise(1000, 0.5f);
  stream[500] = std::numeric_limits<float>::quiet_NaN();
  const double peak = measured(stream, 48000, 1, 1000).front();
  EXPECT_GT(peak, 0.4);
  EXPECT_LT(peak, 1.0);
}

}  // namespace
}  // namespace channelstrip::test::true_peak_test
