// Compares the library with the model.

#include <tests/model/compare.h>
#include <tests/model/run_scene.h>
#include <tests/model/scene_values.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "judge.h"

namespace channelstrip::test {
namespace {

using model::SumOrder;

// A general band may start with coefficients a little off its stable target. If they stay there for
// long, the signal grows without bound, and so do the differences between the orders of its sums.
bool ran_away(const Scene& scene) {
  return std::ranges::any_of(values_of(scene), [](const Value& value) {
    return value.quantity == Quantity::kSignal && !(std::fabs(value.number) < 1e6);
  });
}

std::string fault(const Scene& before, const Scene& after, const Format& format, Kind kind) {
  // If the result equals that of one legal order, the others aren't needed.
  Scene first = by_model(format.stem, before, SumOrder::kInputFirst);
  if (same_words(first, after)) return {};
  const std::array<Scene, 3> legal = {std::move(first),
                                      by_model(format.stem, before, SumOrder::kFeedbackFirst),
                                      by_model(format.stem, before, SumOrder::kProductsFirst)};
  if (kind == Kind::kOrderFree) return first_difference(legal, after);
  if (ran_away(legal.front())) return {};
  const double floor = kind == Kind::kEqualiser ? 0x1p-15 : 1e-4;  // as in the sweep
  return first_excess(legal, after, floor);
}

}  // namespace

std::string judge_call(Scene& scene, const Format& format, Kind kind) {
  const Scene before = std::exchange(scene, by_library(format.entry, scene));
  return fault(before, scene, format, kind);
}

}  // namespace channelstrip::test
