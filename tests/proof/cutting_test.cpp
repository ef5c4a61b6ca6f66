// One call over many samples equals several calls over parts of them.

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include <utility>

#include "scenes.h"

namespace channelstrip::test::cutting_test {
namespace {

class Cutting : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Cutting, every_format(), format_name);

constexpr int kTrials = 40;

void move_buffers(Instance& it, int samples) {
  const auto distance = static_cast<std::size_t>(samples);  // negative ones wrap around
  for (std::size_t& at : it.inputs_at) at += distance;
  for (std::size_t& at : it.outputs_at) at += distance;
}

// One instance, with its buffers connected in any way: a call processes it block by block.
Scene one_instance(Random& random, const host::StemFormat& format, Kind kind) {
  Scene scene = some_scene(random, format, kind);
  scene.range = {0};
  scene.instances[0].count = 16 * random.integer(2, kMostSamples / 16);
  return scene;
}

template <typename Piece>
Scene in_pieces(const host::StemFormat& format, Scene scene, Piece piece) {
  const int whole = scene.instances[0].count;
  for (int done = 0; done < whole;) {
    const int samples = piece(whole - done);
    scene.instances[0].count = samples;
    scene = by_library(format, std::move(scene));
    move_buffers(scene.instances[0], samples);
    done += samples;
  }
  move_buffers(scene.instances[0], -whole);
  scene.instances[0].count = whole;
  return scene;
}

template <typename Piece>
void expect_same_in_pieces(const host::StemFormat& format, Piece piece) {
  for (const Kind kind : {Kind::kOrderFree, Kind::kEqualiser, Kind::kDynamics}) {
    Random random(1);
    for (int trial = 0; trial < kTrials; ++trial) {
      const Scene scene = one_instance(random, format, kind);
      const Scene pieces = in_pieces(format, scene, piece);
      ASSERT_EQ(difference(by_library(format, scene), pieces), "") << "trial " << trial;
    }
  }
}

TEST_P(Cutting, IntoSingleBlocksChangesNothing) {
  expect_same_in_pieces(GetParam(), [](int) { return 16; });
}

TEST_P(Cutting, IntoAnyBlocksChangesNothing) {
  Random random(2);
  expect_same_in_pieces(GetParam(),
                        [&random](int rest) { return 16 * random.integer(1, rest / 16); });
}

// A count from 16 n - 15 to 16 n asks for n blocks.
TEST_P(Cutting, APieceMayAskForLessThanItsLastBlock) {
  Random random(3);
  for (int trial = 0; trial < kTrials; ++trial) {
    const Scene scene = one_instance(random, GetParam(), Kind::kDynamics);
    Scene less = scene;
    less.instances[0].count -= random.integer(1, 15);
    less = by_library(GetParam(), std::move(less));
    less.instances[0].count = scene.instances[0].count;
    ASSERT_EQ(difference(by_library(GetParam(), scene), less), "") << "trial " << trial;
  }
}

}  // namespace
}  // namespace channelstrip::test::cutting_test
