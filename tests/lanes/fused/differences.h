// Fused steps made of doubles against the processor's instruction.

#pragma once

#include <bit>
#include <cmath>
#include <optional>

#include "by_doubles.h"
#include "triples.h"

namespace channelstrip::test {

struct FusedDifferences {
  uint64_t count = 0;
  std::optional<Triple> first = {};
};

// A NaN's bits are not defined; every other result is compared to the bit.
inline bool same_result(float a, float b) {
  return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b) || (a != a && b != b);
}

// Draws batches of triples of one kind and runs all of the steps on them.
class FusedComparison {
 public:
  static constexpr size_t kAtATime = 1024;

  FusedComparison(uint64_t seed, FusedTriples::Kind kind) : triples_(seed), kind_(kind) {}

  void draw() {
    for (size_t i = 0; i < kAtATime; ++i) {
      const Triple triple = triples_.next(kind_);
      a_[i] = triple.a, b_[i] = triple.b, c_[i] = triple.c;
    }
    for (size_t i = 0; i < kAtATime; ++i) expected_[i] = std::fma(a_[i], b_[i], c_[i]);
  }

  void add(FusedSteps* steps, FusedDifferences& differences) const {
    float results[kAtATime];
    steps(a_, b_, c_, results, kAtATime);
    for (size_t i = 0; i < kAtATime; ++i) {
      if (same_result(results[i], expected_[i])) continue;
      if (differences.count++ == 0) differences.first = Triple{a_[i], b_[i], c_[i]};
    }
  }

 private:
  FusedTriples triples_;
  FusedTriples::Kind kind_;
  float a_[kAtATime], b_[kAtATime], c_[kAtATime], expected_[kAtATime];
};

}  // namespace channelstrip::test
