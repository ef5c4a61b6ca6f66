// Random scenes for the sweep, whole or in parts.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

#include "random.h"
#include "scene.h"

namespace channelstrip::test {

// Which settings a scene may have, and so how strictly its results can be compared.
enum class Kind {
  // Any settings and any overlap of buffers, but only filters whose results don't depend on the
  // order of their sums: all results are fixed to the bit.
  kOrderFree,
  // General filters in the equaliser around dynamics whose gain doesn't depend on the audio.
  kEqualiser,
  // General filters everywhere, and dynamics that are continuous in the audio, so that a difference
  // in the last bit can't throw a switch. The pieces of the curves meet at the knee edges, the gate
  // never switches, and there is no hold. The peak doesn't decay: with a decay it would jump, as
  // a level is compared with the peak before its decay. The smoothing filter doesn't undershoot:
  // where a level crosses 0, the error in dB has no bound.
  kDynamics,
};

Scene random_scene(Random& random, int channels, int groups, Kind kind);

// What a host may do between two calls: new settings, new audio, some meters reset.
void change_scene(Random& random, Scene& scene, int groups, Kind kind);

inline constexpr int kMostCount = 100;                            // samples that a call may ask for
inline constexpr int kMostSamples = (kMostCount + 15) / 16 * 16;  // that it then processes
inline constexpr int kKeys = 2;  // input buffers that only the key may select

// Places every instance's inputs, keys and outputs in the arena, and sizes it.
void place_buffers(Random& random, Scene& scene, int channels, Kind kind);

// Fills the whole arena, outputs as well as inputs.
void fill_arena(Random& random, Scene& scene, Kind kind);

// Every dynamics setting but the two filters.
void randomise_dynamics(Random& random, Dyn_SCoefsBlock& c, int groups, Kind kind);

// Puts levels on every threshold and knee edge of an order-free scene, or one float beside: chooses
// a level, sets the edges to its decibels or their neighbours, and fills the buffers with that
// level and a few others.
void stand_on_edges(Random& random, Scene& scene);

}  // namespace channelstrip::test
