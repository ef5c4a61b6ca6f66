// The values of settings and memory that have no effect.

#pragma once

#include <cstddef>
#include <span>

#include "scene.h"

namespace channelstrip::test {

// A range of an instance's bytes that are made neutral together.
struct Part {
  std::size_t offset, size;
};

std::span<const Part> parts_of_an_instance();

void neutralise(Instance& it, std::span<const Part> parts);

}  // namespace channelstrip::test
