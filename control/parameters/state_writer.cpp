#include <fmt/format.h>

#include "../preset/band_keys.h"
#include "state.h"

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

}  // namespace

std::string write_state(const Values& values) {
  return Writer(values).text();
}

}  // namespace channelstrip::host
