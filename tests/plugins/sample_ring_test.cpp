#include "plugins/sample_ring.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

namespace channelstrip::plugin_test::ring_test {
namespace {

using plugins::SampleRing;

// The stream of both channels counts its frames, the second one downwards.
void write(SampleRing& ring, std::uint64_t& at, std::uint32_t frames) {
  std::vector<float> up(frames), down(frames);
  for (std::uint32_t i = 0; i < frames; ++i) {
    up[i] = static_cast<float>(++at % 8388608);
    down[i] = -up[i];
  }
  const std::array<const float*, 2> channels{up.data(), down.data()};
  ring.write(channels.data(), frames);
}

TEST(SampleRing, GivesTheLatestFrames) {
  SampleRing ring(2);
  std::uint64_t at = 0;
  std::vector<float> read(100);
  for (const std::uint32_t frames : {16U, 227U, 1U, 5000U, 65536U, 70000U, 300000U, 37U}) {
    write(ring, at, frames);
    EXPECT_EQ(ring.written(), at);
    for (const std::uint32_t channel : {0U, 1U}) {
      ASSERT_TRUE(ring.read(channel, read));
      for (std::size_t i = 0; i < read.size(); ++i) {
        const auto frame = static_cast<float>(at - read.size() + 1 + i);
        const float expected = at < read.size() && i < read.size() - at ? 0 : frame;
        EXPECT_EQ(read[i], channel == 0 ? expected : -expected);
      }
    }
  }
}

TEST(SampleRing, HoldsAsMuchAsItSays) {
  SampleRing ring(2);
  std::uint64_t at = 0;
  write(ring, at, 100000);
  std::vector<float> read(SampleRing::kFrames);
  ASSERT_TRUE(ring.read(0, read));
  EXPECT_EQ(read.front(), static_cast<float>(at - SampleRing::kFrames + 1));
  EXPECT_EQ(read.back(), static_cast<float>(at));
}

// Whatever a reader gets, it is consecutive frames.
TEST(SampleRing, NeverGivesAMixtureOfOldAndNew) {
  SampleRing ring(2);
  std::atomic<bool> is_over{false};
  std::thread writer([&] {
    std::uint64_t at = 0;
    while (at < 3000000) write(ring, at, 997);
    is_over = true;
  });
  std::vector<float> read(20000);
  while (!is_over) {
    if (ring.written() < read.size() || !ring.read(0, read)) continue;
    for (std::size_t i = 1; i < read.size(); ++i) {
      if (read[i] != read[i - 1] + 1) {
        ADD_FAILURE() << read[i - 1] << " is followed by " << read[i];
        break;
      }
    }
  }
  writer.join();
  EXPECT_TRUE(ring.read(0, read));
}

}  // namespace
}  // namespace channelstrip::plugin_test::ring_test
