// What a design function says when it refuses.

#pragma once

#include <stdexcept>
#include <string>

namespace channelstrip::test {

// The message of the std::invalid_argument that `design` throws.
template <typename Design>
std::string refusal(Design design) {
  try {
    design();
  } catch (const std::invalid_argument& refused) {
    return refused.what();
  }
  return "(not refused)";
}

}  // namespace channelstrip::test
