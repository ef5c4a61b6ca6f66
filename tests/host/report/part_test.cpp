#include "host/report/part.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/control/design/records.h"

namespace channelstrip::test::part_test {
namespace {

using namespace host;

std::vector<std::string> names(const std::vector<Part>& parts) {
  std::vector<std::string> result;
  for (const Part& part : parts) result.push_back(part.name);
  return result;
}

using Names = std::vector<std::string>;

TEST(Part, GroupsAreNamedByTheirChannels) {
  const ChannelLayout layout = layout_of("5.1");
  const std::vector<Part> groups =
      link_groups(parse_link_map("Ls Rs | LFE | L R C", layout), layout);
  EXPECT_EQ(names(groups), (Names{"L R C", "LFE", "Ls Rs"}));
  EXPECT_EQ(groups[2].channels, (std::vector<std::size_t>{4, 5}));
}

TEST(Part, OneOrTwoChannelsHaveAPictureEach) {
  const ChannelLayout mono = layout_of("Mono"), stereo = layout_of("Stereo");
  EXPECT_EQ(names(pictured_parts({}, mono)), Names{"Mono"});
  EXPECT_EQ(names(pictured_parts({}, stereo)), (Names{"L", "R"}));
  EXPECT_EQ(names(link_groups({}, stereo)), Names{"L R"});
  EXPECT_EQ(pictured_parts({}, stereo)[1].channels, std::vector<std::size_t>{1});
}

TEST(Part, MoreThanTwoChannelsArePicturedByGroup) {
  const ChannelLayout layout = layout_of("7.1");
  const LinkMap links = parse_link_map("L R C | LFE | Lb Rb Ls Rs", layout);
  EXPECT_EQ(names(pictured_parts(links, layout)), names(link_groups(links, layout)));
}

}  // namespace
}  // namespace channelstrip::test::part_test
