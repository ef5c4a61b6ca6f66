// Random scenes for the sweep, whole or in parts.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

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

inline constexpr int kMostCount = 100;                            // samples that a call may ask for
inline constexpr int kMostSamples = (kMostCount + 15) / 16 * 16;  // that it then processes
inline constexpr int kKeys = 2;  // input buffers that only the key may select

// Gives every instance its inputs, keys and outputs, and the arena its size.
void place_buffers(Random& random, Scene& scene, int channels, Kind kind);

// Fills inputs and outputs alike.
void fill_arena(Random& random, Scene& scene, Kind kind);

// Every dynamics setting but the two filters.
void randomise_dynamics(Random& random, Dyn_SCoefsBlock& c, int groups, Kind kind);

// Puts levels on every threshold and knee edge of an order-free scene, or one float beside: chooses
// a level, sets the edges to its decibels or their neighbours, and fills the buffers with that
// level and a few others.
void stand_on_edges(Random& random, Scene& scene);

}  // namespace channelstrip::test
