#include "host/import/filter_list.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../support/temporary_folder.h"
#include "control/preset/preset.h"
#include "host/import/imported_preset.h"
#include "host/text/encoding.h"

namespace channelstrip::test::filter_list_test {
namespace {

using namespace host;

FilterList fitted(std::string_view text) {
  FilterList list = parse_filter_list(text);
  fit_to_preset(list);
  return list;
}

std::vector<std::string> left_out(std::string_view text) {
  std::vector<std::string> lines;
  for (const auto& [source, reason] : fitted(text).left_out) {
    lines.push_back(fmt::format("{}: {}", source.number, reason));
  }
  return lines;
}

using Lines = std::vector<std::string>;

constexpr std::string_view kBand = "Filter 1: ON PK Fc 100 Hz Gain 1 dB Q 1\n";

void expect_same_band(const BandSettings& band, const BandSettings& expected) {
  EXPECT_EQ(band.type, expected.type);
  EXPECT_EQ(band.frequency, expected.frequency);
  EXPECT_EQ(band.gain, expected.gain);
  EXPECT_EQ(band.shelf_slope, expected.shelf_slope);
  if (!expected.shelf_slope) {
    EXPECT_EQ(band.q, expected.q);
  }
}

TEST(FilterList, PresetGivesTheSameSettingsBack) {
  for (const char* name : {"room_eq_wizard.txt", "equalizer_apo.txt"}) {
    SCOPED_TRACE(name);
    const FilterList list = fitted(
        to_utf8(contents(fmt::format("{}/tests/host/import/{}", CHANNELSTRIP_SOURCE_DIR, name))));
    const Preset preset = parse_preset(preset_text(list, "A \"B\" \\ C\n", name), "p.toml");
    EXPECT_EQ(preset.name, "A \"B\" \\ C\n");
    ASSERT_EQ(preset.settings.pre.size(), list.bands.size());
    for (std::size_t i = 0; i < list.bands.size(); ++i) {
      expect_same_band(preset.settings.pre[i], list.bands[i].settings);
    }
    EXPECT_TRUE(preset.settings.post.empty());
    EXPECT_EQ(preset.settings.compressor.has_value(), !list.preamps.empty());
  }
}

TEST(FilterList, ReadsAWholeRoomEqWizardFile) {
  const FilterList list =
      fitted(contents(CHANNELSTRIP_SOURCE_DIR "/tests/host/import/room_eq_wizard.txt"));
  EXPECT_EQ(list.program, "Room EQ Wizard");
  ASSERT_EQ(list.left_out.size(), 1u);
  EXPECT_EQ(list.left_out[0].source.number, 19);
  ASSERT_EQ(list.bands.size(), 8u);
  EXPECT_EQ(list.bands[0].source.number, 10);
  EXPECT_EQ(list.bands[0].source.text,
            "Filter  1: ON  PK       Fc    41.5 Hz  Gain  -8.2 dB  Q  5.12");
  const BandType types[] = {BandType::kPeak,    BandType::kPeak,     BandType::kHighPass,
                            BandType::kLowPass, BandType::kLowShelf, BandType::kHighShelf,
                            BandType::kNotch,   BandType::kAllPass};
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(list.bands[i].settings.type, types[i]) << i;
  ASSERT_EQ(list.off.size(), 1u);
  EXPECT_EQ(list.off[0].number, 16);
}

TEST(FilterList, ReadsAWholeEqualizerApoFile) {
  const FilterList list =
      fitted(contents(CHANNELSTRIP_SOURCE_DIR "/tests/host/import/equalizer_apo.txt"));
  EXPECT_EQ(list.program, "Equalizer APO");
  ASSERT_EQ(list.bands.size(), 4u);
  EXPECT_EQ(list.bands[1].settings.shelf_slope, 1);
  ASSERT_EQ(list.preamps.size(), 1u);
  EXPECT_EQ(list.preamps[0].decibels, -6.1);
  ASSERT_EQ(list.left_out.size(), 3u);
}

TEST(FilterList, HeadingsOfRoomEqWizardAreNoFilters) {
  EXPECT_EQ(left_out("Filter Settings file\nNotes: loud\nEqualiser: Generic\nGraphicEQ: 1 2\n"),
            Lines{});
  EXPECT_EQ(left_out("\nFilter Settings file\nFilter 1: ON ZZ Fc 1 Hz\n"),
            Lines{"3: a strip has no filter ZZ"});
}

TEST(FilterList, PreampOfRoomEqWizardCountsAndSoDoesWhatFollowsItsFilters) {
  const std::string text = fmt::format(
      "Filter Settings file\nPreamp: -3 dB\n{}Channel: L\nFilter 2: ON LP Fc 80 Hz\nhello\n",
      kBand);
  EXPECT_EQ(left_out(text),
            (Lines{"5: for channel L alone, a strip treats all alike", "6: not understood"}));
  ASSERT_EQ(fitted(text).preamps.size(), 1u);
  EXPECT_EQ(fitted(text).bands.size(), 1u);
}

TEST(FilterList, OffAndNoneAreLeftOutSilently) {
  const FilterList list = fitted("Filter 1: OFF ZZ\nFilter 2: ON None\n# a\n\n");
  EXPECT_TRUE(list.left_out.empty());
  EXPECT_TRUE(list.bands.empty());
  EXPECT_EQ(list.off.size(), 1u);
}

TEST(FilterList, EveryOtherLineIsToldWithItsReason) {
  EXPECT_EQ(
      left_out("Convolution: room.wav\nCopy: L=R\nDelay: 10 ms\nDevice: Speakers\n"
               "GraphicEQ: 25 0; 40 1\nInclude: more.txt\nStage: pre-mix\nVSTPlugin: x\n"
               "Filtr 1: ON PK\nhello\nFilter 1: maybe\nFilter 2: ON\nEval: x=1\n"
               "LoudnessCorrection: State 1\n"),
      (Lines{"1: a strip doesn't convolve", "2: a strip doesn't mix channels",
             "3: a strip doesn't delay", "4: a preset serves any device; what follows is taken",
             "5: a curve of many points isn't a band",
             "6: other files aren't read; import them by themselves",
             "7: a preset has no stages; what follows is taken", "8: a strip has no plug-ins",
             "9: not understood", "10: not understood", "11: neither ON nor OFF",
             "12: no filter type", "13: expressions aren't evaluated",
             "14: a strip doesn't follow a volume control"}));
}

TEST(FilterList, SomeChannelsAloneAreLeftOut) {
  const std::string text =
      fmt::format("Channel: L R\n{}Preamp: -3 dB\nChannel: ALL\n{}", kBand, kBand);
  EXPECT_EQ(left_out(text), (Lines{"2: for channel L R alone, a strip treats all alike",
                                   "3: for channel L R alone, a strip treats all alike"}));
  EXPECT_EQ(fitted(text).bands.size(), 1u);
  EXPECT_EQ(fitted(text).preamps.size(), 0u);
}

TEST(FilterList, ConditionsAreLeftOut) {
  const std::string text =
      fmt::format("If: x\n{0}ElseIf: y\nIf: z\nEndIf:\nElse:\n{0}EndIf:\n{0}EndIf:\n", kBand);
  EXPECT_EQ(left_out(text), (Lines{"2: under a condition", "7: under a condition"}));
  EXPECT_EQ(fitted(text).bands.size(), 1u);
}

TEST(FilterList, BandsFromTheNinthOnAreLeftOut) {
  std::string text = "Convolution: a\n";
  for (int i = 0; i < 10; ++i) text += kBand;
  EXPECT_EQ(left_out(text), (Lines{"1: a strip doesn't convolve", "10: a strip has 8 bands",
                                   "11: a strip has 8 bands"}));
  EXPECT_EQ(fitted(text).bands.size(), 8u);
}

TEST(FilterList, WhatAPresetRefusesIsLeftOutInItsWords) {
  EXPECT_EQ(left_out("Filter: ON PK Fc 100 Hz Gain 1 dB Q 200\n"
                     "Filter: ON PK Fc -1 Hz Gain 1 dB Q 1\n"
                     "Filter: ON PK Fc 100 Hz Gain 60 dB Q 1\n"),
            (Lines{"1: q: must be 0.05 to 100", "2: frequency: must be 1 to 192000 Hz",
                   "3: gain: must be -40 to 40 dB"}));
  EXPECT_EQ(left_out("Preamp: -30 dB\nPreamp: -30 dB\n"),
            (Lines{"1: makeup: must be -40 to 40 dB", "2: makeup: must be -40 to 40 dB"}));
  EXPECT_EQ(left_out("Preamp: loud\n"), Lines{"1: the gain \"LOUD\" is no number"});
}

TEST(FilterList, ThinSpacesAndApostrophesSeparateThousands) {
  const FilterList list = fitted(
      "Filter: ON PK Fc 1\u00A0250 Hz Gain 1 dB Q 1\nFilter:\u00A0ON LP Fc\u202F12\u202F500 Hz\n"
      "Filter: ON LP Fc 1'250 Hz\nFilter: ON LP Fc 12\u2019500 Hz\nFilter: ON LP Fc 2\u2009000 "
      "Hz\n");
  ASSERT_EQ(list.bands.size(), 5u);
  const double frequencies[] = {1250, 12500, 1250, 12500, 2000};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(list.bands[i].settings.frequency, frequencies[i]) << i;
  }
}

TEST(FilterList, ApostrophesElsewhereAreText) {
  EXPECT_EQ(fitted("Filter 1: OFF Sofa's 5\u2019 away\n").off[0].text,
            "Filter 1: OFF Sofa's 5\u2019 away");
}

TEST(FilterList, PassOfSixDecibelsPerOctaveKeepsItsSlope) {
  const FilterList list = fitted("Filter: ON HP1 Fc 80 Hz\n");
  const Preset preset = parse_preset(preset_text(list, "n", "f"), "p.toml");
  ASSERT_EQ(preset.settings.pre.size(), 1u);
  EXPECT_EQ(preset.settings.pre[0].slope, 6);
}

TEST(FilterList, PreampsAddUpInTheMakeupGain) {
  const FilterList list = fitted(fmt::format("Preamp: -6.1 dB\n{}Preamp: 1 dB\n", kBand));
  const Preset preset = parse_preset(preset_text(list, "n", "f"), "p.toml");
  ASSERT_TRUE(preset.settings.compressor);
  EXPECT_EQ(preset.settings.compressor->ratio, 1);
  EXPECT_EQ(preset.settings.compressor->makeup, -6.1 + 1);
}

}  // namespace
}  // namespace channelstrip::test::filter_list_test
