// Which instances count as independent, against the rule itself: pieces of memory laid out at
// random and compared pair by pair. Most addresses are made up: nothing is read there.

#include <ChannelStrip/frame/independence.h>
#include <gtest/gtest.h>
#include <tests/model/random.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace channelstrip::test::independence_rule_test {
namespace {

struct Piece {
  uintptr_t begin;
  uintptr_t bytes;
  bool written;
  int buffer = -1;  // outputs and inputs: equal for the input and the output of a channel
};

// Up to eight instances whose pointers lie in arrays of their own.
template <int Channels, int Strips>
class Instances {
 public:
  static constexpr int64_t kSamples = 32;

  explicit Instances(Random& random) : random_(random) {
    for (std::size_t s = 0; s < Strips; ++s) {
      contexts_[s].inputs = inputs_[s].data();
      contexts_[s].outputs = outputs_[s].data();
      contexts_[s].keyInputIndex = &keys_[s];
      contexts_[s].meterOutputs = &meters_[s];
      keys_[s] = random.integer(0, 2) == 0 ? Channels : random.integer(0, Channels - 1);
      strips_[s] = &contexts_[s];
    }
    // One next to the other, in any order, with gaps or without, from some address on.
    std::vector<Slot> slots = made_up();
    for (std::size_t i = slots.size(); i > 1; --i) {
      std::swap(slots[i - 1],
                slots[static_cast<std::size_t>(random.integer(0, static_cast<int>(i) - 1))]);
    }
    uintptr_t address = start();
    for (const Slot& slot : slots) {
      if (random.integer(0, 3) == 0) address += 4 * static_cast<uintptr_t>(random.integer(1, 3));
      if (random.integer(0, 9) == 0) address += far();
      set(slot, address);
      address += slot.bytes;
    }
    if (random.integer(0, 1) == 0) bring_together(slots);
    for (int s = 0; s < Strips; ++s) {
      for (int c = 0; c < Channels; ++c) {
        if (random.integer(0, 3) == 0) input(s, c) = output(s, c);
      }
    }
  }

  bool independent() const { return are_independent<Channels, Strips>(strips_.data(), kSamples); }

  bool independent_by_the_rule() const {
    const std::vector<Piece> pieces = all();
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      for (std::size_t j = 0; j < pieces.size(); ++j) {
        const Piece &a = pieces[i], &b = pieces[j];
        if (i == j || !a.written || b.bytes == 0) continue;
        if (a.buffer >= 0 && a.buffer == b.buffer && a.begin == b.begin) continue;
        if (a.begin < b.begin + b.bytes && b.begin < a.begin + a.bytes) return false;
      }
    }
    return true;
  }

 private:
  // A pointer that nothing is read through, as the address of the pointer itself.
  struct Slot {
    void* pointer;
    uintptr_t bytes;
  };

  static void set(const Slot& slot, uintptr_t address) {
    std::memcpy(slot.pointer, &address, sizeof address);
  }
  static uintptr_t get(const Slot& slot) {
    uintptr_t address;
    std::memcpy(&address, slot.pointer, sizeof address);
    return address;
  }

  const float*& input(int s, int c) {
    return inputs_[static_cast<std::size_t>(s)][static_cast<std::size_t>(c)];
  }
  float*& output(int s, int c) {
    return outputs_[static_cast<std::size_t>(s)][static_cast<std::size_t>(c)];
  }

  std::vector<Slot> made_up() {
    std::vector<Slot> slots;
    for (std::size_t s = 0; s < Strips; ++s) {
      SChannelStrip_Alg_Context& context = contexts_[s];
      for (auto& output : outputs_[s]) slots.push_back({&output, 4 * kSamples});
      for (auto& input : inputs_[s]) slots.push_back({&input, 4 * kSamples});
      slots.push_back({&context.dynState, sizeof(Dyn_SState) * Channels});
      slots.push_back({&context.eqDezipCoefs, sizeof(EQ_SDezipCoefs)});
      slots.push_back({&context.eqState, sizeof(EQ_SState) * Channels});
      slots.push_back({&meters_[s], 4 * (3 * Channels + 4)});
      slots.push_back({&context.dynCoefs, sizeof(Dyn_SCoefsBlock)});
      slots.push_back({&context.eqTargetCoefs, sizeof(EQ_SCoefs)});
      slots.push_back({&context.sampleCount, sizeof(int32_t)});
    }
    return slots;
  }

  // Somewhere, around a multiple of 2^34 bytes, or around the pointers.
  uintptr_t start() {
    switch (random_.integer(0, 2)) {
      case 0:
        return 0x5555'0000'0000;
      case 1:
        return (uintptr_t{5} << 34) - 4 * static_cast<uintptr_t>(random_.integer(0, 3000));
      default:
        return reinterpret_cast<uintptr_t>(this) / 4 * 4 -
               4 * static_cast<uintptr_t>(random_.integer(0, 3000));
    }
  }
  // A distance that is 0, or nearly, in 32 bits.
  uintptr_t far() {
    return (static_cast<uintptr_t>(random_.integer(0, 2)) << 34) +
           4 * static_cast<uintptr_t>(random_.integer(0, 20));
  }

  // Makes a piece begin or end with another one, near its ends, or within it.
  void bring_together(const std::vector<Slot>& slots) {
    const auto any = [&] {
      return slots[static_cast<std::size_t>(
          random_.integer(0, static_cast<int>(slots.size()) - 1))];
    };
    const Slot moved = any(), other = any();
    const auto few = 4 * static_cast<uintptr_t>(random_.integer(0, 2));
    switch (random_.integer(0, 4)) {
      case 0:
        return set(moved, get(other) + other.bytes - few);
      case 1:
        return set(moved, get(other) - moved.bytes + few);
      case 2:
        return set(moved, get(other));
      case 3:
        return set(moved, get(other) + few);
      default:
        return set(moved, get(other) + (uintptr_t{1} << 34));
    }
  }

  std::vector<Piece> all() const {
    std::vector<Piece> pieces;
    const auto add = [&](const auto* first, std::size_t count, bool written, int buffer = -1) {
      pieces.push_back(
          {reinterpret_cast<uintptr_t>(first), sizeof *first * count, written, buffer});
    };
    for (std::size_t s = 0; s < Strips; ++s) {
      const SChannelStrip_Alg_Context& context = contexts_[s];
      for (std::size_t c = 0; c < Channels; ++c) {
        const int buffer = static_cast<int>(s * Channels + c);
        add(outputs_[s][c], kSamples, true, buffer);
        add(inputs_[s][c], kSamples, false, buffer);
      }
      const auto key = static_cast<std::size_t>(keys_[s]);
      add(inputs_[s][key], key == 0 ? 0 : kSamples, false);
      add(inputs_[s].data(), std::max<std::size_t>(Channels, key + 1), false);
      add(outputs_[s].data(), Channels, false);
      add(context.dynState, Channels, true);
      add(context.eqDezipCoefs, 1, true);
      add(context.eqState, Channels, true);
      add(meters_[s], 3 * Channels + 4, true);
      add(context.dynCoefs, 1, false);
      add(context.eqTargetCoefs, 1, false);
      add(context.sampleCount, 1, false);
      add(&context, 1, false);
      add(&keys_[s], 1, false);
      add(&meters_[s], 1, false);
    }
    return pieces;
  }

  Random& random_;
  std::array<SChannelStrip_Alg_Context, Strips> contexts_{};
  std::array<std::array<const float*, Channels + 1>, Strips> inputs_{};
  std::array<std::array<float*, Channels>, Strips> outputs_{};
  std::array<int32_t, Strips> keys_{};
  std::array<float*, Strips> meters_{};
  std::array<const SChannelStrip_Alg_Context*, Strips> strips_{};
};

template <int Channels, int Strips>
void expect_the_rule() {
  Random random(1);
  int independent = 0;
  constexpr int kLayouts = 4000;
  for (int i = 0; i < kLayouts; ++i) {
    const Instances<Channels, Strips> instances(random);
    ASSERT_EQ(instances.independent(), instances.independent_by_the_rule()) << i;
    independent += instances.independent();
  }
  EXPECT_GT(independent, kLayouts / 10);
  EXPECT_LT(independent, kLayouts * 9 / 10);
}

TEST(IndependenceRule, HoldsOfOneStrip) {
  expect_the_rule<1, 1>();
  expect_the_rule<2, 1>();
  expect_the_rule<8, 1>();
}

TEST(IndependenceRule, HoldsOfSeveralStrips) {
  expect_the_rule<1, 2>();
  expect_the_rule<4, 2>();
  expect_the_rule<1, 4>();
  expect_the_rule<2, 4>();
  expect_the_rule<1, 8>();
}

}  // namespace
}  // namespace channelstrip::test::independence_rule_test
