// Random dynamics settings.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

#include "random_scene.h"

namespace channelstrip::test {

// Everything but the two filters.
void randomise_dynamics(Random& random, Dyn_SCoefsBlock& c, int groups, Kind kind);

}  // namespace channelstrip::test
