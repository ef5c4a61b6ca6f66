// Every shipped preset on real recordings, checked as an audio engineer would.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "../support/audio.h"
#include "../support/through_strip.h"
#include "recordings.h"

namespace channelstrip::test::recordings_test {
namespace {

namespace fs = std::filesystem;
using host::Preset;

std::vector<std::string> preset_names() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(CHANNELSTRIP_SOURCE_DIR "/presets")) {
    names.push_back(entry.path().stem().string());
  }
  std::ranges::sort(names);
  return names;
}

Preset preset(const std::string& name) {
  return host::read_preset(CHANNELSTRIP_SOURCE_DIR "/presets/" + name + ".toml");
}

const std::vector<TestAudio>& recordings() {
  static const std::vector<TestAudio> all{speech(), drums(), surround_speech()};
  return all;
}

double decibels(float factor) {
  return 20 * std::log10(static_cast<double>(factor));
}

class EveryPreset : public testing::TestWithParam<std::string> {
 protected:
  const host::StripSettings settings = preset(GetParam()).settings;
};

std::string test_name(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::ranges::replace(name, '.', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Recordings, EveryPreset, testing::ValuesIn(preset_names()), test_name);

TEST_P(EveryPreset, StaysBelowFullScale) {
  for (const TestAudio& recording : recordings()) {
    EXPECT_LT(peak(through_strip(settings, recording).audio), 1) << recording.channels;
  }
}

TEST_P(EveryPreset, KeepsTheLevelWithin12Db) {
  for (const TestAudio& recording : recordings()) {
    const Processed processed = through_strip(settings, recording);
    EXPECT_NEAR(rms_level(processed.audio), rms_level(recording.floats), 12) << recording.channels;
  }
}

TEST_P(EveryPreset, ReducesByNoMoreThanItsRanges) {
  const double compressor = settings.compressor ? -settings.compressor->range : 0;
  const double expander = settings.expander ? -settings.expander->range : 0;
  for (const TestAudio& recording : recordings()) {
    const host::StripMeters meters = through_strip(settings, recording).meters;
    EXPECT_LE(-decibels(1 - meters.compressor_reduction), compressor + 1e-3);
    EXPECT_LE(-decibels(1 - meters.expander_reduction), expander + 1e-3);
  }
}

TEST_P(EveryPreset, MetersThePeaksOfTheAudio) {
  for (const TestAudio& recording : recordings()) {
    const Processed processed = through_strip(settings, recording);
    EXPECT_EQ(std::ranges::max(processed.meters.input_peak), peak(recording.floats));
    EXPECT_EQ(std::ranges::max(processed.meters.output_peak), peak(processed.audio));
  }
}

TEST_P(EveryPreset, LeavesSilenceSilent) {
  for (TestAudio silence : recordings()) {
    std::ranges::fill(silence.floats, 0.0f);
    EXPECT_EQ(peak(through_strip(settings, silence).audio), 0);
  }
}

TEST_P(EveryPreset, GivesTheSameBitsHoweverTheStreamIsCut) {
  for (const TestAudio& recording : recordings()) {
    const host::ChannelLayout layout = usual_layout(recording.channels);
    const Processed whole = through_strip(settings, recording);
    for (const std::size_t frames : {std::size_t{1}, std::size_t{82}, std::size_t{227}}) {
      const Processed cut = through_strip(settings, recording, layout, [&] { return frames; });
      EXPECT_EQ(cut.audio, whole.audio);
      EXPECT_EQ(cut.meters, whole.meters);
    }
    std::mt19937 random(7);
    const Processed ragged =
        through_strip(settings, recording, layout, [&] { return 1 + random() % 5000; });
    EXPECT_EQ(ragged.audio, whole.audio);
    EXPECT_EQ(ragged.meters, whole.meters);
  }
}

// A voice alone, and the same voice in every channel of a wider format.
TEST_P(EveryPreset, GivesEveryChannelWhatAloneItWouldGet) {
  const TestAudio voice = recordings().front();
  const Processed alone = through_strip(settings, voice);
  for (int channels = 2; channels <= 8; ++channels) {
    const TestAudio wide = in_every_channel(voice, channels);
    EXPECT_EQ(through_strip(settings, wide).audio,
              in_every_channel({.floats = alone.audio}, channels).floats)
        << channels;
  }
}

// A channel that isn't linked doesn't depend on any other.
TEST_P(EveryPreset, GivesEveryUnlinkedChannelWhatAloneItWouldGet) {
  host::StripSettings unlinked = settings;
  unlinked.link.clear();
  unlinked.link_style = host::LinkStyle::kNone;
  for (const TestAudio& recording : {drums(), surround_speech()}) {
    const auto width = static_cast<std::size_t>(recording.channels);
    const Processed all = through_strip(unlinked, recording);
    for (std::size_t c = 0; c < width; ++c) {
      const TestAudio mono{.sample_rate = recording.sample_rate,
                           .floats = channel(recording.floats, width, c)};
      EXPECT_EQ(channel(all.audio, width, c), through_strip(settings, mono).audio) << c;
    }
  }
}

struct Work {
  const char* preset;
  TestAudio (*recording)();
  double compressor[2], expander[2];  // dB, least and greatest reduction
};

// The reductions by each preset, on the kind of audio that it is for or the nearest one here.
TEST(Presets, WorkAsHardAsTheySay) {
  constexpr Work kWorks[] = {
      {"acoustic_guitar", speech, {3, 8}, {0, 0}},
      {"bass", speech, {4, 10}, {0, 0}},
      {"de_rumble", speech, {0, 0}, {0, 0}},
      {"dialogue_5.1", speech, {8, 16}, {4, 12}},
      {"drum_bus", drums, {4, 10}, {15, 30}},
      {"film_7.1", surround_speech, {2, 6}, {0, 6}},
      {"game_ambience", surround_speech, {8, 16}, {0, 0}},
      {"kick_gate", drums, {0, 0}, {30, 40}},
      {"limiter_safe", speech, {0, 0}, {0, 0}},
      {"master_gentle", surround_speech, {1, 4}, {0, 0}},
      {"neutral", drums, {0, 0}, {0, 0}},
      {"night_mode", drums, {8, 20}, {0, 12}},
      {"podcast_voice", speech, {6, 12}, {3, 10}},
      {"telephone", speech, {10, 18}, {12, 18}},
      {"vocal_sidechain_duck", speech, {0, 0}, {0, 0}},  // without a key
      {"voice", speech, {4, 10}, {6, 12}},
  };
  std::vector<std::string> named;
  for (const Work& work : kWorks) {
    named.emplace_back(work.preset);
    const auto meters = through_strip(preset(work.preset).settings, work.recording()).meters;
    const double compressor = -decibels(1 - meters.compressor_reduction);
    const double expander = -decibels(1 - meters.expander_reduction);
    EXPECT_GE(compressor, work.compressor[0] - 1e-3) << work.preset;
    EXPECT_LE(compressor, work.compressor[1] + 1e-3) << work.preset;
    EXPECT_GE(expander, work.expander[0] - 1e-3) << work.preset;
    EXPECT_LE(expander, work.expander[1] + 1e-3) << work.preset;
  }
  EXPECT_EQ(named, preset_names());
}

TEST(DuckingPreset, TurnsMusicDownWhileAVoiceSpeaks) {
  const host::StripSettings settings = preset("vocal_sidechain_duck").settings;
  const TestAudio music = drums(), voice = speech();
  const auto ducked = through_strip(
      settings, music, usual_layout(2), [] { return 64; }, voice.floats);
  EXPECT_NEAR(-decibels(1 - ducked.meters.compressor_reduction), 7, 0.1);
  EXPECT_EQ(ducked.audio.size(), music.floats.size());
  EXPECT_LT(rms_level(ducked.audio), rms_level(music.floats) - 2);
}

TEST(NeutralPreset, NullsAgainstTheInput) {
  const host::StripSettings settings = preset("neutral").settings;
  for (const TestAudio& recording : recordings()) {
    const Processed processed = through_strip(settings, recording);
    ASSERT_EQ(processed.audio.size(), recording.floats.size());
    for (std::size_t i = 0; i < processed.audio.size(); ++i) {
      const auto in = static_cast<double>(recording.floats[i]);
      const auto out = static_cast<double>(processed.audio[i]);
      ASSERT_LE(std::abs(out - in), 2.7e-6 * std::abs(in));
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::recordings_test
