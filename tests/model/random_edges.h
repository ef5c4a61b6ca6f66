// Levels that stand on every threshold and knee edge, or one float off.

#pragma once

#include "random_scene.h"

namespace channelstrip::test {

// Changes settings and audio of an order-free scene: chooses a level, puts edges at its decibels or
// their neighbours, and fills the buffers with the level and a few others.
void stand_on_edges(Random& random, Scene& scene);

}  // namespace channelstrip::test
