// The refusal of what a user wrote, for functions whose callers show its words.

#pragma once

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

namespace channelstrip::host {

// Throws std::invalid_argument with a phrase that says what is impossible.
template <typename... Arguments>
[[noreturn]] void refuse(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  throw std::invalid_argument(fmt::format(format, std::forward<Arguments>(arguments)...));
}

}  // namespace channelstrip::host
