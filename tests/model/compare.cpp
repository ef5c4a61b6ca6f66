#include "compare.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "scene_values.h"

namespace channelstrip::test {
namespace {

// Errors of different orders of a sum are of one size, but three may happen to lie close together
// with a fourth outside: a fourth order was seen up to 7 spreads away.
constexpr double kSpreads = 16.0;

using Values = std::vector<Value>;

std::vector<Values> values_of_each(std::span<const Scene> scenes) {
  std::vector<Values> all;
  for (const Scene& scene : scenes) all.push_back(values_of(scene));
  return all;
}

bool same(const Value& a, const Value& b) {
  return a.bits == b.bits || (std::isnan(a.number) && std::isnan(b.number));
}

std::string describe(const Value& model, const Value& library) {
  return fmt::format("{}[{}] of instance {}: model {:.9g} ({:#x}), library {:.9g} ({:#x})",
                     model.field, model.index, model.instance, model.number, model.bits,
                     library.number, library.bits);
}

struct Extent {
  double spread = 0.0, peak = 0.0;
};

using Extents = std::map<std::pair<std::size_t, Quantity>, Extent>;

Extents extents_of(const std::vector<Values>& models) {
  Extents extents;
  for (std::size_t i = 0; i < models.front().size(); ++i) {
    const Value& first = models.front()[i];
    if (first.quantity == Quantity::kFixed) continue;
    Extent& extent = extents[{first.instance, first.quantity}];
    double least = first.number, most = first.number;
    for (const Values& values : models) {
      least = std::min(least, values[i].number);
      most = std::max(most, values[i].number);
    }
    extent.spread = std::max(extent.spread, most - least);
    extent.peak = std::max(extent.peak, std::fabs(first.number));
  }
  return extents;
}

}  // namespace

std::string first_difference(std::span<const Scene> legal, const Scene& actual) {
  const std::vector<Values> models = values_of_each(legal);
  const Values library = values_of(actual);
  for (std::size_t i = 0; i < library.size(); ++i) {
    const auto agrees = [&](const Values& values) { return same(values[i], library[i]); };
    if (std::ranges::none_of(models, agrees)) return describe(models.front()[i], library[i]);
  }
  return {};
}

std::string first_excess(std::span<const Scene> legal, const Scene& actual, double floor) {
  const std::vector<Values> models = values_of_each(legal);
  const Values library = values_of(actual);
  Extents extents = extents_of(models);
  for (std::size_t i = 0; i < library.size(); ++i) {
    const Value& model = models.front()[i];
    if (same(model, library[i]) || model.quantity == Quantity::kChosen) continue;
    if (model.quantity == Quantity::kFixed) return describe(model, library[i]);
    const Extent& extent = extents[{model.instance, model.quantity}];
    const double bound = kSpreads * extent.spread + floor * std::max(extent.peak, 1.0);
    const bool within = std::fabs(model.number - library[i].number) <= bound;
    if (!within) return describe(model, library[i]) + fmt::format("; bound {:.3g}", bound);
  }
  return {};
}

}  // namespace channelstrip::test
