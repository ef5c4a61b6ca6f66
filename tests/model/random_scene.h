// Random scenes for the sweep.

#pragma once

#include "random.h"
#include "scene.h"

namespace channelstrip::test {

// What a comparison can ask of a scene.
enum class Kind {
  // Every setting and every aliasing, but only filters that round the same way in any order of
  // their sums: all results are fixed to the bit.
  kOrderFree,
  // General filters in the equaliser around dynamics whose gain doesn't depend on the audio.
  kEqualiser,
  // General filters everywhere, and dynamics that are continuous in the audio, so that a last bit
  // can't throw a switch: curves that meet at their edges, a gate and a hold out of play, a peak
  // detector that doesn't decay (the level it falls to is not the one that it is compared with), a
  // smoothing filter that doesn't undershoot (decibels have no bound where a level crosses 0).
  kDynamics,
};

Scene random_scene(Random& random, int channels, int groups, Kind kind);

// What a host does between two calls: new settings, new audio, meters reset here and there.
void change_scene(Random& random, Scene& scene, int groups, Kind kind);

}  // namespace channelstrip::test
