#include "state.h"

#include <fmt/format.h>
#include <toml++/toml.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "../design/channel_layout.h"
#include "../design/link_map.h"
#include "../design/stem_format.h"
#include "../preset/value.h"

namespace channelstrip::host {
namespace {

// The shortest text that reads back as this value.
std::string toml_value(const Parameter& p, double value) {
  if (p.kind == Kind::kSwitch) return value != 0 ? "true" : "false";
  if (p.kind == Kind::kWord) {
    return fmt::format("\"{}\"", p.words[static_cast<std::size_t>(value)]);
  }
  if (p.key == "ratio" && value >= kInfiniteRatio) return "inf";
  return fmt::format("{}", value);
}

std::string toml_line(std::size_t parameter, double value) {
  const Parameter& p = parameters()[parameter];
  return fmt::format("{} = {}\n", p.key, toml_value(p, value));
}

bool is_initial(const Values& values, std::size_t i) {
  return values.of[i] == parameters()[i].initial;
}

class Writer {
 public:
  explicit Writer(const Values& values) : values_(values) {}

  std::string text() {
    write_group(0, "");
    write_bands();
    write_switched(kKeyFilterGroup, "[key_filter]");
    for (std::size_t group = kKeyFilterGroup + 1; group < kGroups.size(); ++group) {
      const std::string title = fmt::format("[{}]", kGroups[group].table);
      const bool has_switch = index_of(group, "on").has_value();
      has_switch ? write_switched(group, title) : write_group(group, title);
    }
    write_links();
    return text_;
  }

 private:
  template <class Call>
  void for_each(std::size_t group, Call call) const {
    for (std::size_t i = 0; i < kParameterCount; ++i) {
      if (parameters()[i].group == group) call(i, parameters()[i]);
    }
  }

  bool differs(std::size_t group) const {
    bool any = false;
    for_each(group, [&](std::size_t i, const Parameter&) { any |= !is_initial(values_, i); });
    return any;
  }

  void begin(std::string_view title) {
    if (title.empty()) return;
    text_ += fmt::format("{}{}\n", text_.empty() ? "" : "\n", title);
  }

  void write_group(std::size_t group, std::string_view title) {
    if (!differs(group)) return;
    begin(title);
    for_each(group, [&](std::size_t i, const Parameter&) {
      if (!is_initial(values_, i)) text_ += toml_line(i, values_.of[i]);
    });
  }

  void write_bands() {
    std::size_t count = kBandCount;
    while (count > 0 && !differs(kFirstBandGroup + count - 1)) --count;
    for (std::size_t b = 0; b < count; ++b) write_table(kFirstBandGroup + b, "[[eq]]");
  }

  void write_switched(std::size_t group, std::string_view title) {
    if (differs(group)) write_table(group, title);
  }

  // A table whose presence switches it on.
  void write_table(std::size_t group, std::string_view title) {
    begin(title);
    const bool is_band = group <= kKeyFilterGroup;
    const EqBand band = is_band ? band_of(values_, group - kFirstBandGroup) : EqBand{};
    std::string idle;
    bool has_gate = false;
    for_each(group, [&](std::size_t i, const Parameter& p) {
      const double value = values_.of[i];
      if (p.key == "on") {
        if (value == 0) text_ += "on = false\n";
      } else if (p.key == "gate") {
        has_gate = value != 0;
      } else if (p.key == "hysteresis") {
        // Its presence makes a gate.
        if (!has_gate && is_initial(values_, i)) return;
        if (!has_gate) text_ += "gate = false\n";
        text_ += toml_line(i, value);
      } else if (!is_initial(values_, i)) {
        const bool is_idle =
            p.band_key && p.band_key->objection && !p.band_key->objection(band).empty();
        if (!is_idle) {
          text_ += toml_line(i, value);
        } else {
          idle += fmt::format("{}{} = {}", idle.empty() ? "" : ", ", p.key, toml_value(p, value));
        }
      }
    });
    if (!idle.empty()) text_ += fmt::format("{} = {{ {} }}\n", kIdle, idle);
  }

  void write_links() {
    if (values_.links.empty()) return;
    if (!differs(kGroups.size() - 1)) begin("[link]");
    for (const auto& [format, map] : values_.links) {
      text_ += fmt::format("\"{}\" = \"{}\"\n", format.view(), map.view());
    }
  }

  const Values& values_;
  std::string text_;
};

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

std::string write_state(const Values& values) {
  return Writer(values).text();
}

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
