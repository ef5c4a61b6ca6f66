#include "automation.h"

#include <algorithm>
#include <cmath>

#include "value.h"

namespace channelstrip::host {
namespace {

constexpr std::string_view kWhat = "must be an array of tables, [[at]]";

double time_of(const toml::table& keys, const Layer& layer) {
  const toml::node* time = keys.get("time");
  if (!time) fail(layer.place(keys.source(), "time"), "is missing, in seconds");
  const Place place = layer.place(time->source(), "time");
  const double seconds = placing(place, [&] { return number_of(*time); });
  if (!std::isfinite(seconds) || seconds < 0) fail(place, "must be finite and 0 s or more");
  return seconds;
}

}  // namespace

std::vector<Moment> moments(const toml::table& preset, const std::string& file) {
  const toml::node* at = preset.get("at");
  if (!at) return {};
  const Layer own{Layer::Kind::kPreset, file};
  if (!at->is_array()) fail(own.place(at->source(), "at"), kWhat);

  const Layer layer{Layer::Kind::kChange, file};
  std::vector<Moment> result;
  std::map<double, const toml::table*> by_time;
  for (const toml::node& element : *at->as_array()) {
    const toml::table* keys = element.as_table();
    if (!keys) fail(own.place(element.source(), "at"), kWhat);
    const double time = time_of(*keys, layer);
    if (!by_time.emplace(time, keys).second) {
      fail(layer.place(keys->get("time")->source(), "time"),
           fmt::format("another change is at {} s", time));
    }
  }
  result.reserve(by_time.size());
  for (const auto& [time, keys] : by_time) result.push_back({time, layer, *keys});
  return result;
}

}  // namespace channelstrip::host
