#include "host/audio/pcm.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

#include "../support/audio.h"

namespace channelstrip::test::pcm_test {
namespace {

using host::Dither;
using host::to_pcm;

struct Pcm {
  int step;  // in steps of the sample type
  long long clipped;
};

Pcm pcm(float sample, int bits) {
  std::int32_t integer = 0;
  const long long clipped = to_pcm({&sample, 1}, bits, Dither::kNone, 0, {&integer, 1});
  return {integer >> (32 - bits), clipped};
}

// What becomes of samples that were all these steps before something scaled them.
std::vector<std::int16_t> dithered(float scale, float source_scale = 1) {
  std::vector<float> samples, sources;
  for (int step = -32768; step < 32768; ++step) {
    sources.push_back(static_cast<float>(step) * 0x1p-15f * source_scale);
    samples.push_back(sources.back() * scale);
  }
  std::vector<std::int16_t> integers(samples.size());
  to_pcm(samples, 16, Dither::kTriangular, 0, integers, sources);
  return integers;
}

TEST(Pcm, OfUnchangedSamplesIsWhatItWas) {
  const float unity = 1 + 2.63e-6f;  // the strip's 0 dB
  const std::vector<std::int16_t> integers = dithered(unity);
  for (int step = -32768; step < 32768; ++step) {
    ASSERT_EQ(integers[static_cast<std::size_t>(step + 32768)], step);
  }
}

// Not even where the change leads from one step to another.
TEST(Pcm, OfChangedSamplesIsDithered) {
  for (const float scale : {0.5f, 1 + 1e-5f, -1.0f}) {
    const std::vector<std::int16_t> integers = dithered(scale);
    int off = 0;
    for (int step = -32768; step < 32768; ++step) {
      const auto nearest = std::lround(static_cast<float>(step) * scale);
      off += std::abs(integers[static_cast<std::size_t>(step + 32768)] - nearest) > 0 ? 1 : 0;
    }
    EXPECT_GT(off, 10000) << scale;
  }
}

// Sources of 17 bits: unchanged, but every other one lies between two steps.
TEST(Pcm, OfUnchangedSamplesThatTheFileCannotHoldIsDithered) {
  const std::vector<std::int16_t> integers = dithered(1, 0.5f);
  int even = 0, odd = 0;
  for (int step = -32768; step < 32768; ++step) {
    const auto nearest = std::lrint(step / 2.0);
    const bool moved = integers[static_cast<std::size_t>(step + 32768)] != nearest;
    (step % 2 == 0 ? even : odd) += moved ? 1 : 0;
  }
  EXPECT_EQ(even, 0);
  EXPECT_GT(odd, 10000);
}

TEST(Pcm, RoundsToNearest) {
  EXPECT_EQ(pcm(0.49f / 32768, 16).step, 0);
  EXPECT_EQ(pcm(0.51f / 32768, 16).step, 1);
  EXPECT_EQ(pcm(-0.49f / 32768, 16).step, 0);
  EXPECT_EQ(pcm(-0.51f / 32768, 16).step, -1);
}

TEST(Pcm, KeepsEveryStepOf24Bits) {
  for (int step = -(1 << 23); step < 1 << 23; ++step) {
    ASSERT_EQ(pcm(static_cast<float>(step) * 0x1p-23f, 24).step, step);
  }
}

TEST(Pcm, ClampsWhatIsAboveFullScaleAndCountsIt) {
  for (const int bits : {8, 16, 20, 24, 32}) {
    const int top = static_cast<int>((1LL << (bits - 1)) - 1);
    for (const float far : {1.5f, 1e30f, std::numeric_limits<float>::infinity()}) {
      EXPECT_EQ(pcm(far, bits).step, top);
      EXPECT_EQ(pcm(-far, bits).step, -top - 1);
      EXPECT_EQ(pcm(far, bits).clipped, 1);
      EXPECT_EQ(pcm(-far, bits).clipped, 1);
    }
  }
}

TEST(Pcm, OfUpTo16BitsIsTheSameInHalfTheRoom) {
  const std::vector<float> samples = noise(10000, 1.2f);
  std::vector<std::int32_t> wide(samples.size());
  std::vector<std::int16_t> narrow(samples.size());
  for (const int bits : {8, 16}) {
    for (const Dither dither : {Dither::kNone, Dither::kTriangular}) {
      const long long clipped = to_pcm(samples, bits, dither, 0, wide);
      EXPECT_GT(clipped, 1000);
      EXPECT_EQ(to_pcm(samples, bits, dither, 0, narrow), clipped);
      for (std::size_t i = 0; i < samples.size(); ++i) ASSERT_EQ(narrow[i], wide[i] >> 16);
    }
  }
}

TEST(Pcm, FullScaleItselfIsNotClipped) {
  EXPECT_EQ(pcm(1.0f, 16).step, 32767);
  EXPECT_EQ(pcm(-1.0f, 16).step, -32768);
  EXPECT_EQ(pcm(1.0f, 16).clipped, 0);
  EXPECT_EQ(pcm(-1.0f, 16).clipped, 0);
}

TEST(Pcm, NotANumberIsSilence) {
  EXPECT_EQ(pcm(std::numeric_limits<float>::quiet_NaN(), 24).step, 0);
}

}  // namespace
}  // namespace channelstrip::test::pcm_test
