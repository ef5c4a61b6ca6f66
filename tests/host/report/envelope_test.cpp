#include "host/report/envelope.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

#include "../support/audio.h"

namespace channelstrip::test::envelope_test {
namespace {

using namespace host;

using Buffers = std::vector<std::vector<float>>;

TEST(Envelope, CoversTheExtremesOfEachColumnsFrames) {
  const std::vector<float> samples = noise(12345, 0.8f);
  Envelope envelope({0}, 100);
  envelope.add(Buffers{samples});
  const std::size_t span = envelope.frames_per_column();
  ASSERT_EQ(envelope.columns().size(), (samples.size() + span - 1) / span);
  for (std::size_t i = 0; i < envelope.columns().size(); ++i) {
    const std::size_t first = i * span, last = std::min(first + span, samples.size());
    const auto [low, high] = std::ranges::minmax(std::span(samples).subspan(first, last - first));
    EXPECT_EQ(envelope.columns()[i].low, low) << i;
    EXPECT_EQ(envelope.columns()[i].high, high) << i;
  }
}

TEST(Envelope, HasAsManyColumnsAsWantedUpToTwiceThat) {
  for (const std::size_t frames : {100u, 199u, 200u, 201u, 1000u, 99999u}) {
    Envelope envelope({0}, 100);
    envelope.add(Buffers{std::vector<float>(frames)});
    EXPECT_GE(envelope.columns().size(), 100u) << frames;
    EXPECT_LT(envelope.columns().size(), 200u) << frames;
  }
}

TEST(Envelope, HasAColumnPerFrameWhileTheseAreFewer) {
  Envelope envelope({0}, 100);
  EXPECT_TRUE(envelope.columns().empty());
  envelope.add(Buffers{{0.25f, -0.5f}});
  ASSERT_EQ(envelope.columns().size(), 2u);
  EXPECT_EQ(envelope.columns()[1].high, -0.5f);
}

TEST(Envelope, DoesNotDependOnTheCutting) {
  const std::vector<float> samples = noise(5000, 0.8f);
  Envelope whole({0}, 100), pieces({0}, 100);
  whole.add(Buffers{samples});
  for (std::size_t at = 0, count = 1; at < samples.size(); at += count) {
    count = std::min(samples.size() - at, count % 97 + 13);
    const std::span<const float> piece = std::span(samples).subspan(at, count);
    pieces.add(Buffers{{piece.begin(), piece.end()}});
  }
  ASSERT_EQ(pieces.columns().size(), whole.columns().size());
  for (std::size_t i = 0; i < whole.columns().size(); ++i) {
    EXPECT_EQ(pieces.columns()[i].low, whole.columns()[i].low) << i;
    EXPECT_EQ(pieces.columns()[i].high, whole.columns()[i].high) << i;
  }
}

TEST(Envelope, SingleSampleIsNeverLost) {
  std::vector<float> samples(50000);
  samples[31234] = -1;
  Envelope envelope({0}, 100);
  envelope.add(Buffers{samples});
  EXPECT_EQ(envelope.columns()[31234 / envelope.frames_per_column()].low, -1);
  EXPECT_EQ(std::ranges::count(envelope.columns(), -1.0f, &Extremes::low), 1);
}

TEST(Envelope, SeesItsChannelsAlone) {
  Envelope envelope({0, 2}, 100);
  envelope.add(Buffers{{0.1f, -0.1f}, {9.0f, -9.0f}, {0.3f, -0.3f}});
  ASSERT_EQ(envelope.columns().size(), 2u);
  EXPECT_EQ(envelope.columns()[0].low, 0.1f);
  EXPECT_EQ(envelope.columns()[0].high, 0.3f);
  EXPECT_EQ(envelope.columns()[1].low, -0.3f);
}

}  // namespace
}  // namespace channelstrip::test::envelope_test
