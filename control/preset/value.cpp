#include "value.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "../design/refuse.h"
#include "nearest.h"

namespace channelstrip::host {

bool Range::contains(double value) const {
  if (or_zero && value == 0) return true;
  const bool inside = minimum <= value && value <= maximum;
  return inside && (step == 0 || std::fmod(value, step) == 0);
}

std::string limits(const Range& range) {
  if (range.step > 0) {
    return fmt::format("{}, {} ... {}", range.minimum, range.minimum + range.step, range.maximum);
  }
  return fmt::format(
      "{}{}{}", range.or_zero ? "0 or " : "", range.minimum,
      range.maximum == kInfinity ? " or more" : fmt::format(" to {}", range.maximum));
}

double number_of(const toml::node& node) {
  if (!node.is_number()) refuse("must be a number");
  return node.is_integer() ? static_cast<double>(node.as_integer()->get())
                           : node.as_floating_point()->get();
}

double number_of(const toml::node& node, const Range& range) {
  const double value = number_of(node);
  if (!range.contains(value)) {
    refuse("must be {}{}{}{}{}", limits(range), range.unit.empty() ? "" : " ", range.unit,
           range.reason.empty() ? "" : ": ", range.reason);
  }
  return value;
}

double word_of(const toml::node& node, std::span<const std::string_view> words,
               std::string_view retired) {
  const std::vector<std::string_view> known(words.begin(), words.end());
  const std::string rule = fmt::format("must be {}", alternatives(known, "\""));
  if (!node.is_string()) refuse("{}", rule);
  const std::string& word = text_of(node);
  if (!retired.empty() && word == retired) return static_cast<double>(words.size() - 1);
  const auto found = std::ranges::find(words, word);
  if (found == words.end()) {
    refuse("unknown value \"{}\"{}", word, suggestion(word, known, rule));
  }
  return static_cast<double>(found - words.begin());
}

double switch_of(const toml::node& node) {
  if (!node.is_boolean()) refuse("must be true or false");
  return node.as_boolean()->get() ? 1 : 0;
}

const std::string& text_of(const toml::node& node) {
  if (!node.is_string()) refuse("must be text in quotes");
  return node.as_string()->get();
}

}  // namespace channelstrip::host
