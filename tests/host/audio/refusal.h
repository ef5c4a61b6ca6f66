// What the host says when it refuses a file.

#pragma once

#include <stdexcept>
#include <string>

namespace channelstrip::test {

// The message of the std::runtime_error that `action` throws; empty without one.
template <typename Action>
std::string refusal(Action action) {
  try {
    action();
  } catch (const std::runtime_error& refused) {
    return refused.what();
  }
  return "";
}

}  // namespace channelstrip::test
