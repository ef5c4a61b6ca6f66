#include "control/library/stem_format.h"

#include <gtest/gtest.h>

namespace channelstrip::test::stem_format_test {
namespace {

using namespace host;

TEST(StemFormat, ElevenFormatsWithTheirChannelsAndGroups) {
  struct Expected {
    const char *name, *entry_point;
    int channels, groups;
  };
  const Expected expected[] = {
      {"Mono", "AlgEntry_16_Stem_Mono", 1, 1}, {"Stereo", "AlgEntry_16_Stem_Stereo", 2, 1},
      {"LCR", "AlgEntry_16_Stem_LCR", 3, 2},   {"Quad", "AlgEntry_16_Stem_Quad", 4, 2},
      {"LCRS", "AlgEntry_16_Stem_LCRS", 4, 3}, {"5.0", "AlgEntry_16_Stem_5_0", 5, 3},
      {"5.1", "AlgEntry_16_Stem_5_1", 6, 4},   {"6.0", "AlgEntry_16_Stem_6_0", 6, 4},
      {"6.1", "AlgEntry_16_Stem_6_1", 7, 5},   {"7.0", "AlgEntry_16_Stem_7_0", 7, 4},
      {"7.1", "AlgEntry_16_Stem_7_1", 8, 5},
  };
  ASSERT_EQ(stem_formats().size(), std::size(expected));
  for (const Expected& wanted : expected) {
    const StemFormat* format = find_stem_format(wanted.name);
    ASSERT_TRUE(format) << wanted.name;
    EXPECT_EQ(format->name, wanted.name);
    EXPECT_EQ(format->entry_point, wanted.entry_point);
    EXPECT_EQ(format->channels, wanted.channels) << wanted.name;
    EXPECT_EQ(format->groups, wanted.groups) << wanted.name;
  }
}

TEST(StemFormat, IsFoundWhateverTheLetterCase) {
  EXPECT_EQ(find_stem_format("lcrs"), find_stem_format("LCRS"));
  EXPECT_EQ(find_stem_format("STEREO"), find_stem_format("Stereo"));
}

TEST(StemFormat, UnknownNamesFindNothing) {
  for (const char* name : {"", "5", "5.1.", "5,1", "Stereo "}) {
    EXPECT_EQ(find_stem_format(name), nullptr) << name;
  }
}

}  // namespace
}  // namespace channelstrip::test::stem_format_test
