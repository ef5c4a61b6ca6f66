// The message of what a preset's reader refuses.

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "host/preset/preset.h"

namespace channelstrip::test {

// Empty when nothing is refused.
template <class Call>
std::string refusal(Call call) {
  try {
    call();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

inline std::string refusal_of(std::string_view preset) {
  return refusal([preset] { host::parse_preset(preset, "p.toml"); });
}

}  // namespace channelstrip::test
