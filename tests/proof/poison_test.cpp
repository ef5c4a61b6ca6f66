// NaNs, infinities, zeros, denormals and huge numbers anywhere give the model's result: the same
// bits, or a NaN where the model has one.

#include "poison.h"

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include <array>
#include <bit>

#include "scenes.h"

namespace channelstrip::test::poison_test {
namespace {

template <typename Put>
void expect_the_models_result(const host::StemFormat& format, Put put) {
  Random random(1);
  for (int trial = 0; trial < 40; ++trial) {
    Scene scene = independent_scene(random, format, Kind::kOrderFree);
    for (Instance& it : scene.instances) {
      for (int i = random.integer(1, 3); i > 0; --i) put(random, scene, it);
    }
    ASSERT_EQ(difference_from_model(format, scene), "") << "trial " << trial;
  }
}

float& any_sample(Random& random, Scene& scene, std::size_t buffer) {
  return one_of(random, std::span(scene.arena).subspan(buffer, kMostSamples));
}

// Poisons words of the block that are floats, including the filters and the metering gain.
void poison_coefficients(Random& random, Dyn_SCoefsBlock& coefs) {
  static constexpr std::pair<int, int> kFloats[] = {{0, 10}, {12, 23}, {25, 35}, {47, 47}};
  const auto [first, last] = kFloats[random.integer(0, 3)];
  auto words = std::bit_cast<std::array<float, sizeof coefs / sizeof(float)>>(coefs);
  words[static_cast<std::size_t>(random.integer(first, last))] = random_poison(random);
  coefs = std::bit_cast<Dyn_SCoefsBlock>(words);
}

class Poison : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Poison, every_format(), format_name);

TEST_P(Poison, InAudio) {
  expect_the_models_result(GetParam(), [](Random& random, Scene& scene, Instance& it) {
    const std::size_t buffer = one_of(random, std::span(it.inputs_at).first(channels()));
    any_sample(random, scene, buffer) = random_poison(random);
  });
}

TEST_P(Poison, InTheKey) {
  expect_the_models_result(GetParam(), [](Random& random, Scene& scene, Instance& it) {
    it.dyn_coefs.keyEnable = 1;
    it.key_input = static_cast<int32_t>(channels());
    any_sample(random, scene, it.inputs_at[channels()]) = random_poison(random);
  });
}

TEST_P(Poison, InEqualiserTargets) {
  expect_the_models_result(GetParam(), [](Random& random, Scene&, Instance& it) {
    one_of(random, it.eq_targets.targetCoefs) = random_poison(random);
  });
}

TEST_P(Poison, InEqualiserCoefficientsInUse) {
  expect_the_models_result(GetParam(), [](Random& random, Scene&, Instance& it) {
    one_of(random, it.eq_coefs.coefs) = random_poison(random);
    const auto smoothed = static_cast<double>(random_poison(random));
    one_of(random, it.eq_coefs.smoothedCoefs) = smoothed;
  });
}

TEST_P(Poison, InEqualiserMemory) {
  expect_the_models_result(GetParam(), [](Random& random, Scene&, Instance& it) {
    EQ_SState& state = one_of(random, std::span(it.eq_state).first(channels()));
    one_of(random, state.z1) = random_poison(random);
    one_of(random, state.z2) = random_poison(random);
  });
}

TEST_P(Poison, InDynamicsCoefficients) {
  expect_the_models_result(GetParam(), [](Random& random, Scene&, Instance& it) {
    poison_coefficients(random, it.dyn_coefs);
  });
}

TEST_P(Poison, InDynamicsState) {
  expect_the_models_result(GetParam(), [](Random& random, Scene&, Instance& it) {
    Dyn_SState& s = one_of(random, std::span(it.dyn_state).first(channels()));
    float* const floats[] = {&s.compGain,      &s.expGain,      &s.keyZ1,       &s.keyZ2,
                             &s.detZ1,         &s.detZ2,        &s.peakLevel,   &s.smoothLevel,
                             &s.curMakeupGain, &s.curCompRange, &s.curExpRange, &s.dezipRate};
    *one_of(random, floats) = random_poison(random);
  });
}

TEST_P(Poison, InMeters) {
  expect_the_models_result(GetParam(), [](Random& random, Scene&, Instance& it) {
    one_of(random, std::span(it.meters).first(3 * channels() + 4)) = random_poison(random);
  });
}

}  // namespace
}  // namespace channelstrip::test::poison_test
