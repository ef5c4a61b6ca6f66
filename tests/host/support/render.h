// A file rendered with the library just built.

#pragma once

#include <optional>
#include <string>

#include "host/render/render.h"

namespace channelstrip::test {

inline host::RenderReport render(const std::string& input, const std::string& output,
                                 const std::optional<std::string>& preset = {}) {
  return host::render({.input = input,
                       .output = output,
                       .strip = {.preset = preset, .library = CHANNELSTRIP_LIBRARY},
                       .dither = host::Dither::kNone});
}

}  // namespace channelstrip::test
