#include "control/design/link_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "records.h"
#include "tests/host/support/refusal.h"

namespace channelstrip::test::link_map_test {
namespace {

using namespace host;

// In the order of LinkStyle.
constexpr LinkStyle kStyles[] = {LinkStyle::kPairs, LinkStyle::kFilm, LinkStyle::kMusic,
                                 LinkStyle::kAll, LinkStyle::kNone};

struct Row {
  const char* format;
  std::array<const char*, std::size(kStyles)> maps;
};

constexpr Row kTable[] = {
    {"Mono", {"M", "M", "M", "M", "M"}},
    {"Stereo", {"L R", "L R", "L R", "L R", "L | R"}},
    {"LCR", {"L R | C", "L R C", "L R C", "L R C", "L | R | C"}},
    {"Quad", {"L R | Ls Rs", "L R | Ls Rs", "L R Ls Rs", "L R Ls Rs", "L | R | Ls | Rs"}},
    {"LCRS", {"L R | C | S", "L R C | S", "L R C S", "L R C S", "L | R | C | S"}},
    {"5.0",
     {"L R | C | Ls Rs", "L R C | Ls Rs", "L R C Ls Rs", "L R C Ls Rs", "L | R | C | Ls | Rs"}},
    {"5.1",
     {"L R | C | LFE | Ls Rs", "L R C | LFE | Ls Rs", "L R C Ls Rs | LFE", "L R C LFE Ls Rs",
      "L | R | C | LFE | Ls | Rs"}},
    {"6.0",
     {"L R | C | Cs | Ls Rs", "L R C | Cs Ls Rs", "L R C Cs Ls Rs", "L R C Cs Ls Rs",
      "L | R | C | Cs | Ls | Rs"}},
    {"6.1",
     {"L R | C | LFE | Cs | Ls Rs", "L R C | LFE | Cs Ls Rs", "L R C Cs Ls Rs | LFE",
      "L R C LFE Cs Ls Rs", "L | R | C | LFE | Cs | Ls | Rs"}},
    {"7.0",
     {"L R | C | Lb Rb | Ls Rs", "L R C | Lb Rb Ls Rs", "L R C Lb Rb Ls Rs", "L R C Lb Rb Ls Rs",
      "L | R | C | Lb | Rb | Ls | Rs"}},
    {"7.1",
     {"L R | C | LFE | Lb Rb | Ls Rs", "L R C | LFE | Lb Rb Ls Rs", "L R C Lb Rb Ls Rs | LFE",
      "L R C LFE Lb Rb Ls Rs", "L | R | C | LFE | Lb | Rb | Ls | Rs"}},
};

TEST(LinkStyles, GiveEveryFormatAMapThatItHoldsUnlessNothingIsLinked) {
  ASSERT_EQ(stem_formats().size(), std::size(kTable));
  for (const Row& row : kTable) {
    const ChannelLayout layout = layout_of(row.format);
    for (std::size_t style = 0; style < std::size(kStyles); ++style) {
      const LinkMap map = link_map(layout, kStyles[style]);
      EXPECT_EQ(text_of(map, layout), row.maps[style]) << row.format;
      const int groups =
          kStyles[style] == LinkStyle::kNone ? layout.format->channels : layout.format->groups;
      EXPECT_LE(count_groups(map), groups) << row.format;
    }
  }
}

TEST(LinkStyles, LinkTheSameSpeakersInEveryOrder) {
  for (const StemFormat& format : stem_formats()) {
    const ChannelLayout wav = default_layout(format);
    const ChannelLayout film = default_layout(format, ChannelOrder::kFilm);
    for (const LinkStyle style : kStyles) {
      const LinkMap expected = parse_link_map(text_of(link_map(wav, style), wav), film);
      EXPECT_EQ(link_map(film, style), expected) << format.name;
    }
  }
}

TEST(LinkStyles, PairsThatStandApartAreLinked) {
  const ChannelLayout film{find_stem_format("5.1"), {"L", "C", "R", "Ls", "LFE", "Rs"}};
  EXPECT_EQ(link_map(film, LinkStyle::kPairs), (LinkMap{0, 1, 0, 2, 3, 2}));
}

TEST(LinkStyles, FrontCentrePairIsAPairOfTheFront) {
  const ChannelLayout wide{find_stem_format("6.0"), {"L", "R", "Lc", "Rc", "Ls", "Rs"}};
  EXPECT_EQ(link_map(wide, LinkStyle::kPairs), (LinkMap{0, 0, 1, 1, 2, 2}));
  EXPECT_EQ(link_map(wide, LinkStyle::kFilm), (LinkMap{0, 0, 0, 0, 1, 1}));
}

// Calls `use` with every map of `channels` channels.
template <typename Use>
void for_every_map(int channels, Use use, LinkMap map = {}, int channel = 0, int used = 0) {
  if (channel == channels) return use(map);
  for (int group = 0; group <= used; ++group) {
    map[static_cast<std::size_t>(channel)] = group;
    for_every_map(channels, use, map, channel + 1, std::max(used, group + 1));
  }
}

TEST(LinkMapText, GivesEveryMapOfEveryFormatBack) {
  for (const StemFormat& format : stem_formats()) {
    for (const ChannelOrder order : {ChannelOrder::kWav, ChannelOrder::kFilm}) {
      const ChannelLayout layout = default_layout(format, order);
      for_every_map(format.channels, [&](const LinkMap& map) {
        EXPECT_EQ(parse_link_map(text_of(map, layout), layout), map) << text_of(map, layout);
      });
    }
  }
}

TEST(ParsedLinkMap, NumbersGroupsAsChannelsFirstUseThem) {
  const LinkMap expected{0, 0, 0, 1, 2, 2};
  EXPECT_EQ(parse_link_map("L R C | LFE | Ls Rs", layout_of("5.1")), expected);
  EXPECT_EQ(parse_link_map("LFE | Rs Ls | C L R", layout_of("5.1")), expected);
}

TEST(ParsedLinkMap, BlanksAroundLabelsAndBarsAreFree) {
  EXPECT_EQ(parse_link_map("L R|C", layout_of("LCR")), (LinkMap{0, 0, 1}));
  EXPECT_EQ(parse_link_map("  L \t R|C ", layout_of("LCR")), (LinkMap{0, 0, 1}));
}

TEST(ParsedLinkMap, MayHoldMoreGroupsThanTheFormat) {
  EXPECT_EQ(parse_link_map("L | R | C | LFE | Ls Rs", layout_of("5.1")),
            (LinkMap{0, 1, 2, 3, 4, 4}));
}

TEST(RestrictedLinkMap, NumbersTheGroupsThatAreLeft) {
  const std::size_t channels[] = {1, 3, 4};
  EXPECT_EQ(restricted({0, 1, 0, 2, 1, 3}, channels), (LinkMap{0, 1, 0}));
  EXPECT_EQ(count_groups({0, 1, 0, 2, 1, 3}), 4);
}

TEST(ParsedLinkMap, RefusesWhatIsNoMapOfTheLayout) {
  const auto refused = [](const char* format, const char* map) {
    return refusal<std::invalid_argument>([&] { parse_link_map(map, layout_of(format)); });
  };
  EXPECT_EQ(refused("Stereo", "L X"), "the map names X, the channels are L R");
  EXPECT_EQ(refused("Stereo", "l r"), "the map names l, the channels are L R");
  EXPECT_EQ(refused("Stereo", "L R L"), "the map names L twice");
  EXPECT_EQ(refused("LCR", "L R | L C"), "the map names L twice");
  EXPECT_EQ(refused("LCR", "L | R"), "the map lacks C");
  EXPECT_EQ(refused("LCR", "L R C |"), "the map \"L R C |\" has an empty group");
  EXPECT_EQ(refused("LCRS", "L R | | C S"), "the map \"L R | | C S\" has an empty group");
  EXPECT_EQ(refused("Stereo", ""), "the map \"\" has an empty group");
}

}  // namespace
}  // namespace channelstrip::test::link_map_test
