#include <fmt/format.h>
#include <toml++/toml.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "../design/channel_layout.h"
#include "../design/link_map.h"
#include "../library/stem_format.h"
#include "../preset/value.h"
#include "state.h"

namespace channelstrip::host {
namespace {

class Reader {
 public:
  explicit Reader(std::vector<StateProblem>& problems) : problems_(problems) {}

  Values read(const toml::table& root) {
    for (const auto& [key, node] : root) read_entry(key, node);
    return values_;
  }

 private:
  void note(const toml::source_region& place, std::string what) {
    problems_.push_back({place.begin.line, place.begin.column, std::move(what)});
  }

  void read_entry(const toml::key& key, const toml::node& node) {
    const std::string_view name = key.str();
    if (name == "name") return;
    if (name == "at") return note(key.source(), "changes in time are left out");
    if (name == "eq") return read_bands(key, node);
    for (std::size_t group = kKeyFilterGroup; group < kGroups.size(); ++group) {
      if (name == kGroups[group].table) return read_table(group, key.source(), node);
    }
    read_value(0, key, node);
  }

  void read_bands(const toml::key& key, const toml::node& node) {
    const toml::array* tables = node.as_array();
    if (!tables) return note(key.source(), "eq must be an array of tables, [[eq]]");
    std::size_t band = 0;
    for (const toml::node& table : *tables) {
      if (band == kBandCount) return note(table.source(), "bands beyond the eighth are left out");
      read_table(kFirstBandGroup + band++, table.source(), table);
    }
  }

  void read_table(std::size_t group, const toml::source_region& place, const toml::node& node) {
    const toml::table* table = node.as_table();
    if (!table) return note(place, fmt::format("{} must be a table", kGroups[group].table));
    if (const auto on = index_of(group, "on")) values_.of[*on] = 1;
    if (const auto gate = index_of(group, "gate"); gate && table->contains("hysteresis")) {
      values_.of[*gate] = 1;
    }
    const bool is_link = kGroups[group].table == "link";
    for (const auto& [key, value] : *table) {
      if (group <= kKeyFilterGroup && key.str() == kIdle && value.is_table()) {
        for (const auto& [idle, idle_value] : *value.as_table())
          read_value(group, idle, idle_value);
      } else if (is_link && find_stem_format(key.str())) {
        read_link(*find_stem_format(key.str()), value);
      } else {
        read_value(group, key, value);
      }
    }
  }

  void read_link(const StemFormat& format, const toml::node& node) {
    try {
      const ChannelLayout layout = default_layout(format);
      const std::string text = text_of(parse_link_map(text_of(node), layout), layout);
      values_.links[format.name] = std::string_view(text);
    } catch (const std::invalid_argument& error) {
      note(node.source(), error.what());
    }
  }

  void read_value(std::size_t group, const toml::key& key, const toml::node& node) {
    const auto index = index_of(group, key.str());
    if (!index) return note(key.source(), fmt::format("unknown key {}", key.str()));
    const Parameter& p = parameters()[*index];
    try {
      double value = p.band_key ? plain_value(node, *p.band_key) : plain_value(node, *p.strip_key);
      if (std::isnan(value)) throw std::invalid_argument("must be a number");
      const bool is_infinite = p.key == "ratio" && value >= kInfiniteRatio;
      const double used = nearest_value(p, value);
      if (used != value && !is_infinite) {
        note(node.source(), fmt::format("{} {} is taken as {}", p.key, value, used));
      }
      values_.of[*index] = used;
    } catch (const std::invalid_argument& error) {
      note(node.source(), fmt::format("{} {}", p.key, error.what()));
    }
  }

  // Without the limits of numbers.
  template <class Settings>
  static double plain_value(const toml::node& node, const Key<Settings>& key) {
    return key.access.kind == Kind::kNumber ? number_of(node) : value_of(node, key);
  }

  std::vector<StateProblem>& problems_;
  Values values_;
};

}  // namespace

std::optional<Values> read_state(std::string_view text, std::vector<StateProblem>& problems) {
  try {
    const Values values = Reader(problems).read(toml::parse(text));
    std::ranges::sort(problems, {}, [](const StateProblem& problem) {
      return std::pair(problem.line, problem.column);
    });
    return values;
  } catch (const toml::parse_error& error) {
    const auto place = error.source().begin;
    problems.push_back({place.line, place.column, std::string(error.description())});
    return std::nullopt;
  }
}

}  // namespace channelstrip::host
