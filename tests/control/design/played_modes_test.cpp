// The designed glides, makeup and modes, as the library processes them.

#include <gtest/gtest.h>

#include <algorithm>

#include "played_strip.h"

namespace channelstrip::test::played_modes_test {
namespace {

using namespace host;

// The makeup glides from 0 to 12 dB; one glide step counts for its four samples.
TEST(PlayedGlide, CoversItsShareInItsTime) {
  StripSettings settings;
  settings.compressor.emplace();
  settings.glide = 20;
  PlayedStrip strip(settings);
  strip.play(0.001f, 16);
  settings.compressor->makeup = 12;
  strip.set(settings);
  const double gain = static_cast<double>(strip.play(0.001f, 960).back()) / 0.001;
  const double to = db_to_linear(12);
  EXPECT_NEAR(gain, to + (1 - to) * kOneOverE, 1e-4);
}

TEST(PlayedGlide, TakesTheEqualiserAlong) {
  StripSettings settings;
  settings.pre = {{.frequency = 3000, .gain = 0}};
  settings.glide = 20;
  PlayedStrip strip(settings);
  const double from = strip.context().eqDezipCoefs->smoothedCoefs[0];
  settings.pre[0].gain = 12;
  strip.set(settings);
  const auto to = static_cast<double>(strip.context().eqTargetCoefs->targetCoefs[0]);
  ASSERT_GT(to, from + 0.1);
  strip.play(0.0f, 960);
  EXPECT_NEAR(strip.context().eqDezipCoefs->smoothedCoefs[0], to + (from - to) * kOneOverE, 1e-5);
}

TEST(PlayedMakeup, AutoAddsToTheUsersOwn) {
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .makeup = 2, .auto_makeup = true};
  PlayedStrip strip(settings);
  EXPECT_NEAR(settled_gain(strip, -60), 2 + 7.5, kConversions);
}

TEST(PlayedModes, BypassLeavesTheAudioAlone) {
  StripSettings settings;
  settings.compressor = {.threshold = -40, .ratio = 10};
  settings.pre = {{.gain = 12}};
  settings.bypass = true;
  PlayedStrip strip(settings);
  const std::vector<float> output = strip.play(0.5f, 4800);
  EXPECT_EQ(std::ranges::count(output, 0.5f), 4800);
  EXPECT_LT(strip.state().compGain, -10);
}

TEST(PlayedModes, KeyOpensTheDynamicsWhereItIsEnabledAndThere) {
  StripSettings settings;
  settings.compressor = {.threshold = -20, .ratio = 4, .knee = 0, .attack = 0};
  settings.detector = kImmediate;
  settings.key_enable = true;
  const std::vector<float> audio(4800, linear(-40)), key(4800, linear(-8));
  EXPECT_NEAR(db(PlayedStrip(settings).play(audio, key).back()), -49, kConversions);
  EXPECT_NEAR(db(PlayedStrip(settings).play(audio).back()), -40, kConversions);
  settings.key_enable = false;
  EXPECT_NEAR(db(PlayedStrip(settings).play(audio, key).back()), -40, kConversions);
}

TEST(PlayedModes, ListeningGivesTheFilteredKey) {
  StripSettings settings;
  settings.key_filter = {.type = BandType::kLowShelf, .frequency = 1000, .gain = 6};
  settings.key_enable = settings.key_listen = true;
  const std::vector<float> audio(48000, 0.5f), key(48000, 0.1f);
  EXPECT_NEAR(db(PlayedStrip(settings).play(audio, key).back()), -20 + 6, kConversions);
}

TEST(PlayedModes, InputMeterGainMovesTheInputMeterAlone) {
  StripSettings settings;
  PlayedStrip plain(settings);
  settings.input_meter_gain = 6;
  PlayedStrip scaled(settings);
  EXPECT_EQ(scaled.play(0.25f, 16), plain.play(0.25f, 16));
  EXPECT_NEAR(db(scaled.meters().input_peak[0]), db(plain.meters().input_peak[0]) + 6, 1e-5);
  EXPECT_EQ(scaled.meters().output_peak[0], plain.meters().output_peak[0]);
}

}  // namespace
}  // namespace channelstrip::test::played_modes_test
