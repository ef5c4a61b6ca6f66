// Instances side by side in one call, judged by the model, which takes one after the other.

#pragma once

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include <iterator>
#include <string>

#include "rack.h"

namespace channelstrip::test {

// How the library's rack differs from the model's after a call; "" if it doesn't. A section's sums
// may have any order, but in all instances, wherever they stand, the same.
template <typename Wire>
std::string difference_from_model(const host::StemFormat& format, std::size_t instances,
                                  int32_t count, unsigned seed, Wire wire) {
  using model::SumOrder;
  Rack library(format, instances, count, seed);
  wire(library);
  library.process();
  std::string first;
  for (const SumOrder order :
       {SumOrder::kInputFirst, SumOrder::kFeedbackFirst, SumOrder::kProductsFirst}) {
    Rack model(format, instances, count, seed);
    wire(model);
    model.process_by_model(order);
    const std::string found = difference(model, library);
    if (found.empty()) return {};
    if (first.empty()) first = found;
  }
  return first;
}

class BesideEachOther : public EveryFormat {
 protected:
  // wire(rack) over calls of one block and of several.
  template <typename Wire>
  static void expect_the_models(Wire wire) {
    for (unsigned i = 0; i < std::size(kCounts); ++i) expect_the_models(i, wire);
  }

  // wire(rack, i) for every i that has neighbours on both sides.
  template <typename Wire>
  static void expect_the_models_with_one(Wire wire) {
    for (unsigned i = 1; i + 1 < enough_instances(GetParam()); ++i) {
      expect_the_models(i, [=](Rack& rack) { wire(rack, i); });
    }
  }

 private:
  static constexpr int32_t kCounts[] = {16, 37, 64};

  template <typename Wire>
  static void expect_the_models(unsigned seed, Wire wire) {
    const int32_t count = kCounts[seed % std::size(kCounts)];
    EXPECT_EQ(difference_from_model(GetParam(), enough_instances(GetParam()), count, seed, wire),
              "")
        << "count " << count << ", seed " << seed;
  }
};

}  // namespace channelstrip::test
