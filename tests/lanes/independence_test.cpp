// Which instances count as independent: all that are, so that none takes the slow route without
// need, and no others.

#include <ChannelStrip/frame/independence.h>
#include <gtest/gtest.h>
#include <tests/support/strip.h>

#include <cstring>

#include "rack.h"

namespace channelstrip::test::independence_test {
namespace {

constexpr std::size_t kStrips = 4;
constexpr int kChannels = 2;

class Independence : public testing::Test {
 protected:
  static constexpr std::size_t kKey = kChannels;

  Independence() {
    for (std::size_t i = 0; i < kStrips; ++i) strips[i] = &rack.contexts[i];
  }

  bool independent() const {
    return are_independent<kChannels, static_cast<int>(kStrips)>(
        strips, static_cast<int64_t>(rack.samples()));
  }

  Rack rack{format_named("Stereo"), kStrips, 32, 1};
  const SChannelStrip_Alg_Context* strips[kStrips];
};

TEST_F(Independence, HoldsOfPiecesThatEndWhereOthersBegin) {
  EXPECT_TRUE(independent());
}

TEST_F(Independence, HoldsOfOutputsThatAreTheirOwnInputs) {
  rack.in_place(0, 0);
  EXPECT_TRUE(independent());
  for (std::size_t i = 0; i < kStrips; ++i) {
    for (std::size_t c = 0; c < kChannels; ++c) rack.in_place(i, c);
  }
  EXPECT_TRUE(independent());
}

TEST_F(Independence, HoldsWhereOnlyWhatIsReadIsShared) {
  for (auto& context : rack.contexts) {
    context.inputs = rack.contexts[0].inputs;
    context.dynCoefs = rack.contexts[0].dynCoefs;
    context.eqTargetCoefs = rack.contexts[0].eqTargetCoefs;
    context.sampleCount = rack.contexts[0].sampleCount;
    context.keyInputIndex = rack.contexts[0].keyInputIndex;
  }
  EXPECT_TRUE(independent());
}

TEST_F(Independence, HoldsOfKeysThatAreNotSelected) {
  rack.inputs[1][kKey] = rack.output(2, 0);
  rack.keys[1] = 0;
  EXPECT_TRUE(independent());
  rack.keys[1] = static_cast<int32_t>(kKey);
  EXPECT_FALSE(independent());
}

// Some allocators place buffers at addresses whose low bits are equal.
TEST_F(Independence, HoldsOfPiecesThatLiePowersOfTwoApart) {
  for (int bit = 28; bit < 47; ++bit) {
    const auto address = reinterpret_cast<uintptr_t>(rack.output(0, 0)) ^ uintptr_t { 1 } << bit;
    rack.outputs[1][0] = reinterpret_cast<float*>(address);
    EXPECT_TRUE(independent()) << bit;
  }
}

TEST_F(Independence, EndsWithASingleSample) {
  for (std::size_t c = 0; c < kChannels; ++c) {
    for (const int step : {-1, 1}) {
      rack.outputs[1][c] += step;
      EXPECT_FALSE(independent()) << c << ' ' << step;
      rack.outputs[1][c] -= step;
    }
  }
  ++rack.inputs[1][rack.inputs_of_each() - 1];
  rack.keys[1] = static_cast<int32_t>(rack.inputs_of_each()) - 1;
  EXPECT_FALSE(independent());
}

TEST_F(Independence, EndsWithASingleElementOfARecord) {
  const SChannelStrip_Alg_Context before = rack.contexts[1];
  const auto expect_dependent = [&](const char* what) {
    EXPECT_FALSE(independent()) << what;
    rack.contexts[1] = before;
  };
  for (const int step : {-1, 1}) {
    rack.contexts[1].dynState += step;
    expect_dependent("dynState");
    rack.contexts[1].eqState += step;
    expect_dependent("eqState");
    rack.contexts[1].eqDezipCoefs += step;
    expect_dependent("eqDezipCoefs");
    rack.meter_pointers[1] += step;
    expect_dependent("meters");
    rack.meter_pointers[1] -= step;
  }
}

TEST_F(Independence, EndsWhereAnInputIsWritten) {
  rack.inputs[3][0] = rack.output(0, 1);
  EXPECT_FALSE(independent());
}

TEST_F(Independence, EndsWhereAnInPlaceBufferHasAnotherReader) {
  rack.in_place(2, 1);
  rack.inputs[1][0] = rack.input(2, 1);
  EXPECT_FALSE(independent());
}

// A host may keep its words anywhere, even within an output.
TEST_F(Independence, EndsWhereWhatIsReadLiesInWhatIsWritten) {
  const SChannelStrip_Alg_Context before = rack.contexts[2];
  const auto expect_dependent = [&](const char* what) {
    EXPECT_FALSE(independent()) << what;
    rack.contexts[2] = before;
  };
  float* const output = rack.output(1, 0);
  rack.contexts[2].dynCoefs = reinterpret_cast<const Dyn_SCoefsBlock*>(output + 31);
  expect_dependent("dynCoefs");
  rack.contexts[2].eqTargetCoefs = reinterpret_cast<const EQ_SCoefs*>(output + 31);
  expect_dependent("eqTargetCoefs");
  rack.contexts[2].sampleCount = &rack.dyn_state[0].gateOpen;
  expect_dependent("sampleCount");
  rack.contexts[2].keyInputIndex = &rack.dyn_state[0].gateOpen;
  rack.dyn_state[0].gateOpen = 0;
  expect_dependent("keyInputIndex");
}

// Copies what `pointer` points to into an instance's output, and redirects the pointer there.
template <typename T>
void move_into(float* output, T*& pointer, std::size_t count) {
  std::memcpy(output, pointer, count * sizeof(T));
  pointer = reinterpret_cast<T*>(output);
}

TEST_F(Independence, EndsWhereAPointerLiesInWhatIsWritten) {
  float* const output = rack.output(1, 0);
  const SChannelStrip_Alg_Context before = rack.contexts[2];
  const auto expect_dependent = [&](const char* what) {
    EXPECT_FALSE(independent()) << what;
    rack.contexts[2] = before;
  };
  move_into(output, rack.contexts[2].inputs, rack.inputs_of_each());
  expect_dependent("inputs");
  move_into(output, rack.contexts[2].outputs, kChannels);
  expect_dependent("outputs");
  move_into(output, rack.contexts[2].meterOutputs, 1);
  expect_dependent("meterOutputs");
  move_into(output, strips[2], 1);
  expect_dependent("context");
}

}  // namespace
}  // namespace channelstrip::test::independence_test
