// The control word belongs to the host: a call leaves it alone and computes in its modes.

#include "control_word.h"

#include <gtest/gtest.h>
#include <tests/model/compare.h>
#include <tests/support/every_format.h>

#include <algorithm>
#include <cmath>

#include "scenes.h"

namespace channelstrip::test::control_word_test {
namespace {

class ControlWord : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, ControlWord, every_format(), format_name);

// Audio and memory of the size of denormals (below 1.2e-38) or little above.
Scene faint_scene(Random& random, const host::StemFormat& format) {
  Scene scene = independent_scene(random, format, Kind::kOrderFree);
  const float scale = random.pick({1e-36F, 1e-38F, 1e-40F});
  for (float& sample : scene.arena) sample *= scale;
  for (Instance& it : scene.instances) {
    for (EQ_SState& state : it.eq_state) {
      for (float& z1 : state.z1) z1 *= scale;
      for (float& z2 : state.z2) z2 *= scale;
    }
    for (Dyn_SState& state : it.dyn_state) {
      for (float* const value :
           {&state.keyZ1, &state.keyZ2, &state.detZ1, &state.detZ2, &state.peakLevel}) {
        *value *= scale;
      }
    }
  }
  return scene;
}

// If denormal operands count as zeros but results aren't flushed, a running maximum may hold a
// denormal or 0: the two compare as equal. This makes either one 0.
void flush_maxima(Scene& scene) {
  const auto flush = [](float& x) {
    if (std::fpclassify(x) == FP_SUBNORMAL) x = std::copysign(0.0F, x);
  };
  for (Instance& it : scene.instances) {
    for (Dyn_SState& state : it.dyn_state) flush(state.compGain);
    std::ranges::for_each(it.meters, flush);
  }
}

TEST_P(ControlWord, IsLeftAsItWas) {
  Random random(1);
  for (const uint64_t rounding : kRoundings) {
    for (const uint64_t denormals : kDenormalModes) {
      const Scene scene = faint_scene(random, GetParam());
      const InModes modes(rounding, denormals);
      by_library(GetParam(), scene);
      EXPECT_EQ(control_word(), modes.word());
    }
  }
}

TEST_P(ControlWord, DecidesWhatBecomesOfDenormals) {
  Random random(2);
  for (const uint64_t denormals : kDenormalModes) {
    int different = 0;
    for (int trial = 0; trial < 20; ++trial) {
      const Scene scene = faint_scene(random, GetParam());
      const auto usual = by_each_order(GetParam(), scene);
      auto [legal, result] = [&] {
        const InModes modes(kRoundings[0], denormals);
        return std::pair(by_each_order(GetParam(), scene), by_library(GetParam(), scene));
      }();
      if (denormals != 0) {
        std::ranges::for_each(legal, flush_maxima);
        flush_maxima(result);
      }
      ASSERT_EQ(first_difference(legal, result), "") << "mode " << denormals << ", trial " << trial;
      if (!first_difference(usual, result).empty()) ++different;
    }
    EXPECT_EQ(different > 0, denormals != 0) << "mode " << denormals;
  }
}

}  // namespace
}  // namespace channelstrip::test::control_word_test
