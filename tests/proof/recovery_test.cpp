// What a host has to reset after it has sent invalid numbers.

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include <cmath>
#include <utility>

#include "poison.h"
#include "scenes.h"

namespace channelstrip::test::recovery_test {
namespace {

class Recovery : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Recovery, every_format(), format_name);

constexpr int kTrials = 40;

void poison_audio(Random& random, Scene& scene) {
  for (int i = 0; i < 50; ++i) one_of(random, std::span(scene.arena)) = random_poison(random);
}

void poison_state(Random& random, Instance& it) {
  for (EQ_SState& state : it.eq_state) one_of(random, state.z1) = random_poison(random);
  for (Dyn_SState& state : it.dyn_state) {
    state.keyZ1 = random_poison(random);
    state.detZ1 = random_poison(random);
    state.peakLevel = random_poison(random);
    state.compGain = random_poison(random);
  }
  for (float& meter : it.meters) meter = random_poison(random);
}

TEST_P(Recovery, NothingOutlivesAResetOfTheHostsRecords) {
  Random random(1);
  for (int trial = 0; trial < kTrials; ++trial) {
    const Scene fresh = independent_scene(random, GetParam(), Kind::kDynamics);
    const Scene before = by_library(GetParam(), fresh);
    Scene poisoned = fresh;
    poison_audio(random, poisoned);
    for (Instance& it : poisoned.instances) poison_state(random, it);
    poisoned = by_library(GetParam(), std::move(poisoned));

    poisoned.arena = fresh.arena;
    for (std::size_t i = 0; i < fresh.instances.size(); ++i) {
      Instance& it = poisoned.instances[i];
      it.eq_coefs = fresh.instances[i].eq_coefs;
      it.eq_state = fresh.instances[i].eq_state;
      it.dyn_state = fresh.instances[i].dyn_state;
      it.meters = fresh.instances[i].meters;
    }
    ASSERT_EQ(difference(before, by_library(GetParam(), std::move(poisoned))), "")
        << "trial " << trial;
  }
}

// Audio can't make gain terms, glides, gate or hold NaN or infinite: levels in dB are finite
// whatever the detector's level is.
TEST_P(Recovery, FromAudioNeedsFilterMemoryAndPeakResetAlone) {
  Random random(2);
  for (int trial = 0; trial < kTrials; ++trial) {
    const Scene fresh = independent_scene(random, GetParam(), Kind::kDynamics);
    Scene scene = fresh;
    poison_audio(random, scene);
    scene = by_library(GetParam(), std::move(scene));
    scene.arena = fresh.arena;
    for (Instance& it : scene.instances) {
      for (EQ_SState& state : it.eq_state) state = {};
      for (Dyn_SState& s : it.dyn_state) {
        s.keyZ1 = s.keyZ2 = s.detZ1 = s.detZ2 = s.peakLevel = 0;
      }
      it.meters.fill(0);
    }
    scene = by_library(GetParam(), std::move(scene));
    for (float sample : scene.arena) ASSERT_TRUE(std::isfinite(sample)) << "trial " << trial;
    for (const Instance& it : scene.instances) {
      for (float meter : it.meters) ASSERT_TRUE(std::isfinite(meter)) << "trial " << trial;
      for (std::size_t c = 0; c < channels(); ++c) {
        const Dyn_SState& s = it.dyn_state[c];
        for (float value :
             {s.compGain, s.expGain, s.curMakeupGain, s.curCompRange, s.curExpRange}) {
          ASSERT_TRUE(std::isfinite(value)) << "trial " << trial;
        }
      }
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::recovery_test
