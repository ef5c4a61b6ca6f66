// What a setting, a memory or a sample is when it has no part in anything.

#pragma once

#include <cstddef>
#include <span>

#include "scene.h"

namespace channelstrip::test {

// A run of an instance's bytes that become neutral together.
struct Part {
  std::size_t offset, size;
};

std::span<const Part> parts_of_an_instance();

void neutralise(Instance& it, std::span<const Part> parts);

}  // namespace channelstrip::test
