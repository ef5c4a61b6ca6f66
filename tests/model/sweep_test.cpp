// The built library against the plain-loop model, over all stem formats.

#include <gtest/gtest.h>

#include "run_scene.h"
#include "sweep.h"
#include "tests/support/every_format.h"
#include "tests/support/strip.h"

namespace channelstrip::test::sweep_test {
namespace {

constexpr uint32_t kFirstSeed = 1;

// In each of four tests: 120,000 per format. Under an emulator, fewer.
#if !defined(CHANNELSTRIP_SWEEP_QUADS)
#define CHANNELSTRIP_SWEEP_QUADS 30'000
#endif
constexpr int64_t kQuads = CHANNELSTRIP_SWEEP_QUADS;

class Sweep : public EveryFormat {
 protected:
  static Findings swept(Subject subject) {
    const Processor library = [entry = entry_point(GetParam())](const Scene& scene) {
      return by_library(entry, scene);
    };
    Findings found = sweep(GetParam(), library, subject, kFirstSeed, kQuads);
    EXPECT_EQ(found.first_failure, "");
    EXPECT_GE(found.quads, kQuads);
    return found;
  }
};

TEST_P(Sweep, OrderFreeFiltersGiveTheModelsBits) {
  swept(Subject::kOrderFree);
}

TEST_P(Sweep, LevelsOnEveryEdgeGiveTheModelsBits) {
  EXPECT_EQ(swept(Subject::kEdges).edges.missing(), "");
}

TEST_P(Sweep, GeneralBandsStayWithinTheSpreadOfLegalOrders) {
  EXPECT_LE(swept(Subject::kEqualiser).deviation, 1.0);
}

TEST_P(Sweep, GeneralDynamicsStayWithinTheSpreadOfLegalOrders) {
  EXPECT_LE(swept(Subject::kDynamics).deviation, 1.0);
}

INSTANTIATE_TEST_SUITE_P(Formats, Sweep, every_format(), format_name);

}  // namespace
}  // namespace channelstrip::test::sweep_test
