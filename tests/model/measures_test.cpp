// What the sweep measures besides differences: how far single precision lies from double, and which
// edges the levels have met.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "edge_counts.h"
#include "precision.h"
#include "random_scene.h"
#include "run_scene.h"
#include "tests/support/strip.h"

namespace channelstrip::test::measures_test {
namespace {

// Makes the outputs equal to the gain, with levels that are exact in single precision: the audio is
// 1 throughout, the detector holds the key's peak, and no filter takes part.
void make_outputs_gains(Instance& it, Scene& scene) {
  Dyn_SCoefsBlock& c = it.dyn_coefs;
  c.makeupGain = 1.0F;
  c.keyEnable = 1;
  c.keyListen = c.bypass = c.detectorMode = 0;
  std::ranges::copy(std::array{1.0F, 0.0F, 0.0F, 0.0F, 0.0F}, c.keyFilter);
  for (std::size_t pass = 0; pass < 2; ++pass) it.eq_targets.endBand[pass] = 0;
  for (Dyn_SState& s : it.dyn_state) {
    s.curMakeupGain = 1.0F;
    s.keyZ1 = s.keyZ2 = 0.0F;
  }
  it.key_input = 1;
  std::fill_n(scene.arena.data() + it.inputs_at[0], 112, 1.0F);
}

// The errors in the order of the computation; h is 2^-24, half an ulp of 1.
//
//   level       3e-6 octaves from the table, 6.4e-8 x 100 dB from the factor, and a rounding of h x
//               64 dB: 2.8e-5 dB. At levels below -100 dB every curve here is at its range.
//   target      slope x the level's error and h x 64 dB, at most 3 x 3.2e-5 dB. In a knee also h x
//               the terms a L^2 <= 1000, b L <= 1800 and c <= 820 dB: once from the evaluation
//               (2.1e-4 dB), and once from the rounded coefficients if the two precisions lie on
//               different sides of an edge (2.1e-4 dB). 5.2e-4 dB for the expander. The
//               compressor's slope is a third of that, and its terms are 160, 310 and 160
//               dB: 1.2e-4 dB. Gliding ranges differ by less: 28 steps of h x 32 dB.
//   ballistics  no weight widens a distance; 112 samples of h x 32 dB, and once h x 64 dB: 2.2e-4
//   dB
//               for either term
//   dB to gain  6e-5 dB for either term; three products and the rounding of the exact result, 4h or
//               2.1e-6 dB
constexpr double kGainBound = 5.2e-4 + 1.2e-4 + 2 * 2.2e-4 + 2 * 6e-5 + 2.1e-6;

TEST(SinglePrecision, GainLiesWithinItsRoundings) {
  const auto& format = format_named("Mono");
  double worst = 0.0;
  for (uint32_t seed = 1; seed <= 400; ++seed) {
    Random random(seed);
    Scene scene = random_scene(random, 1, 1, Kind::kDynamics);
    for (Instance& it : scene.instances) make_outputs_gains(it, scene);
    const Scene exact = by_model<double>(format, scene);
    const Scene single = by_library(entry_point(format), scene);
    for (std::size_t i : scene.range) {
      const Instance& it = scene.instances[i];
      for (int s = 0; s < it.count; ++s) {
        const std::size_t at = it.outputs_at[0] + static_cast<std::size_t>(s);
        worst = std::max(worst, std::fabs(20.0 * std::log10(static_cast<double>(single.arena[at]) /
                                                            static_cast<double>(exact.arena[at]))));
      }
    }
  }
  EXPECT_LE(worst, kGainBound);
  EXPECT_GT(worst, 1e-5);  // the comparison sees single precision at all
}

// Every edge is at -140 dB; levels on it and one float to either side.
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
}  // namespace channelstrip::test::measures_test
