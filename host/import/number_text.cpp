#include "number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "control/design/refuse.h"

namespace channelstrip::host {
namespace {

constexpr std::string_view kMinus = "\u2212";

}  // namespace

std::vector<std::string> capital_words(std::string_view text) {
  std::vector<std::string> result;
  char previous = ' ';
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\t';
    const bool unit = is_digit(previous) && (c == 'd' || c == 'D' || c == 'h' || c == 'H');
    if (!blank) {
      if (previous == ' ' || unit) result.emplace_back();
      result.back() += 'a' <= c && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    previous = blank ? ' ' : c;
  }
  return result;
}

char decimal_separator(std::string_view number) {
  const std::size_t last = number.find_last_of(".,");
  if (last == number.npos) return 0;
  const bool both = number.find(number[last] == '.' ? ',' : '.') != number.npos;
  const bool thousands = number.size() - last == 4;
  return both || !thousands ? number[last] : char{0};
}

double plain_number(std::string_view what, std::string text) {
  std::ranges::replace(text, ',', '.');
  if (text.starts_with(kMinus)) text.replace(0, kMinus.size(), "-");
  const std::size_t sign = text.starts_with('+') ? 1 : 0;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data() + sign, text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    refuse("the {} \"{}\" is no number", what, text);
  }
  return value;
}

double grouped_number(std::string_view what, std::string text, char decimal) {
  if (const char own = decimal_separator(text)) decimal = own;
  std::erase(text, decimal == ',' ? '.' : ',');
  return plain_number(what, std::move(text));
}

double parse_decibels(std::string_view text) {
  const std::vector<std::string> words = capital_words(text);
  if (words.empty() || words.size() > 2 || (words.size() == 2 && words[1] != "DB")) {
    refuse("not a number of dB");
  }
  return plain_number("gain", words.front());
}

}  // namespace channelstrip::host
