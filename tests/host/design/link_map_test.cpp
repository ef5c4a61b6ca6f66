#include <gtest/gtest.h>

#include <algorithm>

#include "host/design/channel_layout.h"
#include "refusal.h"

namespace channelstrip::test {
namespace {

using namespace host;

ChannelLayout layout_of(const char* format) {
  return default_layout(*find_stem_format(format));
}

LinkMap default_map(const char* format) {
  return default_link_map(layout_of(format));
}

TEST(DefaultLinkMap, LinksPairsAndLeavesTheOthersAlone) {
  EXPECT_EQ(default_map("Mono"), (LinkMap{0}));
  EXPECT_EQ(default_map("Stereo"), (LinkMap{0, 0}));
  EXPECT_EQ(default_map("LCR"), (LinkMap{0, 0, 1}));
  EXPECT_EQ(default_map("Quad"), (LinkMap{0, 0, 1, 1}));
  EXPECT_EQ(default_map("LCRS"), (LinkMap{0, 0, 1, 2}));
  EXPECT_EQ(default_map("5.0"), (LinkMap{0, 0, 1, 2, 2}));
  EXPECT_EQ(default_map("5.1"), (LinkMap{0, 0, 1, 2, 3, 3}));
  EXPECT_EQ(default_map("6.0"), (LinkMap{0, 0, 1, 2, 3, 3}));
  EXPECT_EQ(default_map("6.1"), (LinkMap{0, 0, 1, 2, 3, 4, 4}));
  EXPECT_EQ(default_map("7.0"), (LinkMap{0, 0, 1, 2, 2, 3, 3}));
  EXPECT_EQ(default_map("7.1"), (LinkMap{0, 0, 1, 2, 3, 3, 4, 4}));
}

TEST(DefaultLinkMap, StaysBelowTheGroupsOfEveryFormat) {
  for (const StemFormat& format : stem_formats()) {
    const LinkMap map = default_link_map(default_layout(format));
    EXPECT_LT(std::ranges::max(map), format.groups) << format.name;
  }
}

TEST(DefaultLinkMap, LinksPairsThatStandApart) {
  const ChannelLayout film{find_stem_format("5.1"), {"L", "C", "R", "Ls", "LFE", "Rs"}};
  EXPECT_EQ(default_link_map(film), (LinkMap{0, 1, 0, 2, 3, 2}));
}

TEST(DefaultLinkMap, LinksTheFrontCentrePair) {
  const ChannelLayout wide{find_stem_format("6.0"), {"L", "R", "Lc", "Rc", "Ls", "Rs"}};
  EXPECT_EQ(default_link_map(wide), (LinkMap{0, 0, 1, 1, 2, 2}));
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

TEST(ParsedLinkMap, MayHoldAsManyGroupsAsTheFormat) {
  EXPECT_EQ(parse_link_map("L | R | C LFE | Ls Rs", layout_of("5.1")), (LinkMap{0, 1, 2, 2, 3, 3}));
}

TEST(ParsedLinkMap, RefusesWhatIsNoMapOfTheLayout) {
  const auto refused = [](const char* format, const char* map) {
    return refusal([&] { parse_link_map(map, layout_of(format)); });
  };
  EXPECT_EQ(refused("5.1", "L | R | C | LFE | Ls Rs"), "5.1 holds at most 4 groups, the map has 5");
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
}  // namespace channelstrip::test
