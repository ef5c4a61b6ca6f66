#include "plugins/tap.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

namespace channelstrip::plugin_test::tap_test {
namespace {

using plugins::MeterQueue;
using plugins::Tap;

channelstrip_meters reading(std::uint64_t frames, float peak, float gain) {
  channelstrip_meters made{};
  made.frames = frames;
  made.overs[1] = 2;
  made.input_peak[0] = peak;
  made.least_gain[0] = peak;
  made.compressor_reduction = peak;
  made.compressor_gain[0] = gain;
  return made;
}

TEST(MeterQueue, GivesAllReadingsAsOne) {
  MeterQueue queue;
  channelstrip_meters all{};
  EXPECT_FALSE(queue.take(all));
  queue.put(reading(1024, 0.5f, -1));
  queue.put(reading(1000, 0.25f, -2));
  ASSERT_TRUE(queue.take(all));
  EXPECT_EQ(all.frames, 2024U);
  EXPECT_EQ(all.overs[1], 4U);
  EXPECT_EQ(all.input_peak[0], 0.5f);
  EXPECT_EQ(all.least_gain[0], 0.25f);
  EXPECT_EQ(all.compressor_reduction, 0.5f);
  EXPECT_EQ(all.compressor_gain[0], -2);
  EXPECT_FALSE(queue.take(all));
}

TEST(MeterQueue, LosesWhatComesWhileItIsFull) {
  MeterQueue queue;
  for (int i = 0; i < 100; ++i) queue.put(reading(1, 0, static_cast<float>(i)));
  channelstrip_meters all{};
  ASSERT_TRUE(queue.take(all));
  EXPECT_EQ(all.frames, 64U);
  EXPECT_EQ(all.compressor_gain[0], 63);
  queue.put(reading(1, 0, 7));
  ASSERT_TRUE(queue.take(all));
  EXPECT_EQ(all.compressor_gain[0], 7);
}

TEST(MeterQueue, LosesNothingBetweenTwoThreadsThatKeepUp) {
  MeterQueue queue;
  constexpr std::uint64_t kReadings = 20000;
  std::atomic<std::uint64_t> taken{0};
  std::thread audio([&] {
    for (std::uint64_t i = 0; i < kReadings; ++i) {
      while (i - taken >= 60) std::this_thread::yield();
      queue.put(reading(1, 0, static_cast<float>(i)));
    }
  });
  float last = -1;
  while (taken < kReadings) {
    channelstrip_meters all{};
    if (!queue.take(all)) continue;
    taken += all.frames;
    EXPECT_GT(all.compressor_gain[0], last);
    last = all.compressor_gain[0];
  }
  audio.join();
  EXPECT_EQ(last, static_cast<float>(kReadings - 1));
}

TEST(Tap, CopiesNothingUntilSomebodyLooks) {
  Tap tap(1);
  const std::vector<float> samples(64, 0.5f);
  const std::array<const float*, 1> channels{samples.data()};
  tap.see_inputs(channels.data(), 64);
  EXPECT_EQ(tap.rings(), nullptr);
  tap.look();
  tap.see_inputs(channels.data(), 64);
  tap.see_meters(reading(1, 1, 0));
  EXPECT_EQ(tap.rings()->inputs.written(), 64U);
  tap.look_away();
  tap.see_inputs(channels.data(), 64);
  EXPECT_EQ(tap.rings()->inputs.written(), 64U);
  channelstrip_meters all{};
  EXPECT_TRUE(tap.meters().take(all));
}

TEST(Tap, LooksOnAtAnotherFormat) {
  Tap tap(1);
  tap.look();
  tap.change(2);
  ASSERT_EQ(tap.rings()->channels, 2U);
  const std::vector<float> samples(64, 0.5f);
  const std::array<const float*, 2> channels{samples.data(), samples.data()};
  tap.see_outputs(channels.data(), 64);
  EXPECT_EQ(tap.rings()->outputs.written(), 64U);
}

}  // namespace
}  // namespace channelstrip::plugin_test::tap_test
