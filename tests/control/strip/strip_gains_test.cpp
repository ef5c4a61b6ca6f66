// The gains before and after a strip, the mix of what went in with what came out.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "../streamed.h"
#include "control/design/dynamics.h"
#include "control/strip/glide.h"

namespace channelstrip::test::strip_gains_test {
namespace {

using namespace host;

StripSettings busy_with(const std::function<void(StripSettings&)>& set) {
  StripSettings settings = busy_settings();
  set(settings);
  return settings;
}

Streamed busy(const std::vector<float>& input, const std::function<void(StripSettings&)>& set) {
  return play({.format = "Stereo", .input = input, .settings = busy_with(set)});
}

std::vector<float> scaled(std::vector<float> samples, double db) {
  for (float& x : samples) x *= static_cast<float>(db_to_linear(db));
  return samples;
}

float peak_of(std::span<const float> samples, std::size_t channel) {
  float peak = 0;
  for (std::size_t i = channel; i < samples.size(); i += 2) {
    peak = std::max(peak, std::abs(samples[i]));
  }
  return peak;
}

const std::vector<float> kInput = bursts(5003, 2);

TEST(StripGains, OfZeroDecibelsChangeNoBit) {
  const Streamed plain = busy(kInput, [](StripSettings&) {});
  const StripSettings later = busy_with([](StripSettings& s) { s.gain_in = s.gain_out = 6; });
  const Streamed waiting = play({.format = "Stereo",
                                 .input = kInput,
                                 .settings = busy_settings(),
                                 .changes = {{kInput.size(), later}}});
  EXPECT_EQ(waiting.bits, plain.bits);
  EXPECT_EQ(waiting.meters, plain.meters);
}

TEST(StripGains, BeforeTheStripAreHeardByAllOfItAndItsMeters) {
  const Streamed trimmed = busy(kInput, [](StripSettings& s) { s.gain_in = -7.3; });
  const Streamed quieter = busy(scaled(kInput, -7.3), [](StripSettings&) {});
  EXPECT_EQ(trimmed.bits, quieter.bits);
  EXPECT_EQ(trimmed.meters, quieter.meters);
}

TEST(StripGains, BeforeTheStripLeaveTheKeyAlone) {
  const std::vector<float> key = bursts(5003, 1);
  Stream keyed{.format = "Stereo", .input = kInput, .settings = busy_settings(), .key = key};
  const StripMeters plain = play(keyed).meters;
  keyed.settings.gain_in = -30;
  const StripMeters trimmed = play(keyed).meters;
  ASSERT_GT(plain.compressor_reduction, 0.1f);
  EXPECT_EQ(trimmed.compressor_reduction, plain.compressor_reduction);
  EXPECT_EQ(trimmed.least_gain, plain.least_gain);
}

TEST(StripGains, AfterTheStripAreHeardByTheOutputAndItsMeterAlone) {
  const Streamed plain = busy(kInput, [](StripSettings&) {});
  const Streamed louder = busy(kInput, [](StripSettings& s) { s.gain_out = 11.1; });
  EXPECT_EQ(louder.samples, scaled(plain.samples, 11.1));
  EXPECT_EQ(louder.meters.input_peak, plain.meters.input_peak);
  EXPECT_EQ(louder.meters.least_gain, plain.meters.least_gain);
  for (const std::size_t c : {0u, 1u}) {
    EXPECT_EQ(louder.meters.output_peak[c], peak_of(louder.samples, c));
  }
}

TEST(StripMix, OfNothingIsTheTrimmedInputToTheBit) {
  EXPECT_EQ(busy(kInput, [](StripSettings& s) { s.mix = 0; }).samples, kInput);
  const Streamed trimmed = busy(kInput, [](StripSettings& s) {
    s.mix = 0;
    s.gain_in = 3;
  });
  EXPECT_EQ(trimmed.samples, scaled(kInput, 3));
}

TEST(StripMix, IsALinearCrossFadeBehindTheInputGainAndAheadOfTheOutputGain) {
  const std::vector<float> dry = scaled(kInput, -3);
  const std::vector<float> wet = busy(dry, [](StripSettings&) {}).samples;
  const std::vector<float> mixed = busy(kInput, [](StripSettings& s) {
                                     s.gain_in = -3;
                                     s.gain_out = 2;
                                     s.mix = 30;
                                   }).samples;
  const double gain = db_to_linear(2);
  ASSERT_EQ(mixed.size(), dry.size());
  for (std::size_t i = 0; i < mixed.size(); ++i) {
    const double x = static_cast<double>(dry[i]), y = static_cast<double>(wet[i]);
    // Seven roundings, of the three factors among them.
    ASSERT_NEAR(mixed[i], gain * (0.7 * x + 0.3 * y),
                7 * 0x1p-24 * gain * (0.7 * std::abs(x) + 0.3 * std::abs(y)));
  }
}

TEST(StripMix, IsLeftOutInBypassWithBothGains) {
  const Streamed bypassed = busy(kInput, [](StripSettings& s) {
    s.gain_in = s.gain_out = 6;
    s.mix = 50;
    s.bypass = true;
  });
  EXPECT_EQ(bypassed.samples, kInput);
  for (const std::size_t c : {0u, 1u}) {
    EXPECT_EQ(bypassed.meters.output_peak[c], peak_of(kInput, c));
  }
}

TEST(StripMix, IsLeftOutWhileTheKeyIsListenedTo) {
  const auto listened = [](double mix) {
    return busy(kInput, [mix](StripSettings& s) {
      s.key_listen = true;
      s.mix = mix;
    });
  };
  EXPECT_EQ(listened(20).bits, listened(100).bits);
}

TEST(StripMix, ChangesDoNotDependOnTheCutting) {
  const auto at = [](double in, double out, double mix) {
    return busy_with([=](StripSettings& s) {
      s.gain_in = in;
      s.gain_out = out;
      s.mix = mix;
      s.glide = 5;
    });
  };
  const Stream changing{
      .format = "Stereo",
      .input = kInput,
      .settings = at(0, 0, 100),
      .changes = {{500, at(6, 0, 100)}, {1100, at(6, -9, 40)}, {3000, at(0, 0, 0)}}};
  const Streamed whole = play(changing);
  for (const std::size_t frames : {1u, 63u, 64u, 257u, 1000u}) {
    const Streamed cut = play(changing, frames);
    EXPECT_EQ(cut.bits, whole.bits) << frames;
    EXPECT_EQ(cut.meters, whole.meters) << frames;
  }
}

TEST(StripMix, ChangesOfTheFirstPeriodAreWhereItStarts) {
  StripSettings louder;
  louder.gain_in = louder.gain_out = 6;
  const Streamed started = play({.format = "Stereo", .input = kInput, .settings = louder});
  EXPECT_EQ(play({.format = "Stereo", .input = kInput, .changes = {{63, louder}}}).bits,
            started.bits);
}

TEST(GlideOfAGain, IsDoneByOneMinusOneOverEAfterItsTime) {
  Glide gain(1);
  gain.set(2, one_pole_weight(20, kStreamRate));
  std::vector<float> values(960);
  gain.next(values);
  EXPECT_TRUE(std::ranges::is_sorted(values));
  EXPECT_NEAR(values.back(), 2 - std::exp(-1), 1e-6);
}

TEST(GlideOfAGain, EndsOnItsTarget) {
  for (const double from : {0.0, 1.0, 1000.0}) {
    for (const double to : {0.0, 0.001, 1.0, 1000.0}) {
      Glide gain(from);
      gain.set(to, one_pole_weight(20, kStreamRate));
      std::vector<float> values(48000);
      gain.next(values);
      EXPECT_EQ(values.back(), static_cast<float>(to)) << from;
    }
  }
}

TEST(GlideOfAGain, TakesNoTimeWithoutOne) {
  Glide gain(1);
  gain.set(0.5, one_pole_weight(0, kStreamRate));
  std::vector<float> values(2);
  gain.next(values);
  EXPECT_EQ(values, (std::vector{0.5f, 0.5f}));
}

}  // namespace
}  // namespace channelstrip::test::strip_gains_test
