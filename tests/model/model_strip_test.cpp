// Tests of the model itself: its whole strip.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "random_sections.h"
#include "scene.h"
#include "strip.h"

namespace channelstrip::model::model_strip_test {
namespace {

using test::Instance;
using test::Scene;

constexpr std::size_t kStride = 64;       // samples from one buffer to the next
constexpr float kUnity = 0x1.000016p+0F;  // the factor of 0 dB

// One instance that does nothing: no bands, flat curves, an open gate, ballistics without delay, a
// peak detector without decay. The arena holds the inputs, then a key, then the outputs.
Scene neutral_scene(int channels, int count) {
  Scene scene;
  Instance it;
  Dyn_SCoefsBlock& c = it.dyn_coefs;
  c.makeupGain = c.keyFilter[0] = c.detectorFilter[0] = 1.0F;
  c.compAttack = c.compRelease = c.expAttack = c.expRelease = c.peakDecay = 1.0F;
  c.compRange = c.expRange = -100.0F;
  c.compThreshold = c.compKneeHigh = c.compKneeLow = 1000.0F;
  c.expKneeHigh = c.expKneeLow = -1000.0F;
  c.gateOpenThreshold = c.gateCloseThreshold = -1000.0F;
  it.dyn_state[0].dezipRate = 1.0F;
  it.count = count;
  std::size_t at = 0;
  for (int i = 0; i <= channels; ++i, at += kStride) it.inputs_at.push_back(at);
  for (int i = 0; i < channels; ++i, at += kStride) it.outputs_at.push_back(at);
  scene.arena.resize(at);
  scene.instances.push_back(it);
  scene.range.push_back(0);
  return scene;
}

template <typename Real = float>
void run_scene(Scene& scene, int groups) {
  const int channels = static_cast<int>(scene.instances[0].outputs_at.size());
  const test::Contexts contexts(scene);
  process<Real>(*contexts.range()[0], channels, groups, SumOrder::kInputFirst);
}

float* input(Scene& scene, std::size_t c) {
  return scene.arena.data() + scene.instances[0].inputs_at[c];
}

float* output(Scene& scene, std::size_t c) {
  return scene.arena.data() + scene.instances[0].outputs_at[c];
}

TEST(ModelStrip, ProcessesWholeBlocks) {
  Scene scene = neutral_scene(1, 17);
  std::fill_n(input(scene, 0), kStride, 0.5F);
  run_scene(scene, 1);
  for (int i = 0; i < 32; ++i) EXPECT_EQ(output(scene, 0)[i], 0.5F * (kUnity * kUnity));
  EXPECT_EQ(output(scene, 0)[32], 0.0F);
}

TEST(ModelStrip, LeavesAnInstanceWithoutSamplesAlone) {
  for (int count : {0, -1}) {
    Scene scene = neutral_scene(1, count);
    scene.instances[0].eq_targets.targetCoefs[0] = 1.0F;
    input(scene, 0)[0] = 1.0F;
    run_scene(scene, 1);
    EXPECT_EQ(output(scene, 0)[0], 0.0F);
    EXPECT_EQ(scene.instances[0].eq_coefs.coefs[0], 0.0F);
    EXPECT_EQ(scene.instances[0].meters[0], 0.0F);
  }
}

// The groups are channels 0 and 1, 2, 3 and 4, 5. The limiter at -20 dB follows the loudest of
// each.
TEST(ModelStrip, GroupFollowsItsLoudestChannelOnItsFirstChannelsRecord) {
  constexpr float kLevels[] = {0.1F, 1.0F, 0.01F, 10.0F, 0.1F, 0.0F};
  constexpr float kExpected[] = {-20.0F, -20.0F, 0.0F, -40.0F, -40.0F, 0.0F};  // dB
  Scene scene = neutral_scene(6, 16);
  Instance& it = scene.instances[0];
  it.dyn_coefs.compSlope = -1.0F;
  it.dyn_coefs.compThreshold = it.dyn_coefs.compKneeHigh = it.dyn_coefs.compKneeLow = -20.0F;
  std::ranges::copy(std::array{0, 0, 1, 2, 2, 3}, it.dyn_coefs.linkGroup);
  for (std::size_t c = 0; c < 6; ++c) std::fill_n(input(scene, c), 16, kLevels[c]);
  run_scene(scene, 4);

  for (std::size_t c = 0; c < 6; ++c) {
    const float gain = std::pow(10.0F, kExpected[c] / 20.0F);
    EXPECT_NEAR(output(scene, c)[15], kLevels[c] * gain, 2e-5F * kLevels[c] * gain) << c;
    EXPECT_NEAR(it.meters[12 + 4 + c], gain, 2e-5F * gain) << c;
  }
  EXPECT_EQ(it.dyn_state[1].compGain, 0.0F);
  EXPECT_EQ(it.dyn_state[4].compGain, 0.0F);
  EXPECT_NEAR(it.dyn_state[3].compGain, -40.0F, 1e-4F);
}

TEST(ModelStrip, KeyListenPassesTheFilteredKeyUngained) {
  Scene scene = neutral_scene(2, 16);
  Instance& it = scene.instances[0];
  it.key_input = 2;
  it.dyn_coefs.keyListen = -1;
  it.dyn_coefs.keyFilter[0] = 0.5F;
  it.dyn_coefs.makeupGain = 3.0F;
  std::fill_n(input(scene, 1), 16, 0.25F);
  std::fill_n(input(scene, 2), 16, 1.0F);
  for (int enable : {1, 2}) {
    it.dyn_coefs.keyEnable = enable;
    run_scene(scene, 1);
    EXPECT_EQ(output(scene, 1)[7], enable == 1 ? 0.5F : 0.125F);
  }
}

TEST(ModelStrip, BandsRunBeforeAndAfterTheDynamics) {
  Scene scene = neutral_scene(1, 16);
  Instance& it = scene.instances[0];
  it.eq_targets.targetCoefs[0] = 2.0F;
  it.eq_targets.targetCoefs[5] = 3.0F;
  it.eq_targets.endBand[0] = it.eq_targets.firstBand[1] = 1;
  it.eq_targets.endBand[1] = 2;
  std::fill_n(input(scene, 0), 16, 1.0F);
  run_scene(scene, 1);
  EXPECT_EQ(it.dyn_state[0].peakLevel, 2.0F);
  EXPECT_EQ(output(scene, 0)[0], 2.0F * (kUnity * kUnity) * 3.0F);
}

// In place, so that the copies in double have to share a buffer as well. The bound is half a step
// of either conversion (7e-6 together with the table's own error) and the roundings of some
// octaves.
TEST(ModelStrip, DoubleLiesWithinFloatsErrors) {
  Scene scene = neutral_scene(1, 48);
  Instance& it = scene.instances[0];
  it.outputs_at = {0};
  const auto band = test::cookbook_section(test::Filter::kPeak, 0.02, 1.0, 6.0);
  std::ranges::copy(band, it.eq_targets.targetCoefs);
  std::ranges::copy(band, it.eq_coefs.coefs);
  std::ranges::copy(band, it.eq_coefs.smoothedCoefs);
  it.eq_targets.endBand[0] = 1;
  it.dyn_coefs.compSlope = -0.5F;
  it.dyn_coefs.compThreshold = it.dyn_coefs.compKneeHigh = it.dyn_coefs.compKneeLow = -20.0F;
  it.dyn_coefs.peakDecay = 0.999F;
  it.dyn_coefs.compAttack = 0.1F;
  for (int i = 0; i < 48; ++i) scene.arena[static_cast<std::size_t>(i)] = std::sin(0.2F * float(i));

  Scene exact = scene;
  run_scene<float>(scene, 1);
  run_scene<double>(exact, 1);
  EXPECT_NE(scene.arena, exact.arena);
  for (std::size_t i = 0; i < 48; ++i) EXPECT_NEAR(scene.arena[i], exact.arena[i], 2e-5F) << i;
}

}  // namespace
}  // namespace channelstrip::model::model_strip_test
