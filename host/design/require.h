// The refusal of a setting, in the words every design function uses.

#pragma once

#include <fmt/format.h>

#include <stdexcept>
#include <string_view>
#include <utility>

namespace channelstrip::host {

// Throws std::invalid_argument with a phrase that says what is impossible.
template <typename... Arguments>
[[noreturn]] void refuse(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  throw std::invalid_argument(fmt::format(format, std::forward<Arguments>(arguments)...));
}

// Throws std::invalid_argument "<setting> <value> <unit> is not <rule>" unless `holds`. Conditions
// say what must be true, so that NaN fails them.
inline void require(bool holds, std::string_view setting, double value, std::string_view unit,
                    std::string_view rule) {
  if (!holds) refuse("{} {}{}{} is not {}", setting, value, unit.empty() ? "" : " ", unit, rule);
}

// Calls `design` and puts `setting` before the message of what it refuses.
template <typename Design>
auto naming(std::string_view setting, Design design) {
  try {
    return design();
  } catch (const std::invalid_argument& refusal) {
    throw std::invalid_argument(fmt::format("{}{}", setting, refusal.what()));
  }
}

inline void require_within(double low, double high, std::string_view setting, double value,
                           std::string_view unit) {
  require(low <= value && value <= high, setting, value, unit,
          fmt::format("{} to {}{}{}", low, high, unit.empty() ? "" : " ", unit));
}

inline void require_decibels(std::string_view setting, double value) {
  require_within(-200, 200, setting, value, "dB");
}

inline void require_time(std::string_view setting, double milliseconds) {
  require_within(0, 10000, setting, milliseconds, "ms");
}

}  // namespace channelstrip::host
