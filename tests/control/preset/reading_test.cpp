// The settings that a preset's keys give.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "control/preset/preset.h"

namespace channelstrip::test::reading_test {
namespace {

using namespace host;

StripSettings parse(std::string_view text) {
  return parse_preset(text, "p.toml").settings;
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

TEST(Preset, EveryKeyOfABandReachesItsSetting) {
  const StripSettings settings = parse(R"(
[[eq]]
type = "high_pass"
slope = 24
design = "matched"
position = "post"
[[eq]]
type = "low_shelf"
frequency = 60
gain = 2
shelf_slope = 0.8
[[eq]]
q = 3
)");
  ASSERT_EQ(settings.pre.size(), 2u);
  ASSERT_EQ(settings.post.size(), 1u);
  EXPECT_EQ(settings.post[0].slope, 24);
  EXPECT_EQ(settings.post[0].design, BandDesign::kMatched);
  EXPECT_EQ(settings.pre[0].frequency, 60);
  EXPECT_EQ(settings.pre[0].gain, 2);
  EXPECT_EQ(settings.pre[0].shelf_slope, 0.8);
  EXPECT_EQ(settings.pre[0].design, BandDesign::kCookbook);
  EXPECT_EQ(settings.pre[1].q, 3);
  EXPECT_EQ(settings.pre[1].shelf_slope, std::nullopt);
}

TEST(Preset, EveryTypeOfBandHasItsName) {
  const std::pair<std::string_view, BandType> types[] = {{"peak", BandType::kPeak},
                                                         {"low_shelf", BandType::kLowShelf},
                                                         {"high_shelf", BandType::kHighShelf},
                                                         {"low_pass", BandType::kLowPass},
                                                         {"high_pass", BandType::kHighPass},
                                                         {"band_pass", BandType::kBandPass},
                                                         {"notch", BandType::kNotch},
                                                         {"all_pass", BandType::kAllPass},
                                                         {"tilt", BandType::kTilt}};
  for (const auto& [name, type] : types) {
    EXPECT_EQ(parse(fmt::format("[[eq]]\ntype = \"{}\"\n", name)).pre.at(0).type, type) << name;
  }
}

TEST(Preset, EveryKeyOutsideTheBandsReachesItsSetting) {
  const Preset preset = parse_preset(R"(
name = "All of it"
glide = 1
bypass = true
[compressor]
threshold = -2
ratio = 3
knee = 4
attack = 5
release = 6
range = -7
makeup = 8
auto_makeup = true
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
mode = "average"
time = 17
[key_filter]
type = "high_pass"
frequency = 18
q = 19
[key]
enable = true
listen = true
[meter]
input_gain = -20
[link]
style = "film"
lcr = "L R | C"
"5.1" = "L R C | LFE | Ls Rs"
)",
                                     "p.toml");
  EXPECT_EQ(preset.name, "All of it");
  const StripSettings& s = preset.settings;
  EXPECT_EQ(s.glide, 1);
  EXPECT_TRUE(s.bypass);
  EXPECT_EQ(s.compressor->threshold, -2);
  EXPECT_EQ(s.compressor->ratio, 3);
  EXPECT_EQ(s.compressor->knee, 4);
  EXPECT_EQ(s.compressor->attack, 5);
  EXPECT_EQ(s.compressor->release, 6);
  EXPECT_EQ(s.compressor->range, -7);
  EXPECT_EQ(s.compressor->makeup, 8);
  EXPECT_TRUE(s.compressor->auto_makeup);
  EXPECT_EQ(s.expander->threshold, -9);
  EXPECT_EQ(s.expander->ratio, 10);
  EXPECT_EQ(s.expander->knee, 11);
  EXPECT_EQ(s.expander->attack, 12);
  EXPECT_EQ(s.expander->release, 13);
  EXPECT_EQ(s.expander->hold, 14);
  EXPECT_EQ(s.expander->range, -15);
  EXPECT_EQ(s.expander->hysteresis, 16);
  EXPECT_EQ(s.detector.mode, DetectorMode::kAverage);
  EXPECT_EQ(s.detector.time, 17);
  EXPECT_EQ(s.key_filter->type, BandType::kHighPass);
  EXPECT_EQ(s.key_filter->frequency, 18);
  EXPECT_EQ(s.key_filter->q, 19);
  EXPECT_TRUE(s.key_enable);
  EXPECT_TRUE(s.key_listen);
  EXPECT_EQ(s.input_meter_gain, -20);
  EXPECT_EQ(s.link_style, LinkStyle::kFilm);
  EXPECT_EQ(s.link.at("LCR"), "L R | C");
  EXPECT_EQ(s.link.at("5.1"), "L R C | LFE | Ls Rs");
}

TEST(Preset, RetiredWordIsReadWithARemark) {
  const Preset preset = parse_preset("[detector]\nmode = \"rms\"\n", "p.toml");
  EXPECT_EQ(preset.settings.detector.mode, DetectorMode::kAverage);
  EXPECT_EQ(preset.remarks, std::vector<std::string>{"p.toml:2:8: detector.mode: \"rms\" is now "
                                                     "called \"average\""});
}

TEST(Preset, InfiniteRatioLimits) {
  EXPECT_EQ(parse("[compressor]\nratio = inf\n").compressor->ratio,
            std::numeric_limits<double>::infinity());
}

TEST(Preset, HardKneeIsZero) {
  EXPECT_EQ(parse("[compressor]\nknee = 0\n").compressor->knee, 0);
}

}  // namespace
}  // namespace channelstrip::test::reading_test
