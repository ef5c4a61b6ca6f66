// Wherever the buffers of instances lie and however they are connected, the result is the model's,
// which goes through instances, blocks, quads, stages and channels in their order.

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include "scenes.h"
#include "wirings.h"

namespace channelstrip::test::buffers_test {
namespace {

class Wirings : public EveryFormat {
 protected:
  static void expect_the_models(Wiring* wire) {
    Random random(1);
    for (int trial = 0; trial < 20; ++trial) {
      Scene scene = independent_scene(random, GetParam(), Kind::kOrderFree);
      wire(scene, channels());
      ASSERT_EQ(difference_from_model(GetParam(), scene), "") << "trial " << trial;
    }
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Wirings, every_format(), format_name);

TEST_P(Wirings, InPlace) {
  expect_the_models(in_place);
}
TEST_P(Wirings, NeighboursSwapped) {
  expect_the_models(neighbours_swapped);
}
TEST_P(Wirings, OutputsRotatedUp) {
  expect_the_models(rotated_up);
}
TEST_P(Wirings, OutputsRotatedDown) {
  expect_the_models(rotated_down);
}
TEST_P(Wirings, OutputsReversed) {
  expect_the_models(reversed);
}
TEST_P(Wirings, OneInputBehindAllChannels) {
  expect_the_models(one_input_behind_all);
}
TEST_P(Wirings, OneInputBehindAllChannelsAndWrittenByTheFirst) {
  expect_the_models(one_input_behind_all_and_written_first);
}
TEST_P(Wirings, OneOutputBehindAllChannels) {
  expect_the_models(one_output_behind_all);
}
TEST_P(Wirings, OneOutputBehindPairsOfChannels) {
  expect_the_models(one_output_behind_pairs);
}
TEST_P(Wirings, TheLastOutputIsEveryChannelsInput) {
  expect_the_models(input_of_every_channel_is_the_last_output);
}
TEST_P(Wirings, AKeyThatIsAMainInput) {
  expect_the_models(key_is_a_main_input);
}
TEST_P(Wirings, AKeyThatIsAMainInputProcessedInPlace) {
  expect_the_models(key_is_a_main_input_in_place);
}
TEST_P(Wirings, AKeyThatIsAnOutput) {
  expect_the_models(key_is_an_output);
}
TEST_P(Wirings, AKeyThatIsAnOutputOfTheInstanceBefore) {
  expect_the_models(key_is_an_output_of_the_instance_before);
}
TEST_P(Wirings, InstancesInAChain) {
  expect_the_models(chained);
}
TEST_P(Wirings, InstancesInAChainAgainstTheirOrder) {
  expect_the_models(chained_backwards);
}
TEST_P(Wirings, AllInstancesInPlaceOnOneSetOfBuffers) {
  expect_the_models(all_instances_in_place_on_one_set);
}
TEST_P(Wirings, EachInstanceTwiceInARow) {
  expect_the_models(each_instance_twice_in_a_row);
}
TEST_P(Wirings, EachInstanceAgainAtTheEnd) {
  expect_the_models(each_instance_again_at_the_end);
}

// Buffers at every offset that a float can have in a cache line of 64 bytes.
class Alignment : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Alignment, every_format(), format_name);

constexpr std::size_t kOffsets = 16;
static_assert(kStride - kMostSamples >= kOffsets, "buffers stay apart wherever they move");

template <typename Offset>
void move_buffers(Scene& scene, Offset offset) {
  for (Instance& it : scene.instances) {
    for (std::size_t& at : it.inputs_at) at += offset();
    for (std::size_t& at : it.outputs_at) at += offset();
  }
}

// The buffers are a multiple of a cache line apart.
TEST_P(Alignment, OfAllBuffersAlikeMayBeAnyFloats) {
  Random random(1);
  for (std::size_t offset = 0; offset < kOffsets; ++offset) {
    Scene scene = independent_scene(random, GetParam(), Kind::kOrderFree);
    move_buffers(scene, [=] { return offset; });
    ASSERT_EQ(difference_from_model(GetParam(), scene), "") << offset;
  }
}

TEST_P(Alignment, OfEachBufferMayBeAnyFloats) {
  Random random(2);
  for (int trial = 0; trial < 32; ++trial) {
    Scene scene = independent_scene(random, GetParam(), Kind::kOrderFree);
    move_buffers(scene, [&] { return static_cast<std::size_t>(random.integer(0, kOffsets - 1)); });
    ASSERT_EQ(difference_from_model(GetParam(), scene), "") << "trial " << trial;
  }
}

}  // namespace
}  // namespace channelstrip::test::buffers_test
