// Instances side by side in the lanes of one call, compared with the model, which processes them
// one after the other.

#pragma once

#include <gtest/gtest.h>
#include <tests/support/every_format.h>

#include <iterator>
#include <string>

#include "rack.h"

namespace channelstrip::test {

// The first difference between the library's rack and the model's after a call; "" if there is
// none. The library may use any order of a section's sums, but the same one in all instances,
// whatever their lane.
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
  // Compares racks changed by wire(rack), in calls of one block and of several.
  template <typename Wire>
  static void expect_the_models(Wire wire) {
    for (unsigned i = 0; i < std::size(kCounts); ++i) expect_the_models(i, wire);
  }

  // The same with wire(rack, i), for every instance i that has neighbours on both sides.
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
