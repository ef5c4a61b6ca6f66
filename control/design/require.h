// The refusal of a setting, in the words every design function uses.

#pragma once

#include <fmt/format.h>

#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>

namespace channelstrip::host {

// Throws std::invalid_argument with a phrase that says what is impossible.
template <typename... Arguments>
[[noreturn]] void refuse(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  throw std::invalid_argument(fmt::format(format, std::forward<Arguments>(arguments)...));
}

// Throws std::invalid_argument "<setting> <value> <unit> is not <rule>" unless `holds`. Conditions
// say what must be true, so that NaN fails them. What holds costs no text and no allocation.
template <typename... Arguments>
void require(bool holds, std::string_view setting, double value, std::string_view unit,
             fmt::format_string<Arguments...> rule, Arguments&&... arguments) {
  if (holds) return;
  refuse("{} {}{}{} is not {}", setting, value, unit.empty() ? "" : " ", unit,
         fmt::format(rule, std::forward<Arguments>(arguments)...));
}

// Calls `design` and puts `setting`, or the text that it returns, before the message of what is
// refused.
template <typename Setting, typename Design>
auto naming(Setting setting, Design design) {
  try {
    return design();
  } catch (const std::invalid_argument& refusal) {
    if constexpr (std::is_invocable_v<Setting>) {
      throw std::invalid_argument(fmt::format("{}{}", setting(), refusal.what()));
    } else {
      throw std::invalid_argument(fmt::format("{}{}", setting, refusal.what()));
    }
  }
}

inline void require_within(double low, double high, std::string_view setting, double value,
                           std::string_view unit) {
  require(low <= value && value <= high, setting, value, unit, "{} to {}{}{}", low, high,
          unit.empty() ? "" : " ", unit);
}

inline void require_decibels(std::string_view setting, double value) {
  require_within(-200, 200, setting, value, "dB");
}

inline void require_time(std::string_view setting, double milliseconds) {
  require_within(0, 10000, setting, milliseconds, "ms");
}

}  // namespace channelstrip::host
