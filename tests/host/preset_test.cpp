#include "host/preset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "support/audio.h"
#include "support/render.h"
#include "support/temporary_folder.h"

namespace channelstrip::test {
namespace {

using namespace host;

StripSettings parse(std::string_view text) {
  return parse_preset(text, "p.toml").settings;
}

template <class Call>
std::string refusal(Call call) {
  try {
    call();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(Preset, EmptyIsNeutral) {
  const StripSettings settings = parse("");
  EXPECT_TRUE(settings.pre.empty());
  EXPECT_TRUE(settings.post.empty());
  EXPECT_FALSE(settings.compressor);
  EXPECT_FALSE(settings.expander);
  EXPECT_FALSE(settings.key_filter);
  EXPECT_TRUE(settings.link.empty());
}

TEST(Preset, TablesWithoutKeysHaveTheDefaults) {
  const StripSettings settings = parse("[compressor]\n[expander]\n[[eq]]\n");
  EXPECT_EQ(settings.compressor->threshold, CompressorSettings{}.threshold);
  EXPECT_EQ(settings.expander->hysteresis, std::nullopt);
  ASSERT_EQ(settings.pre.size(), 1u);
  EXPECT_EQ(settings.pre[0].frequency, BandSettings{}.frequency);
}

TEST(Preset, BandsAreReadInOrderAndPosition) {
  const StripSettings settings = parse(R"(
[[eq]]
type = "peak"
frequency = 100
q = 1.5
gain = -3
[[eq]]
type = "low_shelf"
position = "post"
[[eq]]
type = "high_shelf"
position = "pre"
[[eq]]
type = "low_pass"
[[eq]]
type = "high_pass"
position = "post"
)");
  ASSERT_EQ(settings.pre.size(), 3u);
  ASSERT_EQ(settings.post.size(), 2u);
  EXPECT_EQ(settings.pre[0].type, BandType::kPeak);
  EXPECT_EQ(settings.pre[0].frequency, 100);
  EXPECT_EQ(settings.pre[0].q, 1.5);
  EXPECT_EQ(settings.pre[0].gain, -3);
  EXPECT_EQ(settings.pre[1].type, BandType::kHighShelf);
  EXPECT_EQ(settings.pre[2].type, BandType::kLowPass);
  EXPECT_EQ(settings.post[0].type, BandType::kLowShelf);
  EXPECT_EQ(settings.post[1].type, BandType::kHighPass);
}

TEST(Preset, EveryKeyOfTheDynamicsReachesItsSetting) {
  const Preset preset = parse_preset(R"(
name = "All of it"
glide = 1
[compressor]
threshold = -2
ratio = 3
knee = 4
attack = 5
release = 6
range = -7
makeup = 8
[expander]
threshold = -9
ratio = 10
knee = 11
attack = 12
release = 13
hold = 14
range = -15
hysteresis = 16
[detector]
mode = "smooth"
time = 17
[key_filter]
type = "high_pass"
frequency = 18
q = 19
[link]
lcr = "L R | C"
"5.1" = "L R C | LFE | Ls Rs"
)",
                                     "p.toml");
  EXPECT_EQ(preset.name, "All of it");
  const StripSettings& s = preset.settings;
  EXPECT_EQ(s.glide, 1);
  EXPECT_EQ(s.compressor->threshold, -2);
  EXPECT_EQ(s.compressor->ratio, 3);
  EXPECT_EQ(s.compressor->knee, 4);
  EXPECT_EQ(s.compressor->attack, 5);
  EXPECT_EQ(s.compressor->release, 6);
  EXPECT_EQ(s.compressor->range, -7);
  EXPECT_EQ(s.compressor->makeup, 8);
  EXPECT_EQ(s.expander->threshold, -9);
  EXPECT_EQ(s.expander->ratio, 10);
  EXPECT_EQ(s.expander->knee, 11);
  EXPECT_EQ(s.expander->attack, 12);
  EXPECT_EQ(s.expander->release, 13);
  EXPECT_EQ(s.expander->hold, 14);
  EXPECT_EQ(s.expander->range, -15);
  EXPECT_EQ(s.expander->hysteresis, 16);
  EXPECT_EQ(s.detector.mode, DetectorMode::kSmooth);
  EXPECT_EQ(s.detector.time, 17);
  EXPECT_EQ(s.key_filter->type, BandType::kHighPass);
  EXPECT_EQ(s.key_filter->frequency, 18);
  EXPECT_EQ(s.key_filter->q, 19);
  EXPECT_EQ(s.link.at("LCR"), "L R | C");
  EXPECT_EQ(s.link.at("5.1"), "L R C | LFE | Ls Rs");
}

TEST(Preset, InfiniteRatioLimits) {
  EXPECT_EQ(parse("[compressor]\nratio = inf\n").compressor->ratio,
            std::numeric_limits<double>::infinity());
}

TEST(Preset, HardKneeIsZero) {
  EXPECT_EQ(parse("[compressor]\nknee = 0\n").compressor->knee, 0);
}

TEST(Preset, RefusalsNameFileLineAndKey) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      // Unknown.
      {"loudness = 3\n", "1: loudness: unknown key"},
      {"\n[reverb]\n", "2: reverb: unknown key"},
      {"[compressor]\nratio = 2\ntreshold = -20\n", "3: compressor.treshold: unknown key"},
      {"[[eq]]\n[[eq]]\nwidth = 1\n", "3: eq.width: unknown key"},
      {"[key_filter]\nposition = \"pre\"\n", "2: key_filter.position: unknown key"},
      {"[link]\n\"9.1\" = \"L R\"\n", "2: link.9.1: unknown format"},
      // Of another type.
      {"compressor = 3\n", "1: compressor: must be a table, [compressor]"},
      {"[eq]\n", "1: eq: must be an array of tables, [[eq]]"},
      {"eq = [1]\n", "1: eq: must be an array of tables, [[eq]]"},
      {"name = 1\n", "1: name: must be text in quotes"},
      {"glide = \"20\"\n", "1: glide: must be a number"},
      {"[expander]\nhold = true\n", "2: expander.hold: must be a number"},
      {"[link]\n\"5.1\" = 3\n", "2: link.5.1: must be text in quotes"},
      {"[detector]\nmode = 1\n", "2: detector.mode: must be \"peak\" or \"smooth\""},
      // Out of range.
      {"[compressor]\nratio = 0.5\n", "2: compressor.ratio: must be 1 or more"},
      {"[compressor]\nratio = nan\n", "2: compressor.ratio: must be 1 or more"},
      {"[compressor]\nattack = inf\n", "2: compressor.attack: must be 0 to 10000 ms"},
      {"[compressor]\nknee = 0.05\n", "2: compressor.knee: must be 0 or 0.1 to 60 dB"},
      {"[expander]\nratio = inf\n", "2: expander.ratio: must be 1 to 100"},
      {"[expander]\nrange = 3\n", "2: expander.range: must be -120 to 0 dB"},
      {"[[eq]]\nfrequency = 0\n", "2: eq.frequency: must be 1 to 192000 Hz"},
      {"[[eq]]\ntype = \"bell\"\n",
       "2: eq.type: must be \"peak\" or \"low_shelf\" or \"high_shelf\" or \"low_pass\" or "
       "\"high_pass\""},
      {"[[eq]]\nposition = \"middle\"\n", "2: eq.position: must be \"pre\" or \"post\""},
      {"[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n",
       "9: eq: more than 8 bands"},
      // Contradictory.
      {"[[eq]]\ntype = \"low_pass\"\ngain = 0\n",
       "3: eq.gain: a low_pass or high_pass has no gain"},
      {"[key_filter]\ngain = 3\ntype = \"high_pass\"\n",
       "2: key_filter.gain: a low_pass or high_pass has no gain"},
      {"[link]\nlcr = \"L R C\"\nLCR = \"L R C\"\n",
       "2: link.lcr: this format has a link map already"},
  };
  for (const auto& [text, message] : cases) {
    EXPECT_EQ(refusal([text = text] { parse(text); }), std::string("p.toml:") + message);
  }
}

TEST(Preset, LinkMapThatDoesNotFitItsFormatIsRefusedWithItsLine) {
  const std::string given = refusal([] { parse("[link]\n\n\"5.1\" = \"L R C\"\n"); });
  EXPECT_TRUE(given.starts_with("p.toml:3: link.5.1: ")) << given;
}

TEST(Preset, SyntaxErrorsAreOneLineWithItsNumber) {
  const struct {
    const char* text;
    const char* beginning;
  } cases[] = {
      {"[compressor]\nratio = \n", "p.toml:2: syntax error: "},
      {"[compressor]\nratio = 2\nratio = 3\n", "p.toml:3: syntax error: "},
      {"name = \"open\n", "p.toml:1: syntax error: "},
      {"\xFF\n", "p.toml:1: syntax error: "},
  };
  for (const auto& [text, beginning] : cases) {
    const std::string given = refusal([text = text] { parse(text); });
    EXPECT_TRUE(given.starts_with(beginning)) << given;
    EXPECT_EQ(given.find('\n'), std::string::npos) << given;
  }
}

TEST(Preset, BandAboveHalfTheSampleRateIsRefusedWithItsLine) {
  const Preset preset = parse_preset("[[eq]]\n[[eq]]\nfrequency = 22050\n[key_filter]\n", "p.toml");
  const ChannelLayout stereo = default_layout(*find_stem_format("Stereo"));
  EXPECT_EQ(refusal([&] { check_fits(preset, 48000, stereo); }), "");
  EXPECT_EQ(refusal([&] { check_fits(preset, 44100, stereo); }),
            "p.toml:3: eq: frequency 22050 Hz is not below half the sample rate 44100 Hz");
  // The default of 1000 Hz is nobody's line but the table's.
  const Preset unset = parse_preset("\n[key_filter]\nq = 1\n", "p.toml");
  EXPECT_EQ(refusal([&] { check_fits(unset, 2000, stereo); }),
            "p.toml:2: key_filter: frequency 1000 Hz is not below half the sample rate 2000 Hz");
}

TEST(Preset, BandTooLowForSinglePrecisionIsRefusedWithItsLine) {
  const Preset preset = parse_preset("[[eq]]\nfrequency = 3\n", "p.toml");
  const ChannelLayout stereo = default_layout(*find_stem_format("Stereo"));
  EXPECT_EQ(refusal([&] { check_fits(preset, 48000, stereo); }), "");
  EXPECT_EQ(refusal([&] { check_fits(preset, 192000, stereo); }),
            "p.toml:2: eq: frequency 3 Hz, q 0.7071 and gain 0 dB leave no stable filter in single "
            "precision at 192000 Hz");
}

TEST(Preset, LinkMapThatDoesNotFitTheAudioIsRefusedWithItsLine) {
  const Preset preset = parse_preset("[link]\n\"7.1\" = \"L R C LFE Lb Rb Ls Rs\"\n", "p.toml");
  ChannelLayout layout = default_layout(*find_stem_format("7.1"));
  EXPECT_EQ(refusal([&] { check_fits(preset, 48000, layout); }), "");
  layout.labels[4] = "Lc";
  layout.labels[5] = "Rc";
  const std::string given = refusal([&] { check_fits(preset, 48000, layout); });
  EXPECT_TRUE(given.starts_with("p.toml:2: link.7.1: ")) << given;
}

TEST(Preset, ThatIsNotThereIsRefused) {
  const TemporaryFolder folder;
  const std::string missing = folder.file("none.toml");
  EXPECT_EQ(refusal([&] { read_preset(missing); }), missing + ": No such file or directory");
  const std::string here = folder.file(".");
  EXPECT_EQ(refusal([&] { read_preset(here); }), here + ": Is a directory");
}

TEST(ShippedPresets, RenderTheirKindOfAudio) {
  const struct {
    const char* preset;
    const char* name;
    int channels;
  } cases[] = {{"voice.toml", "Voice", 1},
               {"voice.toml", "Voice", 2},
               {"drum_bus.toml", "Drum bus", 2},
               {"film_7.1.toml", "Film mix 7.1", 8},
               {"film_7.1.toml", "Film mix 7.1", 6}};
  for (const auto& [preset, name, channels] : cases) {
    const TemporaryFolder folder;
    const TestAudio audio{.channels = channels,
                          .floats = noise(48000 * static_cast<std::size_t>(channels), 0.7f)};
    const RenderReport report =
        test::render(write_audio(folder.file("in.wav"), audio), folder.file("out.wav"),
                     CHANNELSTRIP_SOURCE_DIR "/presets/" + std::string(preset));
    EXPECT_EQ(report.preset_name, name);
    EXPECT_GT(report.meters.compressor_reduction, 0.2f) << preset;
    const std::vector<float> output = read_audio(folder.file("out.wav")).floats;
    EXPECT_TRUE(std::ranges::all_of(output, [](float x) { return std::abs(x) < 4; })) << preset;
    EXPECT_GT(std::ranges::max(output), 0.1f) << preset;
  }
}

TEST(ShippedPresets, AreTheOnesTested) {
  std::vector<std::string> names;
  for (const auto& entry :
       std::filesystem::directory_iterator(CHANNELSTRIP_SOURCE_DIR "/presets")) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  EXPECT_EQ(names, (std::vector<std::string>{"drum_bus.toml", "film_7.1.toml", "voice.toml"}));
}

}  // namespace
}  // namespace channelstrip::test
