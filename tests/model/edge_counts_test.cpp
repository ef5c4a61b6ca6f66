#include "edge_counts.h"

#include <gtest/gtest.h>

#include <cmath>

namespace channelstrip::test::edge_counts_test {
namespace {

// Every edge at -140 dB, met on it and on both sides.
TEST(EdgeCounts, NameWhatWasNeverMet) {
  constexpr float kEdge = -140.0F;
  EdgeCounts counts;
  Dyn_SCoefsBlock c{};
  c.compKneeLow = c.compKneeHigh = c.expKneeLow = c.expKneeHigh = kEdge;
  c.gateOpenThreshold = c.gateCloseThreshold = kEdge;
  for (float towards : {-1000.0F, kEdge, 1000.0F}) {
    counts.see(0.5, static_cast<double>(std::nextafter(kEdge, towards)), false, c);
  }
  EXPECT_EQ(counts.missing(),
            "above compKneeLow, below expKneeHigh, below gateCloseThreshold, at "
            "gateCloseThreshold, above gateCloseThreshold, below 0 dB, at 0 dB, above 0 dB");
  EXPECT_EQ(counts.least(), 0U);
}

TEST(EdgeCounts, CountOnlyComparisonsThatAreMade) {
  EdgeCounts counts;
  Dyn_SCoefsBlock c{};
  c.compKneeLow = 0.0F;
  c.compKneeHigh = -10.0F;
  counts.see(1.0, 0.0, false, c);
  EXPECT_NE(counts.missing().find("at compKneeLow"), std::string::npos);
  c.compKneeHigh = 10.0F;
  counts.see(1.0, 0.0, false, c);
  EXPECT_EQ(counts.missing().find("at compKneeLow"), std::string::npos);
}

}  // namespace
}  // namespace channelstrip::test::edge_counts_test
