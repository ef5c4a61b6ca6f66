#include "host/loudness/programme.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <vector>

#include "../support/audio.h"
#include "../support/refusal.h"
#include "control/design/dynamics.h"
#include "host/loudness/ebur128_meter.h"
#include "tests/control/design/records.h"

namespace channelstrip::test::programme_test {
namespace {

using namespace host;

Programme measured(std::span<const float> frames, const char* format, double sample_rate,
                   std::size_t samples_per_call = 0) {
  ProgrammeMeter meter(sample_rate, layout_of(format));
  const std::size_t step = samples_per_call ? samples_per_call : frames.size();
  for (std::size_t i = 0; i < frames.size(); i += step) {
    meter.add(frames.subspan(i, std::min(step, frames.size() - i)));
  }
  return meter.programme();
}

double judged(std::vector<float> frames, const char* format, double sample_rate, double gain) {
  for (float& x : frames) x *= static_cast<float>(db_to_linear(gain));
  const Ebur128 judge = open_ebur128(sample_rate, layout_of(format), EBUR128_MODE_I);
  add_frames(*judge, frames);
  double loudness = 0;
  ebur128_loudness_global(judge.get(), &loudness);
  return std::max(loudness, -100.0);
}

// Stretches of noise, each by so many decibels quieter than full scale.
std::vector<float> stretches(std::size_t channels, std::span<const double> levels) {
  std::vector<float> frames;
  for (const double level : levels) {
    const std::vector<float> part =
        noise(channels * 36000, static_cast<float>(db_to_linear(level)), 7);
    frames.insert(frames.end(), part.begin(), part.end());
  }
  return frames;
}

// The quiet stretches lie below the absolute gate at one gain and above it at another; some of
// those above lie below the relative gate.
TEST(Programme, HasTheLoudnessThatLibebur128MeasuresAtAnyGain) {
  const double levels[] = {-30, -38, -41, -55, -71, -33};
  for (const char* format : {"Mono", "Stereo", "5.1", "7.1"}) {
    const ChannelLayout layout = layout_of(format);
    const std::vector<float> frames = stretches(layout.labels.size(), levels);
    const Programme programme = measured(frames, format, 48000);
    for (const double gain : {-60.0, -20.0, 0.0, 3.3, 28.0}) {
      EXPECT_NEAR(integrated_loudness(programme, gain).value_or(-100),
                  judged(frames, format, 48000, gain), 1e-4)
          << format << " " << gain;
    }
  }
}

TEST(Programme, IsMeasuredAtAnyRate) {
  for (const double rate : {8000.0, 11025.0, 44100.0, 96000.0, 192000.0}) {
    const std::vector<float> frames = noise(static_cast<std::size_t>(4 * rate), 0.3f);
    EXPECT_NEAR(integrated_loudness(measured(frames, "Stereo", rate), 0).value_or(-100),
                judged(frames, "Stereo", rate, 0), 0.01)
        << rate;
  }
}

TEST(Programme, DoesNotDependOnTheCutting) {
  const std::vector<float> frames = noise(2 * 50000, 0.3f);
  const Programme whole = measured(frames, "Stereo", 48000);
  for (const std::size_t samples : {2u, 254u, 9600u, 9602u}) {
    const Programme cut = measured(frames, "Stereo", 48000, samples);
    EXPECT_EQ(cut.power, whole.power) << samples;
    EXPECT_EQ(cut.true_peak, whole.true_peak) << samples;
  }
}

TEST(Programme, HasNoLoudnessWhereItIsSilentOrShorterThanABlock) {
  EXPECT_FALSE(integrated_loudness(measured(std::vector<float>(96000), "Mono", 48000), 0));
  EXPECT_FALSE(integrated_loudness(measured(noise(4 * 4800 - 1, 0.5f), "Mono", 48000), 0));
  EXPECT_TRUE(integrated_loudness(measured(noise(4 * 4800, 0.5f), "Mono", 48000), 0));
  EXPECT_FALSE(integrated_loudness(measured(noise(96000, 1e-5f), "Mono", 48000), 0));
  EXPECT_TRUE(integrated_loudness(measured(noise(96000, 1e-5f), "Mono", 48000), 60));
  EXPECT_FALSE(integrated_loudness(measured({}, "Mono", 48000), 0));
}

TEST(Programme, RefusesARateThatCannotBeMeasured) {
  EXPECT_EQ(refusal<std::invalid_argument>([] { ProgrammeMeter(8, layout_of("Mono")); }),
            "no loudness can be measured at 8 Hz");
}

}  // namespace
}  // namespace channelstrip::test::programme_test
