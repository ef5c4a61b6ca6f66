// The order of channels and of instances makes no difference.

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "scenes.h"

namespace channelstrip::test::permutation_test {
namespace {

class Permutation : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Permutation, every_format(), format_name);

constexpr int kTrials = 30;
constexpr Kind kKinds[] = {Kind::kOrderFree, Kind::kEqualiser, Kind::kDynamics};

using Order = std::vector<std::size_t>;  // element i: the former position of what is now at i

template <typename T>
void shuffle(Random& random, std::vector<T>& elements) {
  for (int i = static_cast<int>(elements.size()) - 1; i > 0; --i) {
    std::swap(elements[static_cast<std::size_t>(i)],
              elements[static_cast<std::size_t>(random.integer(0, i))]);
  }
}

Order unchanged(std::size_t size) {
  Order order(size);
  std::iota(order.begin(), order.end(), std::size_t{0});
  return order;
}

Order random_order(Random& random, std::size_t size) {
  Order order = unchanged(size);
  shuffle(random, order);
  return order;
}

Order inverse_of(const Order& order) {
  Order inverse(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) inverse[order[i]] = i;
  return inverse;
}

// The groups by their lowest channels, which is the order in which they raise the shared readouts.
std::vector<int32_t> groups_in_order(const Instance& it, const Order& order) {
  std::vector<int32_t> groups;
  for (std::size_t from : order) {
    const int32_t group = it.dyn_coefs.linkGroup[from];
    if (std::ranges::find(groups, group) == groups.end()) groups.push_back(group);
  }
  return groups;
}

std::size_t lowest_channel(const Instance& it, int32_t group) {
  const auto* const groups = it.dyn_coefs.linkGroup;
  return static_cast<std::size_t>(std::find(groups, groups + kMaxChannels, group) - groups);
}

// Swaps all but the key filter's memory, the reserved word and the rate.
void swap_gain_computers(Dyn_SState& a, Dyn_SState& b) {
  std::swap(a, b);
  std::swap(a.keyZ1, b.keyZ1);
  std::swap(a.keyZ2, b.keyZ2);
  std::swap(a.reserved14, b.reserved14);
  std::swap(a.dezipRate, b.dezipRate);
}

// Moves each channel's buffers, memory, meters and group. What a group has once moves to its lowest
// channel; the rate stays in record 0.
Instance permuted(const Instance& it, const Order& order) {
  const std::size_t channels = order.size();
  const std::size_t gains = 2 * channels + CHANNELSTRIP_METER_CHANNEL_GAIN;
  Instance result = it;
  for (std::size_t c = 0; c < channels; ++c) {
    const std::size_t from = order[c];
    result.inputs_at[c] = it.inputs_at[from];
    result.outputs_at[c] = it.outputs_at[from];
    result.eq_state[c] = it.eq_state[from];
    result.dyn_state[c] = it.dyn_state[from];
    result.dyn_state[c].dezipRate = it.dyn_state[c].dezipRate;
    result.dyn_coefs.linkGroup[c] = it.dyn_coefs.linkGroup[from];
    for (std::size_t first : {std::size_t{0}, channels, gains}) {
      result.meters[first + c] = it.meters[first + from];
    }
  }
  const Order now_at = inverse_of(order);
  for (int32_t group : groups_in_order(it, order)) {
    const std::size_t old_leader = now_at[lowest_channel(it, group)];
    const std::size_t leader = lowest_channel(result, group);
    if (leader == old_leader) continue;
    swap_gain_computers(result.dyn_state[leader], result.dyn_state[old_leader]);
    std::swap(result.meters[gains + leader], result.meters[gains + old_leader]);
  }
  return result;
}

// About half of the instances are processed in place: a channel's output is its own input.
Scene scene_in_and_out_of_place(Random& random, const host::StemFormat& format, Kind kind) {
  Scene scene = independent_scene(random, format, kind);
  for (Instance& it : scene.instances) {
    if (!random.chance(0.5F)) continue;
    std::copy_n(it.inputs_at.begin(), format.channels, it.outputs_at.begin());
  }
  return scene;
}

template <typename ChooseOrder, typename Forget>
void expect_permutes(const host::StemFormat& format, ChooseOrder choose, Forget forget) {
  for (const Kind kind : kKinds) {
    Random random(1);
    for (int trial = 0; trial < kTrials; ++trial) {
      const Scene scene = scene_in_and_out_of_place(random, format, kind);
      Scene other = scene;
      std::vector<Order> orders;
      for (Instance& it : other.instances) {
        orders.push_back(choose(random, it));
        it = permuted(it, orders.back());
      }
      Scene result = by_library(format, scene);
      other = by_library(format, std::move(other));
      for (std::size_t i = 0; i < orders.size(); ++i) {
        other.instances[i] = permuted(other.instances[i], inverse_of(orders[i]));
        forget(other.instances[i]);
        forget(result.instances[i]);
      }
      ASSERT_EQ(difference(result, other), "") << "trial " << trial;
    }
  }
}

TEST_P(Permutation, OfChannelsPermutesTheResultsWhereGroupsKeepTheirOrder) {
  const auto choose = [](Random& random, const Instance& it) {
    Order order;
    do {
      order = random_order(random, channels());
    } while (groups_in_order(it, order) != groups_in_order(it, unchanged(channels())));
    return order;
  };
  expect_permutes(GetParam(), choose, [](Instance&) {});
}

// Of two samples with the same greatest gain, the one of the earlier group sets the level readout.
TEST_P(Permutation, OfChannelsPermutesAllButTheLevelReadout) {
  const auto choose = [](Random& random, const Instance&) {
    return random_order(random, channels());
  };
  expect_permutes(GetParam(), choose,
                  [](Instance& it) { it.meters[2 * channels() + CHANNELSTRIP_METER_LEVEL] = 0; });
}

TEST_P(Permutation, OfIndependentInstancesChangesNothing) {
  for (const Kind kind : kKinds) {
    Random random(2);
    for (int trial = 0; trial < kTrials; ++trial) {
      const Scene scene = independent_scene(random, GetParam(), kind);
      Scene other = scene;
      shuffle(random, other.range);
      ASSERT_EQ(difference(by_library(GetParam(), scene), by_library(GetParam(), other)), "")
          << "trial " << trial;
    }
  }
}

TEST(StemFormats, FiveOneAndSixZeroAgreeOnAnyScene) {
  const host::StemFormat& five_one = *host::find_stem_format("5.1");
  const host::StemFormat& six_zero = *host::find_stem_format("6.0");
  for (const Kind kind : kKinds) {
    Random random(3);
    for (int trial = 0; trial < kTrials; ++trial) {
      const Scene scene = random_scene(random, five_one.channels, five_one.groups, kind);
      ASSERT_EQ(difference(by_library(five_one, scene), by_library(six_zero, scene)), "")
          << "trial " << trial;
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::permutation_test
