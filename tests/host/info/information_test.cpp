#include "host/info/information.h"

#include <ChannelStrip/frame/processor_level.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "control/design/channel_layout.h"
#include "control/design/link_map.h"
#include "host/info/wav_mask.h"

namespace channelstrip::test::information_test {
namespace {

using namespace host;
using Masks = std::vector<std::uint32_t>;

ChannelLayout layout_of(std::string_view format, ChannelOrder order = ChannelOrder::kWav) {
  return default_layout(*find_stem_format(format), order);
}

TEST(WavMask, IsTheOneThatFilesHave) {
  EXPECT_EQ(wav_masks(layout_of("Mono")), Masks{0x4});
  EXPECT_EQ(wav_masks(layout_of("Stereo")), Masks{0x3});
  EXPECT_EQ(wav_masks(layout_of("LCRS")), Masks{0x107});
  EXPECT_EQ(wav_masks(layout_of("5.1")), (Masks{0x3F, 0x60F}));
  EXPECT_EQ(wav_masks(layout_of("7.1")), Masks{0x63F});
}

TEST(WavMask, ReadsBackAsTheLayout) {
  for (const StemFormat& format : stem_formats()) {
    SCOPED_TRACE(format.name);
    const ChannelLayout layout = default_layout(format);
    const Masks masks = wav_masks(layout);
    EXPECT_FALSE(masks.empty());
    for (const std::uint32_t mask : masks) {
      EXPECT_EQ(choose_layout(format.channels, speakers_of_mask(mask), &format).labels,
                layout.labels);
      EXPECT_EQ(choose_layout(format.channels, speakers_of_mask(mask)).format->name, format.name);
    }
  }
}

TEST(WavMask, IsNoneOfAnOrderThatIsNotTheBits) {
  EXPECT_EQ(wav_masks(layout_of("5.1", ChannelOrder::kFilm)), Masks{});
  EXPECT_EQ(wav_masks(layout_of("Stereo", ChannelOrder::kFilm)), Masks{0x3});
}

TEST(Information, LinkMapsAreWhatPresetsTake) {
  const Library library(CHANNELSTRIP_LIBRARY);
  const Information all = information(library, stem_formats());
  ASSERT_EQ(all.formats.size(), stem_formats().size());
  for (const FormatInformation& format : all.formats) {
    const ChannelLayout layout = default_layout(format.format);
    ASSERT_EQ(format.links.size(), 5u);
    EXPECT_EQ(format.links[0].first, "pairs");
    for (std::size_t i = 0; i < format.links.size(); ++i) {
      EXPECT_EQ(parse_link_map(format.links[i].second, default_layout(format.format)),
                link_map(layout, static_cast<LinkStyle>(i)));
    }
  }
}

TEST(Information, NamesTheLibraryThatWasLoaded) {
  const Information all = information(Library(CHANNELSTRIP_LIBRARY), stem_formats());
  EXPECT_EQ(all.library_file, std::filesystem::canonical(CHANNELSTRIP_LIBRARY).string());
  EXPECT_EQ(all.library_soname, Library::default_path());
  EXPECT_EQ(all.library_file, CHANNELSTRIP_LIBRARY);
  EXPECT_EQ("libChannelStrip.so." + all.library_version,
            std::filesystem::path(CHANNELSTRIP_LIBRARY).filename());
}

TEST(Information, NamesTheLevelThatWasChosen) {
  Information all = information(Library(CHANNELSTRIP_LIBRARY), stem_formats());
  const std::optional<channelstrip_level> level = Library(CHANNELSTRIP_LIBRARY).chosen_level();
  EXPECT_EQ(all.library_level.starts_with("x86-64"), level.has_value());
  all.library_level = "x86-64-v3";
  EXPECT_NE(human_text(all).find("for x86-64-v3, chosen on loading\n"), std::string::npos);
  all.library_level = "";
  EXPECT_EQ(human_text(all).find("chosen"), std::string::npos);
}

TEST(Information, JsonHoldsEverything) {
  const Information all = information(Library(CHANNELSTRIP_LIBRARY), stem_formats());
  const auto json = nlohmann::json::parse(json_text(all));
  EXPECT_EQ(json["version"], all.version);
  EXPECT_EQ(json["library"]["file"], all.library_file);
  EXPECT_EQ(json["library"]["level"], all.library_level);
  EXPECT_EQ(json["libsndfile"]["version"], all.libsndfile_version);
  ASSERT_EQ(json["formats"].size(), 11u);
  const auto& format = json["formats"][10];
  EXPECT_EQ(format["name"], "7.1");
  EXPECT_EQ(format["channels"], 8);
  EXPECT_EQ(format["groups"], 5);
  EXPECT_EQ(format["entry_point"], "AlgEntry_16_Stem_7_1");
  EXPECT_EQ(format["wav_masks"][0], "0x63F");
  EXPECT_EQ(format["orders"]["film"][7], "LFE");
  EXPECT_EQ(format["links"]["film"], "L R C | LFE | Lb Rb Ls Rs");
}

TEST(Information, AFileNameOfAnyBytesLeavesJsonWhole) {
  Information odd = information(Library(CHANNELSTRIP_LIBRARY), stem_formats());
  odd.library_file = "\xFF";
  EXPECT_EQ(nlohmann::json::parse(json_text(odd))["library"]["file"], "\uFFFD");
}

}  // namespace
}  // namespace channelstrip::test::information_test
