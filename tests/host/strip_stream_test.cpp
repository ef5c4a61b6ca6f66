#include "host/render/strip_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>
#include <vector>

#include "host/design/dynamics.h"
#include "host/library.h"
#include "support/audio.h"

namespace channelstrip::test {
namespace {

using namespace host;

struct Rendered {
  std::vector<std::uint32_t> bits;
  std::vector<float> samples;
  StripMeters meters;
};

// `frames_per_call` 0: all at once.
Rendered stream(const char* format_name, const StripSettings& settings,
                std::span<const float> input, std::size_t frames_per_call = 0) {
  static const Library library(CHANNELSTRIP_LIBRARY);
  const StemFormat& format = *find_stem_format(format_name);
  StripStream strip(library.entry_point(format), format,
                    design_strip(settings, 48000, default_layout(format)));
  const std::size_t step = frames_per_call
                               ? frames_per_call * static_cast<std::size_t>(format.channels)
                               : std::max<std::size_t>(input.size(), 1);
  Rendered result;
  for (std::size_t i = 0; i < input.size(); i += step) {
    strip.process(input.subspan(i, std::min(step, input.size() - i)), result.samples);
  }
  strip.finish(result.samples);
  for (const float x : result.samples) result.bits.push_back(std::bit_cast<std::uint32_t>(x));
  result.meters = strip.meters();
  return result;
}

StripSettings busy_settings() {
  StripSettings settings;
  settings.pre = {{.type = BandType::kHighPass, .frequency = 60}, {.frequency = 3000, .gain = 6}};
  settings.post = {{.type = BandType::kHighShelf, .frequency = 9000, .gain = -4}};
  settings.compressor = {.threshold = -18, .ratio = 4, .attack = 1, .release = 30};
  settings.expander = {.threshold = -30, .release = 5, .hold = 1, .hysteresis = 6};
  settings.detector.time = 2;
  return settings;
}

// Loud and quiet by turns, so that every part of the dynamics moves.
std::vector<float> bursts(std::size_t frames, std::size_t channels) {
  std::vector<float> samples = noise(frames * channels, 0.9f);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (i / channels / 700 % 2) samples[i] *= 0.01f;
  }
  return samples;
}

TEST(StripStream, OutputAndMetersDoNotDependOnTheCutting) {
  const std::vector<float> input = bursts(10007, 6);
  const Rendered whole = stream("5.1", busy_settings(), input);
  ASSERT_GT(whole.meters.compressor_reduction, 0.1f);
  ASSERT_GT(whole.meters.expander_reduction, 0.1f);
  for (const std::size_t frames : {1u, 7u, 16u, 63u, 64u, 100u, 1000u}) {
    const Rendered cut = stream("5.1", busy_settings(), input, frames);
    EXPECT_EQ(cut.bits, whole.bits) << frames;
    EXPECT_EQ(cut.meters, whole.meters) << frames;
  }
}

TEST(StripStream, AsManyFramesComeOutAsWentIn) {
  for (const std::size_t frames : {0u, 1u, 15u, 16u, 17u, 63u, 64u, 65u, 128u, 1000u}) {
    EXPECT_EQ(stream("Stereo", busy_settings(), bursts(frames, 2)).samples.size(), 2 * frames);
  }
}

TEST(StripStream, NothingPlayedMeansNothingMetered) {
  const StripMeters meters = stream("Stereo", busy_settings(), {}).meters;
  EXPECT_EQ(meters.input_peak, (std::vector{0.0f, 0.0f}));
  EXPECT_EQ(meters.output_peak, (std::vector{0.0f, 0.0f}));
  EXPECT_EQ(meters.least_gain, (std::vector{1.0f, 1.0f}));
}

TEST(StripStream, EndsAsIfSilenceFollowedUpToAWholeBlock) {
  std::vector<float> input = bursts(StripStream::kPeriod + 1, 2);
  const StripMeters cut_off = stream("Stereo", busy_settings(), input).meters;
  input.resize(2 * (StripStream::kPeriod + 16));
  EXPECT_EQ(cut_off, stream("Stereo", busy_settings(), input).meters);
}

TEST(StripStream, PeaksAreThoseOfTheirChannel) {
  std::vector<float> input = noise(3 * 1000, 0.5f);
  input[3 * 500 + 1] = -0.75f;
  const Rendered result = stream("LCR", {}, input);
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

// Mid-way through a 1 kHz sine at 48 kHz a sample meets each crest.
std::vector<float> tone(double db, std::size_t frames) {
  std::vector<float> samples(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    const double phase = 2 * std::numbers::pi * 1000 * static_cast<double>(i) / 48000;
    samples[i] = static_cast<float>(db_to_linear(db) * std::sin(phase));
  }
  return samples;
}

double db(float linear) {
  return linear_to_db(static_cast<double>(linear));
}

TEST(StripStream, ToneAboveTheThresholdIsReducedByTheRatio) {
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .knee = 0, .attack = 10, .makeup = 3};
  settings.detector.time = 1000;
  const std::size_t second = 48000;
  const Rendered result = stream("Mono", settings, tone(-8, second));

  // 12 dB over at 4:1: 9 dB. After 100 attack times nothing of the attack is left; between two
  // crests, 0.5 ms apart, the detector falls by 8.7 dB * 0.5 / 1000, of which 3/4 reach the gain.
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

TEST(StripStream, ReductionIsThatOfItsLinkGroup) {
  std::vector<float> loud_left(2 * 48000), loud_centre(3 * 48000);
  const std::vector<float> mono = tone(-8, 48000);
  for (std::size_t i = 0; i < mono.size(); ++i) loud_left[2 * i] = loud_centre[3 * i + 2] = mono[i];
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4};

  const std::vector<float> linked = stream("Stereo", settings, loud_left).meters.least_gain;
  EXPECT_EQ(linked[0], linked[1]);
  EXPECT_LT(linked[0], 0.5f);
  const std::vector<float> apart = stream("LCR", settings, loud_centre).meters.least_gain;
  EXPECT_EQ(apart[0], 1.0f);
  EXPECT_EQ(apart[1], 1.0f);
  EXPECT_LT(apart[2], 0.5f);
}

}  // namespace
}  // namespace channelstrip::test
