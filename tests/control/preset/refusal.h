// The message with which a preset is refused.

#pragma once

#include <string>
#include <string_view>

#include "control/preset/preset.h"
#include "tests/host/support/refusal.h"

namespace channelstrip::test {

// The line and column in it refer to a file of the name p.toml; empty if the preset is accepted.
inline std::string refusal_of(std::string_view preset) {
  return refusal([preset] { host::parse_preset(preset, "p.toml"); });
}

}  // namespace channelstrip::test
