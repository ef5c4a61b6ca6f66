// Words that are not in use are neither read nor written: signalling NaNs there change nothing and
// stay signalling, although any arithmetic would make them quiet.

#include <gtest/gtest.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "scenes.h"

namespace channelstrip::test::dead_words_test {
namespace {

class DeadWords : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, DeadWords, every_format(), format_name);

constexpr uint32_t kSignalling = 0x7FA00001;  // as an integer, far beyond any group or count

template <typename T>
void poison(T& word) {
  static_assert(sizeof(T) == sizeof kSignalling);
  std::memcpy(&word, &kSignalling, sizeof word);
}

template <typename Record>
void poison_words(Record& record) {
  std::array<uint32_t, sizeof(Record) / sizeof kSignalling> words;
  words.fill(kSignalling);
  std::memcpy(&record, words.data(), sizeof record);
}

void poison_gain_computer(Dyn_SState& state) {
  const Dyn_SState alive = state;
  poison_words(state);
  state.keyZ1 = alive.keyZ1;
  state.keyZ2 = alive.keyZ2;
}

bool runs(const EQ_SCoefs& eq, int band) {
  return (eq.firstBand[0] <= band && band < eq.endBand[0]) ||
         (eq.firstBand[1] <= band && band < eq.endBand[1]);
}

void poison_dead_words(Instance& it, std::size_t channels) {
  poison(it.dyn_coefs.reserved12);
  for (std::size_t c = channels; c < kMaxChannels; ++c) {
    poison(it.dyn_coefs.linkGroup[c]);
    poison_words(it.dyn_state[c]);
    poison_words(it.eq_state[c]);
  }
  for (std::size_t i = 3 * channels + 4; i < it.meters.size(); ++i) poison(it.meters[i]);
  for (std::size_t c = 0; c < channels; ++c) {
    const auto* const groups = it.dyn_coefs.linkGroup;
    const bool leads = std::find(groups, groups + c, groups[c]) == groups + c;
    if (!leads) poison_gain_computer(it.dyn_state[c]);
    if (c > 0) poison(it.dyn_state[c].dezipRate);
    poison(it.dyn_state[c].reserved14);
    poison(it.eq_state[c].reserved);
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
      if (runs(it.eq_targets, band)) continue;
      poison(it.eq_state[c].z1[band]);
      poison(it.eq_state[c].z2[band]);
    }
  }
}

void poison_dead_words(Scene& scene, std::size_t channels) {
  for (Instance& it : scene.instances) poison_dead_words(it, channels);
}

// Copying a signalling NaN keeps its bits, so the records can be compared as memory.
void expect_same_memory(const Instance& a, const Instance& b) {
  EXPECT_TRUE(same_record(a.dyn_coefs, b.dyn_coefs));
  EXPECT_TRUE(same_record(a.eq_targets, b.eq_targets));
  EXPECT_TRUE(same_record(a.eq_coefs, b.eq_coefs));
  EXPECT_TRUE(same_bits(a.dyn_state, b.dyn_state));
  EXPECT_TRUE(same_bits(a.eq_state, b.eq_state));
  EXPECT_TRUE(same_bits(a.meters, b.meters));
}

TEST_P(DeadWords, AreNeitherReadNorWritten) {
  for (const Kind kind : {Kind::kOrderFree, Kind::kDynamics}) {
    Random random(1);
    for (int trial = 0; trial < 40; ++trial) {
      const Scene scene = independent_scene(random, GetParam(), kind);
      Scene poisoned = scene;
      poison_dead_words(poisoned, channels());
      const Scene result = by_library(GetParam(), std::move(poisoned));
      Scene expected = by_library(GetParam(), scene);
      poison_dead_words(expected, channels());
      for (std::size_t i = 0; i < scene.instances.size(); ++i) {
        expect_same_memory(result.instances[i], expected.instances[i]);
      }
      EXPECT_TRUE(same_bits(result.arena, expected.arena));
      ASSERT_FALSE(HasFailure()) << "trial " << trial;
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::dead_words_test
