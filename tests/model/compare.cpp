#include "compare.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "scene_values.h"

namespace channelstrip::test {
namespace {

// Different orders of a sum have errors of one size, but three results may happen to lie close
// together and a fourth far off: in a million quads, a fourth order was up to 14 spreads away.
constexpr double kSpreads = 64.0;

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

bool same_samples(const std::vector<float>& a, const std::vector<float>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0);
}

template <typename Record>
bool same_record(const Record& a, const Record& b) {
  return std::memcmp(&a, &b, sizeof(Record)) == 0;
}

bool same_instance(const Instance& a, const Instance& b) {
  return same_record(a.dyn_coefs, b.dyn_coefs) && same_record(a.dyn_state, b.dyn_state) &&
         same_record(a.eq_targets, b.eq_targets) && same_record(a.eq_coefs, b.eq_coefs) &&
         same_record(a.eq_state, b.eq_state) && same_record(a.meters, b.meters) &&
         a.key_input == b.key_input && a.count == b.count && a.inputs_at == b.inputs_at &&
         a.outputs_at == b.outputs_at && a.settings_of == b.settings_of &&
         a.memory_of == b.memory_of;
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

Deviation deviation(std::span<const Scene> legal, const Scene& actual, double floor) {
  const std::vector<Values> models = values_of_each(legal);
  const Values library = values_of(actual);
  Extents extents = extents_of(models);
  Deviation result;
  for (std::size_t i = 0; i < library.size(); ++i) {
    const Value& model = models.front()[i];
    if (same(model, library[i]) || model.quantity == Quantity::kChosen) continue;
    double units = std::numeric_limits<double>::infinity(), bound = 0.0;
    if (model.quantity != Quantity::kFixed) {
      const Extent& extent = extents[{model.instance, model.quantity}];
      bound = kSpreads * extent.spread + floor * std::max(extent.peak, 1.0);
      const double distance = std::fabs(model.number - library[i].number);
      if (distance <= bound) units = distance / bound;
    }
    result.largest = std::max(result.largest, units);
    if (units > 1.0 && result.first_excess.empty()) {
      result.first_excess = describe(model, library[i]) + fmt::format("; bound {:.3g}", bound);
    }
  }
  return result;
}

std::string first_excess(std::span<const Scene> legal, const Scene& actual, double floor) {
  return deviation(legal, actual, floor).first_excess;
}

bool same_words(const Scene& a, const Scene& b) {
  return a.range == b.range && same_samples(a.arena, b.arena) &&
         std::ranges::equal(a.instances, b.instances, same_instance);
}

}  // namespace channelstrip::test
