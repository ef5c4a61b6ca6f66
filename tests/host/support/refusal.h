// The message with which the host refuses.

#pragma once

#include <stdexcept>
#include <string>

namespace channelstrip::test {

// The message of the Error that `action` throws; empty if it throws nothing. Files and presets are
// refused with std::runtime_error, settings with std::invalid_argument.
template <typename Error = std::runtime_error, typename Action>
std::string refusal(Action action) {
  try {
    action();
  } catch (const Error& refused) {
    return refused.what();
  }
  return "";
}

}  // namespace channelstrip::test
