#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "../streamed.h"

namespace channelstrip::test::strip_key_test {
namespace {

using namespace host;

StripSettings compressor_alone() {
  StripSettings settings;
  settings.compressor = {.threshold = -30, .ratio = 8, .attack = 1, .release = 50};
  return settings;
}

TEST(StripKey, DetectsInTheAudiosPlace) {
  const std::vector<float> quiet = tone(-60, 20000), loud = tone(-3, 20000);
  const Stream alone{.format = "Mono", .input = quiet, .settings = compressor_alone()};
  EXPECT_EQ(play(alone).meters.compressor_reduction, 0);
  Stream keyed = alone;
  keyed.key = loud;
  EXPECT_GT(play(keyed).meters.compressor_reduction, 0.9f);
}

TEST(StripKey, TheAudioItselfAsKeyChangesNothing) {
  const std::vector<float> input = bursts(10007, 1);
  const Stream alone{.format = "Mono", .input = input, .settings = compressor_alone()};
  Stream keyed = alone;
  keyed.key = input;
  EXPECT_EQ(play(keyed).bits, play(alone).bits);
  EXPECT_EQ(play(keyed).meters, play(alone).meters);
}

TEST(StripKey, OutputAndMetersDoNotDependOnTheCutting) {
  const std::vector<float> input = bursts(5003, 8);
  const Stream keyed{
      .format = "7.1", .input = input, .settings = busy_settings(), .key = bursts(5003, 1)};
  const Streamed whole = play(keyed);
  for (const std::size_t frames : {1u, 63u, 64u, 255u, 256u, 300u}) {
    const Streamed cut = play(keyed, frames);
    EXPECT_EQ(cut.bits, whole.bits) << frames;
    EXPECT_EQ(cut.meters, whole.meters) << frames;
  }
}

TEST(StripKey, SilenceFollowsAShortKey) {
  const std::vector<float> input = bursts(5003, 2);
  Stream keyed{.format = "Stereo",
               .input = input,
               .settings = compressor_alone(),
               .key = std::vector<float>(1001, 0.9f)};
  const Streamed shorter = play(keyed);
  EXPECT_EQ(play(keyed, 100).bits, shorter.bits);
  keyed.key.resize(5003);
  EXPECT_EQ(play(keyed).bits, shorter.bits);
}

}  // namespace
}  // namespace channelstrip::test::strip_key_test
