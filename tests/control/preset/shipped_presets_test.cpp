// The presets that ship with the program, and the one that docs/presets.md gives as an example.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "control/design/dynamics.h"
#include "control/design/refusal_words.h"
#include "refusal.h"
#include "tests/host/support/audio.h"
#include "tests/host/support/rendered.h"
#include "tests/host/support/temporary_folder.h"

namespace channelstrip::test::shipped_presets_test {
namespace {

using namespace host;

std::string shipped(const std::string& name) {
  return fmt::format("{}/presets/{}.toml", CHANNELSTRIP_SOURCE_DIR, name);
}

std::vector<std::string> all_names() {
  std::vector<std::string> names;
  for (const auto& entry :
       std::filesystem::directory_iterator(CHANNELSTRIP_SOURCE_DIR "/presets")) {
    names.push_back(entry.path().stem().string());
  }
  return names;
}

struct Rendered {
  RenderReport report;
  std::vector<float> input, output;
};

Rendered rendered(const std::string& preset, int channels, float amplitude) {
  const TemporaryFolder folder;
  std::vector<float> input = noise(48000 * static_cast<std::size_t>(channels), amplitude);
  const std::string in =
      write_audio(folder.file("in.wav"), {.channels = channels, .floats = input});
  const std::string out = folder.file("out.wav");
  const RenderReport report = test::render(in, out, shipped(preset));
  return {report, input, read_audio(out).floats};
}

TEST(ShippedPresets, SayWhatTheyAreForAndHaveNamesOfTheirOwn) {
  std::set<std::string> names;
  for (const std::string& file : all_names()) {
    std::ifstream stream(shipped(file));
    std::string line;
    std::getline(stream, line);
    EXPECT_TRUE(line.starts_with("# ")) << file;
    const Preset preset = read_preset(shipped(file));
    EXPECT_FALSE(preset.name.empty()) << file;
    EXPECT_TRUE(names.insert(preset.name).second) << preset.name;
  }
  EXPECT_GE(names.size(), 10u);
}

TEST(ShippedPresets, CanBeHadForEveryFormatAtEveryUsualRate) {
  for (const std::string& file : all_names()) {
    const Preset preset = read_preset(shipped(file));
    for (const StemFormat& format : stem_formats()) {
      const ChannelLayout layout = default_layout(format);
      for (const double rate : {44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0}) {
        EXPECT_NO_THROW({
          check_fits(preset, rate, layout);
          require_possible(preset.settings, rate, layout);
        }) << file
           << ", " << format.name << ", " << rate << " Hz";
      }
    }
  }
}

TEST(ShippedPresets, CompressTheirKindOfAudioAndKeepItInBounds) {
  const std::pair<const char*, int> cases[] = {
      {"voice", 1},         {"voice", 2},        {"podcast_voice", 1}, {"drum_bus", 2},
      {"bass", 1},          {"film_7.1", 8},     {"film_7.1", 6},      {"acoustic_guitar", 1},
      {"master_gentle", 2}, {"dialogue_5.1", 6}, {"night_mode", 6},    {"game_ambience", 4},
      {"telephone", 1}};
  for (const auto& [preset, channels] : cases) {
    const auto [report, input, output] = rendered(preset, channels, 0.7f);
    EXPECT_GT(report.meters.compressor_reduction, 0.1f) << preset;
    EXPECT_TRUE(std::ranges::all_of(output, [](float x) { return std::abs(x) < 4; })) << preset;
    EXPECT_GT(std::ranges::max(output), 0.03f) << preset;
  }
}

// Each of the two gain terms at 0 dB is a factor of 1.0000013.
void expect_unity_gain(const Rendered& rendered) {
  ASSERT_EQ(rendered.output.size(), rendered.input.size());
  for (std::size_t i = 0; i < rendered.input.size(); ++i) {
    const auto input = static_cast<double>(rendered.input[i]);
    ASSERT_NEAR(static_cast<double>(rendered.output[i]), input, 2.7e-6 * std::abs(input)) << i;
  }
}

TEST(NeutralPreset, LeavesEverySampleAsItIs) {
  expect_unity_gain(rendered("neutral", 6, 0.9f));
}

// The library's logarithm and exponential are within 1.2e-3 dB of the exact gain.
TEST(LimiterPreset, LetsNoSampleAboveItsThreshold) {
  const auto [report, input, output] = rendered("limiter_safe", 2, 1.0f);
  EXPECT_GT(std::ranges::max(input), 0.99f);
  const auto ceiling = static_cast<float>(db_to_linear(-1.5 + 1.2e-3));
  EXPECT_TRUE(std::ranges::all_of(output, [&](float x) { return std::abs(x) <= ceiling; }));
  EXPECT_GT(std::ranges::max(output), 0.8f);
}

TEST(LimiterPreset, TouchesNothingBelow) {
  expect_unity_gain(rendered("limiter_safe", 2, 0.84f));
}

TEST(KickGatePreset, ShutsOnWhatIsNoKickDrum) {
  // White noise of -26 dBFS has hardly any energy in the drum's band.
  const auto [report, input, output] = rendered("kick_gate", 1, 0.05f);
  EXPECT_NEAR(report.meters.expander_reduction, 1 - db_to_linear(-40), 1e-3);
}

TEST(PresetReference, ExampleIsAPreset) {
  const std::string page = contents(CHANNELSTRIP_SOURCE_DIR "/docs/presets.md");
  const std::string opening = "```toml\n";
  const auto begin = page.find(opening) + opening.size();
  const Preset preset = parse_preset(page.substr(begin, page.find("```", begin) - begin), "p.toml");
  EXPECT_EQ(preset.settings.pre.size(), 2u);
  EXPECT_EQ(preset.settings.post.size(), 1u);
  EXPECT_TRUE(preset.settings.compressor->auto_makeup);
  ASSERT_EQ(preset.changes.size(), 1u);
  EXPECT_EQ(preset.changes[0].settings.pre[1].gain, 4);
  const ChannelLayout layout = default_layout(*find_stem_format("5.1"));
  EXPECT_EQ(refusal([&] { check_fits(preset, 48000, layout); }), "");
}

}  // namespace
}  // namespace channelstrip::test::shipped_presets_test
