// What is left of scenes that show planted faults.

#include "shrink.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ranges>
#include <string>

#include "compare.h"
#include "random_scene.h"
#include "run_scene.h"
#include "tests/support/strip.h"

namespace channelstrip::test::shrink_test {
namespace {

// A scene whose range has at least seven entries.
Scene large_scene(uint32_t seed) {
  for (;; ++seed) {
    Random random(seed);
    Scene scene = random_scene(random, 2, 1, Kind::kOrderFree);
    if (scene.range.size() >= 7) return scene;
  }
}

// Fails if a strip whose scene is changed by `wrong` before the call differs from a correct one.
template <typename Wrong>
Fails differs_if(Wrong wrong) {
  return [wrong](const Scene& scene) {
    Scene other = scene;
    wrong(other);
    const auto& format = format_named("Stereo");
    return by_model(format, other).arena != by_model(format, scene).arena;
  };
}

std::ptrdiff_t samples_not_silent(const Scene& scene) {
  return std::ranges::count_if(scene.arena, [](float x) { return x != 0.0F; });
}

TEST(Shrinker, LeavesAPassingSceneAlone) {
  const Scene scene = large_scene(1);
  EXPECT_TRUE(same_words(shrunk(scene, [](const Scene&) { return false; }), scene));
}

// Any single sample of any instance shows a wrong makeup.
TEST(Shrinker, LeavesOneSampleOfOneInstanceWhereThatIsEnough) {
  const Fails fails = differs_if([](Scene& scene) {
    for (Instance& it : scene.instances) it.dyn_coefs.makeupGain *= 1.5F;
  });
  for (uint32_t seed : {1U, 100U, 200U}) {
    const Scene scene = large_scene(seed);
    ASSERT_TRUE(fails(scene));
    const Scene small = shrunk(scene, fails);
    ASSERT_TRUE(fails(small));
    ASSERT_EQ(small.range.size(), 1U);
    EXPECT_EQ(small.instances.size(), 1U);
    EXPECT_EQ(samples_not_silent(small), 1);
    const Instance& it = small.instances.front();
    EXPECT_EQ(it.count, 1);
    EXPECT_GE(it.eq_targets.firstBand[0], it.eq_targets.endBand[0]);
    EXPECT_GE(it.eq_targets.firstBand[1], it.eq_targets.endBand[1]);
    EXPECT_EQ(it.dyn_coefs.compSlope, 0.0F);
    EXPECT_EQ(it.dyn_coefs.bypass, 0);
  }
}

// A fault that starts after two blocks needs a third, but no more.
TEST(Shrinker, LeavesNoMoreSamplesThanTheFaultTakes) {
  const Fails fails = differs_if([](Scene& scene) {
    for (Instance& it : scene.instances) it.count = std::min(it.count, 32);
  });
  const Scene scene = large_scene(1);
  ASSERT_TRUE(fails(scene));
  const Scene small = shrunk(scene, fails);
  ASSERT_EQ(small.range.size(), 1U);
  EXPECT_EQ(small.instances.front().count, 33);
}

// A wrong order of instances shows only if two of them share something.
TEST(Shrinker, LeavesTheTwoInstancesThatAFaultTakes) {
  const Fails fails = differs_if([](Scene& scene) { std::ranges::reverse(scene.range); });
  Scene scene = large_scene(1);
  for (Instance& it : scene.instances) it.outputs_at = scene.instances.front().outputs_at;
  ASSERT_TRUE(fails(scene));
  const Scene small = shrunk(scene, fails);
  EXPECT_EQ(small.range.size(), 2U);
  EXPECT_LE(small.instances.size(), 2U);
  for (std::size_t i : small.range) EXPECT_EQ(small.instances[i].count, 1);
}

TEST(Shrinker, LeavesTheBandThatIsWrong) {
  const Fails fails = differs_if([](Scene& scene) {
    for (Instance& it : scene.instances) it.eq_targets.targetCoefs[5 * 6] += 1.0F;
  });
  Scene scene = large_scene(1);
  std::ranges::fill(scene.arena, 1.0F);  // otherwise another band's memory may be the only signal
  ASSERT_TRUE(fails(scene));
  const EQ_SCoefs eq = shrunk(scene, fails).instances.front().eq_targets;
  int bands = 0;
  for (std::size_t pass = 0; pass < 2; ++pass) {
    for (int band = eq.firstBand[pass]; band < eq.endBand[pass]; ++band) {
      EXPECT_EQ(band, 6);
      ++bands;
    }
  }
  EXPECT_EQ(bands, 1);
}

TEST(Shrinker, DescriptionNamesWhatIsNotNeutral) {
  Scene scene;
  Instance it;
  it.count = 1;
  it.dyn_coefs.compAttack = 0.25F;
  it.outputs_at = {0};
  scene.instances = {it};
  scene.range = {0};
  scene.arena.resize(16);
  scene.arena[3] = 0.5F;
  const std::string text = description(scene);
  EXPECT_NE(text.find("runs instance 0"), std::string::npos);
  EXPECT_NE(text.find("compAttack[0] of 0 = 0.25"), std::string::npos);
  EXPECT_NE(text.find("arena[3] of 0 = 0.5"), std::string::npos);
  EXPECT_EQ(text.find("compRange"), std::string::npos);
}

}  // namespace
}  // namespace channelstrip::test::shrink_test
