#include "wording.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace channelstrip::host {
namespace {

constexpr const char* kNone = "–";

}  // namespace

std::string number(double value, int decimals) {
  if (std::isnan(value)) return kNone;
  if (std::isinf(value)) return value < 0 ? "−∞" : "∞";
  const double scale = std::pow(10, decimals);
  const double rounded = std::round(value * scale) / scale;
  return fmt::format("{}{:.{}f}", rounded < 0 ? "−" : "", std::abs(rounded), decimals);
}

std::string number(const std::optional<double>& value, int decimals) {
  return value ? number(*value, decimals) : kNone;
}

std::string change(const std::optional<double>& before, const std::optional<double>& after) {
  const double by = after.value_or(NAN) - before.value_or(NAN);
  if (!std::isfinite(by)) return kNone;
  const std::string text = number(by);
  return by > 0 && text != number(0.0) ? '+' + text : text;
}

std::string duration(double seconds) {
  const double rounded = std::round(1000 * seconds) / 1000;  // so that it never reads 60.000 s
  const double minutes = std::floor(rounded / 60);
  return minutes < 1 ? fmt::format("{:.3f} s", rounded)
                     : fmt::format("{:.0f} min {:06.3f} s", minutes, rounded - 60 * minutes);
}

std::string one_line(std::string_view text, char replacement) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
    const bool is_upper_control = c == 0xC2 && next >= 0x80 && next < 0xA0;  // in UTF-8
    line += c < ' ' || c == 127 || is_upper_control ? replacement : text[i];
    if (is_upper_control) ++i;
  }
  return line;
}

}  // namespace channelstrip::host
