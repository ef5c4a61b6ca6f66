// How a line is refused.

#pragma once

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

namespace channelstrip::host {

// Throws std::invalid_argument, a phrase saying what can't be had.
template <typename... Arguments>
[[noreturn]] void refuse(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  throw std::invalid_argument(fmt::format(format, std::forward<Arguments>(arguments)...));
}

}  // namespace channelstrip::host
