// Numbers that no host should send: which channels, groups and instances they affect, and which
// not.

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include <utility>

#include "poison.h"
#include "scenes.h"

namespace channelstrip::test::harm_test {
namespace {

class Harm : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Harm, every_format(), format_name);

constexpr int kTrials = 40;

std::size_t any_channel(Random& random, std::size_t channels) {
  return static_cast<std::size_t>(random.integer(0, static_cast<int>(channels) - 1));
}

std::span<float> samples(Scene& scene, std::size_t at) {
  return std::span(scene.arena).subspan(at, kMostSamples);
}

// Clears the first instance's channel in both scenes, so that it counts as equal: its inputs,
// filter memory, peaks and outputs.
void forgive_channel(Scene& scene, Scene& other, std::size_t c) {
  const std::size_t channels = scene.instances[0].outputs_at.size();
  for (Scene* const each : {&scene, &other}) {
    Instance& it = each->instances[0];
    it.eq_state[c] = {};
    it.dyn_state[c].keyZ1 = it.dyn_state[c].keyZ2 = 0;
    it.meters[c] = it.meters[channels + c] = 0;
    std::ranges::fill(samples(*each, it.inputs_at[c]), 0.0F);
    std::ranges::fill(samples(*each, it.outputs_at[c]), 0.0F);
  }
}

// The same for a whole link group, with its gain and the readouts that all groups share.
void forgive_group(Scene& scene, Scene& other, int32_t group) {
  const std::size_t channels = scene.instances[0].outputs_at.size();
  for (std::size_t c = 0; c < channels; ++c) {
    if (scene.instances[0].dyn_coefs.linkGroup[c] != group) continue;
    forgive_channel(scene, other, c);
    for (Scene* const each : {&scene, &other}) {
      Instance& it = each->instances[0];
      it.dyn_state[c] = {};
      it.meters[2 * channels + CHANNELSTRIP_METER_CHANNEL_GAIN + c] = 0;
    }
  }
  for (Scene* const each : {&scene, &other}) {
    std::fill_n(each->instances[0].meters.begin() + static_cast<std::ptrdiff_t>(2 * channels),
                CHANNELSTRIP_METER_CHANNEL_GAIN, 0.0F);
  }
}

// The first instance, which is poisoned, has no key; those after it may share a register with it.
Scene scene_with_own_detection(Random& random, const host::StemFormat& format, Kind kind) {
  Scene scene = independent_scene(random, format, kind);
  scene.instances[0].key_input = 0;
  return scene;
}

TEST_P(Harm, OfAudioStaysInTheChannelsLinkGroup) {
  for (const Kind kind : {Kind::kEqualiser, Kind::kDynamics}) {
    Random random(1);
    for (int trial = 0; trial < kTrials; ++trial) {
      Scene clean = scene_with_own_detection(random, GetParam(), kind);
      Scene poisoned = clean;
      const Instance& it = clean.instances[0];
      const std::size_t c = any_channel(random, channels());
      for (int i = 0; i < 3; ++i) {
        one_of(random, samples(poisoned, it.inputs_at[c])) = random_poison(random);
      }
      clean = by_library(GetParam(), std::move(clean));
      poisoned = by_library(GetParam(), std::move(poisoned));
      forgive_group(clean, poisoned, clean.instances[0].dyn_coefs.linkGroup[c]);
      ASSERT_EQ(difference(clean, poisoned), "") << "trial " << trial;
    }
  }
}

// A NaN never raises a level, and it stays in the filters: from its first sample on, the channel
// counts as silent in its group.
TEST_P(Harm, OfANanIsThatItsChannelCountsAsSilent) {
  for (const Kind kind : {Kind::kEqualiser, Kind::kDynamics}) {
    Random random(2);
    for (int trial = 0; trial < kTrials; ++trial) {
      Scene silent = scene_with_own_detection(random, GetParam(), kind);
      Instance& it = silent.instances[0];
      const std::size_t c = any_channel(random, channels());
      it.eq_state[c] = {};
      it.dyn_state[c].keyZ1 = it.dyn_state[c].keyZ2 = 0;
      Scene poisoned = silent;
      samples(poisoned, it.inputs_at[c])[0] = random.pick({kNaN, -kNaN});
      std::ranges::fill(samples(silent, it.inputs_at[c]), 0.0F);

      silent = by_library(GetParam(), std::move(silent));
      poisoned = by_library(GetParam(), std::move(poisoned));
      forgive_channel(silent, poisoned, c);
      ASSERT_EQ(difference(silent, poisoned), "") << "trial " << trial;
    }
  }
}

TEST_P(Harm, OfANanInTheKeyIsThatTheKeyCountsAsSilent) {
  for (const Kind kind : {Kind::kEqualiser, Kind::kDynamics}) {
    Random random(3);
    for (int trial = 0; trial < kTrials; ++trial) {
      Scene silent = independent_scene(random, GetParam(), kind);
      Instance& it = silent.instances[0];
      it.key_input = static_cast<int32_t>(channels());
      it.dyn_coefs.keyEnable = 1;
      it.dyn_coefs.keyListen = 0;
      for (Dyn_SState& state : it.dyn_state) state.keyZ1 = state.keyZ2 = 0;
      Scene poisoned = silent;
      samples(poisoned, it.inputs_at[channels()])[0] = random.pick({kNaN, -kNaN});
      std::ranges::fill(samples(silent, it.inputs_at[channels()]), 0.0F);

      silent = by_library(GetParam(), std::move(silent));
      poisoned = by_library(GetParam(), std::move(poisoned));
      for (Scene* const each : {&silent, &poisoned}) {
        Instance& result = each->instances[0];
        for (Dyn_SState& state : result.dyn_state) state.keyZ1 = state.keyZ2 = 0;
        std::ranges::fill(samples(*each, result.inputs_at[channels()]), 0.0F);
      }
      ASSERT_EQ(difference(silent, poisoned), "") << "trial " << trial;
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::harm_test
