#include "value_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace channelstrip::host {
namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool same(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, lower, lower);
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlank = " \t\r\n";
  const std::size_t begin = std::min(text.find_first_not_of(kBlank), text.size());
  text.remove_prefix(begin);
  return text.substr(0, text.find_last_not_of(kBlank) + 1);
}

bool is_ratio(const Parameter& p) {
  return p.key == "ratio";
}

std::string number(double value) {
  return fmt::format("{:.4g}", value + 0.0);  // without a minus before 0
}

// What stands behind a number, as a factor.
std::optional<double> factor_of(std::string_view unit, const Parameter& p) {
  if (unit.empty() || same(unit, p.unit)) return 1;
  if (p.unit == "Hz" && (same(unit, "k") || same(unit, "kHz"))) return 1000;
  if (p.unit == "ms" && (same(unit, "s") || same(unit, "sec"))) return 1000;
  if (p.unit == "dB/oct" && same(unit, "dB")) return 1;
  if (is_ratio(p) && unit == ":1") return 1;
  return std::nullopt;
}

std::optional<double> switch_from(std::string_view text) {
  constexpr std::array<std::pair<std::string_view, double>, 8> kWords{{{"on", 1},
                                                                       {"off", 0},
                                                                       {"true", 1},
                                                                       {"false", 0},
                                                                       {"yes", 1},
                                                                       {"no", 0},
                                                                       {"1", 1},
                                                                       {"0", 0}}};
  for (const auto& [word, value] : kWords) {
    if (same(text, word)) return value;
  }
  return std::nullopt;
}

}  // namespace

std::string value_text(const Parameter& p, double value) {
  value = nearest_value(p, value);
  if (p.kind == Kind::kSwitch) return value != 0 ? "on" : "off";
  if (p.kind == Kind::kWord) return std::string(p.words[static_cast<std::size_t>(value)]);
  if (is_ratio(p)) return value >= kInfiniteRatio ? "inf:1" : number(value) + ":1";
  if (p.key == "shelf_slope" && value == 0) return "off";
  if (p.unit == "Hz" && value >= 1000) return number(value / 1000) + " kHz";
  if (p.unit == "ms" && value >= 1000) return number(value / 1000) + " s";
  return p.unit.empty() ? number(value) : fmt::format("{} {}", number(value), p.unit);
}

std::optional<double> value_from(const Parameter& p, std::string_view text) {
  text = trimmed(text);
  if (p.kind == Kind::kSwitch) return switch_from(text);
  if (p.kind == Kind::kWord) {
    const auto word = std::ranges::find_if(p.words, [&](auto known) { return same(text, known); });
    if (word == p.words.end()) return std::nullopt;
    return static_cast<double>(word - p.words.begin());
  }
  if (same(text, "off")) return nearest_value(p, 0);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || std::isnan(value)) return std::nullopt;
  const auto unit = trimmed(text.substr(static_cast<std::size_t>(end - text.data())));
  const auto factor = factor_of(unit, p);
  if (!factor) return std::nullopt;
  return nearest_value(p, value * *factor);
}

}  // namespace channelstrip::host
