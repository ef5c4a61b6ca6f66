// Fused steps on processors that have no instruction for them: the same bits all the same.

#include <gtest/gtest.h>
#include <tests/proof/control_word.h>

#include <string>

#include "differences.h"

namespace channelstrip::fused_test {
namespace {

using namespace test;

constexpr int kBatches = 100;

class FusedByDoubles : public testing::TestWithParam<FusedTriples::Kind> {
 protected:
  static FusedDifferences differences(FusedSteps* steps) {
    FusedComparison comparison(1, GetParam());
    FusedDifferences found;
    for (int i = 0; i < kBatches; ++i) {
      comparison.draw();
      comparison.add(steps, found);
    }
    return found;
  }

  static std::string first_of(const FusedDifferences& found) {
    if (!found.first) return "";
    const auto& [a, b, c] = *found.first;
    char text[100];
    std::snprintf(text, sizeof text, "%a * %a + %a", static_cast<double>(a), static_cast<double>(b),
                  static_cast<double>(c));
    return text;
  }

  static void expect_the_instructions_bits() {
    for (FusedSteps* const steps : {fused_sse2, fused_lanes_sse2, fused_avx, fused_lanes_avx}) {
      EXPECT_EQ(first_of(differences(steps)), "");
    }
  }
};

TEST(FusedSteps, AreTestedWhereThereIsNoInstruction) {
  EXPECT_TRUE(is_made_of_doubles_sse2());
  EXPECT_TRUE(is_made_of_doubles_avx());
}

TEST_P(FusedByDoubles, HasTheInstructionsBits) {
  expect_the_instructions_bits();
}

TEST_P(FusedByDoubles, TreatsDenormalsAsTheInstructionDoes) {
  for (const uint64_t mode : kDenormalModes) {
    const InModes in(0, mode);
    expect_the_instructions_bits();
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FusedByDoubles,
                         testing::Values(FusedTriples::kAnything, FusedTriples::kNeighbours,
                                         FusedTriples::kShort, FusedTriples::kAddendTies,
                                         FusedTriples::kProductTies, FusedTriples::kDenormals,
                                         FusedTriples::kDenormalTies, FusedTriples::kCancellation,
                                         FusedTriples::kSpecial));

// Rounding to double first is wrong on these kinds, which is what makes the others a test.
class FusedTwice : public FusedByDoubles {};

TEST_P(FusedTwice, HasOtherBits) {
  EXPECT_GT(differences(fused_twice).count, 100u);
}

INSTANTIATE_TEST_SUITE_P(Kinds, FusedTwice,
                         testing::Values(FusedTriples::kAddendTies, FusedTriples::kProductTies,
                                         FusedTriples::kDenormalTies));

}  // namespace
}  // namespace channelstrip::fused_test
