// The differential sweep: random scenes through the library and through the model, several
// calls each, compared after every call.

#pragma once

#include <control/library/stem_format.h>

#include <cstdint>
#include <functional>
#include <string>

#include "edge_counts.h"
#include "precision.h"
#include "scene.h"

namespace channelstrip::test {

enum class Subject {
  kOrderFree,  // every setting and every aliasing, to the bit
  kEdges,      // levels on and beside every threshold and knee edge, to the bit
  kEqualiser,  // general bands, within the bound
  kDynamics,   // general filters and continuous dynamics, within the bound
};

struct Findings {
  int64_t quads = 0;  // processed: 4 samples of all channels of one instance
  int64_t differing_calls = 0;
  std::string first_failure;  // how to reproduce it, what differed, and the shrunk scene
  double deviation = 0.0;     // the largest, in units of its bound
  EdgeCounts edges;
  PrecisionError error;  // against the model in double; only of subjects with a bound
};

// The implementation under test: returns the scene after a call on the given one.
using Processor = std::function<Scene(const Scene&)>;

// Runs trials with seeds from `first_seed` on, until `quads` have been processed.
Findings sweep(const host::StemFormat& format, const Processor& processor, Subject subject,
               uint32_t first_seed, int64_t quads);

}  // namespace channelstrip::test
