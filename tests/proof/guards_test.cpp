// Nothing outside the host's records and buffers is touched, and nothing that belongs to the host
// is written.

#include <gtest/gtest.h>
#include <tests/model/compare.h>
#include <tests/support/every_format.h>
#include <tests/support/strip.h>

#include "guarded_scene.h"
#include "wirings.h"

namespace channelstrip::test::guards_test {
namespace {

class Guards : public EveryFormat {
 protected:
  static void expect_the_models_result(const Scene& scene, Guard guard) {
    const GuardedScene guarded(scene, channels(), guard);
    const auto range = guarded.range();
    entry_point(GetParam())(range.data(), range.data() + range.size());
    Scene result = scene;
    guarded.copy_results(result);
    ASSERT_EQ(first_difference(by_each_order(GetParam(), scene), result), "");
  }

  // A count of 0 stands for a random one; the others lie around whole blocks.
  static void expect_no_stray_access(Guard guard) {
    Random random(1);
    for (const int count : {0, 0, 0, 0, 1, 4, 15, 16, 17, 31, 32, 33, 96, 97, 112}) {
      Scene scene = independent_scene(random, GetParam(), Kind::kOrderFree);
      if (count != 0) {
        for (Instance& it : scene.instances) it.count = count;
      }
      expect_the_models_result(scene, guard);
    }
  }

  static void expect_no_stray_access_however_wired(Guard guard) {
    Random random(2);
    for (Wiring* const wire : kEveryWiring) {
      Scene scene = independent_scene(random, GetParam(), Kind::kOrderFree);
      wire(scene, channels());
      expect_the_models_result(scene, guard);
    }
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Guards, every_format(), format_name);

TEST_P(Guards, NothingBehindARecordOrBufferIsTouched) {
  expect_no_stray_access(Guard::kBehind);
}
TEST_P(Guards, NothingBeforeARecordOrBufferIsTouched) {
  expect_no_stray_access(Guard::kBefore);
}
TEST_P(Guards, NothingBehindIsTouchedHoweverBuffersAreWired) {
  expect_no_stray_access_however_wired(Guard::kBehind);
}
TEST_P(Guards, NothingBeforeIsTouchedHoweverBuffersAreWired) {
  expect_no_stray_access_however_wired(Guard::kBefore);
}

}  // namespace
}  // namespace channelstrip::test::guards_test
