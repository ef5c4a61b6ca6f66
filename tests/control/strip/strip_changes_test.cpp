// Settings that change during a stream.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

#include "../streamed.h"

namespace channelstrip::test::strip_changes_test {
namespace {

using namespace host;

StripSettings makeup(double db, double glide = 0) {
  StripSettings settings;
  settings.compressor = {.ratio = 1, .makeup = db};
  settings.glide = glide;
  return settings;
}

TEST(StripChanges, TakeEffectFromTheirPeriodOn) {
  const std::vector<float> input(2000, 0.25f);
  const auto gain_at = [&](std::size_t frame, std::uint64_t change, std::size_t frames_per_call) {
    const Stream stream{.format = "Mono", .input = input, .changes = {{change, makeup(6)}}};
    return play(stream, frames_per_call).samples[frame] / 0.25f;
  };
  for (const std::uint64_t change : {960u, 1000u, 1023u}) {
    for (const std::size_t frames_per_call : {0u, 1u, 100u}) {
      EXPECT_NEAR(gain_at(959, change, frames_per_call), 1, 1e-5);
      EXPECT_NEAR(gain_at(960, change, frames_per_call), db_to_linear(6), 1e-4);
    }
  }
  EXPECT_NEAR(gain_at(1023, 1024, 0), 1, 1e-5);
}

TEST(StripChanges, OfTheFirstPeriodAreWhereTheStreamStarts) {
  const std::vector<float> input(200, 0.25f);
  const Streamed started = play({.format = "Mono", .input = input, .settings = makeup(6, 1000)});
  const Stream changed{
      .format = "Mono", .input = input, .changes = {{0, makeup(-6)}, {63, makeup(6, 1000)}}};
  EXPECT_EQ(play(changed).bits, started.bits);
}

TEST(StripChanges, TheLastOfAPeriodCounts) {
  const std::vector<float> input(200, 0.25f);
  const Stream stream{.format = "Mono",
                      .input = input,
                      .changes = {{64, makeup(6)}, {70, makeup(-6)}, {127, makeup(12)}}};
  EXPECT_NEAR(play(stream).samples[64] / 0.25f, db_to_linear(12), 1e-4);
}

TEST(StripChanges, OutputAndMetersDependOnNeitherCuttingNorObserver) {
  StripSettings other = busy_settings();
  other.pre[1].gain = -6;
  other.compressor->threshold = -30;
  const std::vector<float> input = bursts(5003, 6);
  Stream stream{.format = "5.1",
                .input = input,
                .settings = busy_settings(),
                .changes = {{700, other}, {1500, busy_settings()}, {4999, other}, {9000, other}}};
  const Streamed whole = play(stream);
  for (const std::size_t frames : {1u, 64u, 100u, 257u}) {
    EXPECT_EQ(play(stream, frames).bits, whole.bits) << frames;
    EXPECT_EQ(play(stream, frames).meters, whole.meters) << frames;
  }
  stream.observer = [](const MeterReading&) {};
  EXPECT_EQ(play(stream).bits, whole.bits);
  EXPECT_EQ(play(stream).meters, whole.meters);
}

StripSettings linked(const char* map) {
  StripSettings settings;
  settings.compressor = {.threshold = -40, .ratio = 20, .attack = 5, .release = 500};
  settings.link["5.1"] = map;
  return settings;
}

// A steady sine on all six channels; the links change after half a second.
std::vector<float> through_change_of_links(const char* before, const char* after) {
  constexpr std::size_t kFrames = 48000;
  std::vector<float> input(6 * kFrames);
  for (std::size_t i = 0; i < kFrames; ++i) {
    const double angle = 2 * std::numbers::pi * 440 * static_cast<double>(i) / 48000;
    for (std::size_t c = 0; c < 6; ++c) {
      input[6 * i + c] = static_cast<float>(0.25 * std::sin(angle));
    }
  }
  return play({.format = "5.1",
               .input = input,
               .settings = linked(before),
               .changes = {{kFrames / 2, linked(after)}}})
      .samples;
}

float peak(std::span<const float> samples) {
  float greatest = 0;
  for (const float sample : samples) greatest = std::max(greatest, std::abs(sample));
  return greatest;
}

TEST(StripChanges, OfLinksTakeTheGainAlong) {
  constexpr const char* kAll = "L R C LFE Ls Rs";
  constexpr const char* kThree = "L R C | LFE | Ls Rs";
  constexpr const char* kNone = "L | R | C | LFE Ls Rs";
  for (const auto& [before, after] : {std::pair{kAll, kThree}, {kThree, kAll}, {kThree, kNone}}) {
    const std::vector<float> samples = through_change_of_links(before, after);
    const std::size_t change = samples.size() / 2;
    const float settled = peak(std::span(samples).subspan(change - 6 * 4800, 6 * 4800));
    EXPECT_LT(settled, 0.02f);
    EXPECT_LT(peak(std::span(samples).subspan(change)), 1.01f * settled) << before << ", " << after;
  }
}

double greatest_step(std::span<const float> samples) {
  double greatest = 0;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    greatest = std::max(greatest, std::abs(static_cast<double>(samples[i] - samples[i - 1])));
  }
  return greatest;
}

StripSettings band(const BandSettings& settings) {
  StripSettings strip;
  strip.pre = {settings};
  return strip;
}

constexpr std::size_t kHalf = 24000;  // frames, after which every onset, change and glide is over

class Sine {
 public:
  // The greatest step between samples once everything has settled on `settings`.
  double settled(const StripSettings& settings) const {
    const Streamed result = play({.format = "Mono", .input = input_, .settings = settings});
    return greatest_step(std::span(result.samples).last(kHalf));
  }

  // Likewise, on coefficients of the EQ that are `part` (0 to 1) of the way from `from` to `to`.
  double settled_between(const StripSettings& from, const StripSettings& to, float part) const {
    static const Library library(CHANNELSTRIP_LIBRARY);
    const ChannelLayout mono = default_layout(*find_stem_format("Mono"));
    StripCoefficients coefficients = design_strip(from, kStreamRate, mono);
    const StripCoefficients end = design_strip(to, kStreamRate, mono);
    for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
      float& x = coefficients.eq.targetCoefs[i];
      x += part * (end.eq.targetCoefs[i] - x);
    }
    Engine engine(library.entry_points(), *mono.format, coefficients);
    std::vector<float> output(input_.size());
    const float* const inputs[] = {input_.data()};
    float* const outputs[] = {output.data()};
    engine.process(inputs, nullptr, outputs, input_.size());
    return greatest_step(std::span(output).last(kHalf));
  }

  // The greatest step between samples during the change, over starts all along a period of the
  // sine.
  double gliding(const StripSettings& from, const StripSettings& to) const {
    double greatest = 0;
    for (std::size_t at = kHalf; at < kHalf + 256; at += StripStream::kPeriod) {
      const Streamed result =
          play({.format = "Mono", .input = input_, .settings = from, .changes = {{at, to}}});
      greatest = std::max(greatest, greatest_step(std::span(result.samples).last(kHalf + 256)));
    }
    return greatest;
  }

 private:
  std::vector<float> input_ = tone(-20, 2 * kHalf, 440);
};

// Both samples of a step are rounded to single precision, by up to 2^-25 of at most 1 each. A click
// would be up to seventeen times the greatest step of the sine of 440 Hz.
constexpr double kRounding = 0x1p-24;

TEST(StripChanges, OfAGainNeverStepMoreThanTheLouderSettingDoes) {
  const auto peak = [](double gain) { return band({.frequency = 440, .q = 1, .gain = gain}); };
  const auto shelf = [](double gain) {
    return band({.type = BandType::kLowShelf, .frequency = 300, .gain = gain});
  };
  const Sine sine;
  for (const auto& [from, to] : {std::pair{peak(0), peak(12)},
                                 {peak(-12), peak(6)},
                                 {shelf(-12), shelf(12)},
                                 {makeup(0, 20), makeup(20, 20)}}) {
    const double louder = std::max(sine.settled(from), sine.settled(to));
    EXPECT_LE(sine.gliding(from, to), louder + kRounding);
    EXPECT_LE(sine.gliding(to, from), louder + kRounding);
  }
}

// Coefficients glide along a straight line from one filter to the other, and filters on the way may
// be louder than those at both ends.
double loudest_on_the_line(const Sine& sine, const StripSettings& from, const StripSettings& to) {
  double loudest = 0;
  for (int i = 0; i <= 32; ++i)
    loudest = std::max(loudest, sine.settled_between(from, to, static_cast<float>(i) / 32));
  return loudest;
}

// 0.5 % for filters between two of the 33 on the line, and for what the memory of a moving filter
// adds.
constexpr double kOnTheMove = 1.005;

TEST(StripChanges, OfAFrequencyNeverStepMoreThanAFilterOnTheWay) {
  const auto with = [](BandType type, double frequency) {
    return band({.type = type, .frequency = frequency, .gain = 12});
  };
  const Sine sine;
  for (const BandType type : {BandType::kPeak, BandType::kHighShelf, BandType::kLowPass}) {
    const StripSettings from = with(type, 400), to = with(type, 600);
    const double loudest = loudest_on_the_line(sine, from, to);
    EXPECT_LE(loudest, 1.04 * std::max(sine.settled(from), sine.settled(to)));
    EXPECT_LE(sine.gliding(from, to), kOnTheMove * loudest);
    EXPECT_LE(sine.gliding(to, from), kOnTheMove * loudest);
  }
}

}  // namespace
}  // namespace channelstrip::test::strip_changes_test
