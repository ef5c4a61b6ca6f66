#include "control/preset/nearest.h"

#include <gtest/gtest.h>

namespace channelstrip::test::nearest_test {
namespace {

using namespace host;
using Words = std::vector<std::string_view>;

TEST(EditDistance, CountsTheFourKindsOfSlip) {
  EXPECT_EQ(edit_distance("ratio", "ratio"), 0);
  EXPECT_EQ(edit_distance("treshold", "threshold"), 1);
  EXPECT_EQ(edit_distance("knnee", "knee"), 1);
  EXPECT_EQ(edit_distance("hald", "hold"), 1);
  EXPECT_EQ(edit_distance("gian", "gain"), 1);
  EXPECT_EQ(edit_distance("Ratio", "ratio"), 0);
  EXPECT_EQ(edit_distance("", "knee"), 4);
  EXPECT_EQ(edit_distance("knee", ""), 4);
  EXPECT_EQ(edit_distance("attack_ms", "attack"), 3);
  EXPECT_EQ(edit_distance("kitten", "sitting"), 3);
}

TEST(Nearest, IsNearOrNothing) {
  const Words keys{"threshold", "ratio", "range", "release"};
  EXPECT_EQ(nearest("relaese", keys), (Words{"release"}));
  EXPECT_EQ(nearest("loudness", keys), Words{});
  EXPECT_EQ(nearest("", keys), Words{});
}

TEST(Nearest, MayBeSeveral) {
  EXPECT_EQ(nearest("9.1", {"5.0", "5.1", "7.1"}), (Words{"5.1", "7.1"}));
}

TEST(Nearest, FindsWhatAnAbbreviationBegins) {
  const Words keys{"threshold", "ratio", "range", "release"};
  EXPECT_EQ(nearest("thr", keys), (Words{"threshold"}));
  EXPECT_EQ(nearest("R", keys), (Words{"ratio", "range", "release"}));
}

TEST(Nearest, ReadsAsASentence) {
  EXPECT_EQ(suggestion("5", {"5.0", "5.1", "6.1", "51"}, "none"),
            "; did you mean \"5.0\", \"5.1\" or \"51\"?");
  EXPECT_EQ(suggestion("q", {"gain", "knee"}, "it takes gain, knee"), "; it takes gain, knee");
}

}  // namespace
}  // namespace channelstrip::test::nearest_test
