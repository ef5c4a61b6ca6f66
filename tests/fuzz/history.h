// Reads bytes as a history: what a host does with a scene, call after call.

#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace channelstrip::test {

// Plays the history and checks every call. Returns the first fault, or "".
std::string first_fault(std::span<const uint8_t> bytes);

}  // namespace channelstrip::test
