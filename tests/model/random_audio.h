// Random buffers and what is in them.

#pragma once

#include "random_scene.h"

namespace channelstrip::test {

inline constexpr int kMostCount = 100;  // samples that a call may ask for
inline constexpr int kKeys = 2;         // input buffers that only the key may select

// Gives every instance its inputs, keys and outputs, and the arena its size.
void place_buffers(Random& random, Scene& scene, int channels, Kind kind);

// Fills inputs and outputs alike.
void fill_arena(Random& random, Scene& scene, Kind kind);

}  // namespace channelstrip::test
