// A strip that takes any number of frames at a time.

#include "control/strip/live_strip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "control/design/dynamics.h"
#include "live.h"

namespace channelstrip::test::live_strip_test {
namespace {

using namespace host;

bool same_bits(const std::vector<float>& a, const std::vector<float>& b) {
  return std::ranges::equal(a, b, {}, std::bit_cast<std::uint32_t, float>,
                            std::bit_cast<std::uint32_t, float>);
}

void expect_same(const LiveResult& a, const LiveResult& b) {
  for (std::size_t c = 0; c < a.output.size(); ++c) {
    EXPECT_TRUE(same_bits(a.output[c], b.output[c])) << "channel " << c;
  }
  EXPECT_EQ(a.meters.samples, b.meters.samples);
  EXPECT_EQ(a.meters.input_peak, b.meters.input_peak);
  EXPECT_EQ(a.meters.output_peak, b.meters.output_peak);
  EXPECT_EQ(a.meters.greatest_gain, b.meters.greatest_gain);
  EXPECT_EQ(a.meters.least_gain, b.meters.least_gain);
  EXPECT_EQ(a.meters.compressor_reduction, b.meters.compressor_reduction);
  EXPECT_EQ(a.meters.expander_reduction, b.meters.expander_reduction);
  EXPECT_EQ(a.meters.overs, b.meters.overs);
  EXPECT_EQ(a.meters.compressor_gain, b.meters.compressor_gain);
  EXPECT_EQ(a.meters.expander_gain, b.meters.expander_gain);
  EXPECT_EQ(a.meters.detector_level, b.meters.detector_level);
}

// Settings of which each differs from the one before in another respect.
std::vector<StripSettings> many_settings() {
  std::vector<StripSettings> all{busy_settings()};
  const auto next = [&all]() -> StripSettings& { return all.emplace_back(all.back()); };
  next().pre[1].frequency = 40;  // its floats take a search
  next().gain_in = 5;
  next().compressor->threshold = -30;
  next().bypass = true;
  next().post.push_back({.type = BandType::kLowPass, .frequency = 5000, .slope = 36});
  next().bypass = false;
  next().link_style = LinkStyle::kNone;
  next().mix = 40;
  next().expander.reset();
  next().key_listen = true;
  next().key_filter = {.type = BandType::kHighPass, .frequency = 100};
  next().key_listen = false;
  next().gain_in = 0;
  next().mix = 100;
  next().link_style = LinkStyle::kAll;
  next().pre.clear();
  next().compressor.reset();
  return all;
}

LiveStream busy_stream(const StemFormat& format, bool keyed, unsigned seed) {
  constexpr std::size_t kFrames = 24011;
  const auto channels = static_cast<std::size_t>(format.channels);
  LiveStream stream{.format = &format, .input = planar_bursts(channels, kFrames)};
  std::vector<StripSettings> all = many_settings();
  for (StripSettings& settings : all) settings.key_enable = keyed;
  if (keyed) stream.key = bursts(kFrames, 1);
  stream.settings = all.front();
  std::minstd_rand random(seed);
  std::size_t frame = 100;
  for (std::size_t i = 1; i < all.size(); ++i) {
    stream.changes.push_back({frame, all[i]});
    frame += random() % 2500;
  }
  return stream;
}

TEST(LiveStrip, DoesNotDependOnTheCuttingWhateverChanges) {
  unsigned seed = 1;
  for (const StemFormat& format : stem_formats()) {
    for (const bool keyed : {false, true}) {
      SCOPED_TRACE(std::string(format.name) + (keyed ? " with a key" : ""));
      const LiveStream stream = busy_stream(format, keyed, ++seed);
      const LiveResult blocks = play_live(stream);
      std::minstd_rand random(seed);
      const auto any = [&random] { return std::size_t{random() % 4097}; };
      expect_same(play_live(stream, any), blocks);
      expect_same(play_live(stream, any, InPlace::kAlways), blocks);
      expect_same(play_live(stream, [&random] { return std::size_t{random() % 40}; }), blocks);
    }
  }
}

// What comes out is louder than what went in, and the other way round.
TEST(LiveStrip, MetersInputsThatItsOutputsReplace) {
  for (const double makeup : {20, -20}) {
    StripSettings settings;
    settings.compressor = CompressorSettings{.makeup = makeup};
    for (const char* format : {"Mono", "5.1"}) {
      const StemFormat& its = *find_stem_format(format);
      const LiveStream stream{.format = &its,
                              .input = planar_bursts(static_cast<std::size_t>(its.channels), 4096),
                              .settings = settings};
      const LiveResult apart = play_live(stream);
      EXPECT_NE(apart.meters.input_peak, apart.meters.output_peak);
      const auto cut = [] { return std::size_t{208}; };
      expect_same(play_live(stream, cut, InPlace::kAlways), apart);
      expect_same(play_live(stream, cut, InPlace::kInTurns), apart);
    }
  }
}

TEST(LiveStrip, TakesSingleFramesWithoutLatency) {
  const LiveStream stream = busy_stream(*find_stem_format("Stereo"), false, 7);
  expect_same(play_live(stream, [] { return std::size_t{1}; }), play_live(stream));
}

TEST(LiveStrip, GivesWhatTheLibraryGives) {
  for (const StemFormat& format : stem_formats()) {
    const auto channels = static_cast<std::size_t>(format.channels);
    const Planar input = planar_bursts(channels, 4096);
    const ChannelLayout layout = default_layout(format);
    Engine engine(entry_points(), format, design_strip(busy_settings(), kLiveRate, layout));
    Planar output(channels, std::vector<float>(4096));
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    for (std::size_t c = 0; c < channels; ++c) {
      inputs.push_back(input[c].data());
      outputs.push_back(output[c].data());
    }
    engine.process(inputs.data(), nullptr, outputs.data(), 4096);
    const LiveStream stream{.format = &format, .input = input, .settings = busy_settings()};
    EXPECT_EQ(play_live(stream, [] { return std::size_t{1000}; }).output, output) << format.name;
  }
}

TEST(LiveStrip, WritesNoSampleBeyondItsFrames) {
  const ChannelLayout layout = default_layout(*find_stem_format("Mono"));
  LiveStrip strip(entry_points(), layout, kLiveRate, busy_settings());
  for (std::size_t frames = 0; frames < 70; ++frames) {
    std::vector<float> input(frames, 0.5f), output(frames + 32, 7);
    const float* const inputs[] = {input.data()};
    float* const outputs[] = {output.data()};
    strip.process(inputs, nullptr, outputs, frames);
    EXPECT_EQ(std::count(output.begin() + static_cast<std::ptrdiff_t>(frames), output.end(), 7.0f),
              32)
        << frames;
  }
}

TEST(LiveStrip, TakesOutputsThatAreOtherInputsOrTheKey) {
  const StemFormat& stereo = *find_stem_format("Stereo");
  const ChannelLayout layout = default_layout(stereo);
  StripSettings settings = busy_settings();
  settings.key_enable = true;
  const Planar input = planar_bursts(3, 4096);
  const auto play = [&](const Planar& from, const std::vector<float*>& to) {
    LiveStrip strip(entry_points(), layout, kLiveRate, settings);
    const float* const inputs[] = {from[0].data(), from[1].data()};
    strip.process(inputs, from[2].data(), to.data(), 4096);
  };
  Planar apart(2, std::vector<float>(4096)), crossed = input, over_key = input;
  play(input, {apart[0].data(), apart[1].data()});
  play(crossed, {crossed[1].data(), crossed[0].data()});
  EXPECT_EQ(crossed[1], apart[0]);
  EXPECT_EQ(crossed[0], apart[1]);
  play(over_key, {over_key[2].data(), over_key[1].data()});
  EXPECT_EQ(over_key[2], apart[0]);
  EXPECT_EQ(over_key[1], apart[1]);
}

TEST(LiveStrip, TakesSamplesThatAreNotFiniteAsSilence) {
  constexpr float kInfinite = std::numeric_limits<float>::infinity();
  LiveStream stream{.format = find_stem_format("5.1"),
                    .input = planar_bursts(6, 8000),
                    .settings = busy_settings()};
  stream.settings.link_style = LinkStyle::kAll;
  LiveStream silenced = stream;
  for (const std::size_t i : {0u, 17u, 4000u, 7999u}) {
    for (const std::size_t c : {0u, 3u}) {
      stream.input[c][i] = i % 2 ? kInfinite : std::numeric_limits<float>::quiet_NaN();
      silenced.input[c][i] = 0;
    }
  }
  for (const std::size_t cut : {16u, 1000u, 7u}) {
    const LiveResult played = play_live(stream, [=] { return cut; });
    expect_same(played, play_live(silenced, [=] { return cut; }));
    EXPECT_EQ(played.meters.not_finite, 8u);
  }
}

TEST(LiveStrip, TakesAKeyThatIsNotFiniteAsSilence) {
  LiveStream stream = busy_stream(*find_stem_format("Stereo"), true, 3);
  LiveStream silenced = stream;
  stream.key[5000] = std::numeric_limits<float>::infinity();
  silenced.key[5000] = 0;
  expect_same(play_live(stream), play_live(silenced));
}

TEST(LiveStrip, RecoversFromSamplesThatOverflowItsFilters) {
  LiveStream stream{.format = find_stem_format("Stereo"), .input = planar_bursts(2, 48000)};
  stream.settings = busy_settings();
  stream.settings.pre[1].gain = 40;
  const LiveResult healthy = play_live(stream);
  stream.input[0][100] = 3e38f;
  const LiveResult hit = play_live(stream);
  for (const std::vector<float>& channel : hit.output) {
    for (const float x : channel) ASSERT_TRUE(std::isfinite(x));
  }
  for (std::size_t i = 40000; i < 48000; ++i) {
    ASSERT_NEAR(hit.output[0][i], healthy.output[0][i], 1e-3);
    ASSERT_NEAR(hit.output[1][i], healthy.output[1][i], 1e-3);
  }
}

TEST(LiveStrip, KeepsOutputsFiniteWhereGainsOverflow) {
  LiveStream stream{.format = find_stem_format("Stereo"), .input = planar_bursts(2, 4000)};
  stream.settings.compressor = CompressorSettings{.makeup = 40};
  for (std::size_t i = 0; i < 4000; i += 100) stream.input[0][i] = i < 2000 ? 3e38f : 5e37f;
  StripSettings loud = stream.settings;
  loud.gain_in = loud.gain_out = 60;
  StripSettings filtered = stream.settings;
  filtered.pre.push_back({.gain = 40});
  for (const auto& changes : std::vector<std::vector<LiveChange>>{
           {}, {{1000, loud}}, {{1000, filtered}, {1600, stream.settings}}}) {
    stream.changes = changes;
    const LiveResult played = play_live(stream, [] { return std::size_t{50}; });
    for (const std::vector<float>& channel : played.output) {
      EXPECT_TRUE(std::ranges::all_of(channel, [](float x) { return std::isfinite(x); }));
    }
    EXPECT_TRUE(std::isfinite(played.meters.output_peak[0]));
    EXPECT_GT(played.meters.output_peak[0], 1e37f);
  }
}

TEST(LiveStrip, IsItsInputInBypassOnceTheGlideIsOver) {
  for (const InPlace in_place : {InPlace::kNever, InPlace::kAlways}) {
    LiveStream stream{.format = find_stem_format("Stereo"), .input = planar_bursts(2, 48000)};
    stream.settings = busy_settings();
    StripSettings bypassed = busy_settings();
    bypassed.bypass = true;
    stream.changes = {{1000, bypassed}};
    const LiveResult result = play_live(
        stream, [] { return std::size_t{301}; }, in_place);
    for (std::size_t c = 0; c < 2; ++c) {
      EXPECT_TRUE(std::equal(result.output[c].begin() + 24000, result.output[c].end(),
                             stream.input[c].begin() + 24000));
      EXPECT_FALSE(std::equal(result.output[c].begin(), result.output[c].begin() + 24000,
                              stream.input[c].begin()));
    }
  }
}

TEST(LiveStrip, ForgetsTheAudioWhenReset) {
  const ChannelLayout layout = default_layout(*find_stem_format("Mono"));
  const std::vector<float> input = bursts(5003, 1);
  const auto play = [&](LiveStrip& strip) {
    std::vector<float> output(input.size());
    const float* const inputs[] = {input.data()};
    float* const outputs[] = {output.data()};
    strip.process(inputs, nullptr, outputs, input.size());
    return output;
  };
  LiveStrip fresh(entry_points(), layout, kLiveRate, busy_settings());
  LiveStrip used(entry_points(), layout, kLiveRate, {});
  play(used);
  used.set(busy_settings());
  used.reset();
  EXPECT_EQ(play(used), play(fresh));
}

}  // namespace
}  // namespace channelstrip::test::live_strip_test
