#include "control/strip/peak.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace channelstrip::test::peak_test {
namespace {

using namespace host;

// Runs of 64 samples, and what is left of 16.
constexpr std::size_t kCounts[] = {16, 48, 64, 80, 192};

// Calls `check` with silence of every count and one sample somewhere in it, everywhere in turn.
template <class Check>
void with_sample_anywhere(float sample, Check check) {
  for (const std::size_t count : kCounts) {
    std::vector<float> samples(count);
    for (float& any : samples) {
      any = sample;
      check(samples);
      any = 0;
    }
  }
}

bool is_loud(const std::vector<float>& samples) {
  LoudLanes loud;
  loud.see(samples.data(), samples.size());
  return loud.are_any();
}

TEST(LoudLanes, SeeWhateverIsTwoOrMoreOrNoNumber) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float sample : {2.0f, -2.0f, 3.0f, -1e30f, infinity, -infinity, std::nanf(""),
                             -std::nanf("1"), std::numeric_limits<float>::max()}) {
    with_sample_anywhere(sample, [&](const std::vector<float>& samples) {
      EXPECT_TRUE(is_loud(samples)) << sample << " of " << samples.size();
    });
  }
}

TEST(LoudLanes, AreNoneBelowTwo) {
  const float below = std::nextafter(2.0f, 0.0f);
  for (const float sample : {below, -below, 1.0f, -0.0f, 1e-40f}) {
    with_sample_anywhere(sample, [&](const std::vector<float>& samples) {
      EXPECT_FALSE(is_loud(samples)) << sample << " of " << samples.size();
    });
  }
}

TEST(PeakLanes, CollectTheGreatestMagnitude) {
  for (const float sample : {0.25f, -3.0f, std::numeric_limits<float>::infinity()}) {
    with_sample_anywhere(sample, [&](const std::vector<float>& samples) {
      PeakLanes lanes;
      lanes.see(samples.data(), samples.size());
      EXPECT_EQ(lanes.peak(), std::abs(sample));
      EXPECT_EQ(lanes.exceed(0.5f), std::abs(sample) > 0.5f);
    });
  }
}

TEST(PeakLanes, HoldANumberThatIsNone) {
  with_sample_anywhere(-std::nanf(""), [](const std::vector<float>& samples) {
    PeakLanes lanes;
    lanes.see(samples.data(), samples.size());
    EXPECT_TRUE(std::isnan(lanes.peak()));
    EXPECT_TRUE(lanes.exceed(1e30f));
  });
}

}  // namespace
}  // namespace channelstrip::test::peak_test
