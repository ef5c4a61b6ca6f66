// Buffers at every offset that a float can have in a cache line of 64 bytes.

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include "scenes.h"

namespace channelstrip::test::alignment_test {
namespace {

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

// Buffers are a multiple of a line apart.
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
}  // namespace channelstrip::test::alignment_test
